// The edge cases of reading contigs: strict order, tags, blocks and fields.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ace/ace_reader.h"
#include "ace_fixture.h"
#include "capture.h"
#include "files.h"

namespace pelkrin {
namespace {

using test::run_captured;
using test::scratch_ace;
using test::text_of;

std::string tag_message(const std::string& tag) {
    return "Error: tag '" + tag + "' should be not in the ACE file!\n";
}

// Reads contigs until the reader says no more or ends the process; returns
// the outcome together with the contigs it read.
struct read_outcome {
    test::captured run;
    std::vector<contig> contigs;
};

read_outcome read_all(const std::string& text) {
    read_outcome outcome;
    const std::string path = scratch_ace(text);
    outcome.run = run_captured([&] {
        aceReader r(path, test::std_console());
        for (int calls = 0; calls < 20; ++calls) {
            contig c;
            if (!r.next_contig(c)) return;
            outcome.contigs.push_back(c);
        }
        ADD_FAILURE() << "next_contig kept returning true";
    });
    return outcome;
}

void expect_tag_exit(const read_outcome& outcome, const std::string& tag) {
    ASSERT_TRUE(outcome.run.exit_status.has_value()) << "expected the tag message naming " << tag;
    EXPECT_EQ(*outcome.run.exit_status, 1);
    EXPECT_EQ(outcome.run.err, tag_message(tag));
    EXPECT_EQ(outcome.run.out, "");
}

void expect_clean_end(const read_outcome& outcome) {
    EXPECT_FALSE(outcome.run.exit_status.has_value()) << outcome.run.err;
    EXPECT_EQ(outcome.run.err, "");
    EXPECT_EQ(outcome.run.out, "");
}

const std::string contig_body =
    "CO c1 4 1 1 U\n"
    "ACGT\n"
    "\n"
    "BQ\n"
    "20 20 20 20\n"
    "\n"
    "AF r1 U 1\n"
    "BS 1 4 r1\n"
    "\n"
    "RD r1 4 0 0\n"
    "ACGT\n"
    "\n"
    "QA 1 4 1 4\n"
    "DS x\n";

TEST(AceReaderEdge, TwoContigsAreReadFieldByField) {
    const auto outcome = read_all(std::string(test::two_contigs));
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 2u);

    const contig& a = outcome.contigs[0];
    EXPECT_EQ(a.name, "ctg1");
    EXPECT_EQ(a.base_num, 10);
    EXPECT_EQ(a.read_num, 2);
    EXPECT_EQ(a.seg_num, 2);
    EXPECT_EQ(a.uncomplemented, 1);
    EXPECT_EQ(text_of(a.consensus), "AC*GTacgta");
    ASSERT_EQ(a.reads.size(), 2u);
    const READ& r1 = a.reads.at("r1");
    EXPECT_EQ(r1.name, "r1");
    EXPECT_EQ(r1.pos, 1);
    EXPECT_EQ(r1.uncomplemented, 1);
    EXPECT_EQ(r1.len, 6);
    EXPECT_EQ(text_of(r1.seq), "AC*GTa");
    EXPECT_EQ(r1.align_start, 2);
    EXPECT_EQ(r1.align_end, 5);
    const READ& r2 = a.reads.at("r2");
    EXPECT_EQ(r2.name, "r2");
    EXPECT_EQ(r2.pos, -2);
    EXPECT_EQ(r2.uncomplemented, 0);
    EXPECT_EQ(r2.len, 8);
    EXPECT_EQ(text_of(r2.seq), "ggAC*GTa");
    EXPECT_EQ(r2.align_start, 3);
    EXPECT_EQ(r2.align_end, 8);
    // The reader leaves the derived fields alone.
    EXPECT_EQ(a.min_read_len, 5000);
    EXPECT_EQ(a.max_read_len, 0);
    EXPECT_TRUE(a.pos_map.empty());
    EXPECT_TRUE(a.print_map.empty());
    EXPECT_TRUE(a.flow_index_map.empty());
    EXPECT_TRUE(a.flow_consensus.empty());

