// Pelkrin-view's report opened in headless Chromium: the index, a contig
// page's depth plot and alignment window, the window moved along the contig
// and to its end (and how long a move takes), and a read's flowgram. What
// the window draws is checked in report_window_test.cpp. Skipped when
// Chromium is not installed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <sstream>

#include "files.h"
#include "missing_read_fixture.h"
#include "program.h"
#include "run_fixture.h"
#include "big_contig.h"
#include "report_browser.h"
#include "reads_format/qdx_index.h"
#include "reads_format/read_block.h"
#include "reads_format/values_line.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

program_result view(const std::vector<std::string>& args) {
    std::vector<std::string> argv = {PELKRIN_VIEW_BINARY};
    argv.insert(argv.end(), args.begin(), args.end());
    return run_program(argv);
}

fs::path write_report(const fs::path& ace, const fs::path& folder, const std::vector<std::string>& extra = {}) {
    std::vector<std::string> args = {"-m", "report", "-o", folder.string()};
    args.insert(args.end(), extra.begin(), extra.end());
    args.push_back(ace.string());
    const program_result r = view(args);
    EXPECT_EQ(r.status, 0) << r.err;
    return folder;
}

// Drives a contig page: the first window, twenty windows along the contig,
// the last window; then, when `open_read`, the flowgram of the first read
// listed in the last window.
std::string contig_page_script(bool open_read, int width) {
    std::string script = std::string(R"(
var R = window.pelkrinReport, base = document.getElementById('base-view'), flow = document.getElementById('flow-view');
put('loadedMs', performance.now());
put('depthPaths', document.querySelectorAll('#depth-plot path.depth').length);
R.show(1, WIDTH);
put('base1', base.textContent);
put('flow1', flow.textContent);
var times = [];
for (var k = 0; k <= 20; k++) {
  var t = performance.now();
  R.show(1 + Math.floor(k * (R.lastStart() - 1) / 20));
  document.body.getBoundingClientRect();  // the layout of the new window counts too
  times.push(performance.now() - t);
}
times.sort(function (a, b) { return a - b; });
put('medianMs', times[10]);
put('slowestMs', times[20]);
R.show(1);
document.getElementById('go-last').click();
put('lastStart', R.state().start);
put('baseEnd', base.textContent);
put('flowEnd', flow.textContent);
put('windowX', document.getElementById('depth-window').getAttribute('x'));
var first = document.querySelector('#read-list li');
put('listed', document.querySelectorAll('#read-list li').length);
if (!)") + (open_read ? "true" : "false") + R"( || !first) {
  finish();
} else {
  put('readName', first.textContent);
  R.openRead(first.getAttribute('data-read'), function () {
    var bars = document.querySelectorAll('#flowgram-svg rect.bar'), values = [], ratio = null, off = 0;
    Array.prototype.forEach.call(bars, function (b) {
      var v = +b.getAttribute('data-value'), h = +b.getAttribute('height');
      values.push(v);
      if (v > 0 && ratio === null) ratio = h / v;
      off = Math.max(off, Math.abs(h - (ratio === null ? 0 : ratio) * v));
    });
    put('bars', bars.length);
    put('values', values.join(','));
    put('heightOff', off);
    put('called', document.querySelectorAll('#flowgram-svg text.called').length);
    put('qualities', document.getElementById('flowgram-qualities').textContent);
    put('flowgramName', document.getElementById('flowgram-name').textContent);
    finish();
  });
}
)";
    script.replace(script.find("WIDTH"), 5, std::to_string(width));
    return script;
}

constexpr const char* index_script = R"(
var rows = function () { return Array.prototype.slice.call(document.querySelectorAll('#contigs tbody tr')); };
put('rows', rows().length);
put('names', rows().map(function (r) { return r.cells[0].textContent; }).join('\n'));
put('lengthPlot', document.querySelectorAll('#length-plot path').length);
var head = document.querySelectorAll('#contigs th')[1];
head.click();
put('lengthsUp', rows().map(function (r) { return r.cells[1].textContent; }).join(','));
head.click();
put('lengthsDown', rows().map(function (r) { return r.cells[1].textContent; }).join(','));
finish();
)";

// The contig names of an ACE file, from its CO lines.
std::vector<std::string> contig_names(const fs::path& ace) {
    std::istringstream in(read_file(ace));
    std::vector<std::string> names;
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("CO ", 0) == 0) names.push_back(line.substr(3, line.find(' ', 3) - 3));
    }
    return names;
}

