// The binary workbook: the globals of the workbook stream as plain members, the sheets, fonts
// and formats it owns, and the life of a book (defaults, load, save, reset).
#pragma once
#include <cstdint>
#include <cstring>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "biff/biff_record.h"
#include "biff/sst.h"
#include "biff/xls.h"
#include "formula/formula_decoder.h"
#include "formula/formula_encoder.h"
#include "book/extern_sheets.h"
#include "book/palette.h"
#include "officeart/drawing_group.h"
#include "frame/mem_pool.h"
#include "frame/text.h"
#include "frame/zverror.h"
#include "zelvar.h"

namespace zelvar {

template <class T> class SheetImplT;
template <class T> class FormatImplT;
template <class T> class FontImplT;

// Beginning of a substream: version, document type and build.
struct Bof {
    static constexpr uint16_t kBiff5 = 0x0500, kBiff8 = 0x0600;
    static constexpr uint16_t kGlobals = 0x0005, kWorksheet = 0x0010, kChart = 0x0020;

    uint16_t vers = kBiff8, dt = kGlobals, rupBuild = 8346, rupYear = 1997;
    uint32_t bfh = 49353, sfo = 774;
};

Bof readBof(XlsStream& xls, uint16_t size);
void writeBof(XlsStream& xls, const Bof& bof);

struct Window1 {
    uint16_t xWn = 0, yWn = 15, dxWn = 16155, dyWn = 10230, flags = 56, itabCur = 0, itabFirst = 0,
             ctabSel = 1, wTabRatio = 600;
};

// Position and visibility of a sheet in the globals; the name lives with the sheet.
struct BoundSheet {
    uint32_t lbPlyPos = 0;
    uint8_t hsState = 0;  // low two bits: SheetState
    uint8_t dt = 0;
};

struct Style {
    int16_t ixfe = 0;
    uint8_t istyBuiltIn = 0;
    uint8_t iLevel = 0xFF;
    std::wstring name;
    bool builtIn() const { return (static_cast<uint16_t>(ixfe) & 0x8000) != 0; }
};

struct StyleBlock {
    Style style;
    std::vector<uint8_t> styleExt;  // the StyleExt record's bytes, carried whole
    bool hasStyleExt = false;
};

template <class T>
class BookImplT : public IBookT<T>, public FormulaNames, public XtiResolver {
public:
    BookImplT();
    ~BookImplT() override;
    BookImplT(const BookImplT&) = delete;
    BookImplT& operator=(const BookImplT&) = delete;

    bool load(const T* filename) override;
    bool save(const T* filename) override;
    bool loadRaw(const char* data, unsigned size) override;
    bool saveRaw(const char** data, unsigned* size) override;
    ISheetT<T>* addSheet(const T* name, ISheetT<T>* initSheet = 0) override;
    ISheetT<T>* insertSheet(int index, const T* name, ISheetT<T>* initSheet = 0) override;
    ISheetT<T>* getSheet(int index) const override;
    int sheetType(int index) const override;
    bool delSheet(int index) override;
    int sheetCount() const override { return static_cast<int>(_sheets.size()); }
    IFormatT<T>* addFormat(IFormatT<T>* initFormat = 0) override;
    IFontT<T>* addFont(IFontT<T>* initFont = 0) override;
    int addCustomNumFormat(const T* customNumFormat) override;
    const T* customNumFormat(int fmt) override;
    IFormatT<T>* format(int index) override;
    int formatSize() override { return static_cast<int>(_formats.size()); }
    IFontT<T>* font(int index) override;
    int fontSize() override { return static_cast<int>(_fonts.size()); }
    double datePack(int year, int month, int day, int hour = 0, int min = 0, int sec = 0,
                    int msec = 0) override;
    bool dateUnpack(double value, int* year, int* month, int* day, int* hour = 0, int* min = 0,
                    int* sec = 0, int* msec = 0) override;
    Color colorPack(int red, int green, int blue) override;
    void colorUnpack(Color color, int* red, int* green, int* blue) override;
    int activeSheet() const override { return _window1.itabCur; }
    void setActiveSheet(int index) override;
    int pictureSize() const override;
    int getPicture(int index, const char** data, unsigned* size) const override;
    int addPicture(const T* filename) override;
    int addPicture2(const char* data, unsigned size) override;
    const T* defaultFont(int* size) override;
    void setDefaultFont(const T* name, int size) override;
    bool refR1C1() const override;
    void setRefR1C1(bool refR1C1 = true) override;
    bool rgbMode() override { return _rgbMode; }
    void setRgbMode(bool rgbMode = true) override { _rgbMode = rgbMode; }
    int version() const override { return 0x03050300; }
    int biffVersion() const override { return _bof.vers; }
    bool isDate1904() const override { return _date1904 != 0; }
    void setDate1904(bool date1904 = true) override { _date1904 = date1904 ? 1 : 0; }
    bool setLocale(const char* locale) override;
    const char* errorMessage() const override { return _ok ? "ok" : _message.c_str(); }
    void release() override { delete this; }

