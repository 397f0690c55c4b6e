// Named ranges of an XML worksheet, its print area and its print titles: defined names of the
// workbook whose text refers to this sheet.
#include <cwchar>

#include "frame/excel_util.h"
#include "xmlbook/xml_book.h"
#include "xmlbook/xml_guard.h"

namespace zelvar {


namespace {

const wchar_t* const kPrintArea = L"_xlnm.Print_Area";
const wchar_t* const kPrintTitles = L"_xlnm.Print_Titles";

// The area of a name's text: the first area only when it lists several.
bool readArea(const std::wstring& right, int* r1, int* r2, int* c1, int* c2, bool* skipped) {
    std::wstring area = right, rest;
    *skipped = StrUtil::split(right, L',', area, rest);
    int rowFirst, colFirst, rowLast, colLast;
    std::wstring first = area, second;
    if (StrUtil::split(area, L':', first, second)) {
        ExcelUtil::addrToRowCol(first, &rowFirst, &colFirst, nullptr, nullptr);
        ExcelUtil::addrToRowCol(second, &rowLast, &colLast, nullptr, nullptr);
    } else {
        ExcelUtil::addrToRowCol(area, &rowFirst, &colFirst, nullptr, nullptr);
        rowLast = rowFirst;
        colLast = colFirst;
    }
    if (r1) *r1 = rowFirst;
    if (r2) *r2 = rowLast;
    if (c1) *c1 = colFirst;
    if (c2) *c2 = colLast;
    return true;
}

}  // namespace

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::setNamedRange(const T* name, int rowFirst, int rowLast, int colFirst, int colLast) {
    XS_BEGIN
    if (!name) throw zverror("name is null");
    std::wstring wide;
    toWide(name, utf8(), wide);
    if (wide.find(L' ') != std::wstring::npos) throw zverror("space symbol isn't allowed");
    if (!_book || _index < 0 || _index >= _book->sheetCount()) throw zverror("sheet doen't have relationship with book");
    std::wstring text = StrUtil::quote(sheetEntry()->get_name()) + L"!" + ExcelUtil::rowColToAddr(rowFirst, colFirst, false, false);
    if (rowFirst != rowLast || colFirst != colLast) text += L":" + ExcelUtil::rowColToAddr(rowLast, colLast, false, false);
    auto& names = _book->xml().get_definedNames();
    typename X::DefinedName* entry = nullptr;
    for (size_t i = 0; i < names.size_definedName() && !entry; ++i) {
        auto& candidate = names.get_definedName(i);
        if (candidate.isset_localSheetId() && candidate.get_localSheetId() == static_cast<uint32_t>(_index) &&
            candidate.get_name() == wide)
            entry = &candidate;
    }
    if (!entry) entry = &names.append_definedName();
    entry->set_name(wide);
    entry->set_localSheetId(static_cast<uint32_t>(_index));
    entry->set_value(text);
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::getNamedRange(const T* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    XS_BEGIN
    if (!name) throw zverror("name is null");
    std::wstring wide;
    toWide(name, utf8(), wide);
    const std::wstring sheetName = sheetEntry()->get_name();
    auto& book = _book->xml();
    if (book.isset_definedNames()) {
        auto& names = book.get_definedNames();
        for (size_t i = 0; i < names.size_definedName(); ++i) {
            auto& entry = names.get_definedName(i);
            std::wstring left, right;
            if (!sicmp(entry.get_name(), wide) || !StrUtil::split(entry.get_value(), L'!', left, right)) continue;
            if (StrUtil::unquote(left) != sheetName) continue;
            bool skipped = false;
            readArea(right, rowFirst, rowLast, colFirst, colLast, &skipped);
            if (skipped)
                fail("warning: some parts were skipped");
            else
                ok();
            return true;
        }
    }
    throw zverror("named range is not found");
    XS_END(false)
}

template <class T, class Tag>
int XMLSheetImplT<T, Tag>::namedRangeSize() const {
    XS_BEGIN
    const std::wstring sheetName = sheetEntry()->get_name();
    const auto* names = static_cast<const typename X::Workbook&>(_book->xml()).get_definedNames();
    int count = 0;
    for (size_t i = 0; names && i < names->size_definedName(); ++i) {
        std::wstring left, right;
        if (StrUtil::split(names->get_definedName(i).get_value(), L'!', left, right) && StrUtil::unquote(left) == sheetName) ++count;
    }
    ok();
    return count;
    XS_END(0)
}

template <class T, class Tag>
const T* XMLSheetImplT<T, Tag>::namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    XS_BEGIN
    const std::wstring sheetName = sheetEntry()->get_name();
    auto& book = _book->xml();
    if (book.isset_definedNames() && index >= 0) {
        auto& names = book.get_definedNames();
        int seen = 0;
        for (size_t i = 0; i < names.size_definedName(); ++i) {
            auto& entry = names.get_definedName(i);
            std::wstring left, right;
            if (!StrUtil::split(entry.get_value(), L'!', left, right) || StrUtil::unquote(left) != sheetName) continue;
            if (seen++ != index) continue;
            bool skipped = false;
            readArea(right, rowFirst, rowLast, colFirst, colLast, &skipped);
            std::wstring text = entry.get_name();
            const T* result = tc(text.c_str());
            if (skipped) fail("warning: some parts were skipped");
            return result;
        }
    }
    throw zverror("index is out of range");
    XS_END(nullptr)
}

template <class T, class Tag>
bool XMLSheetImplT<T, Tag>::delNamedRange(const T* name) {
    XS_BEGIN
    if (!name) throw zverror("name is null");
    std::wstring wide;
    toWide(name, utf8(), wide);
    if (!_book->clearDefinedName(_index, wide)) throw zverror("named range not found");
    ok();
    return true;
    XS_END(false)
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) {
    XS_BEGIN
    std::basic_string<T> name(kPrintArea, kPrintArea + std::wcslen(kPrintArea));
    setNamedRange(name.c_str(), rowFirst, rowLast, colFirst, colLast);
    XS_END_VOID
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::clearPrintArea() {
    XS_BEGIN
    if (_index < 0 || _index >= _book->sheetCount()) throw zverror("index is out of range");
    _book->clearDefinedName(_index, kPrintArea);
    ok();
    XS_END_VOID
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::clearPrintRepeats() {
    XS_BEGIN
    if (_index < 0 || _index >= _book->sheetCount()) throw zverror("index is out of range");
    _book->clearDefinedName(_index, kPrintTitles);
    ok();
    XS_END_VOID
}

namespace {

// Rows and columns of a print titles text: with a "," the rows come first; alone, a digit after
// the first "$" marks rows.
void splitTitles(const std::wstring& text, std::wstring& rows, std::wstring& cols) {
    std::wstring left, right;
    if (StrUtil::split(text, L',', left, right)) {
        rows = left;
        cols = right;
        return;
    }
    size_t dollar = text.find(L'$');
    if (dollar != std::wstring::npos && dollar + 1 < text.size() && text[dollar + 1] >= L'0' && text[dollar + 1] <= L'9')
        rows = text;
    else
        cols = text;
}

}  // namespace

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setPrintRepeatRows(int rowFirst, int rowLast) {
    XS_BEGIN
    if (_index < 0 || _index >= _book->sheetCount()) throw zverror("index is out of range");
    std::wstring text = StrUtil::quote(sheetEntry()->get_name()) + L"!$" + std::to_wstring(rowFirst + 1) + L":$" +
                        std::to_wstring(rowLast + 1);
    setRepeat(0, text);
    ok();
    XS_END_VOID
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setPrintRepeatCols(int colFirst, int colLast) {
    XS_BEGIN
    if (_index < 0 || _index >= _book->sheetCount()) throw zverror("index is out of range");
    if (static_cast<unsigned>(colFirst) >= 16384u || static_cast<unsigned>(colLast) >= 16384u)
        throw zverror("col must be less than 16384");
    std::wstring text = StrUtil::quote(sheetEntry()->get_name()) + L"!$";
    ExcelUtil::appendColLetters(text, colFirst);
    text += L":$";
    ExcelUtil::appendColLetters(text, colLast);
    setRepeat(1, text);
    ok();
    XS_END_VOID
}

template <class T, class Tag>
void XMLSheetImplT<T, Tag>::setRepeat(int which, const std::wstring& text) {
    auto& names = _book->xml().get_definedNames();
    typename X::DefinedName* entry = nullptr;
    std::wstring rows, cols;
    for (size_t i = 0; i < names.size_definedName() && !entry; ++i) {
        auto& candidate = names.get_definedName(i);
        if (candidate.isset_localSheetId() && candidate.get_localSheetId() == static_cast<uint32_t>(_index) &&
            candidate.get_name() == kPrintTitles)
            entry = &candidate;
    }
    if (entry) splitTitles(entry->get_value(), rows, cols);
    (which == 0 ? rows : cols) = text;
    if (!entry) {
        entry = &names.append_definedName();
        entry->set_name(kPrintTitles);
    }
    entry->set_localSheetId(static_cast<uint32_t>(_index));
    entry->set_value(rows + (!rows.empty() && !cols.empty() ? L"," : L"") + cols);
}

template class XMLSheetImplT<char, excelNormal_tag>;
template class XMLSheetImplT<wchar_t, excelNormal_tag>;
template class XMLSheetImplT<char, excelStrict_tag>;
template class XMLSheetImplT<wchar_t, excelStrict_tag>;

}  // namespace zelvar
