#pragma once
// The names of the reads file and its location index, both from one prefix
// taken from the ACE file's name: where Pelkrin writes them, and where the
// viewer and the report look for them.
#include <string>

namespace pelkrin {

// The ACE file name cut before the last of the characters ".ace" (or ".ACE" when
// it has none of those), less three more; the directory part stays.
std::string output_prefix(const std::string& ace_file);
std::string reads_file_name(const std::string& prefix);
std::string index_file_name(const std::string& prefix);

}  // namespace pelkrin
