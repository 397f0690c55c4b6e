// MD4 message digest. The picture store keys each picture by the MD4 of its stored bytes, as the
// drawing format expects; the digest is not used for anything secret.
#pragma once
#include <cstddef>
#include <cstdint>

namespace zelvar {

// Writes the 16-byte digest of size bytes at data into digest.
void md4(const void* data, size_t size, uint8_t digest[16]);

}  // namespace zelvar
