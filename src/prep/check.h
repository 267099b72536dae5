#pragma once
// Pelkrin-prep check: reads an ACE file and SFF files, writes a report of what
// stands between them and Pelkrin, and says whether Pelkrin reads the pair
// correctly as it stands.
#include <ostream>
#include <string>
#include <vector>

namespace pelkrin::prep {

// Writes the report to `out`, progress to `err`; returns 0 when Pelkrin
// reads the pair correctly and nothing is wrong, 1 otherwise.
int run_check(const std::string& ace_name, const std::vector<std::string>& sff_names, std::ostream& out,
              std::ostream& err);

}  // namespace pelkrin::prep
