// CRC-32 of the ZIP format (the gzip polynomial), as zlib's crc32 computes it, but with
// carry-less multiplication on processors that have it: checking every extracted byte must
// not cost a large share of inflating it.
#pragma once
#include <cstddef>
#include <cstdint>

namespace zelvar {

uint32_t zipCrc32(uint32_t crc, const void* data, size_t size);

}  // namespace zelvar
