// The end of input inside a contig, fresh fields per line, and files cut short anywhere.
#include <gtest/gtest.h>

#include <chrono>
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

const std::string head = "AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n\n";

// Runs one next_contig call on `text`; the call must end without a message.
contig read_expecting_false(const std::string& text) {
    const std::string path = scratch_ace(text);
    contig c;
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_FALSE(r.next_contig(c));
    });
    EXPECT_FALSE(result.exit_status.has_value()) << result.err;
    EXPECT_EQ(result.err, "");
    return c;
}

TEST(AceReaderEndOfInput, AfFieldsAreFreshPerLine) {
    const std::string path = scratch_ace(
        "AS 1 3\n\nCO c1 4 3 1 U\nACGT\n\nBQ\n20\n\nAF r1 C 5\nAF\nAF r3 U\nBS 1 4 r1\n\n"
        "RD r1 1 0 0\nA\n\nQA 1 1 1 1\nDS\nRD\nC\n\nQA 1 1 1 1\nDS\nRD r3 1 0 0\nG\n\nQA 1 1 1 1\nDS\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        ASSERT_EQ(c.reads.size(), 3u);
        const READ& nameless = c.reads.at("");
        EXPECT_EQ(nameless.name, "");
        EXPECT_EQ(nameless.pos, 0);
        EXPECT_EQ(nameless.uncomplemented, 1);
        const READ& r3 = c.reads.at("r3");
        EXPECT_EQ(r3.pos, 0);
        EXPECT_EQ(r3.uncomplemented, 1);
        EXPECT_EQ(c.reads.at("r1").pos, 5);
        EXPECT_EQ(c.reads.at("r1").uncomplemented, 0);
        // The RD line without a name fills the nameless read, not the one before it.
        EXPECT_EQ(text_of(nameless.seq), "C");
        EXPECT_EQ(text_of(c.reads.at("r1").seq), "A");
        EXPECT_EQ(text_of(r3.seq), "G");
    });
    EXPECT_FALSE(result.exit_status.has_value()) << result.err;
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderEndOfInput, RdNameIsFreshPerLine) {
    const std::string path = scratch_ace(
        "AS 1 2\n\nCO c1 4 2 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 U 1\nBS 1 4 r1\n\n"
        "RD r1 1 0 0\nA\n\nQA 1 1 1 1\nDS\nRD   \nC\n\nQA 1 1 1 1\nDS\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        r.next_contig(c);
    });
    ASSERT_TRUE(result.exit_status.has_value());
    EXPECT_EQ(*result.exit_status, 1);
    EXPECT_EQ(result.err, "Error: AF tag for read  is missing\n");
}

TEST(AceReaderEndOfInput, QaSearchTakesNextRdLineAndFailsItsName) {
    // Without a QA line, the next RD line is taken as the QA line; its numbers fail,
    // so the read that follows has no name.
    const std::string path = scratch_ace(
        "AS 1 2\n\nCO c1 4 2 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 U 1\nBS 1 4 r1\n\n"
        "RD r1 1 0 0\nA\n\nRD r2 1 0 0\nC\n\nQA 1 1 1 1\nDS\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        r.next_contig(c);
    });
    ASSERT_TRUE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "Error: AF tag for read  is missing\n");
}

TEST(AceReaderEndOfInput, QaLineHeadedRdNamesNextRead) {
    // The rest of a QA line headed "RD" stands in for the next read's RD line.
    const std::string path = scratch_ace(
        "AS 1 2\n\nCO c1 4 2 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 U 1\nBS 1 4 r1\n\n"
        "RD r1 1 0 0\nA\n\nRD 1 2 3 4 r2 6\nDS dropped\nGT\n\nQA 9 9 2 5\nDS\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        EXPECT_EQ(c.reads.at("r1").align_start, 3);
        EXPECT_EQ(c.reads.at("r1").align_end, 4);
        EXPECT_EQ(c.reads.at("r2").len, 6);
        EXPECT_EQ(text_of(c.reads.at("r2").seq), "GT");
        EXPECT_EQ(c.reads.at("r2").align_start, 2);
        EXPECT_EQ(c.reads.at("r2").align_end, 5);
    });
    EXPECT_FALSE(result.exit_status.has_value()) << result.err;
}

