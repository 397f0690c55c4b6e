#include "book/sheet_impl.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "book/font_impl.h"
#include "book/format_impl.h"
#include "formula/reverse_polish.h"
#include "formula/xml_formula.h"
#include "frame/excel_util.h"

namespace zelvar {

namespace {
const char kNotImplemented[] = "not implemented";
}  // namespace

template <class T>
SheetImplT<T>::SheetImplT(BookImplT<T>* book) : _book(book) {
    _bof.dt = Bof::kWorksheet;
}

template <class T>
void SheetImplT<T>::retainStrings() {
    for (const LabelSst& label : _labelSsts) _book->sst().addUser(label.isst);
}

template <class T>
SheetImplT<T>::~SheetImplT() {}

template <class T>
void SheetImplT<T>::releaseStrings() {
    for (const LabelSst& label : _labelSsts) _book->sst().removeUser(label.isst);
}

template <class T>
void SheetImplT<T>::checkRanges(int row, int col) const {
    if (static_cast<unsigned>(row) > 65535u) throw zverror("row must be in range 0-65535");
    if (static_cast<unsigned>(col) >= 256u) throw zverror("col must be in range 0-255");
}

template <class T>
const T* SheetImplT<T>::notImplemented() const {
    _book->setMessage(kNotImplemented);
    return nullptr;
}

template <class T>
const T* SheetImplT<T>::tc(const wchar_t* text) const {
    _keeper.assign(text, _book->utf8Mode());
    return _keeper.c_str();
}

template <>
const wchar_t* SheetImplT<wchar_t>::tc(const wchar_t* text) const {
    return text;
}

namespace {
// Whether a formula's tokens are only a reference to a group's master cell, and which.
bool isExp(const std::vector<uint8_t>& tokens, unsigned& row, unsigned& col) {
    if (tokens.size() < 7 || le::get16(&tokens[0]) != 5 || tokens[2] != 0x01) return false;
    row = le::get16(&tokens[3]);
    col = le::get16(&tokens[5]);
    return true;
}
void setExp(std::vector<uint8_t>& tokens, unsigned row, unsigned col) {
    std::vector<uint8_t> rest(tokens.size() > 7 ? tokens.begin() + 7 : tokens.end(), tokens.end());
    tokens = {5, 0, 0x01};
    le::append16(tokens, row);
    le::append16(tokens, col);
    tokens.insert(tokens.end(), rest.begin(), rest.end());
}
}  // namespace

template <class T>
void SheetImplT<T>::delSharedFormula(int row, int col) {
    uint32_t e = _sheetIndex.get(static_cast<unsigned>(row), static_cast<unsigned>(col));
    if (!e || SheetIndex::kind(e) != KindFormula) return;
    FormulaBlock& master = _formulas[SheetIndex::position(e)];
    unsigned mr = 0, mc = 0;
    if (!isExp(master.formula.tokens, mr, mc) || mr != static_cast<unsigned>(row) || mc != static_cast<unsigned>(col))
        return;
    if (!master.shared || master.shrFmla.size() < 6) return;
    const std::vector<uint8_t>& range = master.shrFmla;
    unsigned rwFirst = le::get16(&range[0]), rwLast = le::get16(&range[2]);
    unsigned colFirst = range[4], colLast = range[5];
    bool moved = false;
    unsigned newRow = 0, newCol = 0;
    for (unsigned r = rwFirst; r <= rwLast && r < SheetIndex::kRows; ++r) {
        for (unsigned c = colFirst; c <= colLast && c < SheetIndex::kCols; ++c) {
            if (r == static_cast<unsigned>(row) && c == static_cast<unsigned>(col)) continue;
            uint32_t other = _sheetIndex.get(r, c);
            if (!other || SheetIndex::kind(other) != KindFormula) continue;
            FormulaBlock& cell = _formulas[SheetIndex::position(other)];
            unsigned er = 0, ec = 0;
            if (!isExp(cell.formula.tokens, er, ec) || er != static_cast<unsigned>(row) || ec != static_cast<unsigned>(col))
                continue;
            if (!moved) {
                // The first cell of the group takes the shared formula and becomes its master.
                FormulaBlock& source = _formulas[SheetIndex::position(e)];
                cell.shared = true;
                cell.shrFmla = source.shrFmla;
                newRow = r;
                newCol = c;
                moved = true;
            }
            setExp(cell.formula.tokens, newRow, newCol);
        }
    }
}

template <class T>
uint16_t SheetImplT<T>::getFormatID(unsigned row, unsigned col) const {
    uint32_t e = _sheetIndex.get(row & 0xFFFF, col & 0xFF);
    if (!e) return 15;
    return visitCell(e, [](const auto& record) { return cellHead(record).xf; });
}

template <class T>
uint16_t SheetImplT<T>::formatForWrite(int row, int col, IFormatT<T>* format) const {
    if (!format) return getFormatID(row, col);
    int index = _book->formatIndex(format);
    if (index < 0) throw zverror("specified format not found");
    return static_cast<uint16_t>(index);
}

template <class T>
IFormatT<T>* SheetImplT<T>::formatAt(uint16_t xf) const {
    return _book->formats().at(xf);
}

// The shared logic of number, boolean and blank writes: a cell of the same kind changes in place,
// any other gets a new record and the index entry is repointed; the old record stays behind.
template <class T>
template <class R>
void SheetImplT<T>::writeNumber(int row, int col, double value, RecordVector<R>& vec, IFormatT<T>* format) {
    uint16_t xf = formatForWrite(row, col, format);
    uint32_t& e = _sheetIndex(row, col);
    if (e && SheetIndex::kind(e) == R::kind) {
        R& record = vec[SheetIndex::position(e)];
        if constexpr (R::kind == KindRK || R::kind == KindNumber) record.setValue(value);
        else if constexpr (R::kind == KindBoolErr) record.setValue(value != 0);
        if (format) record.xf = xf;
        delSharedFormula(row, col);
    } else {
        delSharedFormula(row, col);
        R record;
        record.row = static_cast<uint16_t>(row);
        record.col = static_cast<uint16_t>(col);
        record.xf = xf;
        if constexpr (R::kind == KindRK || R::kind == KindNumber) record.setValue(value);
        else if constexpr (R::kind == KindBoolErr) record.setValue(value != 0);
        if (vec.size() >= (1u << 28)) throw zverror("too many cells in sheet");
        e = SheetIndex::entry(R::kind, static_cast<unsigned>(vec.size()));
        vec.push_back(record);
    }
    _dimensions.update(row, col);
}

template <class T>
bool SheetImplT<T>::writeNum(int row, int col, double value, IFormatT<T>* format) {
    return _book->guard(false, [&] {
        checkRanges(row, col);
        uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        // Exactly representable as an unscaled floating RK: low word zero, low two bits of the
        // high word zero.
        if (static_cast<uint32_t>(bits) == 0 && ((bits >> 32) & 3) == 0)
            writeNumber(row, col, value, _rks, format);
        else
            writeNumber(row, col, value, _numbers, format);
        return true;
    });
}

template <class T>
bool SheetImplT<T>::writeBool(int row, int col, bool value, IFormatT<T>* format) {
    return _book->guard(false, [&] {
        checkRanges(row, col);
        writeNumber(row, col, value ? 1.0 : 0.0, _boolErrs, format);
        return true;
    });
}

template <class T>
bool SheetImplT<T>::writeBlank(int row, int col, IFormatT<T>* format) {
    return _book->guard(false, [&] {
        checkRanges(row, col);
        writeNumber(row, col, 0.0, _blanks, format);
        return true;
    });
}

template <class T>
bool SheetImplT<T>::writeError(int row, int col, int code, IFormatT<T>* format) {
    return _book->guard(false, [&] {
        checkRanges(row, col);
        writeNumber(row, col, 0.0, _boolErrs, format);
        BoolErr& record = _boolErrs[SheetIndex::position(_sheetIndex(row, col))];
        record.fError = 1;
        record.bBoolErr = static_cast<uint8_t>(code);
        return true;
    });
}

template <class T>
size_t SheetImplT<T>::recordCount(CellKind kind) const {
    if (kind == KindNone || kind > KindLabel) return 0;
    return withRecords(kind, [](const auto& records) { return records.size(); });
}

template <class T>
bool SheetImplT<T>::writeStr(int row, int col, const T* value, IFormatT<T>* format) {
    return _book->guard(false, [&] {
        checkRanges(row, col);
        if (!value) throw zverror("string mustn't be NULL");
        if (tslen(value) >= 32768) throw zverror("string is too long");
        uint16_t xf = formatForWrite(row, col, format);
        SST<T>& sst = _book->sst();
        uint32_t& e = _sheetIndex(row, col);
        if (e && SheetIndex::kind(e) == KindLabelSst) {
            LabelSst& record = _labelSsts[SheetIndex::position(e)];
            if (sst.users(record.isst) > 1) {
                // Another record shares the string: this cell takes a string of its own.
                unsigned index = sst.insert(value, false);
                sst.removeUser(record.isst);
                sst.addUser(index);
                record.isst = index;
            } else {
                sst.insert(record.isst, value);
            }
            if (format) record.xf = xf;
            delSharedFormula(row, col);
        } else {
            unsigned index = sst.insert(value, false);
            delSharedFormula(row, col);
            LabelSst record;
            record.row = static_cast<uint16_t>(row);
            record.col = static_cast<uint16_t>(col);
            record.xf = xf;
            record.isst = index;
            e = SheetIndex::entry(KindLabelSst, static_cast<unsigned>(_labelSsts.size()));
            _labelSsts.push_back(record);
            sst.addUser(index);
        }
        _dimensions.update(row, col);
        return true;
    });
}

template <class T>
double SheetImplT<T>::readNum(int row, int col, IFormatT<T>** format) const {
    if (format) *format = nullptr;
    return _book->guard(0.0, [&] {
        checkRanges(row, col);
        uint32_t e = entryAt(row, col);
        double value;
        uint16_t xf;
        unsigned p = SheetIndex::position(e);
        switch (e ? SheetIndex::kind(e) : 0) {
            case KindNumber:
                value = _numbers[p].num;
                xf = _numbers[p].xf;
                break;
            case KindRK:
                value = _rks[p].value();
                xf = _rks[p].xf;
                break;
            case KindFormula:
                if (_formulas[p].formula.cellType() == CellNumber) {
                    value = _formulas[p].formula.number();
                    xf = _formulas[p].formula.xf;
                    break;
                }
                // fall through
            default:
                throw zverror("this cell doesn't contain a number");
        }
        if (format) *format = formatAt(xf);
        return value;
    });
}

template <class T>
bool SheetImplT<T>::readBool(int row, int col, IFormatT<T>** format) const {
    if (format) *format = nullptr;
    return _book->guard(false, [&] {
        checkRanges(row, col);
        uint32_t e = entryAt(row, col);
        unsigned p = SheetIndex::position(e);
        bool value;
        uint16_t xf;
        if (e && SheetIndex::kind(e) == KindBoolErr && _boolErrs[p].fError == 0) {
            value = _boolErrs[p].bBoolErr == 1;
            xf = _boolErrs[p].xf;
        } else if (e && SheetIndex::kind(e) == KindFormula &&
                   _formulas[p].formula.cellType() == CellBoolean) {
            value = _formulas[p].formula.boolValue();
            xf = _formulas[p].formula.xf;
        } else {
            throw zverror("this cell doesn't contain a bool");
        }
        if (format) *format = formatAt(xf);
        return value;
    });
}

template <class T>
bool SheetImplT<T>::readBlank(int row, int col, IFormatT<T>** format) const {
    return _book->guard(false, [&] {
        if (!format) throw zverror("format mustn't be NULL");
        *format = nullptr;
        checkRanges(row, col);
        uint32_t e = entryAt(row, col);
        unsigned p = SheetIndex::position(e);
        uint16_t xf;
        if (e && SheetIndex::kind(e) == KindBlank) {
            xf = _blanks[p].xf;
        } else if (e && SheetIndex::kind(e) == KindFormula &&
                   _formulas[p].formula.cellType() == CellBlank) {
            xf = _formulas[p].formula.xf;
        } else {
            throw zverror("this cell doesn't contain a blank");
        }
        *format = formatAt(xf);
        return true;
    });
}

template <class T>
const T* SheetImplT<T>::readStr(int row, int col, IFormatT<T>** format) {
    if (format) *format = nullptr;
    return _book->template guard<const T*>(nullptr, [&]() -> const T* {
        checkRanges(row, col);
        uint32_t e = entryAt(row, col);
        unsigned p = SheetIndex::position(e);
        const wchar_t* text = nullptr;
        uint16_t xf = 15;
        switch (e ? SheetIndex::kind(e) : 0) {
            case KindLabelSst:
                text = _book->sst().extract(_labelSsts[p].isst);
                xf = _labelSsts[p].xf;
                break;
            case KindLabel:
                text = _labels[p].text ? _labels[p].text : L"";
                xf = _labels[p].xf;
                break;
            case KindFormula:
                if (_formulas[p].formula.cellType() == CellString) {
                    text = _formulas[p].formula.stringValue ? _formulas[p].formula.stringValue : L"";
                    xf = _formulas[p].formula.xf;
                    break;
                }
                // fall through
            default:
                throw zverror("this cell doesn't contain a string");
        }
        if (format) *format = formatAt(xf);
        return tc(text);
    });
}

template <class T>
int SheetImplT<T>::readError(int row, int col) const {
    return _book->guard(static_cast<int>(ErrorNone), [&] {
        checkRanges(row, col);
        uint32_t e = entryAt(row, col);
        unsigned p = SheetIndex::position(e);
        if (e && SheetIndex::kind(e) == KindBoolErr && _boolErrs[p].fError) return static_cast<int>(_boolErrs[p].bBoolErr);
        if (e && SheetIndex::kind(e) == KindFormula && _formulas[p].formula.cellType() == CellError)
            return _formulas[p].formula.errorValue();
        return static_cast<int>(ErrorNone);
    });
}

// Row and column are taken as 16-bit values here, without a range check.
template <class T>
int SheetImplT<T>::cellType(int row, int col) const {
    uint32_t e = _sheetIndex.get(static_cast<uint16_t>(row), static_cast<uint16_t>(col) & 0xFF);
    if (static_cast<uint16_t>(col) > 255) e = 0;
    if (!e) return CellEmpty;
    return visitCell(e, [](const auto& record) -> int {
        using R = std::decay_t<decltype(record)>;
        if constexpr (R::kind == KindRK || R::kind == KindNumber) return CellNumber;
        else if constexpr (R::kind == KindLabelSst || R::kind == KindLabel) return CellString;
        else if constexpr (R::kind == KindBlank) return CellBlank;
        else if constexpr (R::kind == KindBoolErr) return record.fError ? CellError : CellBoolean;
        else return record.formula.cellType();
    });
}

template <class T>
bool SheetImplT<T>::isFormula(int row, int col) const {
    if (static_cast<uint16_t>(col) > 255) return false;
    uint32_t e = _sheetIndex.get(static_cast<uint16_t>(row), static_cast<uint16_t>(col));
    return e && SheetIndex::kind(e) == KindFormula;
}

template <class T>
bool SheetImplT<T>::findDateChars(const wchar_t* text) const {
    if (!text || !*text) return false;
    bool inBracket = false;
    for (const wchar_t* p = text; *p; ++p) {
        if (*p == L'[') {
            inBracket = true;
        } else if (*p == L']') {
            inBracket = false;
        } else if (!inBracket && std::wcschr(L"mdyhsMDYHS", *p)) {
            return true;
        }
    }
    return false;
}

template <class T>
bool SheetImplT<T>::isDate(int row, int col) const {
    if (cellType(row, col) != CellNumber) return false;
    IFormatT<T>* format = nullptr;
    readNum(row, col, &format);
    if (!format) return false;
    int numFormat = format->numFormat();
    if ((numFormat >= 0 && numFormat <= 13) || (numFormat >= 37 && numFormat <= 44) || numFormat == 48 ||
        numFormat == 49)
        return false;
    if ((numFormat >= 14 && numFormat <= 22) || (numFormat >= 45 && numFormat <= 47)) return true;
    return findDateChars(_book->customNumFormatText(numFormat));
}

template <class T>
void SheetImplT<T>::setCellFormat(int row, int col, IFormatT<T>* format) {
    _book->guardVoid([&] {
        checkRanges(row, col);
        int index = format ? _book->formatIndex(format) : -1;
        if (index < 0) throw zverror("specified format is not found");
        uint16_t xf = static_cast<uint16_t>(index);
        uint32_t e = entryAt(row, col);
        if (!e) {
            if (!writeBlank(row, col, format)) throw zverror(_book->errorMessage());
            return;
        }
        visitCell(e, [xf](auto& record) { cellHead(record).xf = xf; });
    });
}

template <class T>
IFormatT<T>* SheetImplT<T>::cellFormat(int row, int col) const {
    return _book->template guard<IFormatT<T>*>(nullptr, [&]() -> IFormatT<T>* {
        checkRanges(row, col);
        auto& formats = _book->formats();
        uint32_t e = entryAt(row, col);
        if (e) {
            unsigned kind = SheetIndex::kind(e);
            if (kind < KindRK || kind > KindLabel) throw zverror("unknown type of cell");
            return formats.at(getFormatID(row, col));
        }
        unsigned xf = 0;
        bool found = false;
        for (const Row& r : _rows) {
            if (r.row == row && (r.grbit & 0x80)) {
                xf = r.ixfe & 0xFFF;
                found = true;
                break;
            }
        }
        if (!found) {
            for (const ColInfo& c : _colInfos) {
                if (col >= c.colFirst && col <= c.colLast) {
                    xf = c.ixfe;
                    found = true;
                    break;
                }
            }
        }
        if (formats.empty()) throw zverror("formats are not found");
        if (xf >= formats.size()) throw zverror("format not found");
        return formats[xf];
    });
}

template <class T>
void SheetImplT<T>::recalcDimensions() {
    _dimensions.reset();
    // Per touched row only its first and last cell can widen the range.
    for (unsigned r = _sheetIndex.nextRow(0); r < SheetIndex::kRows; r = _sheetIndex.nextRow(r + 1)) {
        unsigned first = _sheetIndex.colBegin(r), last = _sheetIndex.colEnd(r);
        while (first < last && !_sheetIndex(r, first)) ++first;
        while (last > first && !_sheetIndex(r, last - 1)) --last;
        if (first == last) continue;
        _dimensions.update(r, first);
        if (last - 1 != first) _dimensions.update(r, last - 1);
    }
    for (const auto& merge : _mergeCells) {
        for (const Rect& rect : merge) {
            bool empty = _dimensions.rwMic == _dimensions.rwMac;
            if (rect.rwFirst < _dimensions.rwMic || empty) _dimensions.rwMic = rect.rwFirst;
            if (rect.rwLast + 1u > _dimensions.rwMac) _dimensions.rwMac = rect.rwLast + 1u;
            bool emptyCols = _dimensions.colMic == _dimensions.colMac;
            if (rect.colFirst < _dimensions.colMic || emptyCols) _dimensions.colMic = rect.colFirst;
            if (rect.colLast + 1u > _dimensions.colMac) _dimensions.colMac = static_cast<uint16_t>(rect.colLast + 1u);
        }
    }
}

// Writes keep the used range exact as they go; only loads and edits that can shrink or move it
// leave it to be recomputed, once, when it is next asked for.
template <class T>
void SheetImplT<T>::settleDimensions() const {
    if (_dimensionsDirty) {
        const_cast<SheetImplT*>(this)->recalcDimensions();
        _dimensionsDirty = false;
    }
}

template <class T>
int SheetImplT<T>::firstRow() const {
    settleDimensions();
    return static_cast<int>(_dimensions.rwMic);
}

template <class T>
int SheetImplT<T>::lastRow() const {
    if (_dimensionsDirty) settleDimensions();
    return static_cast<int>(_dimensions.rwMac);
}

template <class T>
int SheetImplT<T>::firstCol() const {
    firstRow();
    return _dimensions.colMic;
}

template <class T>
int SheetImplT<T>::lastCol() const {
    if (_dimensionsDirty) settleDimensions();
    return _dimensions.colMac;
}

template <class T>
void SheetImplT<T>::setSelected(bool selected) {
    if (selected)
        _window2.grbit |= 0x600;
    else
        _window2.grbit &= static_cast<uint16_t>(~0x600);
}

template <class T>
bool SheetImplT<T>::storeName(const T* name) {
    std::basic_string<T> text(name ? name : std::basic_string<T>().c_str());
    bool utf8 = _book->utf8Mode();
    bool cut = false;
    if constexpr (std::is_same<T, char>::value) {
        if (utf8) {
            // Cut after 31 code points, never inside a character.
            size_t points = 0;
            for (size_t i = 0; i < text.size(); ++i) {
                if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80 && ++points == 32) {
                    text.resize(i);
                    cut = true;
                    break;
                }
            }
        }
    }
    if (!cut && !(std::is_same<T, char>::value && utf8) && text.size() > 31) {
        text.resize(31);
        cut = true;
    }
    toWide(text.c_str(), utf8, _name);
    return cut;
}

