#include "common/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "common/fatal_error.h"

namespace pelkrin {

input_file::~input_file() { close(); }

input_file::input_file(input_file&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      size_(std::exchange(other.size_, -1)),
      problem_(std::move(other.problem_)),
      error_(std::exchange(other.error_, 0)) {}

input_file& input_file::operator=(input_file&& other) noexcept {
    if (this != &other) {
        close();
        fd_ = std::exchange(other.fd_, -1);
        size_ = std::exchange(other.size_, -1);
        problem_ = std::move(other.problem_);
        error_ = std::exchange(other.error_, 0);
    }
    return *this;
}

void input_file::close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    size_ = -1;
}

int input_file::release() {
    size_ = -1;
    return std::exchange(fd_, -1);
}

bool input_file::fail(std::string problem, int error) {
    problem_ = std::move(problem);
    error_ = error;
    return false;
}

bool input_file::open(const std::string& path, input_reading reading) {
    close();
    problem_.clear();
    error_ = 0;
    // A FIFO read from front to back waits for its writer, as any reader of
    // a FIFO does; every other opening returns at once, whatever the file is.
    struct stat named {};
    const bool fifo_to_wait_for =
        reading == input_reading::front_to_back && ::stat(path.c_str(), &named) == 0 && S_ISFIFO(named.st_mode);
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | (fifo_to_wait_for ? 0 : O_NONBLOCK));
    if (fd_ < 0) return fail(std::string("cannot open: ") + std::strerror(errno), errno);
    if (!fifo_to_wait_for) ::fcntl(fd_, F_SETFL, ::fcntl(fd_, F_GETFL) & ~O_NONBLOCK);
    struct stat st {};
    if (::fstat(fd_, &st) != 0) return fail(std::string("cannot read: ") + std::strerror(errno), errno);
    if (S_ISREG(st.st_mode)) {
        size_ = static_cast<std::int64_t>(st.st_size);
        return true;
    }
    if (S_ISDIR(st.st_mode)) return fail(std::string("cannot read: ") + std::strerror(EISDIR), EISDIR);
    if (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode)) return fail("is a device, not a file", ENODEV);
    if (reading == input_reading::by_position) {
        return fail(S_ISFIFO(st.st_mode) ? "is a pipe, not a regular file: it cannot be read by position"
                                         : "is not a regular file: it cannot be read by position",
                    ESPIPE);
    }
    return true;
}

bool input_file::read_to_end(std::vector<std::uint8_t>& bytes) {
    constexpr std::size_t piece = std::size_t{1} << 20;
    for (;;) {
        const std::size_t have = bytes.size();
        bytes.resize(have + piece);
        const ssize_t got = fd_ >= 0 ? ::read(fd_, bytes.data() + have, piece) : -1;
        const int error = fd_ >= 0 ? errno : EBADF;
        bytes.resize(have + static_cast<std::size_t>(got > 0 ? got : 0));
        if (got > 0) continue;
        if (got == 0) return true;
        if (error == EINTR) continue;
        return fail(std::string("cannot read: ") + std::strerror(error), error);
    }
}

input_file open_input(const std::string& path, input_reading reading, std::string_view program) {
    input_file file;
    if (!file.open(path, reading)) {
        throw fatal_error(1, std::string(program).append(": ").append(path).append(": ").append(file.problem())
                                 .append("\n"));
    }
    return file;
}

}  // namespace pelkrin
