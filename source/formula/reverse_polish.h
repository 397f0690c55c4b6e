// Infix formula text to reverse-polish text. The postfix form stays text, one blank between
// tokens, so that each step can be inspected as a string and the encoder's tokenizer stays
// trivial. References are opaque words here; those at a reference parameter of a function
// get the letter R appended, which later selects the reference class of the token.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace zelvar {

class FuncMap;

class ReversePolish {
public:
    // One open function call while addRefs walks the text.
    struct FuncState {
        bool waitOpen = true;    // the call's own opening parenthesis is still to come
        bool inside = false;
        uint32_t ref = 0;        // reference mask of the function
        unsigned param = 0;      // index of the current argument
        unsigned innerOpen = 0;  // plain parentheses opened inside the call
    };

    // Removes blanks outside double and single quotes.
    static void removeSpaces(std::wstring& text);
    // At least two characters, a double quote at each end.
    static bool isString(const std::wstring& token);
    // Operator precedence; ( is 0 and anything that isn't an operator -1.
    static int pri(const std::wstring& op);
    static bool isOperator(const std::wstring& token);
    // Every character alphanumeric or one of : $ . ! (true for the empty text).
    static bool isAlphaNumber(const std::wstring& token);
    // Only the digits 0 to 9 (true for the empty text).
    static bool isNumber(const std::wstring& token);
    // A single-cell reference such as $A$1 or Sheet1!B2; a range A1:B2 is not one.
    static bool isRef(const std::wstring& token);

    // Takes the next token off the front of text; empty at the end. Blanks outside quotes
    // are dropped, quotes stay in the token.
    static std::wstring getToken(std::wstring& text);
    // The same without erasing: reads from pos and moves pos past the token.
    static void getToken(const std::wstring& text, size_t& pos, std::wstring& token);

    // Removes one leading "=".
    static void prepare(std::wstring& text);
    // True if token names a function, as a plain name or as a postfix word "nameNF".
    static bool isFunc(const std::wstring& token, uint32_t& ref, const FuncMap& funcMap);
    // Appends R to every reference that stands at a reference parameter of a function.
    static void addRefs(std::wstring& text, const FuncMap& funcMap);
};

// Infix formula text (an optional leading "=") to reverse-polish text. Throws zverror with
// "error in formula", "error: function parentheses not found" or
// "error: function name without open parenthesis".
std::wstring toReversePolish(std::wstring text, const FuncMap& funcMap);

}  // namespace zelvar
