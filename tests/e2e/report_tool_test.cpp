// Pelkrin-view -m report on the command line: its arguments, its files, and
// what it says when it cannot write them.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "files.h"
#include "folder_state.h"
#include "missing_read_fixture.h"
#include "program.h"
#include "run_fixture.h"

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

// ---- An ACE file that the reader cannot read to its end

// A report made in `dir` (the working folder, so that the pages name the ACE
// file as `ace` alone) into `dir/out`.
program_result report_in(const fs::path& dir, const std::string& ace, const std::string& out,
                         const run_limits& limits = {}) {
    return run_program({PELKRIN_VIEW_BINARY, "-m", "report", "-o", out, ace}, dir, limits);
}

// The report's files that the index lists, and the contig pages that stand in
// the folder: a whole report lists every page it holds.
std::vector<std::string> listed_pages(const fs::path& report) {
    std::vector<std::string> pages;
    const std::string index = read_file(report / "index.html");
    for (std::size_t at = index.find("<a href=\""); at != std::string::npos; at = index.find("<a href=\"", at + 1)) {
        const std::size_t from = at + 9;
        pages.push_back(index.substr(from, index.find('"', from) - from));
    }
    return pages;
}

// An ACE file of the example's contigs with the given changes to its text.
fs::path changed_example(const fs::path& dir, const std::vector<std::pair<std::string, std::string>>& changes) {
    std::string text = read_file(example_ace());
    for (const auto& [from, to] : changes) {
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        if (at != std::string::npos) text.replace(at, from.size(), to);
    }
    write_file(dir / "asm.ace", text);
    return dir / "asm.ace";
}

struct unread_case {
    const char* what;
    std::vector<std::pair<std::string, std::string>> changes;
    std::size_t pages;
    std::string message;  // after "Error: the ACE file asm.ace "
};

// The reader ends early without an error of its own: the contigs before the
// place get their pages, and Pelkrin's message for the case follows.
TEST(ReportTool, AnAceFileTheReaderEndsEarlyIsToldAsPelkrinTellsIt) {
    const std::vector<unread_case> cases = {
        {"the last contig announces more reads than its AF lines", {{"CO Contig3 212 17", "CO Contig3 212 20"}}, 2,
         "ends inside contig Contig3"},
        {"the AS line announces no contig", {{"AS 3 57", "AS 0 0"}}, 0,
         "holds contigs that its AS line does not announce"},
        {"the AS line cannot be read", {{"AS 3 57", "AS three 57"}}, 0,
         "holds contigs that its AS line does not announce"},
    };
    for (const unread_case& c : cases) {
        SCOPED_TRACE(c.what);
        const fs::path dir = scratch_dir();
        changed_example(dir, c.changes);
        const program_result r = report_in(dir, "asm.ace", "r");
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err, "Error: the ACE file asm.ace " + c.message + "\n");
        EXPECT_EQ(listed_pages(dir / "r").size(), c.pages);
        // The pages, the index, the style and the script.
        EXPECT_EQ(folder_state(dir / "r").size(), c.pages + 3);
        fs::copy_file(source_file("example/example.sff"), dir / "reads.sff");
        const program_result pelkrin = run_program({PELKRIN_BINARY, "asm.ace", "reads.sff"}, dir);
        EXPECT_EQ(r.err, pelkrin.err);
    }
}

// A file edited on Windows: no blank line ends its first contig.
TEST(ReportTool, AnAceFileWithCrLfLineEndsIsTold) {
    const fs::path dir = scratch_dir();
    std::string text;
    for (const char c : read_file(example_ace())) {
        if (c == '\n') text += '\r';
        text += c;
    }
    write_file(dir / "asm.ace", text);
    const program_result r = report_in(dir, "asm.ace", "r");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, "Error: the ACE file asm.ace ends inside contig Contig1 (its lines end with CR LF)\n");
    EXPECT_TRUE(listed_pages(dir / "r").empty());
    EXPECT_FALSE(fs::exists(dir / "r" / "contig-1.html"));
}

// ---- A read that the SFF file does not hold

