#pragma once
// Pelkrin-view from its arguments to its exit status: loads one contig of an
// ACE file, calls one view operation on it and writes what it produced.
#include <ostream>
#include <string>
#include <vector>

namespace pelkrin {

// `args` are the arguments after the program name. Returns the exit status:
// 0, 1 for a failure, 2 for a usage error. The ACE reader reports its own
// errors on standard error and ends the process itself.
int run_view(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace pelkrin
