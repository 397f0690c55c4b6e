#include <cmath>
#include <cstdio>
#include <cstring>
#include <cwctype>

#include "formula/xml_formula.h"
#include "frame/excel_util.h"
#include "xmlbook/xml_book.h"
#include "xmlbook/xml_guard.h"

namespace zelvar {

namespace {

enum CellTypeCode { CodeNone = 0, CodeBool = 1, CodeNumber = 2, CodeError = 3, CodeShared = 4, CodeStr = 5, CodeInline = 6, CodeDate = 7 };

// Writes an unsigned number as decimal text; returns the length.
size_t unsignedToChars(unsigned value, char* buf) {
    char tmp[16];
    size_t n = 0;
    do {
        tmp[n++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value);
    for (size_t i = 0; i < n; ++i) buf[i] = tmp[n - 1 - i];
    return n;
}

long long charsToInt(const char* text, size_t size) {
    // Plain digits, the form this library and others write, are read in place.
    if (size > 0 && size <= 18) {
        long long value = 0;
        size_t i = 0;
        for (; i < size && text[i] >= '0' && text[i] <= '9'; ++i) value = value * 10 + (text[i] - '0');
        if (i == size) return value;
    }
    std::string s(text, size);
    return Converter::ansiStringToInt(s);
}

bool vEquals(const lmx::c_cell_base* cell, const char* text) {
    size_t n = std::strlen(text);
    return cell->v_size() == n && std::memcmp(cell->v_data(), text, n) == 0;
}

}  // namespace


template <class T, class Tag>
XMLSheetImplT<T, Tag>::XMLSheetImplT(const XMLSheetImplT& other)
    : XmlFile<typename X::Worksheet>(other), ISheetT<T>(), _book(other._book), _index(other._index) {
    init();
    _book = other._book;
    _index = other._index;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::init() {
    _book = nullptr;
    _index = -1;
    fillMissingAddresses();
    recalcDimensions();
    _dimDirty = false;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::fillMissingAddresses() {
    auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
    if (!data) return;
    auto& rows = this->tree.get_sheetData();
    long previousRow = -1;
    for (size_t i = 0; i < rows.size_row(); ++i) {
        Row& row = rows.get_row(i);
        std::vector<lmx::c_cell_base*>& cells = row.get_c_vector();
        if (!row.isset_r()) {
            // A row without its number follows the one before, unless its first cell names it.
            long number = previousRow + 1;
            if (!cells.empty() && cells[0]->isset_r()) number = static_cast<long>(cells[0]->get_row());
            row.set_r(static_cast<uint32_t>(number + 1));
        }
        previousRow = static_cast<long>(row.get_r()) - 1;
        long previousCol = -1;
        for (lmx::c_cell_base* cell : cells) {
            if (!cell->isset_r()) cell->set_row_col(static_cast<unsigned>(previousRow), static_cast<unsigned>(previousCol + 1));
            previousCol = static_cast<long>(cell->get_col());
        }
    }
}

template <class T, class Tag>
double XMLSheetImplT<T, Tag>::isoDateValue(const std::string& text) const {
    // ISO 8601 text of a t="d" cell: a date, a time, or both joined by "T"; a zone is ignored.
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
    double second = 0;
    const char* p = text.c_str();
    int used = 0;
    if (std::sscanf(p, "%d-%d-%d%n", &year, &month, &day, &used) == 3) {
        p += used;
        if (*p == 'T' || *p == ' ') ++p;
    }
    if (std::sscanf(p, "%d:%d:%lf", &hour, &minute, &second) < 2 && year == 0) throw zverror("this cell doesn't contain a number");
    double value = year || month || day ? _book->datePack(year, month, day) : 0.0;
    return value + hour / 24.0 + minute / 1440.0 + second / 86400.0;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::ok() const {
    if (_book) _book->setOk();
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::fail(const char* text) const {
    if (_book) _book->setError(text);
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::utf8() const {
    return _book && _book->utf8();
}

// ---------------------------------------------------------------- search

template <class T, class Tag>
const typename XMLSheetImplT<T, Tag>::Row* XMLSheetImplT<T, Tag>::findRow(int row) const {
    const auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
    if (!data) return nullptr;
    long low = -1, high = static_cast<long>(data->size_row());
    // Ascending writes ask for the last row or one past it: answered without a search.
    if (high > 0) {
        const Row& last = data->get_row(static_cast<size_t>(high - 1));
        long long lastRow = static_cast<long long>(last.get_r()) - 1;
        if (row > lastRow) return nullptr;
        if (row == lastRow) return &last;
        // Without gaps a row stands at its distance from the first row: one probe there
        // before the search answers every read of a dense sheet.
        long guess = row - (static_cast<long>(data->get_row(0).get_r()) - 1);
        if (guess >= 0 && guess < high) {
            const Row& probe = data->get_row(static_cast<size_t>(guess));
            if (static_cast<long long>(probe.get_r()) - 1 == row) return &probe;
        }
    }
    while (low < high - 1) {
        long mid = (low + high) / 2;
        if (static_cast<long long>(row) < static_cast<long long>(data->get_row(mid).get_r()) - 1)
            high = mid;
        else
            low = mid;
    }
    if (low < 0) return nullptr;
    const Row& found = data->get_row(static_cast<size_t>(low));
    return static_cast<long long>(found.get_r()) - 1 == row ? &found : nullptr;
}

template <class T, class Tag>
typename XMLSheetImplT<T, Tag>::Row* XMLSheetImplT<T, Tag>::findRow(int row) {
    this->tree.get_sheetData();
    return const_cast<Row*>(static_cast<const XMLSheetImplT*>(this)->findRow(row));
}

template <class T, class Tag>
const typename XMLSheetImplT<T, Tag>::Cell* XMLSheetImplT<T, Tag>::findCell(const Row* rowObject, int col) const {
    if (!rowObject) return nullptr;
    long low = -1, high = static_cast<long>(rowObject->size_c());
    if (high > 0) {
        const Cell& last = rowObject->get_c(static_cast<size_t>(high - 1));
        if (col > static_cast<int>(last.get_col())) return nullptr;
        if (col == static_cast<int>(last.get_col())) return &last;
        long guess = static_cast<long>(col) - static_cast<long>(rowObject->get_c(0).get_col());  // as for rows
        if (guess >= 0 && guess < high) {
            const Cell& probe = rowObject->get_c(static_cast<size_t>(guess));
            if (static_cast<int>(probe.get_col()) == col) return &probe;
        }
    }
    while (low < high - 1) {
        long mid = (low + high) / 2;
        if (static_cast<long>(col) < static_cast<long>(rowObject->get_c(static_cast<size_t>(mid)).get_col()))
            high = mid;
        else
            low = mid;
    }
    if (low < 0) return nullptr;
    const Cell& found = rowObject->get_c(static_cast<size_t>(low));
    return static_cast<int>(found.get_col()) == col ? &found : nullptr;
}

template <class T, class Tag>
typename XMLSheetImplT<T, Tag>::Cell* XMLSheetImplT<T, Tag>::findCell(Row* rowObject, int col) {
    return const_cast<Cell*>(static_cast<const XMLSheetImplT*>(this)->findCell(static_cast<const Row*>(rowObject), col));
}

template <class T, class Tag>
typename XMLSheetImplT<T, Tag>::Row* XMLSheetImplT<T, Tag>::overwriteRow(unsigned row) {
    auto& data = this->tree.get_sheetData();
    size_t n = data.size_row();
    long high;
    // Rows written in ascending order land behind the last one: no search.
    if (n == 0 || data.get_row(n - 1).get_r() < row + 1) {
        high = static_cast<long>(n);
    } else {
        long low = -1;
        high = static_cast<long>(n);
        while (low < high - 1) {
            long mid = (low + high) / 2;
            if (static_cast<long long>(row) < static_cast<long long>(data.get_row(mid).get_r()) - 1)
                high = mid;
            else
                low = mid;
        }
        if (low >= 0 && data.get_row(static_cast<size_t>(low)).get_r() == row + 1) {
            Row& found = data.get_row(static_cast<size_t>(low));
            found.set_r(row + 1);
            return &found;
        }
    }
    Row* created = new Row;
    // Rows tend to be alike: room for as many cells as the row before has saves the vector's
    // regrowth while it fills, and memory, as it ends up the right size.
    if (high > 0) {
        size_t cellsBefore = data.get_row(static_cast<size_t>(high - 1)).size_c();
        if (cellsBefore) created->get_c_vector().reserve(cellsBefore);
    }
    if (static_cast<size_t>(high) == n)
        data.append_row(created);
    else
        data.insert_row(static_cast<size_t>(high), created);
    created->set_r(row + 1);
    return created;
}

template <class T, class Tag>
typename XMLSheetImplT<T, Tag>::Cell* XMLSheetImplT<T, Tag>::overwriteCell(Row* rowObject, unsigned row, int col) {
    std::vector<lmx::c_cell_base*>& cells = rowObject->get_c_vector();
    size_t n = cells.size();
    size_t high;
    Cell* cell = nullptr;
    if (n == 0 || static_cast<int>(cells[n - 1]->get_col()) < col) {
        high = n;
    } else {
        long low = -1, h = static_cast<long>(n);
        while (low < h - 1) {
            long mid = (low + h) / 2;
            if (col < static_cast<int>(cells[static_cast<size_t>(mid)]->get_col()))
                h = mid;
            else
                low = mid;
        }
        high = static_cast<size_t>(h);
        if (low >= 0 && static_cast<int>(cells[static_cast<size_t>(low)]->get_col()) == col)
            cell = static_cast<Cell*>(cells[static_cast<size_t>(low)]);
    }
    if (!cell) {
        cell = new Cell;
        if (high == n)
            cells.push_back(cell);
        else
            cells.insert(cells.begin() + static_cast<std::ptrdiff_t>(high), cell);
    }
    cell->set_row_col(row, static_cast<unsigned>(col));
    return cell;
}

template <class T, class Tag>
typename XMLSheetImplT<T, Tag>::Cell* XMLSheetImplT<T, Tag>::write(int row, int col, IFormatT<T>* format, bool clearCell) {
    if (static_cast<unsigned>(col) >= 16384u) throw zverror("col must be in range 0-16383");
    if (static_cast<unsigned>(row) >= 1048576u) throw zverror("row must be in range 0-1048575");
    // The style is looked up first, so that a foreign format changes nothing.
    unsigned style = format ? _book->getStyleID(format) : 0;
    Row* rowObject = findRow(row);
    Cell* cell;
    if (rowObject) {
        cell = findCell(rowObject, col);
        if (cell) {
            delSharedFormula(cell, row, col);
            if (clearCell) clear(cell);
        } else {
            cell = overwriteCell(rowObject, static_cast<unsigned>(row), col);
        }
    } else {
        rowObject = overwriteRow(static_cast<unsigned>(row));
        cell = overwriteCell(rowObject, static_cast<unsigned>(row), col);
    }
    if (format) cell->set_s(style);
    _dim.update(row, col);
    return cell;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::clear(Cell* cell) {
    cell->unset_v();
    cell->unset_t();
    cell->unset_f();
    cell->unset_is();
    cell->unset_cm();
    cell->unset_vm();
    cell->unset_ph();
}

template <class T, class Tag>
IFormatT<T>* XMLSheetImplT<T, Tag>::formatByIndex(int, int, unsigned s) const {
    Styles<T, Tag>* styles = _book->styles();
    if (static_cast<int>(s) >= styles->formatSize()) throw zverror("index is out of range");
    return styles->format(static_cast<int>(s));
}

template <class T, class Tag>
IFormatT<T>* XMLSheetImplT<T, Tag>::fetchFormat(const Cell* cell) const {
    return formatByIndex(0, 0, cell->isset_s() ? cell->get_s() : 0);
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::delCell(int row, int col) {
    Row* rowObject = findRow(row);
    if (!rowObject) return;
    std::vector<lmx::c_cell_base*>& cells = rowObject->get_c_vector();
    for (size_t i = 0; i < cells.size(); ++i) {
        if (static_cast<int>(cells[i]->get_col()) == col) {
            rowObject->delete_c(i);
            break;
        }
    }
    if (rowObject->size_c() == 0) delRow(row);
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::delRow(int row) {
    Row* rowObject = findRow(row);
    if (!rowObject) return;
    auto& data = this->tree.get_sheetData();
    for (size_t i = 0; i < data.size_row(); ++i)
        if (&data.get_row(i) == rowObject) {
            data.delete_row(i);
            return;
        }
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::cellType(const Cell* cell) {
    if (!cell) return CellEmpty;
    if (!cell->isset_v() && !cell->isset_is()) return CellBlank;
    switch (cell->type_code()) {
        case CodeNone:
        case CodeNumber: return CellNumber;
        case CodeShared:
        case CodeStr:
        case CodeInline: return CellString;
        case CodeBool: return CellBoolean;
        case CodeError: return CellError;
        case CodeDate: return CellNumber;
        default: return CellEmpty;
    }
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::tc(const wchar_t* text) const {
    _conv.assign(text);
    const T* result = _conv.template c_str<T>(utf8());
    if (_conv.failed())
        fail("warning: some characters have not been converted properly");
    else
        ok();
    return result;
}

template <class T, class Tag>
std::wstring XMLSheetImplT<T, Tag>::getInlineStr(const Cell* cell) {
    const auto* is = cell->get_is();
    if (!is) return std::wstring();
    if (is->isset_t()) return is->get_t();
    std::wstring text;
    for (size_t i = 0; i < is->size_r(); ++i) text += is->get_r(i).get_t();
    return text;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setSelected(bool selected) {
    auto& sheet = this->tree;
    if (!selected) {
        if (!sheet.isset_sheetViews()) return;
        auto& views = sheet.get_sheetViews();
        for (size_t i = 0; i < views.size_sheetView(); ++i) views.get_sheetView(i).unset_tabSelected();
        return;
    }
    auto& views = sheet.get_sheetViews();
    if (views.size_sheetView() == 0) views.append_sheetView().set_workbookViewId(0);
    views.get_sheetView(0).set_tabSelected(true);
}

// ---------------------------------------------------------------- dimensions

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::calcFirstRow() const {
    const auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
    return data && data->size_row() ? static_cast<int>(data->get_row(0).get_r()) - 1 : 0;
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::calcLastRow() const {
    const auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
    return data && data->size_row() ? static_cast<int>(data->get_row(data->size_row() - 1).get_r()) : 0;
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::calcFirstCol() const {
    const auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
    if (!data) return 0;
    bool any = false;
    int first = 0;
    for (size_t i = 0; i < data->size_row(); ++i) {
        const Row& row = data->get_row(i);
        if (row.size_c() == 0) continue;
        int col = static_cast<int>(row.get_c(0).get_col());
        if (!any || col < first) first = col;
        any = true;
    }
    return first;
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::calcLastCol() const {
    const auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
    if (!data) return 0;
    int last = 0;
    for (size_t i = 0; i < data->size_row(); ++i) {
        const Row& row = data->get_row(i);
        if (row.size_c() == 0) continue;
        int col = static_cast<int>(row.get_c(row.size_c() - 1).get_col()) + 1;
        if (col > last) last = col;
    }
    return last;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::recalcDimensions() {
    _dim.firstRow = calcFirstRow();
    _dim.lastRow = calcLastRow();
    _dim.firstCol = calcFirstCol();
    _dim.lastCol = calcLastCol();
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::firstRow() const {
    if (_dimDirty) const_cast<XMLSheetImplT*>(this)->recalcDimensions(), _dimDirty = false;
    return _dim.firstRow;
}
template <class T, class Tag>
int XMLSheetImplT<T, Tag>::lastRow() const {
    if (_dimDirty) const_cast<XMLSheetImplT*>(this)->recalcDimensions(), _dimDirty = false;
    return _dim.lastRow;
}
template <class T, class Tag>
int XMLSheetImplT<T, Tag>::firstCol() const {
    if (_dimDirty) const_cast<XMLSheetImplT*>(this)->recalcDimensions(), _dimDirty = false;
    return _dim.firstCol;
}
template <class T, class Tag>
int XMLSheetImplT<T, Tag>::lastCol() const {
    if (_dimDirty) const_cast<XMLSheetImplT*>(this)->recalcDimensions(), _dimDirty = false;
    return _dim.lastCol;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::prepareSave() {
    auto& sheet = this->tree;
    if (sheet.isset_sheetFormatPr()) sheet.get_sheetFormatPr().any_attributes().clear();
    if (sheet.isset_sheetData()) {
        auto& data = sheet.get_sheetData();
        for (size_t i = 0; i < data.size_row(); ++i) {
            Row& row = data.get_row(i);
            if (row.any_attribute_count()) row.any_attributes().clear();
            row.unset_spans();
        }
    }
    sheet.any_attributes().clear();
    sheet.unset_extLst();
    if (sheet.isset_controls() && sheet.get_controls().size_control() == 0) sheet.unset_controls();
    if (!sheet.isset_sheetFormatPr()) sheet.get_sheetFormatPr().set_defaultRowHeight(15.0);
    // A worksheet part without sheetData breaks the schema; a sheet without cells still has one.
    sheet.get_sheetData();
}

// ---------------------------------------------------------------- typed cells

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::cellType(int row, int col) const {
    XS_BEGIN
    int type = cellType(read(row, col));
    ok();
    return type;
    XS_END(CellEmpty)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::isFormula(int row, int col) const {
    XS_BEGIN
    const Cell* cell = read(row, col);
    ok();
    return cell && cell->isset_f();
    XS_END(false)
}

template <class T, class Tag>
IFormatT<T>* XMLSheetImplT<T, Tag>::cellFormat(int row, int col) const {
    XS_BEGIN
    IFormatT<T>* result = nullptr;
    const Row* rowObject = findRow(row);
    if (const Cell* cell = findCell(rowObject, col)) {
        result = fetchFormat(cell);
    } else if (rowObject && rowObject->isset_customFormat() && rowObject->get_customFormat()) {
        result = formatByIndex(row, col, rowObject->get_s());
    } else {
        const auto& sheet = static_cast<const typename X::Worksheet&>(this->tree);
        for (size_t i = 0; i < sheet.size_cols() && !result; ++i) {
            const auto& cols = sheet.get_cols(i);
            for (size_t k = 0; k < cols.size_col(); ++k) {
                const auto& c = cols.get_col(k);
                if (c.isset_style() && col >= static_cast<int>(c.get_min()) - 1 && col <= static_cast<int>(c.get_max()) - 1) {
                    result = formatByIndex(row, col, c.get_style());
                    break;
                }
            }
        }
        if (!result) {
            if (_book->styles()->formatSize() == 0) throw zverror("formats are not found");
            result = formatByIndex(row, col, 0);
        }
    }
    ok();
    return result;
    XS_END(nullptr)
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setCellFormat(int row, int col, IFormatT<T>* format) {
    XS_BEGIN
    if (format) {
        write(row, col, format, false);
    } else if (Cell* cell = read(row, col)) {
        cell->unset_s();
    }
    ok();
    XS_END_VOID
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::readStr(int row, int col, IFormatT<T>** format) {
    XS_BEGIN
    if (format) *format = nullptr;
    const Cell* cell = read(row, col);
    if (!cell) throw zverror("cell is not found");
    std::wstring text;
    unsigned code = cell->type_code();
    if (code == CodeShared && cell->isset_v()) {
        if (format) *format = fetchFormat(cell);
        SharedStrings<Tag>* strings = _book->sharedStringsIfAny();
        if (!strings) throw zverror("sharedStrings not found");
        long long index = charsToInt(cell->v_data(), cell->v_size());
        if (index < 0 || index > 0xFFFFFFFFll) throw zverror("index is out of range or no value");
        text = strings->stringByIndex(static_cast<unsigned>(index));
    } else if (code == CodeStr && cell->isset_v()) {
        if (format) *format = fetchFormat(cell);
        text = cell->get_v();
    } else if (code == CodeInline && cell->get_is()) {
        if (format) *format = fetchFormat(cell);
        text = getInlineStr(cell);
    } else {
        throw zverror("this cell doesn't contain a string");
    }
    StrUtil::xmlUnEsc(text);
    return tc(text.c_str());
    XS_END(nullptr)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::writeStr(int row, int col, const T* value, IFormatT<T>* format) {
    XS_BEGIN
    if (!value) throw zverror("value is null");
    toWide(value, utf8(), _textScratch);
    Cell* cell = write(row, col, format, true);
    unsigned index = _book->sharedStrings()->addString(_textScratch);
    if (_textScratch.capacity() > 4096) std::wstring().swap(_textScratch);  // don't keep a long text's memory
    cell->set_type_code(CodeShared);
    char buf[16];
    cell->set_v_utf8(buf, unsignedToChars(index, buf));
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
double XMLSheetImplT<T, Tag>::readNum(int row, int col, IFormatT<T>** format) const {
    XS_BEGIN
    if (format) *format = nullptr;
    const Cell* cell = read(row, col);
    if (!cell) throw zverror("cell is not found");
    unsigned code = cell->type_code();
    if ((code != CodeNone && code != CodeNumber && code != CodeDate) || !cell->isset_v())
        throw zverror("this cell doesn't contain a number");
    if (format) *format = fetchFormat(cell);
    double value = code == CodeDate ? isoDateValue(std::string(cell->v_data(), cell->v_size()))
                                    : Converter::charsToDouble(cell->v_data(), cell->v_size());
    ok();
    return value;
    XS_END(0.0)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::writeNum(int row, int col, double value, IFormatT<T>* format) {
    XS_BEGIN
    Cell* cell = write(row, col, format, true);
    char buf[32];
    cell->set_v_utf8(buf, Converter::doubleToChars(value, buf));
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::readBool(int row, int col, IFormatT<T>** format) const {
    XS_BEGIN
    if (format) *format = nullptr;
    const Cell* cell = read(row, col);
    if (!cell) throw zverror("cell is not found");
    if (cell->type_code() != CodeBool) throw zverror("this cell doesn't contain a bool");
    if (format) *format = fetchFormat(cell);
    bool value = charsToInt(cell->v_data(), cell->v_size()) != 0;
    ok();
    return value;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::writeBool(int row, int col, bool value, IFormatT<T>* format) {
    XS_BEGIN
    Cell* cell = write(row, col, format, true);
    cell->set_type_code(CodeBool);
    cell->set_v_utf8(value ? "1" : "0", 1);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::readBlank(int row, int col, IFormatT<T>** format) const {
    XS_BEGIN
    if (format) *format = nullptr;
    const Cell* cell = read(row, col);
    if (!cell) throw zverror("cell is not found");
    if (cell->isset_v()) throw zverror("cell is not blank");
    if (format) *format = fetchFormat(cell);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::writeBlank(int row, int col, IFormatT<T>* format) {
    XS_BEGIN
    if (!format) throw zverror("format is null");
    write(row, col, format, true);
    ok();
    return true;
    XS_END(false)
}

namespace {

bool isRefChar(wchar_t c) { return (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'$'; }

void flushToken(std::wstring& token, std::wstring& out, bool function, int dRow, int dCol) {
    if (token.empty()) return;
    bool reference = !function && ((token[0] >= L'A' && token[0] <= L'Z' && token.back() >= L'0' && token.back() <= L'9') ||
                                   token[0] == L'$');
    if (reference) {
        int row = -1, col = -1;
        bool rowRelative = true, colRelative = true;
        ExcelUtil::addrToRowCol(token, &row, &col, &rowRelative, &colRelative);
        if (rowRelative) row += dRow;
        if (colRelative) col += dCol;
        try {
            out += ExcelUtil::rowColToAddr(row, col, rowRelative, colRelative);
        } catch (const zverror&) {
            out += L"#REF!";
        }
    } else {
        out += token;
    }
    token.clear();
}

}  // namespace

// A formula moved by rows and columns: relative references shift, text in double quotes and
// function names stay.
std::wstring shiftFormula(const std::wstring& text, int dRow, int dCol) {
    std::wstring out, token;
    out.reserve(text.size() + 8);
    bool inString = false;
    for (wchar_t c : text) {
        if (c == L'"') inString = !inString;
        if (inString) {
            if (c == L'"') flushToken(token, out, false, dRow, dCol);
            out.push_back(c);
            continue;
        }
        if (isRefChar(c)) {
            token.push_back(c);
            continue;
        }
        flushToken(token, out, c == L'(', dRow, dCol);
        out.push_back(c);
    }
    flushToken(token, out, false, dRow, dCol);
    return out;
}

namespace {

// The text of a member of a shared group: the master's text moved to the member's place.
template <class Row, class Cell, class Data>
bool sharedFormulaText(const Data* data, unsigned si, int row, int col, std::wstring& out) {
    if (!data) return false;
    for (size_t i = 0; i < data->size_row(); ++i) {
        const Row& r = data->get_row(i);
        for (size_t k = 0; k < r.size_c(); ++k) {
            const Cell& c = r.get_c(k);
            const auto* f = c.get_f();
            if (!f || !f->isset_t() || !f->isset_si() || f->get_si() != si) continue;
            std::wstring text = f->get_value();
            if (text.empty()) continue;
            out = shiftFormula(text, row - static_cast<int>(c.get_row()), col - static_cast<int>(c.get_col()));
            return true;
        }
    }
    return false;
}

}  // namespace

namespace {

template <class Formula>
bool isSharedMember(const Formula* f, unsigned si) {
    return f && f->isset_t() && f->get_t() == L"shared" && f->isset_si() && f->get_si() == si;
}

}  // namespace

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::delSharedFormula(Cell* cell, int row, int col) {
    const auto* master = static_cast<const Cell*>(cell)->get_f();
    if (!master || !master->isset_ref() || !master->isset_si() || !isSharedMember(master, master->get_si())) return;
    int r1, c1, r2, c2;
    try {
        parseRef(master->get_ref(), &r1, &c1, &r2, &c2);
    } catch (const zverror&) {
        return;  // a block that can't be read names no heir; the group ends with its master
    }
    const auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
    if (!data) return;
    // The block's cells row by row; only rows and cells that exist are visited, so a block of whole
    // columns costs what the sheet holds.
    for (size_t i = 0; i < data->size_row(); ++i) {
        const Row& rowObject = data->get_row(i);
        long long r = static_cast<long long>(rowObject.get_r()) - 1;
        if (r < r1) continue;
        if (r > r2) break;
        for (size_t k = 0; k < rowObject.size_c(); ++k) {
            const Cell& candidate = rowObject.get_c(k);
            int c = static_cast<int>(candidate.get_col());
            if (c < c1) continue;
            if (c > c2) break;
            if (&candidate == cell || !isSharedMember(candidate.get_f(), master->get_si())) continue;
            auto& heir = const_cast<Cell&>(candidate).get_f();
            heir.set_ref(master->get_ref());
            heir.set_value(shiftFormula(master->get_value(), static_cast<int>(r) - row, c - col));
            return;
        }
    }
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::moveMasterFormula(int row, int col, Cell* cell) {
    const auto* master = static_cast<const Cell*>(cell)->get_f();
    const auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
    if (!master || !master->isset_si() || !data) return;
    for (size_t i = 0; i < data->size_row(); ++i) {
        const Row& rowObject = data->get_row(i);
        for (size_t k = 0; k < rowObject.size_c(); ++k) {
            const Cell& candidate = rowObject.get_c(k);
            const auto* f = candidate.get_f();
            if (&candidate == cell || !f || !f->isset_si() || f->get_si() != master->get_si()) continue;
            // The copy is moved by the master's offset from its own place, which is none: the heir
            // keeps the master's text literally.
            auto* copy = master->clone();
            copy->set_value(shiftFormula(master->get_value(), static_cast<int>(cell->get_row()) - row,
                                         static_cast<int>(cell->get_col()) - col));
            const_cast<Cell&>(candidate).assign_f(copy);
            return;
        }
    }
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::readFormula(int row, int col, IFormatT<T>** format) {
    XS_BEGIN
    if (format) *format = nullptr;
    const Cell* cell = read(row, col);
    if (!cell) throw zverror("cell is not found");
    const auto* f = cell->get_f();
    if (!f) throw zverror("this cell doesn't contain a formula");
    if (format) *format = fetchFormat(cell);
    std::wstring text = f->get_value();
    if (f->isset_t() && text.empty() && f->get_t() == L"shared") {
        const auto* data = static_cast<const typename X::Worksheet&>(this->tree).get_sheetData();
        if (!sharedFormulaText<Row, Cell>(data, f->get_si(), row, col, text))
            throw zverror("shared formula is not found");
    }
    if (_book->refR1C1()) XMLFormula::toRefR1C1(text, row, col);
    StrUtil::swapSeparators(text, L',', L';');
    return tc(text.c_str());
    XS_END(nullptr)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::writeFormula(int row, int col, const T* value, IFormatT<T>* format) {
    XS_BEGIN
    if (!value) throw zverror("value is null");
    std::wstring text;
    toWide(value, utf8(), text);
    if (!text.empty() && text[0] == L'=') text.erase(0, 1);
    StrUtil::swapSeparators(text, L';', L',');
    if (_book->refR1C1()) XMLFormula::toRefA1(text, row, col, false);
    if (Cell* master = read(row, col)) {
        const auto* old = static_cast<const Cell*>(master)->get_f();
        if (old && old->isset_t() && !old->get_value().empty() && old->get_t() == L"shared") {
            moveMasterFormula(row, col, master);
            // The group has its new master already; the write below must not hand it on again.
            master->unset_f();
        }
    }
    Cell* cell = write(row, col, format, true);
    auto* formula = new typename X::CellFormula;
    formula->set_value(text);
    cell->assign_f(formula);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::readComment(int, int) const {
    fail("not supported");
    return nullptr;
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::writeComment(int, int, const T*, const T*, int, int) {
    fail("not supported");
}

namespace {
bool findDateChars(const std::wstring& format) {
    bool inBracket = false;
    for (wchar_t c : format) {
        if (inBracket) {
            if (c == L']') inBracket = false;
            continue;
        }
        if (c == L'[') {
            inBracket = true;
            continue;
        }
        if (std::wcschr(L"mdyhsMDYHS", c)) return true;
    }
    return false;
}
}  // namespace

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::isDate(int row, int col) const {
    XS_BEGIN
    if (cellType(read(row, col)) != CellNumber) {
        ok();
        return false;
    }
    IFormatT<T>* format = cellFormat(row, col);
    if (!format) return false;
    int n = format->numFormat();
    bool result;
    if ((n >= 14 && n <= 22) || (n >= 45 && n <= 47))
        result = true;
    else if ((n >= 0 && n <= 13) || (n >= 37 && n <= 44) || n == 48 || n == 49)
        result = false;
    else {
        std::wstring code;
        result = _book->styles()->customNumFormatText(n, code) && findDateChars(code);
    }
    ok();
    return result;
    XS_END(false)
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::readError(int row, int col) const {
    XS_BEGIN
    const Cell* cell = read(row, col);
    if (!cell) throw zverror("cell is not found");
    if (cell->type_code() != CodeError) throw zverror("this cell doesn't contain an error");
    static const struct {
        const char* text;
        int value;
    } errors[] = {{"#NULL!", 0}, {"#DIV/0!", 7}, {"#VALUE!", 15}, {"#REF!", 23}, {"#NAME?", 29}, {"#NUM!", 36}, {"#N/A", 42}};
    for (const auto& e : errors)
        if (vEquals(cell, e.text)) {
            ok();
            return e.value;
        }
    throw zverror("unknown error value");
    XS_END(ErrorNone)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::copyCell(int rowSrc, int colSrc, int rowDst, int colDst) {
    XS_BEGIN
    const Cell* source = read(rowSrc, colSrc);
    if (!source) throw zverror("cell is not found");
    Cell copy(*source);
    Cell* target = write(rowDst, colDst, nullptr, true);
    static_cast<lmx::c_cell_base&>(*target) = copy;
    target->set_row_col(static_cast<unsigned>(rowDst), static_cast<unsigned>(colDst));
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::addrToRowCol(const T* addr, int* row, int* col, bool* rowRelative, bool* colRelative) {
    XS_BEGIN
    if (!addr) throw zverror("address is null");
    std::wstring text;
    toWide(addr, utf8(), text);
    ExcelUtil::addrToRowCol(text, row, col, rowRelative, colRelative);
    ok();
    XS_END_VOID
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::rowColToAddr(int row, int col, bool rowRelative, bool colRelative) {
    XS_BEGIN
    std::wstring text = ExcelUtil::rowColToAddr(row, col, rowRelative, colRelative);
    return tc(text.c_str());
    XS_END(nullptr)
}

// ---------------------------------------------------------------- name and state

template <class T, class Tag>
typename XMLSheetImplT<T, Tag>::X::Sheet* XMLSheetImplT<T, Tag>::sheetEntry() const {
    const char* const noBook = "sheet doen't have relationship with book";
    if (!_book) throw zverror(noBook);
    auto& sheets = _book->xml().get_sheets();
    if (_index < 0 || static_cast<size_t>(_index) >= sheets.size_sheet()) throw zverror(noBook);
    return &sheets.get_sheet(static_cast<size_t>(_index));
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setWideName(const std::wstring& name) {
    sheetEntry()->set_name(name);
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::name() const {
    XS_BEGIN
    std::wstring text = sheetEntry()->get_name();
    return tc(text.c_str());
    XS_END(nullptr)
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setName(const T* name) {
    XS_BEGIN
    if (!name) throw zverror("name is null");
    std::wstring text;
    toWide(name, utf8(), text);
    const bool cut = text.size() > 31;
    if (cut) text.resize(31);
    changeDependencies(sheetEntry()->get_name(), text);
    setWideName(text);
    if (cut)
        fail("warning: sheet's name is cut to 31 characters");
    else
        ok();
    XS_END_VOID
}

namespace {

// A character that can stand inside a bare sheet name; one of these in front of a match means
// the match is the tail of another name.
bool nameChar(wchar_t c) { return c == L'_' || c == L'.' || c == L'\'' || std::iswalnum(static_cast<wint_t>(c)) || c > 127; }

}  // namespace

// Only the quoted old name followed by "!" is taken for a reference to the sheet, so that renaming
// "S" leaves "SUM(" and "Sales!A1" alone.
template <class T, class Tag>
void XMLSheetImplT<T, Tag>::changeDependencies(const std::wstring& oldName, const std::wstring& newName) {
    if (oldName.empty() || !_book->xml().isset_definedNames()) return;
    const std::wstring from = StrUtil::quote(oldName) + L"!", to = StrUtil::quote(newName) + L"!";
    auto& names = _book->xml().get_definedNames();
    for (size_t i = 0; i < names.size_definedName(); ++i) {
        auto& entry = names.get_definedName(i);
        std::wstring text = entry.get_value();
        bool changed = false, inString = false;
        for (size_t pos = 0; pos < text.size(); ++pos) {
            if (text[pos] == L'"') inString = !inString;
            if (inString || text.compare(pos, from.size(), from) != 0 || (pos > 0 && nameChar(text[pos - 1]))) continue;
            text.replace(pos, from.size(), to);
            pos += to.size() - 1;
            changed = true;
        }
        if (changed) entry.set_value(text);
    }
}

template <class T, class Tag>
SheetState XMLSheetImplT<T, Tag>::hidden() const {
    XS_BEGIN
    const auto* entry = sheetEntry();
    SheetState state = SheetVisible;
    if (entry->isset_state()) {
        std::wstring text = entry->get_state();
        if (text == L"hidden") state = SheetHidden;
        else if (text == L"veryHidden") state = SheetVeryHidden;
    }
    ok();
    return state;
    XS_END(SheetVisible)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setHidden(SheetState state) {
    XS_BEGIN
    auto* entry = sheetEntry();
    if (state != SheetVisible && hidden() == SheetVisible && _book->visibleSheetCount() <= 1)
        throw zverror("a workbook must contain at least one visible worksheet");
    entry->set_state(state == SheetHidden ? L"hidden" : state == SheetVeryHidden ? L"veryHidden" : L"visible");
    _book->calcActiveSheet();
    ok();
    return true;
    XS_END(false)
}

// ---------------------------------------------------------------- settings kept for later work

#define XS_NOT_IMPLEMENTED(value) \
    notImplemented();             \
    return value;


template class XMLSheetImplT<char, excelNormal_tag>;
template class XMLSheetImplT<wchar_t, excelNormal_tag>;
template class XMLSheetImplT<char, excelStrict_tag>;
template class XMLSheetImplT<wchar_t, excelStrict_tag>;

}  // namespace zelvar
