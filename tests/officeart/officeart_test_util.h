// Picture files made in the tests, in each format the store takes, and small helpers.
#pragma once
#include <zlib.h>

#include <cstdint>
#include <string>

#include "../book/test_util.h"

namespace zvtest {

inline void putLe(std::string& s, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) s.push_back(static_cast<char>(v >> (8 * i)));
}
inline void putBe(std::string& s, uint32_t v, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) s.push_back(static_cast<char>(v >> (8 * i)));
}

// A valid RGB PNG of width x height pixels in a colour gradient.
inline std::string makePng(uint32_t width, uint32_t height) {
    auto chunk = [](std::string& out, const char* type, const std::string& data) {
        putBe(out, static_cast<uint32_t>(data.size()), 4);
        std::string body = std::string(type, 4) + data;
        out += body;
        putBe(out, static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()))), 4);
    };
    std::string png("\x89PNG\r\n\x1a\n", 8);
    std::string ihdr;
    putBe(ihdr, width, 4);
    putBe(ihdr, height, 4);
    ihdr += std::string("\x08\x02\x00\x00\x00", 5);
    chunk(png, "IHDR", ihdr);
    std::string raw;
    for (uint32_t y = 0; y < height; ++y) {
        raw.push_back(0);
        for (uint32_t x = 0; x < width; ++x) {
            raw.push_back(static_cast<char>(x * 40));
            raw.push_back(static_cast<char>(y * 60));
            raw.push_back(static_cast<char>(128));
        }
    }
    uLongf size = compressBound(static_cast<uLong>(raw.size()));
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(&packed[0]), &size, reinterpret_cast<const Bytef*>(raw.data()), static_cast<uLong>(raw.size()));
    packed.resize(size);
    chunk(png, "IDAT", packed);
    chunk(png, "IEND", "");
    return png;
}

// A baseline grey JPEG of width x height pixels that decoders read: every 8x8 block holds only a
// zero DC difference and an end of block, each coded by a one-bit Huffman code. The first segment
// is a JFIF or an EXIF one.
inline std::string makeJpeg(uint16_t width, uint16_t height, bool exif) {
    std::string j("\xFF\xD8", 2);
    auto segment = [&](uint8_t marker, const std::string& body) {
        j.push_back(static_cast<char>(0xFF));
        j.push_back(static_cast<char>(marker));
        putBe(j, static_cast<uint32_t>(body.size() + 2), 2);
        j += body;
    };
    if (exif)
        segment(0xE1, std::string("Exif\0\0II*\0\x08\0\0\0\0\0\0\0\0\0", 20));
    else
        segment(0xE0, std::string("JFIF\0\x01\x01\0\0\x01\0\x01\0\0", 14));
    segment(0xDB, std::string(1, '\0') + std::string(64, '\x01'));  // quantisation table 0
    std::string frame("\x08", 1);
    putBe(frame, height, 2);
    putBe(frame, width, 2);
    frame += std::string("\x01\x01\x11\x00", 4);  // one component, no subsampling, table 0
    segment(0xC0, frame);
    std::string one(16, '\0');
    one[0] = 1;  // one code of length 1
    segment(0xC4, std::string("\x00", 1) + one + std::string("\x00", 1));  // DC: category 0
    segment(0xC4, std::string("\x10", 1) + one + std::string("\x00", 1));  // AC: end of block
    segment(0xDA, std::string("\x01\x01\x00\x00\x3F\x00", 6));
    size_t blocks = static_cast<size_t>((width + 7) / 8) * static_cast<size_t>((height + 7) / 8);
    size_t bits = 2 * blocks;
    std::string data((bits + 7) / 8, '\0');
    for (size_t b = bits; b < data.size() * 8; ++b) data[b / 8] = static_cast<char>(data[b / 8] | (0x80 >> (b % 8)));
    j += data;
    j += std::string("\xFF\xD9", 2);
    return j;
}

// A placeable metafile: the 22-byte placeable header, the metafile header and the end record.
inline std::string makeWmf() {
    std::string w("\xD7\xCD\xC6\x9A", 4);
    putLe(w, 0, 2);
    for (uint32_t v : {0u, 0u, 1000u, 500u}) putLe(w, v, 2);
    putLe(w, 1440, 2);
    putLe(w, 0, 4);
    uint16_t check = 0;
    for (size_t i = 0; i < 20; i += 2) check ^= static_cast<uint16_t>(static_cast<uint8_t>(w[i]) | static_cast<uint8_t>(w[i + 1]) << 8);
    putLe(w, check, 2);
    putLe(w, 1, 2);   // memory metafile
    putLe(w, 9, 2);   // header size in words
    putLe(w, 0x300, 2);
    putLe(w, 12, 4);  // size in words: header 9 + end record 3
    putLe(w, 0, 2);
    putLe(w, 3, 4);
    putLe(w, 0, 2);
    putLe(w, 3, 4);  // end record
    putLe(w, 0, 2);
    return w;
}

// An enhanced metafile: its header record with bounds width x height, and the end record.
inline std::string makeEmf(uint32_t width, uint32_t height) {
    std::string e;
    putLe(e, 1, 4);
    putLe(e, 88, 4);
    for (uint32_t v : {0u, 0u, width, height}) putLe(e, v, 4);      // bounds
    for (uint32_t v : {0u, 0u, 2000u, 1000u}) putLe(e, v, 4);       // frame
    putLe(e, 0x464D4520, 4);
    putLe(e, 0x10000, 4);
    putLe(e, 88 + 20, 4);  // bytes
    putLe(e, 2, 4);        // records
    putLe(e, 1, 2);
    putLe(e, 0, 2);
    putLe(e, 0, 4);
    putLe(e, 0, 4);
    putLe(e, 0, 4);
    for (uint32_t v : {1920u, 1080u, 508u, 285u}) putLe(e, v, 4);
    putLe(e, 14, 4);  // EMR_EOF
    putLe(e, 20, 4);
    putLe(e, 0, 4);
    putLe(e, 16, 4);
    putLe(e, 20, 4);
    return e;
}

// A 24-bit bitmap without its file header (a DIB), rows padded to 4 bytes.
inline std::string makeDib(int32_t width, int32_t height) {
    std::string d;
    putLe(d, 40, 4);
    putLe(d, static_cast<uint32_t>(width), 4);
    putLe(d, static_cast<uint32_t>(height), 4);
    putLe(d, 1, 2);
    putLe(d, 24, 2);
    putLe(d, 0, 4);
    uint32_t row = (static_cast<uint32_t>(width) * 3 + 3) / 4 * 4;
    putLe(d, row * static_cast<uint32_t>(height), 4);
    putLe(d, 2835, 4);
    putLe(d, 2835, 4);
    putLe(d, 0, 4);
    putLe(d, 0, 4);
    for (int32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < row; ++x) d.push_back(static_cast<char>(x * 7 + static_cast<uint32_t>(y)));
    return d;
}

// The same bitmap as a .bmp file: the 14-byte file header in front.
inline std::string makeBmp(int32_t width, int32_t height) {
    std::string dib = makeDib(width, height);
    std::string b("BM", 2);
    putLe(b, static_cast<uint32_t>(14 + dib.size()), 4);
    putLe(b, 0, 4);
    putLe(b, 14 + 40, 4);
    return b + dib;
}

inline std::string unescapeTabs(const std::string& s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 1 < s.size()) {
            char c = s[++i];
            out.push_back(c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c);
        } else {
            out.push_back(s[i]);
        }
    }
    return out;
}

}  // namespace zvtest
