#include "pipe_input.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace pelkrin::test {

pipe_input::pipe_input(std::string_view bytes) {
    int ends[2] = {-1, -1};
    // No O_CLOEXEC on the read end: the programs started by the test inherit it.
    if (::pipe(ends) != 0) throw std::runtime_error("cannot make a pipe");
    read_end_ = ends[0];
    ::fcntl(ends[1], F_SETFL, O_NONBLOCK);  // what does not fit is left out rather than waited for
    const std::size_t n = std::min<std::size_t>(bytes.size(), 65536);
    const ssize_t written = n == 0 ? 0 : ::write(ends[1], bytes.data(), n);
    ::close(ends[1]);
    if (written < 0) throw std::runtime_error("cannot write into a pipe");
}

pipe_input::~pipe_input() {
    if (read_end_ >= 0) ::close(read_end_);
}

std::string pipe_input::path() const { return "/dev/fd/" + std::to_string(read_end_); }

}  // namespace pelkrin::test
