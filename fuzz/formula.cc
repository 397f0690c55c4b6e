// Fuzz target for the formula text layer: infix text to reverse-polish text, and the A1 and
// R1C1 conversions. The first byte picks the mode; the rest is the text, one character per
// byte, except that 0xFE takes the next four bytes as a raw character value.
#include "formula/func_map.h"
#include "formula/reverse_polish.h"
#include "formula/xml_formula.h"
#include "frame/excel_util.h"
#include "frame/zverror.h"

#include "../tests/formula/formula_builder.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <string>

using namespace zelvar;

namespace {

std::wstring decodeText(const uint8_t* data, size_t size) {
    std::wstring text;
    text.reserve(size);
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == 0xFE && i + 4 < size) {
            uint32_t value;
            std::memcpy(&value, data + i + 1, 4);
            text.push_back(static_cast<wchar_t>(value));
            i += 4;
        } else {
            text.push_back(static_cast<wchar_t>(data[i]));
        }
    }
    return text;
}

uint32_t take32(const uint8_t*& data, size_t& size) {
    uint32_t value = 0;
    for (int i = 0; i < 4 && size > 0; ++i, ++data, --size) value |= uint32_t(*data) << (8 * i);
    return value;
}

void check(bool condition) {
    if (!condition) std::abort();
}

void fuzzReversePolish(const std::wstring& text) {
    static const FuncMap funcMap;
    try {
        std::wstring postfix = toReversePolish(text, funcMap);
        // Tokens are separated by one blank and never begin with one. (A token can end with
        // one: an unclosed quote keeps the blanks after it.)
        check(postfix.empty() || postfix.front() != L' ');
    } catch (const zverror&) {
    }
    try {
        FuncMap::getFuncParamCount(text);
    } catch (const zverror&) {
    }
    uint32_t ref = 0;
    ReversePolish::isFunc(text, ref, funcMap);
    ReversePolish::isRef(text);
}

void fuzzNotation(const uint8_t* data, size_t size) {
    const int row = static_cast<int>(take32(data, size) % 1048576);
    const int col = static_cast<int>(take32(data, size) % 16384);
    const std::wstring text = decodeText(data, size);

    // The notation tokenizer loses no character.
    std::wstring rest = text, joined;
    for (std::wstring token = XMLFormula::getToken(rest); !token.empty();
         token = XMLFormula::getToken(rest))
        joined += token;
    check(joined == text && rest.empty());

    for (bool binaryGrid : {true, false}) {
        std::wstring converted = text;
        try {
            XMLFormula::toRefA1(converted, row, col, binaryGrid);
            XMLFormula::toRefR1C1(converted, row, col);
        } catch (const zverror&) {
        }
    }
    std::wstring r1c1 = text;
    XMLFormula::toRefR1C1(r1c1, row, col);
}

// Any address of the larger grid goes to R1C1 and back unchanged, from any cell.
void fuzzAddressRoundTrip(const uint8_t* data, size_t size) {
    const int row = static_cast<int>(take32(data, size) % 1048576);
    const int col = static_cast<int>(take32(data, size) % 16384);
    const int cellRow = static_cast<int>(take32(data, size) % 1048576);
    const int cellCol = static_cast<int>(take32(data, size) % 16384);
    const bool rowRelative = size > 0 && (data[0] & 1), colRelative = size > 0 && (data[0] & 2);
    const bool lowerCase = size > 0 && (data[0] & 4);

    std::wstring addr = ExcelUtil::rowColToAddr(row, col, rowRelative, colRelative);
    std::wstring typed = addr;
    if (lowerCase)
        for (wchar_t& ch : typed) ch = static_cast<wchar_t>(std::towlower(ch));
    std::wstring r1c1 = XMLFormula::toR1C1(typed, cellRow, cellCol);
    check(XMLFormula::toA1(r1c1, cellRow, cellCol, false) == addr);
    if (row < 65536 && col < 256 && cellRow < 65536 && cellCol < 256)
        check(XMLFormula::toA1(r1c1, cellRow, cellCol, true) == addr);
}

// A formula built from the bytes must give exactly its own postfix text.
void fuzzPostfixOracle(const uint8_t* data, size_t size) {
    static const FuncMap funcMap;
    zelvar::formula_test::FormulaBuilder builder(data, size);
    zelvar::formula_test::FormulaBuilder::Expr formula = builder.build(0, 0, 0, false);
    std::wstring text = (size > 0 && (data[0] & 0x80)) ? L"=" + formula.text : formula.text;
    check(toReversePolish(text, funcMap) == formula.postfix);

    // The same formula goes to R1C1 and back unchanged but for its blanks.
    ReversePolish::removeSpaces(text);
    const bool binaryGrid = size > 1 && (data[1] & 1);
    const int row = static_cast<int>((size > 2 ? data[2] * 4099u : 0u) % (binaryGrid ? 65536 : 1048576));
    const int col = static_cast<int>((size > 3 ? data[3] * 67u : 0u) % (binaryGrid ? 256 : 16384));
    std::wstring converted = text;
    XMLFormula::toRefR1C1(converted, row, col);
    XMLFormula::toRefA1(converted, row, col, binaryGrid);
    check(converted == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Formula texts are short; longer inputs only slow the search down.
    if (size < 1 || size > 4096) return 0;
    const uint8_t mode = data[0] % 4;
    ++data;
    --size;
    switch (mode) {
    case 0:
        fuzzReversePolish(decodeText(data, size));
        break;
    case 3:
        fuzzPostfixOracle(data, size);
        break;
    case 1:
        fuzzNotation(data, size);
        break;
    case 2:
        fuzzAddressRoundTrip(data, size);
        break;
    }
    return 0;
}
