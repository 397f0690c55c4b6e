// The XML workbook: a book that is itself the workbook part of its package, holding every part in
// one file table, and its worksheets, whose schema trees are the cell store.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "frame/text.h"
#include "xmlbook/shared_strings.h"
#include "xmlbook/xml_package.h"
#include "xmlbook/xml_styles.h"
#include "xmlbook/xml_traits.h"
#include "zelvar.h"

namespace zelvar {

class ZipReader;
class ZipWriter;

template <class T, class Tag>
class XMLBookImplT;
template <class Tag>
class Drawing;

// A formula moved by rows and columns: relative references shift, quoted text and function
// names stay.
std::wstring shiftFormula(const std::wstring& text, int dRow, int dCol);

// First row, last row, first column, last column; the last two are one past the end.
struct XMLDimensions {
    int firstRow = 0, lastRow = 0, firstCol = 0, lastCol = 0;
    void reset() { firstRow = lastRow = firstCol = lastCol = 0; }
    void update(int row, int col) {
        updateRow(row);
        updateCol(col);
    }
    void updateRow(int r) { updatePair(firstRow, lastRow, r); }
    void updateCol(int c) { updatePair(firstCol, lastCol, c); }

private:
    static void updatePair(int& first, int& last, int v) {
        if (first == last || first > v) {
            first = v;
            if (last == v) {
                last = v + 1;
                return;
            }
        }
        if (v > last - 1) last = v + 1;
    }
};

template <class T, class Tag>
class XMLSheetImplT : public XmlFile<typename excel_format_traits<Tag>::Worksheet>, public ISheetT<T> {
public:
    typedef excel_format_traits<Tag> X;
    typedef typename X::Row Row;
    typedef typename X::Cell Cell;
    typedef XMLBookImplT<T, Tag> Book;

    XMLSheetImplT() { init(); }
    XMLSheetImplT(const char* data, unsigned size) : XmlFile<typename X::Worksheet>(data, size) { init(); }
    XMLSheetImplT(const XMLSheetImplT& other);

    // ---- cell store
    const Row* findRow(int row) const;
    Row* findRow(int row);
    const Cell* findCell(const Row* rowObject, int col) const;
    Cell* findCell(Row* rowObject, int col);
    const Cell* findCell(int row, int col) const { return findCell(findRow(row), col); }
    Cell* findCell(int row, int col) { return findCell(findRow(row), col); }
    Row* overwriteRow(unsigned row);
    Cell* overwriteCell(Row* rowObject, unsigned row, int col);
    Cell* write(int row, int col, IFormatT<T>* format, bool clear);
    const Cell* read(int row, int col) const { return findCell(row, col); }
    Cell* read(int row, int col) { return findCell(row, col); }
    static void clear(Cell* cell);
    IFormatT<T>* formatByIndex(int row, int col, unsigned s) const;
    void delCell(int row, int col);
    void delRow(int row);
    static int cellType(const Cell* cell);
    const T* tc(const wchar_t* text) const;
    static std::wstring getInlineStr(const Cell* cell);

    void setBook(Book* book) { _book = book; }
    void setIndex(int index) { _index = index; }
    int index() const { return _index; }
    typename X::Worksheet& xml() { return this->tree; }
    // Selection of the sheet's tab: the tabSelected flag of its first view.
    void setSelected(bool selected);

    void recalcDimensions();
    int calcFirstRow() const;
    int calcLastRow() const;
    int calcFirstCol() const;
    int calcLastCol() const;
    void prepareSave() override;

