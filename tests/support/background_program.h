#pragma once
// A built program started without waiting for it: for tests that signal it
// while it runs, or run it as another user.
#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "program.h"

namespace pelkrin::test {

class background_program {
public:
    // Starts argv[0] in `cwd`. With `as_other_user`, a test run by root runs
    // it as user and group 65534 (root may write anywhere); others run it as
    // themselves. Standard input is /dev/null.
    background_program(const std::vector<std::string>& argv, const std::filesystem::path& cwd = {},
                       bool as_other_user = false);
    // Kills the program if it still runs.
    ~background_program();
    background_program(const background_program&) = delete;
    background_program& operator=(const background_program&) = delete;

    void send(int signal) const;
    // Waits for the end: status as run_program gives it (125: no other user
    // to be, 126: `cwd` cannot be entered, 127: the program cannot be run).
    program_result wait();

private:
    pid_t pid_ = -1;
    std::filesystem::path out_;
    std::filesystem::path err_;
};

// Runs the program to its end as background_program does.
program_result run_as_other_user(const std::vector<std::string>& argv, const std::filesystem::path& cwd);

}  // namespace pelkrin::test
