#include "driver/command_line.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "capture.h"
#include "driver/entry.h"
#include "expected_texts.h"

namespace pelkrin {
namespace {

// Runs the entry on the arguments (program name first) with a run that only records its request.
struct entry_result {
    test::captured io;
    int status = -1;
    std::vector<run_request> runs;
};

entry_result call_entry(std::vector<std::string> args) {
    args.insert(args.begin(), "Pelkrin");
    std::vector<const char*> argv;
    for (const auto& a : args) argv.push_back(a.c_str());
    argv.push_back(nullptr);
    entry_result r;
    r.io = test::run_captured([&] {
        r.status = entry(static_cast<int>(args.size()), argv.data(), [&](const run_request& req) {
            r.runs.push_back(req);
            return 0;
        });
    });
    return r;
}

command_line scan(std::vector<std::string> args, std::string* err_text = nullptr) {
    args.insert(args.begin(), "Pelkrin");
    std::vector<const char*> argv;
    for (const auto& a : args) argv.push_back(a.c_str());
    std::ostringstream err;
    command_line cl = scan_options(static_cast<int>(args.size()), argv.data(), err);
    if (err_text) *err_text = err.str();
    return cl;
}

const std::string usage = test::expected_usage();
const std::string version = test::expected_version();

// Option scanning.

TEST(OptionScanning, LettersMayShareOneArgument) {
    command_line cl = scan({"-fv", "a.ace", "b.sff"});
    EXPECT_TRUE(cl.flowgram);
    EXPECT_TRUE(cl.version);
    EXPECT_FALSE(cl.help);
    EXPECT_EQ(cl.first_positional, 2);
    EXPECT_TRUE(cl.count_right);
}

TEST(OptionScanning, OptionsMaySpreadOverArguments) {
    command_line cl = scan({"-f", "-v", "a.ace", "b.sff"});
    EXPECT_TRUE(cl.flowgram);
    EXPECT_TRUE(cl.version);
    EXPECT_EQ(cl.first_positional, 3);
    EXPECT_EQ(cl.ace_file, "a.ace");
    EXPECT_EQ(cl.sff_file, "b.sff");
}

TEST(OptionScanning, UpperCaseHelpAndVersionLetters) {
    command_line cl = scan({"-HV"});
    EXPECT_TRUE(cl.help);
    EXPECT_TRUE(cl.version);
}

TEST(OptionScanning, UpperCaseFIsUnknown) {
    std::string err;
    command_line cl = scan({"-F", "a.ace", "b.sff"}, &err);
    EXPECT_FALSE(cl.flowgram);
    EXPECT_TRUE(cl.help);
    EXPECT_EQ(err, "Unreconized switch: F\n");
}

TEST(OptionScanning, EveryUnknownLetterOfAnArgumentIsReported) {
    std::string err;
    command_line cl = scan({"-xq"}, &err);
    EXPECT_EQ(err, "Unreconized switch: x\nUnreconized switch: q\n");
    EXPECT_TRUE(cl.help);
}

TEST(OptionScanning, ScanningStopsAtFirstPositional) {
    command_line cl = scan({"a.ace", "-f", "b.sff"});
    EXPECT_FALSE(cl.flowgram);
    EXPECT_EQ(cl.first_positional, 1);
    EXPECT_FALSE(cl.count_right);
}

TEST(OptionScanning, DashArgumentAfterPositionalIsAFileName) {
    command_line cl = scan({"-f", "a.ace", "-b.sff"});
    EXPECT_TRUE(cl.count_right);
    EXPECT_EQ(cl.sff_file, "-b.sff");
}

TEST(OptionScanning, LoneDashIsTakenAsAceFileName) {
    command_line cl = scan({"-", "b.sff"});
    EXPECT_EQ(cl.first_positional, 1);
    EXPECT_TRUE(cl.count_right);
    EXPECT_EQ(cl.ace_file, "-");
    EXPECT_EQ(cl.sff_file, "b.sff");
}

// The decision table, one test per row.

TEST(DecisionTable, CountRightNoHelpNoVersionRuns) {
    auto r = call_entry({"a.ace", "b.sff"});
    ASSERT_EQ(r.runs.size(), 1u);
    EXPECT_EQ(r.io.out, "");
    EXPECT_EQ(r.runs[0].ace_file, "a.ace");
    EXPECT_EQ(r.runs[0].sff_file, "b.sff");
    EXPECT_FALSE(r.runs[0].flowgram);
}

TEST(DecisionTable, CountRightVersionOnlyPrintsVersion) {
    auto r = call_entry({"-v", "a.ace", "b.sff"});
    EXPECT_TRUE(r.runs.empty());
    EXPECT_EQ(r.io.out, version);
    EXPECT_EQ(r.status, 0);
}

TEST(DecisionTable, CountRightHelpOnlyPrintsUsage) {
    auto r = call_entry({"-h", "a.ace", "b.sff"});
    EXPECT_TRUE(r.runs.empty());
    EXPECT_EQ(r.io.out, usage);
    EXPECT_EQ(r.status, 0);
}

TEST(DecisionTable, CountRightHelpAndVersionPrintsBoth) {
    auto r = call_entry({"-hv", "a.ace", "b.sff"});
    EXPECT_TRUE(r.runs.empty());
    EXPECT_EQ(r.io.out, usage + version);
}

TEST(DecisionTable, CountWrongNoFlagsPrintsBoth) {
    auto r = call_entry({"a.ace"});
    EXPECT_TRUE(r.runs.empty());
    EXPECT_EQ(r.io.out, usage + version);
    EXPECT_EQ(r.status, 0);
}

TEST(DecisionTable, CountWrongVersionOnlyPrintsVersion) {
    auto r = call_entry({"-v"});
    EXPECT_EQ(r.io.out, version);
    EXPECT_EQ(r.status, 0);
}

TEST(DecisionTable, CountWrongHelpPrintsBothWithoutVersionFlag) {
    auto r = call_entry({"-h", "a.ace"});
    EXPECT_EQ(r.io.out, usage + version);
}

TEST(DecisionTable, CountWrongHelpPrintsBothWithVersionFlag) {
    auto r = call_entry({"-h", "-v"});
    EXPECT_EQ(r.io.out, usage + version);
}

// Edge cases of the command line.

TEST(CommandLineEdge, NoArgumentsPrintsUsageThenVersion) {
    auto r = call_entry({});
    EXPECT_EQ(r.io.out, usage + version);
    EXPECT_EQ(r.io.err, "");
    EXPECT_EQ(r.status, 0);
}

TEST(CommandLineEdge, VersionAloneAndWithTwoFilesOpensNothing) {
    auto alone = call_entry({"-v"});
    EXPECT_EQ(alone.io.out, version);
    auto with_files = call_entry({"-v", "a.ace", "b.sff"});
    EXPECT_EQ(with_files.io.out, version);
    EXPECT_TRUE(with_files.runs.empty());
    EXPECT_EQ(with_files.status, 0);
}

TEST(CommandLineEdge, HelpWithTwoFilesPrintsUsageOnly) {
    auto r = call_entry({"-h", "a.ace", "b.sff"});
    EXPECT_EQ(r.io.out, usage);
    EXPECT_EQ(r.status, 0);
}

TEST(CommandLineEdge, UnknownSwitchWithTwoFilesPrintsUsageOnly) {
    auto r = call_entry({"-x", "a.ace", "b.sff"});
    EXPECT_EQ(r.io.err, "Unreconized switch: x\n");
    EXPECT_EQ(r.io.out, usage);
    EXPECT_EQ(r.status, 0);
    EXPECT_TRUE(r.runs.empty());
}

TEST(CommandLineEdge, OptionAfterFileNamesMakesThreePositionals) {
    auto r = call_entry({"a.ace", "b.sff", "-f"});
    EXPECT_EQ(r.io.out, usage + version);
    EXPECT_TRUE(r.runs.empty());
    EXPECT_EQ(r.status, 0);
}

TEST(CommandLineEdge, LoneDashIsTheAceFile) {
    auto r = call_entry({"-", "b.sff"});
    ASSERT_EQ(r.runs.size(), 1u);
    EXPECT_EQ(r.runs[0].ace_file, "-");
    EXPECT_EQ(r.runs[0].reads_file, "-.reads");
}

TEST(CommandLineRun, FlowgramFlagAndOutputNamesReachTheRun) {
    auto r = call_entry({"-f", "/data/run1/454Contigs.ace", "reads.sff"});
    ASSERT_EQ(r.runs.size(), 1u);
    EXPECT_TRUE(r.runs[0].flowgram);
    EXPECT_EQ(r.runs[0].reads_file, "/data/run1/454Contigs.reads");
    EXPECT_EQ(r.runs[0].index_file, "/data/run1/454Contigs.qdx");
}

TEST(CommandLineRun, RunStatusIsReturned) {
    const char* argv[] = {"Pelkrin", "a.ace", "b.sff", nullptr};
    int status = entry(3, argv, [](const run_request&) { return 1; });
    EXPECT_EQ(status, 1);
}

}  // namespace
}  // namespace pelkrin
