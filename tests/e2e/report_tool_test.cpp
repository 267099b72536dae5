// Pelkrin-view -m report on the command line: its arguments, its files, and
// what it says when it cannot write them.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

#include "files.h"
#include "program.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

program_result view(const std::vector<std::string>& args) {
    std::vector<std::string> argv = {PELKRIN_VIEW_BINARY};
    argv.insert(argv.end(), args.begin(), args.end());
    return run_program(argv);
}

std::string example_ace() { return source_file("example/example.ace").string(); }

void expect_usage_error(const std::vector<std::string>& args, const std::string& what) {
    const program_result r = view(args);
    EXPECT_EQ(r.status, 2) << what;
    EXPECT_EQ(r.out, "") << what;
    EXPECT_EQ(r.err.rfind("Pelkrin-view: " + what + "\nUsage: Pelkrin-view", 0), 0u) << r.err;
}

TEST(ReportTool, ArgumentsAreChecked) {
    expect_usage_error({"-m", "report", example_ace()}, "-m report needs the folder of the report: -o DIR");
    expect_usage_error({"-m", "report", "-o", "dir"}, "missing argument aceFile");
    expect_usage_error({"-m", "report", "-o", "dir", example_ace(), "Contig1"}, "unexpected argument Contig1");
    expect_usage_error({"-o", "dir", example_ace(), "Contig1"}, "option -o goes with -m report only");
    expect_usage_error({"-m", "report", "-o"}, "option -o needs a value");
}

TEST(ReportTool, WritesAPageAndADataFilePerContig) {
    const fs::path dir = scratch_dir();
    // A copy: scripts/example.sh writes Pelkrin's outputs beside the example in the source tree.
    fs::copy_file(source_file("example/example.ace"), dir / "example.ace");
    const program_result r = view({"-m", "report", "-o", (dir / "r").string(), (dir / "example.ace").string()});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(r.out, "Pelkrin-view: report of 3 contigs written to " + (dir / "r" / "index.html").string() + "\n");
    for (const char* name : {"index.html", "pelkrin-report.css", "pelkrin-report.js", "contig-1.html",
                             "contig-2.html", "contig-3.html"}) {
        EXPECT_TRUE(fs::is_regular_file(dir / "r" / name)) << name;
    }
    // Small contigs carry their data in the page. No reads file stands beside
    // the copy: the pages say so.
    EXPECT_FALSE(fs::exists(dir / "r" / "contig-1.js"));
    EXPECT_FALSE(fs::exists(dir / "r" / "contig-1-flowgrams-0.js"));
    EXPECT_NE(read_file(dir / "r" / "contig-1.html").find("run Pelkrin -f"), std::string::npos);
    // Each page but the last links to the next.
    EXPECT_NE(read_file(dir / "r" / "contig-2.html").find("\"contig-3.html\">next"), std::string::npos);
    EXPECT_EQ(read_file(dir / "r" / "contig-3.html").find(">next<"), std::string::npos);
}

TEST(ReportTool, AReadsFileWithoutFlowgramsIsNamed) {
    const fs::path dir = scratch_dir();
    for (const char* name : {"example.ace", "example.sff"}) fs::copy_file(source_file(std::string("example/") + name), dir / name);
    ASSERT_EQ(run_program({PELKRIN_BINARY, (dir / "example.ace").string(), (dir / "example.sff").string()}).status, 0);
    const program_result r = view({"-m", "report", "-o", (dir / "r").string(), (dir / "example.ace").string()});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(read_file(dir / "r" / "contig-2.html").find("Pelkrin wrote it without -f"), std::string::npos);
}

// A FIFO in the place of the location index would block the report for
// ever, and a device would never end: neither is read.
TEST(ReportTool, ALocationIndexThatIsNoRegularFileIsNotRead) {
    const fs::path dir = scratch_dir();
    fs::copy_file(source_file("example/example.ace"), dir / "example.ace");
    ASSERT_EQ(::mkfifo((dir / "example.qdx").c_str(), 0600), 0);
    run_limits limits;
    limits.seconds = 60;
    const program_result r = run_program(
        {PELKRIN_VIEW_BINARY, "-m", "report", "-o", (dir / "r").string(), (dir / "example.ace").string()}, {}, limits);
    EXPECT_FALSE(r.timed_out);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(read_file(dir / "r" / "contig-1.html").find("example.qdx is not a regular file that can be read"),
              std::string::npos);
}

