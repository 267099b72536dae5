// Lines of values as the reads file holds them.
#include "reads_format/values_line.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <regex>
#include <string>
#include <vector>

#include "common/output_file.h"
#include "files.h"
#include "text_buffer_lines.h"

namespace pelkrin {
namespace {

using test::recording_buffer;

TEST(ValuesLine, AsTheReadsFileHasThem) {
    recording_buffer out;
    const std::vector<std::int16_t> quals{35, 0, 999, 1000, -1, 32767};
    append_values_line(out, quals.data(), quals.size());
    append_values_line(out, quals.data(), 0);
    const std::vector<std::uint16_t> flows{65535, 7};
    append_values_line(out, flows.data(), flows.size());
    out.close();
    ASSERT_EQ(out.handed.size(), 1u);
    EXPECT_EQ(out.handed[0], "35\t0\t999\t1000\t-1\t32767\n\n65535\t7\n");
}

TEST(ValuesLine, EndsWithALineFeedInsteadOfATab) {
    const auto dir = test::scratch_dir();
    {
        output_file out((dir / "v.txt").string());
        const std::int16_t values[] = {0, 7, 99, 100, -3, 32767};
        append_values_line(out, values, 6);
        append_values_line(out, values, 0);
    }
    EXPECT_EQ(test::read_file(dir / "v.txt"), "0\t7\t99\t100\t-3\t32767\n\n");
}

TEST(ValuesLine, CheckedAndReadBack) {
    EXPECT_TRUE(is_values_line(""));
    EXPECT_TRUE(is_values_line("0\t-12\t300"));
    for (const char* bad : {"\t", "1\t", "\t1", "1\t\t2", "-", "1-2", "1 2", "+1", "1\r", "a"}) {
        EXPECT_FALSE(is_values_line(bad)) << bad;
    }
    EXPECT_EQ(parse_values_line("101\t-2\t98"), (std::vector<int64_t>{101, -2, 98}));
    EXPECT_TRUE(parse_values_line("1\tx").empty());
    EXPECT_TRUE(parse_values_line("99999999999999999999").empty());
}

// The checker against the grammar itself, on lines made of the characters
// that matter, most of them near misses.
TEST(ValuesLine, CheckerAgreesWithTheGrammar) {
    const std::regex grammar("(-?[0-9]+(\t-?[0-9]+)*)?");
    const std::string alphabet = "0-\t9\t-1x";
    std::mt19937 random(7);
    int accepted = 0;
    for (int n = 0; n < 20000; ++n) {
        std::string line;
        const int length = static_cast<int>(random() % 9);
        for (int k = 0; k < length; ++k) line.push_back(alphabet[random() % alphabet.size()]);
        const bool expected = std::regex_match(line, grammar);
        ASSERT_EQ(is_values_line(line), expected) << "line \"" << line << "\"";
        accepted += expected ? 1 : 0;
    }
    EXPECT_GT(accepted, 1000) << "the lines tried must hold many values lines";
}

}  // namespace
}  // namespace pelkrin
