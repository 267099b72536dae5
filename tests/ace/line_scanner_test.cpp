#include <gtest/gtest.h>

#include <string>

#include "ace/line_scanner.h"

namespace pelkrin {
namespace {

TEST(AceLineScanner, WordSkipsEveryCBlank) {
    line_scanner s(" \t\v\f\r\nword\x01 next");
    std::string w;
    ASSERT_TRUE(s.word(w));
    EXPECT_EQ(w, "word\x01");
    ASSERT_TRUE(s.word(w));
    EXPECT_EQ(w, "next");
    EXPECT_FALSE(s.failed());
}

TEST(AceLineScanner, MissingWordLeavesTargetAndFailsLine) {
    line_scanner s(" \t \r");
    std::string w = "kept";
    EXPECT_FALSE(s.word(w));
    EXPECT_EQ(w, "kept");
    EXPECT_TRUE(s.failed());
    char c = 'k';
    EXPECT_FALSE(s.character(c));
    EXPECT_EQ(c, 'k');
}

TEST(AceLineScanner, EmptyLineYieldsNoWord) {
    line_scanner s("");
    std::string w = "kept";
    EXPECT_FALSE(s.word(w));
    EXPECT_EQ(w, "kept");
}

TEST(AceLineScanner, CharacterLeavesRestOfWord) {
    line_scanner s("  Cx 5");
    char c = 0;
    ASSERT_TRUE(s.character(c));
    EXPECT_EQ(c, 'C');
    std::string w;
    ASSERT_TRUE(s.word(w));
    EXPECT_EQ(w, "x");
    int32_t n = 0;
    ASSERT_TRUE(s.number(n));
    EXPECT_EQ(n, 5);
}

TEST(AceLineScanner, CharacterTakesCarriageReturnOnlyAsBlank) {
    line_scanner s("\r");
    char c = 'k';
    EXPECT_FALSE(s.character(c));
    EXPECT_EQ(c, 'k');
}

TEST(AceLineScanner, NumberStopsAtFirstNonDigit) {
    line_scanner s("12abc -3x");
    int32_t n = 0;
    ASSERT_TRUE(s.number(n));
    EXPECT_EQ(n, 12);
    std::string w;
    ASSERT_TRUE(s.word(w));
    EXPECT_EQ(w, "abc");
    ASSERT_TRUE(s.number(n));
    EXPECT_EQ(n, -3);
    char c = 0;
    ASSERT_TRUE(s.character(c));
    EXPECT_EQ(c, 'x');
}

TEST(AceLineScanner, NumberTakesPlusAndMinusSigns) {
    line_scanner s("+7 -8 007");
    int32_t a = 0, b = 0, c = 0;
    ASSERT_TRUE(s.number(a));
    ASSERT_TRUE(s.number(b));
    ASSERT_TRUE(s.number(c));
    EXPECT_EQ(a, 7);
    EXPECT_EQ(b, -8);
    EXPECT_EQ(c, 7);
}

TEST(AceLineScanner, NumberWithoutDigitsFailsAndIsNotStored) {
    for (const char* text : {"x", "-", "+", "- 5", "+-5", "--5", "", "   "}) {
        line_scanner s(text);
        int32_t n = 42;
        EXPECT_FALSE(s.number(n)) << text;
        EXPECT_EQ(n, 42) << text;
        EXPECT_TRUE(s.failed()) << text;
        int32_t later = 43;
        EXPECT_FALSE(s.number(later)) << text;
        EXPECT_EQ(later, 43) << text;
    }
}

TEST(AceLineScanner, Int32LimitsFitAndBeyondFails) {
    line_scanner s("2147483647 -2147483648");
    int32_t a = 0, b = 0;
    ASSERT_TRUE(s.number(a));
    ASSERT_TRUE(s.number(b));
    EXPECT_EQ(a, 2147483647);
    EXPECT_EQ(b, -2147483647 - 1);

    line_scanner over("2147483648 5 word");
    int32_t n = 11, m = 12;
    std::string w = "kept";
    EXPECT_FALSE(over.number(n));
    EXPECT_EQ(n, 11);
    EXPECT_FALSE(over.number(m));
    EXPECT_EQ(m, 12);
    EXPECT_FALSE(over.word(w));
    EXPECT_EQ(w, "kept");

    line_scanner under("-2147483649");
    EXPECT_FALSE(under.number(n));
    EXPECT_EQ(n, 11);

    line_scanner huge("99999999999");
    EXPECT_FALSE(huge.number(n));
    EXPECT_EQ(n, 11);
}

TEST(AceLineScanner, Int16LimitsFitAndBeyondFailsRestOfLine) {
    line_scanner s("32767 -32768");
    int16_t a = 0, b = 0;
    ASSERT_TRUE(s.number(a));
    ASSERT_TRUE(s.number(b));
    EXPECT_EQ(a, 32767);
    EXPECT_EQ(b, -32768);

    line_scanner over("40000 5");
    int16_t n = 9, m = 10;
    EXPECT_FALSE(over.number(n));
    EXPECT_EQ(n, 9);
    EXPECT_FALSE(over.number(m));
    EXPECT_EQ(m, 10);

    line_scanner over_by_one("32768");
    EXPECT_FALSE(over_by_one.number(n));
    EXPECT_EQ(n, 9);
    line_scanner under_by_one("-32769");
    EXPECT_FALSE(under_by_one.number(n));
    EXPECT_EQ(n, 9);
}

TEST(AceLineScanner, FailedLineFailsEveryKindOfExtraction) {
    line_scanner s("x 1 word C");
    int32_t n = 1;
    EXPECT_FALSE(s.number(n));
    std::string w = "kept";
    char c = 'k';
    int16_t h = 2;
    EXPECT_FALSE(s.word(w));
    EXPECT_FALSE(s.character(c));
    EXPECT_FALSE(s.number(h));
    EXPECT_FALSE(s.number(n));
    EXPECT_EQ(w, "kept");
    EXPECT_EQ(c, 'k');
    EXPECT_EQ(h, 2);
    EXPECT_EQ(n, 1);
}

TEST(AceLineScanner, MoveRestKeepsTextAndFailedState) {
    std::string storage;
    {
        std::string line = "QA name 7";
        line_scanner s(line);
        std::string w;
        ASSERT_TRUE(s.word(w));
        s.move_rest_to(storage);
        line.assign("overwritten");
        ASSERT_TRUE(s.word(w));
        EXPECT_EQ(w, "name");
        int32_t n = 0;
        ASSERT_TRUE(s.number(n));
        EXPECT_EQ(n, 7);
    }
    line_scanner failed("x y");
    int32_t n = 3;
    EXPECT_FALSE(failed.number(n));
    failed.move_rest_to(storage);
    std::string w = "kept";
    EXPECT_FALSE(failed.word(w));
    EXPECT_EQ(w, "kept");
}

}  // namespace
}  // namespace pelkrin
