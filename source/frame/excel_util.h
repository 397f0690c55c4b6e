// A1 addressing: row and column numbers to address text and back.
#pragma once
#include <string>

namespace zelvar {

struct ExcelUtil {
    // "$" marks an absolute part; a negative row gives a bare column such as "C".
    // Throws zverror for a row above 1048575 or a column above 16383.
    static std::wstring rowColToAddr(int row, int col, bool rowRelative, bool colRelative);
    // Appends the column letters of col (bijective base 26, A for 0) to out.
    static void appendColLetters(std::wstring& out, int col);
    // Parses "B3", "$B$3", "b3"; a text without digits gives row -1. Null outputs are skipped.
    static void addrToRowCol(const std::wstring& addr, int* row, int* col, bool* rowRelative,
                             bool* colRelative);
};

}  // namespace zelvar
