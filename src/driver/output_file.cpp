#include "driver/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pelkrin {
namespace {

constexpr std::size_t buffer_size = std::size_t{1} << 20;

}  // namespace

output_file::output_file(const std::string& path, emptying when) : buf_(buffer_size) {
    if (when == emptying::on_open) {
        file_ = std::fopen(path.c_str(), "w");
    } else {
        // What fopen(path, "w") does, but for emptying the file.
        const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
        if (fd >= 0) {
            file_ = ::fdopen(fd, "w");
            if (file_ == nullptr) ::close(fd);
        }
    }
    if (file_ == nullptr) {
        failed_ = true;
        return;
    }
    std::setvbuf(file_, nullptr, _IONBF, 0);  // this class's buffer is the only one
    struct stat st {};
    // Positions are only meaningful for a file that can seek (not a pipe).
    seekable_ = ::fstat(::fileno(file_), &st) == 0 && S_ISREG(st.st_mode);
    // Opening for writing empties only regular files (not a pipe or a terminal).
    to_empty_ = when == emptying::later && seekable_;
}

void output_file::empty_now() {
    if (!to_empty_) return;
    to_empty_ = false;
    if (::ftruncate(::fileno(file_), 0) != 0) failed_ = true;
}

bool output_file::same_file_as(const std::string& path) const {
    struct stat mine {};
    struct stat other {};
    return file_ != nullptr && ::fstat(::fileno(file_), &mine) == 0 && ::stat(path.c_str(), &other) == 0 &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

output_file::~output_file() { close(); }

void output_file::make_room(std::size_t n) {
    flush();
    if (buf_.size() < n) buf_.resize(n);
}

void output_file::flush() {
    if (file_ == nullptr || used_ == 0) return;
    empty_now();  // a no-op unless the owner forgot
    if (std::fwrite(buf_.data(), 1, used_, file_) != used_) failed_ = true;
    flushed_ += static_cast<std::int64_t>(used_);
    used_ = 0;
}

std::int64_t output_file::tellp() const {
    if (failed_ || !seekable_) return -1;
    return flushed_ + static_cast<std::int64_t>(used_);
}

void output_file::close() {
    if (file_ == nullptr) return;
    empty_now();
    flush();
    if (std::fclose(file_) != 0) failed_ = true;  // a failing close is not reported
    file_ = nullptr;
}

}  // namespace pelkrin
