// The report's alignment window in headless Chromium: every read that reaches
// into the window is drawn (counted here from the ACE file's own lines), a
// base that differs from the consensus, a pad and a clipped base are drawn
// unlike a matching base, qualities shade the bases, the address keeps the
// place, a column's plot marks every covering read at its flow signal, and a
// read's flowgram marks its key, its clipped range and its flow numbers.
// Skipped when Chromium is not installed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "big_contig.h"
#include "files.h"
#include "program.h"
#include "report_browser.h"

namespace pelkrin::test {
namespace {

namespace fs = std::filesystem;

// ---- the ACE file as the test reads it: its lines, nothing of the program's ----
struct ace_read {
    std::string name;
    int64_t pos = 0;
    int64_t len = 0;
    bool complemented = false;
    int64_t clip_start = 0;  // the QA line's alignment clip range
    int64_t clip_end = 0;
    std::string seq;
    int64_t end() const { return pos + len - 1; }
    // Without a QA line a read is aligned whole; with an empty range, nowhere.
    bool aligned_at(int64_t j) const {
        if (clip_start == 0 && clip_end == 0) return j >= 0 && j < len;
        return clip_start >= 1 && clip_end >= clip_start && j >= clip_start - 1 && j <= clip_end - 1;
    }
};

struct ace_contig {
    std::string name;
    std::string consensus;
    std::vector<ace_read> reads;
    const ace_read* read(const std::string& n) const {
        for (const ace_read& r : reads)
            if (r.name == n) return &r;
        return nullptr;
    }
    int64_t lowest() const {
        int64_t v = 1;
        for (const ace_read& r : reads)
            if (r.len > 0) v = std::min(v, r.pos);
        return v;
    }
    int64_t highest() const {
        int64_t v = std::max<int64_t>(1, static_cast<int64_t>(consensus.size()));
        for (const ace_read& r : reads)
            if (r.len > 0) v = std::max(v, r.end());
        return v;
    }
};

std::vector<std::string> words(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> out;
    for (std::string w; in >> w;) out.push_back(w);
    return out;
}

std::vector<ace_contig> read_ace(const fs::path& path) {
    std::istringstream in(read_file(path));
    std::vector<ace_contig> contigs;
    std::map<std::string, std::pair<int64_t, bool>> placed;  // AF lines of the contig
    std::string line;
    auto block = [&in]() {
        std::string text, l;
        while (std::getline(in, l) && !words(l).empty()) text += words(l)[0];
        return text;
    };
    while (std::getline(in, line)) {
        const std::vector<std::string> w = words(line);
        if (w.empty()) continue;
        if (w[0] == "CO" && w.size() >= 2) {
            contigs.push_back(ace_contig{w[1], block(), {}});
            placed.clear();
        } else if (w[0] == "AF" && w.size() >= 4 && !contigs.empty()) {
            placed[w[1]] = {std::stoll(w[3]), w[2] == "C"};
        } else if (w[0] == "RD" && w.size() >= 3 && !contigs.empty()) {
            ace_read r;
            r.name = w[1];
            r.len = std::stoll(w[2]);
            r.pos = placed[w[1]].first;
            r.complemented = placed[w[1]].second;
            r.seq = block();
            contigs.back().reads.push_back(r);
        } else if (w[0] == "QA" && w.size() >= 5 && !contigs.empty() && !contigs.back().reads.empty()) {
            contigs.back().reads.back().clip_start = std::stoll(w[3]);
            contigs.back().reads.back().clip_end = std::stoll(w[4]);
        }
    }
    return contigs;
}

// The first and last padded index of a read's aligned part.
int64_t first_aligned(const ace_read& r) {
    int64_t j = 0;
    while (j < r.len && !r.aligned_at(j)) ++j;
    return j;
}
int64_t last_aligned(const ace_read& r) {
    int64_t j = r.len - 1;
    while (j >= 0 && !r.aligned_at(j)) --j;
    return j;
}

// ---- a read's entry in Pelkrin's reads file, and where its called bases stand ----
struct reads_entry {
    std::vector<int> quals, flows, values;
};

std::vector<int> numbers(const std::string& line) {
    std::vector<int> out;
    std::istringstream in(line);
    for (std::string f; std::getline(in, f, '\t');)
        if (!f.empty()) out.push_back(std::stoi(f));
    return out;
}

// The entries of a reads file written with -f, by contig and read name.
std::map<std::string, std::map<std::string, reads_entry>> read_reads_file(const fs::path& path) {
    std::istringstream in(read_file(path));
    std::map<std::string, std::map<std::string, reads_entry>> out;
    std::string line, contig;
    while (std::getline(in, line)) {
        if (!line.empty() && line[0] == '>') {
            contig = line.substr(1, line.find('\t') - 1);
            continue;
        }
        const std::string name = line.substr(0, line.find('\t'));
        std::string q, f, v;
        std::getline(in, q);
        std::getline(in, f);
        std::getline(in, v);
        out[contig][name] = reads_entry{numbers(q), numbers(f), numbers(v)};
    }
    return out;
}

char complement(char c) {
    switch (c) {
        case 'A': return 'T';
        case 'C': return 'G';
        case 'G': return 'C';
        case 'T': return 'A';
    }
    return c;
}

// For each padded index of the read, the number of the called base (on the
// read's own strand) there, or -1; empty when the called bases (the letters
// of their flows, TACG repeated) are not among the read's bases.
std::vector<int> called_places(const ace_read& r, const reads_entry& e) {
    std::string unpadded;
    std::vector<int> padded;
    for (std::size_t i = 0; i < r.seq.size(); ++i) {
        if (r.seq[i] == '*') continue;
        unpadded.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(r.seq[i]))));
        padded.push_back(static_cast<int>(i));
    }
    std::string called;
    for (int f : e.flows) called.push_back("TACG"[f % 4]);
    std::string oriented = called;
    if (r.complemented) {
        std::reverse(oriented.begin(), oriented.end());
        for (char& c : oriented) c = complement(c);
    }
    const auto at = unpadded.find(oriented);
    if (oriented.empty() || at == std::string::npos) return {};
    std::vector<int> out(r.seq.size(), -1);
    const int n = static_cast<int>(called.size());
    for (int k = 0; k < n; ++k) out[static_cast<std::size_t>(padded[at + static_cast<std::size_t>(k)])] = r.complemented ? n - 1 - k : k;
    return out;
}

