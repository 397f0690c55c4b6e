#include "frame/excel_util.h"

#include "frame/zverror.h"

namespace zelvar {

void ExcelUtil::appendColLetters(std::wstring& out, int col) {
    wchar_t letters[8];
    int n = 0;
    unsigned c = static_cast<unsigned>(col) + 1;
    while (c > 0 && n < 8) {
        unsigned rem = (c - 1) % 26;
        letters[n++] = static_cast<wchar_t>(L'A' + rem);
        c = (c - 1) / 26;
    }
    while (n > 0) out.push_back(letters[--n]);
}

std::wstring ExcelUtil::rowColToAddr(int row, int col, bool rowRelative, bool colRelative) {
    // row + 1 taken as unsigned, computed so that the largest int does not overflow.
    if (static_cast<unsigned>(row) + 1u > 1048576u) throw zverror("row must be in range 0-1048575");
    if (col >= 16384 || col < 0) throw zverror("col must be in range 0-16383");
    std::wstring out;
    out.reserve(12);
    if (!colRelative) out.push_back(L'$');
    appendColLetters(out, col);
    if (!rowRelative) out.push_back(L'$');
    if (row >= 0) out += std::to_wstring(row + 1);
    return out;
}

void ExcelUtil::addrToRowCol(const std::wstring& addr, int* row, int* col, bool* rowRelative,
                             bool* colRelative) {
    size_t digits = addr.find_first_of(L"123456789");
    if (digits == std::wstring::npos) digits = addr.size();

    long long rowNumber = 0;
    for (size_t i = digits; i < addr.size(); ++i) {
        wchar_t ch = addr[i];
        if (ch < L'0' || ch > L'9') break;
        rowNumber = rowNumber * 10 + (ch - L'0');
        if (rowNumber > 0x7FFFFFFF) break;
    }
    long long colNumber = 0;
    for (size_t i = 0; i < digits; ++i) {
        wchar_t ch = addr[i];
        if (ch >= L'a' && ch <= L'z') ch = static_cast<wchar_t>(ch - L'a' + L'A');
        if (ch < L'A' || ch > L'Z') continue;
        colNumber = colNumber * 26 + (ch - L'A' + 1);
        if (colNumber > 0x7FFFFFFF) break;
    }
    if (row) *row = static_cast<int>(rowNumber - 1);
    if (col) *col = static_cast<int>(colNumber - 1);
    if (rowRelative) *rowRelative = !(digits > 0 && digits <= addr.size() && addr[digits - 1] == L'$');
    if (colRelative) *colRelative = !(!addr.empty() && addr[0] == L'$');
}

}  // namespace zelvar
