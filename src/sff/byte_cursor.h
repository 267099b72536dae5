#pragma once
// Reading an SFF file's bytes, already in memory, with the state rules of an
// input file stream: a read that comes up short sets eof and fail; a failed
// cursor reads nothing and does not move until cleared; a seek first clears
// eof. The reader's quirks on damaged files (what a short record leaves in each
// array, where a walk stops) follow from these rules, so every decoder reads
// through one of these.
#include <cstddef>
#include <cstdint>
#include <span>

namespace pelkrin {

// Where a stream over the file stands.
struct stream_state {
    std::int64_t pos = 0;
    bool eof = false;
    bool fail = false;

    bool good() const { return !eof && !fail; }
};

class byte_cursor {
public:
    // `bytes` are the file's bytes from offset `origin` up to the end of the file,
    // or at least as far as the reading will go. The cursor starts at `from`.
    byte_cursor(std::span<const std::uint8_t> bytes, std::int64_t origin, stream_state from)
        : bytes_(bytes), origin_(origin), s_(from) {}

    // Reads up to n bytes; returns how many came. Fewer than n set eof and fail.
    std::size_t read(void* dst, std::size_t n);
    // Reads n bytes like read(), throwing them away; returns how many were passed.
    std::uint64_t skip(std::uint64_t n);
    // Both clear eof first and do nothing on a failed cursor; a negative target fails.
    void seek(std::int64_t pos);
    void seek_relative(std::int64_t off);
    // The position, or -1 on a failed cursor.
    std::int64_t tell() const { return s_.fail ? -1 : s_.pos; }
    // Bytes between the position and the end of the bytes (0 past it).
    std::uint64_t remaining() const;
    // The bytes from the position on (empty past the end), for reading in place.
    std::span<const std::uint8_t> rest() const;

    void clear() { s_.eof = s_.fail = false; }
    bool good() const { return s_.good(); }
    bool eof() const { return s_.eof; }
    bool fail() const { return s_.fail; }
    const stream_state& state() const { return s_; }

private:
    std::span<const std::uint8_t> bytes_;
    std::int64_t origin_;
    stream_state s_;
};

}  // namespace pelkrin