template <class T>
const T* SheetImplT<T>::name() const {
    return tc(_name.c_str());
}

template <class T>
void SheetImplT<T>::setName(const T* name) {
    _book->guardVoid([&] {
        if (!name) throw zverror("sheet name mustn't be NULL");
        bool cut = storeName(name);
        if (cut) throw zverror("warning: sheet's name is cut to 31 characters");
    });
}

template <class T>
SheetState SheetImplT<T>::hidden() const {
    int tab = _book->getTabIndex(this);
    auto& bound = _book->boundSheetsRef();
    if (tab >= static_cast<int>(bound.size())) return SheetVisible;
    return static_cast<SheetState>(bound[tab].hsState & 3);
}

template <class T>
bool SheetImplT<T>::setHidden(SheetState state) {
    return _book->guard(false, [&] {
        int tab = _book->getTabIndex(this);
        auto& bound = _book->boundSheetsRef();
        if (tab >= static_cast<int>(bound.size())) throw zverror("book not found");
        if ((state == SheetHidden || state == SheetVeryHidden) && _book->visibleSheetCount() > 0 &&
            _book->visibleSheetCount() < 2 && (bound[tab].hsState & 3) == SheetVisible)
            throw zverror("a workbook must contain at least one visible worksheet");
        bound[tab].hsState = static_cast<uint8_t>((bound[tab].hsState & ~3) | (state & 3));
        _book->calcFirstTab();
        _book->calcActiveSheet();
        return true;
    });
}

