#include "view_tool/report/reads_file_range.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace pelkrin {
namespace {

// Reads the next piece of bytes `from` up to `to` (as read_file_range takes
// them) onto the end of `bytes`; false when none came.
bool read_next_piece(int fd, int64_t from, int64_t to, std::string& bytes) {
    constexpr std::size_t piece = std::size_t{1} << 20;
    const int64_t have = static_cast<int64_t>(bytes.size());
    if (to >= 0 && have >= to - from) return false;
    const std::size_t want = to < 0 ? piece : std::min<std::size_t>(piece, static_cast<std::size_t>(to - from - have));
    bytes.resize(static_cast<std::size_t>(have) + want);
    const ssize_t got = ::pread(fd, bytes.data() + have, want, static_cast<off_t>(from + have));
    bytes.resize(static_cast<std::size_t>(have + std::max<ssize_t>(got, 0)));
    return got > 0;
}

}  // namespace

std::string read_file_range(int fd, int64_t from, int64_t to) {
    std::string bytes;
    if (fd < 0 || from < 0) return bytes;
    while (read_next_piece(fd, from, to, bytes)) {
    }
    return bytes;
}

std::string read_contig_block(int fd, int64_t from, int64_t to, uint64_t lines) {
    std::string bytes;
    if (fd < 0 || from < 0 || lines == 0) return bytes;
    uint64_t seen = 0;  // line feeds in `bytes`
    for (;;) {
        const std::size_t have = bytes.size();
        if (!read_next_piece(fd, from, to, bytes)) return bytes;
        // Each line feed ends a line; the byte after it begins the next one.
        if (have > 0 && bytes[have - 1] == '\n' && bytes[have] == '>') {
            bytes.resize(have);
            return bytes;
        }
        for (std::size_t at = have;;) {
            const void* lf = std::memchr(bytes.data() + at, '\n', bytes.size() - at);
            if (lf == nullptr) break;
            const std::size_t end = static_cast<std::size_t>(static_cast<const char*>(lf) - bytes.data()) + 1;
            if (++seen == lines || (end < bytes.size() && bytes[end] == '>')) {
                bytes.resize(end);
                return bytes;
            }
            at = end;
        }
    }
}

}  // namespace pelkrin
