// A worksheet of the binary book. Cells are the file's records kept as they are, one flat vector
// per record kind; the sheet index maps row and column to the record that holds the cell. A write
// never moves or removes a record: it appends and repoints the index, and records that nothing
// points to any more are simply not written.
#pragma once
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "book/book_impl.h"
#include "book/cell_records.h"
#include "book/sheet_index.h"
#include "frame/huge_pages.h"
#include "frame/text.h"
#include "officeart/sheet_drawing.h"
#include "zelvar.h"

namespace zelvar {

struct Window2 {
    uint16_t grbit = 1206;  // bit 1 gridlines, bit 3 frozen panes, bit 9 selected, bit 10 paged
    uint16_t rwTop = 0, colLeft = 0;
    uint16_t icvHdr = 64;
    uint16_t rest[5] = {0, 0, 0, 0, 0};
};

struct Rect {
    uint16_t rwFirst = 0, rwLast = 0, colFirst = 0, colLast = 0;
    bool drop = false;  // marked for removal during an edit
};

// Cell records live in vectors whose big buffers sit on huge pages.
template <class R>
using RecordVector = std::vector<R, HugeAllocator<R>>;

template <class T>
class SheetImplT : public ISheetT<T> {
public:
    explicit SheetImplT(BookImplT<T>* book);
    // A deep copy; the copy then holds its own references to shared strings (retainStrings).
    SheetImplT(const SheetImplT& other) = default;
    ~SheetImplT() override;
    SheetImplT& operator=(const SheetImplT&) = delete;

