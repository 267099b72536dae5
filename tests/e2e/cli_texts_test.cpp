// The binary's fixed texts and exit statuses, compared byte for byte.
#include <gtest/gtest.h>

#include <filesystem>

#include "expected_texts.h"
#include "files.h"
#include "program.h"

namespace pelkrin::test {
namespace {

program_result pelkrin(std::vector<std::string> args, const std::filesystem::path& cwd = {}) {
    args.insert(args.begin(), pelkrin_binary());
    return run_program(args, cwd);
}

TEST(CliTexts, NoArguments) {
    auto r = pelkrin({});
    EXPECT_EQ(r.out, expected_usage() + expected_version());
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.status, 0);
}

TEST(CliTexts, VersionFlag) {
    auto r = pelkrin({"-v"});
    EXPECT_EQ(r.out, expected_version());
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.status, 0);
}

TEST(CliTexts, VersionWithTwoFilesOpensNothing) {
    auto dir = scratch_dir();
    auto r = pelkrin({"-v", "a.ace", "missing.sff"}, dir);
    EXPECT_EQ(r.out, expected_version());
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(std::filesystem::is_empty(dir));
}

TEST(CliTexts, HelpWithTwoFiles) {
    auto r = pelkrin({"-h", "a.ace", "b.sff"});
    EXPECT_EQ(r.out, expected_usage());
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.status, 0);
}

TEST(CliTexts, UnknownSwitchWithTwoFiles) {
    auto r = pelkrin({"-x", "a.ace", "b.sff"});
    EXPECT_EQ(r.err, "Unreconized switch: x\n");
    EXPECT_EQ(r.out, expected_usage());
    EXPECT_EQ(r.status, 0);
}

TEST(CliTexts, FlowgramAndVersionLettersTogether) {
    auto r = pelkrin({"-fv"});
    EXPECT_EQ(r.out, expected_version());
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.status, 0);
}

TEST(CliTexts, TwoUnknownLettersInOneArgument) {
    auto r = pelkrin({"-xq"});
    EXPECT_EQ(r.err, "Unreconized switch: x\nUnreconized switch: q\n");
    EXPECT_EQ(r.out, expected_usage() + expected_version());
    EXPECT_EQ(r.status, 0);
}

TEST(CliTexts, LoneDashIsAPositional) {
    auto r = pelkrin({"-"});
    EXPECT_EQ(r.out, expected_usage() + expected_version());
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.status, 0);
}

TEST(CliTexts, LoneDashAsAceFileStartsTheRun) {
    // The run opens the SFF file first; a missing one ends it.
    auto r = pelkrin({"-", "missing.sff"}, scratch_dir());
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "fail to open file missing.sff\n");
    EXPECT_EQ(r.status, 1);
}

}  // namespace
}  // namespace pelkrin::test