// Pelkrin writes an entry for a read the SFF file lacks from the start of that
// file; the report does not draw it as the read's flowgram.
TEST(ReportTool, AReadTheSffFileDoesNotHoldHasNoFlowgram) {
    const fs::path dir = scratch_dir();
    write_file(dir / "asm.ace", assembly_with_a_missing_read());
    write_file(dir / "reads.sff", build_sff(worked_example_sff()).bytes);
    ASSERT_EQ(run_program({PELKRIN_BINARY, "-f", "asm.ace", "reads.sff"}, dir).status, 0);
    // Pelkrin writes an entry for it, all the same.
    EXPECT_NE(read_file(dir / "asm.reads").find("zabsent\t1\n0\n-1\n"), std::string::npos);
    const program_result r = report_in(dir, "asm.ace", "r");
    EXPECT_EQ(r.status, 0) << r.err;
    // The reads, each with its flowgram file: zabsent in none.
    const std::string page = read_file(dir / "r" / "contig-2.html");
    const std::string absent = "[\"zabsent\",1,4,\"TCAG\",-2]";
    EXPECT_NE(page.find(absent), std::string::npos) << page;
    EXPECT_NE(page.find("[\"readC\",2,2,\"ca\",0]"), std::string::npos);
    EXPECT_EQ(page.find("[\"zabsent\",\""), std::string::npos) << "no flowgram entry for it";
    EXPECT_NE(page.find("[\"readC\",\"32,31\",\"2,5\","), std::string::npos);
    const std::string first = read_file(dir / "r" / "contig-1.html");
    EXPECT_NE(first.find("[\"readA\",1,6,\"TC*TTC\",0]"), std::string::npos);
    EXPECT_NE(first.find("[\"readB\",6,3,\"CCT\",0]"), std::string::npos);
    EXPECT_NE(first.find("[\"readA\",\"35,35,33,33,30\",\"0,2,4,4,6\",\"101,2,98,4,197,0,103,5\"]"), std::string::npos);
    EXPECT_NE(first.find("[\"readB\",\"40,38,38\",\"1,3,3\","), std::string::npos);

    // With the read in the SFF file, the pages differ in that read alone.
    sff_fixture f = worked_example_sff();
    f.reads.push_back(read_from_flows("zabsent", {0, 2, 5, 7}, {20, 21, 22, 23}, 8));
    write_file(dir / "reads.sff", build_sff(f).bytes);
    ASSERT_EQ(run_program({PELKRIN_BINARY, "-f", "asm.ace", "reads.sff"}, dir).status, 0);
    ASSERT_EQ(report_in(dir, "asm.ace", "all").status, 0);
    std::string all = read_file(dir / "all" / "contig-2.html");
    const std::string held = ",[\"zabsent\",\"20,21,22,23\",\"0,2,5,7\",\"100,0,100,0,0,100,0,100\"]";
    ASSERT_NE(all.find(held), std::string::npos) << all;
    all.erase(all.find(held), held.size());
    const std::string placed = "[\"zabsent\",1,4,\"TCAG\",0]";
    ASSERT_NE(all.find(placed), std::string::npos);
    all.replace(all.find(placed), placed.size(), absent);
    EXPECT_EQ(page, all);
    EXPECT_EQ(first, read_file(dir / "all" / "contig-1.html"));
}

// Every read of the example is in its SFF file: each is placed in a flowgram
// file, none as not in the SFF file.
TEST(ReportTool, EveryReadOfTheExampleHasItsFlowgram) {
    const fs::path dir = scratch_dir();
    for (const char* name : {"example.ace", "example.sff"}) fs::copy_file(source_file(std::string("example/") + name), dir / name);
    ASSERT_EQ(run_program({PELKRIN_BINARY, "-f", "example.ace", "example.sff"}, dir).status, 0);
    ASSERT_EQ(report_in(dir, "example.ace", "r").status, 0);
    std::size_t reads = 0;
    for (const char* page : {"contig-1.html", "contig-2.html", "contig-3.html"}) {
        const std::string text = read_file(dir / "r" / page);
        EXPECT_EQ(text.find(",-2]"), std::string::npos) << page;
        EXPECT_EQ(text.find(",-1]"), std::string::npos) << page;
        for (std::size_t at = text.find("[\"E3MFGYR"); at != std::string::npos; at = text.find("[\"E3MFGYR", at + 1)) {
            if (text.compare(text.find(',', at), 2, ",\"") == 0) ++reads;  // a flowgram entry: its second field is text
        }
    }
    EXPECT_EQ(reads, 57u);
}

}  // namespace
}  // namespace pelkrin::test