    const contig& b = outcome.contigs[1];
    EXPECT_EQ(b.name, "ctg2");
    EXPECT_EQ(b.base_num, 4);
    EXPECT_EQ(b.read_num, 1);
    EXPECT_EQ(b.seg_num, 1);
    EXPECT_EQ(b.uncomplemented, 0);
    EXPECT_EQ(text_of(b.consensus), "TT*A");
    ASSERT_EQ(b.reads.size(), 1u);
    const READ& r3 = b.reads.at("r3");
    EXPECT_EQ(r3.pos, 2);
    EXPECT_EQ(r3.uncomplemented, 1);
    EXPECT_EQ(r3.len, 3);
    EXPECT_EQ(text_of(r3.seq), "T*A");
    EXPECT_EQ(r3.align_start, 1);
    EXPECT_EQ(r3.align_end, 3);
}

TEST(AceReaderEdge, AsLineWithZeroContigsNeverReads) {
    // What follows would end the process if it were read.
    const auto result = run_captured([] {
        aceReader r(scratch_ace("AS 0 5\n\nXX junk\nCO c 1 0 0 U\n"), test::std_console());
        EXPECT_EQ(r.contig_num, 0);
        EXPECT_EQ(r.read_total, 5);
        contig c;
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_TRUE(c.name.empty());
        std::vector<contig> out;
        EXPECT_EQ(r.next_contig(out, 3), 0);
        EXPECT_TRUE(out.empty());
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderEdge, NothingAfterAsNumbersIsPassedOver) {
    const auto outcome = read_all("AS 1 1\n" + contig_body);
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].name, "c1");
}

TEST(AceReaderEdge, BlanksAfterAsNumbersArePassedOver) {
    const auto outcome = read_all("AS 1 1 \t \r\n" + contig_body);
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].name, "c1");
}

TEST(AceReaderEdge, WordAfterAsNumbersGivesTagMessage) {
    const auto outcome = read_all("AS 1 1 junk\n\n" + contig_body);
    expect_tag_exit(outcome, "junk");
    EXPECT_TRUE(outcome.contigs.empty());
}

TEST(AceReaderEdge, CoRightAfterAsNumbersIsTheFirstRecord) {
    const auto outcome = read_all("AS 1 1 " + contig_body);
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].name, "c1");
}

TEST(AceReaderEdge, WhitespaceLineAfterCoBlockKeepsCoTag) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\n   \nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\nRD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n");
    expect_tag_exit(outcome, "CO");
}

TEST(AceReaderEdge, WhitespaceLineAfterBlockWithTabsKeepsTag) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\n\t\r\nAF r1 U 1\nBS 1 4 r1\n\nRD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n");
    expect_tag_exit(outcome, "BQ");
}

TEST(AceReaderEdge, ContigWithoutBsBlockEndsNamingRd) {
    const auto outcome =
        read_all("AS 1 1\n\nCO c1 4 1 0 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\n\nRD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n");
    expect_tag_exit(outcome, "RD");
}

TEST(AceReaderEdge, ContigWithoutBqBlockEndsNamingAf) {
    const auto outcome =
        read_all("AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nAF r1 U 1\nBS 1 4 r1\n\nRD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n");
    expect_tag_exit(outcome, "AF");
}

TEST(AceReaderEdge, StrayRecordBetweenContigsEndsNamingIt) {
    const auto outcome = read_all("AS 2 2\n\n" + contig_body + "\nXY 1 2\n\n" + contig_body);
    expect_tag_exit(outcome, "XY");
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].name, "c1");
}

TEST(AceReaderEdge, KnownTagOutOfPlaceBetweenContigsEndsNamingIt) {
    const auto outcome = read_all("AS 2 2\n\n" + contig_body + "\nBQ\n20\n\n" + contig_body);
    expect_tag_exit(outcome, "BQ");
    EXPECT_EQ(outcome.contigs.size(), 1u);
}

TEST(AceReaderEdge, UnknownTagInsideContigEndsNamingIt) {
    const auto outcome = read_all("AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nWA 1 2\nBQ\n20\n\n");
    expect_tag_exit(outcome, "WA");
}

TEST(AceReaderEdge, TagsAreCaseSensitive) {
    const auto outcome = read_all("AS 1 1\n\nco c1 4 1 1 U\nACGT\n\n");
    expect_tag_exit(outcome, "co");
}

TEST(AceReaderEdge, TagMustBeWholeWord) {
    const auto outcome = read_all("AS 1 1\n\nCOX c1 4 1 1 U\nACGT\n\n");
    expect_tag_exit(outcome, "COX");
}

