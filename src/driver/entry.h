#pragma once
// The program's entry: scan, decide, print texts or hand over to the run.
#include <functional>
#include <string>

namespace pelkrin {

struct run_request {
    bool flowgram = false;
    std::string ace_file;
    std::string sff_file;
    std::string reads_file;
    std::string index_file;
};

using run_function = std::function<int(const run_request&)>;

// Returns the process's exit status: 0 after the texts, else what `run`
// returns; a fatal_error out of `run` has its message written to standard
// error and gives its status, and anything else thrown ends in a message
// and status 1 (common/program_entry.h).
int entry(int argc, const char* const* argv, const run_function& run);

}  // namespace pelkrin