// ---- running things ----
program_result run(const std::vector<std::string>& args, const fs::path& dir = {}) {
    return dir.empty() ? run_program(args) : run_program(args, dir);
}

fs::path report_of(const fs::path& ace, const fs::path& folder) {
    const program_result r = run({PELKRIN_VIEW_BINARY, "-m", "report", "-o", folder.string(), ace.string()});
    EXPECT_EQ(r.status, 0) << r.err;
    return folder;
}

// Copies an assembly of the source tree into `dir`, in the layout Pelkrin
// reads: a MIRA, CAP3 or phrap file goes through Pelkrin-prep ace first, as
// a user brings it. With an SFF file, runs Pelkrin -f on the pair.
fs::path assembly(const fs::path& dir, const std::string& ace, const std::string& sff = "", bool prepare = false) {
    const fs::path copy = dir / fs::path(ace).filename();
    if (prepare) {
        const program_result p = run({PELKRIN_PREP_BINARY, "ace", source_file(ace).string(), copy.string()});
        EXPECT_EQ(p.status, 0) << p.err;
    } else {
        fs::copy_file(source_file(ace), copy);
    }
    if (!sff.empty()) {
        const fs::path sff_copy = dir / fs::path(sff).filename();
        fs::copy_file(source_file(sff), sff_copy);
        const program_result r = run({PELKRIN_BINARY, "-f", copy.string(), sff_copy.string()});
        EXPECT_EQ(r.status, 0) << r.err;
    }
    return copy;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);) out.push_back(l);
    return out;
}

constexpr const char* window_script = R"(
var R = window.pelkrinReport;
function names(id) {
  return Array.prototype.map.call(document.querySelectorAll('#' + id + ' [data-read]'),
                                  function (e) { return e.getAttribute('data-read'); });
}
WINDOWS.forEach(function (w, i) {
  R.show(w[0], w[1]);
  var st = R.state();
  put('start' + i, st.start);
  put('width' + i, st.width);
  put('base' + i, names('base-view').join('\n'));
  put('flow' + i, names('flow-view').join('\n'));
  put('rows' + i, R.rows().map(function (r) { return r.join('\t'); }).join('\n'));
  put('cover' + i, document.getElementById('cover-text').textContent);
});
finish();
)";

class ReportWindow : public ::testing::Test {
protected:
    void SetUp() override {
        if (!fs::exists(chromium_path)) GTEST_SKIP() << "Chromium is not installed at " << chromium_path;
    }

