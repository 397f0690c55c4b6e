// Little-endian field access for every file format of the library: the record stream, the
// compound file, the drawing records and the ZIP archive all store their numbers low byte first,
// whatever the host's order is. Reads and writes at a pointer leave the bounds to the caller.
#pragma once
#include <cstdint>

namespace zelvar {
namespace le {

inline uint16_t get16(const uint8_t* p) { return static_cast<uint16_t>(p[0] | p[1] << 8); }
inline uint32_t get32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}
inline uint64_t get64(const uint8_t* p) { return get32(p) | static_cast<uint64_t>(get32(p + 4)) << 32; }

inline void put16(uint8_t* p, uint32_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
}
inline void put32(uint8_t* p, uint32_t v) {
    put16(p, v);
    put16(p + 2, v >> 16);
}
inline void put64(uint8_t* p, uint64_t v) {
    put32(p, static_cast<uint32_t>(v));
    put32(p + 4, static_cast<uint32_t>(v >> 32));
}

// Appends to a byte container: std::vector<uint8_t> or std::string.
template <class Bytes>
inline void append16(Bytes& out, uint32_t v) {
    using Byte = typename Bytes::value_type;
    out.push_back(static_cast<Byte>(v));
    out.push_back(static_cast<Byte>(v >> 8));
}
template <class Bytes>
inline void append32(Bytes& out, uint32_t v) {
    append16(out, v);
    append16(out, v >> 16);
}
template <class Bytes>
inline void append64(Bytes& out, uint64_t v) {
    append32(out, static_cast<uint32_t>(v));
    append32(out, static_cast<uint32_t>(v >> 32));
}

}  // namespace le
}  // namespace zelvar
