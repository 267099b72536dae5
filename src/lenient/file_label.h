#pragma once
// How the lenient readings name a file in their messages: after the name of
// the program that reads it, when given ("Pelkrin-prep: a.sff"), as each
// program names the files of its messages.
#include <string>
#include <string_view>

namespace pelkrin {

inline std::string file_label(std::string_view program, std::string_view file) {
    std::string label;
    if (!program.empty()) label.append(program).append(": ");
    return label.append(file);
}

}  // namespace pelkrin
