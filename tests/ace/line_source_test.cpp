#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "ace/line_source.h"
#include "ace_fixture.h"
#include "files.h"

namespace pelkrin {
namespace {

using test::scratch_ace;

std::string next(line_source& src) {
    std::string_view line;
    EXPECT_TRUE(src.next_line(line));
    return std::string(line);
}

TEST(AceLineSource, LinesEndOnlyAtLineFeed) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("a\r\nb\rc\n\r\n")));
    EXPECT_EQ(next(src), "a\r");
    EXPECT_EQ(next(src), "b\rc");
    EXPECT_EQ(next(src), "\r");
    EXPECT_FALSE(src.at_end());
    std::string_view line = "x";
    EXPECT_FALSE(src.next_line(line));
    EXPECT_TRUE(line.empty());
    EXPECT_TRUE(src.at_end());
}

TEST(AceLineSource, LastLineWithoutLineFeedIsStillALine) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("a\nlast")));
    EXPECT_EQ(next(src), "a");
    EXPECT_FALSE(src.at_end());
    EXPECT_EQ(next(src), "last");
    EXPECT_TRUE(src.at_end());
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
}

TEST(AceLineSource, EmptyLinesAreLinesOfLengthZero) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("\n\n  \nx\n")));
    EXPECT_EQ(next(src), "");
    EXPECT_EQ(next(src), "");
    EXPECT_EQ(next(src), "  ");
    EXPECT_EQ(next(src), "x");
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
}

TEST(AceLineSource, EmptyFileHasNoLine) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("")));
    EXPECT_FALSE(src.at_end());
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
    EXPECT_TRUE(src.at_end());
    EXPECT_TRUE(src.failed());
}

TEST(AceLineSource, LineLongerThanTheBuffer) {
    const std::string big(3u << 20, 'A');
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("first\n" + big + "\nafter\n" + big)));
    EXPECT_EQ(next(src), "first");
    EXPECT_EQ(next(src), big);
    EXPECT_EQ(next(src), "after");
    EXPECT_EQ(next(src), big);
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
}

TEST(AceLineSource, ManyLinesAcrossBufferRefills) {
    std::string text;
    for (int i = 0; i < 300000; ++i) text += "line " + std::to_string(i) + "\n";
    ASSERT_GT(text.size(), 3u << 20);
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace(text)));
    std::string_view line;
    int count = 0;
    while (src.next_line(line)) {
        ASSERT_EQ(line, "line " + std::to_string(count));
        ++count;
    }
    EXPECT_EQ(count, 300000);
}

TEST(AceLineSource, HeaderWordsAndNumbersCrossLines) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("\n  AS\n 12\n\t-3 rest\nnext\n")));
    std::string word;
    ASSERT_TRUE(src.read_word(word));
    EXPECT_EQ(word, "AS");
    int32_t a = 0, b = 0;
    ASSERT_TRUE(src.read_number(a));
    ASSERT_TRUE(src.read_number(b));
    EXPECT_EQ(a, 12);
    EXPECT_EQ(b, -3);
    EXPECT_EQ(next(src), " rest");
    EXPECT_EQ(next(src), "next");
}

TEST(AceLineSource, HeaderNumberStopsAtFirstNonDigit) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("AS 2 16CO x\n")));
    std::string word;
    int32_t a = 0, b = 0;
    ASSERT_TRUE(src.read_word(word));
    ASSERT_TRUE(src.read_number(a));
    ASSERT_TRUE(src.read_number(b));
    EXPECT_EQ(b, 16);
    EXPECT_EQ(next(src), "CO x");
}

TEST(AceLineSource, UnreadableNumberFailsTheStream) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("AS 3 x\nCO\n")));
    std::string word;
    int32_t a = 0, b = 77;
    ASSERT_TRUE(src.read_word(word));
    ASSERT_TRUE(src.read_number(a));
    EXPECT_FALSE(src.read_number(b));
    EXPECT_EQ(b, 77);
    EXPECT_TRUE(src.failed());
    EXPECT_TRUE(src.at_end());
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
}

TEST(AceLineSource, OutOfRangeNumberIsNotStored) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("99999999999 3")));
    int32_t a = 5;
    EXPECT_FALSE(src.read_number(a));
    EXPECT_EQ(a, 5);
    EXPECT_TRUE(src.failed());
}

TEST(AceLineSource, NumberAtEndOfDataIsStoredAndEndsInput) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("AS 1 2")));
    std::string word;
    int32_t a = 0, b = 0;
    ASSERT_TRUE(src.read_word(word));
    ASSERT_TRUE(src.read_number(a));
    ASSERT_TRUE(src.read_number(b));
    EXPECT_EQ(b, 2);
    EXPECT_TRUE(src.at_end());
    EXPECT_FALSE(src.failed());
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
}

