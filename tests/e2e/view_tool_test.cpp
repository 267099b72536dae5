// Pelkrin-view run as its own process: every mode on real assemblies,
// compared byte for byte with expected outputs, and every error.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <ostream>

#include "files.h"
#include "program.h"

namespace pelkrin::test {
namespace {

std::string view_binary() { return PELKRIN_VIEW_BINARY; }

program_result view(std::vector<std::string> args, const std::filesystem::path& cwd = {}) {
    args.insert(args.begin(), view_binary());
    return run_program(args, cwd);
}

std::string expected(const std::string& name) { return read_file(source_file("tests/e2e/expected/view/" + name)); }

std::string example_ace() { return source_file("example/example.ace").string(); }
std::string contig1_ace() { return data_file("contig1.ace").string(); }
std::string consed_ace() { return data_file("consed_sample.ace").string(); }

struct view_case {
    std::string name;
    std::string file;     // ex, c1 or cs
    std::string contig;
    std::vector<std::string> options;
};

// Names the case in test listings instead of dumping its bytes.
void PrintTo(const view_case& c, std::ostream* os) { *os << c.name; }

std::string file_of(const std::string& key) {
    if (key == "ex") return example_ace();
    if (key == "c1") return contig1_ace();
    return consed_ace();
}

std::vector<view_case> all_runs() {
    std::vector<view_case> runs;
    const std::vector<std::string> span_modes = {"align", "align-html", "flow", "flow-html", "flow-html-space",
                                                 "flow-table", "seq-table"};
    const std::vector<std::string> whole_modes = {"contig", "contig-html", "flow-consensus", "layout"};
    struct span {
        std::string tag, file, contig, start, width;
    };
    const std::vector<span> spans = {
        {"ex1", "ex", "Contig1", "101", "100"},   // inside the contig
        {"ex1-end", "ex", "Contig1", "151", "100"},  // its last read runs past the consensus
        {"c1-2", "c1", "Contig2", "1101", "900"},
        {"cs", "cs", "Contig1", "501", "600"},
    };
    for (const span& s : spans) {
        for (const std::string& m : span_modes) {
            runs.push_back({s.tag + "-" + m, s.file, s.contig, {"-m", m, "-s", s.start, "-w", s.width}});
        }
    }
    for (const auto& [tag, file, contig] : std::vector<std::array<std::string, 3>>{
             {"ex1", "ex", "Contig1"}, {"c1-1", "c1", "Contig1"}, {"c1-2", "c1", "Contig2"}, {"cs", "cs", "Contig1"}}) {
        for (const std::string& m : whole_modes) {
            if (tag == "c1-2" && m == "contig-html") continue;  // a quarter megabyte; the plain one is there
            runs.push_back({tag + "-" + m, file, contig, {"-m", m}});
        }
    }
    // Defaults: mode align, the whole consensus as the span.
    runs.push_back({"ex1-default", "ex", "Contig1", {}});
    runs.push_back({"ex2-default", "ex", "Contig2", {}});
    runs.push_back({"ex3-flow-default", "ex", "Contig3", {"-m", "flow"}});
    runs.push_back({"ex3-seq-table-start", "ex", "Contig3", {"-m", "seq-table", "-w", "120"}});
    // A span starting right after the consensus.
    runs.push_back({"ex1-seq-table-after", "ex", "Contig1", {"-m", "seq-table", "-s", "251", "-w", "5"}});
    runs.push_back({"ex1-flow-table-after", "ex", "Contig1", {"-m", "flow-table", "-s", "300", "-w", "5"}});
    runs.push_back({"ex1-align-after", "ex", "Contig1", {"-s", "251"}});
    // Pages for a browser.
    for (const std::string m : {"align-html", "flow-html", "flow-html-space"}) {
        runs.push_back({"ex1-" + m + "-page", "ex", "Contig1", {"-m", m, "-s", "101", "-w", "100", "-p"}});
    }
    runs.push_back({"ex1-contig-html-page", "ex", "Contig1", {"-m", "contig-html", "-p"}});
    return runs;
}

class ViewToolModes : public ::testing::TestWithParam<view_case> {};

TEST_P(ViewToolModes, OutputMatchesTheExpectedFile) {
    const view_case& c = GetParam();
    std::vector<std::string> args = c.options;
    args.push_back(file_of(c.file));
    args.push_back(c.contig);
    const program_result r = view(args);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, expected(c.name + ".out"));
}

INSTANTIATE_TEST_SUITE_P(All, ViewToolModes, ::testing::ValuesIn(all_runs()),
                         [](const ::testing::TestParamInfo<view_case>& info) {
                             std::string name = info.param.name;
                             for (char& c : name) {
                                 if (c == '-') c = '_';
                             }
                             return name;
                         });

// Runs whose output another run above already pins down: the two must agree.
void expect_same_output(const std::vector<std::string>& options, const std::vector<std::string>& same_as,
                        const std::string& ace, const std::string& contig) {
    std::vector<std::string> args = options, other = same_as;
    for (auto* a : {&args, &other}) {
        a->push_back(ace);
        a->push_back(contig);
    }
    const program_result r = view(args);
    const program_result s = view(other);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(s.status, 0);
    EXPECT_NE(r.out, "");
    EXPECT_EQ(r.out, s.out);
}

// The default span is the whole consensus, so where no read runs past the
// consensus (Contig1 of contig1.ace) the default mode draws what -m contig draws.
TEST(ViewTool, DefaultSpanDrawsWhatContigModeDrawsWhenNoReadRunsPastTheConsensus) {
    expect_same_output({}, {"-m", "contig"}, contig1_ace(), "Contig1");
}

// -p makes a page of the HTML modes only; the plain alignment ignores it.
TEST(ViewTool, PageOptionIsIgnoredByThePlainAlignment) {
    expect_same_output({"-s", "101", "-w", "100", "-p"}, {"-m", "align", "-s", "101", "-w", "100"}, example_ace(),
                       "Contig1");
}

// ---- Options, colours and read lists -------------------------------------

TEST(ViewTool, HelpPrintsTheUsageOnStandardOutput) {
    for (const char* flag : {"-h", "--help"}) {
        const program_result r = view({flag});
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.out, expected("usage.txt"));
        EXPECT_EQ(r.err, "");
    }
    // Help answers before the names are looked at.
    const program_result r = view({"no.ace", "-h", "extra"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, expected("usage.txt"));
}

TEST(ViewTool, VersionPrintsTheProjectsVersion) {
    const program_result r = view({"--version"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "Pelkrin-view (Pelkrin) " PELKRIN_VERSION "\n");
    EXPECT_EQ(r.err, "");
    // As -h, it answers before the names are looked at.
    EXPECT_EQ(view({"no.ace", "--version", "extra"}).out, r.out);
}

TEST(ViewTool, ColourFileColoursEveryHtmlMode) {
    const auto dir = scratch_dir();
    write_file(dir / "colours.txt", "A\t\"#00aa00\"\nC\t\"#0000ff\"\n\n*\t\"#999999\"\n");
    const program_result r =
        view({"-m", "align-html", "-c", (dir / "colours.txt").string(), "-s", "76", "-w", "10", example_ace(), "Contig1"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, expected("ex1-align-html-colours.out"));
}

TEST(ViewTool, ReadListHoldsTheDrawnReadsOnePerLine) {
    const auto dir = scratch_dir();
    const auto reads = dir / "reads.txt";
    const program_result r = view({"-r", reads.string(), "-s", "101", "-w", "100", example_ace(), "Contig1"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, expected("ex1-align.out"));
    EXPECT_EQ(read_file(reads), expected("ex1-align.reads"));
}

TEST(ViewTool, ReadListOfEverySpanRenderer) {
    const auto dir = scratch_dir();
    for (const char* mode : {"align", "align-html", "flow", "flow-html", "flow-html-space"}) {
        const auto reads = dir / (std::string(mode) + ".txt");
        const program_result r = view({"-m", mode, "-r", reads.string(), "-s", "101", "-w", "100", example_ace(),
                                       "Contig1"});
        EXPECT_EQ(r.status, 0) << mode;
        EXPECT_EQ(read_file(reads), expected("ex1-align.reads")) << mode;
    }
}

TEST(ViewTool, ReadListIsCreatedEmptyForModesWithoutOne) {
    const auto dir = scratch_dir();
    for (const char* mode : {"contig", "contig-html", "flow-table", "seq-table", "flow-consensus", "layout"}) {
        const auto reads = dir / (std::string(mode) + ".txt");
        write_file(reads, "old contents\n");
        const program_result r = view({"-m", mode, "-r", reads.string(), example_ace(), "Contig2"});
        EXPECT_EQ(r.status, 0) << mode;
        EXPECT_EQ(read_file(reads), "") << mode;
    }
}

TEST(ViewTool, AllModesOnAContigWithoutConsensus) {
    const auto dir = scratch_dir();
    write_file(dir / "bare.ace",
               "AS 1 2\n\nCO bare 0 2 1 U\n\nBQ\n\nAF r1 U 1\nAF r2 U -2\nBS 1 1 r1\n\n"
               "RD r1 4 0 0\nNCGT\n\nQA 1 4 1 4\nDS x\n\nRD r2 3 0 0\nAC*\n\nQA 1 3 1 3\nDS x\n");
    const std::string ace = (dir / "bare.ace").string();
    const std::vector<std::pair<std::string, std::string>> outputs = {
        {"align", "\n"},
        {"align-html", "\n"},
        {"flow", " T\n"},
        {"flow-html", "<font color=red>T</font>\n"},
        {"flow-html-space", "<font color=red>T</font>\n"},
        {"contig", "\n"},
        {"contig-html", "\n"},
        {"flow-table", "C\t0\n"},
        {"seq-table", ""},
        {"flow-consensus", "flow_consensus\tT\n"},
        {"layout", "stats\t4\t3\t3.0\nids\n"},
    };
    for (const auto& [mode, out] : outputs) {
        const program_result r = view({"-m", mode, ace, "bare"});
        EXPECT_EQ(r.status, 0) << mode;
        EXPECT_EQ(r.err, "") << mode;
        EXPECT_EQ(r.out, out) << mode;
    }
}

TEST(ViewTool, EveryModeAtTheEdgesOfEveryContigEndsCleanly) {
    const std::vector<std::pair<std::string, std::string>> contigs = {
        {example_ace(), "Contig1"}, {example_ace(), "Contig3"}, {contig1_ace(), "Contig1"},
        {contig1_ace(), "Contig2"}, {consed_ace(), "Contig1"}};
    const std::vector<std::pair<std::string, std::string>> spans = {
        {"1", "1"}, {"250", "3"}, {"856", "1"}, {"1476", "2"}, {"3297", "9"}, {"2147483647", "1"}};
    for (const auto& [ace, name] : contigs) {
        for (const char* mode : {"align", "align-html", "flow", "flow-html", "flow-html-space", "contig",
                                 "contig-html", "flow-table", "seq-table", "flow-consensus", "layout"}) {
            for (const auto& [start, width] : spans) {
                const program_result r = view({"-m", mode, "-s", start, "-w", width, ace, name});
                const std::string where = name + " " + mode + " " + start + " " + width;
                if (r.status == 1) {
                    // Only a column table starting two or more positions after the consensus.
                    EXPECT_EQ(r.err, "Pelkrin-view: the span cannot be cut from contig " + name + "\n") << where;
                    EXPECT_EQ(std::string(mode), "seq-table") << where;
                } else {
                    EXPECT_EQ(r.status, 0) << where;
                    EXPECT_EQ(r.err, "") << where;
                }
            }
        }
    }
}

// ---- Errors -------------------------------------------------------------

void expect_usage_error(const std::vector<std::string>& args, const std::string& what) {
    const program_result r = view(args);
    EXPECT_EQ(r.status, 2) << what;
    EXPECT_EQ(r.out, "") << what;
    EXPECT_EQ(r.err, "Pelkrin-view: " + what + "\n" + expected("usage.txt"));
}

TEST(ViewTool, UnknownOptionIsAUsageError) {
    expect_usage_error({"-x", example_ace(), "Contig1"}, "unknown option -x");
    expect_usage_error({"--width", "3", example_ace(), "Contig1"}, "unknown option --width");
}

TEST(ViewTool, MissingOrExtraArgumentsAreUsageErrors) {
    expect_usage_error({}, "missing arguments aceFile and contigName");
    expect_usage_error({example_ace()}, "missing argument contigName");
    expect_usage_error({example_ace(), "Contig1", "Contig2"}, "unexpected argument Contig2");
    expect_usage_error({example_ace(), "Contig1", "-m"}, "option -m needs a value");
}

TEST(ViewTool, UnknownModeIsAUsageError) {
    expect_usage_error({"-m", "tree", example_ace(), "Contig1"}, "unknown mode tree");
}

TEST(ViewTool, StartOrWidthNotAnIntegerFromOneIsAUsageError) {
    expect_usage_error({"-s", "0", example_ace(), "Contig1"}, "START must be an integer from 1 to 2147483647: 0");
    expect_usage_error({"-s", "x1", example_ace(), "Contig1"}, "START must be an integer from 1 to 2147483647: x1");
    expect_usage_error({"-w", "-4", example_ace(), "Contig1"}, "WIDTH must be an integer from 1 to 2147483647: -4");
    expect_usage_error({"-w", "2147483648", example_ace(), "Contig1"},
                       "WIDTH must be an integer from 1 to 2147483647: 2147483648");
    expect_usage_error({"-s", "2", "-w", "2147483647", example_ace(), "Contig1"},
                       "START + WIDTH - 1 must not exceed 2147483647");
}

TEST(ViewTool, LargestSpanIsAccepted) {
    const program_result r = view({"-s", "2147483647", "-w", "1", example_ace(), "Contig1"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "\n");
    const program_result t = view({"-m", "flow-table", "-s", "1", "-w", "2147483647", example_ace(), "Contig1"});
    EXPECT_EQ(t.status, 0);
    EXPECT_EQ(t.err, "");
}

TEST(ViewTool, ContigNotFound) {
    const program_result r = view({example_ace(), "Contig9"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Pelkrin-view: contig Contig9 not found in " + example_ace() + "\n");
}

TEST(ViewTool, AceReaderReportsItsOwnErrors) {
    const auto dir = scratch_dir();
    const std::string missing = (dir / "missing.ace").string();
    program_result r = view({missing, "Contig1"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "The file: " + missing + " can not be opened\n");

    write_file(dir / "not.ace", "CO x\n");
    r = view({(dir / "not.ace").string(), "x"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Error: the input file " + (dir / "not.ace").string() + " does not like an ACE file\n");
}

TEST(ViewTool, ColourFileThatCannotBeRead) {
    const auto dir = scratch_dir();
    const std::string missing = (dir / "none.txt").string();
    const program_result r = view({"-m", "layout", "-c", missing, example_ace(), "Contig1"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Pelkrin-view: can not read colour file " + missing + "\n");
}

TEST(ViewTool, ColourFileWithABadLine) {
    const auto dir = scratch_dir();
    const std::string colours = (dir / "colours.txt").string();
    write_file(colours, "A\tgreen\nC blue\n");
    const program_result r = view({"-c", colours, example_ace(), "Contig1"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Pelkrin-view: colour file " + colours + " line 2: not a character, a tab and a colour\n");
}

TEST(ViewTool, ReadListThatCannotBeWritten) {
    const auto dir = scratch_dir();
    const std::string reads = (dir / "no-such-folder" / "reads.txt").string();
    const program_result r = view({"-r", reads, example_ace(), "Contig1"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Pelkrin-view: can not open file " + reads + "\n");
}

TEST(ViewTool, SpanThatCannotBeCut) {
    // The consensus has 250 positions: a column table from 252 on would
    // have a negative number of columns.
    const auto dir = scratch_dir();
    const program_result r = view({"-m", "seq-table", "-s", "252", "-r", (dir / "r.txt").string(), example_ace(),
                                   "Contig1"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Pelkrin-view: the span cannot be cut from contig Contig1\n");
    EXPECT_EQ(read_file(dir / "r.txt"), "");
}

// ---- Order of checks ------------------------------------------------------

TEST(ViewTool, UsageErrorComesBeforeTheColourFile) {
    const auto dir = scratch_dir();
    expect_usage_error({"-c", (dir / "none.txt").string(), "-m", "tree", example_ace(), "Contig1"},
                       "unknown mode tree");
}

TEST(ViewTool, ColourFileComesBeforeTheAceFile) {
    const auto dir = scratch_dir();
    const std::string colours = (dir / "none.txt").string();
    const program_result r = view({"-c", colours, (dir / "missing.ace").string(), "Contig1"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Pelkrin-view: can not read colour file " + colours + "\n");
}

TEST(ViewTool, ColourFileIsCheckedInEveryMode) {
    const auto dir = scratch_dir();
    const std::string colours = (dir / "bad.txt").string();
    write_file(colours, "\n\nAB\n");
    for (const char* mode : {"align", "contig", "flow-table", "seq-table", "flow-consensus", "layout"}) {
        const program_result r = view({"-m", mode, "-c", colours, example_ace(), "Contig1"});
        EXPECT_EQ(r.status, 1) << mode;
        EXPECT_EQ(r.out, "") << mode;
        EXPECT_EQ(r.err, "Pelkrin-view: colour file " + colours + " line 3: not a character, a tab and a colour\n");
    }
}

TEST(ViewTool, ContigComesBeforeTheReadList) {
    const auto dir = scratch_dir();
    const std::string reads = (dir / "no-such-folder" / "reads.txt").string();
    const program_result r = view({"-r", reads, example_ace(), "Contig9"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Pelkrin-view: contig Contig9 not found in " + example_ace() + "\n");
}

TEST(ViewTool, ReadListComesBeforeTheSpan) {
    const auto dir = scratch_dir();
    const std::string reads = (dir / "no-such-folder" / "reads.txt").string();
    const program_result r = view({"-m", "seq-table", "-s", "300", "-r", reads, example_ace(), "Contig1"});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Pelkrin-view: can not open file " + reads + "\n");
}

TEST(ViewTool, NothingIsCreatedBeforeTheContigIsFound) {
    const auto dir = scratch_dir();
    const auto reads = dir / "reads.txt";
    view({"-r", reads.string(), example_ace(), "Contig9"});
    EXPECT_FALSE(std::filesystem::exists(reads));
}

TEST(ViewTool, ReadListNamingTheAceFileIsRefused) {
    const auto dir = scratch_dir();
    const auto ace = dir / "asm.ace";
    write_file(ace, read_file(example_ace()));
    std::filesystem::create_symlink("asm.ace", dir / "reads.txt");
    const program_result r = view({"-r", "reads.txt", "asm.ace", "Contig1"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Pelkrin-view: Error: output file reads.txt would overwrite input file asm.ace\n");
    EXPECT_EQ(read_file(ace), read_file(example_ace()));
}

TEST(ViewTool, ReadListNamingTheColourFileIsRefused) {
    const auto dir = scratch_dir();
    write_file(dir / "colours.txt", "A\tred\n");
    std::filesystem::create_hard_link(dir / "colours.txt", dir / "reads.txt");
    const program_result r =
        view({"-m", "align-html", "-c", "colours.txt", "-r", "reads.txt", example_ace(), "Contig1"}, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Pelkrin-view: Error: output file reads.txt would overwrite input file colours.txt\n");
    EXPECT_EQ(read_file(dir / "colours.txt"), "A\tred\n");
}

}  // namespace
}  // namespace pelkrin::test
