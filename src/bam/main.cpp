// Pelkrin-bam: an ACE assembly with its reads' qualities and flow signals
// from the SFF files, as an indexed BAM file and its reference.
#include <iostream>
#include <string>
#include <vector>

#include "bam/bam_run.h"
#include "common/program_entry.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    return pelkrin::run_guarded("Pelkrin-bam", std::cerr,
                                [&] { return pelkrin::bam::run_bam(args, std::cout, std::cerr); });
}
