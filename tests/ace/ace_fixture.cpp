#include "ace_fixture.h"

#include "files.h"

namespace pelkrin::test {

std::string write_ace(const std::filesystem::path& dir, std::string_view text, std::string_view name) {
    const auto path = dir / name;
    write_file(path, text);
    return path.string();
}

std::string scratch_ace(std::string_view text) { return write_ace(scratch_dir(), text); }

std::string text_of(const std::vector<char>& chars) { return std::string(chars.begin(), chars.end()); }

}  // namespace pelkrin::test
