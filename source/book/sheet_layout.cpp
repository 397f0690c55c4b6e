// Layout and print settings of a binary sheet: column widths and row heights, hidden rows and
// columns, outline groups, page breaks, frozen panes, zoom, page setup, header and footer,
// margins, gridlines and protection. Each changes a record member that the sheet writes.
#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "book/book_impl.h"
#include "book/sheet_impl.h"

namespace zelvar {

namespace {
constexpr uint16_t kNoPrinterData = 0x4;
constexpr uint16_t kPortrait = 0x2;
constexpr uint16_t kFitToPage = 0x100;
// Widths assume a digit 7 pixels wide, whatever the default font.
constexpr int kMaxDigitWidth = 7;
}  // namespace

template <class T>
Row* SheetImplT<T>::findRow(int row) {
    return const_cast<Row*>(static_cast<const SheetImplT<T>*>(this)->findRow(row));
}

// Row operations over a range look up every row of it: a search through _rows each time would
// make them quadratic.
template <class T>
const Row* SheetImplT<T>::findRow(int row) const {
    if (_rowLookupCount > _rows.size()) {
        _rowLookup.clear();
        _rowLookupCount = 0;
    }
    for (; _rowLookupCount < _rows.size(); ++_rowLookupCount)
        _rowLookup.emplace(_rows[_rowLookupCount].row, static_cast<uint32_t>(_rowLookupCount));
    if (row < 0 || row > 65535) return nullptr;
    auto found = _rowLookup.find(static_cast<uint16_t>(row));
    return found == _rowLookup.end() ? nullptr : &_rows[found->second];
}

template <class T>
const ColInfo* SheetImplT<T>::findCol(int col) const {
    for (const ColInfo& c : _colInfos)
        if (col >= c.colFirst && col <= c.colLast) return &c;
    return nullptr;
}

template <class T>
bool SheetImplT<T>::setRow(int row, double height, IFormatT<T>* format, bool hidden) {
    return _book->guard(false, [&] {
        checkRanges(row, 0);
        int index = -1;
        if (format && (index = _book->formatIndex(format)) < 0) throw zverror("specified format not found");
        double twips = height * 20;
        if (!(twips < 8193)) throw zverror("height is too big");
        Row* existing = findRow(row);
        Row fresh;
        Row& r = existing ? *existing : fresh;
        r.row = static_cast<uint16_t>(row);
        r.miyRw = static_cast<uint16_t>(twips > 0 ? twips : 0);
        r.colMic = r.colMac = 0;
        r.grbit = 0;
        r.ixfe = 0;
        if (hidden) r.grbit |= 0x20;
        r.grbit |= 0x140;
        if (format) {
            r.grbit |= 0x1C0;
            r.ixfe = static_cast<uint16_t>(index);
        }
        if (!existing) _rows.push_back(r);
        return true;
    });
}

template <class T>
double SheetImplT<T>::rowHeight(int row) const {
    const Row* r = findRow(row);
    return (r ? r->miyRw : _defaultRowHeight) / 20.0;
}

template <class T>
bool SheetImplT<T>::rowHidden(int row) const {
    const Row* r = findRow(row);
    return r && (r->grbit & 0x20);
}

template <class T>
bool SheetImplT<T>::setRowHidden(int row, bool hidden) {
    return _book->guard(false, [&] {
        checkRanges(row, 0);
        if (Row* r = findRow(row)) {
            r->grbit = static_cast<uint16_t>(hidden ? r->grbit | 0x20 : r->grbit & ~0x20);
        } else if (hidden) {
            Row r;
            r.row = static_cast<uint16_t>(row);
            r.grbit |= 0x20;
            _rows.push_back(r);
        }
        return true;
    });
}

template <class T>
bool SheetImplT<T>::setCol(int colFirst, int colLast, double width, IFormatT<T>* format, bool hidden) {
    return _book->guard(false, [&] {
        if (colFirst < 0 || colFirst > 255 || colLast < 0 || colLast > 255) throw zverror("col must be in range 0-255");
        if (colFirst > colLast) throw zverror("colLast must be greater than or equal to colFirst");
        double pixels = width >= 1 ? std::trunc(width * kMaxDigitWidth + 0.5) + 5 : std::trunc(width * 12 + 0.5);
        uint16_t coldx = static_cast<uint16_t>(std::trunc(pixels * 256 / kMaxDigitWidth + 0.5));
        int index = 0;
        if (format && (index = _book->formatIndex(format)) < 0) throw zverror("specified format not found");
        std::set<int> covered;
        for (ColInfo& c : _colInfos) {
            if (c.colFirst < colFirst || c.colFirst > colLast) continue;
            c.coldx = coldx;
            if (format) c.ixfe = static_cast<uint16_t>(index);
            c.grbit = static_cast<uint16_t>(hidden ? c.grbit | 1 : c.grbit & ~1);
            covered.insert(c.colFirst);
        }
        for (int col = colFirst; col <= colLast; ++col) {
            if (covered.count(col)) continue;
            ColInfo c;
            c.colFirst = c.colLast = static_cast<uint16_t>(col);
            c.coldx = coldx;
            c.ixfe = static_cast<uint16_t>(index);
            c.grbit = hidden ? 1 : 0;
            _colInfos.push_back(c);
        }
        return true;
    });
}

template <class T>
double SheetImplT<T>::colWidth(int col) const {
    const ColInfo* c = findCol(col);
    if (!c) return 8.43;
    if (c->grbit & 1) return 0;
    double m = kMaxDigitWidth;
    double p = std::trunc(c->coldx * m / 256 + 0.5);
    if (p < 13) return std::trunc(p / (m + 5) * 100 + 0.5) / 100;
    return std::trunc((p - 5) / m * 100 + 0.5) / 100;
}

template <class T>
bool SheetImplT<T>::colHidden(int col) const {
    const ColInfo* c = findCol(col);
    return c && (c->grbit & 1);
}

template <class T>
bool SheetImplT<T>::setColHidden(int col, bool hidden) {
    if (col >= 256 || col < 0) {
        _book->setMessage("col must be in range 0-255");
        return false;
    }
    return setCol(col, col, colWidth(col), nullptr, hidden);
}

template <class T>
bool SheetImplT<T>::groupRows(int rowFirst, int rowLast, bool collapsed) {
    return _book->guard(false, [&] {
        if (rowFirst > rowLast) throw zverror("must be rowFirst <= rowLast");
        checkRanges(rowFirst, 0);
        checkRanges(rowLast, 0);
        std::map<int, int> levels;
        for (const Row& r : _rows) levels.emplace(r.row, r.grbit & 7);
        std::vector<int> missing;
        for (int row = rowFirst; row <= rowLast; ++row)
            if (levels.emplace(row, 0).second) missing.push_back(row);
        int base = levels[rowFirst];
        for (int row = rowFirst; row <= rowLast; ++row)
            if (levels[row] != base) throw zverror("detect overlap");
        for (int row : missing) {
            Row r;
            r.row = static_cast<uint16_t>(row);
            _rows.push_back(r);
        }
        int level = base + 1;
        for (Row& r : _rows) {
            if (r.row >= rowFirst && r.row <= rowLast) {
                r.grbit = static_cast<uint16_t>((r.grbit & ~7) | (level & 7));
                r.grbit = static_cast<uint16_t>(collapsed ? r.grbit | 0x20 : r.grbit & ~0x20);
            }
        }
        if (Row* next = findRow(rowLast + 1))
            next->grbit = static_cast<uint16_t>(collapsed ? next->grbit | 0x10 : next->grbit & ~0x10);
        _guts[2] = static_cast<uint16_t>(level + 1);
        return true;
    });
}

template <class T>
bool SheetImplT<T>::groupCols(int colFirst, int colLast, bool collapsed) {
    return _book->guard(false, [&] {
        if (colFirst > colLast) throw zverror("must be colFirst <= colLast");
        if (colFirst < 0 || colLast > 255) throw zverror("col must be in range 0-255");
        std::set<int> covered;
        int last = 1;
        for (ColInfo& c : _colInfos) {
            if (c.colFirst < colFirst || c.colFirst > colLast) continue;
            last = ((c.grbit >> 8) & 7) + 1;
            c.grbit = static_cast<uint16_t>((c.grbit & ~0x700) | ((last & 7) << 8));
            c.grbit = static_cast<uint16_t>(collapsed ? c.grbit | 1 : c.grbit & ~1);
            covered.insert(c.colFirst);
        }
        for (int col = colFirst; col <= colLast; ++col) {
            if (covered.count(col)) continue;
            ColInfo c;
            c.colFirst = c.colLast = static_cast<uint16_t>(col);
            c.coldx = static_cast<uint16_t>(std::trunc((_defColWidth + 1.140625) * 256));
            c.grbit = static_cast<uint16_t>(0x100 | (collapsed ? 1 : 0));
            _colInfos.push_back(c);
            last = 1;
        }
        _guts[3] = static_cast<uint16_t>(last + 1);
        return true;
    });
}

template <class T>
int SheetImplT<T>::getHorPageBreak(int index) const {
    if (index < 0 || index >= static_cast<int>(_horizontalPageBreaks.size())) {
        _book->setMessage("index is out of range");
        return -1;
    }
    _book->setOk();
    return _horizontalPageBreaks[index].pos;
}

template <class T>
int SheetImplT<T>::getHorPageBreakSize() const {
    return static_cast<int>(_horizontalPageBreaks.size());
}

template <class T>
int SheetImplT<T>::getVerPageBreak(int index) const {
    if (index < 0 || index >= static_cast<int>(_verticalPageBreaks.size())) {
        _book->setMessage("index is out of range");
        return -1;
    }
    _book->setOk();
    return _verticalPageBreaks[index].pos;
}

template <class T>
int SheetImplT<T>::getVerPageBreakSize() const {
    return static_cast<int>(_verticalPageBreaks.size());
}

template <class T>
bool SheetImplT<T>::setPageBreak(std::vector<PageBreak>& breaks, int pos, bool pageBreak, uint16_t end) {
    return _book->guard(false, [&] {
        for (size_t i = 0; i < breaks.size(); ++i) {
            if (breaks[i].pos != pos) continue;
            if (pageBreak) throw zverror("pagebreak already exists");
            breaks.erase(breaks.begin() + static_cast<long>(i));
            return true;
        }
        if (!pageBreak) throw zverror("pagebreak not found");
        if (breaks.size() >= 1026) throw zverror("number of pagebreaks is exceed limit");
        PageBreak b;
        b.pos = static_cast<uint16_t>(pos);
        b.start = 0;
        b.end = end;
        breaks.push_back(b);
        return true;
    });
}

template <class T>
bool SheetImplT<T>::setHorPageBreak(int row, bool pageBreak) {
    return setPageBreak(_horizontalPageBreaks, row, pageBreak, 255);
}

template <class T>
bool SheetImplT<T>::setVerPageBreak(int col, bool pageBreak) {
    return setPageBreak(_verticalPageBreaks, col, pageBreak, 65535);
}

template <class T>
void SheetImplT<T>::split(int row, int col) {
    _book->guardVoid([&] {
        checkRanges(row, col);
        _pane[0] = static_cast<uint16_t>(col);
        _pane[1] = static_cast<uint16_t>(row);
        _pane[2] = static_cast<uint16_t>(row);
        _pane[3] = static_cast<uint16_t>(col);
        _paneActive = row == 0 && col == 0 ? 3 : row == 0 ? 1 : col == 0 ? 2 : 0;
        _hasPane = true;
        _window2.grbit |= 0x8;
    });
}

template <class T>
bool SheetImplT<T>::printGridlines() const {
    return _printGrid & 1;
}

template <class T>
void SheetImplT<T>::setPrintGridlines(bool print) {
    _printGrid = print ? 1 : 0;
}

template <class T>
int SheetImplT<T>::zoom() const {
    // The Scl record is a fraction of the normal size; the interface speaks percent.
    return _sclDenom ? _sclNum * 100 / _sclDenom : 100;
}

template <class T>
void SheetImplT<T>::setZoom(int zoom) {
    _sclNum = static_cast<uint16_t>(zoom);
    _sclDenom = 100;
}

template <class T>
int SheetImplT<T>::printZoom() const {
    return (_setup.grbit & kNoPrinterData) ? 100 : _setup.iScale;
}

template <class T>
void SheetImplT<T>::setPrintZoom(int zoom) {
    _setup.iScale = static_cast<uint16_t>(zoom);
    _setup.grbit &= static_cast<uint16_t>(~kNoPrinterData);
    _wsBool &= static_cast<uint16_t>(~kFitToPage);
}

template <class T>
bool SheetImplT<T>::getPrintFit(int* wPages, int* hPages) const {
    if (wPages) *wPages = _setup.iFitWidth;
    if (hPages) *hPages = _setup.iFitHeight;
    return (_wsBool & kFitToPage) != 0;
}

template <class T>
void SheetImplT<T>::setPrintFit(int wPages, int hPages) {
    _setup.iFitWidth = static_cast<uint16_t>(wPages);
    _setup.iFitHeight = static_cast<uint16_t>(hPages);
    _wsBool |= kFitToPage;
}

template <class T>
bool SheetImplT<T>::landscape() const {
    return !(_setup.grbit & kNoPrinterData) && !(_setup.grbit & kPortrait);
}

template <class T>
void SheetImplT<T>::setLandscape(bool landscape) {
    _setup.grbit = static_cast<uint16_t>(landscape ? _setup.grbit & ~kPortrait : _setup.grbit | kPortrait);
    _setup.grbit &= static_cast<uint16_t>(~kNoPrinterData);
}

template <class T>
Paper SheetImplT<T>::paper() const {
    return static_cast<Paper>((_setup.grbit & kNoPrinterData) ? 0 : _setup.iPaperSize);
}

template <class T>
void SheetImplT<T>::setPaper(Paper paper) {
    _setup.iPaperSize = static_cast<uint16_t>(paper);
    _setup.grbit &= static_cast<uint16_t>(~kNoPrinterData);
}

template <class T>
const T* SheetImplT<T>::header() const {
    return tc(_header.c_str());
}

template <class T>
bool SheetImplT<T>::setHeaderText(std::wstring& into, const T* text, double margin, double& marginField) {
    return _book->guard(false, [&] {
        std::wstring wide;
        if (text) toWide(text, _book->utf8Mode(), wide);
        if (wide.size() > 255) throw zverror("string is too long");
        into = wide;
        marginField = margin;
        return true;
    });
}

template <class T>
bool SheetImplT<T>::setHeader(const T* header, double margin) {
    return setHeaderText(_header, header, margin, _setup.numHdr);
}

template <class T>
double SheetImplT<T>::headerMargin() const {
    return _setup.numHdr;
}

template <class T>
const T* SheetImplT<T>::footer() const {
    return tc(_footer.c_str());
}

template <class T>
bool SheetImplT<T>::setFooter(const T* footer, double margin) {
    return setHeaderText(_footer, footer, margin, _setup.numFtr);
}

template <class T>
double SheetImplT<T>::footerMargin() const {
    return _setup.numFtr;
}

template <class T>
bool SheetImplT<T>::hCenter() const {
    return _hCenter != 0;
}

template <class T>
void SheetImplT<T>::setHCenter(bool value) {
    _hCenter = value ? 1 : 0;
}

template <class T>
bool SheetImplT<T>::vCenter() const {
    return _vCenter != 0;
}

template <class T>
void SheetImplT<T>::setVCenter(bool value) {
    _vCenter = value ? 1 : 0;
}

template <class T>
double SheetImplT<T>::marginLeft() const {
    return _margins[0];
}

template <class T>
void SheetImplT<T>::setMarginLeft(double margin) {
    _margins[0] = margin;
    _marginSet[0] = true;
}

template <class T>
double SheetImplT<T>::marginRight() const {
    return _margins[1];
}

template <class T>
void SheetImplT<T>::setMarginRight(double margin) {
    _margins[1] = margin;
    _marginSet[1] = true;
}

template <class T>
double SheetImplT<T>::marginTop() const {
    return _margins[2];
}

template <class T>
void SheetImplT<T>::setMarginTop(double margin) {
    _margins[2] = margin;
    _marginSet[2] = true;
}

template <class T>
double SheetImplT<T>::marginBottom() const {
    return _margins[3];
}

template <class T>
void SheetImplT<T>::setMarginBottom(double margin) {
    _margins[3] = margin;
    _marginSet[3] = true;
}

template <class T>
bool SheetImplT<T>::printRowCol() const {
    return _printRowCol != 0;
}

template <class T>
void SheetImplT<T>::setPrintRowCol(bool print) {
    _printRowCol = print ? 1 : 0;
}

template <class T>
bool SheetImplT<T>::protect() const {
    return _protectionSet[0] && _protection[0];
}

template <class T>
void SheetImplT<T>::setProtect(bool value) {
    if (_protectionSet[0]) {
        _protection[0] = value ? 1 : 0;
    } else if (value) {
        _protectionSet[0] = true;
        _protection[0] = 1;
    }
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

}  // namespace zelvar

namespace zelvar {

// Overlap with other rectangles is not looked for; absent cells of the block become blanks with
// the top left cell's format, which is how merged cells keep their borders.
template <class T>
bool SheetImplT<T>::setMerge(int rowFirst, int rowLast, int colFirst, int colLast) {
    return _book->guard(false, [&] {
        if (colFirst < 0 || colFirst > 255 || colLast < 0 || colLast > 255) throw zverror("col must be in range 0-255");
        if (rowLast < rowFirst) throw zverror("rowLast must be greater than or equal to rowFirst");
        if (colLast < colFirst) throw zverror("colLast must be greater than or equal to colFirst");
        rowFirst &= 0xFFFF;
        rowLast &= 0xFFFF;
        if (_mergeCells.empty() || _mergeCells.back().size() >= 1026) _mergeCells.emplace_back();
        Rect rect;
        rect.rwFirst = static_cast<uint16_t>(rowFirst);
        rect.rwLast = static_cast<uint16_t>(rowLast);
        rect.colFirst = static_cast<uint16_t>(colFirst);
        rect.colLast = static_cast<uint16_t>(colLast);
        _mergeCells.back().push_back(rect);
        uint32_t corner = _sheetIndex.get(rect.rwFirst, rect.colFirst);
        uint16_t xf = corner && SheetIndex::kind(corner) <= KindBlank ? getFormatID(rect.rwFirst, rect.colFirst) : 15;
        for (unsigned r = rect.rwFirst; r <= rect.rwLast; ++r) {
            for (unsigned c = rect.colFirst; c <= rect.colLast; ++c) {
                if (_sheetIndex.get(r, c)) continue;
                Blank blank;
                blank.row = static_cast<uint16_t>(r);
                blank.col = static_cast<uint16_t>(c);
                blank.xf = xf;
                _sheetIndex(r, c) = SheetIndex::entry(KindBlank, static_cast<unsigned>(_blanks.size()));
                _blanks.push_back(blank);
            }
        }
        _dimensions.update(rect.rwFirst, rect.colFirst);
        _dimensions.update(rect.rwLast, rect.colLast);
        return true;
    });
}

template <class T>
bool SheetImplT<T>::getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return _book->guard(false, [&] {
        checkRanges(row, col);
        for (const auto& merge : _mergeCells) {
            for (const Rect& r : merge) {
                if (row < r.rwFirst || row > r.rwLast || col < r.colFirst || col > r.colLast) continue;
                if (rowFirst) *rowFirst = r.rwFirst;
                if (rowLast) *rowLast = r.rwLast;
                if (colFirst) *colFirst = r.colFirst;
                if (colLast) *colLast = r.colLast;
                return true;
            }
        }
        throw zverror("this cell isn't in merging block");
    });
}

template <class T>
bool SheetImplT<T>::delMerge(int row, int col) {
    try {
        checkRanges(row, col);
    } catch (const zverror& e) {
        _book->setMessage(e.what());
        return false;
    }
    bool removed = false;
    for (auto& merge : _mergeCells) {
        size_t before = merge.size();
        merge.erase(std::remove_if(merge.begin(), merge.end(),
                                   [&](const Rect& r) {
                                       return row >= r.rwFirst && row <= r.rwLast && col >= r.colFirst && col <= r.colLast;
                                   }),
                    merge.end());
        removed |= merge.size() != before;
    }
    if (removed) {
        _book->setOk();
        _dimensionsDirty = true;
    }
    return removed;
}

template bool SheetImplT<char>::setMerge(int, int, int, int);
template bool SheetImplT<wchar_t>::setMerge(int, int, int, int);
template bool SheetImplT<char>::getMerge(int, int, int*, int*, int*, int*);
template bool SheetImplT<wchar_t>::getMerge(int, int, int*, int*, int*, int*);
template bool SheetImplT<char>::delMerge(int, int);
template bool SheetImplT<wchar_t>::delMerge(int, int);

}  // namespace zelvar
