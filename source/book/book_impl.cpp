#include "book/book_impl.h"

#include <clocale>
#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>
#include <memory>
#include <set>

#include "book/font_impl.h"
#include "book/format_impl.h"
#include "book/sheet_impl.h"

namespace zelvar {

namespace {
const char kNotImplemented[] = "not implemented";
const char kOutOfRange[] = "index is out of range";
}  // namespace

template <class T>
BookImplT<T>::BookImplT() {
    setLocale("");
    _sst.bind(&_pool, &_utf8Mode);
    reset();
    init();
    _utf8Mode = false;
    setOk();
}

template <class T>
BookImplT<T>::~BookImplT() {
    free();
}

template <class T>
void BookImplT<T>::free() {
    for (FontImplT<T>* f : _fonts) delete f;
    for (FormatImplT<T>* f : _formats) delete f;
    for (SheetImplT<T>* s : _sheets) delete s;
    _fonts.clear();
    _formats.clear();
    _sheets.clear();
}

template <class T>
void BookImplT<T>::reset() {
    _xls.reset(true);
    _bof = Bof();
    _interfaceHdr = 1200;
    _mms[0] = _mms[1] = 0;
    _writeAccess.assign({1, 0, 0, 0x4C});
    _writeAccess.resize(112, 0x20);
    _codePage = 1200;
    _dsf = 0;
    _builtInFnGroupCount = 14;
    _winProtect = _protect = _password = _prot4Rev = _prot4RevPass = 0;
    _backup = _hideObj = _refreshAll = _bookBool = _usesELFs = 0;
    _calcPrecision = 1;
    _country[0] = _country[1] = 1;
    _recalcIdRt = rt::RecalcId;
    _recalcIdReserved = 0;
    _recalcIdBuild = 114210;
    for (EmptyBiff<T>* slot : {&_obProj, &_obNoMacros, &_codeName, &_xfCRC, &_tableStyles, &_clrtClient,
                               &_mtrSettings, &_forceFullCalculation, &_theme, &_compressPictures, &_compat12})
        slot->clear();
    _xfExts.clear();
    _externSheets.clear();
    _lbls.clear();
    _drawingGroup.clear();
    _drawing.clear();
    _unknownRecords.clear();
    _boundSheetNames.clear();
    _rrTabId.assign(1, 1);
    _window1 = Window1();
    _date1904 = 0;
    _sst.reset();
    _fonts.clear();
    _customNumFormats.clear();
    _formats.clear();
    _styles.clear();
    _boundSheets.clear();
    _pool.free();
    _rawData.clear();
    _rgbMode = false;
    _paletteUsed = false;
    _palette.reset();
    _refR1C1 = false;
}

template <class T>
void BookImplT<T>::init() {
    for (FormatImplT<T>* f : _formats) delete f;
    _formats.clear();
    for (int i = 0; i < 21; ++i) _formats.push_back(new FormatImplT<T>(this));
    // The standard cell and style formats of a new book; 15 is the default for new cells.
    _formats[0]->align = 0x20;
    _formats[1]->ifnt = _formats[2]->ifnt = 1;
    _formats[3]->ifnt = _formats[4]->ifnt = 2;
    _formats[15]->flags = 1;
    _formats[15]->align = 0x20;
    const uint16_t styleFormats[5] = {44, 42, 9, 43, 41};
    for (int i = 16; i <= 20; ++i) {
        _formats[i]->ifnt = 1;
        _formats[i]->ifmt = styleFormats[i - 16];
        _formats[i]->align = i == 20 ? 0 : 0xF8000020;
    }

    for (FontImplT<T>* f : _fonts) delete f;
    _fonts.clear();
    for (int i = 0; i < 5; ++i) _fonts.push_back(new FontImplT<T>(this));

    _styles.clear();
    const std::pair<uint16_t, uint8_t> styles[6] = {
        {0x8010, 4}, {0x8011, 7}, {0x8000, 0}, {0x8012, 5}, {0x8013, 3}, {0x8014, 6}};
    for (const auto& s : styles) {
        StyleBlock block;
        block.style.ixfe = static_cast<int16_t>(s.first);
        block.style.istyBuiltIn = s.second;
        block.style.iLevel = 0xFF;
        _styles.push_back(block);
    }
    _rgbMode = false;
    _paletteUsed = false;
    _refR1C1 = false;
}

template <class T>
void BookImplT<T>::clear() {
    free();
    reset();
    init();
}

namespace {
std::string narrowPath(const char* name, bool) { return name; }
std::string narrowPath(const wchar_t* name, bool utf8) {
    std::string out;
    wideToNarrow(name, wcslen(name), utf8, out);
    return out;
}
}  // namespace

template <class T>
bool BookImplT<T>::load(const T* filename) {
    try {
        free();
        reset();
        if (!filename) throw zverror("can't open file for reading");
        // Read where it lies: the container takes the sectors it needs through a window.
        std::fstream file(narrowPath(filename, _utf8Mode), std::ios::in | std::ios::binary);
        if (!file) throw zverror("can't open file for reading");
        loadFrom(&file);
        setOk();
        return true;
    } catch (const std::exception& e) {
        std::string text = e.what();
        clear();
        setMessage(text);
    } catch (...) {
        clear();
        setMessage("general failure");
    }
    return false;
}

template <class T>
bool BookImplT<T>::save(const T* filename) {
    if (!filename) {
        setMessage("can't open file for writing");
        return false;
    }
    std::string path = narrowPath(filename, _utf8Mode);
    return guard(false, [&] {
        // The file takes the records as they are written; only a tail stays in memory.
        std::fstream file(path, std::ios::out | std::ios::binary | std::ios::trunc);
        if (!file) throw zverror("can't open file for writing");
        saveTo(&file);
        file.close();
        if (!file) throw zverror("stream error, perhaps it's too small writing buffer");
        return true;
    });
}

// A failed raw load leaves what was read: the next load is the way out of that state.
template <class T>
bool BookImplT<T>::loadRaw(const char* data, unsigned size) {
    return guard(false, [&] {
        free();
        reset();
        // The caller's bytes are read in place: they outlive the load.
        return loadFrom(nullptr, data && size ? data : nullptr, data ? size : 0);
    });
}

template <class T>
bool BookImplT<T>::saveRaw(const char** data, unsigned* size) {
    return guard(false, [&] {
        saveTo(nullptr, &_rawData);
        if (data) *data = _rawData.data();
        if (size) *size = static_cast<unsigned>(_xls.fileSize());
        return true;
    });
}

template <class T>
ISheetT<T>* BookImplT<T>::addSheet(const T* name, ISheetT<T>* initSheet) {
    if (_boundSheets.size() != _sheets.size()) {
        setMessage("integrity error: _boundSheets.size() != _sheets.size()");
        return nullptr;
    }
    return insertSheet(sheetCount(), name, initSheet);
}

template <class T>
ISheetT<T>* BookImplT<T>::insertSheet(int index, const T* name, ISheetT<T>* initSheet) {
    bool cut = false;
    ISheetT<T>* made = guard<ISheetT<T>*>(nullptr, [&]() -> ISheetT<T>* {
        if (index < 0 || index > static_cast<int>(_boundSheets.size()) ||
            index > static_cast<int>(_sheets.size()))
            throw zverror(kOutOfRange);
        if (!name) throw zverror("sheet name mustn't be NULL");
        SheetImplT<T>* source = nullptr;
        if (initSheet) {
            for (SheetImplT<T>* s : _sheets)
                if (static_cast<ISheetT<T>*>(s) == initSheet) source = s;
            if (!source) throw zverror("specified sheet not found");
        }
        std::unique_ptr<SheetImplT<T>> sheet(source ? new SheetImplT<T>(*source) : new SheetImplT<T>(this));
        cut = sheet->storeName(name);
        for (SheetImplT<T>* s : _sheets)
            if (sicmp(sheet->nameRef(), s->nameRef())) throw zverror("book already contains such sheet name");
        if (source) {
            sheet->retainStrings();
            // The copy's pictures are further uses of the pictures of the store.
            if (_drawing.present() && !_drawing.unreadable())
                for (const auto& shape : sheet->pictureShapes())
                    if (shape.pib >= 1 && shape.pib <= _drawing.fbseCount()) addPicRef(shape.pib);
            sheet->setSelected(false);
        }
        else
            sheet->setRefA1(!_refR1C1);
        _boundSheets.insert(_boundSheets.begin() + index, BoundSheet());
        _sheets.insert(_sheets.begin() + index, sheet.get());
        SheetImplT<T>* result = sheet.release();
        int active = activeSheet();
        if (_sheets.size() == 1)
            setActiveSheet(0);
        else if (index <= active)
            setActiveSheet(active + 1);
        else
            setActiveSheet(active);
        followSheetList(index, true);
        _rrTabId.clear();
        for (size_t i = 0; i < _sheets.size(); ++i) _rrTabId.push_back(static_cast<uint16_t>(i + 1));
        return result;
    });
    if (made && cut) setMessage("warning: sheet's name is cut to 31 characters");
    return made;
}

template <class T>
ISheetT<T>* BookImplT<T>::getSheet(int index) const {
    if (index < 0 || index >= static_cast<int>(_sheets.size())) {
        setMessage(kOutOfRange);
        return nullptr;
    }
    setOk();
    return _sheets[index];
}

template <class T>
int BookImplT<T>::sheetType(int index) const {
    if (index < 0 || index >= static_cast<int>(_sheets.size())) {
        setMessage(kOutOfRange);
        return SheetTypeOther;
    }
    setOk();
    switch (_sheets[index]->docType()) {
        case Bof::kWorksheet: return SheetTypeWorksheet;
        case Bof::kChart: return SheetTypeChart;
        default: return SheetTypeOther;
    }
}

template <class T>
bool BookImplT<T>::delSheet(int index) {
    return guard(false, [&] {
        if (index < 0 || index >= static_cast<int>(_sheets.size())) throw zverror(kOutOfRange);
        if (_sheets.size() == 1) throw zverror("can't remove the last sheet in workbook");
        SheetImplT<T>* sheet = _sheets[index];
        sheet->releaseStrings();
        delete sheet;
        _sheets.erase(_sheets.begin() + index);
        _boundSheets.erase(_boundSheets.begin() + index);
        followSheetList(index, false);
        int active = activeSheet();
        int last = static_cast<int>(_sheets.size()) - 1;
        setActiveSheet(active < last ? active : last);
        _rrTabId.clear();
        for (size_t i = 0; i < _sheets.size(); ++i) _rrTabId.push_back(static_cast<uint16_t>(i + 1));
        return true;
    });
}

template <class T>
IFormatT<T>* BookImplT<T>::addFormat(IFormatT<T>* from) {
    return guard<IFormatT<T>*>(nullptr, [&]() -> IFormatT<T>* {
        std::unique_ptr<FormatImplT<T>> format(new FormatImplT<T>(this));
        format->flags = 1;
        if (from) {
            IFontT<T>* font = addFont(from->font());
            format->setFont(font);
            int id = from->numFormat();
            if (id < 164) {
                format->setNumFormat(id);
            } else {
                auto* binary = dynamic_cast<FormatImplT<T>*>(from);
                const T* text = binary ? binary->customNumFormat() : nullptr;
                format->setNumFormat(text ? addCustomNumFormat(text) : id);
            }
            format->setAlignH(from->alignH());
            format->setAlignV(from->alignV());
            format->setWrap(from->wrap());
            format->setRotation(from->rotation());
            format->setIndent(from->indent());
            format->setShrinkToFit(from->shrinkToFit());
            format->setBorderLeft(from->borderLeft());
            format->setBorderRight(from->borderRight());
            format->setBorderTop(from->borderTop());
            format->setBorderBottom(from->borderBottom());
            format->setBorderLeftColor(from->borderLeftColor());
            format->setBorderRightColor(from->borderRightColor());
            format->setBorderTopColor(from->borderTopColor());
            format->setBorderBottomColor(from->borderBottomColor());
            format->setBorderDiagonal(from->borderDiagonal());
            format->setBorderDiagonalStyle(from->borderDiagonalStyle());
            format->setBorderDiagonalColor(from->borderDiagonalColor());
            format->setFillPattern(from->fillPattern());
            format->setPatternForegroundColor(from->patternForegroundColor());
            format->setPatternBackgroundColor(from->patternBackgroundColor());
            format->setLocked(from->locked());
            format->setHidden(from->hidden());
        }
        _formats.push_back(format.get());
        return format.release();
    });
}

template <class T>
IFontT<T>* BookImplT<T>::addFont(IFontT<T>* from) {
    return guard<IFontT<T>*>(nullptr, [&]() -> IFontT<T>* {
        std::unique_ptr<FontImplT<T>> font(new FontImplT<T>(this));
        if (from) {
            font->setSize(from->size());
            font->setItalic(from->italic());
            font->setStrikeOut(from->strikeOut());
            font->setColor(from->color());
            font->setBold(from->bold());
            font->setScript(from->script());
            font->setUnderline(from->underline());
            const T* name = from->name();
            if (name && !font->setName(name)) throw zverror(_message);
        }
        _fonts.push_back(font.get());
        return font.release();
    });
}

template <class T>
int BookImplT<T>::addCustomNumFormatWide(const std::wstring& text) {
    std::set<int> used;
    for (const auto& entry : _customNumFormats) {
        used.insert(entry.first);
        if (entry.second == text) return entry.first;
    }
    for (int id = 164; id <= 392; ++id) {
        if (used.count(id)) continue;
        _customNumFormats.emplace_back(static_cast<uint16_t>(id), text);
        return id;
    }
    throw zverror("maximum number of custom formats is exceeded");
}

template <class T>
int BookImplT<T>::addCustomNumFormat(const T* text) {
    return guard(0, [&] {
        std::wstring wide;
        if (text) toWide(text, _utf8Mode, wide);
        return addCustomNumFormatWide(wide);
    });
}

template <class T>
const wchar_t* BookImplT<T>::customNumFormatText(int id) const {
    for (const auto& entry : _customNumFormats)
        if (entry.first == id) return entry.second.c_str();
    return nullptr;
}

template <class T>
const T* BookImplT<T>::customNumFormat(int id) {
    return guard<const T*>(nullptr, [&]() -> const T* {
        const wchar_t* text = customNumFormatText(id);
        if (!text) throw zverror("custom number format not found");
        return tc(text);
    });
}

template <class T>
IFormatT<T>* BookImplT<T>::format(int index) {
    if (index < 0 || index >= static_cast<int>(_formats.size())) {
        setMessage(kOutOfRange);
        return nullptr;
    }
    setOk();
    return _formats[index];
}

template <class T>
IFontT<T>* BookImplT<T>::font(int index) {
    if (index < 0 || index >= static_cast<int>(_fonts.size())) {
        setMessage(kOutOfRange);
        return nullptr;
    }
    setOk();
    return _fonts[index];
}

template <class T>
double BookImplT<T>::datePack(int year, int month, int day, int hour, int min, int sec, int msec) {
    long long whole = 0;
    if (year > 0 || month > 0 || day > 0) {
        long long y = year, m = month, d = day;
        long long a = (m - 14) / 12;
        long long julian = d - 32075 + 1461 * (y + 4800 + a) / 4 + 367 * (m - 2 - 12 * a) / 12 -
                           3 * ((y + 4900 + a) / 100) / 4;
        whole = julian - (_date1904 ? 2416481 : 2415019);
    }
    long double value = static_cast<long double>(whole) + hour / 24.0L + min / 1440.0L + sec / 86400.0L +
                        msec / 86400000.0L;
    setOk();
    return static_cast<double>(value);
}

template <class T>
bool BookImplT<T>::dateUnpack(double value, int* year, int* month, int* day, int* hour, int* min,
                              int* sec, int* msec) {
    if (!(value > -657435.0) || !(value < 2958466.0)) return false;
    double whole = value >= 0 ? std::floor(value) : std::ceil(value);
    double frac = value - whole + 1e-11;
    if (frac >= 1.0) frac -= 1e-11;
    int y = 0, mo = 0, d = 0;
    if (whole > 0) {
        long long j = static_cast<long long>(value) + (_date1904 ? 2416481 : 2415019);
        long long l = j + 68569;
        long long n = 4 * l / 146097;
        l = l - (146097 * n + 3) / 4;
        long long i = 4000 * (l + 1) / 1461001;
        l = l - 1461 * i / 4 + 31;
        long long k = 80 * l / 2447;
        d = static_cast<int>(l - 2447 * k / 80);
        long long m = k / 11;
        mo = static_cast<int>(k + 2 - 12 * m);
        y = static_cast<int>(100 * (n - 49) + i + m);
    }
    if (year) *year = y;
    if (month) *month = mo;
    if (day) *day = d;
    if (hour) {
        frac *= 24;
        *hour = static_cast<int16_t>(frac);
        frac -= *hour;
    }
    if (min) {
        frac *= 60;
        *min = static_cast<int16_t>(frac);
        frac -= *min;
    }
    if (sec) {
        frac *= 60;
        *sec = static_cast<int16_t>(frac);
        frac -= *sec;
    }
    if (msec) *msec = static_cast<int16_t>(frac * 1000 + 0.5);
    setOk();
    return true;
}

template <class T>
Color BookImplT<T>::colorPack(int red, int green, int blue) {
    return guard(ColorAutomatic, [&] {
        _paletteUsed = true;
        return static_cast<Color>(_palette.addRGB(red, green, blue));
    });
}

template <class T>
void BookImplT<T>::colorUnpack(Color color, int* red, int* green, int* blue) {
    guardVoid([&] { _palette.getRGB(color, red, green, blue); });
}

template <class T>
void BookImplT<T>::setActiveSheet(int index) {
    guardVoid([&] {
        if (index < 0 || index >= static_cast<int>(_sheets.size())) throw zverror(kOutOfRange);
        _window1.itabCur = static_cast<uint16_t>(index);
        for (size_t i = 0; i < _sheets.size(); ++i) _sheets[i]->setSelected(static_cast<int>(i) == index);
    });
}

template <class T>
int BookImplT<T>::pictureSize() const {
    return guard(0, [&] { return _drawing.pictureCount(); });
}

template <class T>
int BookImplT<T>::getPicture(int index, const char** data, unsigned* size) const {
    return guard(static_cast<int>(PictureError), [&] {
        BlipView blip = _drawing.picture(index);
        if (data) *data = reinterpret_cast<const char*>(blip.data);
        if (size) *size = static_cast<unsigned>(blip.size);
        return static_cast<int>(blip.kind);
    });
}

template <class T>
int BookImplT<T>::addPicture(const T* filename) {
    return guard(-1, [&] {
        if (!filename) throw zverror("unknown picture format");
        std::wstring name;
        toWide(filename, _utf8Mode, name);
        BlipKind kind = pictureKindByName(name);
        std::ifstream file(narrowPath(filename, _utf8Mode), std::ios::binary);
        if (!file) throw zverror("can't open file");
        std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        const uint8_t* data = reinterpret_cast<const uint8_t*>(bytes.data());
        if (kind == BlipKind::Jpeg) {
            int width, height;
            jpegSize(data, bytes.size(), &width, &height);
        }
        return _drawing.addPicture(kind, data, bytes.size());
    });
}

template <class T>
int BookImplT<T>::addPicture2(const char* data, unsigned size) {
    return guard(-1, [&] {
        const uint8_t* bytes = reinterpret_cast<const uint8_t*>(data);
        BlipKind kind = sniffPicture(bytes, size);
        return _drawing.addPicture(kind, bytes, size);
    });
}

template <class T>
const T* BookImplT<T>::defaultFont(int* size) {
    return guard<const T*>(nullptr, [&]() -> const T* {
        if (_fonts.empty()) throw zverror("fonts is empty");
        if (size) *size = _fonts[0]->size();
        return _fonts[0]->name();
    });
}

template <class T>
void BookImplT<T>::setDefaultFont(const T* name, int size) {
    guardVoid([&] {
        if (_fonts.empty()) throw zverror("fonts is empty");
        if (!_fonts[0]->setName(name)) throw zverror(_message);
        _fonts[0]->setSize(size);
    });
}

template <class T>
bool BookImplT<T>::refR1C1() const {
    if (_sheets.empty()) return _refR1C1;
    return !_sheets.back()->refA1();
}

template <class T>
void BookImplT<T>::setRefR1C1(bool value) {
    for (SheetImplT<T>* s : _sheets) s->setRefA1(!value);
    _refR1C1 = value;
}

template <class T>
bool BookImplT<T>::setLocale(const char* locale) {
    if (locale && std::string(locale) == "UTF-8") {
        _utf8Mode = true;
        setOk();
        return true;
    }
    _utf8Mode = false;
    const char* current = std::setlocale(LC_ALL, nullptr);
    _savedLocale = current ? current : "";
    if (!std::setlocale(LC_ALL, locale ? locale : "")) {
        setMessage("setlocale error");
        return false;
    }
    setOk();
    return true;
}

template <class T>
const T* BookImplT<T>::tc(const wchar_t* text) {
    if (!text) return nullptr;
    _text.assign(text);
    const T* result = _text.c_str<T>(_utf8Mode);
    if (_text.failed())
        setMessage("warning: some characters have not been converted properly");
    else
        setOk();
    return result;
}

template <class T>
int BookImplT<T>::formatIndex(const IFormatT<T>* format) const {
    for (size_t i = 0; i < _formats.size(); ++i)
        if (static_cast<const IFormatT<T>*>(_formats[i]) == format) return static_cast<int>(i);
    return -1;
}

template <class T>
int BookImplT<T>::fontIndex(const IFontT<T>* font) const {
    for (size_t i = 0; i < _fonts.size(); ++i)
        if (static_cast<const IFontT<T>*>(_fonts[i]) == font) return static_cast<int>(i);
    return -1;
}

template <class T>
int BookImplT<T>::visibleSheetCount() const {
    int count = 0;
    for (const BoundSheet& b : _boundSheets)
        if ((b.hsState & 3) == SheetVisible) ++count;
    return count;
}

template <class T>
int BookImplT<T>::getNextVisibleSheet(int index) const {
    int n = static_cast<int>(_boundSheets.size());
    if (index < 0 || index >= n) return index;
    for (int i = (index + 1) % n; i != index; i = (i + 1) % n)
        if ((_boundSheets[i].hsState & 3) == 0) return i;
    return index;
}

template <class T>
void BookImplT<T>::calcActiveSheet() {
    int active = activeSheet();
    if (active < static_cast<int>(_boundSheets.size()) && (_boundSheets[active].hsState & 3) != 0)
        setActiveSheet(getNextVisibleSheet(active));
}

template <class T>
void BookImplT<T>::calcFirstTab() {
    for (size_t i = 0; i < _boundSheets.size(); ++i) {
        if ((_boundSheets[i].hsState & 3) == 0) {
            _window1.itabFirst = static_cast<uint16_t>(i);
            return;
        }
    }
}

template <class T>
int BookImplT<T>::getTabIndex(const SheetImplT<T>* sheet) const {
    for (size_t i = 0; i < _sheets.size(); ++i)
        if (_sheets[i] == sheet) return static_cast<int>(i);
    return static_cast<int>(_sheets.size());
}

template class BookImplT<char>;
template class BookImplT<wchar_t>;

}  // namespace zelvar

using zelvar::BookImplT;

extern "C" {

ZELVAR_API zelvar::IBookT<char>* zvCreateBookA(void) {
    try {
        return new BookImplT<char>();
    } catch (...) {
        return nullptr;
    }
}

ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateBookW(void) {
    try {
        return new BookImplT<wchar_t>();
    } catch (...) {
        return nullptr;
    }
}

ZELVAR_API zelvar::IBookT<char>* zvCreateBookCA(void) { return new BookImplT<char>(); }

ZELVAR_API zelvar::IBookT<wchar_t>* zvCreateBookCW(void) { return new BookImplT<wchar_t>(); }
}
