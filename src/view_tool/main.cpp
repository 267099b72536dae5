// Pelkrin-view: one view of one contig of an ACE file, on the command line,
// or a report of every contig for a browser.
#include <iostream>
#include <string>
#include <vector>

#include "common/program_entry.h"
#include "view_tool/view_run.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    return pelkrin::run_guarded("Pelkrin-view", std::cerr, [&] { return pelkrin::run_view(args, std::cout, std::cerr); });
}
