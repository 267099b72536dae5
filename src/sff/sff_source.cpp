#include "sff/sff_source.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace pelkrin {
namespace {

std::int64_t regular_size(int fd) {
    struct stat st {};
    return (fd >= 0 && ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) ? static_cast<std::int64_t>(st.st_size) : -1;
}

}  // namespace

sff_source::~sff_source() {
    unmap();
    if (fd_ >= 0) ::close(fd_);
}

void sff_source::unmap() {
    guard_.release();
    if (mapped_) ::munmap(const_cast<std::uint8_t*>(memory_.data()), memory_.size());
    mapped_ = false;
    memory_ = {};
    whole_file_ = {};
}

bool sff_source::open(const std::string& path) {
    input_file file;
    // A file of another kind is still taken: the caller tells of it (nothing
    // can be read at a position of it), not that it cannot be opened.
    file.open(path, input_reading::by_position);
    return open(std::move(file));
}

bool sff_source::open(input_file file) {
    unmap();
    if (fd_ >= 0) ::close(fd_);
    in_memory_ = false;
    fd_ = file.release();
    size_ = regular_size(fd_);
    // Mapped from the start, so that every read of the file meets a change alike.
    if (size_ > 0) contents();
    return fd_ >= 0;
}

void sff_source::use_memory(std::span<const std::uint8_t> bytes) {
    unmap();
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    in_memory_ = true;
    memory_ = bytes;
    size_ = static_cast<std::int64_t>(bytes.size());
}

void sff_source::keep_memory(std::vector<std::uint8_t> bytes) {
    use_memory({});
    whole_file_ = std::move(bytes);
    memory_ = whole_file_;
    size_ = static_cast<std::int64_t>(whole_file_.size());
}

std::size_t sff_source::read_at(std::int64_t pos, std::uint8_t* dst, std::size_t n) const {
    if (pos < 0) return 0;
    std::size_t got = 0;
    if (in_memory_) {
        if (pos < size_) got = static_cast<std::size_t>(std::min<std::int64_t>(static_cast<std::int64_t>(n), size_ - pos));
        if (got > 0) std::memcpy(dst, memory_.data() + pos, got);
    } else {
        while (got < n && fd_ >= 0) {
            const ssize_t r = ::pread(fd_, dst + got, n - got, static_cast<off_t>(pos) + static_cast<off_t>(got));
            if (r < 0 && errno == EINTR) continue;
            if (r <= 0) break;  // the end of the file, or an error that ends the input
            got += static_cast<std::size_t>(r);
        }
    }
    read_.fetch_add(got, std::memory_order_relaxed);
    return got;
}

std::span<const std::uint8_t> sff_source::bytes_at(std::int64_t pos, std::size_t n,
                                                    std::vector<std::uint8_t>& buffer) const {
    if (in_place()) {
        const auto end = static_cast<std::int64_t>(memory_.size());
        if (pos < 0 || pos >= end) return {};
        const auto got = static_cast<std::size_t>(std::min<std::int64_t>(static_cast<std::int64_t>(n), end - pos));
        read_.fetch_add(got, std::memory_order_relaxed);
        return memory_.subspan(static_cast<std::size_t>(pos), got);
    }
    buffer.resize(n);
    return {buffer.data(), read_at(pos, buffer.data(), n)};
}

std::span<const std::uint8_t> sff_source::contents() {
    if (in_place()) return memory_;
    if (size_ <= 0) return {};
    const auto length = static_cast<std::size_t>(size_);
    void* m = ::mmap(nullptr, length, PROT_READ, MAP_SHARED, fd_, 0);
    if (m != MAP_FAILED) {
        if (guard_.watch(m, length, fd_)) {
            mapped_ = true;
            memory_ = {static_cast<const std::uint8_t*>(m), length};
            return memory_;
        }
        ::munmap(m, length);
    }
    whole_file_.resize(static_cast<std::size_t>(size_));
    whole_file_.resize(read_at(0, whole_file_.data(), whole_file_.size()));
    memory_ = whole_file_;
    return memory_;
}

}  // namespace pelkrin
