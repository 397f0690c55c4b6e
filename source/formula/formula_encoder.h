// Reverse-polish formula text to the token bytes of the binary format. A flat pass: each token is
// recognised by a fixed order of tests and appended; classes come from the reference mark.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "formula/func_map.h"

namespace zelvar {

// What the encoder asks of the book: the external sheet index of a sheet name (or "A:B" range),
// created at the first reference and reused after. Throws "sheet is not found".
class XtiResolver {
public:
    virtual ~XtiResolver() {}
    virtual uint16_t makeXti(const std::wstring& sheet) = 0;
};

struct FormulaEncoder {
    // Appends the tokens (rgce) of the reverse-polish text to out.
    static void makeFormula(std::vector<uint8_t>& out, const std::wstring& rpn, XtiResolver& xti,
                            const FuncMap& funcMap);
    static bool isReference(const std::wstring& token, unsigned& row, unsigned& col, bool& refMark,
                            bool& rowRelative, bool& colRelative);
};

}  // namespace zelvar