    // ---- ISheetT
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
    bool setCol(int colFirst, int colLast, double width, IFormatT<T>* format = 0, bool hidden = false) override;
    bool setRow(int row, double height, IFormatT<T>* format = 0, bool hidden = false) override;
    bool rowHidden(int row) const override;
    bool setRowHidden(int row, bool hidden) override;
    bool colHidden(int col) const override;
    bool setColHidden(int col, bool hidden) override;
    bool getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) override;
    bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) override;
    bool delMerge(int row, int col) override;
    int pictureSize() const override;
    int getPicture(int index, int* rowTop = 0, int* colLeft = 0, int* rowBottom = 0, int* colRight = 0,
                   int* width = 0, int* height = 0, int* offsetX = 0, int* offsetY = 0) const override;
    void setPicture(int row, int col, int pictureId, double scale = 1.0, int offsetX = 0, int offsetY = 0) override;
    void setPicture2(int row, int col, int pictureId, int width = -1, int height = -1, int offsetX = 0,
                     int offsetY = 0) override;
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
    void addrToRowCol(const T* addr, int* row, int* col, bool* rowRelative = 0, bool* colRelative = 0) override;
    const T* rowColToAddr(int row, int col, bool rowRelative = true, bool colRelative = true) override;

    // ---- structural edits and layout helpers
    // A merge or area reference split into its corners; one address fills both.
    static void parseRef(const std::wstring& ref, int* r1, int* c1, int* r2, int* c2);
    static std::wstring makeRef(int r1, int c1, int r2, int c2);
    // A master of a shared formula group that is overwritten hands the group to the first other
    // member of its block: the heir takes the block and the master's text moved to its place.
    void delSharedFormula(Cell* cell, int row, int col);
    // writeFormula over a master: the first other member of the group takes the master's formula
    // as it stands, its text not moved.
    void moveMasterFormula(int row, int col, Cell* cell);
    // The range first..last with delFirst..delLast taken out and what lay behind moved up;
    // false when nothing is left.
    static bool subtractRange(int first, int last, int delFirst, int delLast, int* outFirst, int* outLast);
    // Takes the removed rows (or columns) out of every merged block, dropping blocks left empty.
    void subtractFromMerges(bool rows, int first, int last);
    // Moves merged blocks behind inserted rows (or columns) back, splitting those the insertion
    // runs through.
    void pushMergesApart(bool rows, int first, int last);
    // The col entries covering colFirst..colLast, split where they stick out.
    std::vector<typename X::Col*> overwriteCols(int colFirst, int colLast);
    // One col entry for exactly colFirst..colLast.
    typename X::Col* overwriteCol(int colFirst, int colLast);
    double defaultColWidth() const;
    int colWidthPx(unsigned short col) const;
    int rowHeightPx(unsigned short row) const;
    int maxDigitWidth() const;
    // Stores the print titles of rows (0) or columns (1), keeping the other half.
    void setRepeat(int which, const std::wstring& text);

    // The entry of this sheet in the workbook's sheet list.
    typename X::Sheet* sheetEntry() const;
    void setWideName(const std::wstring& name);
    // Defined names that refer to the sheet by its old name refer to it by the new one.
    void changeDependencies(const std::wstring& oldName, const std::wstring& newName);

private:
    void init();
    // Rows and cells that a writer left without their address take the place after the one before.
    void fillMissingAddresses();
    // The serial number of an ISO 8601 date or time.
    double isoDateValue(const std::string& text) const;
    void ok() const;
    void fail(const char* text) const;
    // Operations that this side does not carry out yet.
    void notImplemented() const { fail("not implemented"); }
    bool utf8() const;
    IFormatT<T>* fetchFormat(const Cell* cell) const;

    Book* _book = nullptr;
    mutable XString _conv;
    int _index = -1;
    mutable XMLDimensions _dim;
    mutable bool _dimDirty = false;
    std::wstring _textScratch;  // text on its way to the shared strings, kept to reuse its memory
};

// A picture of the package: its bytes, the extension of its part and the part's path.
struct PicInfo {
    std::vector<char> data;
    std::wstring extension;
    std::wstring path;
};

template <class T, class Tag>
class XMLBookImplT : public XmlFile<typename excel_format_traits<Tag>::Workbook>, public IBookT<T> {
public:
    typedef excel_format_traits<Tag> X;
    typedef XMLSheetImplT<T, Tag> Sheet;
    typedef std::map<std::wstring, XFile*, CaseInsensitiveLess> FileTable;

    XMLBookImplT();
    ~XMLBookImplT() override;
    XMLBookImplT(const XMLBookImplT&) = delete;
    XMLBookImplT& operator=(const XMLBookImplT&) = delete;