TEST(ReportTool, ACompletionMessageThatCannotBeWrittenIsAnError) {
    const fs::path dir = scratch_dir();
    run_limits limits;
    limits.stdout_path = "/dev/full";
    const program_result r =
        run_program({PELKRIN_VIEW_BINARY, "-m", "report", "-o", (dir / "r").string(), example_ace()}, {}, limits);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "Pelkrin-view: can not write standard output\n");
}

TEST(ReportTool, AFolderThatCannotBeMadeIsAnError) {
    const fs::path dir = scratch_dir();
    write_file(dir / "file", "x");
    const program_result r = view({"-m", "report", "-o", (dir / "file" / "r").string(), example_ace()});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Pelkrin-view: can not create folder " + (dir / "file" / "r").string() + "\n");
}

TEST(ReportTool, TheAceReadersOwnErrorsStandAsTheyAre) {
    const fs::path dir = scratch_dir();
    write_file(dir / "bad.ace", "XX\n");
    const program_result report = view({"-m", "report", "-o", (dir / "r").string(), (dir / "bad.ace").string()});
    const program_result align = view({(dir / "bad.ace").string(), "Contig1"});
    EXPECT_EQ(report.status, align.status);
    EXPECT_EQ(report.err, align.err);
    EXPECT_FALSE(fs::exists(dir / "r"));
}

// An ACE file whose fifth contig cannot be read: the report ends with the
// reader's error, every contig before it has its page and no later one has,
// the same every time; the last page written links to no next page, and the
// index lists the pages written, also over an earlier report of more contigs.
TEST(ReportTool, AContigThatCannotBeReadEndsTheReportAfterThePagesBeforeIt) {
    const fs::path dir = scratch_dir();
    const std::string example = read_file(example_ace());
    const std::size_t begin = example.find("CO ");
    const std::string first = example.substr(begin, example.find("\nCO ", begin) + 1 - begin);
    std::string text = "AS 9 0\n\n";
    for (int i = 0; i < 4; ++i) text += first;
    std::string bad = first;
    bad.replace(bad.find("BQ"), 2, "ZZ");
    text += bad + first + first;
    write_file(dir / "bad.ace", text);
    std::string good = text;
    good.replace(good.find("ZZ"), 2, "BQ");
    write_file(dir / "good.ace", good);
    for (int run = 0; run < 10; ++run) {
        const fs::path out = dir / ("r" + std::to_string(run));
        if (run % 2 == 1) {
            ASSERT_EQ(view({"-m", "report", "-o", out.string(), (dir / "good.ace").string()}).status, 0);
            ASSERT_TRUE(fs::exists(out / "contig-7.html"));
        }
        const program_result r = view({"-m", "report", "-o", out.string(), (dir / "bad.ace").string()});
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "Error: tag 'ZZ' should be not in the ACE file!\n");
        for (int page = 1; page <= 4; ++page) {
            EXPECT_TRUE(fs::exists(out / ("contig-" + std::to_string(page) + ".html"))) << run << " " << page;
        }
        if (run % 2 == 0) {
            for (int page = 5; page <= 7; ++page) {
                EXPECT_FALSE(fs::exists(out / ("contig-" + std::to_string(page) + ".html"))) << run << " " << page;
            }
        }
        EXPECT_EQ(read_file(out / "contig-4.html").find(">next<"), std::string::npos);
        const std::string index = read_file(out / "index.html");
        EXPECT_NE(index.find("contig-4.html"), std::string::npos) << run;
        EXPECT_EQ(index.find("contig-5.html"), std::string::npos) << run;
    }
}

}  // namespace
}  // namespace pelkrin::test
