// Settings of an XML worksheet: column widths and row heights with their pixel rounding, hidden
// rows and columns, outline groups, page breaks, views, print setup, margins, header and footer,
// protection. Nearly each is one attribute of one element, created on first use; a getter of an
// absent element gives the default.
#include <algorithm>
#include <cmath>
#include <memory>

#include "frame/excel_util.h"
#include "xmlbook/xml_book.h"
#include "xmlbook/xml_guard.h"

namespace zelvar {


namespace {

// Width arithmetic: a column width in the file is in characters of the widest digit plus the
// cell padding, and the screen shows it as whole pixels.
double numOfCharsToWidth(double chars, int d) {
    if (chars >= 1) return std::floor(((chars * d + 5) / d) * 256) / 256;
    return std::floor(chars * (d + 5) / d * 256) / 256;
}

int widthToPx(double width, int d) {
    return static_cast<int>(std::floor((std::floor(128.0 / d) + 256 * width) / 256 * d));
}

double pxToNumOfChars(int px, int d) {
    if (px > 12) return std::floor((px - 5) / static_cast<double>(d) * 100 + 0.5) / 100;
    return std::floor(px / static_cast<double>(d + 5) * 100 + 0.5) / 100;
}

template <class Col>
bool holds(const Col& entry, long long col) {
    return static_cast<long long>(entry.get_min()) - 1 <= col && col <= static_cast<long long>(entry.get_max()) - 1;
}

// The first view of a sheet, made with its one required attribute when there is none.
template <class Worksheet>
auto& firstView(Worksheet& sheet) {
    auto& views = sheet.get_sheetViews();
    if (views.size_sheetView() == 0) views.append_sheetView().set_workbookViewId(0);
    return views.get_sheetView(0);
}

template <class Worksheet>
const auto* firstViewIfAny(const Worksheet& sheet) {
    const auto* views = sheet.get_sheetViews();
    return views && views->size_sheetView() ? &views->get_sheetView(0) : nullptr;
}

// A new margins element is filled with every default, so that it has no holes.
template <class Worksheet>
auto& margins(Worksheet& sheet) {
    if (!sheet.isset_pageMargins()) {
        auto& m = sheet.get_pageMargins();
        m.set_left(0.7);
        m.set_right(0.7);
        m.set_top(0.75);
        m.set_bottom(0.75);
        m.set_header(0.3);
        m.set_footer(0.3);
    }
    return sheet.get_pageMargins();
}

}  // namespace

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::maxDigitWidth() const {
    return _book ? _book->styles()->maxDigWidth() : 7;
}

// ---------------------------------------------------------------- columns

template <class T, class Tag>
double XMLSheetImplT<T, Tag>::defaultColWidth() const {
    const auto* format = static_cast<const typename X::Worksheet&>(this->tree).get_sheetFormatPr();
    if (format && format->isset_defaultColWidth()) return maxDigitWidth();
    return 9.140625;
}

template <class T, class Tag>
std::vector<typename XMLSheetImplT<T, Tag>::X::Col*> XMLSheetImplT<T, Tag>::overwriteCols(int colFirst, int colLast) {
    typedef typename X::Col Col;
    auto& sheet = this->tree;
    const long long a = static_cast<long long>(colFirst) + 1, b = static_cast<long long>(colLast) + 1;
    std::vector<Col*> result;
    for (size_t i = 0; i < sheet.size_cols(); ++i) {
        for (size_t k = 0; k < sheet.get_cols(i).size_col(); ++k) {
            Col& entry = sheet.get_cols(i).get_col(k);
            long long lo = entry.get_min(), hi = entry.get_max();
            if (a <= lo && b >= hi) {
                result.push_back(&entry);
                continue;
            }
            if (a > lo && a <= hi) {
                // The part from a on goes to the end, where the walk meets it again.
                Col* copy = new Col(entry);
                copy->set_min(static_cast<uint32_t>(a));
                entry.set_max(static_cast<uint32_t>(a - 1));
                sheet.back_cols().append_col(copy);
            } else if (b >= lo && hi > b) {
                Col* copy = new Col(entry);
                copy->set_min(static_cast<uint32_t>(b + 1));
                entry.set_max(static_cast<uint32_t>(b));
                sheet.back_cols().append_col(copy);
                if (a <= lo) result.push_back(&entry);
            }
        }
    }
    std::sort(result.begin(), result.end(), [](const Col* x, const Col* y) { return x->get_min() < y->get_min(); });
    auto addEntry = [&](long long lo, long long hi) {
        if (sheet.size_cols() == 0) sheet.append_cols();
        Col& entry = sheet.back_cols().append_col();
        entry.set_min(static_cast<uint32_t>(lo));
        entry.set_max(static_cast<uint32_t>(hi));
        entry.set_width(defaultColWidth());
        result.push_back(&entry);
    };
    if (result.empty()) {
        addEntry(a, b);
        return result;
    }
    long long firstMin = result.front()->get_min(), lastMax = result.back()->get_max();
    if (a < firstMin) addEntry(a, firstMin - 1);
    if (b > lastMax) addEntry(lastMax + 1, b);
    return result;
}

template <class T, class Tag>
typename XMLSheetImplT<T, Tag>::X::Col* XMLSheetImplT<T, Tag>::overwriteCol(int colFirst, int colLast) {
    typedef typename X::Col Col;
    auto& sheet = this->tree;
    const long long a = static_cast<long long>(colFirst) + 1, b = static_cast<long long>(colLast) + 1;
    for (size_t i = 0; i < sheet.size_cols(); ++i)
        for (size_t k = 0; k < sheet.get_cols(i).size_col(); ++k) {
            Col& entry = sheet.get_cols(i).get_col(k);
            if (entry.get_min() == a && entry.get_max() == b) return &entry;
        }
    std::unique_ptr<Col> pattern;
    for (long long c = a; c <= b; ++c) {
        for (size_t i = 0; i < sheet.size_cols(); ++i) {
            auto& cols = sheet.get_cols(i);
            for (size_t k = 0; k < cols.size_col(); ++k) {
                Col& entry = cols.get_col(k);
                if (!(entry.get_min() <= c && c <= entry.get_max())) continue;
                if (entry.get_max() > c) {
                    Col* copy = new Col(entry);
                    copy->set_min(static_cast<uint32_t>(c + 1));
                    entry.set_max(static_cast<uint32_t>(c));
                    sheet.back_cols().append_col(copy);
                }
                if (entry.get_min() == c) {
                    pattern.reset(new Col(entry));
                    cols.delete_col(k);
                    --k;
                } else {
                    entry.set_max(static_cast<uint32_t>(c - 1));
                    pattern.reset(new Col(entry));
                }
            }
        }
    }
    if (sheet.size_cols() == 0) sheet.append_cols();
    Col* made = pattern ? pattern.release() : new Col;
    if (!made->isset_width()) made->set_width(defaultColWidth());
    made->set_min(static_cast<uint32_t>(a));
    made->set_max(static_cast<uint32_t>(b));
    sheet.back_cols().append_col(made);
    return made;
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::colWidthPx(unsigned short col) const {
    const auto& sheet = static_cast<const typename X::Worksheet&>(this->tree);
    const int d = maxDigitWidth();
    for (size_t i = 0; i < sheet.size_cols(); ++i) {
        const auto& cols = sheet.get_cols(i);
        for (size_t k = 0; k < cols.size_col(); ++k) {
            const auto& entry = cols.get_col(k);
            if (holds(entry, col) && entry.isset_width()) return widthToPx(entry.get_width(), d);
        }
    }
    const auto* format = sheet.get_sheetFormatPr();
    if (format && format->isset_defaultColWidth()) return widthToPx(format->get_defaultColWidth(), d);
    return 64;
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::rowHeightPx(unsigned short row) const {
    const auto& sheet = static_cast<const typename X::Worksheet&>(this->tree);
    const Row* found = findRow(row);
    if (found && found->isset_ht()) return static_cast<int>(96 * found->get_ht() / 72);
    if (const auto* format = sheet.get_sheetFormatPr()) return static_cast<int>(96 * format->get_defaultRowHeight() / 72);
    return 20;
}

template <class T, class Tag>
double XMLSheetImplT<T, Tag>::colWidth(int col) const {
    XS_BEGIN
    if (static_cast<unsigned>(col) >= 16384u) throw zverror("col must be less than 16384");
    double width = pxToNumOfChars(colWidthPx(static_cast<unsigned short>(col)), maxDigitWidth());
    ok();
    return width;
    XS_END(-1.0)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setCol(int colFirst, int colLast, double width, IFormatT<T>* format, bool hidden) {
    XS_BEGIN
    if (static_cast<unsigned>(colFirst) >= 16384u || static_cast<unsigned>(colLast) >= 16384u)
        throw zverror("col must be less than 16384");
    if (colFirst > colLast) throw zverror("colLast must be greater than or equal to colFirst");
    // The style first, so that a foreign format changes nothing.
    unsigned style = format ? _book->getStyleID(format) : 0;
    const double stored = numOfCharsToWidth(width, maxDigitWidth());
    for (typename X::Col* entry : overwriteCols(colFirst, colLast)) {
        entry->set_width(stored);
        entry->set_customWidth(true);
        if (format) entry->set_style(style);
        if (hidden)
            entry->set_hidden(true);
        else
            entry->unset_hidden();
    }
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::colHidden(int col) const {
    XS_BEGIN
    const auto& sheet = static_cast<const typename X::Worksheet&>(this->tree);
    for (size_t i = 0; i < sheet.size_cols(); ++i) {
        const auto& cols = sheet.get_cols(i);
        for (size_t k = 0; k < cols.size_col(); ++k)
            if (holds(cols.get_col(k), col)) {
                ok();
                return cols.get_col(k).get_hidden();
            }
    }
    ok();
    return false;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setColHidden(int col, bool hidden) {
    XS_BEGIN
    double width = colWidth(col);
    return setCol(col, col, width, nullptr, hidden);
    XS_END(false)
}

// ---------------------------------------------------------------- rows

template <class T, class Tag>
double XMLSheetImplT<T, Tag>::rowHeight(int row) const {
    XS_BEGIN
    const Row* found = findRow(row);
    double height = 15.0;
    if (found && found->isset_ht())
        height = found->get_ht();
    else if (const auto* format = static_cast<const typename X::Worksheet&>(this->tree).get_sheetFormatPr())
        height = format->get_defaultRowHeight();
    ok();
    return height;
    XS_END(-1.0)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setRow(int row, double height, IFormatT<T>* format, bool hidden) {
    XS_BEGIN
    if (static_cast<unsigned>(row) >= 1048576u) throw zverror("row must be in range 0-1048575");
    unsigned style = format ? _book->getStyleID(format) : 0;
    Row* rowObject = overwriteRow(static_cast<unsigned>(row));
    rowObject->set_ht(height);
    rowObject->set_customHeight(true);
    if (format) {
        rowObject->set_s(style);
        rowObject->set_customFormat(true);
    }
    if (rowObject->get_hidden() != hidden) {
        if (hidden)
            rowObject->set_hidden(true);
        else
            rowObject->unset_hidden();
    }
    _dim.updateRow(row);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::rowHidden(int row) const {
    XS_BEGIN
    const Row* found = findRow(row);
    ok();
    return found && found->get_hidden();
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setRowHidden(int row, bool hidden) {
    XS_BEGIN
    if (static_cast<unsigned>(row) >= 1048576u) throw zverror("row must be in range 0-1048575");
    Row* rowObject = overwriteRow(static_cast<unsigned>(row));
    if (rowObject->get_hidden() != hidden) {
        if (hidden)
            rowObject->set_hidden(true);
        else
            rowObject->unset_hidden();
    }
    ok();
    return true;
    XS_END(false)
}

// ---------------------------------------------------------------- outline groups

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::groupRows(int rowFirst, int rowLast, bool collapsed) {
    XS_BEGIN
    if (rowFirst > rowLast) throw zverror("must be rowFirst <= rowLast");
    if (rowLast >= 1048575) throw zverror("row must be in range 0-1048575");
    int previous = -1;
    // The walk starts at the low 16 bits of the first row; the end stays on the full number.
    for (long long r = rowFirst & 0xFFFF; r <= rowLast; ++r) {
        Row* row = overwriteRow(static_cast<unsigned>(r));
        int level = row->isset_outlineLevel() ? row->get_outlineLevel() + 1 : 1;
        if (previous >= 0 && previous != level) throw zverror("detect overlap");
        previous = level;
        row->set_outlineLevel(static_cast<uint8_t>(level));
        if (collapsed) row->set_hidden(true);
    }
    if (collapsed) overwriteRow(static_cast<unsigned>(rowLast + 1))->set_collapsed(true);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::groupCols(int colFirst, int colLast, bool collapsed) {
    XS_BEGIN
    if (colFirst > colLast) throw zverror("must be colFirst <= colLast");
    if (static_cast<unsigned>(colFirst) >= 16384u || static_cast<unsigned>(colLast) >= 16383u)
        throw zverror("col must be less than 16384");
    int previous = -1;
    for (typename X::Col* entry : overwriteCols(colFirst, colLast)) {
        int level = entry->isset_outlineLevel() ? entry->get_outlineLevel() + 1 : 1;
        if (previous >= 0 && previous != level) throw zverror("detect overlap");
        previous = level;
        entry->set_outlineLevel(static_cast<uint8_t>(level));
        if (collapsed) entry->set_hidden(true);
    }
    if (collapsed) overwriteCol(colLast + 1, colLast + 1)->set_collapsed(true);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::groupSummaryBelow() const {
    const auto* pr = static_cast<const typename X::Worksheet&>(this->tree).get_sheetPr();
    const auto* outline = pr ? pr->get_outlinePr() : nullptr;
    ok();
    return !outline || !outline->isset_summaryBelow() || outline->get_summaryBelow();
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setGroupSummaryBelow(bool below) {
    XS_BEGIN
    auto& sheet = this->tree;
    if (below) {
        if (sheet.isset_sheetPr() && sheet.get_sheetPr().isset_outlinePr()) sheet.get_sheetPr().get_outlinePr().unset_summaryBelow();
    } else {
        sheet.get_sheetPr().get_outlinePr().set_summaryBelow(false);
    }
    ok();
    XS_END_VOID
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::groupSummaryRight() const {
    const auto* pr = static_cast<const typename X::Worksheet&>(this->tree).get_sheetPr();
    const auto* outline = pr ? pr->get_outlinePr() : nullptr;
    ok();
    return !outline || !outline->isset_summaryRight() || outline->get_summaryRight();
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setGroupSummaryRight(bool right) {
    XS_BEGIN
    auto& sheet = this->tree;
    if (right) {
        if (sheet.isset_sheetPr() && sheet.get_sheetPr().isset_outlinePr()) sheet.get_sheetPr().get_outlinePr().unset_summaryRight();
    } else {
        sheet.get_sheetPr().get_outlinePr().set_summaryRight(false);
    }
    ok();
    XS_END_VOID
}

// ---------------------------------------------------------------- page breaks

namespace {

template <class List>
void setPageBreak(List& list, unsigned id, unsigned max) {
    typename std::remove_reference<decltype(list.get_brk(0))>::type* found = nullptr;
    for (size_t i = 0; i < list.size_brk() && !found; ++i)
        if (list.get_brk(i).isset_id() && list.get_brk(i).get_id() == id) found = &list.get_brk(i);
    if (!found) found = &list.append_brk();
    found->set_id(id);
    found->set_max(max);
    found->set_man(true);
    list.set_count(static_cast<uint32_t>(list.size_brk()));
    list.set_manualBreakCount(static_cast<uint32_t>(list.size_brk()));
}

// The number given to delete is one below the id in the file.
template <class List>
void delPageBreak(List& list, long long number) {
    for (size_t i = 0; i < list.size_brk(); ++i)
        if (static_cast<long long>(list.get_brk(i).get_id()) == number + 1) {
            list.delete_brk(i);
            list.set_count(static_cast<uint32_t>(list.size_brk()));
            list.set_manualBreakCount(static_cast<uint32_t>(list.size_brk()));
            return;
        }
    throw zverror("pagebreak not found");
}

template <class List>
int breakAt(const List* list, int index) {
    if (!list || index < 0 || static_cast<size_t>(index) >= list->size_brk()) return -1;
    return static_cast<int>(list->get_brk(static_cast<size_t>(index)).get_id());
}

}  // namespace

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setHorPageBreak(int row, bool pageBreak) {
    XS_BEGIN
    auto& sheet = this->tree;
    if (pageBreak) {
        if (static_cast<unsigned>(row) >= 1048576u) throw zverror("row must be in range 0-1048575");
        setPageBreak(sheet.get_rowBreaks(), static_cast<unsigned>(row), 16383);
    } else if (sheet.isset_rowBreaks()) {
        delPageBreak(sheet.get_rowBreaks(), row);
        if (sheet.get_rowBreaks().size_brk() == 0) sheet.unset_rowBreaks();
    }
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setVerPageBreak(int col, bool pageBreak) {
    XS_BEGIN
    auto& sheet = this->tree;
    if (pageBreak) {
        if (static_cast<unsigned>(col) >= 16384u) throw zverror("col must be less than 16384");
        setPageBreak(sheet.get_colBreaks(), static_cast<unsigned>(col), 1048575);
    } else if (sheet.isset_colBreaks()) {
        delPageBreak(sheet.get_colBreaks(), col);
        if (sheet.get_colBreaks().size_brk() == 0) sheet.unset_colBreaks();
    }
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::getHorPageBreak(int index) const {
    ok();
    return breakAt(static_cast<const typename X::Worksheet&>(this->tree).get_rowBreaks(), index);
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::getVerPageBreak(int index) const {
    ok();
    return breakAt(static_cast<const typename X::Worksheet&>(this->tree).get_colBreaks(), index);
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::getHorPageBreakSize() const {
    const auto* list = static_cast<const typename X::Worksheet&>(this->tree).get_rowBreaks();
    ok();
    return list ? static_cast<int>(list->size_brk()) : 0;
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::getVerPageBreakSize() const {
    const auto* list = static_cast<const typename X::Worksheet&>(this->tree).get_colBreaks();
    ok();
    return list ? static_cast<int>(list->size_brk()) : 0;
}

// ---------------------------------------------------------------- views

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::split(int row, int col) {
    XS_BEGIN
    std::wstring topLeft = ExcelUtil::rowColToAddr(row, col, true, true);
    auto& pane = firstView(this->tree).get_pane();
    pane.set_topLeftCell(topLeft);
    pane.set_activePane(L"bottomRight");
    pane.set_xSplit(col);
    pane.set_ySplit(row);
    pane.set_state(L"frozenSplit");
    ok();
    XS_END_VOID
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::zoom() const {
    const auto* view = firstViewIfAny(static_cast<const typename X::Worksheet&>(this->tree));
    ok();
    return view && view->isset_zoomScale() ? static_cast<int>(view->get_zoomScale()) : 100;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setZoom(int zoom) {
    XS_BEGIN
    auto& view = firstView(this->tree);
    view.set_zoomScale(static_cast<uint32_t>(zoom));
    view.set_zoomScaleNormal(static_cast<uint32_t>(zoom));
    ok();
    XS_END_VOID
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::displayGridlines() const {
    const auto* view = firstViewIfAny(static_cast<const typename X::Worksheet&>(this->tree));
    ok();
    return !view || !view->isset_showGridLines() || view->get_showGridLines();
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setDisplayGridlines(bool show) {
    XS_BEGIN
    auto& sheet = this->tree;
    if (show) {
        if (sheet.isset_sheetViews() && sheet.get_sheetViews().size_sheetView())
            sheet.get_sheetViews().get_sheetView(0).unset_showGridLines();
    } else {
        firstView(sheet).set_showGridLines(false);
    }
    ok();
    XS_END_VOID
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::getTopLeftView(int* row, int* col) const {
    XS_BEGIN
    const auto* view = firstViewIfAny(static_cast<const typename X::Worksheet&>(this->tree));
    int r = 0, c = 0;
    if (view && view->isset_topLeftCell()) ExcelUtil::addrToRowCol(view->get_topLeftCell(), &r, &c, nullptr, nullptr);
    if (row) *row = r;
    if (col) *col = c;
    ok();
    XS_END_VOID
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setTopLeftView(int row, int col) {
    XS_BEGIN
    std::wstring address = ExcelUtil::rowColToAddr(row, col, true, true);
    firstView(this->tree).set_topLeftCell(address);
    ok();
    XS_END_VOID
}

// ---------------------------------------------------------------- print options

#define XT_PRINT_OPTION(getter, setter, attribute)                                          \
    template <class T, class Tag>                                                           \
    bool XMLSheetImplT<T, Tag>::getter() const {                                            \
        const auto* o = static_cast<const typename X::Worksheet&>(this->tree).get_printOptions(); \
        ok();                                                                               \
        return o && o->get_##attribute();                                                   \
    }                                                                                       \
    template <class T, class Tag>                                                           \
    void XMLSheetImplT<T, Tag>::setter(bool value) {                                        \
        XS_BEGIN auto& sheet = this->tree;                                                  \
        if (value)                                                                          \
            sheet.get_printOptions().set_##attribute(true);                                 \
        else if (sheet.isset_printOptions())                                                \
            sheet.get_printOptions().unset_##attribute();                                   \
        ok();                                                                               \
        XS_END_VOID                                                                         \
    }

XT_PRINT_OPTION(printGridlines, setPrintGridlines, gridLines)
XT_PRINT_OPTION(printRowCol, setPrintRowCol, headings)
XT_PRINT_OPTION(hCenter, setHCenter, horizontalCentered)
XT_PRINT_OPTION(vCenter, setVCenter, verticalCentered)

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::printZoom() const {
    const auto* setup = static_cast<const typename X::Worksheet&>(this->tree).get_pageSetup();
    ok();
    return setup && setup->isset_scale() ? static_cast<int>(setup->get_scale()) : 100;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setPrintZoom(int zoom) {
    XS_BEGIN
    auto& sheet = this->tree;
    sheet.get_pageSetup().set_scale(static_cast<uint32_t>(zoom));
    // A scale and a fit to pages exclude each other.
    if (sheet.isset_sheetPr() && sheet.get_sheetPr().isset_pageSetUpPr()) sheet.get_sheetPr().get_pageSetUpPr().unset_fitToPage();
    ok();
    XS_END_VOID
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::getPrintFit(int* wPages, int* hPages) const {
    const auto& sheet = static_cast<const typename X::Worksheet&>(this->tree);
    const auto* setup = sheet.get_pageSetup();
    if (wPages) *wPages = setup && setup->isset_fitToWidth() ? static_cast<int>(setup->get_fitToWidth()) : 1;
    if (hPages) *hPages = setup && setup->isset_fitToHeight() ? static_cast<int>(setup->get_fitToHeight()) : 1;
    const auto* pr = sheet.get_sheetPr();
    const auto* pageSetUpPr = pr ? pr->get_pageSetUpPr() : nullptr;
    ok();
    return pageSetUpPr && pageSetUpPr->get_fitToPage();
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setPrintFit(int wPages, int hPages) {
    XS_BEGIN
    auto& sheet = this->tree;
    auto& setup = sheet.get_pageSetup();
    setup.set_fitToWidth(static_cast<uint32_t>(wPages));
    setup.set_fitToHeight(static_cast<uint32_t>(hPages));
    sheet.get_sheetPr().get_pageSetUpPr().set_fitToPage(true);
    ok();
    XS_END_VOID
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::landscape() const {
    const auto* setup = static_cast<const typename X::Worksheet&>(this->tree).get_pageSetup();
    ok();
    return setup && setup->isset_orientation() && setup->get_orientation() == L"landscape";
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setLandscape(bool landscape) {
    XS_BEGIN
    this->tree.get_pageSetup().set_orientation(landscape ? L"landscape" : L"portrait");
    ok();
    XS_END_VOID
}

template <class T, class Tag>
Paper XMLSheetImplT<T, Tag>::paper() const {
    const auto* setup = static_cast<const typename X::Worksheet&>(this->tree).get_pageSetup();
    ok();
    return setup && setup->isset_paperSize() ? static_cast<Paper>(setup->get_paperSize()) : PaperDefault;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setPaper(Paper paper) {
    XS_BEGIN
    this->tree.get_pageSetup().set_paperSize(static_cast<uint32_t>(paper));
    ok();
    XS_END_VOID
}

// ---------------------------------------------------------------- margins, header and footer

#define XT_MARGIN(getter, setter, attribute, fallback)                                      \
    template <class T, class Tag>                                                           \
    double XMLSheetImplT<T, Tag>::getter() const {                                          \
        const auto* m = static_cast<const typename X::Worksheet&>(this->tree).get_pageMargins(); \
        ok();                                                                               \
        return m && m->isset_##attribute() ? m->get_##attribute() : fallback;               \
    }                                                                                       \
    template <class T, class Tag>                                                           \
    void XMLSheetImplT<T, Tag>::setter(double value) {                                      \
        XS_BEGIN margins(this->tree).set_##attribute(value);                                \
        ok();                                                                               \
        XS_END_VOID                                                                         \
    }

XT_MARGIN(marginLeft, setMarginLeft, left, 0.7)
XT_MARGIN(marginRight, setMarginRight, right, 0.7)
XT_MARGIN(marginTop, setMarginTop, top, 0.75)
XT_MARGIN(marginBottom, setMarginBottom, bottom, 0.75)

template <class T, class Tag>
double XMLSheetImplT<T, Tag>::headerMargin() const {
    const auto* m = static_cast<const typename X::Worksheet&>(this->tree).get_pageMargins();
    ok();
    return m && m->isset_header() ? m->get_header() : 0.3;
}

template <class T, class Tag>
double XMLSheetImplT<T, Tag>::footerMargin() const {
    const auto* m = static_cast<const typename X::Worksheet&>(this->tree).get_pageMargins();
    ok();
    return m && m->isset_footer() ? m->get_footer() : 0.3;
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::header() const {
    XS_BEGIN
    const auto* hf = static_cast<const typename X::Worksheet&>(this->tree).get_headerFooter();
    if (!hf || !hf->isset_oddHeader()) {
        ok();
        return nullptr;
    }
    std::wstring text = hf->get_oddHeader();
    return tc(text.c_str());
    XS_END(nullptr)
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::footer() const {
    XS_BEGIN
    const auto* hf = static_cast<const typename X::Worksheet&>(this->tree).get_headerFooter();
    if (!hf || !hf->isset_oddFooter()) {
        ok();
        return nullptr;
    }
    std::wstring text = hf->get_oddFooter();
    return tc(text.c_str());
    XS_END(nullptr)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setHeader(const T* header, double margin) {
    XS_BEGIN
    if (!header) throw zverror("header is null");
    std::wstring text;
    toWide(header, utf8(), text);
    this->tree.get_headerFooter().set_oddHeader(text);
    margins(this->tree).set_header(margin);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setFooter(const T* footer, double margin) {
    XS_BEGIN
    if (!footer) throw zverror("footer is null");
    std::wstring text;
    toWide(footer, utf8(), text);
    this->tree.get_headerFooter().set_oddFooter(text);
    margins(this->tree).set_footer(margin);
    ok();
    return true;
    XS_END(false)
}

// ---------------------------------------------------------------- protection

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::protect() const {
    const auto* p = static_cast<const typename X::Worksheet&>(this->tree).get_sheetProtection();
    ok();
    return p && p->get_sheet();
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setProtect(bool protect) {
    XS_BEGIN
    auto& sheet = this->tree;
    if (protect) {
        auto& p = sheet.get_sheetProtection();
        p.set_sheet(true);
        p.set_objects(true);
        p.set_scenarios(true);
    } else if (sheet.isset_sheetProtection()) {
        auto& p = sheet.get_sheetProtection();
        p.unset_sheet();
        p.unset_objects();
        p.unset_scenarios();
    }
    ok();
    XS_END_VOID
}

template class XMLSheetImplT<char, excelNormal_tag>;
template class XMLSheetImplT<wchar_t, excelNormal_tag>;
template class XMLSheetImplT<char, excelStrict_tag>;
template class XMLSheetImplT<wchar_t, excelStrict_tag>;

}  // namespace zelvar
