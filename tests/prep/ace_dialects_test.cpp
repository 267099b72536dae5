// The repaired ACE file: for every dialect, what the lenient reading finds in
// the input is exactly what Pelkrin's reader finds in the output.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "files.h"
#include "lenient/ace_layout.h"
#include "prep/ace_rewrite.h"
#include "prep/string_output.h"
#include "prep_fixture.h"

namespace pelkrin::test {
namespace {

struct dialect_case {
    std::string name;
    std::function<std::string()> text;
};

std::string data(const char* leaf) { return read_file(data_file(leaf)); }

std::vector<std::string> originals() {
    return {data("consed_sample.ace"), data("contig1.ace"), read_file(source_file("example/example.ace")),
            data("seq.cap.ace"), data("mira/sim454_out.ace")};
}

// Removes every DS line.
std::string without_ds(const std::string& text) {
    std::string out;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        end = end == std::string::npos ? text.size() : end + 1;
        if (text.compare(at, 3, "DS ") != 0 && text.compare(at, 3, "DS\n") != 0) out.append(text, at, end - at);
        at = end;
    }
    return out;
}

void expect_same_reading(const std::string& input) {
    std::string repaired;
    const auto lenient = lenient_contigs(input, repaired);
    ASSERT_FALSE(lenient.empty());
    const auto strict = strict_contigs(repaired);
    ASSERT_EQ(lenient.size(), strict.size());
    for (std::size_t i = 0; i < lenient.size(); ++i) {
        SCOPED_TRACE(lenient[i].name);
        EXPECT_EQ(lenient[i].name, strict[i].name);
        EXPECT_TRUE(lenient[i].consensus == strict[i].consensus);
        EXPECT_TRUE(lenient[i].reads == strict[i].reads);
        EXPECT_TRUE(lenient[i] == strict[i]);
    }
    // Repairing the repaired file changes nothing.
    std::string again;
    lenient_contigs(repaired, again);
    EXPECT_TRUE(again == repaired);
}

TEST(PrepAceDialects, EveryDialectReadsAlikeAfterRepair) {
    for (const std::string& text : originals()) {
        SCOPED_TRACE(text.substr(0, 40));
        expect_same_reading(text);
        expect_same_reading(with_crlf(text));
        expect_same_reading(with_white_lines(text));
        expect_same_reading(with_crlf(with_white_lines(text)));
        expect_same_reading(without_ds(text));
    }
}

TEST(PrepAceDialects, PelkrinLayoutNeedsNoEdit) {
    for (const char* leaf : {"consed_sample.ace", "contig1.ace"}) {
        std::string repaired;
        const std::string text = data(leaf);
        ace_options options;
        const auto f = read_ace(bytes_of(text), leaf, options);
        EXPECT_TRUE(f.pelkrin_reads_alike()) << leaf;
        EXPECT_FALSE(f.cr_lf.seen());
    }
}

TEST(PrepAceDialects, ConsedSampleIsCopiedUnchanged) {
    std::string repaired;
    const std::string text = data("consed_sample.ace");
    lenient_contigs(text, repaired);
    EXPECT_TRUE(repaired == text);
}

TEST(PrepAceDialects, MiraSignsAreFound) {
    ace_options options;
    const auto f = read_ace(bytes_of(data("mira/sim454_out.ace")), "m.ace", options);
    EXPECT_EQ(f.blank_before_ds.count, 120u);
    EXPECT_EQ(f.blank_before_ds.first_line, 325u);
    EXPECT_FALSE(f.no_base_segments.seen());
    EXPECT_FALSE(f.blank_after_bs.seen());
    EXPECT_EQ(f.contigs, 1u);
    EXPECT_EQ(f.reads, 120u);
    EXPECT_FALSE(f.as_counts_wrong());
}

TEST(PrepAceDialects, Cap3GetsBaseSegmentsFromReadsOverThem) {
    std::string repaired;
    const auto lenient = lenient_contigs(data("seq.cap.ace"), repaired);
    ASSERT_EQ(lenient.size(), 1u);
    const contig& c = lenient[0];
    EXPECT_GT(c.seg_num, 0);
    // Each BS line lies within the read it names.
    std::size_t at = 0;
    std::int64_t next = 1;
    while ((at = repaired.find("\nBS ", at)) != std::string::npos) {
        std::istringstream line(repaired.substr(at + 4, repaired.find('\n', at + 1) - at - 4));
        std::int64_t first = 0;
        std::int64_t last = 0;
        std::string read;
        line >> first >> last >> read;
        EXPECT_EQ(first, next);
        next = last + 1;
        const READ& r = c.reads.at(read);
        EXPECT_GE(first, r.pos);
        EXPECT_LE(last, r.pos + r.len - 1);
        ++at;
    }
    EXPECT_EQ(next, static_cast<std::int64_t>(c.consensus.size()) + 1);
}

TEST(PrepAceDialects, AsCountsAreMadeToMatch) {
    std::string text = data("consed_sample.ace");
    text.replace(0, text.find('\n'), "AS 7 99");
    std::string repaired;
    const auto found = lenient_contigs(text, repaired);
    EXPECT_EQ(repaired.substr(0, repaired.find('\n')), "AS 1 8");
    EXPECT_EQ(found.size(), 1u);
}

TEST(PrepAceDialects, SmallerMendingsReadAlike) {
    // No BQ record, an empty line among the AF lines, a CO line counting 3
    // reads for 2, BS lines running into an RD line, a stray line outside the
    // contigs and one after the last RD record.
    const std::string text =
        "AS 1 2\n\nCO c1 8 3 1 U\nACGT*ACG\n\nAF r1 U 1\n\nAF r2 C 3\nBS 1 8 r1\nRD r1 8 0 0\nACGT*ACG\n\n"
        "QA 1 8 1 8\nDS x\n\nRD r2 6 0 0\nGT*ACG\n\nQA 1 6 2 5\nDS y\nXX stray\n\nYY outside\n";
    ace_options options;
    const auto f = read_ace(bytes_of(text), "s.ace", options);
    EXPECT_TRUE(f.no_base_qualities.seen());
    EXPECT_TRUE(f.split_af.seen());
    EXPECT_TRUE(f.read_counts.seen());
    EXPECT_TRUE(f.blank_after_bs.seen());
    EXPECT_EQ(f.stray.count, 2u);
    EXPECT_FALSE(f.pelkrin_reads_alike());
    EXPECT_THROW(strict_contigs(text), std::exception);
    expect_same_reading(text);
    std::string repaired;
    const auto found = lenient_contigs(text, repaired);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].reads.at("r2").align_start, 2);
    EXPECT_EQ(found[0].reads.at("r2").uncomplemented, 0);
    EXPECT_EQ(repaired.find("stray"), std::string::npos);
    EXPECT_EQ(repaired.find("outside"), std::string::npos);
}

