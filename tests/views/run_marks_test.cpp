// Run starts marked many bases a step match the base-by-base rule.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "views/run_marks.h"

namespace pelkrin::test {
namespace {

std::vector<std::uint8_t> marked(const std::string& bases, std::vector<std::uint8_t> marks) {
    const bool n_met = mark_run_starts(bases.data(), marks.data(), bases.size() - 1);
    EXPECT_EQ(n_met, bases.find_first_of("Nn", 1) != std::string::npos) << bases;
    return marks;
}

TEST(RunMarks, MarksTheLetterOfEachBaseThatDiffersFromTheOneBefore) {
    // Bases 1 on: C starts a run, C goes on, t starts one (as T), T goes on,
    // a pad and an 'x' mark nothing, and g after the 'x' starts a run.
    EXPECT_EQ(marked("ACCtT*xg", std::vector<std::uint8_t>(7, 0)),
              (std::vector<std::uint8_t>{4, 0, 1, 0, 0, 0, 8}));
}

TEST(RunMarks, KeepsTheBitsAlreadyMarked) {
    EXPECT_EQ(marked("AG", {1}), (std::vector<std::uint8_t>{9}));
    EXPECT_EQ(marked("GG", {2}), (std::vector<std::uint8_t>{2}));
}

TEST(RunMarks, MatchesTheRuleOnRandomBases) {
    std::mt19937 random(7);
    // Pairs that differ only in the case bit among the other characters.
    const std::string alphabet = "ACGTacgt*xN\x80[{@`\n\x01!";
    for (int n = 0; n < 200; ++n) {
        std::string bases;
        const int length = 2 + static_cast<int>(random() % 70);
        for (int i = 0; i < length; ++i) bases.push_back(alphabet[random() % alphabet.size()]);
        std::vector<std::uint8_t> marks(bases.size() - 1);
        for (auto& m : marks) m = static_cast<std::uint8_t>(random() % 16);
        std::vector<std::uint8_t> expected = marks;
        for (std::size_t k = 0; k + 1 < bases.size(); ++k) {
            const char before = static_cast<char>(std::toupper(static_cast<unsigned char>(bases[k])));
            const char ch = static_cast<char>(std::toupper(static_cast<unsigned char>(bases[k + 1])));
            if (ch != before) expected[k] |= cycle_bit(ch);
        }
        EXPECT_EQ(marked(bases, marks), expected) << bases;
    }
}

TEST(RunMarks, TellsOfAnNAfterTheFirstBase) {
    std::vector<std::uint8_t> marks(4, 0);
    EXPECT_FALSE(mark_run_starts("NACGT", marks.data(), 4));
    EXPECT_TRUE(mark_run_starts("ACnGT", marks.data(), 4));
    EXPECT_TRUE(mark_run_starts("ACGTN", marks.data(), 4));
    EXPECT_FALSE(mark_run_starts("ACGTN", marks.data(), 3));
}

}  // namespace
}  // namespace pelkrin::test
