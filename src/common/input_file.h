#pragma once
// The one way the programs open an input file. What a file may be depends on
// how the program reads it: one that maps it or reads it by position takes a
// regular file only; one that reads it once from front to back also takes a
// pipe or a FIFO. Neither takes a directory or a device, which either cannot
// be read at all or may never end (/dev/zero). Where the name leads to a file
// of another kind, opening does not wait: a FIFO without a writer does not
// hold the program.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pelkrin {

enum class input_reading {
    by_position,    // mapped, or read at positions: a regular file
    front_to_back,  // read once, in order: a regular file, a pipe or a FIFO
};

class input_file {
public:
    input_file() = default;
    ~input_file();
    input_file(input_file&& other) noexcept;
    input_file& operator=(input_file&& other) noexcept;
    input_file(const input_file&) = delete;
    input_file& operator=(const input_file&) = delete;

    // Opens `path` for `reading`. False when the system refuses to open it,
    // or when it is no file that can be read that way; problem() says why. In
    // the second case the file stays open (is_open()), so that a caller with a
    // message of its own for that case can tell it from a file it could not open.
    bool open(const std::string& path, input_reading reading);
    void close();

    bool is_open() const { return fd_ >= 0; }
    int descriptor() const { return fd_; }
    // Hands the descriptor over: the caller closes it.
    int release();
    // The length of a regular file as found on opening; -1 for any other kind.
    std::int64_t size() const { return size_; }
    bool regular() const { return size_ >= 0; }

    // Why the file cannot be read, in the system's words where it has any:
    // "cannot open: No such file or directory", "cannot read: Is a directory",
    // "is a device, not a file". Empty when nothing went wrong.
    const std::string& problem() const { return problem_; }
    // The system's error number behind problem(), or 0; ENODEV for a device.
    int error() const { return error_; }

    // Reads from the current place to the end of the file, appending to
    // `bytes`. False, with problem() saying why, when a read fails.
    bool read_to_end(std::vector<std::uint8_t>& bytes);

private:
    bool fail(std::string problem, int error);

    int fd_ = -1;
    std::int64_t size_ = -1;
    std::string problem_;
    int error_ = 0;
};

// Opens `path` for `reading`, or throws fatal_error (status 1) with the text
// "PROGRAM: PATH: PROBLEM" and a line end.
input_file open_input(const std::string& path, input_reading reading, std::string_view program);

}  // namespace pelkrin
