// Pelkrin-view -m report on the command line: its arguments, its files, and
// what it says when it cannot write them.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "background_program.h"
#include "big_contig.h"
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
    EXPECT_EQ(r.err, "Pelkrin-view: can not create folder " + (dir / "file" / "r").string() + ": Not a directory\n");
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
// index lists the pages written, also over an earlier report of more contigs,
// whose other pages are gone.
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
        for (int page = 5; page <= 7; ++page) {
            EXPECT_FALSE(fs::exists(out / ("contig-" + std::to_string(page) + ".html"))) << run << " " << page;
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

// The state of a report of `pages` contig pages, as written from the whole
// report `whole` (whose pages have the same names): the last page links to no
// next one.
std::map<std::string, std::string> first_pages_of(const std::map<std::string, std::string>& whole, std::size_t pages) {
    std::map<std::string, std::string> state;
    for (const auto& [leaf, bytes] : whole) {
        if (leaf.rfind("contig-", 0) != 0) continue;
        const std::size_t n = std::stoul(leaf.substr(7));
        if (n > pages) continue;
        std::string page = bytes;
        const std::string next = " · <a href=\"contig-" + std::to_string(n + 1) + ".html\">next</a>";
        if (n == pages && page.find(next) != std::string::npos) page.erase(page.find(next), next.size());
        state[leaf] = page;
    }
    return state;
}

// What a report of the first `pages` contigs of the example holds, made
// over an earlier report of the whole example (`whole`, its state): the
// earlier report's style, script and pages up to `pages` (the last linking
// to no next page), an index listing those, and nothing else.
void expect_first_pages(const fs::path& report, const std::map<std::string, std::string>& whole, std::size_t pages) {
    std::map<std::string, std::string> state = folder_state(report);
    EXPECT_EQ(state["pelkrin-report.js"], whole.at("pelkrin-report.js"));
    EXPECT_EQ(state["pelkrin-report.css"], whole.at("pelkrin-report.css"));
    EXPECT_EQ(listed_pages(report).size(), pages);
    for (const char* leaf : {"index.html", "pelkrin-report.js", "pelkrin-report.css"}) state.erase(leaf);
    EXPECT_EQ(state, first_pages_of(whole, pages)) << state_difference(first_pages_of(whole, pages), state);
}

// The ACE file cut at line starts over the whole file (each contig's first and
// last lines among them): the report ends as Pelkrin ends on the same file,
// with its status and its message, after the page of every contig Pelkrin
// wrote, each as the whole file's report has it; an earlier report of the
// whole file leaves none of its other pages.
TEST(ReportTool, AnAceFileCutShortEndsTheReportAsPelkrinEndsItsRun) {
    const fs::path dir = scratch_dir();
    const std::string text = read_file(example_ace());
    fs::copy_file(source_file("example/example.sff"), dir / "reads.sff");
    write_file(dir / "asm.ace", text);
    ASSERT_EQ(report_in(dir, "asm.ace", "whole").status, 0);
    const std::map<std::string, std::string> whole = folder_state(dir / "whole");

    std::vector<std::size_t> starts;
    for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) starts.push_back(at);
    std::vector<std::size_t> cuts = {0, text.size()};
    for (std::size_t i = 0; i < starts.size(); ++i) {
        const bool co = text.compare(starts[i], 3, "CO ") == 0;
        const bool near_co = (i + 1 < starts.size() && text.compare(starts[i + 1], 3, "CO ") == 0);
        if (i % 9 == 0 || co || near_co || i + 3 >= starts.size()) cuts.push_back(starts[i]);
    }
    std::size_t failed = 0;
    for (const std::size_t cut : cuts) {
        SCOPED_TRACE("cut at byte " + std::to_string(cut));
        write_file(dir / "asm.ace", text.substr(0, cut));
        const program_result pelkrin = run_program({PELKRIN_BINARY, "asm.ace", "reads.sff"}, dir);
        // Pelkrin's outputs stay out of the report: the whole file's had none.
        const std::string index = fs::exists(dir / "asm.qdx") ? read_file(dir / "asm.qdx") : "";
        fs::remove(dir / "asm.qdx");
        fs::remove(dir / "asm.reads");
        const std::size_t written = static_cast<std::size_t>(std::count(index.begin(), index.end(), '\n'));
        fs::remove_all(dir / "r");
        fs::copy(dir / "whole", dir / "r");
        const program_result r = report_in(dir, "asm.ace", "r");
        EXPECT_EQ(r.status, pelkrin.status);
        if (pelkrin.status == 0) {
            EXPECT_EQ(r.err, "");
            EXPECT_EQ(r.out, "Pelkrin-view: report of " + std::to_string(written) + " contigs written to r/index.html\n");
        } else {
            ++failed;
            EXPECT_EQ(r.err, pelkrin.err);
            EXPECT_EQ(r.out, "");
        }
        if (cut == 0) {  // not an ACE file: nothing is written
            EXPECT_EQ(folder_state(dir / "r"), whole);
            continue;
        }
        expect_first_pages(dir / "r", whole, written);
    }
    EXPECT_GT(failed, cuts.size() / 2);
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
// place get their pages, over an earlier report of the whole example, and
// Pelkrin's message for the case follows.
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
        fs::copy_file(example_ace(), dir / "asm.ace");
        ASSERT_EQ(report_in(dir, "asm.ace", "r").status, 0);
        const std::map<std::string, std::string> whole = folder_state(dir / "r");
        changed_example(dir, c.changes);
        const program_result r = report_in(dir, "asm.ace", "r");
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err, "Error: the ACE file asm.ace " + c.message + "\n");
        expect_first_pages(dir / "r", whole, c.pages);
        fs::copy_file(source_file("example/example.sff"), dir / "reads.sff");
        const program_result pelkrin = run_program({PELKRIN_BINARY, "asm.ace", "reads.sff"}, dir);
        EXPECT_EQ(r.err, pelkrin.err);
    }
}

