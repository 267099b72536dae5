// Assemblies written by other programs, read to the end.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ace/ace_reader.h"
#include "ace_fixture.h"
#include "capture.h"
#include "files.h"

namespace pelkrin {
namespace {

using test::data_file;
using test::run_captured;
using test::text_of;

std::string prefix(const std::vector<char>& chars, std::size_t n) {
    return text_of(chars).substr(0, n);
}

std::string suffix(const std::vector<char>& chars, std::size_t n) {
    const std::string text = text_of(chars);
    return text.substr(text.size() - n);
}

TEST(AceReaderRealFiles, Contig1AceHasTwoContigs) {
    const std::string path = data_file("contig1.ace").string();
    std::vector<contig> contigs;
    const auto result = run_captured([&] {
        aceReader r(path, test::std_console());
        EXPECT_EQ(r.contig_num, 2);
        EXPECT_EQ(r.read_total, 16);
        for (int calls = 0; calls < 5; ++calls) {
            contig c;
            if (!r.next_contig(c)) break;
            contigs.push_back(c);
        }
        contig after;
        EXPECT_FALSE(r.next_contig(after));
    });
    EXPECT_FALSE(result.exit_status.has_value()) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, "");
    ASSERT_EQ(contigs.size(), 2u);

    const contig& one = contigs[0];
    EXPECT_EQ(one.name, "Contig1");
    EXPECT_EQ(one.base_num, 856);
    EXPECT_EQ(one.read_num, 2);
    EXPECT_EQ(one.seg_num, 31);
    EXPECT_EQ(one.uncomplemented, 1);
    EXPECT_EQ(one.consensus.size(), 856u);
    EXPECT_EQ(prefix(one.consensus, 20), "aatacgGGATTGCCCTAGTA");
    EXPECT_EQ(suffix(one.consensus, 6), "TAGtac");
    EXPECT_EQ(one.reads.size(), 2u);

    const READ& lr5 = one.reads.at("BL060c3-LR5.g.ab1");
    EXPECT_EQ(lr5.name, "BL060c3-LR5.g.ab1");
    EXPECT_EQ(lr5.pos, -14);
    EXPECT_EQ(lr5.uncomplemented, 0);
    EXPECT_EQ(lr5.len, 868);
    EXPECT_EQ(lr5.seq.size(), 868u);
    EXPECT_EQ(prefix(lr5.seq, 24), "tagcgaggaaagaacccaacaGga");
    EXPECT_EQ(lr5.align_start, 22);
    EXPECT_EQ(lr5.align_end, 856);

    const READ& lr0 = one.reads.at("BL060c3-LR0R.b.ab1");
    EXPECT_EQ(lr0.pos, 1);
    EXPECT_EQ(lr0.uncomplemented, 1);
    EXPECT_EQ(lr0.len, 856);
    EXPECT_EQ(lr0.seq.size(), 856u);
    EXPECT_EQ(prefix(lr0.seq, 22), "aatacgGGATTGCCCTagtaac");
    EXPECT_EQ(lr0.align_start, 1);
    EXPECT_EQ(lr0.align_end, 856);

    const contig& two = contigs[1];
    EXPECT_EQ(two.name, "Contig2");
    EXPECT_EQ(two.base_num, 3296);
    EXPECT_EQ(two.read_num, 14);
    EXPECT_EQ(two.seg_num, 214);
    EXPECT_EQ(two.uncomplemented, 1);
    EXPECT_EQ(two.consensus.size(), 3296u);
    EXPECT_EQ(prefix(two.consensus, 12), "cacggatgatag");
    // BL060-LR3R.b.ab1 has two AF lines and two RD records: the later ones win.
    EXPECT_EQ(two.reads.size(), 13u);
    const READ& twice = two.reads.at("BL060-LR3R.b.ab1");
    EXPECT_EQ(twice.pos, 1601);
    EXPECT_EQ(twice.uncomplemented, 0);
    EXPECT_EQ(twice.len, 857);
    EXPECT_EQ(twice.seq.size(), 857u);
    EXPECT_EQ(prefix(twice.seq, 10), "agaaagagga");
    EXPECT_EQ(twice.align_start, 442);
    EXPECT_EQ(twice.align_end, 854);

    const READ& lr12 = two.reads.at("BL060-c1-LR12.g.ab1");
    EXPECT_EQ(lr12.pos, 1);
    EXPECT_EQ(lr12.uncomplemented, 1);
    EXPECT_EQ(lr12.len, 862);
    EXPECT_EQ(lr12.align_start, 1);
    EXPECT_EQ(lr12.align_end, 862);