TEST(AceLineSource, WordAtEndOfDataThenNumberFails) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace(" \n AS")));
    std::string word;
    ASSERT_TRUE(src.read_word(word));
    EXPECT_EQ(word, "AS");
    EXPECT_TRUE(src.at_end());
    int32_t a = 4;
    EXPECT_FALSE(src.read_number(a));
    EXPECT_EQ(a, 4);
}

TEST(AceLineSource, NoWordInBlankFileLeavesTarget) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace(" \n\t\r\n")));
    std::string word = "kept";
    EXPECT_FALSE(src.read_word(word));
    EXPECT_EQ(word, "kept");
    EXPECT_TRUE(src.failed());
}

TEST(AceLineSource, MissingFileCannotBeOpened) {
    line_source src;
    EXPECT_FALSE(src.open((test::scratch_dir() / "missing.ace").string()));
    EXPECT_FALSE(src.is_open());
    EXPECT_TRUE(src.failed());
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
}

TEST(AceLineSource, ClosedSourceHasNoLines) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("a\nb\n")));
    EXPECT_EQ(next(src), "a");
    src.close();
    EXPECT_FALSE(src.is_open());
    EXPECT_TRUE(src.at_end());
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
}

TEST(AceLineSource, ReopeningStartsAfresh) {
    const auto dir = test::scratch_dir();
    line_source src;
    ASSERT_TRUE(src.open(test::write_ace(dir, "one", "a.ace")));
    EXPECT_EQ(next(src), "one");
    std::string_view line;
    EXPECT_FALSE(src.next_line(line));
    ASSERT_TRUE(src.open(test::write_ace(dir, "two\nthree\n", "b.ace")));
    EXPECT_FALSE(src.at_end());
    EXPECT_EQ(next(src), "two");
    EXPECT_EQ(next(src), "three");
}

// The lines of a block as next_line gives them, joined.
std::string block(line_source& src, bool& ended) {
    std::vector<char> out = {'>'};
    ended = src.append_block(out);
    return std::string(out.begin(), out.end());
}

TEST(AceLineSource, BlockJoinsItsLinesAndTakesTheEmptyLine) {
    line_source src;
    ASSERT_TRUE(src.open(scratch_ace("ab\ncd\r\n\nnext\n\n\nlast")));
    bool ended = false;
    EXPECT_EQ(block(src, ended), ">abcd\r");
    EXPECT_TRUE(ended);
    EXPECT_EQ(block(src, ended), ">next");
    EXPECT_TRUE(ended);
    EXPECT_EQ(block(src, ended), ">");
    EXPECT_TRUE(ended);
    EXPECT_EQ(block(src, ended), ">last");
    EXPECT_FALSE(ended);
    EXPECT_TRUE(src.at_end());
    EXPECT_EQ(block(src, ended), ">");
    EXPECT_FALSE(ended);
}

TEST(AceLineSource, BlocksAcrossBufferRefillsMatchTheLines) {
    std::string text;
    for (int b = 0; b < 3000; ++b) {
        for (int l = 0; l <= b % 23; ++l) {
            const auto length = static_cast<std::size_t>(1 + (b * 7 + l) % 61);
            text.append(length, static_cast<char>('A' + l % 26)).append("\n");
        }
        text.append("\n");
    }
    text.append(std::string(300000, 'G'));  // a last line longer than the buffer, without an empty one after it
    const std::string path = scratch_ace(text);
    line_source by_lines;
    line_source by_blocks;
    ASSERT_TRUE(by_lines.open(path));
    ASSERT_TRUE(by_blocks.open(path));
    for (int b = 0; b <= 3000; ++b) {
        std::string expected = ">";
        std::string_view line;
        bool expected_end = false;
        while (by_lines.next_line(line)) {
            if (line.empty()) {
                expected_end = true;
                break;
            }
            expected.append(line);
        }
        bool ended = false;
        ASSERT_EQ(block(by_blocks, ended), expected) << b;
        ASSERT_EQ(ended, expected_end) << b;
    }
    EXPECT_TRUE(by_blocks.at_end());
}

TEST(AceLineSource, ClosedSourceHasNoBlock) {
    line_source src;
    std::vector<char> out;
    EXPECT_FALSE(src.append_block(out));
    EXPECT_TRUE(out.empty());
    EXPECT_TRUE(src.failed());
}

}  // namespace
}  // namespace pelkrin