    // Windows of 60 and of 400 positions at the first start, at positions 0
    // and 1, in the middle and at the end of every contig of `ace`: the reads drawn
    // in each view are exactly those whose bases reach into the window, each
    // once, packed into rows where no two come closer than a gap of one.
    void expect_every_read_in_its_windows(const fs::path& ace) {
        const fs::path report = report_of(ace, ace.parent_path() / "report");
        const std::vector<ace_contig> contigs = read_ace(ace);
        ASSERT_FALSE(contigs.empty());
        for (std::size_t c = 0; c < contigs.size(); ++c) {
            const ace_contig& contig = contigs[c];
            const int64_t length = static_cast<int64_t>(contig.consensus.size());
            std::vector<std::pair<int64_t, int64_t>> windows;  // asked start, width
            for (int64_t width : {60, 400}) {
                for (int64_t start : {contig.lowest(), int64_t{0}, int64_t{1}, (length + 1) / 2 - width / 2,
                                      contig.highest() - width + 1})
                    windows.emplace_back(start, width);
            }
            std::string list = "[";
            for (const auto& [s, w] : windows) list.append("[").append(std::to_string(s)).append(",").append(std::to_string(w)).append("],");
            list.back() = ']';
            std::string script = window_script;
            script.replace(script.find("WINDOWS"), 7, list);
            const browser_results r =
                run_in_browser(report / ("contig-" + std::to_string(c + 1) + ".html"), script, false);
            ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
            EXPECT_EQ(r.values.at("errors"), "");
            for (std::size_t i = 0; i < windows.size(); ++i) {
                const std::string k = std::to_string(i);
                const int64_t width = windows[i].second;
                const int64_t last_start = std::max(contig.lowest(), contig.highest() - width + 1);
                const int64_t start = std::clamp(windows[i].first, contig.lowest(), last_start);
                const int64_t end = start + width - 1;
                SCOPED_TRACE(contig.name + " window " + std::to_string(start) + " to " + std::to_string(end));
                EXPECT_EQ(r.values.at("start" + k), std::to_string(start));
                EXPECT_EQ(r.values.at("width" + k), std::to_string(width));
                // A name that stands twice in a contig (phrap writes such) is
                // one read to the contig's model: it must be drawn where every
                // copy reaches into the window, may be where one does.
                std::map<std::string, std::pair<bool, bool>> reaches;  // name: every copy, some copy
                for (const ace_read& read : contig.reads) {
                    const bool in = read.len > 0 && read.pos <= end && read.end() >= start;
                    auto [at, fresh] = reaches.try_emplace(read.name, in, in);
                    if (!fresh) at->second = {at->second.first && in, at->second.second || in};
                }
                for (const char* view : {"base", "flow"}) {
                    const std::vector<std::string> drawn = lines_of(r.values.at(view + k));
                    const std::set<std::string> unique(drawn.begin(), drawn.end());
                    EXPECT_EQ(unique.size(), drawn.size()) << view << ": a read drawn twice";
                    for (const auto& [name, in] : reaches) {
                        if (in.first) {
                            EXPECT_TRUE(unique.count(name)) << view << ": " << name << " is not drawn";
                        }
                        if (!in.second) {
                            EXPECT_FALSE(unique.count(name)) << view << ": " << name << " is drawn";
                        }
                    }
                    EXPECT_EQ(r.values.at("cover" + k),
                              std::to_string(drawn.size()) + (drawn.size() == 1 ? " read covers" : " reads cover") +
                                  " this window.");
                }
                for (const std::string& row : lines_of(r.values.at("rows" + k))) {
                    std::istringstream in(row);
                    int64_t before = start - 2;
                    for (std::string name; std::getline(in, name, '\t');) {
                        const ace_read* read = contig.read(name);
                        ASSERT_NE(read, nullptr) << name;
                        if (!reaches.at(name).first && reaches.at(name).second) {  // a name of two places
                            before = start - 2;
                            continue;
                        }
                        EXPECT_GE(std::max(read->pos, start), before + 2) << name << " comes too close in its row";
                        before = std::min(read->end(), end);
                    }
                }
            }
        }
    }
};

TEST_F(ReportWindow, ExampleDrawsEveryReadThatReachesIntoTheWindow) {
    expect_every_read_in_its_windows(assembly(scratch_dir(), "example/example.ace"));
}

TEST_F(ReportWindow, MiraAssemblyDrawsEveryReadThatReachesIntoTheWindow) {
    expect_every_read_in_its_windows(assembly(scratch_dir(), "tests/data/mira/sim454_out.ace", "", true));
}

TEST_F(ReportWindow, Cap3AssemblyDrawsItsReadsLeftOfPositionOne) {
    const fs::path ace = assembly(scratch_dir(), "tests/data/seq.cap.ace", "", true);
    const std::vector<ace_contig> contigs = read_ace(ace);
    ASSERT_EQ(contigs.size(), 1u);
    EXPECT_LT(contigs[0].lowest(), 1) << "the CAP3 contig has reads that start left of position 1";
    expect_every_read_in_its_windows(ace);
}

TEST_F(ReportWindow, ConsedSampleDrawsEveryReadThatReachesIntoTheWindow) {
    expect_every_read_in_its_windows(assembly(scratch_dir(), "tests/data/consed_sample.ace", "", true));
}

TEST_F(ReportWindow, PhrapContigsDrawEveryReadThatReachesIntoTheWindow) {
    expect_every_read_in_its_windows(assembly(scratch_dir(), "tests/data/contig1.ace", "", true));
}

TEST_F(ReportWindow, FifteenThousandReadContigDrawsEveryReadThatReachesIntoTheWindow) {
    const fs::path dir = scratch_dir();
    write_big_contig(dir / "big.ace", 15000, 20000);
    expect_every_read_in_its_windows(dir / "big.ace");
}

