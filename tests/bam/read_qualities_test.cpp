// Each base's quality from the SFF record: found as it stands on either
// strand, or through an alignment where an assembler edited the bases.
#include "bam/read_qualities.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelkrin::bam {
namespace {

struct record_fixture {
    std::string bases;
    std::vector<std::uint8_t> quals;
    std::vector<std::uint8_t> steps;
    record_bases view(std::uint16_t clip_start = 0) const {
        return record_bases{std::span<const char>(bases.data(), bases.size()), quals, steps, clip_start};
    }
};

// Bases with qualities 10, 11, 12, ... and one flow step a base.
record_fixture record_of(const std::string& bases) {
    record_fixture r{bases, {}, {}};
    for (std::size_t i = 0; i < bases.size(); ++i) {
        r.quals.push_back(static_cast<std::uint8_t>(10 + i));
        r.steps.push_back(static_cast<std::uint8_t>(i == 0 ? 3 : 1));
    }
    return r;
}

TEST(ReadQualities, FoundAsItStandsOnTheRecordsStrand) {
    const record_fixture r = record_of("TCAGGATTACA");
    const seq_qualities q = qualities_of("gatta", false, r.view());
    ASSERT_TRUE(q.found);
    EXPECT_FALSE(q.aligned);
    EXPECT_FALSE(q.reverse);
    EXPECT_EQ(q.quals, (std::vector<std::uint8_t>{14, 15, 16, 17, 18}));
    EXPECT_EQ(q.first_flow, 2 + 4);  // base 4: flow steps 3,1,1,1,1 less one
}

// A complemented read: SEQ is the reverse complement of the record's bases,
// so its qualities run backwards.
TEST(ReadQualities, AComplementedReadsQualitiesAreReversed) {
    const record_fixture r = record_of("TCAGGATTACA");
    const seq_qualities q = qualities_of("TAATC", true, r.view());  // GATTA on the record
    ASSERT_TRUE(q.found);
    EXPECT_TRUE(q.reverse);
    EXPECT_EQ(q.quals, (std::vector<std::uint8_t>{18, 17, 16, 15, 14}));
    EXPECT_EQ(q.first_flow, 6);
}

TEST(ReadQualities, TheKeptRangesPlaceWinsOverAnEarlierOne) {
    const record_fixture r = record_of("ACGTACGT");
    EXPECT_EQ(qualities_of("ACGT", false, r.view(5)).quals, (std::vector<std::uint8_t>{14, 15, 16, 17}));
    EXPECT_EQ(qualities_of("ACGT", false, r.view()).quals, (std::vector<std::uint8_t>{10, 11, 12, 13}));
}

// The AF line's direction is tried first, then the other strand.
TEST(ReadQualities, TheOtherStrandWhenTheDirectionDoesNotFind) {
    const record_fixture r = record_of("TCAGGATTACA");
    const seq_qualities q = qualities_of("GATTA", true, r.view());
    ASSERT_TRUE(q.found);
    EXPECT_FALSE(q.reverse);
    EXPECT_EQ(q.quals.front(), 14);
}

// An assembler changed a base and added one: the changed base keeps the
// quality of the record's base it stands for; the added base takes the
// lower of its neighbours'.
TEST(ReadQualities, EditedBasesFollowAnAlignment) {
    const record_fixture r = record_of("TCAGGATTACAGGC");
    //                     record:  GATTACAGG (14..22)
    const seq_qualities q = qualities_of("GATCTACAGG", false, r.view());
    ASSERT_TRUE(q.found);
    EXPECT_TRUE(q.aligned);
    ASSERT_EQ(q.quals.size(), 10u);
    EXPECT_EQ(q.quals[0], 14);
    EXPECT_EQ(q.quals[2], 16);
    EXPECT_EQ(q.quals[3], 16) << "C, added between T (16) and T (17)";
    EXPECT_EQ(q.quals[9], 22);
    EXPECT_EQ(q.first_flow, 6);
}

TEST(ReadQualities, BasesOfAnotherReadAreNotFound) {
    const record_fixture r = record_of("TCAGGATTACA");
    EXPECT_FALSE(qualities_of("CCCCCCCCCC", false, r.view()).found);
    EXPECT_FALSE(qualities_of("", false, r.view()).found);
    EXPECT_FALSE(qualities_of("ACGT", false, record_of("").view()).found);
    // Too large an alignment is not tried.
    EXPECT_FALSE(qualities_of("GATCTACAGG", false, r.view(), 10).found);
}

}  // namespace
}  // namespace pelkrin::bam