TEST(AceReaderEndOfInput, QaLineHeadedRdSurvivesLongDroppedLine) {
    // The dropped line is longer than any read buffer, so the QA line's text must be kept apart.
    const std::string path = scratch_ace(
        "AS 1 2\n\nCO c1 4 2 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 U 1\nBS 1 4 r1\n\n"
        "RD r1 1 0 0\nA\n\nRD 1 2 3 4 r2 6\n" + std::string(4u << 20, 'x') + "\nGT\n\nQA 9 9 2 5\nDS\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        EXPECT_EQ(c.reads.at("r2").len, 6);
        EXPECT_EQ(text_of(c.reads.at("r2").seq), "GT");
    });
    EXPECT_FALSE(result.exit_status.has_value()) << result.err.substr(0, 80);
}

TEST(AceReaderEndOfInput, ConsensusCutAtEndOfInputReturnsFalse) {
    const contig c = read_expecting_false("AS 1 1\n\nCO c1 8 1 1 U\nACGT\nacgt");
    EXPECT_EQ(c.name, "c1");
    EXPECT_EQ(text_of(c.consensus), "ACGTacgt");
}

TEST(AceReaderEndOfInput, ConsensusEndingWithLineFeedAtEndOfInputReturnsFalse) {
    const contig c = read_expecting_false("AS 1 1\n\nCO c1 8 1 1 U\nACGT\n");
    EXPECT_EQ(text_of(c.consensus), "ACGT");
}

TEST(AceReaderEndOfInput, BqBlockCutAtEndOfInputReturnsFalse) {
    read_expecting_false("AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20 20\n20");
}

TEST(AceReaderEndOfInput, BsBlockCutAtEndOfInputReturnsFalse) {
    const contig c = read_expecting_false("AS 1 1\n\nCO c1 4 1 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nBS 1 4 r1\n");
    EXPECT_EQ(c.reads.size(), 1u);
}

TEST(AceReaderEndOfInput, ReadBasesCutAtEndOfInputReturnsFalse) {
    const contig c = read_expecting_false(head + "RD r1 4 0 0\nAC\nGT\n");
    EXPECT_EQ(c.reads.at("r1").len, 4);
    EXPECT_EQ(text_of(c.reads.at("r1").seq), "ACGT");
}

TEST(AceReaderEndOfInput, EndOfInputWhileLookingForQaLineReturnsFalse) {
    read_expecting_false(head + "RD r1 4 0 0\nACGT\n\n\n\n");
}

TEST(AceReaderEndOfInput, EndOfInputWhileLookingForNextRdLineReturnsFalse) {
    read_expecting_false(
        "AS 1 2\n\nCO c1 4 2 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 U 1\nBS 1 4 r1\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n\nXX\n  \n");
}

TEST(AceReaderEndOfInput, EndOfInputInAfLinesReturnsFalse) {
    const contig c = read_expecting_false("AS 1 3\n\nCO c1 4 3 1 U\nACGT\n\nBQ\n20\n\nAF r1 U 1\nAF r2 C 4\n");
    EXPECT_EQ(c.reads.size(), 2u);
    EXPECT_EQ(c.reads.at("r2").pos, 4);
}

TEST(AceReaderEndOfInput, HugeReadCountOnShortFileEndsAtOnce) {
    const auto start = std::chrono::steady_clock::now();
    const contig c = read_expecting_false("AS 1 1\n\nCO c 4 2000000000 0 U\nACGT\n\nBQ\n\nAF r1 U 1\n");
    const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 5.0);
    EXPECT_EQ(c.read_num, 2000000000);
    EXPECT_EQ(c.reads.size(), 1u);
}

TEST(AceReaderEndOfInput, HugeReadCountTakesRestOfFileAsAfLines) {
    const contig c = read_expecting_false(
        "AS 1 1\n\nCO c 4 2000000000 0 U\nACGT\n\nBQ\n\nAF r1 U 1\nAF r2 U 1\nBS\n\n"
        "RD r1 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n");
    // Every line after the BQ block was an AF line; a line without a name gives the empty name.
    ASSERT_EQ(c.reads.size(), 4u);
    EXPECT_EQ(c.reads.count(""), 1u);
    EXPECT_EQ(c.reads.count("1"), 1u);
    EXPECT_EQ(c.reads.at("r1").pos, 0);
    EXPECT_EQ(c.reads.at("r1").uncomplemented, 1);
    EXPECT_EQ(c.reads.at("r2").pos, 1);
}