// The character of `name` at position q as drawn, with the colour, background
// and weight it is drawn in.
constexpr const char* style_function = R"(
var R = window.pelkrinReport;
function styleAt(name, pos, q) {
  R.show(Math.max(q - 20, R.state().first), 60);
  var span = document.querySelector('#base-view [data-read="' + CSS.escape(name) + '"]');
  if (!span) return 'not drawn';
  var offset = q - Math.max(pos, R.state().start), at = 0, node;
  var walker = document.createTreeWalker(span, NodeFilter.SHOW_TEXT);
  while ((node = walker.nextNode())) {
    if (offset < at + node.data.length) {
      var cs = getComputedStyle(node.parentElement);
      return node.data[offset - at] + '|' + cs.color + '|' + cs.backgroundColor + '|' + cs.fontWeight;
    }
    at += node.data.length;
  }
  return 'past its end';
}
)";

struct drawn_base {
    std::string name;
    int64_t pos = 0, q = 0;
    char c = 0;
};

std::string style_call(const std::string& key, const drawn_base& b) {
    return "put('" + key + "', styleAt('" + b.name + "', " + std::to_string(b.pos) + ", " + std::to_string(b.q) + "));\n";
}

char drawn_char(const std::string& style) { return style.empty() ? 0 : style[0]; }
std::string look(const std::string& style) { return style.size() > 2 ? style.substr(2) : style; }

// The flow view of a small contig: a homopolymer that two reads of one base
// row share, a read that starts left of position 1, a pad at a window's
// first position and lower-case bases. Every read's flow counts add up to
// its bases over the consensus (1 to L), and no row runs past the
// consensus flows.
TEST_F(ReportWindow, FlowCountsOfEachReadAddUpToItsBasesOverTheConsensus) {
    const fs::path dir = scratch_dir();
    //                             1234567890123 and on, where no read reaches
    const std::string consensus = "ACGTTTTAC*GTAACGTACGTACGT";
    struct placed { const char* name; int64_t pos; const char* seq; };
    const std::vector<placed> placed_reads = {
        {"r1", 1, "ACGTT"},        // 1-5, ends inside the run of T's
        {"r2", 7, "TAC*GTA"},      // 7-13, starts inside it, one position after r1's end
        {"r3", -2, "GGGACGT"},     // -2-4, three bases left of position 1
        {"r4", 3, "gtttTac*gta"},  // 3-13, lower case
    };
    std::string ace = "AS 1 " + std::to_string(placed_reads.size()) + "\n\nCO Small " +
                      std::to_string(consensus.size()) + " " + std::to_string(placed_reads.size()) + " 0 U\n" +
                      consensus + "\n\nBQ\n";
    for (char c : consensus)
        if (c != '*') ace += " 30";
    ace += "\n\n";
    for (const placed& r : placed_reads) ace += std::string("AF ") + r.name + " U " + std::to_string(r.pos) + "\n";
    ace += "BS 1 25 r4\n";
    for (const placed& r : placed_reads) {
        const std::string len = std::to_string(std::string(r.seq).size());
        ace += std::string("\nRD ") + r.name + " " + len + " 0 0\n" + r.seq + "\n\nQA 1 " + len + " 1 " + len +
               "\nDS CHROMAT_FILE: " + r.name + "\n";
    }
    write_file(dir / "small.ace", ace + "\n");
    const fs::path report = report_of(dir / "small.ace", dir / "report");
    const browser_results r = run_in_browser(report / "contig-1.html", R"(
var R = window.pelkrinReport, view = document.getElementById('flow-view');
[[-2, 20], [1, 20], [10, 10]].forEach(function (w, i) {
  R.show(w[0], w[1]);
  var lines = view.textContent.split('\n');
  put('header' + i, lines[1]);
  // r2 shares the flow of the T's with r1 and r3 (a row of bases may hold
  // them), so no row of flows holds r2 and either.
  put('shared' + i, view.innerHTML.split('\n').some(function (l) {
    return l.indexOf('data-read="r2"') >= 0 && (l.indexOf('data-read="r1"') >= 0 || l.indexOf('data-read="r3"') >= 0);
  }));
  put('longest' + i, Math.max.apply(null, lines.slice(3).map(function (l) { return l.length; })));
  put('sums' + i, Array.prototype.map.call(view.querySelectorAll('[data-read]'), function (e) {
    var sum = 0;
    for (var k = 0; k < e.textContent.length; k++) sum += parseInt(e.textContent[k], 36);
    return e.getAttribute('data-read') + ':' + sum;
  }).sort().join(' '));
});
finish();
)", false);
    ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
    EXPECT_EQ(r.values.at("errors"), "");
    for (int i = 0; i < 2; ++i) {
        const std::string k = std::to_string(i);
        EXPECT_LE(std::stoul(r.values.at("longest" + k)), r.values.at("header" + k).size()) << "a row runs past the flows";
        EXPECT_EQ(r.values.at("shared" + k), "false") << "two reads on one flow of a row";
        // Bases over positions 1 to 13: r1 5, r2 6, r3 4 (ACGT), r4 10.
        EXPECT_EQ(r.values.at("sums" + k), "r1:5 r2:6 r3:4 r4:10") << "window " << k;
    }
    // From the pad at position 10: r2's and r4's runs from the C before it (9) on.
    EXPECT_EQ(r.values.at("sums2"), "r2:4 r4:4");
}