// A file edited on Windows: no blank line ends its first contig.
TEST(ReportTool, AnAceFileWithCrLfLineEndsIsTold) {
    const fs::path dir = scratch_dir();
    fs::copy_file(example_ace(), dir / "asm.ace");
    ASSERT_EQ(report_in(dir, "asm.ace", "r").status, 0);
    const std::map<std::string, std::string> whole = folder_state(dir / "r");
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
    expect_first_pages(dir / "r", whole, 0);
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
    const std::string absent = "[\"zabsent\",1,4,\"TCAG\",-2,";
    EXPECT_NE(page.find(absent), std::string::npos) << page;
    EXPECT_NE(page.find("[\"readC\",2,2,\"ca\",0,"), std::string::npos);
    EXPECT_EQ(page.find("[\"zabsent\",\""), std::string::npos) << "no flowgram entry for it";
    EXPECT_NE(page.find("[\"readC\",\"32,31\",\"2,5\","), std::string::npos);
    const std::string first = read_file(dir / "r" / "contig-1.html");
    EXPECT_NE(first.find("[\"readA\",1,6,\"TC*TTC\",0,"), std::string::npos);
    EXPECT_NE(first.find("[\"readB\",6,3,\"CCT\",0,"), std::string::npos);
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
    const std::string placed = "[\"zabsent\",1,4,\"TCAG\",0,";
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

// ---- The index page's totals and flowgrams

// The text of the index page's paragraph `<p class="facts" id="ID">`.
std::string index_facts(const fs::path& report, const std::string& id) {
    const std::string page = read_file(report / "index.html");
    const std::string open = "<p class=\"facts\" id=\"" + id + "\">";
    const std::size_t at = page.find(open);
    if (at == std::string::npos) return "(no paragraph " + id + ")";
    const std::size_t from = at + open.size();
    return page.substr(from, page.find("</p>", from) - from);
}

// The totals sentence of an ACE text, counted from its lines: its CO lines,
// its RD lines, and the consensus letters under each CO line up to the blank
// line that ends them, pads left out.
std::string totals_counted_in(const std::string& ace) {
    int64_t contigs = 0;
    int64_t reads = 0;
    std::vector<int64_t> lengths;
    bool consensus = false;
    std::istringstream lines(ace);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("CO ", 0) == 0) {
            ++contigs;
            lengths.push_back(0);
            consensus = true;
        } else if (line.empty()) {
            consensus = false;
        } else if (consensus) {
            const auto pads = std::count(line.begin(), line.end(), '*');
            lengths.back() += static_cast<int64_t>(line.size()) - static_cast<int64_t>(pads);
        } else if (line.rfind("RD ", 0) == 0) {
            ++reads;
        }
    }
    int64_t total = 0;
    for (const int64_t n : lengths) total += n;
    std::sort(lengths.rbegin(), lengths.rend());
    int64_t n50 = 0;
    int64_t held = 0;
    for (const int64_t n : lengths) {
        held += n;
        if (2 * held >= total) {
            n50 = n;
            break;
        }
    }
    return std::to_string(contigs) + " contigs, " + std::to_string(reads) + " reads; total length " +
           std::to_string(total) + " bases, N50 " + std::to_string(n50) + " bases (pads not counted).";
}

