#pragma once
// Runs library code with standard output and standard error captured, turning a
// fatal end of the process into a recorded exit status.
#include <functional>
#include <optional>
#include <string>

namespace pelkrin::test {

struct captured {
    std::string out;
    std::string err;
    std::optional<int> exit_status;  // set when the code ended the process
};

captured run_captured(const std::function<void()>& body);

}  // namespace pelkrin::test
