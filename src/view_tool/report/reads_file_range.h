#pragma once
// Writing the report's files, each whole, in place: a report has thousands of
// files, and a temporary name and a renaming for each would double the work
// of the file system, which is much of the report's time. A file of that name
// is replaced (a link to it elsewhere keeps the old file). A failure throws
// fatal_error with Pelkrin-view's message.
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace pelkrin {

// Creates the folder (and its parents) unless it exists.
void make_report_folder(const std::filesystem::path& folder);

void write_report_file(const std::filesystem::path& folder, const std::string& name, std::string_view text);

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
