// How the reading of an ACE file ended, as Pelkrin tells it.
#include "ace/reading_end.h"

#include <gtest/gtest.h>

#include <string>

#include "ace/ace_reader.h"
#include "capture.h"

namespace pelkrin {
namespace {

const std::string one_contig = "CO c1 3 1 1 U\nACG\n\nBQ\n20 20 20\n\nAF r1 U 1\nBS 1 3 r1\n\nRD r1 3 0 0\nACG\n\nQA 1 3 1 3\n\n";

// Reads every contig, then tells how the reading ended.
std::string ending_of(const std::string& text, int* contigs_read = nullptr) {
    std::string said;
    const auto io = test::run_captured([&] {
        aceReader r("a.ace", text, test::std_console());
        int n = 0;
        for (contig c; r.next_contig(c); c = contig()) ++n;
        if (contigs_read) *contigs_read = n;
        said = incomplete_reading(r);
        EXPECT_EQ(incomplete_reading(r), said) << "asked twice, the same answer";
    });
    EXPECT_EQ(io.exit_status, std::nullopt);
    return said;
}

TEST(AceReadingEnd, AWholeFileSaysNothing) {
    int n = 0;
    EXPECT_EQ(ending_of("AS 1 1\n\n" + one_contig, &n), "");
    EXPECT_EQ(n, 1);
}

TEST(AceReadingEnd, AnAsLineThatAnnouncesNoneOfItsContigs) {
    const std::string said = "Error: the ACE file a.ace holds contigs that its AS line does not announce\n";
    for (const char* as_line : {"AS 0 0", "AS 0 1", "AS 1", "AS x y", "AS 2147483648 57", "AS 1 99999999999"}) {
        int n = -1;
        EXPECT_EQ(ending_of(std::string(as_line) + "\n\n" + one_contig, &n), said) << as_line;
        EXPECT_EQ(n, 0) << as_line;
    }
}

TEST(AceReadingEnd, AnAsLineOfNoContigsInAFileWithoutContigs) {
    for (const char* text : {"AS 0 0\n", "AS 0 0\n\nCOx\n  C O\n", "AS x y\n\n"}) EXPECT_EQ(ending_of(text), "") << text;
}

TEST(AceReadingEnd, AFileEndingInsideAContig) {
    EXPECT_EQ(ending_of("AS 2 2\n\n" + one_contig + "CO c2 3 1 1 U\nAC"),
              "Error: the ACE file a.ace ends inside contig c2\n");
    std::string crlf;
    for (char c : "AS 1 1\n\n" + one_contig) {
        if (c == '\n') crlf += '\r';
        crlf += c;
    }
    EXPECT_EQ(ending_of(crlf), "Error: the ACE file a.ace ends inside contig c1 (its lines end with CR LF)\n");
}

}  // namespace
}  // namespace pelkrin
