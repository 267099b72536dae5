#pragma once
// Scratch files and folders for tests, and whole-file reads and writes.
#include <cstdint>
#include <filesystem>
#include <vector>
#include <string>
#include <string_view>

namespace pelkrin::test {

// A fresh, empty folder for the running test, under the build tree.
std::filesystem::path scratch_dir();
// A fresh folder of that name inside this test's folder, leaving the rest of
// the test's folder alone (scratch_dir() empties all of it).
std::filesystem::path scratch_subdir(std::string_view name);
// The folder that holds every test's scratch folder; never emptied.
std::filesystem::path scratch_root();

std::string read_file(const std::filesystem::path& p);
void write_file(const std::filesystem::path& p, std::string_view bytes);
// The bytes of a text, as a reader takes a file's contents in memory.
std::vector<std::uint8_t> bytes_of(std::string_view text);

// A file of tests/data: real files written by other programs.
std::filesystem::path data_file(std::string_view name);
// A file of the project's source tree.
std::filesystem::path source_file(std::string_view name);

}  // namespace pelkrin::test