template <class T>
void SheetImplT<T>::addrToRowCol(const T* addr, int* row, int* col, bool* rowRelative, bool* colRelative) {
    _book->guardVoid([&] {
        if (!addr) throw zverror("address mustn't be NULL");
        std::wstring wide;
        toWide(addr, _book->utf8Mode(), wide);
        ExcelUtil::addrToRowCol(wide, row, col, rowRelative, colRelative);
    });
}

template <class T>
const T* SheetImplT<T>::rowColToAddr(int row, int col, bool rowRelative, bool colRelative) {
    return _book->template guard<const T*>(nullptr, [&]() -> const T* {
        std::wstring addr = ExcelUtil::rowColToAddr(row, col, rowRelative, colRelative);
        _keeper.assign(addr.c_str(), _book->utf8Mode());
        if constexpr (std::is_same<T, wchar_t>::value) _keeper.assign(addr.c_str(), false);
        return _keeper.c_str();
    });
}

template <class T>
bool SheetImplT<T>::displayGridlines() const {
    return (_window2.grbit >> 1) & 1;
}

template <class T>
void SheetImplT<T>::setDisplayGridlines(bool show) {
    _window2.grbit = static_cast<uint16_t>(show ? _window2.grbit | 2 : _window2.grbit & ~2);
}

