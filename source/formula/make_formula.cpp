#include "formula/make_formula.h"

namespace zelvar {

void MakeFormula::fixFuncWithDigits(std::wstring& name, std::wstring& rest) {
    if (name == L"LOG" && rest.size() > 1 && rest.compare(0, 2, L"10") == 0) {
        name += L"10";
        rest.erase(0, 2);
    } else if (name == L"DAYS" && rest.size() > 2 && rest.compare(0, 3, L"360") == 0) {
        name += L"360";
        rest.erase(0, 3);
    } else if (name == L"ATAN" && !rest.empty() && rest[0] == L'2') {
        name += L"2";
        rest.erase(0, 1);
    }
}

}  // namespace zelvar