// A run of stray lines is one edit, however long: a file of a million of
// them is repaired with one edit, and every stray line is dropped, the lines
// around the run kept.
TEST(PrepAceDialects, ARunOfStrayLinesIsOneEdit) {
    const std::string contig_text = data("consed_sample.ace");
    std::string text = contig_text;
    for (int i = 0; i < 1000000; ++i) text.append("XX stray\n");
    text.append("\nYY outside\n");
    ace_options options;
    const auto bytes = bytes_of(text);
    const auto f = read_ace(bytes, "s.ace", options);
    EXPECT_EQ(f.stray.count, 1000001u);
    EXPECT_LE(f.edits.size(), 3u);
    prep::string_output out;
    prep::write_ace(bytes, f.edits, out);
    EXPECT_EQ(out.text().find("stray"), std::string::npos);
    EXPECT_EQ(out.text().find("outside"), std::string::npos);
    EXPECT_EQ(out.text().substr(0, contig_text.size()), contig_text);
    // A stray run between two contigs: the contig after it is kept whole.
    std::string two = contig_text;
    two.append("XX stray\nXX stray\n\n").append(contig_text.substr(contig_text.find("CO ")));
    std::string repaired;
    const auto found = lenient_contigs(two, repaired);
    EXPECT_EQ(found.size(), 2u);
    EXPECT_EQ(repaired.find("stray"), std::string::npos);
    expect_same_reading(two);
}

TEST(PrepAceDialects, ContigsNoReadingMakesSenseOfAreRefused) {
    // An RD record of a read with no AF line.
    const std::string text =
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n1 1 1 1\n\nAF r1 U 1\nBS 1 4 r1\n\nRD r9 4 0 0\nACGT\n\n"
        "QA 1 4 1 4\nDS\n\n";
    ace_options options;
    const auto f = read_ace(bytes_of(text), "m.ace", options);
    EXPECT_EQ(f.malformed, "contig c1: RD record of read r9, which has no AF line");
    EXPECT_EQ(f.malformed_line, 12u);
}

TEST(PrepAceDialects, CutOffFileKeepsCompleteContigsOnRequest) {
    const std::string text = data("contig1.ace");
    const std::size_t second = text.find("\nCO Contig2");
    ASSERT_NE(second, std::string::npos);
    const std::string cut = text.substr(0, second + 400);
    ace_options options;
    const auto f = read_ace(bytes_of(cut), "c.ace", options);
    EXPECT_TRUE(f.cut_off);
    EXPECT_EQ(f.cut_contig, "Contig2");
    std::string repaired;
    const auto kept = lenient_contigs(cut, repaired, true);
    ASSERT_EQ(kept.size(), 1u);
    const auto strict = strict_contigs(repaired);
    ASSERT_EQ(strict.size(), 1u);
    EXPECT_TRUE(kept[0] == strict[0]);
    EXPECT_EQ(repaired.find("Contig2"), std::string::npos);
}

TEST(PrepAceDialects, EveryCutOfAFileIsRefusedOrReadAlike) {
    // Wherever the file ends, the reading either says it is cut off or
    // reads what Pelkrin's reader then reads.
    const std::string text = data("consed_sample.ace");
    for (std::size_t n = 0; n < text.size(); n += 97) {
        const std::string cut = text.substr(0, n);
        SCOPED_TRACE(n);
        try {
            ace_options options;
            const auto f = read_ace(bytes_of(cut), "c.ace", options);
            if (f.cut_off || !f.malformed.empty() || f.contigs == 0) continue;
            expect_same_reading(cut);
        } catch (const std::exception&) {
        }
    }
}

}  // namespace
}  // namespace pelkrin::test
