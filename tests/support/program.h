#pragma once
// Runs a built program as its own process and collects everything it did.
#include <filesystem>
#include <string>
#include <vector>

namespace pelkrin::test {

struct program_result {
    std::string out;
    std::string err;
    int status = -1;  // exit status, or 128 + signal number
};

// argv[0] is the program path; `cwd` is the working folder of the child.
program_result run_program(const std::vector<std::string>& argv, const std::filesystem::path& cwd = {});

// The main program as built beside the tests.
std::string pelkrin_binary();

}  // namespace pelkrin::test