TEST(ReportTool, TheIndexStatesTheAssemblysTotalsWithoutPads) {
    const fs::path dir = scratch_dir();
    fs::copy_file(example_ace(), dir / "example.ace");
    ASSERT_EQ(report_in(dir, "example.ace", "r").status, 0);
    const std::string text = read_file(example_ace());
    const std::string totals = totals_counted_in(text);
    // The counts as the AS line gives them, and pads among the consensus letters.
    ASSERT_EQ(totals.rfind("3 contigs, 57 reads; ", 0), 0u) << totals;
    ASSERT_EQ(text.rfind("AS 3 57\n", 0), 0u);
    ASSERT_NE(text.find("*", text.find("CO ")), std::string::npos);
    EXPECT_EQ(index_facts(dir / "r", "totals"), totals);
    // Above the plot of the lengths.
    const std::string index = read_file(dir / "r" / "index.html");
    EXPECT_LT(index.find("id=\"totals\""), index.find("<h2>Padded lengths</h2>"));
}

// Flowgrams as Pelkrin -f writes them, none beside the ACE file, or a reads
// file of qualities alone (Pelkrin without -f: 1 line a read in the location
// index): the index page tells which. Names as the report gives them, escaped.
TEST(ReportTool, TheIndexSaysWhetherThereAreFlowgrams) {
    const fs::path dir = scratch_dir();
    fs::create_directory(dir / "R&D");
    for (const char* name : {"example.ace", "example.sff"}) {
        fs::copy_file(source_file(std::string("example/") + name), dir / "R&D" / name);
    }
    ASSERT_EQ(report_in(dir, "R&D/example.ace", "none").status, 0);
    EXPECT_EQ(index_facts(dir / "none", "flowgram-state"),
              "No flowgrams: there is no R&amp;D/example.qdx beside the ACE file (run Pelkrin -f on it).");

    ASSERT_EQ(run_program({PELKRIN_BINARY, "R&D/example.ace", "R&D/example.sff"}, dir).status, 0);
    ASSERT_NE(read_file(dir / "R&D" / "example.qdx").find("\t20\t1\n"), std::string::npos);
    ASSERT_EQ(report_in(dir, "R&D/example.ace", "qualities").status, 0);
    EXPECT_EQ(index_facts(dir / "qualities", "flowgram-state"),
              "No flowgrams: Pelkrin wrote R&amp;D/example.reads without -f, so it holds qualities only (run Pelkrin "
              "-f on the ACE file).");

    ASSERT_EQ(run_program({PELKRIN_BINARY, "-f", "R&D/example.ace", "R&D/example.sff"}, dir).status, 0);
    ASSERT_NE(read_file(dir / "R&D" / "example.qdx").find("\t20\t3\n"), std::string::npos);
    ASSERT_EQ(report_in(dir, "R&D/example.ace", "flows").status, 0);
    EXPECT_EQ(index_facts(dir / "flows", "flowgram-state"),
              "Flowgrams: from R&amp;D/example.reads; click a read on a contig's page to see its flowgram.");

    // The totals are the same in each.
    const std::string totals = totals_counted_in(read_file(example_ace()));
    for (const char* report : {"none", "qualities", "flows"}) {
        EXPECT_EQ(index_facts(dir / report, "totals"), totals) << report;
    }
}

// ---- Outputs over inputs