TEST(AceReaderEdge, RdSectionPassesOverOtherLines) {
    const auto outcome = read_all(
        "AS 1 2\n\nCO c1 8 2 2 U\nACGTACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 C 3\nBS 1 4 r1\nBS 5 8 r2\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS x\n"
        "\n  \nXX junk line\nBQ\nCO other 1 1 1 U\nWR{\nRD-not-a-tag\n}\nRT{\n\n"
        "RD r2 5 0 0\nGTACG\n\nQA 1 5 2 5\nDS y\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    const contig& c = outcome.contigs[0];
    EXPECT_EQ(c.name, "c1");
    EXPECT_EQ(text_of(c.reads.at("r1").seq), "ACGT");
    EXPECT_EQ(text_of(c.reads.at("r2").seq), "GTACG");
    EXPECT_EQ(c.reads.at("r2").len, 5);
    EXPECT_EQ(c.reads.at("r2").align_start, 2);
    EXPECT_EQ(c.reads.at("r2").align_end, 5);
}

TEST(AceReaderEdge, RdSectionPassesOverBlankLinesBeforeQaLine) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\n\n\nQA 1 4 2 3\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_start, 2);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_end, 3);
}

TEST(AceReaderEdge, QaLineWordIsNotCompared) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\nanything 9 9 2 3 more\nnot a DS line\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_start, 2);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_end, 3);
}

TEST(AceReaderEdge, LineAfterQaLineIsDroppedUnread) {
    // The dropped line would be a tag error if it were read as a record.
    const auto outcome = read_all("AS 2 2\n\n" + std::string(
        "CO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\nRD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nZZ dropped\n") +
        contig_body);
    expect_clean_end(outcome);
    EXPECT_EQ(outcome.contigs.size(), 2u);
}

TEST(AceReaderEdge, BraceBlockOutsideRdSectionIsPassedOver) {
    const auto outcome = read_all(
        "AS 1 1\n\nWA{\nCO hidden 1 1 1 U\n}\n\nCO c1 4 1 1 U\nACGT\n\nCT{\nBQ\n\nXX\n}\n"
        "BQ\n20\n\nRT{\n}\nAF r1 U 1\nBS 1 4 r1\n\nx{ y\n}closing line\nRD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].name, "c1");
    EXPECT_EQ(text_of(outcome.contigs[0].reads.at("r1").seq), "ACGT");
}

TEST(AceReaderEdge, BraceBlockClosesOnlyAtFirstColumn) {
    const auto outcome = read_all(
        "AS 1 1\n\nCT{\n }\n\t}\nCO hidden 9 9 9 U\n}\n" + contig_body);
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].name, "c1");
    EXPECT_EQ(outcome.contigs[0].base_num, 4);
}

TEST(AceReaderEdge, BraceInsideFirstWordStartsBlock) {
    const auto outcome = read_all("AS 1 1\n\n  ab{cd more words\nCO hidden\n}\n" + contig_body);
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].name, "c1");
}

TEST(AceReaderEdge, BraceBlockOpenAtEndOfInputNamesFirstWord) {
    const auto outcome = read_all("AS 2 2\n\n" + contig_body + "\nWA{\nphrap_params\n");
    expect_tag_exit(outcome, "WA{");
    EXPECT_EQ(outcome.contigs.size(), 1u);
}

TEST(AceReaderEdge, BraceBlockOpenAtEndOfInputInsideContigNamesFirstWord) {
    const auto outcome = read_all("AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nRT{ x\nBQ\n");
    expect_tag_exit(outcome, "RT{");
}

TEST(AceReaderEdge, MoreAfLinesThanReadCountEndsNamingAf) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS x\n");
    expect_tag_exit(outcome, "AF");
}

