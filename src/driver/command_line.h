#pragma once
// Option scanning and the choice between the texts and a run.
#include <ostream>
#include <string>

namespace pelkrin {

struct command_line {
    bool help = false;
    bool version = false;
    bool flowgram = false;
    int first_positional = 1;  // index of the first argument that is not an option argument
    bool count_right = false;  // exactly two arguments follow the options
    std::string ace_file;      // set only when the count is right
    std::string sff_file;
};

// Unknown option letters are reported on `err`, one line each.
command_line scan_options(int argc, const char* const* argv, std::ostream& err);

enum class outcome { run, usage, version, usage_then_version };
outcome decide(const command_line& cl);

}  // namespace pelkrin
