#pragma once
// Whether two names lead to one file (the same name, a hard link or a
// symbolic link): writing the one would destroy the other.
#include <string>

namespace pelkrin {

bool same_file(const std::string& a, const std::string& b);

// The text of the refusal to write `output` over `input`, without a line end.
std::string would_overwrite(const std::string& output, const std::string& input);

}  // namespace pelkrin
