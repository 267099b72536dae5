#pragma once
// Runs a built program as its own process and collects everything it did.
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace pelkrin::test {

struct program_result {
    std::string out;
    std::string err;
    int status = -1;  // exit status, or 128 + signal number
    bool timed_out = false;
    double seconds = 0;  // wall time
};

struct run_limits {
    double seconds = 0;                  // killed after this long; 0: no limit
    std::uint64_t address_space = 0;     // bytes of virtual memory; 0: no limit
    std::uint64_t file_size = 0;         // bytes any file may grow to, SIGXFSZ ignored; 0: no limit
    std::string stdout_path;             // standard output goes here instead of being collected
};

// argv[0] is the program path; `cwd` is the working folder of the child.
program_result run_program(const std::vector<std::string>& argv, const std::filesystem::path& cwd = {},
                           const run_limits& limits = {});

// The programs as built beside the tests.
std::string pelkrin_binary();
std::string pelkrin_view_binary();
std::string pelkrin_prep_binary();

}  // namespace pelkrin::test
