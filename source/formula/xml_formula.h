// Conversion of formula text between A1 and R1C1 notation. It works on the text alone,
// token by token, with no grammar of formulas behind it: whatever has the shape of an
// address is converted, whatever else passes unchanged.
#pragma once
#include <cstddef>
#include <string>

namespace zelvar {

struct XMLFormula {
    // Grid sizes that a negative relative result wraps round.
    static constexpr int binaryRows = 65536, binaryCols = 256;
    static constexpr int xmlRows = 1048576, xmlCols = 16384;

    // R1C1 text of the cell at row, col to A1 text, in place. binaryGrid selects the grid
    // of the binary family; the XML family passes false. Blanks outside quotes are lost.
    static void toRefA1(std::wstring& text, int row, int col, bool binaryGrid);
    // A1 text to R1C1 text for the cell at row, col, in place. Blanks outside quotes are lost.
    static void toRefR1C1(std::wstring& text, int row, int col);

    // One token in R1C1 form (R[-1]C2, rc, R3C) to A1; anything else comes back unchanged.
    // Throws zverror when the result lies outside the largest grid.
    static std::wstring toA1(const std::wstring& token, int row, int col, bool binaryGrid);
    // One token in A1 form ($B$3, b3) to R1C1; anything else comes back unchanged.
    static std::wstring toR1C1(const std::wstring& token, int row, int col);

    // Takes the next token off the front of text: a word (letters, digits, $ and the
    // brackets of R[..] and C[..]) or a run of other characters.
    static std::wstring getToken(std::wstring& text);
    // The same without erasing: reads from pos and moves pos past the token.
    static void getToken(const std::wstring& text, size_t& pos, std::wstring& token);
};

}  // namespace zelvar