TEST(AceReaderEdge, FewerAfLinesTakeFollowingLinesAsAfLines) {
    const std::string path = scratch_ace(
        "AS 1 3\n\nCO c1 4 3 2 U\nACGT\n\nBQ\n20\n\nAF r1 C 1\nAF r2 U 2\nBS 1 5 r1\nBS 6 8 r2\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS x\n"
        "RD r2 2 0 0\nGT\n\nQA 1 2 1 2\nDS x\n"
        "RD 1 3 0 0\nTTT\n\nQA 1 3 1 3\nDS x\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        ASSERT_EQ(c.reads.size(), 3u);
        // "BS 1 5 r1" was the third AF line: name "1", direction '5', start unreadable.
        const READ& third = c.reads.at("1");
        EXPECT_EQ(third.name, "1");
        EXPECT_EQ(third.pos, 0);
        EXPECT_EQ(third.uncomplemented, 1);
        EXPECT_EQ(third.len, 3);
        EXPECT_EQ(text_of(third.seq), "TTT");
        EXPECT_EQ(c.reads.at("r1").uncomplemented, 0);
        EXPECT_EQ(c.reads.at("r2").pos, 2);
        contig d;
        EXPECT_FALSE(r.next_contig(d));
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderEdge, RdWithoutAfLineReportsMissingRead) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r9 4 0 0\nACGT\n\nQA 1 4 1 4\nDS x\n");
    ASSERT_TRUE(outcome.run.exit_status.has_value());
    EXPECT_EQ(*outcome.run.exit_status, 1);
    EXPECT_EQ(outcome.run.err, "Error: AF tag for read r9 is missing\n");
    EXPECT_EQ(outcome.run.out, "");
}

TEST(AceReaderEdge, ReadOfEarlierContigInSameTargetIsNotMissing) {
    // The target keeps the reads of earlier contigs, so an RD record may name one of them.
    const std::string path = scratch_ace(
        "AS 2 2\n\n" + contig_body +
        "\nCO c2 4 1 1 U\nTTTT\n\nBQ\n20\n\nAF r2 U 1\nBS 1 4 r2\n\nRD r1 2 0 0\nGG\n\nQA 1 2 1 2\nDS x\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        ASSERT_TRUE(r.next_contig(c));
        EXPECT_EQ(c.name, "c2");
        ASSERT_EQ(c.reads.size(), 2u);
        EXPECT_EQ(text_of(c.reads.at("r1").seq), "GG");
        EXPECT_EQ(c.reads.at("r1").len, 2);
        EXPECT_TRUE(c.reads.at("r2").seq.empty());
        EXPECT_EQ(text_of(c.consensus), "TTTT");
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderEdge, ReadDirectionOnlyCGivesZero) {
    const std::string path = scratch_ace(
        "AS 1 5\n\nCO c1 4 5 1 U\nACGT\n\nBQ\n20\n\n"
        "AF a C 1\nAF b c 2\nAF d U 3\nAF e X 4\nAF f Cx 5\nBS 1 4 a\n\n"
        "RD a 1 0 0\nA\n\nQA 1 1 1 1\nDS\nRD b 1 0 0\nA\n\nQA 1 1 1 1\nDS\nRD d 1 0 0\nA\n\nQA 1 1 1 1\nDS\n"
        "RD e 1 0 0\nA\n\nQA 1 1 1 1\nDS\nRD f 1 0 0\nA\n\nQA 1 1 1 1\nDS\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        EXPECT_EQ(c.reads.at("a").uncomplemented, 0);
        EXPECT_EQ(c.reads.at("b").uncomplemented, 1);
        EXPECT_EQ(c.reads.at("d").uncomplemented, 1);
        EXPECT_EQ(c.reads.at("e").uncomplemented, 1);
        EXPECT_EQ(c.reads.at("f").uncomplemented, 0);
        EXPECT_EQ(c.reads.at("a").pos, 1);
        // The direction takes one character; "x" is then no number.
        EXPECT_EQ(c.reads.at("f").pos, 0);
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

contig read_contig_with_direction(const std::string& direction, int32_t start_value) {
    const std::string path = scratch_ace("AS 1 0\n\nCO c1 4 0 0 " + direction + "\nACGT\n\nBQ\n\nAF\nBS\n\nRD\n");
    contig c;
    c.uncomplemented = start_value;
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        EXPECT_TRUE(r.next_contig(c));
    });
    EXPECT_FALSE(result.exit_status.has_value());
    return c;
}

TEST(AceReaderEdge, ContigDirectionOnlyUSetsOne) {
    EXPECT_EQ(read_contig_with_direction("U", 0).uncomplemented, 1);
    EXPECT_EQ(read_contig_with_direction("Ux", 0).uncomplemented, 1);
    EXPECT_EQ(read_contig_with_direction("u", 0).uncomplemented, 0);
    EXPECT_EQ(read_contig_with_direction("C", 0).uncomplemented, 0);
    EXPECT_EQ(read_contig_with_direction("", 0).uncomplemented, 0);
}

TEST(AceReaderEdge, ContigDirectionNeverClearsField) {
    EXPECT_EQ(read_contig_with_direction("C", 1).uncomplemented, 1);
    EXPECT_EQ(read_contig_with_direction("C", 7).uncomplemented, 7);
    EXPECT_EQ(read_contig_with_direction("U", 7).uncomplemented, 1);
}

TEST(AceReaderEdge, PadsAndCaseAreKeptAsTheyStand) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 12 1 1 U\n*acGT*\nNn**xX\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 9 0 0\n**aC\ngT*nN\n\nQA 1 4 1 4\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(text_of(outcome.contigs[0].consensus), "*acGT*Nn**xX");
    EXPECT_EQ(text_of(outcome.contigs[0].reads.at("r1").seq), "**aCgT*nN");
}