// Every entry of `dir` (the test's folder), hidden ones too, by name.
std::vector<std::string> entries_of(const fs::path& dir) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// The report would write over, or remove, a file it reads: refused before
// anything is done, as Pelkrin refuses it, whether the file is the one named,
// a hard link to it or a symbolic link to it.
TEST(ReportTool, AReportFileThatIsAnInputIsRefused) {
    const fs::path dir = scratch_dir();
    fs::copy_file(example_ace(), dir / "asm.ace");
    ASSERT_EQ(report_in(dir, "asm.ace", "r").status, 0);
    write_file(dir / "colours.txt", "A\tgreen\n");

    struct refusal {
        const char* what;
        std::vector<std::string> args;  // after -m report -o
        std::string output, input;
    };
    // The ACE file named as a file of the report folder it is to be written to.
    fs::create_directory(dir / "d");
    fs::copy_file(example_ace(), dir / "d" / "pelkrin-report.js");
    // A page an earlier report of 3 contigs does not hold, which the report would remove.
    ASSERT_EQ(::link((dir / "asm.ace").c_str(), (dir / "r" / "contig-7.html").c_str()), 0);
    // The colour file through a link the report folder holds.
    fs::create_directory(dir / "l");
    fs::create_symlink("../colours.txt", dir / "l" / "index.html");
    // Pelkrin's reads file beside the ACE file, hard-linked as a flowgram file.
    write_file(dir / "asm.reads", "x\n");
    fs::create_directory(dir / "f");
    ASSERT_EQ(::link((dir / "asm.reads").c_str(), (dir / "f" / "contig-1-flowgrams-0.js").c_str()), 0);
    const std::vector<refusal> cases = {
        {"the ACE file by name", {"d", "d/pelkrin-report.js"}, "d/pelkrin-report.js", "d/pelkrin-report.js"},
        {"the ACE file by a hard link", {"r", "asm.ace"}, "r/contig-7.html", "asm.ace"},
        {"the colour file by a symbolic link", {"l", "-c", "colours.txt", "asm.ace"}, "l/index.html", "colours.txt"},
        {"the reads file", {"f/", "asm.ace"}, "f/contig-1-flowgrams-0.js", "asm.reads"},
    };
    for (const refusal& c : cases) {
        SCOPED_TRACE(c.what);
        const std::map<std::string, std::string> before = folder_state(dir);
        std::vector<std::string> argv = {PELKRIN_VIEW_BINARY, "-m", "report", "-o"};
        argv.insert(argv.end(), c.args.begin(), c.args.end());
        const program_result r = run_program(argv, dir);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err, "Pelkrin-view: Error: output file " + c.output + " would overwrite input file " + c.input + "\n");
        EXPECT_EQ(folder_state(dir), before) << state_difference(before, folder_state(dir));
    }
}

// A file of the report folder that is not the report's, an input among them,
// stays: under its name, the same file.
TEST(ReportTool, FilesOfTheFolderThatAreNotTheReportsStay) {
    const fs::path dir = scratch_dir();
    fs::create_directories(dir / "r" / "notes");
    fs::copy_file(example_ace(), dir / "r" / "asm.ace");
    write_file(dir / "r" / "notes" / "todo.txt", "look at Contig2\n");
    write_file(dir / "r" / "contig-1.html.orig", "kept\n");
    struct stat before {};
    ASSERT_EQ(::stat((dir / "r" / "asm.ace").c_str(), &before), 0);
    for (int run = 0; run < 3; ++run) {
        const program_result r = report_in(dir, "r/asm.ace", "r");
        EXPECT_EQ(r.status, 0) << r.err;
        struct stat after {};
        ASSERT_EQ(::stat((dir / "r" / "asm.ace").c_str(), &after), 0);
        EXPECT_EQ(after.st_ino, before.st_ino);
        EXPECT_EQ(read_file(dir / "r" / "asm.ace"), read_file(example_ace()));
        EXPECT_EQ(read_file(dir / "r" / "notes" / "todo.txt"), "look at Contig2\n");
        EXPECT_EQ(read_file(dir / "r" / "contig-1.html.orig"), "kept\n");
        EXPECT_TRUE(fs::exists(dir / "r" / "contig-3.html"));
    }
}

// ---- The earlier report, whole, or the new one, whole

// The example's contigs `copies` times over, renamed in each copy: an
// assembly as large as a test needs.
std::string example_copies(int copies) {
    const std::string example = read_file(example_ace());
    const std::string body = example.substr(example.find("CO "));
    std::string text = "AS " + std::to_string(3 * copies) + " " + std::to_string(57 * copies) + "\n\n";
    for (int k = 0; k < copies; ++k) {
        std::string copy = body;
        for (const std::string name : {"Contig1", "Contig2", "Contig3"}) {
            const std::string from = "CO " + name + " ";
            copy.replace(copy.find(from), from.size(), "CO " + name + "x" + std::to_string(k) + " ");
        }
        text += copy;
    }
    return text;
}

