#include "formula/xml_formula.h"

#include "formula/reverse_polish.h"
#include "frame/excel_util.h"
#include "frame/zverror.h"

#include <cwctype>

namespace zelvar {

namespace {

bool isDigit(wchar_t ch) { return ch >= L'0' && ch <= L'9'; }
bool isLetter(wchar_t ch) { return (ch >= L'A' && ch <= L'Z') || (ch >= L'a' && ch <= L'z'); }
bool isAlnum(wchar_t ch) { return std::iswalnum(static_cast<wint_t>(ch)) != 0; }

// Large enough to lie outside every grid, small enough to add without overflow.
constexpr long long numberCap = 1LL << 40;

// One half of an R1C1 reference after its letter: "[-2]", "[3]", "5" or nothing.
// Returns false if the text at pos doesn't fit.
bool readR1C1Part(const std::wstring& token, size_t& pos, bool& relative, long long& value) {
    const size_t size = token.size();
    relative = true;
    value = 0;
    if (pos < size && token[pos] == L'[') {
        ++pos;
        bool negative = false;
        if (pos < size && token[pos] == L'-') {
            negative = true;
            ++pos;
        }
        size_t digitsStart = pos;
        while (pos < size && isDigit(token[pos])) {
            value = value * 10 + (token[pos] - L'0');
            if (value > numberCap) value = numberCap;
            ++pos;
        }
        if (pos == digitsStart || pos >= size || token[pos] != L']') return false;
        ++pos;
        if (negative) value = -value;
        return true;
    }
    if (pos < size && isDigit(token[pos])) {
        relative = false;
        while (pos < size && isDigit(token[pos])) {
            value = value * 10 + (token[pos] - L'0');
            if (value > numberCap) value = numberCap;
            ++pos;
        }
        // Numbers are one-based: R0 names no row.
        return value > 0;
    }
    return true;  // the letter alone: offset 0
}

void appendR1C1Part(std::wstring& out, wchar_t letter, bool relative, long long target, int base) {
    out += letter;
    if (!relative) {
        out += std::to_wstring(target + 1);
        return;
    }
    long long offset = target - base;
    if (offset == 0) return;  // the cell's own row or column
    out += L'[';
    out += std::to_wstring(offset);
    out += L']';
}

template <typename Convert>
void convertText(std::wstring& text, Convert convert) {
    ReversePolish::removeSpaces(text);
    std::wstring out;
    out.reserve(text.size() + 16);
    std::wstring token;
    size_t pos = 0;
    for (;;) {
        XMLFormula::getToken(text, pos, token);
        if (token.empty()) break;
        // A word followed by "(" names a function: LOG10, ATAN2 and DAYS360 have the shape
        // of an address but must come through unchanged.
        if (pos < text.size() && text[pos] == L'(') out += token;
        else out += convert(token);
    }
    text.swap(out);
}

}  // namespace

void XMLFormula::getToken(const std::wstring& text, size_t& pos, std::wstring& token) {
    token.clear();
    const size_t size = text.size();
    if (pos >= size) return;
    const size_t start = pos;
    const wchar_t first = text[pos];
    const bool word = isAlnum(first) || first == L'$' || first == L'R' || first == L'r';
    bool inBracket = false;
    size_t i = pos + 1;
    for (; i < size; ++i) {
        const wchar_t ch = text[i];
        const wchar_t prev = text[i - 1];
        if (ch == L'-' && prev == L'[') continue;
        if (inBracket && ch == L']') {
            inBracket = false;
            continue;
        }
        if (!word && ch == L'$') break;
        if (word && ch == L'[' &&
            (prev == L'R' || prev == L'r' || prev == L'C' || prev == L'c')) {
            inBracket = true;
            continue;
        }
        if (word && ch == L'$') continue;
        if (isAlnum(ch) == word) continue;
        break;
    }
    token.assign(text, start, i - start);
    pos = i;
}

std::wstring XMLFormula::getToken(std::wstring& text) {
    size_t pos = 0;
    std::wstring token;
    getToken(text, pos, token);
    text.erase(0, pos);
    return token;
}

std::wstring XMLFormula::toR1C1(const std::wstring& token, int row, int col) {
    // Shape of an address: optional $, letters, optional $, 1 to 8 digits, nothing else.
    const size_t size = token.size();
    size_t i = 0;
    const bool colRelative = !(i < size && token[i] == L'$');
    if (!colRelative) ++i;
    const size_t lettersStart = i;
    while (i < size && isLetter(token[i])) ++i;
    if (i == lettersStart || i - 1 > 3) return token;
    const bool rowRelative = !(i < size && token[i] == L'$');
    if (!rowRelative) ++i;
    const size_t digitsStart = i;
    while (i < size && isDigit(token[i])) ++i;
    if (i != size || i == digitsStart || i - digitsStart > 8) return token;

    // The flags come from the shape just read, so that a row written with leading zeros
    // ($A$01) keeps its "$".
    int targetRow = 0, targetCol = 0;
    ExcelUtil::addrToRowCol(token, &targetRow, &targetCol, nullptr, nullptr);
    if (targetRow < 0) return token;  // row 0 such as A0 is no address

    std::wstring out;
    out.reserve(16);
    appendR1C1Part(out, L'R', rowRelative, targetRow, row);
    appendR1C1Part(out, L'C', colRelative, targetCol, col);
    return out;
}

std::wstring XMLFormula::toA1(const std::wstring& token, int row, int col, bool binaryGrid) {
    const size_t size = token.size();
    size_t pos = 0;
    if (pos >= size || (token[pos] != L'R' && token[pos] != L'r')) return token;
    ++pos;
    bool rowRelative = true, colRelative = true;
    long long rowValue = 0, colValue = 0;
    if (!readR1C1Part(token, pos, rowRelative, rowValue)) return token;
    if (pos >= size || (token[pos] != L'C' && token[pos] != L'c')) return token;
    ++pos;
    if (!readR1C1Part(token, pos, colRelative, colValue)) return token;
    if (pos != size) return token;

    long long targetRow = rowRelative ? row + rowValue : rowValue - 1;
    long long targetCol = colRelative ? col + colValue : colValue - 1;
    // A relative reference above the first row or left of the first column wraps round.
    if (rowRelative && targetRow < 0) targetRow += binaryGrid ? binaryRows : xmlRows;
    if (colRelative && targetCol < 0) targetCol += binaryGrid ? binaryCols : xmlCols;
    if (targetRow < 0 || targetRow >= xmlRows) throw zverror("row must be in range 0-1048575");
    if (targetCol < 0 || targetCol >= xmlCols) throw zverror("col must be in range 0-16383");
    return ExcelUtil::rowColToAddr(static_cast<int>(targetRow), static_cast<int>(targetCol),
                                   rowRelative, colRelative);
}

void XMLFormula::toRefA1(std::wstring& text, int row, int col, bool binaryGrid) {
    convertText(text, [&](const std::wstring& token) { return toA1(token, row, col, binaryGrid); });
}

void XMLFormula::toRefR1C1(std::wstring& text, int row, int col) {
    convertText(text, [&](const std::wstring& token) { return toR1C1(token, row, col); });
}

}  // namespace zelvar
