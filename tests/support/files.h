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
// A fresh, empty folder that a user other than the one running the tests can
// enter and read, with everything written in it: made under the system's
// temporary folder, since the build tree may lie in a folder that only its
// owner can enter (/root, or a home folder). Removed with everything in it
// when the object goes.
class shared_scratch {
public:
    shared_scratch();
    ~shared_scratch();
    shared_scratch(const shared_scratch&) = delete;
    shared_scratch& operator=(const shared_scratch&) = delete;
    const std::filesystem::path& path() const { return path_; }
    // Writes a file that every user can read (and, when `executable`, run).
    void write(const std::string& leaf, std::string_view bytes, bool executable = false) const;

private:
    std::filesystem::path path_;
};
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
