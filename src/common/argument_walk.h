#pragma once
// A program's command line walked in order, as every program of the project
// takes it: options and names may come in any order; an argument that does
// not begin with '-', a lone "-", and everything after "--" are names; every
// other argument is an option, handed to the caller, who takes its value from
// the argument after it where it needs one.
#include <cstddef>
#include <string>
#include <vector>

namespace pelkrin {

class argument_walk {
public:
    explicit argument_walk(const std::vector<std::string>& args) : args_(args) {}

    // The next option; the names before it are gathered. False at the end.
    bool next_option(std::string& option);
    // The argument after the option last given, taken as its value; false
    // when there is none.
    bool next_value(std::string& value);
    // The names met so far, in order.
    const std::vector<std::string>& names() const { return names_; }

private:
    const std::vector<std::string>& args_;
    std::size_t at_ = 0;
    bool options_ended_ = false;
    std::vector<std::string> names_;
};

}  // namespace pelkrin
