// Structural edits of an XML worksheet: rows and columns inserted and removed, areas cleared and
// merged blocks. Edits move storage, not meaning: formula text, defined names, anchors, breaks,
// conditional formats and validations are left as they are.
#include <algorithm>

#include "frame/excel_util.h"
#include "xmlbook/xml_book.h"
#include "xmlbook/xml_guard.h"

namespace zelvar {


namespace {

const char* const kRowOrder = "rowLast must be greater than or equal to rowFirst";
const char* const kColOrder = "colLast must be greater than or equal to colFirst";
const char* const kNoMerge = "this cell isn't in merging block";
const long long kLastRow = 1048575;
const long long kLastCol = 16383;

int clampTo(long long value, long long last) { return static_cast<int>(value > last ? last : value); }

}  // namespace

// ---------------------------------------------------------------- references and ranges

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::parseRef(const std::wstring& ref, int* r1, int* c1, int* r2, int* c2) {
    size_t colon = ref.find(L':');
    if (colon == std::wstring::npos) {
        ExcelUtil::addrToRowCol(ref, r1, c1, nullptr, nullptr);
        *r2 = *r1;
        *c2 = *c1;
        return;
    }
    ExcelUtil::addrToRowCol(ref.substr(0, colon), r1, c1, nullptr, nullptr);
    ExcelUtil::addrToRowCol(ref.substr(colon + 1), r2, c2, nullptr, nullptr);
}

template <class T, class Tag>
std::wstring XMLSheetImplT<T, Tag>::makeRef(int r1, int c1, int r2, int c2) {
    return ExcelUtil::rowColToAddr(r1, c1, true, true) + L":" + ExcelUtil::rowColToAddr(r2, c2, true, true);
}

// Worked out on the bounds, not on sets of numbers, so that a band of a million rows costs
// nothing more than a block of two.
template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::subtractRange(int first, int last, int delFirst, int delLast, int* outFirst, int* outLast) {
    long long n = static_cast<long long>(delLast) - delFirst + 1;
    if (n < 0 || first > last) return false;
    bool any = false;
    long long lo = 0, hi = 0;
    if (first < delFirst) {  // the part in front of the deleted band stays
        lo = first;
        hi = std::min<long long>(last, static_cast<long long>(delFirst) - 1);
        any = true;
    }
    if (last > delLast) {  // the part behind it moves up
        long long from = std::max<long long>(first, static_cast<long long>(delLast) + 1) - n;
        if (!any) lo = from;
        hi = static_cast<long long>(last) - n;
        any = true;
    }
    if (!any) return false;
    *outFirst = static_cast<int>(lo);
    *outLast = static_cast<int>(hi);
    return true;
}

// ---------------------------------------------------------------- rows and columns

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::subtractFromMerges(bool rows, int first, int last) {
    auto& sheet = this->tree;
    if (!sheet.isset_mergeCells()) return;
    auto& merges = sheet.get_mergeCells();
    // One step per position, also after a removal: the block that slides into the removed one's
    // place waits for a later call.
    for (size_t i = 0; i < merges.size_mergeCell(); ++i) {
        int r1, c1, r2, c2;
        parseRef(merges.get_mergeCell(i).get_ref(), &r1, &c1, &r2, &c2);
        bool kept = rows ? subtractRange(r1, r2, first, last, &r1, &r2) : subtractRange(c1, c2, first, last, &c1, &c2);
        if (kept) {
            merges.get_mergeCell(i).set_ref(makeRef(r1, c1, r2, c2));
        } else {
            merges.delete_mergeCell(i);
            merges.set_count(static_cast<uint32_t>(merges.size_mergeCell()));
        }
    }
    if (merges.size_mergeCell() == 0) sheet.unset_mergeCells();
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::pushMergesApart(bool rows, int first, int last) {
    auto& sheet = this->tree;
    if (!sheet.isset_mergeCells()) return;
    auto& merges = sheet.get_mergeCells();
    const long long n = static_cast<long long>(last) - first + 1;
    const long long limit = rows ? kLastRow : kLastCol;
    std::vector<std::wstring> split;
    // A block pushed over the last row (column) is cut there, and one pushed wholly past it goes;
    // one that straddles the insertion keeps its front part, and its back part follows as a block
    // of its own.
    for (size_t i = 0; i < merges.size_mergeCell();) {
        auto& merge = merges.get_mergeCell(i);
        int r1, c1, r2, c2;
        parseRef(merge.get_ref(), &r1, &c1, &r2, &c2);
        // The block's span along the moved axis, and its ref rebuilt from a new span.
        const int lo = rows ? r1 : c1, hi = rows ? r2 : c2;
        auto ref = [&](long long from, long long to) {
            return rows ? makeRef(static_cast<int>(from), c1, static_cast<int>(to), c2)
                        : makeRef(r1, static_cast<int>(from), r2, static_cast<int>(to));
        };
        if (first <= lo) {
            if (lo + n > limit) {
                merges.delete_mergeCell(i);
                continue;
            }
            merge.set_ref(ref(lo + n, clampTo(hi + n, limit)));
        } else if (first <= hi) {
            if (static_cast<long long>(last) + 1 <= limit) split.push_back(ref(last + 1LL, clampTo(hi + n, limit)));
            merge.set_ref(ref(lo, first - 1LL));
        }
        ++i;
    }
    for (const std::wstring& r : split) merges.append_mergeCell().set_ref(r);
    if (merges.size_mergeCell() == 0) sheet.unset_mergeCells();
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::insertRow(int rowFirst, int rowLast) {
    XS_BEGIN
    if (rowLast < rowFirst) throw zverror(kRowOrder);
    const unsigned n = static_cast<unsigned>(rowLast - rowFirst + 1);
    auto& sheet = this->tree;
    if (sheet.isset_sheetData()) {
        auto& data = sheet.get_sheetData();
        // The rows at and below the insertion: the first is found by search, and the walk goes on
        // forwards from there, which the memory system follows better than a walk backwards.
        size_t low = 0, high = data.size_row();
        while (low < high) {
            size_t mid = (low + high) / 2;
            if (static_cast<long long>(data.get_row(mid).get_r()) - 1 < rowFirst)
                low = mid + 1;
            else
                high = mid;
        }
        for (size_t i = low; i < data.size_row(); ++i) {
            Row& row = data.get_row(i);
            unsigned r = row.get_r() + n;
            row.set_r(r);
            for (lmx::c_cell_base* cell : row.get_c_vector()) cell->set_row_col(r - 1, cell->get_col());
        }
    }
    pushMergesApart(true, rowFirst, rowLast);
    _dimDirty = true;
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::removeRow(int rowFirst, int rowLast) {
    XS_BEGIN
    if (rowLast < rowFirst) throw zverror(kRowOrder);
    const long long n = static_cast<long long>(rowLast) - rowFirst + 1;
    auto& sheet = this->tree;
    if (sheet.isset_sheetData()) {
        auto& data = sheet.get_sheetData();
        const size_t count = data.size_row();
        // Kept rows are swapped forward over the removed ones, which then sit at the end and
        // go in one pass: the cost follows the rows present, not the rows removed.
        size_t kept = 0;
        long long running = 1;
        for (size_t i = 0; i < count; ++i) {
            Row& row = data.get_row(i);
            if (row.isset_r()) running = row.get_r();
            long long r = running;
            ++running;
            if (r >= static_cast<long long>(rowFirst) + 1 && r <= static_cast<long long>(rowLast) + 1) continue;
            if (r > static_cast<long long>(rowLast) + 1) {
                unsigned moved = static_cast<unsigned>(r - n);
                row.set_r(moved);
                unsigned colRunning = 0;
                for (lmx::c_cell_base* cell : row.get_c_vector()) {
                    unsigned col = cell->isset_r() ? cell->get_col() : colRunning;
                    cell->set_row_col(moved - 1, col);
                    colRunning = col + 1;
                }
            }
            if (kept != i) data.get_row(kept).swap(row);
            ++kept;
        }
        for (size_t i = count; i-- > kept;) data.delete_row(i);
    }
    subtractFromMerges(true, rowFirst, rowLast);
    _dimDirty = true;
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::insertCol(int colFirst, int colLast) {
    XS_BEGIN
    if (colLast < colFirst) throw zverror(kColOrder);
    const unsigned n = static_cast<unsigned>(colLast - colFirst + 1);
    auto& sheet = this->tree;
    if (sheet.isset_sheetData()) {
        auto& data = sheet.get_sheetData();
        for (size_t i = 0; i < data.size_row(); ++i) {
            Row& row = data.get_row(i);
            std::vector<lmx::c_cell_base*>& cells = row.get_c_vector();
            for (size_t k = cells.size(); k-- > 0;) {
                lmx::c_cell_base* cell = cells[k];
                if (static_cast<long long>(cell->get_col()) < colFirst) break;
                cell->set_row_col(row.get_r() - 1, cell->get_col() + n);
            }
        }
    }
    pushMergesApart(false, colFirst, colLast);
    const long long m = static_cast<long long>(colFirst) + 1;
    for (size_t i = 0; i < sheet.size_cols(); ++i) {
        auto& cols = sheet.get_cols(i);
        const size_t length = cols.size_col();
        for (size_t k = 0; k < length; ++k) {
            auto& col = cols.get_col(k);
            long long lo = col.get_min(), hi = col.get_max();
            if (lo >= m) {
                col.set_min(static_cast<uint32_t>(lo + n));
                col.set_max(static_cast<uint32_t>(hi + n));
            } else if (hi >= m) {
                auto* copy = new typename X::Col(col);
                copy->set_min(static_cast<uint32_t>(colLast + 2));
                copy->set_max(static_cast<uint32_t>(hi + n));
                cols.append_col(copy);
                cols.get_col(k).set_max(static_cast<uint32_t>(m - 1));
            }
        }
    }
    _dimDirty = true;
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::removeCol(int colFirst, int colLast) {
    XS_BEGIN
    if (colLast < colFirst) throw zverror(kColOrder);
    const unsigned n = static_cast<unsigned>(colLast - colFirst + 1);
    auto& sheet = this->tree;
    for (size_t i = 0; i < sheet.size_cols();) {
        auto& cols = sheet.get_cols(i);
        for (size_t k = 0; k < cols.size_col(); ++k) {
            auto& col = cols.get_col(k);
            int lo = static_cast<int>(col.get_min()), hi = static_cast<int>(col.get_max());
            if (subtractRange(lo, hi, colFirst + 1, colLast + 1, &lo, &hi)) {
                col.set_min(static_cast<uint32_t>(lo));
                col.set_max(static_cast<uint32_t>(hi));
            } else {
                cols.delete_col(k);
            }
        }
        if (cols.size_col() == 0)
            sheet.delete_cols(i);
        else
            ++i;
    }
    if (sheet.isset_sheetData()) {
        auto& data = sheet.get_sheetData();
        for (size_t i = 0; i < data.size_row(); ++i) {
            Row& row = data.get_row(i);
            std::vector<lmx::c_cell_base*>& cells = row.get_c_vector();
            size_t kept = 0;
            unsigned running = 0;
            for (size_t k = 0; k < cells.size(); ++k) {
                lmx::c_cell_base* cell = cells[k];
                unsigned col = cell->isset_r() ? cell->get_col() : running;
                running = col + 1;
                if (static_cast<long long>(col) >= colFirst && static_cast<long long>(col) <= colLast) {
                    delete cell;
                    continue;
                }
                if (static_cast<long long>(col) > colLast) col -= n;
                cell->set_row_col(row.get_r() - 1, col);
                cells[kept++] = cell;
            }
            cells.resize(kept);
        }
    }
    subtractFromMerges(false, colFirst, colLast);
    _dimDirty = true;
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::clear(int rowFirst, int rowLast, int colFirst, int colLast) {
    XS_BEGIN
    if (rowLast < rowFirst) throw zverror(kRowOrder);
    if (colLast < colFirst) throw zverror(kColOrder);
    auto& sheet = this->tree;
    if (rowFirst <= 0 && rowLast >= 1048575 && colFirst <= 0 && colLast >= 16383) {
        sheet.assign_sheetData(new typename X::SheetData);
    } else if (sheet.isset_sheetData()) {
        // Only the rows that exist are visited; a row left without cells goes, as it would
        // after deleting each address of the area one by one.
        auto& data = sheet.get_sheetData();
        for (size_t i = 0; i < data.size_row();) {
            Row& row = data.get_row(i);
            long long r = static_cast<long long>(row.get_r()) - 1;
            if (r < rowFirst || r > rowLast) {
                ++i;
                continue;
            }
            std::vector<lmx::c_cell_base*>& cells = row.get_c_vector();
            size_t kept = 0;
            for (lmx::c_cell_base* cell : cells) {
                long long c = cell->get_col();
                if (c >= colFirst && c <= colLast)
                    delete cell;
                else
                    cells[kept++] = cell;
            }
            cells.resize(kept);
            if (kept == 0)
                data.delete_row(i);
            else
                ++i;
        }
    }
    if (sheet.isset_mergeCells()) {
        auto& merges = sheet.get_mergeCells();
        for (size_t i = 0; i < merges.size_mergeCell(); ++i) {
            int r1, c1, r2, c2;
            parseRef(merges.get_mergeCell(i).get_ref(), &r1, &c1, &r2, &c2);
            if (r1 <= rowLast && r2 >= rowFirst && c1 <= colLast && c2 >= colFirst) {
                merges.delete_mergeCell(i);
                merges.set_count(static_cast<uint32_t>(merges.size_mergeCell()));
            }
        }
        if (merges.size_mergeCell() == 0) sheet.unset_mergeCells();
    }
    _dimDirty = true;
    ok();
    return true;
    XS_END(false)
}

// ---------------------------------------------------------------- merged blocks

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setMerge(int rowFirst, int rowLast, int colFirst, int colLast) {
    XS_BEGIN
    if (static_cast<unsigned>(colFirst) >= 16384u || static_cast<unsigned>(colLast) >= 16384u)
        throw zverror("col must be less than 16384");
    if (rowLast < rowFirst) throw zverror(kRowOrder);
    if (colLast < colFirst) throw zverror(kColOrder);
    std::wstring ref = makeRef(rowFirst, colFirst, rowLast, colLast);
    auto& sheet = this->tree;
    auto& merges = sheet.get_mergeCells();
    merges.append_mergeCell().set_ref(ref);
    merges.set_count(static_cast<uint32_t>(merges.size_mergeCell()));
    // The block takes the top left cell's format. A block in the default format has nothing
    // to spread, so only cells that exist are touched and a band over the whole sheet costs
    // what the sheet holds.
    const Cell* topLeft = read(rowFirst, colFirst);
    unsigned style = topLeft && topLeft->isset_s() ? topLeft->get_s() : 0;
    if (style != 0) {
        IFormatT<T>* format = fetchFormat(topLeft);
        for (int r = rowFirst; r <= rowLast; ++r)
            for (int c = colFirst; c <= colLast; ++c)
                if (r != rowFirst || c != colFirst) write(r, c, format, false);
    } else if (sheet.isset_sheetData()) {
        auto& data = sheet.get_sheetData();
        for (size_t i = 0; i < data.size_row(); ++i) {
            Row& row = data.get_row(i);
            long long r = static_cast<long long>(row.get_r()) - 1;
            if (r < rowFirst || r > rowLast) continue;
            for (lmx::c_cell_base* cell : row.get_c_vector()) {
                long long c = cell->get_col();
                if (c >= colFirst && c <= colLast && cell->isset_s()) cell->unset_s();
            }
        }
    }
    _dim.update(rowFirst, colFirst);
    _dim.update(rowLast, colLast);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::getMerge(int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    XS_BEGIN
    const auto* merges = static_cast<const typename X::Worksheet&>(this->tree).get_mergeCells();
    for (size_t i = 0; merges && i < merges->size_mergeCell(); ++i) {
        int r1, c1, r2, c2;
        parseRef(merges->get_mergeCell(i).get_ref(), &r1, &c1, &r2, &c2);
        if (row >= r1 && row <= r2 && col >= c1 && col <= c2) {
            if (rowFirst) *rowFirst = r1;
            if (rowLast) *rowLast = r2;
            if (colFirst) *colFirst = c1;
            if (colLast) *colLast = c2;
            ok();
            return true;
        }
    }
    throw zverror(kNoMerge);
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::delMerge(int row, int col) {
    XS_BEGIN
    auto& sheet = this->tree;
    if (sheet.isset_mergeCells()) {
        auto& merges = sheet.get_mergeCells();
        for (size_t i = 0; i < merges.size_mergeCell(); ++i) {
            int r1, c1, r2, c2;
            parseRef(merges.get_mergeCell(i).get_ref(), &r1, &c1, &r2, &c2);
            if (row >= r1 && row <= r2 && col >= c1 && col <= c2) {
                merges.delete_mergeCell(i);
                merges.set_count(static_cast<uint32_t>(merges.size_mergeCell()));
                if (merges.size_mergeCell() == 0) sheet.unset_mergeCells();
                ok();
                return true;
            }
        }
    }
    throw zverror(kNoMerge);
    XS_END(false)
}

template class XMLSheetImplT<char, excelNormal_tag>;
template class XMLSheetImplT<wchar_t, excelNormal_tag>;
template class XMLSheetImplT<char, excelStrict_tag>;
template class XMLSheetImplT<wchar_t, excelStrict_tag>;

}  // namespace zelvar
