#pragma once
// Everything a folder holds, for comparing it before and after a run: a
// failed run must leave every file as it was and no temporary file behind.
#include <filesystem>
#include <map>
#include <string>

namespace pelkrin::test {

// Each entry of the folder and of the folders in it, by its path relative
// to `dir`, to what it is: a regular file's bytes, "link to TARGET" for a
// symbolic link (never followed), "directory", "fifo" or "other".
std::map<std::string, std::string> folder_state(const std::filesystem::path& dir);

// The entries that differ between two states, one a line, for a test's message.
std::string state_difference(const std::map<std::string, std::string>& before,
                             const std::map<std::string, std::string>& after);

}  // namespace pelkrin::test
