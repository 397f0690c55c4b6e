// Fuzz target: formula text through the sheet's compiler and back through the decoder, and raw
// token bytes through the decoder. Failures must be messages; nothing may crash or hang.
#include <cstddef>
#include <cstdint>
#include <string>

#include "formula/formula_decoder.h"
#include "frame/zverror.h"
#include "zelvar.h"

namespace {
class NoNames : public zelvar::FormulaNames {
public:
    std::wstring referenceName(uint16_t ixti) const override { return ixti ? L"#REF!" : L"Sheet1!"; }
    std::wstring definedName(uint32_t) const override { return L"?"; }
};
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 4096) return 0;
    // Token bytes straight into the decoder, plain and as a shared formula.
    NoNames names;
    for (bool shared : {false, true}) {
        try {
            zelvar::GetFormula::getFormula(data, size, false, names, shared, 7, 3);
        } catch (const zelvar::zverror&) {
        }
    }
    // The same bytes as formula text through write and read.
    static zelvar::IBookT<char>* book = [] {
        zelvar::IBookT<char>* b = zvCreateBookA();
        b->setLocale("UTF-8");
        b->addSheet("Sheet1");
        b->addSheet("My Sheet");
        return b;
    }();
    zelvar::ISheetT<char>* sheet = book->getSheet(0);
    std::string text(reinterpret_cast<const char*>(data), size);
    if (text.find('\0') != std::string::npos) return 0;
    if (sheet->writeFormula(0, 0, text.c_str())) sheet->readFormula(0, 0);
    return 0;
}