// A report over an earlier one of more contigs holds exactly what a report
// into a new folder holds, and so does one over a report of fewer contigs.
TEST(ReportTool, AReportOverAnEarlierOneHoldsItsOwnFilesAlone) {
    const fs::path dir = scratch_dir();
    write_file(dir / "small.ace", read_file(example_ace()));
    write_file(dir / "large.ace", example_copies(6));
    ASSERT_EQ(report_in(dir, "small.ace", "fresh-small").status, 0);
    ASSERT_EQ(report_in(dir, "large.ace", "fresh-large").status, 0);
    const std::map<std::string, std::string> small = folder_state(dir / "fresh-small");
    const std::map<std::string, std::string> large = folder_state(dir / "fresh-large");
    ASSERT_EQ(large.size(), 18u + 3u);
    for (const char* ace : {"large.ace", "small.ace", "large.ace", "small.ace", "small.ace"}) {
        SCOPED_TRACE(ace);
        const program_result r = report_in(dir, ace, "r");
        EXPECT_EQ(r.status, 0) << r.err;
        const std::map<std::string, std::string>& expected = std::string(ace) == "small.ace" ? small : large;
        EXPECT_EQ(folder_state(dir / "r"), expected) << state_difference(expected, folder_state(dir / "r"));
        // Beside the report, at most the folder of the one it replaced.
        std::size_t hidden = 0;
        for (const std::string& name : entries_of(dir)) hidden += name.rfind(".r.pelkrin-report-", 0) == 0 ? 1 : 0;
        EXPECT_LE(hidden, 1u);
    }
}

// The entries of a folder's state (folder_state) under `sub`, named from there.
std::map<std::string, std::string> under(const std::map<std::string, std::string>& state, const std::string& sub) {
    std::map<std::string, std::string> part;
    for (const auto& [leaf, what] : state) {
        if (leaf.rfind(sub + "/", 0) == 0) part[leaf.substr(sub.size() + 1)] = what;
    }
    return part;
}

// The names in a folder's state (folder_state) that are not in a folder of it.
std::vector<std::string> top_names(const std::map<std::string, std::string>& state) {
    std::vector<std::string> names;
    for (const auto& entry : state) {
        if (entry.first.find('/') == std::string::npos) names.push_back(entry.first);
    }
    return names;
}

// A write that fails (here a file-size limit, as a full disk) ends the run
// with the system's reason; the earlier report stays as it was, and nothing
// is left beside it but the folder of a report replaced before, which the
// next run writes over.
TEST(ReportTool, AFailedWriteLeavesTheEarlierReportAsItWas) {
    const fs::path dir = scratch_dir();
    write_file(dir / "asm.ace", read_file(example_ace()));
    // A contig of 300 reads, with flowgrams (other.reads, other.qdx): its
    // page is larger than the script.
    write_big_contig(dir / "other.ace", 300, 3000);
    ASSERT_EQ(report_in(dir, "other.ace", "flowgrams").status, 0);
    ASSERT_EQ(report_in(dir, "asm.ace", "r").status, 0);
    const std::size_t script = read_file(dir / "r" / "pelkrin-report.js").size();
    ASSERT_LT(script, read_file(dir / "flowgrams" / "contig-1.html").size());
    for (int with_spare = 0; with_spare < 2; ++with_spare) {
        SCOPED_TRACE(with_spare ? "with the folder of a report replaced beside it" : "alone");
        if (with_spare == 1) {
            ASSERT_EQ(report_in(dir, "asm.ace", "r").status, 0);
        }
        const std::map<std::string, std::string> before = folder_state(dir);
        run_limits limits;
        limits.file_size = script / 2;
        program_result r = report_in(dir, "other.ace", "r", limits);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err, "Pelkrin-view: can not write file r/pelkrin-report.js: File too large\n");
        EXPECT_EQ(folder_state(dir / "r"), under(before, "r"));
        limits.file_size = script + 1;  // a page is the first to fail, whichever a worker writes first
        r = report_in(dir, "other.ace", "r", limits);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err.rfind("Pelkrin-view: can not write file r/contig-", 0), 0u) << r.err;
        EXPECT_NE(r.err.find(".html: File too large\n"), std::string::npos) << r.err;
        const std::map<std::string, std::string> after = folder_state(dir);
        EXPECT_EQ(under(after, "r"), under(before, "r"));
        if (with_spare == 0) {
            EXPECT_EQ(after, before) << state_difference(before, after);
        } else {
            EXPECT_EQ(top_names(after), top_names(before));
        }
    }
}

