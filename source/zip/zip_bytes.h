// Little-endian field access for the archive's records, whatever the host order.
#pragma once
#include <cstdint>
#include <string>

namespace zelvar {
namespace zipbytes {

inline uint16_t get16(const unsigned char* p) { return uint16_t(p[0] | (p[1] << 8)); }
inline uint32_t get32(const unsigned char* p) {
    return uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24);
}
inline uint64_t get64(const unsigned char* p) { return get32(p) | (uint64_t(get32(p + 4)) << 32); }

inline void put16(unsigned char* p, uint32_t v) {
    p[0] = static_cast<unsigned char>(v);
    p[1] = static_cast<unsigned char>(v >> 8);
}
inline void put32(unsigned char* p, uint32_t v) {
    put16(p, v);
    put16(p + 2, v >> 16);
}
inline void put64(unsigned char* p, uint64_t v) {
    put32(p, static_cast<uint32_t>(v));
    put32(p + 4, static_cast<uint32_t>(v >> 32));
}

inline void append16(std::string& out, uint32_t v) {
    unsigned char b[2];
    put16(b, v);
    out.append(reinterpret_cast<char*>(b), 2);
}
inline void append32(std::string& out, uint32_t v) {
    unsigned char b[4];
    put32(b, v);
    out.append(reinterpret_cast<char*>(b), 4);
}
inline void append64(std::string& out, uint64_t v) {
    unsigned char b[8];
    put64(b, v);
    out.append(reinterpret_cast<char*>(b), 8);
}

}  // namespace zipbytes
}  // namespace zelvar
