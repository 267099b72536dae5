#pragma once
// gzip data: recognising it, and inflating it into memory. Several members
// one after the other (as `cat a.gz b.gz` makes) inflate to their contents
// one after the other, as gunzip gives them.
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pelkrin {

bool is_gzip(std::span<const std::uint8_t> bytes);

// Throws fatal_error (status 1) naming `name` (after `program`, file_label.h)
// and the byte offset in the compressed data where the damage or the early
// end was found. `err`, when given, takes the progress of a large file.
std::vector<std::uint8_t> gunzip(std::span<const std::uint8_t> bytes, const std::string& name, std::ostream* err,
                                 std::string_view program = {});

}  // namespace pelkrin
