#pragma once
// Pelkrin-bam's command line.
#include <string>
#include <vector>

#include "common/command_answer.h"

namespace pelkrin::bam {

struct bam_options {
    std::string prefix;  // of the outputs; empty: the ACE file's name without .gz and .ace
    std::string sample;  // SM of every read group; empty: the prefix's last component
    int threads = 0;     // compression threads; 0: one a processor
    std::string ace_file;
    std::vector<std::string> sff_files;
};

struct parsed_bam_options {
    command_kind command = command_kind::run;
    bam_options options;
    std::string error;  // what is wrong, for a usage error
};

// Parses the arguments after the program name: options before or after the
// names, "--" ending them; -h, --help and --version answer at once.
parsed_bam_options parse_bam_options(const std::vector<std::string>& args);

// The prefix a run takes by default: the ACE file's name without a last
// ".gz" and then a last ".ace" (in either case), its folder kept.
std::string default_prefix(const std::string& ace_file);

// The last component of a prefix (its folder left off).
std::string last_component(const std::string& prefix);

std::string bam_usage();

}  // namespace pelkrin::bam
