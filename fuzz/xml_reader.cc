// Fuzzes the XML reader through small classes in the generated style: any input must end in a
// status code without a crash, a hang or unbounded memory, and whatever reads must write, read
// back, and write the same bytes again.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "../tests/ooxml/lmx_test_classes.h"

using namespace zelvar::lmx;

namespace {

template <class Root>
void round_trip(const uint8_t* data, size_t size) {
    Root first;
    if (unmarshal(&first, reinterpret_cast<const char*>(data), size) != ELMX_OK) return;
    std::string out1;
    if (marshal(first, &out1) != ELMX_OK) return;  // e.g. a mandatory item the input lacked
    Root second;
    s_debug_error debug;
    if (unmarshal(&second, out1.data(), out1.size(), &debug) != ELMX_OK) {
        std::fprintf(stderr, "written document does not read back: %s\n%s\n", debug.to_string().c_str(), out1.c_str());
        std::abort();
    }
    std::string out2;
    marshal(second, &out2);
    Root third;
    if (unmarshal(&third, out2.data(), out2.size()) != ELMX_OK) std::abort();
    std::string out3;
    marshal(third, &out3);
    // Line ends are normalised on the first reading; from then on the text is stable.
    if (out2 != out3) {
        std::fprintf(stderr, "unstable round trip:\n%s\n%s\n", out2.c_str(), out3.c_str());
        std::abort();
    }
}

// Every event of a document without tables.
void walk(const uint8_t* data, size_t size) {
    c_read_memory source(reinterpret_cast<const char*>(data), reinterpret_cast<const char*>(data) + size);
    c_xml_reader reader(source);
    std::string value;
    for (int steps = 0; steps < 1000000; ++steps) {
        elmx_error e = ELMX_OK;
        int event = reader.get_element_event(nullptr, &e);
        if (e != ELMX_OK || event == EXE_EOM) return;
        if (event != EXE_ELEMENT_START) continue;
        while (reader.get_attribute_event(nullptr, &e)) reader.get_attribute_value(EXWS_COLLAPSE, &value);
        if (e != ELMX_OK) return;
        if (steps % 3 == 0) {
            if (!reader.get_element_value(EXWS_PRESERVE, &value, &e)) return;
        } else if (steps % 7 == 0) {
            c_any_info info;
            if (reader.get_any_element(&info) != ELMX_OK) return;
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    round_trip<lmxtest::c_worksheet>(data, size);
    round_trip<lmxtest::c_doc>(data, size);
    round_trip<lmxtest::c_sml_worksheet>(data, size);
    walk(data, size);
    return 0;
}
