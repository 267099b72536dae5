#pragma once
// Reading the parts of Pelkrin's reads file that a report needs.
#include <cstdint>
#include <string>

namespace pelkrin {

// Bytes `from` up to `to` (or the end of the file when `to` is negative or
// beyond it) of the file open as `fd`; empty when they cannot be read. Safe
// to call from several threads on one descriptor.
std::string read_file_range(int fd, int64_t from, int64_t to);

// A contig's block of the reads file open as `fd`: from `from` on, `lines`
// whole lines, or fewer when a line that begins with '>' (the next contig's
// header) comes first, or `to` (as above) comes first. A location index that
// lists only some contigs, or one offset for many, gives ranges that run on
// over later contigs: the reading stops where the contig's entries end.
std::string read_contig_block(int fd, int64_t from, int64_t to, uint64_t lines);

}  // namespace pelkrin
