// Names and colour texts from the files that look like markup or hold quotes
// stay text on every page of the report: nothing of them runs or becomes an
// element. Skipped in the browser part when Chromium is not installed.
#include <gtest/gtest.h>

#include <filesystem>

#include "files.h"
#include "program.h"
#include "report_browser.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

const std::string contig_name = "<script>window.pwned=1</script>\"q'";
const std::string read_one = "r<b>\"1'</b>";
const std::string read_two = "<img/src=x/onerror=window.pwned=2>";

// A contig of two reads, and the reads file and location index that Pelkrin
// -f would write for it.
fs::path write_hostile_assembly(const fs::path& dir) {
    std::string ace = "AS 1 2\n\nCO " + contig_name + " 10 2 1 U\nACGTACGTAC\n\nBQ\n30 30 30 30 30 30 30 30 30 30\n\n";
    ace += "AF " + read_one + " U 1\nAF " + read_two + " U 3\nBS 1 10 " + read_one + "\n";
    ace += "\nRD " + read_one + " 10 0 0\nACGTACGTAC\n\nQA 1 10 1 10\nDS CHROMAT_FILE: x PHD_FILE: x.phd.1\n";
    ace += "\nRD " + read_two + " 8 0 0\nGTACGTAC\n\nQA 1 8 1 8\nDS CHROMAT_FILE: y PHD_FILE: y.phd.1\n\n";
    write_file(dir / "hostile.ace", ace);
    // Names sort byte-wise: '<' before 'r'.
    const std::string header = ">" + contig_name + "\t2\t3\n";
    std::string reads = header;
    reads += read_two + "\t1\n31\t32\n2\t3\n0\t0\t104\t98\t0\t0\t0\t0\n";
    reads += read_one + "\t1\n33\t34\t35\n1\t2\t3\n0\t101\t99\t102\t0\t0\t0\t0\n";
    write_file(dir / "hostile.reads", reads);
    write_file(dir / "hostile.qdx", contig_name + "\t" + std::to_string(header.size()) + "\t2\t3\n");
    write_file(dir / "colours.txt", "A\t\"red\"><script>window.pwned=3</script>\nC\tblue' onmouseover='window.pwned=4\n");
    return dir / "hostile.ace";
}

fs::path write_hostile_report(const fs::path& dir) {
    const fs::path ace = write_hostile_assembly(dir);
    const program_result r = run_program({PELKRIN_VIEW_BINARY, "-m", "report", "-c", (dir / "colours.txt").string(),
                                          "-o", (dir / "report").string(), ace.string()});
    EXPECT_EQ(r.status, 0) << r.err;
    return dir / "report";
}

TEST(ReportEscaping, NoFileOfTheReportHoldsANameAsMarkup) {
    const fs::path report = write_hostile_report(scratch_dir());
    int files = 0;
    for (const auto& entry : fs::directory_iterator(report)) {
        const std::string text = read_file(entry.path());
        ++files;
        for (const std::string& raw : {std::string("<script>window.pwned"), std::string("<b>"),
                                       std::string("<img/src"), std::string("onmouseover='")}) {
            EXPECT_EQ(text.find(raw), std::string::npos) << entry.path() << " holds " << raw;
        }
    }
    EXPECT_EQ(files, 4);  // index, style, script, and the page with its data and flowgrams
}

TEST(ReportEscaping, NamesAndColoursAreTextInTheBrowser) {
    if (!fs::exists(chromium_path)) GTEST_SKIP() << "Chromium is not installed at " << chromium_path;
    const fs::path report = write_hostile_report(scratch_dir());

    const browser_results index = run_in_browser(report / "index.html", R"(
put('name', document.querySelector('#contigs tbody td').textContent);
put('pwned', typeof window.pwned);
put('title', document.title);
finish();
)", false);
    EXPECT_EQ(index.values.at("errors"), "");
    EXPECT_EQ(index.values.at("name"), contig_name);
    EXPECT_EQ(index.values.at("pwned"), "undefined");

    const browser_results page = run_in_browser(report / "contig-1.html", R"(
put('name', document.getElementById('contig-name').textContent);
put('reads', Array.prototype.map.call(document.querySelectorAll('#read-list li'), function (li) { return li.textContent; }).join('\n'));
put('bold', document.querySelectorAll('#read-list b, pre.view b, pre.view img').length);
var li = document.querySelector('#read-list li');
window.pelkrinReport.openRead(li.getAttribute('data-read'), function () {
  put('flowgramName', document.getElementById('flowgram-name').textContent);
  put('bars', document.querySelectorAll('#flowgram-svg rect.bar').length);
  put('pwned', typeof window.pwned);
  finish();
});
)", true);
    EXPECT_EQ(page.values.at("errors"), "");
    EXPECT_EQ(page.values.at("name"), contig_name);
    EXPECT_EQ(page.values.at("reads"), read_one + "\n" + read_two);
    EXPECT_EQ(page.values.at("bold"), "0");
    EXPECT_EQ(page.values.at("flowgramName"), read_one);
    EXPECT_EQ(page.values.at("bars"), "8");
    EXPECT_EQ(page.values.at("pwned"), "undefined");
}

}  // namespace
}  // namespace pelkrin::test
