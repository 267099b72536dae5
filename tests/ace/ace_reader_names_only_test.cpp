// Passing over the sequences reads the same contigs, read names and places,
// and meets the same errors and the same end, as keeping them: on real files,
// on every cut of them, and with bytes changed.
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

// Everything next_contig gives but the sequences, and how the reading ended.
std::string reading_of(const std::string& text, bool keep) {
    std::ostringstream dropped;
    std::ostringstream seen;
    try {
        aceReader r("in.ace", text, console{dropped, dropped});
        r.keep_sequences(keep);
        while (true) {
            contig c;
            if (!r.next_contig(c)) break;
            seen << c.name << ' ' << c.base_num << ' ' << c.read_num << ' ' << c.seg_num << ' ' << c.uncomplemented
                 << '\n';
            if (!keep) {
                EXPECT_TRUE(c.consensus.empty());
            }
            for (const auto& [name, read] : c.reads) {
                seen << ' ' << name << ' ' << read.pos << ' ' << read.len << ' ' << read.uncomplemented << ' '
                     << read.align_start << ' ' << read.align_end << '\n';
                if (!keep) {
                    EXPECT_TRUE(read.seq.empty());
                }
            }
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

}  // namespace
}  // namespace pelkrin
