// Reading names only gives each contig's name and its reads' names as the
// whole reading does, and meets the same errors and the same end: on real
// files, on every cut of them, with bytes changed, and with RD records in
// another order than the AF lines.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "ace/ace_reader.h"
#include "common/fatal_error.h"
#include "files.h"

namespace pelkrin {
namespace {

// The contigs' names and their reads' names, and how the reading ended.
std::string reading_of(const std::string& text, bool names_only) {
    std::ostringstream dropped;
    std::ostringstream seen;
    try {
        aceReader r("in.ace", text, console{dropped, dropped});
        while (true) {
            std::vector<std::string> names;
            std::string name;
            if (names_only) {
                contig_names c;
                if (!r.next_contig_names(c)) break;
                name = c.name;
                for (std::size_t i = 0; i < c.reads(); ++i) names.emplace_back(c.read_name(i));
            } else {
                contig c;
                if (!r.next_contig(c)) break;
                name = c.name;
                for (const auto& entry : c.reads) names.push_back(entry.first);
            }
            seen << name << '\n';
            for (const std::string& n : names) seen << ' ' << n << '\n';
        }
        seen << "end " << r.ended_inside_contig() << ' ' << r.unfinished_contig() << ' '
             << r.unfinished_contig_had_cr() << '\n';
    } catch (const fatal_error& e) {
        seen << "error " << e.message();
    }
    return seen.str();
}

std::vector<std::string> real_files() {
    return {test::read_file(test::data_file("contig1.ace")), test::read_file(test::data_file("consed_sample.ace")),
            test::read_file(test::data_file("seq.cap.ace")), test::read_file(test::source_file("example/example.ace"))};
}

TEST(AceReaderNamesOnly, RealFilesAndEveryCutOfThem) {
    for (const std::string& text : real_files()) {
        ASSERT_EQ(reading_of(text, false), reading_of(text, true));
        const std::size_t step = std::max<std::size_t>(1, text.size() / 150);
        for (std::size_t cut = 0; cut < text.size(); cut += step) {
            const std::string part = text.substr(0, cut);
            ASSERT_EQ(reading_of(part, false), reading_of(part, true)) << "cut at " << cut;
        }
    }
}

TEST(AceReaderNamesOnly, ChangedBytes) {
    std::mt19937 rng(9);
    const std::string alphabet = "\n\n\n \t{}ACGT*0123456789-+RDQAFBSCOU";
    for (const std::string& text : real_files()) {
        for (int k = 0; k < 150; ++k) {
            std::string changed = text;
            for (int n = 0; n < 3; ++n) changed[rng() % changed.size()] = alphabet[rng() % alphabet.size()];
            ASSERT_EQ(reading_of(changed, false), reading_of(changed, true)) << "change " << k;
        }
    }
}

// RD records in the reverse order of the AF lines, a name on two AF lines,
// and an RD record of a read no AF line names.
TEST(AceReaderNamesOnly, RdRecordsInAnotherOrder) {
    const std::string reversed =
        "AS 1 3\n\nCO c1 4 3 1 U\nACGT\n\nBQ\n1 1 1 1\n\nAF rb U 1\nAF rc C 1\nAF ra U 1\nBS 1 4 ra\n\n"
        "RD ra 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n\nRD rc 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n\n"
        "RD rb 4 0 0\nACGT\n\nQA 1 4 1 4\nDS\n\n";
    EXPECT_EQ(reading_of(reversed, true), "c1\n ra\n rb\n rc\nend 0 c1 0\n");
    EXPECT_EQ(reading_of(reversed, true), reading_of(reversed, false));
    std::string twice = reversed;
    twice.replace(twice.find("AF rc C 1"), 9, "AF rb C 2");
    EXPECT_EQ(reading_of(twice, true), reading_of(twice, false));
    std::string unnamed = reversed;
    unnamed.replace(unnamed.find("RD rc"), 5, "RD rz");
    EXPECT_EQ(reading_of(unnamed, true), "error Error: AF tag for read rz is missing\n");
    EXPECT_EQ(reading_of(unnamed, true), reading_of(unnamed, false));
}

}  // namespace
}  // namespace pelkrin
