#include "sff/byte_cursor.h"

#include <algorithm>
#include <cstring>

namespace pelkrin {

std::uint64_t byte_cursor::remaining() const {
    const std::int64_t end = origin_ + static_cast<std::int64_t>(bytes_.size());
    return s_.pos >= end || s_.pos < origin_ ? 0 : static_cast<std::uint64_t>(end - s_.pos);
}

std::span<const std::uint8_t> byte_cursor::rest() const {
    const std::uint64_t n = remaining();
    return n == 0 ? std::span<const std::uint8_t>() : bytes_.last(static_cast<std::size_t>(n));
}

std::size_t byte_cursor::read(void* dst, std::size_t n) {
    if (!good()) {
        s_.fail = true;
        return 0;
    }
    const auto got = static_cast<std::size_t>(std::min<std::uint64_t>(n, remaining()));
    if (got > 0) std::memcpy(dst, rest().data(), got);
    s_.pos += static_cast<std::int64_t>(got);
    if (got < n) s_.eof = s_.fail = true;
    return got;
}

std::uint64_t byte_cursor::skip(std::uint64_t n) {
    if (!good()) {
        s_.fail = true;
        return 0;
    }
    const std::uint64_t take = std::min(n, remaining());
    s_.pos += static_cast<std::int64_t>(take);
    if (take < n) s_.eof = s_.fail = true;
    return take;
}

void byte_cursor::seek(std::int64_t pos) {
    s_.eof = false;
    if (s_.fail) return;
    if (pos < 0) {
        s_.fail = true;
        return;
    }
    s_.pos = pos;
}

void byte_cursor::seek_relative(std::int64_t off) {
    s_.eof = false;
    if (s_.fail) return;
    seek(s_.pos + off);
}

}  // namespace pelkrin