    // --- inner operations used by the sheets, formats and fonts ---

    // Runs a public operation's body: "ok" after it, the exception's text or "general failure"
    // and the failure value when it throws.
    template <class R, class F>
    R guard(R failure, F&& body) const {
        try {
            R result = body();
            setOk();
            return result;
        } catch (const std::exception& e) {
            setMessage(e.what());
        } catch (...) {
            setMessage("general failure");
        }
        return failure;
    }
    template <class F>
    void guardVoid(F&& body) const {
        guard(0, [&] {
            body();
            return 0;
        });
    }
    // "ok" is a flag, so that the hot path of every successful operation is a single store.
    void setOk() const { _ok = true; }
    void setMessage(const char* text) const {
        _ok = std::strcmp(text, "ok") == 0;
        if (!_ok) _message = text;
    }
    void setMessage(const std::string& text) const { setMessage(text.c_str()); }

    // Converts a wide text to the book's text form; it lives until the next tc of the book.
    const T* tc(const wchar_t* text);
    bool utf8Mode() const { return _utf8Mode; }
    MemPool& pool() { return _pool; }
    SST<T>& sst() { return _sst; }
    std::vector<SheetImplT<T>*>& sheets() { return _sheets; }
    std::vector<BoundSheet>& boundSheetsRef() { return _boundSheets; }
    std::vector<FormatImplT<T>*>& formats() { return _formats; }
    std::vector<FontImplT<T>*>& fonts() { return _fonts; }
    Palette& palette() { return _palette; }
    const Bof& bof() const { return _bof; }

    // Position of a format or font of this book by pointer identity, or -1.
    int formatIndex(const IFormatT<T>* format) const;
    int fontIndex(const IFontT<T>* font) const;
    int visibleSheetCount() const;
    int getNextVisibleSheet(int index) const;
    void calcActiveSheet();
    void calcFirstTab();
    int getTabIndex(const SheetImplT<T>* sheet) const;
    // Wide text of a custom number format, or null.
    const wchar_t* customNumFormatText(int id) const;