    // ---- IBookT
    bool load(const T* filename) override;
    bool save(const T* filename) override;
    bool loadRaw(const char* data, unsigned size) override;
    bool saveRaw(const char** data, unsigned* size) override;
    ISheetT<T>* addSheet(const T* name, ISheetT<T>* initSheet = 0) override;
    ISheetT<T>* insertSheet(int index, const T* name, ISheetT<T>* initSheet = 0) override;
    ISheetT<T>* getSheet(int index) const override;
    int sheetType(int index) const override;
    bool delSheet(int index) override;
    int sheetCount() const override;
    IFormatT<T>* addFormat(IFormatT<T>* initFormat = 0) override;
    IFontT<T>* addFont(IFontT<T>* initFont = 0) override;
    int addCustomNumFormat(const T* customNumFormat) override;
    const T* customNumFormat(int fmt) override;
    IFormatT<T>* format(int index) override;
    int formatSize() override;
    IFontT<T>* font(int index) override;
    int fontSize() override;
    double datePack(int year, int month, int day, int hour = 0, int min = 0, int sec = 0, int msec = 0) override;
    bool dateUnpack(double value, int* year, int* month, int* day, int* hour = 0, int* min = 0, int* sec = 0,
                    int* msec = 0) override;
    Color colorPack(int red, int green, int blue) override;
    void colorUnpack(Color color, int* red, int* green, int* blue) override;
    int activeSheet() const override;
    void setActiveSheet(int index) override;
    int pictureSize() const override;
    int getPicture(int index, const char** data, unsigned* size) const override;
    int addPicture(const T* filename) override;
    int addPicture2(const char* data, unsigned size) override;
    const T* defaultFont(int* size) override;
    void setDefaultFont(const T* name, int size) override;
    bool refR1C1() const override;
    void setRefR1C1(bool refR1C1 = true) override;
    bool rgbMode() override;
    void setRgbMode(bool rgbMode = true) override;
    int version() const override;
    int biffVersion() const override;
    bool isDate1904() const override;
    void setDate1904(bool date1904 = true) override;
    bool setLocale(const char* locale) override;
    const char* errorMessage() const override { return _errorText.c_str(); }
    void release() override { delete this; }

    // ---- package
    void clear();
    template <class P>
    P* getXml(const std::wstring& path) const {
        auto it = _files.find(path);
        return it == _files.end() ? nullptr : dynamic_cast<P*>(it->second);
    }
    std::wstring getFileName(const XFile* file) const;
    Relationships* getRelationships(const XFile* file) const;
    std::wstring addFile(XFile* file, const std::wstring& prefix, const std::wstring& suffix);
    std::wstring makeFullPath(const std::wstring& target) const;
    std::wstring relationPath(const std::wstring& partPath, bool lookUp) const;
    std::wstring sheetPath(unsigned index) const;
    std::wstring makeSheetPath();
    static void calcNumSuffix(const std::wstring& name, int& suffix);
    Styles<T, Tag>* styles();
    SharedStrings<Tag>* sharedStrings();
    SharedStrings<Tag>* sharedStringsIfAny() const { return _sharedStrings; }
    void removeCalcChains();
    void addFullCalcOnLoad();
    const FileTable& files() const { return _files; }

    // ---- book operations
    unsigned makeSheetId() const;
    int visibleSheetCount() const;
    void calcActiveSheet();
    int getNextVisibleSheet(int index) const;
    bool clearDefinedName(int sheetIndex, const std::wstring& name);
    void copyRelationships(const std::wstring& newPath, const Sheet* source);
    unsigned getStyleID(IFormatT<T>* format) { return styles()->getStyleID(format); }
    bool utf8() const { return _utf8; }
    typename X::Workbook& xml() { return this->tree; }
    // The sheet object at a position of the sheet list, or null.
    Sheet* sheetAt(int index) const;
    void setError(const char* text) const { _errorText = text; }
    void setOk() const { _errorText = "ok"; }

    // ---- pictures and drawings
    const std::vector<PicInfo>& pictures() const { return _pictures; }
    // Index of the picture part with exactly that path; -1 if none.
    int picIndex(const std::wstring& imagePath) const;
    // The drawing part at a path, read into its tree on first use; null if there is none.
    Drawing<Tag>* drawingAt(const std::wstring& path);
    // The relationships part of a part, made when asked to and absent (as a copy of copyOf
    // when one is given).
    Relationships* relationshipsFor(const XFile* file, bool create, const Relationships* copyOf = nullptr);
    ContentTypes* contentTypes() const { return _contentTypes; }

protected:
    void load(ZipReader& reader);
    void writePackage(ZipWriter& writer);
    XFile* create(const char* data, unsigned size, const std::wstring& contentType);

private:
    ISheetT<T>* insertSheetWide(int index, std::wstring name, bool cut, ISheetT<T>* initSheet);

