#include "sff/binary_input.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace pelkrin {
namespace {

constexpr std::size_t largest_fill = std::size_t{1} << 20;

// The walk lets go of the pages behind it whenever it has passed this many bytes.
constexpr std::int64_t walk_window = 16 * 1024 * 1024;
// A page fault maps the cached pages around it too.
constexpr std::int64_t fault_around = 64 * 1024;
constexpr std::int64_t page = 4096;

}  // namespace

binary_input::~binary_input() {
    unmap();
    if (fd_ >= 0) ::close(fd_);
}

void binary_input::unmap() {
    if (map_ != nullptr) ::munmap(const_cast<unsigned char*>(map_), static_cast<std::size_t>(size_));
    map_ = nullptr;
}

bool binary_input::open(const std::string& path) {
    unmap();
    if (fd_ >= 0) ::close(fd_);
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd_ < 0) return false;
    struct stat st {};
    size_ = (::fstat(fd_, &st) == 0 && S_ISREG(st.st_mode)) ? static_cast<std::int64_t>(st.st_size) : -1;
    if (size_ > 0) {
        void* m = ::mmap(nullptr, static_cast<std::size_t>(size_), PROT_READ, MAP_SHARED, fd_, 0);
        if (m != MAP_FAILED) map_ = static_cast<const unsigned char*>(m);
    }
    kept_from_ = kept_to_ = 0;
    buf_.clear();  // grows with the blocks that reading asks for
    data_ = buf_.data();
    pos_ = buf_start_ = 0;
    buf_len_ = 0;
    fill_ = jump_fill_;
    clear();
    return true;
}

void binary_input::set_jump_fill(std::size_t bytes) {
    jump_fill_ = std::clamp<std::size_t>(bytes, 64, largest_fill);
}

std::size_t binary_input::fetch_at(std::int64_t pos, unsigned char* dst, std::size_t n) const {
    std::size_t got = 0;
    while (got < n && fd_ >= 0 && pos >= 0) {
        const ssize_t r = ::pread(fd_, dst + got, n - got, static_cast<off_t>(pos) + static_cast<off_t>(got));
        if (r < 0 && errno == EINTR) continue;
        if (r <= 0) break;  // end of file, or an error that ends the input
        got += static_cast<std::size_t>(r);
    }
    return got;
}

std::size_t binary_input::fetch(unsigned char* dst, std::size_t n) {
    const std::size_t got = fetch_at(pos_, dst, n);
    fetched_ += got;
    return got;
}

void binary_input::use_block(std::int64_t pos, std::span<const unsigned char> bytes) {
    data_ = bytes.data();
    buf_start_ = pos;
    buf_len_ = bytes.size();
    fetched_ += bytes.size();
}

void binary_input::file_changed() {
    unmap();
    struct stat st {};
    size_ = (fd_ >= 0 && ::fstat(fd_, &st) == 0 && S_ISREG(st.st_mode)) ? static_cast<std::int64_t>(st.st_size) : -1;
    kept_from_ = kept_to_ = 0;
    data_ = buf_.data();
    buf_len_ = 0;
}

void binary_input::drop_block() {
    if (data_ == buf_.data()) return;
    data_ = buf_.data();
    buf_len_ = 0;
}

bool binary_input::refill() {
    // Reading on from where the buffer ended is sequential: ask for more next time.
    if (pos_ == buffer_end() && buf_len_ > 0) {
        fill_ = std::min(fill_ * 2, largest_fill);
    } else {
        fill_ = jump_fill_;
    }
    buf_start_ = pos_;
    if (buf_.size() < fill_) buf_.resize(fill_);
    data_ = buf_.data();
    buf_len_ = fetch(buf_.data(), fill_);
    return buf_len_ > 0;
}

void binary_input::copy_mapped(unsigned char* dst, std::size_t n) {
    gcount_ = static_cast<std::size_t>(std::min<std::uint64_t>(n, remaining()));
    if (gcount_ > 0) std::memcpy(dst, map_ + pos_, gcount_);
    if (pos_ < kept_from_) kept_from_ = pos_ / page * page;  // a walk restarted from the front
    pos_ += static_cast<std::int64_t>(gcount_);
    fetched_ += gcount_;
    kept_to_ = std::max(kept_to_, pos_ + fault_around);
    // Only ever inside the mapping: a position past the end of the file must not
    // let go of whatever memory lies beyond it.
    const std::int64_t behind = std::min(pos_ - fault_around, size_) / page * page;
    if (behind - kept_from_ > walk_window) {
        ::madvise(const_cast<unsigned char*>(map_) + kept_from_, static_cast<std::size_t>(behind - kept_from_),
                  MADV_DONTNEED);
        kept_from_ = behind;
    }
}

std::uint64_t binary_input::mapped_resident() const {
    return kept_to_ > kept_from_ ? static_cast<std::uint64_t>(kept_to_ - kept_from_) : 0;
}

void binary_input::read(void* dst, std::size_t n) {
    gcount_ = 0;
    if (!good()) {
        fail_ = true;
        return;
    }
    auto* out = static_cast<unsigned char*>(dst);
    if (walk_ && map_ != nullptr) {
        copy_mapped(out, n);
        if (gcount_ < n) eof_ = fail_ = true;
        return;
    }
    while (gcount_ < n) {
        if (pos_ < buf_start_ || pos_ >= buffer_end()) {
            const std::size_t want = n - gcount_;
            if (want >= largest_fill) {  // large blocks go straight to the caller
                const std::size_t got = fetch(out + gcount_, want);
                pos_ += static_cast<std::int64_t>(got);
                gcount_ += got;
                break;
            }
            if (!refill()) break;
        }
        const auto at = static_cast<std::size_t>(pos_ - buf_start_);
        const std::size_t take = std::min(n - gcount_, buf_len_ - at);
        std::memcpy(out + gcount_, data_ + at, take);
        pos_ += static_cast<std::int64_t>(take);
        gcount_ += take;
    }
    if (gcount_ < n) eof_ = fail_ = true;
}

void binary_input::skip(std::uint64_t n) {
    gcount_ = 0;
    if (!good()) {
        fail_ = true;
        return;
    }
    const std::uint64_t take = std::min(n, remaining());
    pos_ += static_cast<std::int64_t>(take);
    gcount_ = static_cast<std::size_t>(take);
    if (take < n) eof_ = fail_ = true;
}

void binary_input::seekg(std::int64_t pos) {
    eof_ = false;
    if (fail_) return;
    if (pos < 0 || fd_ < 0) {
        fail_ = true;
        return;
    }
    pos_ = pos;
}

void binary_input::seekg_relative(std::int64_t off) {
    eof_ = false;
    if (fail_) return;
    seekg(pos_ + off);
}

std::int64_t binary_input::tellg() const { return fail_ ? -1 : pos_; }

std::uint64_t binary_input::remaining() const {
    if (size_ < 0 || pos_ >= size_) return 0;
    return static_cast<std::uint64_t>(size_ - pos_);
}

}  // namespace pelkrin