    int cellType(int row, int col) const override;
    bool isFormula(int row, int col) const override;
    IFormatT<T>* cellFormat(int row, int col) const override;
    void setCellFormat(int row, int col, IFormatT<T>* format) override;
    const T* readStr(int row, int col, IFormatT<T>** format = 0) override;
    bool writeStr(int row, int col, const T* value, IFormatT<T>* format = 0) override;
    double readNum(int row, int col, IFormatT<T>** format = 0) const override;
    bool writeNum(int row, int col, double value, IFormatT<T>* format = 0) override;
    bool readBool(int row, int col, IFormatT<T>** format = 0) const override;
    bool writeBool(int row, int col, bool value, IFormatT<T>* format = 0) override;
    bool readBlank(int row, int col, IFormatT<T>** format) const override;
    bool writeBlank(int row, int col, IFormatT<T>* format) override;
    const T* readFormula(int row, int col, IFormatT<T>** format = 0) override;
    bool writeFormula(int row, int col, const T* value, IFormatT<T>* format = 0) override;
    const T* readComment(int row, int col) const override;
    void writeComment(int row, int col, const T* value, const T* author = 0, int width = 129,
                      int height = 75) override;
    bool isDate(int row, int col) const override;
    int readError(int row, int col) const override;
    double colWidth(int col) const override;
    double rowHeight(int row) const override;
    bool setCol(int colFirst, int colLast, double width, IFormatT<T>* format = 0,
                bool hidden = false) override;
    bool setRow(int row, double height, IFormatT<T>* format = 0, bool hidden = false) override;
    bool rowHidden(int row) const override;
    bool setRowHidden(int row, bool hidden) override;
    bool colHidden(int col) const override;
    bool setColHidden(int col, bool hidden) override;
    bool getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
    bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) override;
    bool delMerge(int row, int col) override;
    int pictureSize() const override;
    int getPicture(int index, int* rowTop = 0, int* colLeft = 0, int* rowBottom = 0,
                   int* colRight = 0, int* width = 0, int* height = 0, int* offsetX = 0,
                   int* offsetY = 0) const override;
    void setPicture(int row, int col, int pictureId, double scale = 1.0, int offsetX = 0,
                    int offsetY = 0) override;
    void setPicture2(int row, int col, int pictureId, int width = -1, int height = -1,
                     int offsetX = 0, int offsetY = 0) override;
    int getHorPageBreak(int index) const override;
    int getHorPageBreakSize() const override;
    int getVerPageBreak(int index) const override;
    int getVerPageBreakSize() const override;
    bool setHorPageBreak(int row, bool pageBreak = true) override;
    bool setVerPageBreak(int col, bool pageBreak = true) override;
    void split(int row, int col) override;
    bool groupRows(int rowFirst, int rowLast, bool collapsed = true) override;
    bool groupCols(int colFirst, int colLast, bool collapsed = true) override;
    bool groupSummaryBelow() const override;
    void setGroupSummaryBelow(bool below) override;
    bool groupSummaryRight() const override;
    void setGroupSummaryRight(bool right) override;
    bool clear(int rowFirst = 0, int rowLast = 1048575, int colFirst = 0, int colLast = 16383) override;
    bool insertCol(int colFirst, int colLast) override;
    bool insertRow(int rowFirst, int rowLast) override;
    bool removeCol(int colFirst, int colLast) override;
    bool removeRow(int rowFirst, int rowLast) override;
    bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) override;
    int firstRow() const override;
    int lastRow() const override;
    int firstCol() const override;
    int lastCol() const override;
    bool displayGridlines() const override;
    void setDisplayGridlines(bool show = true) override;
    bool printGridlines() const override;
    void setPrintGridlines(bool print = true) override;
    int zoom() const override;
    void setZoom(int zoom) override;
    int printZoom() const override;
    void setPrintZoom(int zoom) override;
    bool getPrintFit(int* wPages, int* hPages) const override;
    void setPrintFit(int wPages = 1, int hPages = 1) override;
    bool landscape() const override;
    void setLandscape(bool landscape = true) override;
    Paper paper() const override;
    void setPaper(Paper paper = PaperDefault) override;
    const T* header() const override;
    bool setHeader(const T* header, double margin = 0.5) override;
    double headerMargin() const override;
    const T* footer() const override;
    bool setFooter(const T* footer, double margin = 0.5) override;
    double footerMargin() const override;
    bool hCenter() const override;
    void setHCenter(bool hCenter = true) override;
    bool vCenter() const override;
    void setVCenter(bool vCenter = true) override;
    double marginLeft() const override;
    void setMarginLeft(double margin) override;
    double marginRight() const override;
    void setMarginRight(double margin) override;
    double marginTop() const override;
    void setMarginTop(double margin) override;
    double marginBottom() const override;
    void setMarginBottom(double margin) override;
    bool printRowCol() const override;
    void setPrintRowCol(bool print = true) override;
    void setPrintRepeatRows(int rowFirst, int rowLast) override;
    void setPrintRepeatCols(int colFirst, int colLast) override;
    void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) override;
    void clearPrintRepeats() override;
    void clearPrintArea() override;
    bool getNamedRange(const T* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
    bool setNamedRange(const T* name, int rowFirst, int rowLast, int colFirst, int colLast) override;
    bool delNamedRange(const T* name) override;
    int namedRangeSize() const override;
    const T* namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
    const T* name() const override;
    void setName(const T* name) override;
    bool protect() const override;
    void setProtect(bool protect = true) override;
    SheetState hidden() const override;
    bool setHidden(SheetState state = SheetHidden) override;
    void getTopLeftView(int* row, int* col) const override;
    void setTopLeftView(int row, int col) override;
    void addrToRowCol(const T* addr, int* row, int* col, bool* rowRelative = 0,
                      bool* colRelative = 0) override;
    const T* rowColToAddr(int row, int col, bool rowRelative = true, bool colRelative = true) override;

    // --- inner operations ---
    void checkRanges(int row, int col) const;
    uint16_t getFormatID(unsigned row, unsigned col) const;
    const T* tc(const wchar_t* text) const;
    void recalcDimensions();
    // Recomputes the used range only when an edit or a load left it stale.
    void settleDimensions() const;
    bool findDateChars(const wchar_t* text) const;
    void setSelected(bool selected);
    bool refA1() const { return _refA1; }
    void setRefA1(bool refA1) { _refA1 = refA1; }
    const std::wstring& nameRef() const { return _name; }
    void setWideName(const std::wstring& name) { _name = name; }
    // The substream of this sheet: read from its BOF to its EOF, written in the fixed order.
    // length: how many bytes of the stream the substream may take, as far as the book knows.
    void read(XlsStream& xls, uint64_t length);
    void write(XlsStream& xls);
    // Stores the name, cut to 31 characters; true when it had to be cut.
    bool storeName(const T* name);
    int docType() const { return _bof.dt; }
    // An error cell, as files carry them; code is an ErrorType value.
    bool writeError(int row, int col, int code, IFormatT<T>* format);
    // The index entry of a cell (0 for none) and the number of records of a kind, kept or stale.
    uint32_t entryFor(int row, int col) const { return _sheetIndex.get(row & 0xFFFF, col & 0xFF); }
    size_t recordCount(CellKind kind) const;
    // The stored tokens of a formula cell's entry (count, tokens, extra data), for diagnostics.
    const std::vector<uint8_t>& formulaTokens(uint32_t entry) const { return _formulas.at(SheetIndex::position(entry)).formula.tokens; }
    void retainStrings();
    // The picture shapes of the sheet's drawing.
    std::vector<ShapeInfo> pictureShapes() const { return drawingPictures(_objects); }
    // Drops this sheet's references to shared strings before the sheet goes away.
    void releaseStrings();

private:
    template <class R>
    void writeNumber(int row, int col, double value, RecordVector<R>& records, IFormatT<T>* format);
    template <class R>
    RecordVector<R>& records() {
        if constexpr (R::kind == KindRK) return _rks;
        else if constexpr (R::kind == KindNumber) return _numbers;
        else if constexpr (R::kind == KindLabelSst) return _labelSsts;
        else if constexpr (R::kind == KindBlank) return _blanks;
        else if constexpr (R::kind == KindBoolErr) return _boolErrs;
        else if constexpr (R::kind == KindFormula) return _formulas;
        else return _labels;
    }
    // The one place that maps a kind number to its record vector: calls visit with the vector,
    // typed, so that every call site is resolved at compile time (one switch, no virtual call,
    // nothing allocated). Index entries only ever hold the kinds from KindRK to KindLabel.
    template <class Self, class F>
    static decltype(auto) withRecordsOf(Self& self, unsigned kind, F&& visit) {
        switch (kind) {
            case KindRK: return visit(self._rks);
            case KindNumber: return visit(self._numbers);
            case KindLabelSst: return visit(self._labelSsts);
            case KindBlank: return visit(self._blanks);
            case KindBoolErr: return visit(self._boolErrs);
            case KindFormula: return visit(self._formulas);
            default: return visit(self._labels);
        }
    }
    template <class F>
    decltype(auto) withRecords(unsigned kind, F&& visit) {
        return withRecordsOf(*this, kind, visit);
    }
    template <class F>
    decltype(auto) withRecords(unsigned kind, F&& visit) const {
        return withRecordsOf(*this, kind, visit);
    }
    // Calls visit with the record that a (non-zero) index entry points at.
    template <class F>
    decltype(auto) visitCell(uint32_t entry, F&& visit) {
        unsigned at = SheetIndex::position(entry);
        return withRecords(SheetIndex::kind(entry), [&](auto& records) -> decltype(auto) { return visit(records[at]); });
    }
    template <class F>
    decltype(auto) visitCell(uint32_t entry, F&& visit) const {
        unsigned at = SheetIndex::position(entry);
        return withRecords(SheetIndex::kind(entry), [&](auto& records) -> decltype(auto) { return visit(records[at]); });
    }
    // XF index for a write: the given format's position, or the cell's present one.
    uint16_t formatForWrite(int row, int col, IFormatT<T>* format) const;
    IFormatT<T>* formatAt(uint16_t xf) const;
    // Before the master cell of a shared formula is overwritten, the group's next cell takes over.
    void delSharedFormula(int row, int col);
    uint32_t entryAt(int row, int col) const { return _sheetIndex.get(row, col); }
    const T* notImplemented() const;

    struct PageBreak {
        uint16_t pos = 0, start = 0, end = 255;
    };
    Row* findRow(int row);
    const Row* findRow(int row) const;
    const ColInfo* findCol(int col) const;
    bool setPageBreak(std::vector<PageBreak>& breaks, int pos, bool pageBreak, uint16_t end);
    bool setHeaderText(std::wstring& into, const T* text, double margin, double& marginField);
    void clearIndexes(int rowFirst, int rowLast, int colFirst, int colLast, bool onlyBlanks);
    // Sets the row or column of the record an entry points at.
    void moveRecord(uint32_t entry, int row, int col);
    void shiftNotes(int first, int count, bool isRow, bool insert);
    // Pixel sizes of a column and a row, for drawing anchors.
    int colWidthInt(int col) const;
    int rowHeightInt(int row) const;
    // The anchor of a box of width x height pixels whose corner lies offset pixels into the cell;
    // -1 for a size takes the merged range of the cell.
    OfficeArtCoord calcCoord(int row, int col, int width, int height, int offsetX, int offsetY) const;
    void extractPictureCoordAndSize(const ShapeInfo& shape, int* rowTop, int* colLeft, int* rowBottom,
                                    int* colRight, int* width, int* height, int* offsetX, int* offsetY) const;
    // Object ids of the sheet's drawing: -1 until the first new object needs one.
    int nextObjectCounter();
    void insertMerges(int first, int last, bool isRow);
    void removeMerges(int first, int last, bool isRow);
    struct NameView;
    bool readName(const Biff<T>& lbl, NameView& view) const;
    Biff<T>* findName(const std::wstring& name, bool builtIn, int number);
    void addName(const std::wstring& name, bool builtIn, const std::vector<uint8_t>& tokens);
    void setBuiltInArea(int number, int rowFirst, int rowLast, int colFirst, int colLast, bool rows);
    void clearBuiltIn(int number);
    void updateNamedRange(int first, int last, bool isRow, bool isInsert);
    void readRecord(XlsStream& xls, uint16_t type, uint16_t size);
    void readPageSetup(XlsStream& xls, uint16_t type, uint16_t size);
    void readFormulaBlock(XlsStream& xls, uint16_t size);
    void writeCells(XlsStream& xls);
    template <class R>
    void placeCell(const R& record);

    std::wstring _name;
    BookImplT<T>* _book;
    Bof _bof;
    bool _hasUncalced = false;
    uint16_t _uncalced = 0;
    uint32_t _indexReserved = 0, _indexRwMic = 0, _indexRwMac = 0, _indexIbXF = 0;
    std::vector<uint32_t> _indexPositions;
    uint16_t _calcMode = 1, _calcCount = 100, _calcRefMode = 1, _calcIter = 0;
    double _calcDelta = 0.001;
    uint16_t _calcSaveRecalc = 1, _printRowCol = 0, _printGrid = 0, _gridSet = 1;
    uint16_t _guts[4] = {0, 0, 0, 0};
    uint16_t _defaultRowHeightFlags = 0;
    uint16_t _wsBool = 1217;
    uint16_t _defaultRowHeight = 255;
    uint16_t _defColWidth = 8;
    // Page setup: header, footer, centring, margins, printer data and the Setup record.
    std::wstring _header, _footer;
    uint16_t _hCenter = 0, _vCenter = 0;
    double _margins[4] = {0.75, 0.75, 1.0, 1.0};
    bool _marginSet[4] = {false, false, false, false};
    std::vector<Biff<T>> _pls;
    struct SetupBIFF {
        uint16_t iPaperSize = 0, iScale = 100;
        int16_t iPageStart = 1;
        uint16_t iFitWidth = 1, iFitHeight = 1, grbit = 6, iRes = 0, iVRes = 0;
        double numHdr = 0.5, numFtr = 0.5;
        uint16_t iCopies = 0;
    } _setup;
    // Protect, ScenarioProtect, ObjProtect, Password, each present or not.
    bool _protectionSet[4] = {false, false, false, false};
    uint16_t _protection[4] = {0, 0, 0, 0};
    std::vector<PageBreak> _horizontalPageBreaks, _verticalPageBreaks;
    EmptyBiff<T> _headerFooter{rt::HeaderFooter}, _sort{rt::Sort}, _dropDownObjIds{rt::DropDownObjIds},
        _autoFilterInfo{rt::AutoFilterInfo}, _entExU2{rt::EntExU2}, _dCon{rt::DCon}, _plv{rt::Plv}, _dxGCol{rt::DxGCol},
        _codeName{rt::CodeName};
    std::vector<Biff<T>> _noteShs, _selections, _objects, _unknownRecords;
    bool _hasPane = false;
    uint16_t _pane[4] = {0, 0, 0, 0};
    uint8_t _paneActive = 0;
    uint16_t _sclNum = 100, _sclDenom = 100;
    std::vector<uint8_t> _phoneticInfo = std::vector<uint8_t>(6, 0);
    Dimensions _dimensions;
    Window2 _window2;
    std::vector<Row> _rows;
    // Row number to the first of _rows with it. Rows are only ever appended, so the lookup
    // catches up with the ones added since it last looked.
    mutable std::unordered_map<uint16_t, uint32_t> _rowLookup;
    mutable size_t _rowLookupCount = 0;
    RecordVector<LabelSst> _labelSsts;
    RecordVector<Label> _labels;
    RecordVector<RK> _rks;
    RecordVector<Number> _numbers;
    std::vector<ColInfo> _colInfos;
    std::vector<std::vector<Rect>> _mergeCells;
    RecordVector<Blank> _blanks;
    RecordVector<BoolErr> _boolErrs;
    RecordVector<FormulaBlock> _formulas;
    SheetIndex _sheetIndex;
    mutable StringKeeper<T> _keeper;
    std::wstring _formulaText;
    std::wstring _nameText;
    bool _refA1 = true;
    int _objectCounter = -1;
    mutable std::wstring _commentText;  // the text readComment gave last
    mutable bool _dimensionsDirty = false;
};

}  // namespace zelvar