    void free();
    void reset();
    void init();
    void clear();
    // The workbook stream: globals, then each sheet's substream.
    void readStream();
    void writeStream();
    bool biff5() const { return _bof.vers <= Bof::kBiff5; }
    void decodeCodePage(std::wstring& text) const;
    // Names that formula tokens refer to.
    std::wstring referenceName(uint16_t ixti) const override;
    std::wstring definedName(uint32_t index) const override;
    uint16_t makeXti(const std::wstring& sheet) override;
    void followSheetList(int index, bool inserted);
    // Defined names, each its Lbl record with any CONTINUE records, as carried in the file.
    std::vector<std::vector<Biff<T>>>& lblRef() { return _lbls; }
    // Whether the name's external sheet index lies in this book's own table and covers tab.
    bool xtiCoversTab(uint16_t ixti, int tab) const;
    // Tab range of a sheet name or "First:Last", quotes removed; throws "sheet is not found".
    void getIndexesByName(const std::wstring& name, int& first, int& last) const;
    // The drawing group: pictures of the book and the numbering of all drawings' shapes.
    DrawingGroup& drawingGroup() { return _drawing; }
    const DrawingGroup& drawingGroup() const { return _drawing; }
    // Builds the default drawing group of a book that has none; a loaded one stays as it is.
    void initMsoDrawingGroup() { _drawing.initDefault(); }
    // One more use of the 1-based picture id; "pictureId is out of range" for an unknown one.
    void addPicRef(int id) { _drawing.addPicRef(id); }

private:
    void readGlobal(uint16_t type, uint16_t size);
    // A load reads from a stream or straight from bytes in memory; a save writes to a stream as
    // it goes, or leaves the whole file in `image`.
    bool loadFrom(std::iostream* stream, const char* data = nullptr, size_t size = 0);
    void saveTo(std::iostream* stream, std::string* image = nullptr);
    int addCustomNumFormatWide(const std::wstring& text);

    mutable bool _ok = true;
    mutable std::string _message;
    XString _text;
    XlsStream _xls;
    std::vector<SheetImplT<T>*> _sheets;
    Bof _bof;
    uint16_t _interfaceHdr = 1200;
    uint8_t _mms[2] = {0, 0};
    std::vector<uint8_t> _writeAccess;
    uint16_t _codePage = 1200;
    uint16_t _dsf = 0;
    uint16_t _builtInFnGroupCount = 14;
    uint16_t _winProtect = 0, _protect = 0, _password = 0, _prot4Rev = 0, _prot4RevPass = 0;
    uint16_t _backup = 0, _hideObj = 0, _calcPrecision = 1, _refreshAll = 0, _bookBool = 0, _usesELFs = 0;
    uint16_t _country[2] = {1, 1};
    uint16_t _recalcIdRt = rt::RecalcId, _recalcIdReserved = 0;
    uint32_t _recalcIdBuild = 114210;
    EmptyBiff<T> _obProj{rt::ObProj}, _obNoMacros{rt::ObNoMacros}, _codeName{rt::CodeName}, _xfCRC{rt::XFCRC},
        _tableStyles{rt::TableStyles}, _clrtClient{rt::ClrtClient}, _mtrSettings{rt::MTRSettings},
        _forceFullCalculation{rt::ForceFullCalculation}, _theme{rt::Theme}, _compressPictures{rt::CompressPictures},
        _compat12{rt::Compat12};
    std::vector<Biff<T>> _xfExts;
    // External references: the SupBook blocks and the external sheet table.
    ExternSheets<T> _externSheets;
    // Blocks carried as read: defined names and the drawing group, each record with its CONTINUE
    // records.
    std::vector<std::vector<Biff<T>>> _lbls;
    std::vector<Biff<T>> _drawingGroup;
    // The drawing group as read from _drawingGroup; written from here once something changed it.
    DrawingGroup _drawing;
    std::vector<Biff<T>> _unknownRecords;
    std::vector<uint16_t> _rrTabId;
    Window1 _window1;
    uint16_t _date1904 = 0;
    SST<T> _sst;
    std::vector<FontImplT<T>*> _fonts;
    std::vector<std::pair<uint16_t, std::wstring>> _customNumFormats;
    std::vector<FormatImplT<T>*> _formats;
    std::vector<StyleBlock> _styles;
    std::vector<BoundSheet> _boundSheets;
    std::vector<std::wstring> _boundSheetNames;  // names read, until the sheets take them
    MemPool _pool;
    std::string _rawData;
    bool _rgbMode = false;
    bool _utf8Mode = false;
    bool _paletteUsed = false;
    Palette _palette;
    std::string _savedLocale;
    bool _refR1C1 = false;
};

}  // namespace zelvar