// The padded consensus of `contig`, from the lines after its CO line.
std::string consensus_of(const fs::path& ace, const std::string& contig) {
    std::istringstream in(read_file(ace));
    std::string line, consensus;
    while (std::getline(in, line) && line.rfind("CO " + contig + " ", 0) != 0) {
    }
    while (std::getline(in, line) && !line.empty()) consensus += line;
    return consensus;
}

std::string joined(const std::vector<std::string>& parts, const std::string& between) {
    std::string out;
    for (std::size_t i = 0; i < parts.size(); ++i) out.append(i ? between : "").append(parts[i]);
    return out;
}

// The data lines of `read` in the block of `contig` of Pelkrin's output beside `ace`.
std::vector<std::string> reads_file_lines(const fs::path& prefix, const std::string& contig, const std::string& read) {
    const qdx_table index = make_qdx_table(parse_qdx(read_file(prefix.string() + ".qdx")));
    const qdx_entry* entry = find_qdx_entry(index, 0, contig);
    if (!entry) return {};
    const std::string reads = read_file(prefix.string() + ".reads");
    for (const read_entry& e : parse_read_block(std::string_view(reads).substr(static_cast<std::size_t>(entry->offset)),
                                                entry->read_count, entry->lines_per_read)) {
        if (e.name == read) return std::vector<std::string>(e.lines.begin(), e.lines.end());
    }
    return {};
}

std::string tabs_to(std::string text, char c) {
    for (char& ch : text) {
        if (ch == '\t') ch = c;
    }
    return text;
}

// The example assembly with Pelkrin's -f output beside it.
fs::path example_with_flowgrams(const fs::path& dir) {
    for (const char* name : {"example.ace", "example.sff"}) fs::copy_file(source_file(std::string("example/") + name), dir / name);
    const program_result r = run_program({PELKRIN_BINARY, "-f", (dir / "example.ace").string(), (dir / "example.sff").string()});
    EXPECT_EQ(r.status, 0) << r.err;
    return dir / "example.ace";
}

class ReportBrowser : public ::testing::Test {
protected:
    void SetUp() override {
        if (!fs::exists(chromium_path)) GTEST_SKIP() << "Chromium is not installed at " << chromium_path;
    }
};

TEST_F(ReportBrowser, ExampleIndexListsEveryContigAndSorts) {
    const fs::path dir = scratch_dir();
    const fs::path ace = example_with_flowgrams(dir);
    const fs::path report = write_report(ace, dir / "report");
    const browser_results r = run_in_browser(report / "index.html", index_script, false);
    EXPECT_EQ(r.values.at("errors"), "");
    const std::vector<std::string> names = contig_names(ace);
    EXPECT_EQ(r.values.at("rows"), std::to_string(names.size()));
    EXPECT_EQ(r.values.at("names"), joined(names, "\n"));
    EXPECT_EQ(r.values.at("lengthPlot"), "1");
    EXPECT_EQ(r.values.at("lengthsUp"), "212,250,250");
    EXPECT_EQ(r.values.at("lengthsDown"), "250,250,212");
}

TEST_F(ReportBrowser, ExampleContigPageDrawsWindowsAndAFlowgram) {
    const fs::path dir = scratch_dir();
    const fs::path ace = example_with_flowgrams(dir);
    const fs::path report = write_report(ace, dir / "report");
    for (const std::string contig : {"Contig1", "Contig3"}) {
        const std::string page = contig == "Contig1" ? "contig-1.html" : "contig-3.html";
        const browser_results r = run_in_browser(report / page, contig_page_script(true, 60), true);
        ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
        EXPECT_EQ(r.values.at("errors"), "");
        EXPECT_EQ(r.values.at("depthPaths"), "1");
        // The consensus stands under the ruler, from the window's first position.
        const std::string consensus = consensus_of(ace, contig);
        EXPECT_NE(r.values.at("base1").find(std::string(1, '\n').append(consensus.substr(0, 60)).append(1, '\n')), std::string::npos);
        const int64_t last_start = std::stoll(r.values.at("lastStart"));
        EXPECT_GT(last_start, 1);
        EXPECT_NE(r.values.at("baseEnd").find(consensus.substr(static_cast<std::size_t>(last_start - 1), 20)), std::string::npos);
        EXPECT_NE(r.values.at("baseEnd"), r.values.at("base1"));
        EXPECT_NE(r.values.at("flowEnd"), r.values.at("flow1"));
        EXPECT_GT(std::stod(r.values.at("windowX")), 60.0);

        // One bar per flow, as high as the reads file's flowgram value says.
        const std::string read = r.values.at("readName");
        EXPECT_EQ(r.values.at("flowgramName"), read);
        const std::vector<std::string> lines = reads_file_lines(dir / "example", contig, read);
        ASSERT_EQ(lines.size(), 3u) << read;
        EXPECT_EQ(r.values.at("values"), tabs_to(lines[2], ','));
        EXPECT_EQ(r.values.at("bars"), std::to_string(parse_values_line(lines[2]).size()));
        EXPECT_LT(std::stod(r.values.at("heightOff")), 0.01);
        EXPECT_EQ(r.values.at("qualities"), tabs_to(lines[0], ' '));
        EXPECT_EQ(r.values.at("called"), std::to_string(parse_values_line(lines[1]).size()));
    }
}