TEST(AceReaderEdge, SequenceLinesKeepInnerBlanks) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nAC GT \n\t\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\n A C\r\n\nQA 1 4 1 4\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(text_of(outcome.contigs[0].consensus), "AC GT \t");
    EXPECT_EQ(text_of(outcome.contigs[0].reads.at("r1").seq), " A C\r");
}

TEST(AceReaderEdge, LengthAndClipsAreSixteenBitValues) {
    const auto outcome = read_all(
        "AS 1 2\n\nCO c1 4 2 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 U 1\nBS 1 4 r1\n\n"
        "RD r1 32767 0 0\nA\n\nQA 1 4 -32768 32767\nDS x\n"
        "RD r2 -5 0 0\nA\n\nQA 1 4 -1 0\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    const READ& r1 = outcome.contigs[0].reads.at("r1");
    EXPECT_EQ(r1.len, 32767);
    EXPECT_EQ(r1.align_start, -32768);
    EXPECT_EQ(r1.align_end, 32767);
    const READ& r2 = outcome.contigs[0].reads.at("r2");
    EXPECT_EQ(r2.len, -5);
    EXPECT_EQ(r2.align_start, -1);
    EXPECT_EQ(r2.align_end, 0);
}

TEST(AceReaderEdge, ReadLengthAbove32767IsNotStored) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 40000 0 0\nACGT\n\nQA 1 4 2 3\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    const READ& r1 = outcome.contigs[0].reads.at("r1");
    EXPECT_EQ(r1.len, 0);
    EXPECT_EQ(text_of(r1.seq), "ACGT");
    EXPECT_EQ(r1.align_start, 2);
    EXPECT_EQ(r1.align_end, 3);
}

TEST(AceReaderEdge, ClipStartAbove32767FailsRestOfQaLine) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 40000 3\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    const READ& r1 = outcome.contigs[0].reads.at("r1");
    EXPECT_EQ(r1.len, 4);
    EXPECT_EQ(r1.align_start, 0);
    EXPECT_EQ(r1.align_end, 0);
}

TEST(AceReaderEdge, ClipEndAbove32767IsNotStored) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 2 32768\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_start, 2);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_end, 0);
}

TEST(AceReaderEdge, DroppedQaNumberOutOfRangeFailsClips) {
    // The quality clip numbers are 32-bit: one beyond that fails the rest of the line.
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 99999999999 4 2 3\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_start, 0);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_end, 0);
}

TEST(AceReaderEdge, CoNumberFailureLeavesTargetFields) {
    const std::string path = scratch_ace("AS 1 0\n\nCO c1 4 x 7 U\nACGT\n\n");
    contig c;
    c.read_num = 0;
    c.seg_num = 42;
    c.uncomplemented = 0;
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        EXPECT_FALSE(r.next_contig(c));
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(c.name, "c1");
    EXPECT_EQ(c.base_num, 4);
    EXPECT_EQ(c.read_num, 0);
    EXPECT_EQ(c.seg_num, 42);
    EXPECT_EQ(c.uncomplemented, 0);
    EXPECT_EQ(text_of(c.consensus), "ACGT");
}

TEST(AceReaderEdge, ThirtyTwoBitCoCountBeyondRangeIsNotStored) {
    const std::string path = scratch_ace("AS 1 0\n\nCO c1 2147483648 0 0 U\nACGT\n\n");
    contig c;
    c.base_num = 9;
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        EXPECT_FALSE(r.next_contig(c));
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(c.base_num, 9);
    EXPECT_EQ(c.uncomplemented, 0);
}

