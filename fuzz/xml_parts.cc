// Fuzzes whole worksheet, styles, workbook and drawing parts through the schema-bound classes.
// The first byte picks the class, the rest is the part. Any input must end in a status code
// without a crash, a hang or a leak; whatever reads must write and read back, and from the
// second reading on the tree and the text must stay the same.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "ooxml/dml-spreadsheetDrawing.h"
#include "ooxml/sml-sheet.h"
#include "ooxml/sml-styles.h"
#include "ooxml/sml-workbook.h"
#include "ooxml/sml.h"
#include "ooxml/strictDrawing.h"

using namespace zelvar;

namespace {

template <class Root>
void round_trip(const char* data, size_t size) {
    Root first;
    if (first.unmarshal(data, size) != lmx::ELMX_OK) return;
    std::string out1;
    if (first.marshal(&out1) != lmx::ELMX_OK) return;  // a required item the input lacked
    // The first writing may leave out what can't be written where it stands (a foreign
    // attribute whose prefix is bound to another namespace there); from then on the tree and
    // the text are stable.
    Root second;
    lmx::s_debug_error debug;
    if (second.unmarshal(out1.data(), out1.size(), &debug) != lmx::ELMX_OK) {
        std::fprintf(stderr, "written part does not read back: %s\n%s\n", debug.to_string().c_str(), out1.c_str());
        std::abort();
    }
    std::string out2;
    second.marshal(&out2);
    Root third;
    if (third.unmarshal(out2.data(), out2.size(), &debug) != lmx::ELMX_OK) std::abort();
    if (!second.equals(third)) {
        std::fprintf(stderr, "tree read back differs:\n%s\n", out2.c_str());
        std::abort();
    }
    std::string out3;
    third.marshal(&out3);
    if (out2 != out3) {
        std::fprintf(stderr, "unstable writing:\n%s\n%s\n", out2.c_str(), out3.c_str());
        std::abort();
    }
    Root copy(first);
    if (!copy.equals(first)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    const char* text = reinterpret_cast<const char*>(data + 1);
    size_t n = size - 1;
    switch (data[0] % 8) {
        case 0: round_trip<sheet::c_worksheet>(text, n); break;
        case 1: round_trip<styles::c_styleSheet>(text, n); break;
        case 2: round_trip<workbook::c_workbook>(text, n); break;
        case 3: round_trip<drawing::c_wsDr>(text, n); break;
        case 4: round_trip<strict::c_worksheet>(text, n); break;
        case 5: round_trip<strict::c_styleSheet>(text, n); break;
        case 6: round_trip<strict::c_workbook>(text, n); break;
        default: round_trip<strictdrawing::c_wsDr>(text, n); break;
    }
    return 0;
}
