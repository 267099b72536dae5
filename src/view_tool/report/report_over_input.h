#pragma once
// A report must not write over, nor remove, a file it reads: the ACE file,
// the colour file, Pelkrin's outputs beside the ACE file.
#include <optional>
#include <string>
#include <vector>

namespace pelkrin {

struct output_over_input {
    std::string output;  // DIR/FILE, as the messages name it
    std::string input;   // as given
};

// The first of `inputs` (names as given; those that cannot be found are
// passed over) that is a file of the report in the folder `folder` (named as
// given: report_file_names.h), by that name, a hard link or a symbolic link:
// the report would write over it or remove it. None when the folder does not
// exist.
std::optional<output_over_input> report_file_over_input(const std::string& folder,
                                                        const std::vector<std::string>& inputs);

}  // namespace pelkrin