template <class T>
void SheetImplT<T>::getTopLeftView(int* row, int* col) const {
    if (row) *row = _window2.rwTop;
    if (col) *col = _window2.colLeft;
}

template <class T>
void SheetImplT<T>::setTopLeftView(int row, int col) {
    _window2.rwTop = static_cast<uint16_t>(row);
    _window2.colLeft = static_cast<uint16_t>(col);
}

template <class T>
bool SheetImplT<T>::groupSummaryBelow() const {
    return (_wsBool >> 6) & 1;
}

template <class T>
void SheetImplT<T>::setGroupSummaryBelow(bool below) {
    _wsBool = static_cast<uint16_t>(below ? _wsBool | 0x40 : _wsBool & ~0x40);
}

template <class T>
bool SheetImplT<T>::groupSummaryRight() const {
    return (_wsBool >> 7) & 1;
}

template <class T>
void SheetImplT<T>::setGroupSummaryRight(bool right) {
    _wsBool = static_cast<uint16_t>(right ? _wsBool | 0x80 : _wsBool & ~0x80);
}

// ---- operations that arrive with formulas, drawings, layout and structural edits ----

#define ZV_NOT_IMPLEMENTED(value)             \
    do {                                      \
        _book->setMessage(kNotImplemented);   \
        return value;                         \
    } while (0)

