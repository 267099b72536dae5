// Pelkrin-view: one view of one contig of an ACE file, on the command line.
#include <iostream>
#include <string>
#include <vector>

#include "view_tool/view_run.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    return pelkrin::run_view(args, std::cout, std::cerr);
}
