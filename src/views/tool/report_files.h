#pragma once
// Writing the report's files: each is written whole under a temporary name in
// the report's folder and then renamed, so that a page is never seen half
// written. A failure throws fatal_error with Pelkrin-view's message.
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

}  // namespace pelkrin
