#pragma once
// The bytes of an SFF file: a file opened for reading, or bytes already in
// memory (tests and fuzzing). A regular file is mapped on opening, and read in
// place from the mapping, which stays for the source's life (its pages are the
// page cache's: they cost no memory of the process's own); one that cannot be
// mapped is read whole into memory. Another process may shrink the file
// meanwhile: reads past its new end give zeros, and changed() says so.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "../common/input_file.h"
#include "mapping_guard.h"

namespace pelkrin {

class sff_source {
public:
    sff_source() = default;
    ~sff_source();
    sff_source(const sff_source&) = delete;
    sff_source& operator=(const sff_source&) = delete;

    // False when the file cannot be opened. Maps a regular file.
    bool open(const std::string& path);
    // Reads the file opened as `file`; false when it is not open.
    bool open(input_file file);
    // Reads from `bytes`, which must outlive this source.
    void use_memory(std::span<const std::uint8_t> bytes);
    // Reads from `bytes`, kept by this source.
    void keep_memory(std::vector<std::uint8_t> bytes);
    bool is_open() const { return fd_ >= 0 || in_memory_; }
    // The open file's descriptor, or -1 when the bytes are in memory.
    int descriptor() const { return fd_; }

    // The length of a regular file as found on opening, or -1 when it is not a
    // regular file.
    std::int64_t size() const { return size_; }
    // Reads up to n bytes at `pos` into dst; returns how many came (fewer at the
    // end of the file or on an error). Safe on any thread.
    std::size_t read_at(std::int64_t pos, std::uint8_t* dst, std::size_t n) const;
    // Up to n bytes at `pos`: in place when the bytes are in memory, else read
    // into `buffer`. Fewer come only at the end of the file.
    std::span<const std::uint8_t> bytes_at(std::int64_t pos, std::size_t n, std::vector<std::uint8_t>& buffer) const;
    // The whole file in place: mapped, or read into memory when it cannot be
    // mapped. Empty for a file that is not regular (a pipe or a device:
    // nothing can be read at a position of those).
    std::span<const std::uint8_t> contents();
    // The file shrank under the mapping, and a read met its new end (and got
    // zeros): what was read from the mapping cannot be trusted.
    bool changed() const { return guard_.faulted(); }
    // Bytes copied out of the file by read_at and bytes_at, for tests of how
    // little a walk reads.
    std::uint64_t bytes_read() const { return read_; }

private:
    void unmap();
    // The bytes are in memory_: given, mapped or read whole.
    bool in_place() const { return in_memory_ || mapped_ || !whole_file_.empty(); }

    int fd_ = -1;
    bool in_memory_ = false;
    std::span<const std::uint8_t> memory_;    // the bytes given, or the mapping
    std::vector<std::uint8_t> whole_file_;   // bytes kept: given, or a regular file that could not be mapped
    bool mapped_ = false;
    mapping_guard guard_;                    // watches the mapping for the file shrinking
    std::int64_t size_ = -1;
    mutable std::atomic<std::uint64_t> read_ = 0;  // the reader may be used from another thread than its maker
};

}  // namespace pelkrin
