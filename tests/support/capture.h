#pragma once
// Runs library code with standard output and standard error captured, turning a
// fatal error into its message on standard error and a recorded exit status, as
// a program's entry does.
#include <functional>
#include <optional>
#include <string>

#include "common/console.h"

namespace pelkrin::test {

struct captured {
    std::string out;
    std::string err;
    std::optional<int> exit_status;  // set when the code threw a fatal error
};

// The process's standard output and standard error, which run_captured captures.
console std_console();

captured run_captured(const std::function<void()>& body);

}  // namespace pelkrin::test