TEST_F(ReportWindow, AMismatchAPadAndAClippedBaseAreDrawnUnlikeAMatchingBase) {
    // phrap's contigs, with their QA lines; no reads file, so no shading.
    const fs::path ace = assembly(scratch_dir(), "tests/data/contig1.ace", "", true);
    const fs::path report = report_of(ace, ace.parent_path() / "report");
    const std::vector<ace_contig> contigs = read_ace(ace);
    const std::size_t ordinal = contigs.size();  // the last, deepest contig
    const ace_contig& contig = contigs.back();
    std::map<std::string, std::size_t> copies;
    for (const ace_read& r : contig.reads) ++copies[r.name];
    std::map<std::string, drawn_base> found;  // match, mismatch, pad, clipped
    for (const ace_read& r : contig.reads) {
        if (copies[r.name] > 1) continue;
        for (int64_t j = 0; j < static_cast<int64_t>(r.seq.size()); ++j) {
            const int64_t q = r.pos + j;
            if (q < 1 || q > static_cast<int64_t>(contig.consensus.size())) continue;
            const char c = r.seq[static_cast<std::size_t>(j)];
            const char k = contig.consensus[static_cast<std::size_t>(q - 1)];
            const char* kind = !r.aligned_at(j) ? "clipped"
                               : std::toupper(c) == std::toupper(k) ? (c == '*' ? nullptr : "match")
                               : c == '*'                           ? "pad"
                               : k != '*'                           ? "mismatch"
                                                                    : nullptr;
            if (kind && !found.count(kind) && (std::string(kind) != "clipped" || c != '*'))
                found[kind] = drawn_base{r.name, r.pos, q, c};
        }
    }
    ASSERT_EQ(found.size(), 4u) << "the contig holds a match, a mismatch, a pad and a clipped base";
    std::string script = style_function;
    for (const auto& [kind, b] : found) script += style_call(kind, b);
    script += "document.getElementById('dots').click();\n";
    for (const auto& [kind, b] : found) script += style_call("dots-" + kind, b);
    script += "finish();\n";
    const browser_results r = run_in_browser(report / ("contig-" + std::to_string(ordinal) + ".html"), script, false);
    ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
    EXPECT_EQ(r.values.at("errors"), "");
    for (const auto& [kind, b] : found) {
        EXPECT_EQ(drawn_char(r.values.at(kind)), b.c) << kind << ": " << r.values.at(kind);
        if (kind != "match") {
            EXPECT_NE(look(r.values.at(kind)), look(r.values.at("match"))) << kind;
        }
    }
    EXPECT_NE(look(r.values.at("mismatch")), look(r.values.at("clipped")));
    // With dots, a matching base is a dot; the others keep their letters.
    EXPECT_EQ(drawn_char(r.values.at("dots-match")), '.');
    for (const char* kind : {"mismatch", "pad", "clipped"})
        EXPECT_EQ(drawn_char(r.values.at(std::string("dots-") + kind)), found[kind].c) << kind;
}

TEST_F(ReportWindow, QualityScoresShadeTheBasesOfReadsWithFlowgrams) {
    const fs::path ace = assembly(scratch_dir(), "example/example.ace", "example/example.sff");
    const fs::path report = report_of(ace, ace.parent_path() / "report");
    const ace_contig contig = read_ace(ace)[0];
    const auto entries = read_reads_file(ace.parent_path() / "example.reads");
    // Two bases equal to the consensus of quality 30 or more and one below
    // 20, in the aligned part of one read whose called bases stand among its bases.
    std::vector<drawn_base> high, low;
    std::string read_name;
    for (const ace_read& r : contig.reads) {
        high.clear();
        low.clear();
        const reads_entry& e = entries.at(contig.name).at(r.name);
        const std::vector<int> places = called_places(r, e);
        for (int64_t j = 0; j < static_cast<int64_t>(places.size()); ++j) {
            const int64_t q = r.pos + j;
            if (places[static_cast<std::size_t>(j)] < 0 || !r.aligned_at(j) || q < 1 ||
                q > static_cast<int64_t>(contig.consensus.size()) ||
                std::toupper(r.seq[static_cast<std::size_t>(j)]) != std::toupper(contig.consensus[static_cast<std::size_t>(q - 1)]))
                continue;
            const int quality = e.quals[static_cast<std::size_t>(places[static_cast<std::size_t>(j)])];
            if (quality >= 30) high.push_back(drawn_base{r.name, r.pos, q, r.seq[static_cast<std::size_t>(j)]});
            if (quality < 20) low.push_back(drawn_base{r.name, r.pos, q, r.seq[static_cast<std::size_t>(j)]});
        }
        if (high.size() >= 2 && !low.empty()) {
            read_name = r.name;
            break;
        }
    }
    ASSERT_FALSE(read_name.empty()) << "no read of the example has bases of both kinds";
    std::string script = std::string(style_function) + style_call("high0", high[0]) + style_call("high1", high[1]) +
                         style_call("low", low[0]) + "finish();\n";
    const browser_results r = run_in_browser(report / "contig-1.html", script, false);
    ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
    EXPECT_EQ(r.values.at("errors"), "");
    EXPECT_EQ(look(r.values.at("high0")), look(r.values.at("high1")));
    EXPECT_NE(look(r.values.at("high0")), look(r.values.at("low"))) << read_name;
}

