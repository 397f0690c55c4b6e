// Structural edits of a binary sheet: inserting and removing rows and columns, clearing a block,
// copying a cell. They move cells, row heights, column widths, comments and merge blocks; the text
// of formulas, picture anchors and records kept raw stay as they are.
#include <algorithm>

#include "book/book_impl.h"
#include "book/sheet_impl.h"

namespace zelvar {

namespace {
uint16_t noteRow(const std::vector<uint8_t>& p) { return p.size() >= 4 ? le::get16(&p[0]) : 0; }
uint16_t noteCol(const std::vector<uint8_t>& p) { return p.size() >= 4 ? le::get16(&p[2]) : 0; }
void setNoteField(std::vector<uint8_t>& p, size_t at, unsigned v) {
    if (p.size() >= at + 2) le::put16(&p[at], v);
}

// Line numbers far outside the grid act like the grid's edge plus its size; limiting them keeps
// every sum of the edits inside int.
constexpr long long kFarLine = 1 << 20;

// The count of a line range, with its message when the range is reversed; both limits are then
// brought within reach of the grid.
int lineCount(int& first, int& last, const char* reversed) {
    long long count = static_cast<long long>(last) - first + 1;
    if (count < 1) throw zverror(reversed);
    first = static_cast<int>(std::max(-kFarLine, std::min<long long>(first, kFarLine)));
    last = static_cast<int>(std::max(-kFarLine, std::min<long long>(last, kFarLine)));
    return last - first + 1;
}
}  // namespace

template <class T>
void SheetImplT<T>::moveRecord(uint32_t e, int row, int col) {
    visitCell(e, [row, col](auto& record) {
        cellHead(record).row = static_cast<uint16_t>(row);
        cellHead(record).col = static_cast<uint16_t>(col);
    });
}

template <class T>
void SheetImplT<T>::clearIndexes(int rowFirst, int rowLast, int colFirst, int colLast, bool onlyBlanks) {
    for (int r = rowFirst; r <= rowLast; ++r) {
        if (!_sheetIndex(static_cast<unsigned>(r))) continue;
        for (int c = colFirst; c <= colLast; ++c) {
            uint32_t& e = _sheetIndex(static_cast<unsigned>(r), static_cast<unsigned>(c));
            if (!onlyBlanks || (e && SheetIndex::kind(e) == KindBlank)) e = 0;
        }
    }
}

// Notes move with their cell; a note pushed off the grid is dropped.
template <class T>
void SheetImplT<T>::shiftNotes(int first, int count, bool isRow, bool insert) {
    const int limit = isRow ? 65535 : 255;
    std::vector<Biff<T>> kept;
    for (auto& note : _noteShs) {
        int at = isRow ? noteRow(note.payload) : noteCol(note.payload);
        bool keep = true;
        if (at >= first) {
            if (insert) {
                if (at + count <= limit)
                    at += count;
                else
                    keep = false;
            } else {
                if (at >= count)
                    at -= count;
                else
                    keep = false;
            }
            setNoteField(note.payload, isRow ? 0 : 2, static_cast<unsigned>(at));
        }
        if (keep) kept.push_back(std::move(note));
    }
    _noteShs.swap(kept);
}

// Blocks after the insertion move; a block the insertion cuts is split around the new lines.
template <class T>
void SheetImplT<T>::insertMerges(int first, int last, bool isRow) {
    const int count = last - first + 1;
    std::vector<Rect> lower;
    for (auto& merge : _mergeCells) {
        for (Rect& r : merge) {
            uint16_t& lo = isRow ? r.rwFirst : r.colFirst;
            uint16_t& hi = isRow ? r.rwLast : r.colLast;
            if (lo >= first) {
                lo = static_cast<uint16_t>(lo + count);
                hi = static_cast<uint16_t>(hi + count);
            } else if (hi >= first) {
                Rect part = r;
                (isRow ? part.rwFirst : part.colFirst) = static_cast<uint16_t>(last + 1);
                (isRow ? part.rwLast : part.colLast) = static_cast<uint16_t>(hi + count);
                lower.push_back(part);
                hi = static_cast<uint16_t>(first - 1);
            }
        }
    }
    for (const Rect& r : lower) setMerge(r.rwFirst, r.rwLast, r.colFirst, r.colLast);
}

template <class T>
void SheetImplT<T>::removeMerges(int first, int last, bool isRow) {
    const int count = last - first + 1;
    int n = count;
    for (auto& merge : _mergeCells) {
        for (Rect& r : merge) {
            if (r.drop) continue;
            int lo = isRow ? r.rwFirst : r.colFirst;
            int hi = isRow ? r.rwLast : r.colLast;
            int inside = std::max(0, std::min(last, hi) - std::max(first, lo) + 1);
            int outside = count - inside;
            bool head = isRow ? first <= lo : first < lo;
            bool tail = isRow ? (first > lo && first <= hi) : (first >= lo && first <= hi);
            if (head) {
                lo = outside > lo ? 0 : lo - outside;
                if (n > hi) r.drop = true;
                else hi -= n;
            } else if (tail) {
                int over = last - hi;
                if (over > 0) n -= over;
                if (n > hi) r.drop = true;
                else hi -= n;
            } else {
                continue;
            }
            (isRow ? r.rwFirst : r.colFirst) = static_cast<uint16_t>(lo);
            (isRow ? r.rwLast : r.colLast) = static_cast<uint16_t>(hi);
        }
        merge.erase(std::remove_if(merge.begin(), merge.end(),
                                   [](const Rect& r) { return r.drop || r.rwLast < r.rwFirst || r.colLast < r.colFirst; }),
                    merge.end());
    }
}

template <class T>
bool SheetImplT<T>::insertRow(int rowFirst, int rowLast) {
    return _book->guard(false, [&] {
        const int count = lineCount(rowFirst, rowLast, "rowLast must be greater than or equal to rowFirst");
        if (rowFirst < 65536) {
            for (int r = 65535; r >= std::max(rowFirst, 0); --r) {
                if (!_sheetIndex(static_cast<unsigned>(r))) continue;
                for (unsigned c = 0; c < SheetIndex::kCols; ++c) {
                    uint32_t e = _sheetIndex(static_cast<unsigned>(r), c);
                    if (!e || SheetIndex::kind(e) == KindLabel) continue;
                    // A cell pushed beyond the last row leaves the grid.
                    int moved = r + count;
                    moveRecord(e, moved, static_cast<int>(c));
                    if (moved <= 65535) _sheetIndex(static_cast<unsigned>(moved), c) = e;
                    _sheetIndex(static_cast<unsigned>(r), c) = 0;
                }
            }
        }
        shiftNotes(rowFirst, count, true, true);
        insertMerges(rowFirst, rowLast, true);
        if (rowLast <= 65534) {
            for (int dst = 65535, src = 65535 - count; dst >= std::max(rowLast + 1, 0); --dst, --src) {
                if (dst < count || src < 0) continue;
                if (rowHeight(src) != rowHeight(dst) || rowHidden(src) != rowHidden(dst))
                    if (!setRow(dst, rowHeight(src), nullptr, rowHidden(src))) throw zverror(_book->errorMessage());
            }
        }
        for (int row = std::max(rowFirst, 0); row <= rowLast && row <= 65535; ++row)
            if (!setRow(row, 12.75, nullptr, false)) throw zverror(_book->errorMessage());
        updateNamedRange(rowFirst, rowLast, true, true);
        _dimensionsDirty = true;
        return true;
    });
}

template <class T>
bool SheetImplT<T>::insertCol(int colFirst, int colLast) {
    return _book->guard(false, [&] {
        const int count = lineCount(colFirst, colLast, "colLast must be greater than or equal to colFirst");
        if (colFirst <= 255) {
            for (int c = 255; c >= std::max(colFirst, 0); --c) {
                for (unsigned r = 0; r < SheetIndex::kRows; ++r) {
                    if (!_sheetIndex(r)) continue;
                    uint32_t e = _sheetIndex(r, static_cast<unsigned>(c));
                    if (!e || SheetIndex::kind(e) == KindLabel) continue;
                    int moved = c + count;
                    moveRecord(e, static_cast<int>(r), moved);
                    if (moved <= 255) _sheetIndex(r, static_cast<unsigned>(moved)) = e;
                    _sheetIndex(r, static_cast<unsigned>(c)) = 0;
                }
            }
        }
        shiftNotes(colFirst, count, false, true);
        insertMerges(colFirst, colLast, false);
        if (colLast <= 254) {
            for (int dst = 255, src = 255 - count; dst >= std::max(colLast + 1, 0); --dst, --src) {
                if (dst < count || src < 0) continue;
                if (colWidth(src) != colWidth(dst) || colHidden(src) != colHidden(dst))
                    if (!setCol(dst, dst, colWidth(src), nullptr, colHidden(src))) throw zverror(_book->errorMessage());
            }
        }
        if (colLast >= 0 && colFirst <= 255 &&
            !setCol(std::max(colFirst, 0), std::min(colLast, 255), 8.43, nullptr, false))
            throw zverror(_book->errorMessage());
        _dimensionsDirty = true;
        return true;
    });
}

template <class T>
bool SheetImplT<T>::removeRow(int rowFirst, int rowLast) {
    return _book->guard(false, [&] {
        const int count = lineCount(rowFirst, rowLast, "rowLast must be greater than or equal to rowFirst");
        const int asked = rowFirst;
        rowFirst = std::max(rowFirst, 0);
        for (int dst = rowFirst; dst <= 65535 - count; ++dst) {
            int src = dst + count;
            if (rowHeight(src) != rowHeight(dst) || rowHidden(src) != rowHidden(dst))
                if (!setRow(dst, rowHeight(src), nullptr, rowHidden(src))) throw zverror(_book->errorMessage());
        }
        // Rows without a block hold no cells: nothing to clear there.
        if (rowLast >= 0) clearIndexes(rowFirst, std::min(rowLast, 65535), 0, 255, false);
        if (rowLast + 1 <= 65535) {
            for (int r = std::max(rowLast + 1, 0); r <= 65535; ++r) {
                if (!_sheetIndex(static_cast<unsigned>(r))) continue;
                for (unsigned c = 0; c < SheetIndex::kCols; ++c) {
                    uint32_t e = _sheetIndex(static_cast<unsigned>(r), c);
                    if (!e || SheetIndex::kind(e) == KindLabel) continue;
                    // A cell moved above the first row leaves the grid.
                    int moved = r - count;
                    moveRecord(e, moved, static_cast<int>(c));
                    if (moved >= 0) _sheetIndex(static_cast<unsigned>(moved), c) = e;
                    _sheetIndex(static_cast<unsigned>(r), c) = 0;
                }
            }
        }
        shiftNotes(rowFirst, count, true, false);
        removeMerges(asked, rowLast, true);
        updateNamedRange(asked, rowLast, true, false);
        _dimensionsDirty = true;
        return true;
    });
}

template <class T>
bool SheetImplT<T>::removeCol(int colFirst, int colLast) {
    return _book->guard(false, [&] {
        const int count = lineCount(colFirst, colLast, "colLast must be greater than or equal to colFirst");
        const int asked = colFirst;
        colFirst = std::max(colFirst, 0);
        for (int dst = colFirst; dst <= 255 - count; ++dst) {
            int src = dst + count;
            if (colWidth(src) != colWidth(dst) || colHidden(src) != colHidden(dst))
                if (!setCol(dst, dst, colWidth(src), nullptr, colHidden(src))) throw zverror(_book->errorMessage());
        }
        clearIndexes(0, 65535, colFirst, std::min(colLast, 255), false);
        for (int c = std::max(colLast + 1, 0); c <= 255; ++c) {
            for (unsigned r = 0; r < SheetIndex::kRows; ++r) {
                if (!_sheetIndex(r)) continue;
                uint32_t e = _sheetIndex(r, static_cast<unsigned>(c));
                if (!e || SheetIndex::kind(e) == KindLabel) continue;
                // As with rows: a cell moved before the first column leaves the grid.
                int moved = c - count;
                moveRecord(e, static_cast<int>(r), moved);
                if (moved >= 0) _sheetIndex(r, static_cast<unsigned>(moved)) = e;
                _sheetIndex(r, static_cast<unsigned>(c)) = 0;
            }
        }
        shiftNotes(colFirst, count, false, false);
        removeMerges(asked, colLast, false);
        _dimensionsDirty = true;
        return true;
    });
}

template <class T>
bool SheetImplT<T>::clear(int rowFirst, int rowLast, int colFirst, int colLast) {
    return _book->guard(false, [&] {
        if (rowLast < rowFirst) throw zverror("rowLast must be greater than or equal to rowFirst");
        if (colLast < colFirst) throw zverror("colLast must be greater than or equal to colFirst");
        rowFirst = std::min(std::max(rowFirst, 0), 65535);
        rowLast = std::min(std::max(rowLast, 0), 65535);
        colFirst = std::min(std::max(colFirst, 0), 255);
        colLast = std::min(std::max(colLast, 0), 255);
        clearIndexes(rowFirst, rowLast, colFirst, colLast, false);
        _noteShs.erase(std::remove_if(_noteShs.begin(), _noteShs.end(),
                                      [&](const Biff<T>& note) {
                                          int r = noteRow(note.payload), c = noteCol(note.payload);
                                          return r >= rowFirst && r <= rowLast && c >= colFirst && c <= colLast;
                                      }),
                       _noteShs.end());
        for (auto& merge : _mergeCells) {
            merge.erase(std::remove_if(merge.begin(), merge.end(),
                                       [&](const Rect& r) {
                                           bool overlaps = r.rwFirst <= rowLast && r.rwLast >= rowFirst &&
                                                           r.colFirst <= colLast && r.colLast >= colFirst;
                                           if (overlaps) clearIndexes(r.rwFirst, r.rwLast, r.colFirst, r.colLast, true);
                                           return overlaps;
                                       }),
                        merge.end());
        }
        _dimensionsDirty = true;
        return true;
    });
}

template <class T>
bool SheetImplT<T>::copyCell(int rowSrc, int colSrc, int rowDst, int colDst) {
    return _book->guard(false, [&] {
        checkRanges(rowSrc, colSrc);
        checkRanges(rowDst, colDst);
        uint32_t src = _sheetIndex.get(static_cast<unsigned>(rowSrc), static_cast<unsigned>(colSrc));
        if (!src) throw zverror("empty cell");
        unsigned kind = SheetIndex::kind(src);
        if (kind == KindLabel) throw zverror("unknown type of cell");
        uint32_t& dst = _sheetIndex(static_cast<unsigned>(rowDst), static_cast<unsigned>(colDst));
        unsigned ps = SheetIndex::position(src);
        auto copyInto = [&](auto& vec) {
            using R = typename std::decay_t<decltype(vec)>::value_type;
            R record = vec[ps];
            if (dst && SheetIndex::kind(dst) == kind) {
                R& target = vec[SheetIndex::position(dst)];
                if constexpr (R::kind == KindFormula) {
                    target = record;  // the whole block, address fields included
                } else {
                    uint16_t r = target.row, c = target.col;
                    target = record;
                    target.row = r;
                    target.col = c;
                }
                if constexpr (R::kind == KindLabelSst) _book->sst().addUser(record.isst);
                return;
            }
            cellHead(record).row = static_cast<uint16_t>(rowDst);
            cellHead(record).col = static_cast<uint16_t>(colDst);
            dst = SheetIndex::entry(kind, static_cast<unsigned>(vec.size()));
            vec.push_back(record);
            if constexpr (R::kind == KindLabelSst) _book->sst().addUser(record.isst);
        };
        withRecords(kind, copyInto);
        _dimensions.update(static_cast<unsigned>(rowDst), static_cast<unsigned>(colDst));
        return true;
    });
}

#define ZELVAR_INSTANTIATE(T)                                             \
    template bool SheetImplT<T>::insertRow(int, int);                     \
    template bool SheetImplT<T>::insertCol(int, int);                     \
    template bool SheetImplT<T>::removeRow(int, int);                     \
    template bool SheetImplT<T>::removeCol(int, int);                     \
    template bool SheetImplT<T>::clear(int, int, int, int);               \
    template bool SheetImplT<T>::copyCell(int, int, int, int);
ZELVAR_INSTANTIATE(char)
ZELVAR_INSTANTIATE(wchar_t)
#undef ZELVAR_INSTANTIATE

}  // namespace zelvar
