#pragma once
// SFF integers are big-endian unless the file's magic is byte-reversed. Fields are
// first taken from the file bytes as little-endian numbers (what reading them into
// memory gives on the usual host); a big-endian file then has each field
// byte-reversed. Both steps are spelled out so the result is the same on any host.
#include <cstdint>

namespace pelkrin {

inline uint16_t load_le16(const unsigned char* p) {
    return static_cast<uint16_t>(p[0] | (p[1] << 8));
}

inline uint32_t load_le32(const unsigned char* p) {
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
           (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}

inline uint64_t load_le64(const unsigned char* p) {
    return static_cast<uint64_t>(load_le32(p)) | (static_cast<uint64_t>(load_le32(p + 4)) << 32);
}

inline void store_le16(unsigned char* p, uint16_t v) {
    p[0] = static_cast<unsigned char>(v);
    p[1] = static_cast<unsigned char>(v >> 8);
}

inline void store_le32(unsigned char* p, uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<unsigned char>(v >> (8 * i));
}

inline void store_le64(unsigned char* p, uint64_t v) {
    store_le32(p, static_cast<uint32_t>(v));
    store_le32(p + 4, static_cast<uint32_t>(v >> 32));
}

inline uint16_t reverse_bytes16(uint16_t v) { return static_cast<uint16_t>((v >> 8) | (v << 8)); }

inline uint32_t reverse_bytes32(uint32_t v) {
    return (v >> 24) | ((v >> 8) & 0x0000FF00u) | ((v << 8) & 0x00FF0000u) | (v << 24);
}

inline uint64_t reverse_bytes64(uint64_t v) {
    return (static_cast<uint64_t>(reverse_bytes32(static_cast<uint32_t>(v))) << 32) |
           reverse_bytes32(static_cast<uint32_t>(v >> 32));
}

}  // namespace pelkrin
