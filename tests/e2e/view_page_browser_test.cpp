// A page of Pelkrin-view opened in a real browser: every line of the view
// must take the same width per character, so that the reads stand column for
// column under the consensus. Skipped when Chromium is not installed.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "files.h"
#include "program.h"

namespace pelkrin::test {
namespace {

constexpr const char* chromium = "/usr/bin/chromium";

// Measures, after layout, where every character of every line of the view
// lies, and writes per line: its number of characters, its left edge, its
// width per character, and the largest distance of a character from the
// place that width gives it.
constexpr const char* measuring_script = R"(<script>
(function () {
  var pre = document.querySelector('pre.view');
  var walker = document.createTreeWalker(pre, NodeFilter.SHOW_TEXT);
  var lines = [[]], node;
  while ((node = walker.nextNode())) {
    for (var i = 0; i < node.data.length; i++) {
      if (node.data[i] === '\n') { lines.push([]); continue; }
      var range = document.createRange();
      range.setStart(node, i);
      range.setEnd(node, i + 1);
      var box = range.getBoundingClientRect();
      lines[lines.length - 1].push([box.left, box.right]);
    }
  }
  var report = [];
  lines.forEach(function (chars) {
    if (chars.length === 0) return;
    var left = chars[0][0], per = (chars[chars.length - 1][1] - left) / chars.length, off = 0;
    chars.forEach(function (c, k) { off = Math.max(off, Math.abs(c[0] - (left + k * per))); });
    report.push(chars.length + ' ' + left.toFixed(3) + ' ' + per.toFixed(4) + ' ' + off.toFixed(4));
  });
  var out = document.createElement('pre');
  out.id = 'measure';
  out.textContent = report.join('\n');
  document.body.appendChild(out);
})();
</script>
)";

struct line_measure {
    int chars = 0;
    double left = 0;
    double per_char = 0;
    double largest_offset = 0;
};

std::vector<line_measure> measure_in_browser(const std::string& page) {
    const auto dir = scratch_dir();
    std::string measured = page;
    const auto body_end = measured.rfind("</body>");
    measured.insert(body_end, measuring_script);
    write_file(dir / "page.html", measured);
    const program_result r =
        run_program({"/usr/bin/timeout", "120", chromium, "--headless", "--no-sandbox", "--disable-gpu",
                     "--disable-quic", "--no-first-run", "--disable-background-networking",
                     "--disable-component-update", "--disable-sync", "--user-data-dir=" + (dir / "profile").string(),
                     "--dump-dom", (dir / "page.html").string()});
    EXPECT_EQ(r.status, 0) << r.err;
    const auto from = r.out.find("<pre id=\"measure\">");
    const auto to = r.out.find("</pre>", from);
    if (from == std::string::npos || to == std::string::npos) {
        ADD_FAILURE() << "no measurement in the page:\n" << r.out.substr(0, 2000) << r.err;
        return {};
    }
    std::istringstream text(r.out.substr(from + 18, to - from - 18));
    std::vector<line_measure> lines;
    line_measure m;
    while (text >> m.chars >> m.left >> m.per_char >> m.largest_offset) lines.push_back(m);
    return lines;
}

void expect_columns_line_up(const std::vector<std::string>& options, std::size_t min_lines) {
    if (!std::filesystem::exists(chromium)) GTEST_SKIP() << "Chromium is not installed at " << chromium;
    std::vector<std::string> args = {PELKRIN_VIEW_BINARY, "-p"};
    args.insert(args.end(), options.begin(), options.end());
    args.push_back(source_file("example/example.ace").string());
    args.push_back("Contig1");
    const program_result page = run_program(args);
    ASSERT_EQ(page.status, 0) << page.err;

    const std::vector<line_measure> lines = measure_in_browser(page.out);
    ASSERT_GE(lines.size(), min_lines);
    const line_measure& consensus = lines.front();
    EXPECT_GT(consensus.per_char, 4.0);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_NEAR(lines[i].per_char, consensus.per_char, 0.01) << "line " << i;
        EXPECT_NEAR(lines[i].left, consensus.left, 0.01) << "line " << i;
        EXPECT_LT(lines[i].largest_offset, 0.5) << "line " << i;
    }
}

TEST(ViewPageBrowser, BaseSpaceReadsLineUpUnderTheConsensus) {
    expect_columns_line_up({"-m", "align-html", "-s", "101", "-w", "100"}, 17);
}

TEST(ViewPageBrowser, FlowSpaceCountsLineUpUnderTheFlows) {
    expect_columns_line_up({"-m", "flow-html-space", "-s", "101", "-w", "100"}, 17);
    expect_columns_line_up({"-m", "flow-html", "-s", "101", "-w", "100"}, 17);
}

TEST(ViewPageBrowser, WholeContigLinesUp) { expect_columns_line_up({"-m", "contig-html"}, 17); }

}  // namespace
}  // namespace pelkrin::test