// Waits until `done` holds or `seconds` have passed.
template <typename Condition>
bool wait_until(const Condition& done, double seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return true;
}

// The folder beside `report` that a run writes the new report into, if any.
fs::path new_folder_of(const fs::path& report) {
    for (const auto& entry : fs::directory_iterator(report.parent_path())) {
        if (entry.path().filename().string().rfind("." + report.filename().string() + ".pelkrin-report-", 0) == 0) {
            return entry.path();
        }
    }
    return {};
}

// Ctrl-C, kill and a hang-up in the middle of a report: the run ends as the
// signal ends it, the earlier report stays as it was, and the run's new
// folder is gone, or, when it was one an earlier report left, stays as the
// next run's.
TEST(ReportTool, ARunEndedByASignalLeavesTheEarlierReportAsItWas) {
    const fs::path dir = scratch_dir();
    write_file(dir / "asm.ace", read_file(example_ace()));
    write_file(dir / "large.ace", example_copies(400));
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        for (int with_spare = 0; with_spare < 2; ++with_spare) {
            SCOPED_TRACE("signal " + std::to_string(signal) + (with_spare ? ", with the folder of a report replaced" : ""));
            fs::remove_all(dir / "r");
            if (const fs::path left = new_folder_of(dir / "r"); !left.empty()) fs::remove_all(left);
            ASSERT_EQ(report_in(dir, "asm.ace", "r").status, 0);
            if (with_spare == 1) {
                ASSERT_EQ(report_in(dir, "asm.ace", "r").status, 0);
            }
            const std::map<std::string, std::string> before = folder_state(dir);
            background_program run({PELKRIN_VIEW_BINARY, "-m", "report", "-o", "r", "large.ace"}, dir);
            // Some pages of the new report written: it is well under way.
            const bool begun = wait_until([&] {
                const fs::path folder = new_folder_of(dir / "r");
                return !folder.empty() && fs::exists(folder / "contig-9.html");
            }, 60);
            run.send(signal);
            const program_result r = run.wait();
            ASSERT_TRUE(begun) << "the run ended before its ninth page";
            EXPECT_EQ(r.status, 128 + signal) << r.err;
            EXPECT_EQ(r.out, "");
            const std::map<std::string, std::string> after = folder_state(dir);
            EXPECT_EQ(under(after, "r"), under(before, "r"));
            if (with_spare == 0) {
                EXPECT_EQ(after, before) << state_difference(before, after);
            } else {
                EXPECT_EQ(top_names(after), top_names(before));  // the folder left stays, for the next run
            }
        }
    }
}

// A run killed outright (SIGKILL) leaves its new folder beside the report;
// the next run writes its report all the same, whole, and leaves no more
// than one folder beside it.
TEST(ReportTool, AFolderThatAKilledRunLeftDoesNotBreakTheNextRun) {
    const fs::path dir = scratch_dir();
    write_file(dir / "asm.ace", read_file(example_ace()));
    write_file(dir / "large.ace", example_copies(400));
    ASSERT_EQ(report_in(dir, "asm.ace", "fresh").status, 0);
    ASSERT_EQ(report_in(dir, "asm.ace", "r").status, 0);
    for (int kill = 0; kill < 3; ++kill) {
        const auto started = fs::file_time_type::clock::now();
        background_program run({PELKRIN_VIEW_BINARY, "-m", "report", "-o", "r", "large.ace"}, dir);
        // A page written by this run: the folder may hold one of a run killed before.
        const bool begun = wait_until([&] {
            const fs::path folder = new_folder_of(dir / "r");
            std::error_code ec;
            return !folder.empty() && fs::last_write_time(folder / "contig-9.html", ec) >= started && !ec;
        }, 60);
        run.send(SIGKILL);
        run.wait();
        ASSERT_TRUE(begun);
        EXPECT_EQ(folder_state(dir / "r"), folder_state(dir / "fresh"));
        EXPECT_FALSE(new_folder_of(dir / "r").empty());
    }
    const program_result r = report_in(dir, "asm.ace", "r");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(folder_state(dir / "r"), folder_state(dir / "fresh"));
    std::size_t hidden = 0;
    for (const std::string& name : entries_of(dir)) hidden += name.rfind(".r.pelkrin-report-", 0) == 0 ? 1 : 0;
    EXPECT_EQ(hidden, 1u);
}