TEST_F(ReportWindow, TheAddressKeepsTheWindowAndTheOpenRead) {
    const fs::path ace = assembly(scratch_dir(), "example/example.ace", "example/example.sff");
    const fs::path report = report_of(ace, ace.parent_path() / "report");
    const ace_contig contig = read_ace(ace)[0];
    const std::string name = contig.reads[3].name;
    const browser_results moved = run_in_browser(report / "contig-1.html", R"(
var R = window.pelkrinReport;
R.show(37, 150);
R.openRead(')" + name + R"(', function () { setTimeout(function () { put('hash', location.hash); finish(); }, 500); });
)", true);
    ASSERT_TRUE(moved.values.count("errors")) << moved.dom.substr(0, 2000);
    EXPECT_EQ(moved.values.at("errors"), "");
    EXPECT_EQ(moved.values.at("hash"), "#pos=37&width=150&read=" + name);

    constexpr const char* opened = R"(
var R = window.pelkrinReport, st = R.state();
setTimeout(function () {
  put('start', st.start);
  put('width', st.width);
  put('open', st.openRead >= 0 ? R.readIndex(document.getElementById('flowgram-name').textContent) === st.openRead : false);
  put('name', document.getElementById('flowgram-name').textContent);
  put('shown', !document.getElementById('flowgram').hidden);
  put('bars', document.querySelectorAll('#flowgram-svg rect.bar').length);
  put('inWindow', R.windowReads().indexOf(document.getElementById('flowgram-name').textContent) >= 0);
  finish();
}, 500);
)";
    const browser_results back = run_in_browser(report / "contig-1.html", opened, true, moved.values.at("hash"), "");
    ASSERT_TRUE(back.values.count("errors")) << back.dom.substr(0, 2000);
    EXPECT_EQ(back.values.at("errors"), "");
    EXPECT_EQ(back.values.at("start"), "37");
    EXPECT_EQ(back.values.at("width"), "150");
    EXPECT_EQ(back.values.at("name"), name);
    EXPECT_EQ(back.values.at("open"), "true");
    EXPECT_EQ(back.values.at("shown"), "true");
    EXPECT_NE(back.values.at("bars"), "0");

    // A width that is no whole number is taken whole.
    const browser_results fractional = run_in_browser(report / "contig-1.html", opened, true, "#width=50.5&read=" + name, "");
    ASSERT_TRUE(fractional.values.count("errors")) << fractional.dom.substr(0, 2000);
    EXPECT_EQ(fractional.values.at("errors"), "");
    EXPECT_EQ(fractional.values.at("width"), "50");

    // A link that names only a read far from position 1 brings it into the window.
    const ace_read* far = &contig.reads[0];
    for (const ace_read& r : contig.reads)
        if (r.pos > far->pos) far = &r;
    const browser_results linked = run_in_browser(report / "contig-1.html", opened, true, "#read=" + far->name, "");
    ASSERT_TRUE(linked.values.count("errors")) << linked.dom.substr(0, 2000);
    EXPECT_EQ(linked.values.at("name"), far->name);
    EXPECT_EQ(linked.values.at("inWindow"), "true");
}

TEST_F(ReportWindow, TheDefaultWidthFitsThePageAndIsAtLeast400OnAWideScreen) {
    const fs::path ace = assembly(scratch_dir(), "tests/data/mira/sim454_out.ace", "", true);
    const fs::path report = report_of(ace, ace.parent_path() / "report");
    constexpr const char* measure = R"(
var R = window.pelkrinReport, view = document.getElementById('base-view'), probe = document.createElement('span');
probe.textContent = '0123456789';
view.appendChild(probe);
var cw = probe.getBoundingClientRect().width / 10;
view.removeChild(probe);
put('width', R.state().width);
put('fits', R.state().width * cw <= view.clientWidth);
put('hash', location.hash);
finish();
)";
    const browser_results narrow = run_in_browser(report / "contig-1.html", measure, false, "", "900,700");
    ASSERT_TRUE(narrow.values.count("errors")) << narrow.dom.substr(0, 2000);
    EXPECT_EQ(narrow.values.at("errors"), "");
    EXPECT_EQ(narrow.values.at("fits"), "true");
    EXPECT_GE(std::stoi(narrow.values.at("width")), 40);
    const browser_results wide = run_in_browser(report / "contig-1.html", measure, false, "", "1920,1080");
    ASSERT_TRUE(wide.values.count("errors")) << wide.dom.substr(0, 2000);
    EXPECT_GE(std::stoi(wide.values.at("width")), 400);
}