TEST(AceReaderEndOfInput, FailedStreamCountsAsEndOfInput) {
    const std::string path = scratch_ace("AS 3 x\n\nCO c1 4 1 1 U\nACGT\n\n");
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        EXPECT_TRUE(r.ace_in.failed());
        contig c;
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(r.next_contig(c));
        EXPECT_TRUE(c.name.empty());
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

// The contigs and messages a file cut short may give.
struct cut_outcome {
    int contigs = 0;
    test::captured run;
};

cut_outcome read_cut(const std::string& path, bool vector_overload) {
    cut_outcome outcome;
    outcome.run = run_captured([&] {
        aceReader r(path, test::std_console());
        if (vector_overload) {
            std::vector<contig> out;
            try {
                r.next_contig(out, 50);
            } catch (...) {
                outcome.contigs = static_cast<int>(out.size());
                throw;
            }
            outcome.contigs = static_cast<int>(out.size());
            return;
        }
        for (int calls = 0; calls < 10; ++calls) {
            contig c;
            if (!r.next_contig(c)) return;
            ++outcome.contigs;
        }
    });
    return outcome;
}

// A contig is complete as soon as its last QA line has begun: the line after it may be missing.
int complete_contigs(std::size_t cut) {
    const std::string_view text = test::two_contigs;
    const std::size_t first_done = text.find("QA 1 8 3 8");
    const std::size_t second_done = text.find("QA 1 3 1 3");
    return (cut > first_done ? 1 : 0) + (cut > second_done ? 1 : 0);
}

void check_cut(std::size_t cut, bool vector_overload) {
    const std::string text(test::two_contigs.substr(0, cut));
    const std::string path = test::write_ace(test::scratch_dir(), text, "cut.ace");
    const cut_outcome outcome = read_cut(path, vector_overload);
    SCOPED_TRACE("cut at byte " + std::to_string(cut) + " after: ..." +
                 text.substr(text.size() > 20 ? text.size() - 20 : 0));
    EXPECT_EQ(outcome.contigs, complete_contigs(cut));
    EXPECT_EQ(outcome.run.out, "");
    if (!outcome.run.exit_status.has_value()) {
        EXPECT_EQ(outcome.run.err, "");
        return;
    }
    EXPECT_EQ(*outcome.run.exit_status, 1);
    // Only a cut word can end the process: a cut tag, the cut "AS", the open tag
    // block at the end, or a read name cut on an RD line.
    const std::string& err = outcome.run.err;
    const bool tag_error = err.rfind("Error: tag '", 0) == 0 && err.find("' should be not in the ACE file!\n") != std::string::npos;
    const bool header_error = err == "Error: the input file " + path + " does not like an ACE file\n";
    const bool cut_name_error =
        err == "Error: AF tag for read  is missing\n" || err == "Error: AF tag for read r is missing\n";
    EXPECT_TRUE(tag_error || header_error || cut_name_error) << err;
    if (cut_name_error) {
        EXPECT_EQ(text.substr(text.rfind('\n') + 1, 2), "RD");
    }
}

TEST(AceReaderEndOfInput, FileCutAtEveryLineEndsSingleOverload) {
    const std::string_view text = test::two_contigs;
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        if (cut == 0 || cut == text.size() || text[cut - 1] == '\n') check_cut(cut, false);
    }
}

TEST(AceReaderEndOfInput, FileCutAtEveryLineEndsVectorOverload) {
    const std::string_view text = test::two_contigs;
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        if (cut == 0 || cut == text.size() || text[cut - 1] == '\n') check_cut(cut, true);
    }
}

TEST(AceReaderEndOfInput, FileCutAtEveryByteEndsSingleOverload) {
    for (std::size_t cut = 0; cut <= test::two_contigs.size(); ++cut) check_cut(cut, false);
}

TEST(AceReaderEndOfInput, FileCutAtEveryByteEndsVectorOverload) {
    for (std::size_t cut = 0; cut <= test::two_contigs.size(); ++cut) check_cut(cut, true);
}

TEST(AceReaderEndOfInput, FileCutAtEveryLineGivesExpectedMessages) {
    // Whole lines only: the only process end is the tag block left open at the end.
    const std::string_view text = test::two_contigs;
    const std::size_t block = text.find("CT{");
    for (std::size_t cut = 1; cut <= text.size(); ++cut) {
        if (text[cut - 1] != '\n') continue;
        const std::string path = test::write_ace(test::scratch_dir(), text.substr(0, cut), "cut.ace");
        const cut_outcome outcome = read_cut(path, false);
        SCOPED_TRACE("cut at byte " + std::to_string(cut));
        if (cut > block && cut < text.size() - 1) {
            ASSERT_TRUE(outcome.run.exit_status.has_value());
            EXPECT_EQ(outcome.run.err, "Error: tag 'CT{' should be not in the ACE file!\n");
        } else {
            EXPECT_FALSE(outcome.run.exit_status.has_value()) << outcome.run.err;
            EXPECT_EQ(outcome.run.err, "");
        }
    }
}

}  // namespace
}  // namespace pelkrin
