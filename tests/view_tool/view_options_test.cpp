// Pelkrin-view's command line.
#include <gtest/gtest.h>

#include "view_tool/view_options.h"

namespace pelkrin::test {
namespace {

parsed_view_options parse(std::vector<std::string> args) { return parse_view_options(args); }

TEST(ViewOptions, DefaultsWithTheTwoNames) {
    const auto p = parse({"a.ace", "Contig1"});
    ASSERT_EQ(p.command, command_kind::run);
    EXPECT_EQ(p.options.mode, "align");
    EXPECT_EQ(p.options.start, 1);
    EXPECT_FALSE(p.options.width);
    EXPECT_FALSE(p.options.colour_file);
    EXPECT_FALSE(p.options.reads_file);
    EXPECT_FALSE(p.options.page);
    EXPECT_EQ(p.options.ace_file, "a.ace");
    EXPECT_EQ(p.options.contig_name, "Contig1");
}

TEST(ViewOptions, EveryOptionWithItsValue) {
    const auto p = parse({"-m", "flow-html", "-s", "5", "-w", "20", "-c", "col.txt", "-r", "reads.txt", "-p",
                          "x.ace", "C2"});
    ASSERT_EQ(p.command, command_kind::run);
    EXPECT_EQ(p.options.mode, "flow-html");
    EXPECT_EQ(p.options.start, 5);
    EXPECT_EQ(p.options.width, 20);
    EXPECT_EQ(p.options.colour_file, "col.txt");
    EXPECT_EQ(p.options.reads_file, "reads.txt");
    EXPECT_TRUE(p.options.page);
}

TEST(ViewOptions, ValuesJoinedToTheirLetterAndOptionsAfterTheNames) {
    const auto p = parse({"x.ace", "-mseq-table", "C2", "-ps7"});
    ASSERT_EQ(p.command, command_kind::run);
    EXPECT_EQ(p.options.mode, "seq-table");
    EXPECT_EQ(p.options.start, 7);
    EXPECT_TRUE(p.options.page);
    EXPECT_EQ(p.options.contig_name, "C2");
}

TEST(ViewOptions, DoubleDashEndsTheOptions) {
    const auto p = parse({"--", "-odd.ace", "-p"});
    ASSERT_EQ(p.command, command_kind::run);
    EXPECT_EQ(p.options.ace_file, "-odd.ace");
    EXPECT_EQ(p.options.contig_name, "-p");
    EXPECT_FALSE(p.options.page);
}

TEST(ViewOptions, LoneDashIsAName) {
    const auto p = parse({"-", "C"});
    ASSERT_EQ(p.command, command_kind::run);
    EXPECT_EQ(p.options.ace_file, "-");
}

TEST(ViewOptions, HelpAnswersAtOnce) {
    EXPECT_EQ(parse({"-h"}).command, command_kind::help);
    EXPECT_EQ(parse({"--help"}).command, command_kind::help);
    EXPECT_EQ(parse({"a.ace", "-h", "extra", "more"}).command, command_kind::help);
    EXPECT_EQ(parse({"-ph"}).command, command_kind::help);
}

TEST(ViewOptions, FirstProblemMetIsReported) {
    auto p = parse({"-x", "-h"});
    EXPECT_EQ(p.command, command_kind::usage_error);
    EXPECT_EQ(p.error, "unknown option -x");
    p = parse({"-s", "0", "-m", "bad", "a", "b"});
    EXPECT_EQ(p.error, "START must be an integer from 1 to 2147483647: 0");
}

TEST(ViewOptions, UnknownOptions) {
    EXPECT_EQ(parse({"-q", "a", "b"}).error, "unknown option -q");
    EXPECT_EQ(parse({"--mode", "a", "b"}).error, "unknown option --mode");
    EXPECT_EQ(parse({"-pz", "a", "b"}).error, "unknown option -z");
    EXPECT_EQ(parse({"-H", "a", "b"}).error, "unknown option -H");
}

TEST(ViewOptions, OptionWithoutItsValue) {
    const auto p = parse({"a", "b", "-w"});
    EXPECT_EQ(p.command, command_kind::usage_error);
    EXPECT_EQ(p.error, "option -w needs a value");
}

TEST(ViewOptions, MissingAndExtraNames) {
    EXPECT_EQ(parse({}).error, "missing arguments aceFile and contigName");
    EXPECT_EQ(parse({"a.ace"}).error, "missing argument contigName");
    EXPECT_EQ(parse({"a.ace", "C", "D"}).error, "unexpected argument D");
}

TEST(ViewOptions, UnknownMode) {
    EXPECT_EQ(parse({"-m", "Align", "a", "b"}).error, "unknown mode Align");
    EXPECT_EQ(parse({"-m", "", "a", "b"}).error, "unknown mode ");
}

TEST(ViewOptions, StartAndWidthAreDecimalDigitsFromOne) {
    EXPECT_EQ(parse({"-s", "2147483647", "a", "b"}).options.start, 2147483647);
    EXPECT_EQ(parse({"-s", "007", "a", "b"}).options.start, 7);
    for (const char* bad : {"0", "-1", "+1", "1.0", "", " 1", "1x", "2147483648", "99999999999999999999"}) {
        EXPECT_EQ(parse({"-s", bad, "a", "b"}).error,
                  std::string("START must be an integer from 1 to 2147483647: ") + bad);
        EXPECT_EQ(parse({"-w", bad, "a", "b"}).error,
                  std::string("WIDTH must be an integer from 1 to 2147483647: ") + bad);
    }
}

TEST(ViewOptions, SpanMustEndByTheLargestPosition) {
    EXPECT_EQ(parse({"-s", "2147483647", "-w", "1", "a", "b"}).command, command_kind::run);
    EXPECT_EQ(parse({"-s", "2147483000", "-w", "648", "a", "b"}).command, command_kind::run);
    EXPECT_EQ(parse({"-s", "2147483000", "-w", "649", "a", "b"}).error,
              "START + WIDTH - 1 must not exceed 2147483647");
}

TEST(ViewOptions, LastValueOfARepeatedOptionWins) {
    const auto p = parse({"-m", "flow", "-m", "layout", "a", "b"});
    EXPECT_EQ(p.options.mode, "layout");
}

}  // namespace
}  // namespace pelkrin::test