// Formula text from the cell's tokens. A cell of a shared or array group holds only a reference to
// its group's master; the text is then that of the group's formula, evaluated for this cell.
template <class T>
const T* SheetImplT<T>::readFormula(int row, int col, IFormatT<T>** format) {
    if (format) *format = nullptr;
    return _book->template guard<const T*>(nullptr, [&]() -> const T* {
        _formulaText.clear();
        checkRanges(row, col);
        uint32_t e = entryAt(row, col);
        if (!e || SheetIndex::kind(e) != KindFormula) throw zverror("cell doesn't contain a formula");
        const FormulaBlock& block = _formulas[SheetIndex::position(e)];
        const std::vector<uint8_t>& tokens = block.formula.tokens;
        if (tokens.size() < 2) throw zverror("Formula size is incorrect");
        size_t cce = std::min<size_t>(le::get16(&tokens[0]), tokens.size() - 2);
        const uint8_t* rgce = tokens.data() + 2;
        bool biff5 = _book->biff5();
        bool done = false;
        if (cce == 5 && rgce[0] == 0x01) {
            unsigned masterRow = le::get16(rgce + 1), masterCol = le::get16(rgce + 3);
            uint32_t m = masterCol < 256 ? _sheetIndex.get(masterRow, masterCol) : 0;
            if (m && SheetIndex::kind(m) == KindFormula) {
                const FormulaBlock& master = _formulas[SheetIndex::position(m)];
                // Shared formula: a range (6 bytes), 2 bytes, then the tokens.
                const std::vector<uint8_t>* group = master.shared ? &master.shrFmla
                                                    : master.arrayType == rt::Array ? &master.arrayRecord : nullptr;
                size_t head = master.shared ? 8 : 12;
                if (group && group->size() >= head + 2) {
                    size_t groupCce = std::min<size_t>(le::get16(group->data() + head), group->size() - head - 2);
                    _formulaText = GetFormula::getFormula(group->data() + head + 2, groupCce, biff5, *_book,
                                                          master.shared, static_cast<uint16_t>(row), static_cast<uint16_t>(col));
                    done = true;
                }
            }
        }
        if (!done) _formulaText = GetFormula::getFormula(rgce, cce, biff5, *_book, false, 0, 0);
        if (!_refA1) XMLFormula::toRefR1C1(_formulaText, row, col);
        if (format) *format = formatAt(block.formula.xf);
        return tc(_formulaText.c_str());
    });
}

