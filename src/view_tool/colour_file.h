#pragma once
// The colours of Pelkrin-view: built in, or read from a colour file.
#include <optional>
#include <string>

#include "views/colour_map.h"

namespace pelkrin {

colour_map default_colours();

struct colour_file_result {
    std::optional<colour_map> colours;  // none when the file is unusable
    std::string error;                  // then: what is wrong, naming the file
};

// Every non-empty line is one character, a tab and the colour text (the rest
// of the line without its line end, "\n" or "\r\n"). A later line for the
// same character replaces an earlier one.
colour_file_result read_colour_file(const std::string& path);

}  // namespace pelkrin