TEST(AceReaderEdge, CrLfFileHasNoBlankLines) {
    const std::string path = scratch_ace("AS 1 1\r\n\r\nCO c1 5 1 0 U\r\nACGTA\r\n\r\nBQ\r\n20\r\n");
    contig c;
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        EXPECT_EQ(r.contig_num, 1);
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_FALSE(r.next_contig(c));
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(c.name, "c1");
    EXPECT_EQ(c.uncomplemented, 1);
    EXPECT_EQ(text_of(c.consensus), "ACGTA\r\rBQ\r20\r");
}

TEST(AceReaderEdge, CarriageReturnLineKeepsPreviousTag) {
    // "\r" is not blank; it yields no word, so the previous tag is tested again.
    const auto outcome = read_all("AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\n\r\nBQ\n20\n\n");
    expect_tag_exit(outcome, "CO");
}

TEST(AceReaderEdge, LastContigReturnsTrueThenFalse) {
    const std::string path = scratch_ace(test::two_contigs);
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig a, b, c, d;
        EXPECT_TRUE(r.next_contig(a));
        EXPECT_TRUE(r.next_contig(b));
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_FALSE(r.next_contig(d));
        EXPECT_EQ(b.name, "ctg2");
        EXPECT_TRUE(c.name.empty());
        EXPECT_TRUE(c.reads.empty());
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderEdge, LastContigWithoutFinalLineFeedReturnsTrue) {
    const std::string text = "AS 1 1\n" + contig_body.substr(0, contig_body.size() - 1);
    const auto outcome = read_all(text);
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
}

TEST(AceReaderEdge, LastContigWithoutDsLineReturnsTrue) {
    const auto outcome = read_all(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\nRD r1 4 0 0\nACGT\n\nQA 1 4 2 3\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    EXPECT_EQ(outcome.contigs[0].reads.at("r1").align_end, 3);
}

TEST(AceReaderEdge, InputCutInsideRdSectionReturnsFalse) {
    const std::string path = scratch_ace(
        "AS 1 2\n\nCO c1 4 2 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS x\n\nRT{\n}\n");
    contig c;
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_FALSE(r.next_contig(c));
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
    // What was read stays in the target.
    EXPECT_EQ(text_of(c.reads.at("r1").seq), "ACGT");
    EXPECT_TRUE(c.reads.at("r2").seq.empty());
}

TEST(AceReaderEdge, TargetIsNeverCleared) {
    const std::string path = scratch_ace(test::two_contigs);
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        c.pos_map.emplace(1, "kept");
        c.flow_consensus = {'T'};
        ASSERT_TRUE(r.next_contig(c));
        ASSERT_TRUE(r.next_contig(c));
        EXPECT_EQ(c.name, "ctg2");
        EXPECT_EQ(c.read_num, 1);
        EXPECT_EQ(text_of(c.consensus), "TT*A");
        // ctg2 is complemented, but nothing sets the field back to 0.
        EXPECT_EQ(c.uncomplemented, 1);
        EXPECT_EQ(c.reads.size(), 3u);
        EXPECT_EQ(text_of(c.reads.at("r1").seq), "AC*GTa");
        EXPECT_EQ(c.pos_map.size(), 1u);
        EXPECT_EQ(text_of(c.flow_consensus), "T");
    });
    EXPECT_FALSE(result.exit_status.has_value());
}

TEST(AceReaderEdge, RepeatedAfLineReplacesReadWhole) {
    const auto outcome = read_all(
        "AS 1 2\n\nCO c1 4 2 1 U\nACGT\n\nBQ\n20\n\nAF r1 C 1\nAF r1 U 7\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS x\nRD r1 2 0 0\nGG\n\nQA 1 2 1 2\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    ASSERT_EQ(outcome.contigs[0].reads.size(), 1u);
    const READ& r1 = outcome.contigs[0].reads.at("r1");
    EXPECT_EQ(r1.pos, 7);
    EXPECT_EQ(r1.uncomplemented, 1);
    EXPECT_EQ(r1.len, 2);
    EXPECT_EQ(text_of(r1.seq), "GG");
}

TEST(AceReaderEdge, ContigWithoutReadsEndsAtRdLine) {
    const std::string path = scratch_ace(
        "AS 2 0\n\nCO c0 4 0 0 U\nACGT\n\nBQ\n20\n\nAF not parsed\nBS\n\nRD\nline after\n\n" + contig_body);
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig a;
        ASSERT_TRUE(r.next_contig(a));
        EXPECT_EQ(a.name, "c0");
        EXPECT_TRUE(a.reads.empty());
        contig b;
        r.next_contig(b);
    });
    // The next call starts right behind the RD line.
    ASSERT_TRUE(result.exit_status.has_value());
    EXPECT_EQ(result.err, tag_message("line"));
}

