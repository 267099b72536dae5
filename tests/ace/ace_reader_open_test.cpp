// Opening, the AS line, closing, and the messages of opening.
#include <gtest/gtest.h>

#include <string>

#include "ace/ace_reader.h"
#include "ace_fixture.h"
#include "capture.h"
#include "files.h"

namespace pelkrin {
namespace {

using test::run_captured;
using test::scratch_ace;
using test::two_contigs;

TEST(AceReaderOpen, DefaultReaderIsEmpty) {
    const aceReader r(test::std_console());
    EXPECT_TRUE(r.file_name.empty());
    EXPECT_EQ(r.contig_num, 0);
    EXPECT_EQ(r.read_total, 0);
    EXPECT_FALSE(r.ace_in.is_open());
}

TEST(AceReaderOpen, ConstructorReadsAsCounts) {
    const std::string path = scratch_ace(two_contigs);
    const aceReader r(path, test::std_console());
    EXPECT_EQ(r.file_name, path);
    EXPECT_EQ(r.contig_num, 2);
    EXPECT_EQ(r.read_total, 3);
    EXPECT_TRUE(r.ace_in.is_open());
}

// As a program using the installed library first writes it: a file name
// alone, the reports going to the standard streams.
TEST(AceReaderOpen, FromAFileNameAloneReportsToTheStandardStreams) {
    const std::string path = scratch_ace(two_contigs);
    auto io = run_captured([&] {
        aceReader r(path);
        EXPECT_EQ(r.contig_num, 2);
        contig c;
        EXPECT_TRUE(r.next_contig(c));
    });
    EXPECT_EQ(io.exit_status, std::nullopt);
    EXPECT_EQ(io.out, "");
    EXPECT_EQ(io.err, "");
    // No file open: told on standard error.
    auto empty = run_captured([] {
        aceReader r;
        contig c;
        EXPECT_FALSE(r.next_contig(c));
    });
    EXPECT_EQ(empty.err, "Error: there is no ACE file open!\n");
}

TEST(AceReaderOpen, AsWordAndCountsMayStandOnSeveralLines) {
    const auto result = run_captured([] {
        aceReader r(scratch_ace("\n  \nAS\n2\n\n 7\nCO c 3 0 0 U\nACG\n\nBQ\n\nAF\nBS\n\nRD\n"), test::std_console());
        EXPECT_EQ(r.contig_num, 2);
        EXPECT_EQ(r.read_total, 7);
        contig c;
        EXPECT_TRUE(r.next_contig(c));
        EXPECT_EQ(c.name, "c");
        EXPECT_EQ(test::text_of(c.consensus), "ACG");
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderOpen, ConstructorOpenFailureMessage) {
    const std::string path = (test::scratch_dir() / "absent.ace").string();
    const auto result = run_captured([&] { aceReader r(path, test::std_console()); });
    ASSERT_TRUE(result.exit_status.has_value());
    EXPECT_EQ(*result.exit_status, 1);
    EXPECT_EQ(result.err, "The file: " + path + " can not be opened\n");
    EXPECT_EQ(result.out, "");
}

TEST(AceReaderOpen, OpenFileFailureMessageHasNoLineEnd) {
    const std::string path = (test::scratch_dir() / "absent.ace").string();
    const auto result = run_captured([&] {
        aceReader r(test::std_console());
        r.open_file(path.c_str());
    });
    ASSERT_TRUE(result.exit_status.has_value());
    EXPECT_EQ(*result.exit_status, 1);
    EXPECT_EQ(result.err, "the file: " + path + " can not be opened");
    EXPECT_EQ(result.out, "");
}

void expect_not_ace(const std::string& text) {
    const std::string path = scratch_ace(text);
    const auto result = run_captured([&] { aceReader r(path, test::std_console()); });
    ASSERT_TRUE(result.exit_status.has_value()) << text;
    EXPECT_EQ(*result.exit_status, 1);
    EXPECT_EQ(result.err, "Error: the input file " + path + " does not like an ACE file\n") << text;
}

TEST(AceReaderOpen, FirstWordNotAsIsNotAnAceFile) { expect_not_ace("CO c 1 0 0 U\n"); }
TEST(AceReaderOpen, EmptyFileIsNotAnAceFile) { expect_not_ace(""); }
TEST(AceReaderOpen, BlankOnlyFileIsNotAnAceFile) { expect_not_ace(" \n\t\r\n\n"); }
TEST(AceReaderOpen, LongerFirstWordIsNotAnAceFile) { expect_not_ace("ASX 1 1\n"); }
TEST(AceReaderOpen, LowerCaseAsIsNotAnAceFile) { expect_not_ace("as 1 1\n"); }
TEST(AceReaderOpen, CutAsIsNotAnAceFile) { expect_not_ace("A"); }

TEST(AceReaderOpen, OpenFileOnNonAceFileGivesSameMessage) {
    const std::string path = scratch_ace("XX 1 1\n");
    const auto result = run_captured([&] {
        aceReader r(test::std_console());
        r.open_file(path.c_str());
    });
    ASSERT_TRUE(result.exit_status.has_value());
    EXPECT_EQ(*result.exit_status, 1);
    EXPECT_EQ(result.err, "Error: the input file " + path + " does not like an ACE file\n");
}

TEST(AceReaderOpen, NoFileOpenMessageReturnsFalse) {
    const auto result = run_captured([] {
        aceReader r(test::std_console());
        contig c;
        c.name = "untouched";
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_EQ(c.name, "untouched");
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "Error: there is no ACE file open!\n");
    EXPECT_EQ(result.out, "");
}

TEST(AceReaderOpen, NoFileOpenVectorOverloadAppendsNothing) {
    const auto result = run_captured([] {
        aceReader r(test::std_console());
        std::vector<contig> out;
        EXPECT_EQ(r.next_contig(out, 5), 0);
        EXPECT_TRUE(out.empty());
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "Error: there is no ACE file open!\n");
}

TEST(AceReaderOpen, UnreadableReadTotalReadsNothing) {
    const auto result = run_captured([] {
        aceReader r(scratch_ace("AS 3 x\n\nCO c 4 1 0 U\nACGT\n\n"), test::std_console());
        EXPECT_EQ(r.contig_num, 3);
        EXPECT_EQ(r.read_total, 0);
        contig c;
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_TRUE(c.name.empty());
        std::vector<contig> out;
        EXPECT_EQ(r.next_contig(out, 4), 0);
        EXPECT_TRUE(out.empty());
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderOpen, OutOfRangeContigCountIsNotStored) {
    const auto result = run_captured([] {
        aceReader r(scratch_ace("AS 99999999999 3\n\nCO c 4 1 0 U\nACGT\n\n"), test::std_console());
        EXPECT_EQ(r.contig_num, 0);
        EXPECT_EQ(r.read_total, 0);
        contig c;
        EXPECT_FALSE(r.next_contig(c));
        EXPECT_TRUE(c.name.empty());
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderOpen, AsWithoutCountsReadsNothing) {
    const auto result = run_captured([] {
        aceReader r(scratch_ace("AS"), test::std_console());
        EXPECT_EQ(r.contig_num, 0);
        contig c;
        EXPECT_FALSE(r.next_contig(c));
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderOpen, AsCountsAtEndOfFileReadNothing) {
    const auto result = run_captured([] {
        aceReader r(scratch_ace("AS 1 1"), test::std_console());
        EXPECT_EQ(r.contig_num, 1);
        EXPECT_EQ(r.read_total, 1);
        contig c;
        EXPECT_FALSE(r.next_contig(c));
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderOpen, NegativeCountsAreStoredAsRead) {
    const aceReader r(scratch_ace("AS -2 -9\n"), test::std_console());
    EXPECT_EQ(r.contig_num, -2);
    EXPECT_EQ(r.read_total, -9);
}

TEST(AceReaderOpen, CloseFileKeepsNameAndClearsCounts) {
    const std::string path = scratch_ace(two_contigs);
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        contig c;
        ASSERT_TRUE(r.next_contig(c));
        r.close_file();
        EXPECT_EQ(r.file_name, path);
        EXPECT_EQ(r.contig_num, 0);
        EXPECT_EQ(r.read_total, 0);
        EXPECT_FALSE(r.ace_in.is_open());
        contig d;
        EXPECT_FALSE(r.next_contig(d));
        EXPECT_TRUE(d.name.empty());
        r.close_file();
        EXPECT_EQ(r.file_name, path);
    });
    EXPECT_FALSE(result.exit_status.has_value());
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderOpen, OpenFileClosesPreviousFileAndReadsNewOne) {
    const auto dir = test::scratch_dir();
    const std::string first = test::write_ace(dir, two_contigs, "first.ace");
    const std::string second = test::write_ace(dir, test::one_contig, "second.ace");
    aceReader r(first, test::std_console());
    contig a;
    ASSERT_TRUE(r.next_contig(a));
    EXPECT_EQ(a.name, "ctg1");
    EXPECT_TRUE(r.open_file(second.c_str()));
    EXPECT_EQ(r.file_name, second);
    EXPECT_EQ(r.contig_num, 1);
    EXPECT_EQ(r.read_total, 1);
    contig b;
    ASSERT_TRUE(r.next_contig(b));
    EXPECT_EQ(b.name, "c1");
    contig c;
    EXPECT_FALSE(r.next_contig(c));
}

TEST(AceReaderOpen, OpenFileOnEmptyReader) {
    aceReader r(test::std_console());
    const std::string path = scratch_ace(two_contigs);
    EXPECT_TRUE(r.open_file(path.c_str()));
    EXPECT_EQ(r.file_name, path);
    EXPECT_EQ(r.contig_num, 2);
    contig c;
    EXPECT_TRUE(r.next_contig(c));
    EXPECT_EQ(c.name, "ctg1");
}

TEST(AceReaderOpen, OpenFileAfterCloseFileReopens) {
    const std::string path = scratch_ace(two_contigs);
    aceReader r(path, test::std_console());
    r.close_file();
    EXPECT_TRUE(r.open_file(path.c_str()));
    EXPECT_EQ(r.contig_num, 2);
    contig c;
    EXPECT_TRUE(r.next_contig(c));
    EXPECT_EQ(c.name, "ctg1");
}

}  // namespace
}  // namespace pelkrin