// ---- A folder that cannot be written

// A folder the user may not write, and one whose parent admits no new folder:
// the message names the file or the folder and the system's reason, and
// nothing changes. Run by root, the program runs as another user: root may
// write anywhere.
TEST(ReportTool, AFolderThatCannotBeWrittenSaysWhy) {
    const shared_scratch shared;
    const fs::path& dir = shared.path();
    shared.write("Pelkrin-view", read_file(PELKRIN_VIEW_BINARY), true);
    shared.write("asm.ace", read_file(example_ace()));
    ASSERT_EQ(report_in(dir, "asm.ace", "ro").status, 0);
    for (const auto& entry : fs::recursive_directory_iterator(dir / "ro")) ::chmod(entry.path().c_str(), 0444);
    ::chmod((dir / "ro").c_str(), 0555);
    ::chmod(dir.c_str(), 0555);
    const std::map<std::string, std::string> before = folder_state(dir);
    const program_result ro = run_as_other_user({(dir / "Pelkrin-view").string(), "-m", "report", "-o", "ro", "asm.ace"}, dir);
    const program_result fresh =
        run_as_other_user({(dir / "Pelkrin-view").string(), "-m", "report", "-o", "new/r", "asm.ace"}, dir);
    const std::map<std::string, std::string> after = folder_state(dir);
    ::chmod(dir.c_str(), 0755);
    ::chmod((dir / "ro").c_str(), 0755);
    EXPECT_EQ(ro.status, 1) << "125: no other user; 126: the folder cannot be entered; 127: nor the program run";
    EXPECT_EQ(ro.out, "");
    EXPECT_EQ(ro.err, "Pelkrin-view: can not write file ro/pelkrin-report.css: Permission denied\n");
    EXPECT_EQ(fresh.status, 1);
    EXPECT_EQ(fresh.err, "Pelkrin-view: can not create folder new/r: Permission denied\n");
    EXPECT_EQ(after, before) << state_difference(before, after);
}

// A file system mounted for a test, and gone with it.
class scratch_mount {
public:
    explicit scratch_mount(const fs::path& at) : at_(at) {
        fs::create_directories(at);
        mounted_ = ::mount("tmpfs", at.c_str(), "tmpfs", 0, "size=16m") == 0;
    }
    ~scratch_mount() {
        if (mounted_) ::umount2(at_.c_str(), MNT_DETACH);
    }
    scratch_mount(const scratch_mount&) = delete;
    scratch_mount& operator=(const scratch_mount&) = delete;
    bool mounted() const { return mounted_; }
    bool make_read_only() const {
        return ::mount("tmpfs", at_.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=16m") == 0;
    }

private:
    fs::path at_;
    bool mounted_ = false;
};

// The folder of an earlier report on a file system mounted read-only: the
// file that cannot be written and the system's reason, and nothing changes.
// Needs the right to mount a file system (root, not in every container).
TEST(ReportTool, AReadOnlyFileSystemSaysSo) {
    const fs::path dir = scratch_dir();
    const scratch_mount fs_mount(dir / "fs");
    if (!fs_mount.mounted()) GTEST_SKIP() << "no file system can be mounted here";
    fs::copy_file(example_ace(), dir / "fs" / "asm.ace");
    ASSERT_EQ(report_in(dir / "fs", "asm.ace", "ro").status, 0);
    ASSERT_EQ(report_in(dir / "fs", "asm.ace", "ro").status, 0);  // and the folder of the one replaced
    ASSERT_TRUE(fs_mount.make_read_only());
    const std::map<std::string, std::string> before = folder_state(dir / "fs");
    const program_result ro = report_in(dir / "fs", "asm.ace", "ro");
    EXPECT_EQ(ro.status, 1);
    EXPECT_EQ(ro.out, "");
    EXPECT_EQ(ro.err, "Pelkrin-view: can not write file ro/pelkrin-report.css: Read-only file system\n");
    const program_result fresh = report_in(dir / "fs", "asm.ace", "new");
    EXPECT_EQ(fresh.status, 1);
    EXPECT_EQ(fresh.err, "Pelkrin-view: can not create folder new: Read-only file system\n");
    EXPECT_EQ(folder_state(dir / "fs"), before);
}

}  // namespace
}  // namespace pelkrin::test