TEST_F(ReportBrowser, ContigOfFifteenThousandReadsOpensAndMovesAtOnce) {
    const fs::path dir = scratch_dir();
    const fs::path ace = dir / "big.ace";
    write_big_contig(ace, 15000, 20000);
    const fs::path report = write_report(ace, dir / "report");
    const browser_results index = run_in_browser(report / "index.html", index_script, false);
    EXPECT_EQ(index.values.at("names"), "BigContig");

    // Its alignment and its flowgrams are too large for the page: files of their own.
    EXPECT_TRUE(fs::exists(report / "contig-1.js"));
    EXPECT_TRUE(fs::exists(report / "contig-1-flowgrams-59.js"));
    EXPECT_FALSE(fs::exists(report / "contig-1-flowgrams-60.js"));

    // Windows of 400 positions, as a wide screen shows them.
    const browser_results r = run_in_browser(report / "contig-1.html", contig_page_script(true, 400), true);
    ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
    EXPECT_EQ(r.values.at("errors"), "");
    EXPECT_EQ(r.values.at("depthPaths"), "1");
    EXPECT_EQ(r.values.at("lastStart"), std::to_string(20000 - 400 + 1));
    EXPECT_NE(r.values.at("baseEnd"), r.values.at("base1"));
    // Generous for a machine under load: bench/report-bench.sh measures it.
    EXPECT_LT(std::stod(r.values.at("medianMs")), 250.0);
    const std::vector<std::string> lines = reads_file_lines(dir / "big", "BigContig", r.values.at("readName"));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(r.values.at("values"), tabs_to(lines[2], ','));
    EXPECT_EQ(r.values.at("bars"), "100");
    EXPECT_LT(std::stod(r.values.at("heightOff")), 0.01);
    EXPECT_LT(std::stod(r.values.at("loadedMs")), 5000.0);
    std::cout << "window moved and laid out in " << r.values.at("medianMs") << " ms (median), at most "
              << r.values.at("slowestMs") << " ms; page ready after " << r.values.at("loadedMs") << " ms\n";
}

// A read whose entry in the reads file is not its own (the SFF file lacks
// it) opens to words saying so and no bars; a read beside it to its flowgram.
TEST_F(ReportBrowser, AReadNotInTheSffFileSaysSoAndDrawsNoFlowgram) {
    const fs::path dir = scratch_dir();
    write_file(dir / "asm.ace", assembly_with_a_missing_read());
    write_file(dir / "reads.sff", build_sff(worked_example_sff()).bytes);
    ASSERT_EQ(run_program({PELKRIN_BINARY, "-f", "asm.ace", "reads.sff"}, dir).status, 0);
    const fs::path report = write_report(dir / "asm.ace", dir / "report");
    const browser_results r = run_in_browser(report / "contig-2.html", R"(
var R = window.pelkrinReport;
R.openRead(R.readIndex('zabsent'), function () {
  put('absentFacts', document.getElementById('flowgram-facts').textContent);
  put('absentBars', document.querySelectorAll('#flowgram-svg rect.bar').length);
  put('absentShown', !document.getElementById('flowgram').hidden);
  R.openRead(R.readIndex('readC'), function () {
    put('readCBars', document.querySelectorAll('#flowgram-svg rect.bar').length);
    put('readCBases', document.getElementById('flowgram-bases').textContent);
    finish();
  });
});
)", true);
    ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
    EXPECT_EQ(r.values.at("errors"), "");
    EXPECT_EQ(r.values.at("absentFacts"), "This read is not in the SFF file: there is no flowgram of it.");
    EXPECT_EQ(r.values.at("absentBars"), "0");
    EXPECT_EQ(r.values.at("absentShown"), "true");
    EXPECT_EQ(r.values.at("readCBars"), "8");
    EXPECT_EQ(r.values.at("readCBases"), "CA");
}

}  // namespace
}  // namespace pelkrin::test