// The first run of at least three equal letters of the consensus, its first
// position (1-based) and length, away from the contig's ends.
std::pair<int64_t, int64_t> homopolymer(const std::string& consensus) {
    for (std::size_t i = 40; i + 40 < consensus.size(); ++i) {
        std::size_t n = 1;
        while (i + n < consensus.size() && consensus[i + n] == consensus[i]) ++n;
        if (n >= 3 && consensus[i] != '*' && (i == 0 || consensus[i - 1] != consensus[i])) return {static_cast<int64_t>(i) + 1, static_cast<int64_t>(n)};
    }
    return {0, 0};
}

TEST_F(ReportWindow, TheColumnOfAHomopolymerMarksEveryCoveringReadAtItsSignal) {
    const fs::path dir = scratch_dir();
    const fs::path ace = assembly(dir, "tests/data/mira/sim454_out.ace", "tests/data/mira/sim454.sff", true);
    const fs::path report = report_of(ace, dir / "report");
    const ace_contig contig = read_ace(ace)[0];
    const auto entries = read_reads_file(dir / "sim454_out.reads");
    const auto [q1, n] = homopolymer(contig.consensus);
    ASSERT_GT(n, 0);
    const char letter = contig.consensus[static_cast<std::size_t>(q1 - 1)];
    // The consensus flow of the run, from Pelkrin-view's flow-consensus table.
    const program_result table = run({PELKRIN_VIEW_BINARY, "-m", "flow-consensus", ace.string(), contig.name});
    ASSERT_EQ(table.status, 0) << table.err;
    int64_t flow = -1;
    for (const std::string& line : lines_of(table.out)) {
        const std::vector<std::string> w = words(line);
        if (w.empty() || w[0] != std::to_string(q1 - 1)) continue;
        for (std::size_t i = 1; i < w.size(); ++i)
            if (w[i][0] == letter) flow = std::stoll(w[i].substr(2));
    }
    ASSERT_GE(flow, 0);

    // Each read that spans the run with a position to spare on either side,
    // with the run's letters in it: the signal of the flow that called them.
    std::map<std::string, std::pair<int, int>> expected;  // read: its flow, value
    std::set<std::string> away;  // reads that do not reach the run
    for (const ace_read& r : contig.reads) {
        if (r.end() < q1 || r.pos > q1 + n - 1) away.insert(r.name);
        if (r.pos > q1 - 1 || r.end() < q1 + n) continue;
        const auto e = entries.at(contig.name).find(r.name);
        if (e == entries.at(contig.name).end()) continue;
        const std::vector<int> places = called_places(r, e->second);
        const int64_t j = q1 - r.pos;
        if (places.empty() || r.seq[static_cast<std::size_t>(j)] != letter || places[static_cast<std::size_t>(j)] < 0) continue;
        const int f = e->second.flows[static_cast<std::size_t>(places[static_cast<std::size_t>(j)])];
        expected[r.name] = {f, e->second.values[static_cast<std::size_t>(f)]};
    }
    ASSERT_GE(expected.size(), 3u);

    const browser_results r = run_in_browser(report / "contig-1.html", R"(
var R = window.pelkrinReport;
R.show()" + std::to_string(q1 - 30) + R"(, 80);
R.openColumn()" + std::to_string(flow) + R"();
function wait() {
  if (!R.flowgramsLoaded()) { setTimeout(wait, 50); return; }
  setTimeout(function () {
    put('marks', Array.prototype.map.call(document.querySelectorAll('#column-svg circle.mark'), function (m) {
      return m.getAttribute('data-read') + '\t' + m.getAttribute('data-flow') + '\t' + m.getAttribute('data-value') + '\t' + m.getAttribute('data-called');
    }).join('\n'));
    put('counts', Array.prototype.map.call(document.querySelectorAll('#column-counts td'), function (td) {
      return td.getAttribute('data-length') + ':' + td.textContent; }).join(' '));
    put('name', document.getElementById('column-name').textContent);
    put('lines', document.querySelectorAll('#column-svg line.length').length);
    put('hidden', document.getElementById('column').hidden);
    put('hash', location.hash);
    finish();
  }, 300);
}
wait();
)", true);
    ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
    EXPECT_EQ(r.values.at("errors"), "");
    EXPECT_EQ(r.values.at("hidden"), "false");
    EXPECT_NE(r.values.at("name").find("flow " + std::to_string(flow + 1) + " of the consensus (" + std::string(1, letter) + ")"),
              std::string::npos) << r.values.at("name");
    EXPECT_GE(std::stoi(r.values.at("lines")), 4);  // homopolymer lengths 1, 2, 3, 4...
    // The address names the column, counted from 1, and opens it again.
    const std::string hash = "#pos=" + std::to_string(q1 - 30) + "&width=80&column=" + std::to_string(flow + 1);
    EXPECT_EQ(r.values.at("hash"), hash);
    const browser_results again = run_in_browser(report / "contig-1.html", R"(
setTimeout(function () {
  put('column', window.pelkrinReport.state().column);
  put('hidden', document.getElementById('column').hidden);
  finish();
}, 100);
)", true, hash, "");
    ASSERT_TRUE(again.values.count("errors")) << again.dom.substr(0, 2000);
    EXPECT_EQ(again.values.at("column"), std::to_string(flow));
    EXPECT_EQ(again.values.at("hidden"), "false");
    std::map<std::string, int> marks_of;
    std::map<int, int> called_counts;
    for (const std::string& line : lines_of(r.values.at("marks"))) {
        std::istringstream in(line);
        std::string name, f, v, called;
        std::getline(in, name, '\t');
        std::getline(in, f, '\t');
        std::getline(in, v, '\t');
        std::getline(in, called, '\t');
        ++marks_of[name];
        ++called_counts[std::stoi(called)];
        EXPECT_FALSE(away.count(name)) << name << " does not reach the run but has a mark";
        const auto e = expected.find(name);
        if (e == expected.end()) continue;
        EXPECT_EQ(f, std::to_string(e->second.first)) << name;
        EXPECT_EQ(v, std::to_string(e->second.second)) << name;
        // The bases called at that flow, from the reads file.
        const reads_entry& entry = entries.at(contig.name).at(name);
        EXPECT_EQ(std::stoi(called), std::count(entry.flows.begin(), entry.flows.end(), e->second.first)) << name;
    }
    for (const auto& [name, place] : expected) EXPECT_EQ(marks_of[name], 1) << name << " has no single mark";
    for (const auto& [name, count] : marks_of) EXPECT_EQ(count, 1) << name;
    std::string counts;
    for (const auto& [called, count] : called_counts) counts.append(counts.empty() ? "" : " ").append(std::to_string(called)).append(":").append(std::to_string(count));
    EXPECT_EQ(r.values.at("counts"), counts);
}

