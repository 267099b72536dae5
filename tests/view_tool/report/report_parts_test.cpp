// Pieces of Pelkrin-view's report that need no browser: the JSON text of
// names, the contig's summary and depth, and the flowgram files.
#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdint>

#include "files.h"
#include "reads_format/qdx_index.h"
#include "view_tool/report/json_text.h"
#include "view_tool/report/interrupt_guard.h"
#include "view_tool/report/reads_file_range.h"
#include "view_tool/report/report_folder.h"
#include "view_tool/report/report_flowgrams.h"
#include "view_tool/report/report_pages.h"
#include "view_tool/report/report_summary.h"

namespace pelkrin::test {
namespace {

std::string json(std::string_view text) {
    std::string out;
    append_json_string(out, text);
    return out;
}

// A file written again holds the new text alone, whether the earlier text
// was longer or shorter.
TEST(ReportFiles, AFileWrittenAgainHoldsTheNewTextAlone) {
    const std::filesystem::path folder = scratch_subdir("report-files");
    interrupt_guard guard;
    report_folder report((folder / "r").string(), guard);
    const std::filesystem::path page = folder / "r" / "contig-1.html";
    report.write("contig-1.html", "a longer earlier text\n");
    report.write("contig-1.html", "short\n");
    report.put_in_place();
    EXPECT_EQ(read_file(page), "short\n");
    report_folder again((folder / "r").string(), guard);
    again.write("contig-1.html", "longer than the one before\n");
    again.write("contig-1.html", "");
    again.write("contig-1.html", "three\n");
    again.put_in_place();
    EXPECT_EQ(read_file(page), "three\n");
}

// A contig's block is read up to its last entry, the next contig's header,
// or the end given, and no further: a location index that lists one offset
// for every contig, or only some contigs, costs no read to the end of a
// large reads file per contig.
TEST(ReportFiles, AContigBlockEndsWithItsEntries) {
    const std::filesystem::path folder = scratch_subdir("report-blocks");
    const std::string first = "r1\t1\n30\t31\n0\t1\n100\t95\nr2\t1\n20\n2\n105\n";
    const std::string second = ">Contig2\t1\t3\nr3\t1\n40\n1\n99\n";
    std::string tail(3u << 20, '7');  // more than one piece read past the contigs
    for (std::size_t at = 79; at < tail.size(); at += 80) tail[at] = '\n';
    write_file(folder / "asm.reads", first + second + tail);
    const int fd = ::open((folder / "asm.reads").c_str(), O_RDONLY);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(read_contig_block(fd, 0, -1, 8), first);                  // its two entries of four lines
    EXPECT_EQ(read_contig_block(fd, 0, -1, 5), first.substr(0, 27));    // fewer lines asked for
    EXPECT_EQ(read_contig_block(fd, 0, -1, UINT64_MAX), first);         // stops at the next header
    EXPECT_EQ(read_contig_block(fd, 0, 10, 8), first.substr(0, 10));    // the end given comes first
    const auto third = static_cast<int64_t>((first + second).size() - 13);
    EXPECT_EQ(read_contig_block(fd, third, -1, 4), second.substr(second.size() - 13));
    const auto past = static_cast<int64_t>((first + second).size());
    EXPECT_EQ(read_contig_block(fd, past, -1, UINT64_MAX), tail);       // no header after: to the end
    EXPECT_EQ(read_contig_block(fd, past, -1, 2), tail.substr(0, 160));
    EXPECT_EQ(read_contig_block(fd, 0, -1, 0), "");
    ::close(fd);
}

TEST(ReportJson, NamesCannotCloseAScriptOrAString) {
    EXPECT_EQ(json("Contig1"), "\"Contig1\"");
    EXPECT_EQ(json("</script>"), "\"\\u003c/script\\u003e\"");
    EXPECT_EQ(json("a\"b'c\\d&"), "\"a\\\"b\\u0027c\\\\d\\u0026\"");
    EXPECT_EQ(json(std::string("\n\t\x01", 3)), "\"\\n\\t\\u0001\"");
}

contig two_reads() {
    contig c;
    c.name = "C";
    c.consensus = {'A', 'C', 'G', 'T', 'A', 'C', 'G', 'T', 'A', 'C'};
    c.reads["r1"] = READ{"r1", -1, 5, {'G', 'T', 'A', 'C', 'G'}, 0, 0, 0};  // covers 1 to 3
    c.reads["r2"] = READ{"r2", 3, 4, {'G', 'T', 'A', 'C'}, 0, 0, 0};       // covers 3 to 6
    return c;
}

TEST(ReportSummary, DepthCountsReadsWithinTheConsensus) {
    const contig_summary s = summarise_contig(two_reads(), 1000);
    EXPECT_EQ(s.length, 10);
    EXPECT_EQ(s.reads, 2);
    EXPECT_DOUBLE_EQ(s.mean_depth, 0.7);
    EXPECT_EQ(s.max_depth, 2);
    EXPECT_EQ(s.depth_bins, (std::vector<int32_t>{1, 1, 2, 1, 1, 1, 0, 0, 0, 0}));
    const contig_summary binned = summarise_contig(two_reads(), 3);
    EXPECT_EQ(binned.bin_width, 4);
    EXPECT_EQ(binned.depth_bins, (std::vector<int32_t>{2, 1, 0}));
}

// Pads are no bases: a contig's unpadded length leaves them out.
TEST(ReportSummary, TheUnpaddedLengthLeavesPadsOut) {
    contig c = two_reads();
    EXPECT_EQ(summarise_contig(c, 1000).unpadded_length, 10);
    c.consensus = {'*', 'A', 'C', '*', '*', 'G', 'T', 'a', 'n', '*'};
    const contig_summary s = summarise_contig(c, 1000);
    EXPECT_EQ(s.length, 10);
    EXPECT_EQ(s.unpadded_length, 6);
    c.consensus = {'*', '*'};
    EXPECT_EQ(summarise_contig(c, 1000).unpadded_length, 0);
}

contig_summary of_lengths(int64_t padded, int64_t unpadded, int64_t reads) {
    contig_summary s;
    s.length = padded;
    s.unpadded_length = unpadded;
    s.reads = reads;
    return s;
}

// Worked by hand: 2 + 3 + ... + 10 = 54; from the longest, 10 + 9 + 8 = 27
// reaches half of it, so the N50 is 8.
TEST(ReportSummary, N50IsTheLengthAtWhichTheLongestContigsHoldHalfTheTotal) {
    EXPECT_EQ(n50_length({2, 3, 4, 5, 6, 7, 8, 9, 10}), 8);
    EXPECT_EQ(n50_length({10, 2, 9, 3, 8, 4, 7, 5, 6}), 8);  // in any order
    EXPECT_EQ(n50_length({7}), 7);
    EXPECT_EQ(n50_length({}), 0);
    EXPECT_EQ(n50_length({0, 0}), 0);
    EXPECT_EQ(n50_length({5, 5}), 5);
    EXPECT_EQ(n50_length({1, 1, 4}), 4);     // 4 of 6: at least half
    EXPECT_EQ(n50_length({2, 2, 1}), 2);     // 2 of 5 is short of half; 4 of 5 is not
    EXPECT_EQ(n50_length({3, 3, 2, 2}), 3);  // 3 of 10, then 6
    EXPECT_EQ(n50_length({1, 1, 1, 1, 6}), 6);
}

TEST(ReportSummary, TotalsCountUnpaddedLengthsAndEveryContigsReads) {
    std::vector<contig_summary> contigs;
    for (int64_t n = 2; n <= 10; ++n) contigs.push_back(of_lengths(n + 3, n, n - 1));  // 3 pads each
    const assembly_totals t = total_up(contigs);
    EXPECT_EQ(t.contigs, 9);
    EXPECT_EQ(t.reads, 45);
    EXPECT_EQ(t.length, 54);
    EXPECT_EQ(t.n50, 8);

    const assembly_totals one = total_up({of_lengths(12, 9, 1)});
    EXPECT_EQ(one.contigs, 1);
    EXPECT_EQ(one.reads, 1);
    EXPECT_EQ(one.length, 9);
    EXPECT_EQ(one.n50, 9);

    const assembly_totals none = total_up({});
    EXPECT_EQ(none.contigs, 0);
    EXPECT_EQ(none.reads, 0);
    EXPECT_EQ(none.length, 0);
    EXPECT_EQ(none.n50, 0);

    // Padded, the longest contig would hold half of the total alone.
    const assembly_totals pads = total_up({of_lengths(100, 10, 2), of_lengths(40, 30, 3), of_lengths(30, 30, 4)});
    EXPECT_EQ(pads.length, 70);
    EXPECT_EQ(pads.n50, 30);
    EXPECT_EQ(pads.reads, 9);
}

// The text between `<p class="facts" id="ID">` and `</p>` on a page.
std::string facts(const std::string& page, const std::string& id) {
    const std::string open = "<p class=\"facts\" id=\"" + id + "\">";
    const std::size_t at = page.find(open);
    if (at == std::string::npos) return "(no paragraph " + id + ")";
    const std::size_t from = at + open.size();
    return page.substr(from, page.find("</p>", from) - from);
}

TEST(ReportPages, TheIndexStatesTheTotalsAndWhetherThereAreFlowgrams) {
    const std::vector<contig_summary> contigs = {of_lengths(260, 250, 20), of_lengths(250, 239, 20),
                                                 of_lengths(215, 212, 17)};
    const std::string with = index_page(contigs, "a.ace", {"a.reads", ""});
    EXPECT_EQ(facts(with, "totals"), "3 contigs, 57 reads; total length 701 bases, N50 239 bases (pads not counted).");
    EXPECT_EQ(facts(with, "flowgram-state"),
              "Flowgrams: from a.reads; click a read on a contig's page to see its flowgram.");
    // Both above the plot of the lengths.
    EXPECT_LT(with.find("id=\"flowgram-state\""), with.find("<svg"));
    EXPECT_LT(with.find("id=\"totals\""), with.find("<svg"));

    const std::string without = index_page(contigs, "a.ace", {"", "No flowgrams: there is none."});
    EXPECT_EQ(facts(without, "flowgram-state"), "No flowgrams: there is none.");
    EXPECT_EQ(facts(without, "totals"), facts(with, "totals"));

    EXPECT_EQ(facts(index_page({of_lengths(3, 1, 1)}, "a.ace", {}), "totals"),
              "1 contig, 1 read; total length 1 base, N50 1 base (pads not counted).");
    EXPECT_EQ(facts(index_page({}, "a.ace", {}), "totals"),
              "0 contigs, 0 reads; total length 0 bases, N50 0 bases (pads not counted).");
}

TEST(ReportFlowgrams, SplitsTheReadsIntoFilesAndPlacesEachRead) {
    const contig c = two_reads();
    const std::string block = "r1\t1\n30\t31\n0\t1\n100\t200\nr2\t1\n\n\n0\t0\n>Next\t0\t3\n";
    const qdx_entry entry{"C", 0, 2, 3};
    const contig_flowgrams f = contig_flowgram_files(c, block, entry, 1);
    ASSERT_EQ(f.files.size(), 2u);
    EXPECT_EQ(f.files[0], "pelkrinFlowgrams(0,[[\"r1\",\"30,31\",\"0,1\",\"100,200\"]]);\n");
    EXPECT_EQ(f.files[1], "pelkrinFlowgrams(1,[[\"r2\",\"\",\"\",\"0,0\"]]);\n");
    EXPECT_EQ(f.places.file_of_read, (std::vector<int>{0, 1}));
    EXPECT_EQ(f.places.files, 2);
}

// The entry Pelkrin writes for a read the SFF file does not hold calls a
// base at no flow (or bases the read lacks): it is left out and the read
// placed as not in the SFF file; every other read keeps the file and the
// text it would have had.
TEST(ReportFlowgrams, AnEntryThatIsNotTheReadsOwnIsLeftOut) {
    contig c = two_reads();
    c.reads["r3"] = READ{"r3", 4, 3, {'C', 'G', 'T'}, 0, 0, 0};
    const std::string r1 = "r1\t1\n30\t31\n0\t1\n100\t200\n";
    const std::string r3 = "r3\t1\n33\n3\n1\t2\t3\t104\n";
    const std::string placeholder = "r2\t1\n65\n-1\n5\t7\n";
    const qdx_entry entry{"C", 0, 3, 3};
    const contig_flowgrams all = contig_flowgram_files(c, r1 + "r2\t1\n31\n2\n9\t9\t9\n" + r3, entry, 1);
    const contig_flowgrams f = contig_flowgram_files(c, r1 + placeholder + r3, entry, 1);
    EXPECT_EQ(all.places.file_of_read, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(f.places.file_of_read, (std::vector<int>{0, not_in_sff_file, 2}));
    ASSERT_EQ(f.files.size(), 3u);
    EXPECT_EQ(f.files[0], all.files[0]);
    EXPECT_EQ(f.files[1], "pelkrinFlowgrams(1,[]);\n");
    EXPECT_EQ(f.files[2], all.files[2]);
    EXPECT_EQ(f.places.note, "");

    // Two to a file: r2 shares the first file with r1.
    const contig_flowgrams two = contig_flowgram_files(c, r1 + placeholder + r3, entry, 2);
    ASSERT_EQ(two.files.size(), 2u);
    EXPECT_EQ(two.files[0], "pelkrinFlowgrams(0,[[\"r1\",\"30,31\",\"0,1\",\"100,200\"]]);\n");
    EXPECT_EQ(two.files[1], "pelkrinFlowgrams(1,[[\"r3\",\"33\",\"3\",\"1,2,3,104\"]]);\n");
    EXPECT_EQ(two.places.file_of_read, (std::vector<int>{0, not_in_sff_file, 1}));
}

// A flow index line that is not a values line (a damaged reads file) is
// not judged: the entry is written, with no flow indexes, as before.
TEST(ReportFlowgrams, AnEntryWithADamagedFlowIndexLineIsWritten) {
    const contig_flowgrams f = contig_flowgram_files(two_reads(), "r1\t1\n30\t31\n0\tx\n100\t200\n", qdx_entry{"C", 0, 1, 3}, 10);
    ASSERT_EQ(f.files.size(), 1u);
    EXPECT_EQ(f.files[0], "pelkrinFlowgrams(0,[[\"r1\",\"30,31\",\"\",\"100,200\"]]);\n");
    EXPECT_EQ(f.places.file_of_read, (std::vector<int>{0, -1}));
}

TEST(ReportFlowgrams, WithoutFlowgramLinesThereAreNone) {
    const contig_flowgrams f = contig_flowgram_files(two_reads(), "r1\t1\n30\n", qdx_entry{"C", 0, 1, 1}, 10);
    EXPECT_TRUE(f.files.empty());
    EXPECT_EQ(f.places.file_of_read, (std::vector<int>{-1, -1}));
    EXPECT_NE(f.places.note.find("-f"), std::string::npos);
}

TEST(ReportPages, NamesAreEscapedOnThePages) {
    contig_summary s;
    s.name = "<b>\"x\"";
    s.length = 3;
    const std::string index = index_page({s}, "a<c>.ace", {"a<c>.reads", ""});
    EXPECT_NE(index.find("&lt;b&gt;&quot;x&quot;"), std::string::npos);
    EXPECT_EQ(index.find("<b>"), std::string::npos);
    EXPECT_EQ(index.find("a<c>"), std::string::npos);
    EXPECT_NE(index.find("from a&lt;c&gt;.reads;"), std::string::npos);
    const std::string noted = index_page({s}, "a.ace", {"", "No flowgrams: <i>.qdx & more"});
    EXPECT_NE(noted.find("No flowgrams: &lt;i&gt;.qdx &amp; more"), std::string::npos);
    EXPECT_EQ(noted.find("<i>"), std::string::npos);
    const std::string page = contig_page(s, 1, true, "a.ace", {});
    EXPECT_EQ(page.find("<b>"), std::string::npos);
    EXPECT_NE(page.find("<script src=\"contig-1.js\">"), std::string::npos);
    EXPECT_EQ(page.find("next"), std::string::npos);
    const std::string inline_page = contig_page(s, 1, false, "a.ace", {"pelkrinContig({});", {"pelkrinFlowgrams(0,[]);"}});
    EXPECT_EQ(inline_page.find("contig-1.js"), std::string::npos);
    EXPECT_NE(inline_page.find("<script>pelkrinFlowgrams(0,[]);</script>\n<script>pelkrinContig({});</script>"),
              std::string::npos);
    EXPECT_NE(inline_page.find("contig-2.html\">next"), std::string::npos);
}

}  // namespace
}  // namespace pelkrin::test
