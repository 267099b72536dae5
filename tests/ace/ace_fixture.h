#pragma once
// Small ACE texts and helpers shared by the ACE reader tests.
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace pelkrin::test {

// Two complete contigs followed by a closed tag block.
inline constexpr std::string_view two_contigs =
    "AS 2 3\n"
    "\n"
    "CO ctg1 10 2 2 U\n"
    "AC*GT\n"
    "acgta\n"
    "\n"
    "BQ\n"
    "20 20 20 20 20 20 20 20 20\n"
    "\n"
    "AF r1 U 1\n"
    "AF r2 C -2\n"
    "BS 1 5 r1\n"
    "BS 6 10 r2\n"
    "\n"
    "RD r1 6 0 0\n"
    "AC*GTa\n"
    "\n"
    "QA 1 6 2 5\n"
    "DS CHROMAT_FILE: r1\n"
    "\n"
    "RD r2 8 0 0\n"
    "ggAC*G\n"
    "Ta\n"
    "\n"
    "QA 1 8 3 8\n"
    "DS CHROMAT_FILE: r2\n"
    "\n"
    "CO ctg2 4 1 1 C\n"
    "TT*A\n"
    "\n"
    "BQ\n"
    "30 30 30\n"
    "\n"
    "AF r3 U 2\n"
    "BS 1 4 r3\n"
    "\n"
    "RD r3 3 0 0\n"
    "T*A\n"
    "\n"
    "QA 1 3 1 3\n"
    "DS x\n"
    "\n"
    "CT{\n"
    "ctg2 repeat 1 2\n"
    "}\n"
    "\n";

// One contig with one read, for tests that change a single line of it.
inline constexpr std::string_view one_contig =
    "AS 1 1\n"
    "\n"
    "CO c1 4 1 1 U\n"
    "ACGT\n"
    "\n"
    "BQ\n"
    "20 20 20 20\n"
    "\n"
    "AF r1 U 1\n"
    "BS 1 4 r1\n"
    "\n"
    "RD r1 4 0 0\n"
    "ACGT\n"
    "\n"
    "QA 1 4 1 4\n"
    "DS x\n";

// Writes `text` to `name` in `dir` and returns the file's path as text.
std::string write_ace(const std::filesystem::path& dir, std::string_view text,
                      std::string_view name = "in.ace");

// Writes `text` to a fresh scratch folder of the running test.
std::string scratch_ace(std::string_view text);

std::string text_of(const std::vector<char>& chars);

}  // namespace pelkrin::test
