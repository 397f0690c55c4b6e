// Compiling reverse-polish formula text into the token bytes of the binary format.
#pragma once
#include <string>

namespace zelvar {

struct MakeFormula {
    // A function token such as "LOG101F" is cut at its first digit into "LOG" and "101F";
    // this gives the digits that belong to the name back to it: LOG10, DAYS360 and ATAN2.
    // SUMX2MY2, SUMX2PY2 and SUMXMY2 have no such rule and stay unrecognised.
    static void fixFuncWithDigits(std::wstring& name, std::wstring& rest);
};

}  // namespace zelvar
