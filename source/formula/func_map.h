// The table between function names of formula text and function numbers of the token stream.
#pragma once
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace zelvar {

class FuncMap {
public:
    struct FI {
        uint16_t code;   // function number of the token stream
        uint32_t ref;    // bit n set: parameter n (from 0) takes a reference
        uint8_t params;  // fixed parameter count of the fixed-arity token; 0 when variable or none
    };
    using Table = std::map<std::wstring, FI>;

    // Answer for a name the table doesn't know; no row uses it.
    static constexpr unsigned short unknownCode = 255;

    FuncMap();

    // Exact, case-sensitive lookup: "SUM" is 4, "sum" is unknown.
    unsigned short code(const std::wstring& name) const;
    // (code, ref); (255, 0) for an unknown name.
    std::pair<unsigned short, uint32_t> codeRef(const std::wstring& name) const;
    // The name of a function number, "?" if unknown. *params (when given) gets the row's
    // fixed count, or 0.
    const std::wstring& name(unsigned short code, int* params) const;

    // Counts the arguments of the outermost parenthesis pair of rest, which starts at the
    // call's opening parenthesis (blanks before it are allowed). A leading empty argument is
    // not counted: f(,b) is 1. Throws zverror when no pair is found.
    static int getFuncParamCount(const std::wstring& rest) { return getFuncParamCount(rest, 0); }
    // The same on the text from index from on, so a parser needn't copy its remainder.
    static int getFuncParamCount(const std::wstring& text, size_t from);
    static int countParams(const std::wstring&) { return 0; }

    const Table& table() const { return _table; }

private:
    static constexpr unsigned maxCode = 380;
    Table _table;
    // Reverse index for the decoder; codes are unique, so this equals a scan in key order.
    const Table::value_type* _byCode[maxCode] = {};
};

}  // namespace zelvar