TEST_F(ReportWindow, AFlowgramMarksItsKeyFlowsClippedRangeFlowNumbersAndPlace) {
    const fs::path dir = scratch_dir();
    const fs::path ace = assembly(dir, "example/example.ace", "example/example.sff");
    const fs::path report = report_of(ace, dir / "report");
    const ace_contig contig = read_ace(ace)[0];
    const auto entries = read_reads_file(dir / "example.reads");
    for (const bool complemented : {false, true}) {
        const ace_read* read = nullptr;
        for (const ace_read& r : contig.reads)
            if (r.complemented == complemented && !read) read = &r;
        ASSERT_NE(read, nullptr);
        const reads_entry& e = entries.at(contig.name).at(read->name);
        const browser_results r = run_in_browser(report / "contig-1.html", R"(
window.pelkrinReport.openRead(')" + read->name + R"(', function () {
  var q = function (s) { return document.querySelectorAll(s); };
  put('key', Array.prototype.map.call(q('#flowgram-svg rect.key'), function (b) { return b.getAttribute('data-from') + '-' + b.getAttribute('data-to'); }).join(' '));
  put('outside', Array.prototype.map.call(q('#flowgram-svg rect.outside'), function (b) { return b.getAttribute('data-from') + '-' + b.getAttribute('data-to'); }).join(' '));
  put('numbers', Array.prototype.map.call(q('#flowgram-svg text.flow-number'), function (t) { return t.textContent; }).join(' '));
  put('place', document.getElementById('flowgram-place').textContent);
  finish();
});
)", true);
        ASSERT_TRUE(r.values.count("errors")) << r.dom.substr(0, 2000);
        EXPECT_EQ(r.values.at("errors"), "");
        EXPECT_EQ(r.values.at("key"), "0-7");
        const int first = e.flows.front(), last = e.flows.back(), flows = static_cast<int>(e.values.size());
        std::string outside = first > 0 ? "0-" + std::to_string(first - 1) : "";
        if (last + 1 < flows) outside.append(outside.empty() ? "" : " ").append(std::to_string(last + 1)).append("-").append(std::to_string(flows - 1));
        EXPECT_EQ(r.values.at("outside"), outside);
        std::string numbers = "1";
        for (int f = 10; f <= flows; f += 10) numbers.append(" ").append(std::to_string(f));
        EXPECT_EQ(r.values.at("numbers"), numbers);
        const std::string place = std::string(complemented ? "Complemented" : "Forward") + " in contig " + contig.name +
                                  ": padded positions " + std::to_string(read->pos) + " to " + std::to_string(read->end()) +
                                  ", aligned from " + std::to_string(read->pos + first_aligned(*read)) + " to " +
                                  std::to_string(read->pos + last_aligned(*read));
        EXPECT_EQ(r.values.at("place").rfind(place, 0), 0u) << r.values.at("place");
    }
}

}  // namespace
}  // namespace pelkrin::test
