// MD4 over a whole buffer in one call: 64-byte blocks, then the padding block(s) with the bit
// length, little-endian throughout.
#include "officeart/md4.h"

#include <cstring>

#include "frame/little_endian.h"

namespace zelvar {

namespace {

inline uint32_t rotl(uint32_t x, int s) { return (x << s) | (x >> (32 - s)); }

void md4Block(uint32_t state[4], const uint8_t* block) {
    uint32_t x[16];
    for (int i = 0; i < 16; ++i)
        x[i] = le::get32(block + 4 * i);
    uint32_t a = state[0], b = state[1], c = state[2], d = state[3];
    auto f = [](uint32_t u, uint32_t v, uint32_t w) { return (u & v) | (~u & w); };
    auto g = [](uint32_t u, uint32_t v, uint32_t w) { return (u & v) | (u & w) | (v & w); };
    auto h = [](uint32_t u, uint32_t v, uint32_t w) { return u ^ v ^ w; };
    static const int s1[4] = {3, 7, 11, 19}, s2[4] = {3, 5, 9, 13}, s3[4] = {3, 9, 11, 15};
    for (int i = 0; i < 16; ++i) {
        uint32_t t = a + f(b, c, d) + x[i];
        a = d, d = c, c = b, b = rotl(t, s1[i % 4]);
    }
    static const int order2[16] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
    for (int i = 0; i < 16; ++i) {
        uint32_t t = a + g(b, c, d) + x[order2[i]] + 0x5A827999u;
        a = d, d = c, c = b, b = rotl(t, s2[i % 4]);
    }
    static const int order3[16] = {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15};
    for (int i = 0; i < 16; ++i) {
        uint32_t t = a + h(b, c, d) + x[order3[i]] + 0x6ED9EBA1u;
        a = d, d = c, c = b, b = rotl(t, s3[i % 4]);
    }
    state[0] += a, state[1] += b, state[2] += c, state[3] += d;
}

}  // namespace

void md4(const void* data, size_t size, uint8_t digest[16]) {
    uint32_t state[4] = {0x67452301u, 0xEFCDAB89u, 0x98BADCFEu, 0x10325476u};
    const uint8_t* p = static_cast<const uint8_t*>(data);
    size_t whole = size / 64 * 64;
    for (size_t i = 0; i < whole; i += 64) md4Block(state, p + i);
    uint8_t tail[128] = {};
    size_t rest = size - whole;
    if (rest) std::memcpy(tail, p + whole, rest);
    tail[rest] = 0x80;
    size_t tailSize = rest < 56 ? 64 : 128;
    uint64_t bits = static_cast<uint64_t>(size) * 8;
    for (int i = 0; i < 8; ++i) tail[tailSize - 8 + i] = static_cast<uint8_t>(bits >> (8 * i));
    md4Block(state, tail);
    if (tailSize == 128) md4Block(state, tail + 64);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) digest[4 * i + j] = static_cast<uint8_t>(state[i] >> (8 * j));
}

}  // namespace zelvar
