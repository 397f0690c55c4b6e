#include "zip/zip_crc.h"

#include <zlib.h>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define ZELVAR_CRC_FOLDING 1
#endif

namespace zelvar {

namespace {

uint32_t tableCrc(uint32_t crc, const unsigned char* data, size_t size) {
    while (size > 0) {
        uInt step = size > 0x40000000u ? 0x40000000u : static_cast<uInt>(size);
        crc = static_cast<uint32_t>(crc32(crc, data, step));
        data += step;
        size -= step;
    }
    return crc;
}

#ifdef ZELVAR_CRC_FOLDING

// One fold step: the lane times the two halves of k, added to the next 16 bytes.
__attribute__((target("pclmul,sse4.1"))) inline __m128i fold(__m128i x, __m128i k, __m128i next) {
    return _mm_xor_si128(_mm_xor_si128(_mm_clmulepi64_si128(x, k, 0x00), _mm_clmulepi64_si128(x, k, 0x11)), next);
}

// Folds 64 bytes at a time in four 128-bit lanes, then the lanes into one, then reduces
// the remainder to 32 bits (Barrett reduction). The constants are powers of x modulo the
// bit-reflected polynomial: x^(4*128+32) and x^(4*128-32) for the wide fold, x^(128+32)
// and x^(128-32) for the narrow fold, x^64 for the last 64 bits, then P' and mu.
// Takes and returns the CRC register without the final inversion; size is a multiple of
// 16 and at least 64.
__attribute__((target("pclmul,sse4.1"))) uint32_t foldCrc(uint32_t crc, const unsigned char* p, size_t size) {
    const __m128i wideFold = _mm_set_epi64x(0x1c6e41596LL, 0x154442bd4LL);
    const __m128i narrowFold = _mm_set_epi64x(0x0ccaa009eLL, 0x1751997d0LL);
    const __m128i lastFold = _mm_set_epi64x(0, 0x163cd6124LL);
    const __m128i barrett = _mm_set_epi64x(0x1f7011641LL, 0x1db710641LL);
    const __m128i low32 = _mm_set_epi32(0, 0, 0, -1);

    __m128i x1 = _mm_xor_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)),
                               _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i x2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16));
    __m128i x3 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 32));
    __m128i x4 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 48));
    p += 64;
    size -= 64;

    while (size >= 64) {
        x1 = fold(x1, wideFold, _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
        x2 = fold(x2, wideFold, _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16)));
        x3 = fold(x3, wideFold, _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 32)));
        x4 = fold(x4, wideFold, _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 48)));
        p += 64;
        size -= 64;
    }
    x1 = fold(x1, narrowFold, x2);
    x1 = fold(x1, narrowFold, x3);
    x1 = fold(x1, narrowFold, x4);
    while (size >= 16) {
        x1 = fold(x1, narrowFold, _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
        p += 16;
        size -= 16;
    }

    // 128 to 64 bits, then 64 to 32 bits with 32 zero bits appended.
    x1 = _mm_xor_si128(_mm_srli_si128(x1, 8), _mm_clmulepi64_si128(narrowFold, x1, 0x01));
    __m128i high = _mm_srli_si128(x1, 4);
    x1 = _mm_xor_si128(_mm_clmulepi64_si128(_mm_and_si128(x1, low32), lastFold, 0x00), high);
    // Barrett reduction to the 32-bit remainder.
    __m128i kept = x1;
    x1 = _mm_clmulepi64_si128(_mm_and_si128(x1, low32), barrett, 0x10);
    x1 = _mm_clmulepi64_si128(_mm_and_si128(x1, low32), barrett, 0x00);
    x1 = _mm_xor_si128(x1, kept);
    return static_cast<uint32_t>(_mm_extract_epi32(x1, 1));
}

bool canFold() {
    static const bool available = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    return available;
}

#endif

}  // namespace

uint32_t zipCrc32(uint32_t crc, const void* data, size_t size) {
    const unsigned char* p = static_cast<const unsigned char*>(data);
#ifdef ZELVAR_CRC_FOLDING
    if (size >= 256 && canFold()) {
        size_t bulk = size & ~size_t(15);
        crc = ~foldCrc(~crc, p, bulk);
        return tableCrc(crc, p + bulk, size - bulk);
    }
#endif
    return tableCrc(crc, p, size);
}

}  // namespace zelvar