    const READ& last = two.reads.at("BL060c2-LR0R.b.ab1");
    EXPECT_EQ(last.pos, 2445);
    EXPECT_EQ(last.uncomplemented, 0);
    EXPECT_EQ(last.len, 852);
    EXPECT_EQ(last.align_start, 1);
    EXPECT_EQ(last.align_end, 852);
    // No read keeps a name other than its key, and every one got its bases.
    for (const auto& [name, read] : two.reads) {
        EXPECT_EQ(read.name, name);
        EXPECT_FALSE(read.seq.empty()) << name;
    }
}

TEST(AceReaderRealFiles, Contig1AceByVectorOverload) {
    const auto result = run_captured([] {
        aceReader r(data_file("contig1.ace").string(), test::std_console());
        std::vector<contig> out;
        EXPECT_EQ(r.next_contig(out, 10), 2);
        ASSERT_EQ(out.size(), 2u);
        EXPECT_EQ(out[0].reads.size(), 2u);
        EXPECT_EQ(out[1].reads.size(), 13u);
        EXPECT_EQ(out[1].reads.count("BL060c3-LR5.g.ab1"), 0u);
    });
    EXPECT_FALSE(result.exit_status.has_value()) << result.err;
    EXPECT_EQ(result.err, "");
}

TEST(AceReaderRealFiles, ConsedSampleHasOneContig) {
    std::vector<contig> contigs;
    const auto result = run_captured([&] {
        aceReader r(data_file("consed_sample.ace").string(), test::std_console());
        EXPECT_EQ(r.contig_num, 1);
        EXPECT_EQ(r.read_total, 8);
        for (int calls = 0; calls < 5; ++calls) {
            contig c;
            if (!r.next_contig(c)) break;
            contigs.push_back(c);
        }
    });
    EXPECT_FALSE(result.exit_status.has_value()) << result.err;
    EXPECT_EQ(result.err, "");
    ASSERT_EQ(contigs.size(), 1u);

    const contig& c = contigs[0];
    EXPECT_EQ(c.name, "Contig1");
    EXPECT_EQ(c.base_num, 1475);
    EXPECT_EQ(c.read_num, 8);
    EXPECT_EQ(c.seg_num, 156);
    EXPECT_EQ(c.uncomplemented, 1);
    EXPECT_EQ(c.consensus.size(), 1475u);
    EXPECT_EQ(prefix(c.consensus, 16), "agccccgggccgtggg");
    ASSERT_EQ(c.reads.size(), 8u);

    const READ& r217 = c.reads.at("K26-217c");
    EXPECT_EQ(r217.pos, 498);
    EXPECT_EQ(r217.uncomplemented, 1);
    EXPECT_EQ(r217.len, 563);
    EXPECT_EQ(r217.seq.size(), 563u);
    EXPECT_EQ(prefix(r217.seq, 24), "tcccCgtgagatcatcctgaAGTG");
    EXPECT_EQ(r217.align_start, 19);
    EXPECT_EQ(r217.align_end, 424);

    const READ& r572 = c.reads.at("K26-572c");
    EXPECT_EQ(r572.pos, 1);
    EXPECT_EQ(r572.uncomplemented, 0);
    EXPECT_EQ(r572.len, 594);
    EXPECT_EQ(r572.seq.size(), 594u);
    EXPECT_EQ(prefix(r572.seq, 16), "agccccgggccgtggg");
    EXPECT_EQ(r572.align_start, 1);
    EXPECT_EQ(r572.align_end, 586);

    const READ& r766 = c.reads.at("K26-766c");
    EXPECT_EQ(r766.pos, 408);
    EXPECT_EQ(r766.uncomplemented, 0);
    EXPECT_EQ(r766.len, 603);
    EXPECT_EQ(r766.align_start, 126);
    EXPECT_EQ(r766.align_end, 583);
}

TEST(AceReaderRealFiles, Cap3FileWithoutBsRecordsEndsNamingRd) {
    contig c;
    const auto result = run_captured([&] {
        aceReader r(data_file("seq.cap.ace").string(), test::std_console());
        EXPECT_EQ(r.contig_num, 1);
        EXPECT_EQ(r.read_total, 6);
        r.next_contig(c);
        ADD_FAILURE() << "next_contig returned";
    });
    ASSERT_TRUE(result.exit_status.has_value());
    EXPECT_EQ(*result.exit_status, 1);
    EXPECT_EQ(result.err, "Error: tag 'RD' should be not in the ACE file!\n");
    EXPECT_EQ(result.out, "");
    // What was read before the RD line stays in the target.
    EXPECT_EQ(c.name, "Contig1");
    EXPECT_EQ(c.base_num, 1222);
    EXPECT_EQ(c.read_num, 6);
    EXPECT_EQ(c.seg_num, 0);
    EXPECT_EQ(c.consensus.size(), 1222u);
    ASSERT_EQ(c.reads.size(), 6u);
    EXPECT_EQ(c.reads.at("R3").pos, -53);
    EXPECT_EQ(c.reads.at("R6").pos, 517);
    EXPECT_EQ(c.reads.at("R6").uncomplemented, 0);
    EXPECT_TRUE(c.reads.at("R3").seq.empty());
}

}  // namespace
}  // namespace pelkrin
