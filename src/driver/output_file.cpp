#include "driver/output_file.h"

#include <sys/stat.h>

namespace pelkrin {
namespace {

constexpr std::size_t buffer_size = std::size_t{1} << 20;

}  // namespace

output_file::output_file(const std::string& path) : buf_(buffer_size) {
    file_ = std::fopen(path.c_str(), "w");
    if (file_ == nullptr) {
        failed_ = true;
        return;
    }
    std::setvbuf(file_, nullptr, _IONBF, 0);  // this class's buffer is the only one
    struct stat st {};
    // Positions are only meaningful for a file that can seek (not a pipe).
    seekable_ = ::fstat(::fileno(file_), &st) == 0 && S_ISREG(st.st_mode);
    register_flushable(this);
}

output_file::~output_file() { close(); }

void output_file::make_room(std::size_t n) {
    flush();
    if (buf_.size() < n) buf_.resize(n);
}

void output_file::flush() {
    if (file_ == nullptr || used_ == 0) return;
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
    flush();
    unregister_flushable(this);
    if (std::fclose(file_) != 0) failed_ = true;  // a failing close is not reported
    file_ = nullptr;
}

}  // namespace pelkrin