    FileTable _files;
    Relationships* _bookRels = nullptr;
    std::wstring _bookDir;
    SharedStrings<Tag>* _sharedStrings = nullptr;
    Styles<T, Tag>* _styles = nullptr;
    ContentTypes* _contentTypes = nullptr;
    std::vector<PicInfo> _pictures;
    char* _rawBuffer = nullptr;
    std::string _savedLocale;
    mutable std::string _errorText = "ok";
    bool _utf8 = false;
};

// The book a caller holds: one inner book of one dialect, swapped for the other dialect when a
// load fails.
template <class T>
class XMLBookProxy : public IBookT<T> {
public:
    XMLBookProxy() { switchToNormalMode(); }
    ~XMLBookProxy() override {
        if (_book) _book->release();
    }
    void switchToNormalMode();
    void switchToStrictMode();
    bool isNormalMode() const;

    bool load(const T* filename) override;
    bool save(const T* filename) override { return _book->save(filename); }
    bool loadRaw(const char* data, unsigned size) override { return _book->loadRaw(data, size); }
    bool saveRaw(const char** data, unsigned* size) override { return _book->saveRaw(data, size); }
    ISheetT<T>* addSheet(const T* name, ISheetT<T>* initSheet = 0) override { return _book->addSheet(name, initSheet); }
    ISheetT<T>* insertSheet(int index, const T* name, ISheetT<T>* initSheet = 0) override {
        return _book->insertSheet(index, name, initSheet);
    }
    ISheetT<T>* getSheet(int index) const override { return _book->getSheet(index); }
    int sheetType(int index) const override { return _book->sheetType(index); }
    bool delSheet(int index) override { return _book->delSheet(index); }
    int sheetCount() const override { return _book->sheetCount(); }
    IFormatT<T>* addFormat(IFormatT<T>* initFormat = 0) override { return _book->addFormat(initFormat); }
    IFontT<T>* addFont(IFontT<T>* initFont = 0) override { return _book->addFont(initFont); }
    int addCustomNumFormat(const T* text) override { return _book->addCustomNumFormat(text); }
    const T* customNumFormat(int fmt) override { return _book->customNumFormat(fmt); }
    IFormatT<T>* format(int index) override { return _book->format(index); }
    int formatSize() override { return _book->formatSize(); }
    IFontT<T>* font(int index) override { return _book->font(index); }
    int fontSize() override { return _book->fontSize(); }
    double datePack(int year, int month, int day, int hour = 0, int min = 0, int sec = 0, int msec = 0) override {
        return _book->datePack(year, month, day, hour, min, sec, msec);
    }
    bool dateUnpack(double value, int* year, int* month, int* day, int* hour = 0, int* min = 0, int* sec = 0,
                    int* msec = 0) override {
        return _book->dateUnpack(value, year, month, day, hour, min, sec, msec);
    }
    Color colorPack(int red, int green, int blue) override { return _book->colorPack(red, green, blue); }
    void colorUnpack(Color color, int* red, int* green, int* blue) override { _book->colorUnpack(color, red, green, blue); }
    int activeSheet() const override { return _book->activeSheet(); }
    void setActiveSheet(int index) override { _book->setActiveSheet(index); }
    int pictureSize() const override { return _book->pictureSize(); }
    int getPicture(int index, const char** data, unsigned* size) const override { return _book->getPicture(index, data, size); }
    int addPicture(const T* filename) override { return _book->addPicture(filename); }
    int addPicture2(const char* data, unsigned size) override { return _book->addPicture2(data, size); }
    const T* defaultFont(int* size) override { return _book->defaultFont(size); }
    void setDefaultFont(const T* name, int size) override { _book->setDefaultFont(name, size); }
    bool refR1C1() const override { return _book->refR1C1(); }
    void setRefR1C1(bool refR1C1 = true) override { _book->setRefR1C1(refR1C1); }
    bool rgbMode() override { return _book->rgbMode(); }
    void setRgbMode(bool rgbMode = true) override { _book->setRgbMode(rgbMode); }
    int version() const override { return _book->version(); }
    int biffVersion() const override { return _book->biffVersion(); }
    bool isDate1904() const override { return _book->isDate1904(); }
    void setDate1904(bool date1904 = true) override { _book->setDate1904(date1904); }
    bool setLocale(const char* locale) override { return _book->setLocale(locale); }
    const char* errorMessage() const override { return _book->errorMessage(); }
    void release() override { delete this; }

private:
    IBookT<T>* _book = nullptr;
};

}  // namespace zelvar
