#include "view_tool/report/report_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <system_error>

#include "common/fatal_error.h"

namespace pelkrin {
namespace {

[[noreturn]] void cannot(const std::string& what, const std::filesystem::path& path) {
    throw fatal_error(1, std::string("Pelkrin-view: can not ").append(what).append(" ").append(path.string()).append("\n"));
}

}  // namespace

void make_report_folder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error || !std::filesystem::is_directory(folder, error)) cannot("create folder", folder);
}

void write_report_file(const std::filesystem::path& folder, const std::string& name, std::string_view text) {
    const std::filesystem::path path = folder / name;
    // A file of an earlier report is written over and then cut to its new
    // length, neither emptied first nor removed: ext4 sends a file that was
    // emptied and written again to the disk as it is closed, and creating
    // thousands of files just after removing as many makes it search long for
    // free inodes. Either cost more than the whole report.
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) cannot("open file", path);
    bool written = true;
    for (std::size_t done = 0; written && done < text.size();) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        written = n > 0;
        if (written) done += static_cast<std::size_t>(n);
    }
    written = written && ::ftruncate(fd, static_cast<off_t>(text.size())) == 0;
    if (::close(fd) != 0 || !written) cannot("write file", path);
}

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
