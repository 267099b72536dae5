// Pelkrin-prep: finds and repairs what keeps an assembly and its SFF files
// from Pelkrin: ACE dialects, several SFF files, wrong pairs.
#include <iostream>
#include <string>
#include <vector>

#include "common/program_entry.h"
#include "prep/prep_run.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    return pelkrin::run_guarded("Pelkrin-prep", std::cerr,
                                [&] { return pelkrin::prep::run_prep(args, std::cout, std::cerr); });
}
