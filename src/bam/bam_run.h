#pragma once
// Pelkrin-bam's run: the assembly, its reads' qualities and flow signals
// from the SFF files, as PREFIX.bam with its index and PREFIX.fa with its
// index, all put in place together once all are complete.
#include <ostream>
#include <string>
#include <vector>

namespace pelkrin::bam {

// Returns the exit status; a fatal_error leaves it with its message.
int run_bam(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace pelkrin::bam
