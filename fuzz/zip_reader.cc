// Opens arbitrary bytes as a package from memory, lists every entry and extracts it.
// Failures must come out as zverror; anything else (a crash, a leak, a sanitizer report) is
// a fault.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "frame/zverror.h"
#include "zip/zip_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 0xFFFFFFFFu) return 0;
    try {
        zelvar::ZipReader reader(reinterpret_cast<const char*>(data), static_cast<unsigned>(size));
        unsigned count = reader.size();
        for (unsigned i = 0; i <= count; ++i) {  // one past the end must give nothing
            std::wstring name = reader.name(i);
            const char* bytes = nullptr;
            unsigned length = 0;
            try {
                reader.data(i, &bytes, &length);
            } catch (const zelvar::zverror&) {
            }
            if (bytes) {
                volatile char touch = length ? bytes[length - 1] : 0;
                (void)touch;
                std::free(const_cast<char*>(bytes));
            }
        }
    } catch (const zelvar::zverror&) {
    }
    return 0;
}