// Compiles the text and stores the tokens; the cached result of a fresh formula is the number 0.
template <class T>
bool SheetImplT<T>::writeFormula(int row, int col, const T* value, IFormatT<T>* format) {
    return _book->guard(false, [&] {
        checkRanges(row, col);
        if (!value) throw zverror("formula mustn't be NULL");
        uint16_t xf = formatForWrite(row, col, format);
        std::wstring text;
        toWide(value, _book->utf8Mode(), text);
        if (!_refA1) XMLFormula::toRefA1(text, row, col, true);
        const FuncMap& funcs = sharedFuncMap();
        std::wstring rpn = toReversePolish(text, funcs);
        std::vector<uint8_t> tokens(2, 0);
        FormulaEncoder::makeFormula(tokens, rpn, *_book, funcs);
        size_t cce = tokens.size() - 2;
        if (cce > 8000) throw zverror("formula is too long");
        le::put16(&tokens[0], static_cast<uint32_t>(cce));
        uint32_t& e = _sheetIndex(row, col);
        delSharedFormula(row, col);
        if (e && SheetIndex::kind(e) == KindFormula) {
            FormulaBlock& block = _formulas[SheetIndex::position(e)];
            block.formula.xf = xf;
            block.formula.tokens = std::move(tokens);
            std::memset(block.formula.result, 0, sizeof block.formula.result);
            block.formula.grbit = 0;
            block.formula.stringValue = nullptr;
            // The records that belonged to the old formula (its shared formula, array or table,
            // text result) would contradict the new tokens and the reset result.
            block.shared = false;
            block.shrFmla.clear();
            block.arrayType = 0;
            block.arrayRecord.clear();
            block.hasString = false;
            block.stringRecord.clear();
            block.stringContinues.clear();
        } else {
            FormulaBlock block;
            block.formula.row = static_cast<uint16_t>(row);
            block.formula.col = static_cast<uint16_t>(col);
            block.formula.xf = xf;
            block.formula.tokens = std::move(tokens);
            e = SheetIndex::entry(KindFormula, static_cast<unsigned>(_formulas.size()));
            _formulas.push_back(std::move(block));
        }
        _dimensions.update(row, col);
        return true;
    });
}
#undef ZV_NOT_IMPLEMENTED

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

}  // namespace zelvar
