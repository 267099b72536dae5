#pragma once
// A pipe holding some bytes, to give a program as an input file by the name
// /dev/fd/N, as a shell's <(cat FILE) does: the programs a test starts
// inherit its read end.
#include <string>
#include <string_view>

namespace pelkrin::test {

class pipe_input {
public:
    // Writes up to the pipe's capacity of `bytes` (64 KB on Linux) into it;
    // the write end is closed, so that a reader meets the end after them.
    explicit pipe_input(std::string_view bytes);
    ~pipe_input();
    pipe_input(const pipe_input&) = delete;
    pipe_input& operator=(const pipe_input&) = delete;

    // The name a program opens the read end by: /dev/fd/N.
    std::string path() const;

private:
    int read_end_ = -1;
};

}  // namespace pelkrin::test