TEST(AceReaderEdge, VectorOverloadZeroMaxCountReadsNothing) {
    const std::string path = scratch_ace(test::two_contigs);
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        std::vector<contig> out;
        EXPECT_EQ(r.next_contig(out, 0), 0);
        EXPECT_EQ(r.next_contig(out, -3), 0);
        EXPECT_TRUE(out.empty());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        EXPECT_EQ(c.name, "ctg1");
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderEdge, VectorOverloadStopsAtEndOfFile) {
    const std::string path = scratch_ace(test::two_contigs);
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        std::vector<contig> out;
        EXPECT_EQ(r.next_contig(out, 3), 2);
        ASSERT_EQ(out.size(), 2u);
        EXPECT_EQ(out[0].name, "ctg1");
        EXPECT_EQ(out[1].name, "ctg2");
        // Every contig starts fresh: none carries reads of an earlier one.
        EXPECT_EQ(out[0].reads.size(), 2u);
        ASSERT_EQ(out[1].reads.size(), 1u);
        EXPECT_EQ(out[1].reads.count("r3"), 1u);
        EXPECT_EQ(out[1].uncomplemented, 0);
        EXPECT_EQ(r.next_contig(out, 3), 0);
        EXPECT_EQ(out.size(), 2u);
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderEdge, VectorOverloadStopsAtMaxCount) {
    const std::string path = scratch_ace(test::two_contigs);
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        std::vector<contig> out(1);
        out[0].name = "already there";
        EXPECT_EQ(r.next_contig(out, 1), 1);
        ASSERT_EQ(out.size(), 2u);
        EXPECT_EQ(out[0].name, "already there");
        EXPECT_EQ(out[1].name, "ctg1");
        EXPECT_EQ(r.next_contig(out, 1), 1);
        ASSERT_EQ(out.size(), 3u);
        EXPECT_EQ(out[2].name, "ctg2");
        EXPECT_EQ(r.next_contig(out, 1), 0);
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderEdge, RdRecordsInAnotherOrderThanTheAfLinesFindTheirReads) {
    const auto outcome = read_all(
        "AS 1 3\n\nCO c1 4 3 1 U\nACGT\n\nBQ\n20\n\nAF ra U 1\nAF rb U 2\nAF rc C 3\nBS 1 4 ra\n\n"
        "RD rc 2 0 0\nGT\n\nQA 1 2 1 2\nDS x\n\n"
        "RD ra 4 0 0\nACGT\n\nQA 1 4 1 4\nDS x\n\n"
        "RD rb 3 0 0\nCGT\n\nQA 1 3 1 3\nDS x\n");
    expect_clean_end(outcome);
    ASSERT_EQ(outcome.contigs.size(), 1u);
    const contig& c = outcome.contigs[0];
    EXPECT_EQ(text_of(c.reads.at("ra").seq), "ACGT");
    EXPECT_EQ(text_of(c.reads.at("rb").seq), "CGT");
    EXPECT_EQ(text_of(c.reads.at("rc").seq), "GT");
    EXPECT_EQ(c.reads.at("rc").len, 2);
}

TEST(AceReaderEdge, ReadWithFarFewerBasesThanItsLengthKeepsNoRoomForThem) {
    // Room for the padded length is taken before the bases are read: a
    // damaged file of many such reads must not hold it all.
    const std::string path = scratch_ace(
        "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n"
        "RD r1 30000 0 0\nACGT\n\nQA 1 4 1 4\nDS x\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        const READ& read = c.reads.at("r1");
        EXPECT_EQ(read.len, 30000);
        EXPECT_EQ(text_of(read.seq), "ACGT");
        EXPECT_LT(read.seq.capacity(), 1000u);
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

}  // namespace
}  // namespace pelkrin
