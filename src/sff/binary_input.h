#pragma once
// A binary input file with the state rules of a standard input stream (good, eof,
// fail; a failed stream reads nothing and does not seek until cleared; a seek
// first clears eof), over a buffer of its own. Seeking costs nothing: the next
// read fetches a block at the new position with one positioned read. After a jump
// the block is small (set_jump_fill: what the caller expects to need there); while
// reading goes on sequentially the blocks double. So a walk that reads a record
// header and jumps over the data fetches only the headers' blocks, and random
// access to a record costs one system call.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pelkrin {

class binary_input {
public:
    binary_input() = default;
    ~binary_input();
    binary_input(const binary_input&) = delete;
    binary_input& operator=(const binary_input&) = delete;

    // False when the file cannot be opened.
    bool open(const std::string& path);
    bool is_open() const { return fd_ >= 0; }

    // Reads up to n bytes. Fewer than n set eof and fail; gcount() tells how many came.
    void read(void* dst, std::size_t n);
    // Reads n bytes like read(), throwing them away.
    void skip(std::uint64_t n);
    std::size_t gcount() const { return gcount_; }

    // Both clear eof first and do nothing on a failed stream; a negative target fails.
    void seekg(std::int64_t pos);
    void seekg_relative(std::int64_t off);
    // -1 on a failed stream.
    std::int64_t tellg() const;
    // The file's length as found on opening, or -1 when it could not be found.
    std::int64_t size() const { return size_; }
    // Bytes between the position and the end of the file (0 when unknown).
    std::uint64_t remaining() const;

    bool eof() const { return eof_; }
    bool fail() const { return fail_; }
    bool good() const { return !eof_ && !fail_; }
    void clear() { eof_ = fail_ = false; }

    // How many bytes the first block after a jump asks for.
    void set_jump_fill(std::size_t bytes);
    // Bytes fetched from the file so far, buffered or not.
    std::uint64_t bytes_fetched() const { return fetched_; }

private:
    std::int64_t buffer_end() const { return buf_start_ + static_cast<std::int64_t>(buf_len_); }
    // Fetches up to n bytes at the position into dst; returns how many came.
    std::size_t fetch(unsigned char* dst, std::size_t n);
    bool refill();

    int fd_ = -1;
    std::vector<unsigned char> buf_;
    std::int64_t pos_ = 0;        // the stream position
    std::int64_t buf_start_ = 0;  // file offset of buf_[0]
    std::size_t buf_len_ = 0;
    std::size_t jump_fill_ = 4096;
    std::size_t fill_ = 4096;  // how much the next refill asks for
    std::int64_t size_ = -1;
    std::uint64_t fetched_ = 0;
    std::size_t gcount_ = 0;
    bool eof_ = false;
    bool fail_ = false;
};

}  // namespace pelkrin
