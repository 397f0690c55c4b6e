// The fast CRC must give zlib's results for every length, alignment and start value.
#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

#include "zip/zip_crc.h"

TEST(ZipCrc, AgreesWithZlib) {
    std::string data(70000, '\0');
    uint32_t seed = 99;
    for (char& c : data) {
        seed = seed * 1103515245u + 12345u;
        c = static_cast<char>(seed >> 23);
    }
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(data.data());
    for (size_t offset : {0, 1, 7, 15}) {
        for (size_t size : {0, 1, 15, 16, 63, 64, 255, 256, 257, 271, 1000, 4096, 65536 + 13}) {
            for (uint32_t start : {0u, 0xFFFFFFFFu, 0x12345678u}) {
                uint32_t expected = static_cast<uint32_t>(crc32(start, bytes + offset, static_cast<uInt>(size)));
                EXPECT_EQ(zelvar::zipCrc32(start, bytes + offset, size), expected) << offset << " " << size;
            }
        }
    }
    // Chained calls over pieces equal one call over the whole.
    uint32_t chained = zelvar::zipCrc32(0, bytes, 1000);
    chained = zelvar::zipCrc32(chained, bytes + 1000, 69000);
    EXPECT_EQ(chained, static_cast<uint32_t>(crc32(0, bytes, 70000)));
}
