#pragma once
// Pelkrin-view's command line.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/command_answer.h"

namespace pelkrin {

struct view_options {
    std::string mode;  // a name of the mode table; the table's default unless -m says
    int32_t start = 1;
    std::optional<int32_t> width;  // none: up to the end of the consensus
    std::optional<std::string> colour_file;
    std::optional<std::string> reads_file;
    bool page = false;
    std::optional<std::string> report_folder;  // -o, for the report
    std::string ace_file;
    std::string contig_name;  // empty for the report
};

struct parsed_view_options {
    command_kind command = command_kind::run;
    view_options options;
    std::string error;  // what is wrong, for a usage error
};

// Parses the arguments after the program name. Options and their values are
// taken left to right, before or after the two names; the first problem met
// is the one reported, and -h, --help or --version answers at once. "--"
// ends the options.
parsed_view_options parse_view_options(const std::vector<std::string>& args);

// Decimal digits only, from 1 to 2147483647.
std::optional<int32_t> parse_view_number(std::string_view text);

}  // namespace pelkrin
