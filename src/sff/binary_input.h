#pragma once
// A binary input file with the state rules of a standard input stream (good, eof,
// fail; a failed stream reads nothing and does not seek until cleared; a seek
// first clears eof).
//
// Two ways of reading, chosen by the caller for what comes next:
//
// - Random access (the default): a buffer of its own filled by positioned reads.
//   After a jump the block is small (set_jump_fill: what the caller expects to
//   need there); while reading goes on sequentially the blocks double. So a
//   record anywhere in the file costs one system call. Another thread may
//   fetch a block ahead of time (fetch_at) and hand it over (use_block): it is
//   read from like a block this stream fetched itself.
//
// - A forward walk (set_forward_walk) over a regular file reads from a memory
//   mapping of it: a seek costs nothing and only the bytes that are read are
//   touched, so a walk that reads record headers and jumps over the data never
//   brings the data in. Mapped pages count as resident memory, so the pages
//   behind the walk are let go every few megabytes; the page cache keeps them.
#include <cstddef>
#include <cstdint>
#include <span>
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
    std::size_t jump_fill() const { return jump_fill_; }

    // Reads up to n bytes at `pos` into dst, leaving the stream as it is; returns
    // how many came (fewer at the end of the file). Safe on another thread while
    // this stream is in use: it touches nothing of the stream's state.
    std::size_t fetch_at(std::int64_t pos, unsigned char* dst, std::size_t n) const;
    // Makes `bytes`, fetched by fetch_at at `pos`, the current block: reads that
    // fall inside it take their bytes from there. The bytes are not copied and
    // must stay until drop_block() or the next use_block(); the file's state
    // flags are unchanged. A block that stopped short at the end of the file
    // reads exactly as one this stream fetched: reading past it meets the end.
    void use_block(std::int64_t pos, std::span<const unsigned char> bytes);
    // Forgets a block given by use_block, if it is still the current one.
    void drop_block();
    // The file was changed under the stream (this process emptied it): forgets
    // the mapping and the buffered bytes and takes the file's size again, so
    // that reading meets the file as it is now. The state flags stay.
    void file_changed();
    // On: reads come from the memory mapping, if the file could be mapped.
    void set_forward_walk(bool on) { walk_ = on; }
    // Bytes fetched from the file so far: copied out of the mapping, or read.
    std::uint64_t bytes_fetched() const { return fetched_; }
    bool mapped() const { return map_ != nullptr; }
    // Bytes of the mapping possibly resident now: touched since pages were last let go.
    std::uint64_t mapped_resident() const;
    // Mapped pages before this offset have been let go.
    std::int64_t released_to() const { return kept_from_; }

private:
    std::int64_t buffer_end() const { return buf_start_ + static_cast<std::int64_t>(buf_len_); }
    // Fetches up to n bytes at the position into dst; returns how many came.
    std::size_t fetch(unsigned char* dst, std::size_t n);
    bool refill();
    void copy_mapped(unsigned char* dst, std::size_t n);
    void unmap();

    int fd_ = -1;
    const unsigned char* map_ = nullptr;
    bool walk_ = false;
    std::int64_t kept_from_ = 0;   // mapped pages before this offset have been let go
    std::int64_t kept_to_ = 0;     // and none after this one has been touched
    std::vector<unsigned char> buf_;
    const unsigned char* data_ = nullptr;  // the current block: buf_, or bytes given by use_block
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
