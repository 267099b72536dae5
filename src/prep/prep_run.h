#pragma once
// Pelkrin-prep's commands: check, ace and sff. Returns the exit status;
// fatal errors are thrown (fatal_error) for the entry to report.
#include <ostream>
#include <string>
#include <vector>

namespace pelkrin::prep {

int run_prep(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

std::string prep_usage();

}  // namespace pelkrin::prep
