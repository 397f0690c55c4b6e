// Parsed formula tokens of the binary format back to formula text: each token becomes a word of
// a reverse-polish text, which a stack of strings turns into infix text.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "formula/func_map.h"

namespace zelvar {

// What the decoder asks of the book: sheet names behind an external sheet index, defined names.
class FormulaNames {
public:
    virtual ~FormulaNames() {}
    // "Sheet1!", "'My sheet'!", "#REF!" or empty.
    virtual std::wstring referenceName(uint16_t ixti) const = 0;
    // The defined name with this 1-based index, or "?".
    virtual std::wstring definedName(uint32_t index) const = 0;
};

struct GetFormula {
    // The whole way from token bytes to infix text. With shared, relative references are offsets
    // from the asking cell (row, col). Throws zverror with the decoder's messages.
    static std::wstring getFormula(const uint8_t* rgce, size_t length, bool biff5, const FormulaNames& names,
                                   bool shared, uint16_t row, uint16_t col);
    static std::wstring toExcelAddr(unsigned row, unsigned col, bool rowRelative, bool colRelative, bool columnOnly);
    // Reverse-polish words to infix text; arguments are joined with ";".
    static std::wstring toInfix(const std::wstring& rpn, const FuncMap& funcMap);
    // "LOG102F" gives LOG10 with 2 arguments; false when the word is no known function call.
    static bool isFunc(const std::wstring& word, std::wstring& name, int& count, const FuncMap& funcMap);
    // A sheet name in single quotes when it holds a blank or a hyphen, quotes doubled inside.
    static std::wstring quote(const std::wstring& name);
};

// The function table is fixed; one instance serves every book.
const FuncMap& sharedFuncMap();

}  // namespace zelvar
