#include "sff/sff_read.h"

#include <gtest/gtest.h>

#include <sstream>

#include "sff/seq_read.h"

namespace pelkrin {
namespace {

// A record of n bases, flow index per base given, bases "ACGT..." and quality 10 + i.
sff_read record(const std::vector<std::uint8_t>& flow_index) {
    sff_read r(8);
    r.name_length = 3;
    r.number_of_bases = static_cast<std::uint32_t>(flow_index.size());
    r.set_read_space();
    r.name = {'a', 'b', 'c'};
    r.flow_index_per_base = flow_index;
    for (std::size_t i = 0; i < flow_index.size(); ++i) {
        r.bases[i] = "ACGT"[i % 4];
        r.quality_scores[i] = static_cast<std::uint8_t>(10 + i);
    }
    return r;
}

std::vector<std::uint8_t> ones(std::size_t n) { return std::vector<std::uint8_t>(n, 1); }

TEST(SffReadEdge, AllClipsZeroKeepsEveryBase) {
    sff_read r = record({1, 1, 1, 1, 1});
    EXPECT_EQ(r.get_base_start(), 1);
    EXPECT_EQ(r.get_base_end(), 5);
    seqRead s(r);
    EXPECT_EQ(s.name, "abc");
    EXPECT_EQ(s.bases, (std::vector<char>{'A', 'C', 'G', 'T', 'A'}));
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{10, 11, 12, 13, 14}));
    EXPECT_EQ(s.flowIdx, (std::vector<std::int16_t>{0, 1, 2, 3, 4}));
}

TEST(SffReadEdge, TighterLeftClipWins) {
    sff_read r = record(ones(120));
    r.clip_qual_left = 5;
    r.clip_adapter_left = 8;
    EXPECT_EQ(r.get_base_start(), 8);
}

TEST(SffReadEdge, UnsetRightClipMeansNumberOfBases) {
    sff_read r = record(ones(120));
    r.clip_qual_right = 100;
    r.clip_adapter_right = 0;
    EXPECT_EQ(r.get_base_end(), 100);
    r.clip_qual_right = 0;
    r.clip_adapter_right = 90;
    EXPECT_EQ(r.get_base_end(), 90);
    r.clip_qual_right = 80;
    EXPECT_EQ(r.get_base_end(), 80);
}

TEST(SffReadEdge, FlowIndexesAndRunLengths) {
    sff_read r = record({1, 0, 2, 1});
    seqRead s(r);
    EXPECT_EQ(s.flowIdx, (std::vector<std::int16_t>{0, 0, 2, 3}));
    std::vector<std::int16_t> flows{9, 9, 9, 9, 9, 9, 9};
    std::vector<std::int16_t> counts{9};
    r.map_flow_num(flows, counts);
    EXPECT_EQ(flows, (std::vector<std::int16_t>{0, 2, 3, 0}));
    EXPECT_EQ(counts, (std::vector<std::int16_t>{2, 1, 1, 0}));
}

TEST(SffReadEdge, ClippedBasesStillAdvanceTheFlowPosition) {
    sff_read r = record({1, 2, 1, 3, 0, 1});
    r.clip_qual_left = 3;
    seqRead s(r);
    // Flows of all bases: 0, 2, 3, 6, 6, 7; the kept ones start at base 3.
    EXPECT_EQ(s.flowIdx, (std::vector<std::int16_t>{3, 6, 6, 7}));
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{12, 13, 14, 15}));
    EXPECT_EQ(s.bases, (std::vector<char>{'G', 'T', 'A', 'C'}));
}

TEST(SffReadEdge, ZeroBasesGiveEmptyRead) {
    sff_read r = record({});
    seqRead s(r);
    EXPECT_EQ(s.name, "abc");
    EXPECT_TRUE(s.bases.empty());
    EXPECT_TRUE(s.quals.empty());
    EXPECT_TRUE(s.flowIdx.empty());
}

TEST(SffReadEdge, QualityScoresWidenWithoutSign) {
    sff_read r = record({1, 1});
    r.quality_scores = {200, 255};
    seqRead s(r);
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{200, 255}));
}

// Choices for reads outside the supported range.

TEST(SffReadRange, ReversedKeptRangeGivesEmptyRead) {
    sff_read r = record(ones(10));
    r.clip_qual_left = 8;
    r.clip_qual_right = 5;
    seqRead s(r);
    EXPECT_TRUE(s.quals.empty());
    EXPECT_TRUE(s.flowIdx.empty());
    EXPECT_TRUE(s.bases.empty());
}

TEST(SffReadRange, ReadOf32768BasesOrMoreGivesEmptyRead) {
    sff_read r = record(ones(40000));
    EXPECT_EQ(r.get_base_end(), static_cast<std::int16_t>(40000));  // truncated to 16 bits: negative
    seqRead s(r);
    EXPECT_TRUE(s.quals.empty());
}

TEST(SffReadRange, ClipPointOf32768OrMoreGivesEmptyRead) {
    sff_read r = record(ones(100));
    r.clip_qual_left = 40000;
    r.clip_qual_right = 100;
    EXPECT_LT(r.get_base_start(), 0);
    seqRead s(r);
    EXPECT_TRUE(s.quals.empty());
    EXPECT_TRUE(s.bases.empty());
}

TEST(SffReadRange, KeptRangePastTheBasesIsPaddedWithZeros) {
    sff_read r = record({1, 1, 1});
    r.clip_qual_right = 5;
    r.clip_adapter_right = 6;
    seqRead s(r);
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{10, 11, 12, 0, 0}));
    EXPECT_EQ(s.flowIdx, (std::vector<std::int16_t>{0, 1, 2, 0, 0}));
}

TEST(SffReadRange, RecordHoldingFewerBasesThanItsHeaderClaims) {
    sff_read r = record({1, 1, 1});
    r.number_of_bases = 1000000;  // a truncated record: the arrays hold only three
    r.clip_qual_right = 5;
    seqRead s(r);
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{10, 11, 12, 0, 0}));
}

TEST(SffReadRange, LeadingZeroFlowIndexIsNotCounted) {
    sff_read r = record({0, 1, 0, 2});
    std::vector<std::int16_t> flows, counts;
    r.map_flow_num(flows, counts);
    EXPECT_EQ(flows, (std::vector<std::int16_t>{0, 2, 0, 0}));
    EXPECT_EQ(counts, (std::vector<std::int16_t>{2, 1, 0, 0}));
}

TEST(SffRead, AssignReusesAndReplaces) {
    seqRead s(record({1, 1, 1, 1}));
    sff_read shorter = record({2});
    shorter.name = {'x', 'y', 'z'};
    s.assign(shorter);
    EXPECT_EQ(s.name, "xyz");
    EXPECT_EQ(s.quals, (std::vector<std::int16_t>{10}));
    EXPECT_EQ(s.flowIdx, (std::vector<std::int16_t>{1}));
}

TEST(SffRead, ConstructorsAllocateOneElementOrTheFlows) {
    sff_read plain;
    EXPECT_EQ(plain.name.size(), 1u);
    EXPECT_EQ(plain.flowgram_values.size(), 1u);
    EXPECT_EQ(plain.flow_index_per_base.size(), 1u);
    EXPECT_EQ(plain.bases.size(), 1u);
    EXPECT_EQ(plain.quality_scores.size(), 1u);
    sff_read sized(400);
    EXPECT_EQ(sized.numOfFlows, 400u);
    EXPECT_EQ(sized.flowgram_values.size(), 400u);
    EXPECT_EQ(sized.bases.size(), 1u);
}

TEST(SffRead, CopyIsDeep) {
    sff_read a = record({1, 0, 2});
    a.flowgram_values[3] = 77;
    sff_read b(a);
    EXPECT_EQ(b.flowgram_values, a.flowgram_values);
    EXPECT_EQ(b.bases, a.bases);
    EXPECT_EQ(b.number_of_bases, 3u);
    b.bases[0] = 'N';
    EXPECT_EQ(a.bases[0], 'A');
    EXPECT_NE(b.bases.data(), a.bases.data());
}

TEST(SffRead, SetNumOfFlowsResizesTheFlowgramOnly) {
    sff_read r = record({1, 1});
    r.set_numOfFlows(3);
    EXPECT_EQ(r.numOfFlows, 3u);
    EXPECT_EQ(r.flowgram_values.size(), 3u);
    EXPECT_EQ(r.bases.size(), 2u);
}

TEST(SffRead, SetReadSpaceIsBoundedByWhatIsAvailable) {
    sff_read r;
    r.name_length = 60000;
    r.number_of_bases = 4000000000u;
    r.set_read_space(100);
    EXPECT_EQ(r.name.size(), 100u);
    EXPECT_EQ(r.flow_index_per_base.size(), 100u);
    EXPECT_EQ(r.bases.size(), 100u);
    EXPECT_EQ(r.quality_scores.size(), 100u);
}

TEST(SffRead, FreeSpaceKeepsTheFlowgram) {
    sff_read r = record({1, 1});
    r.free_space();
    EXPECT_TRUE(r.name.empty());
    EXPECT_TRUE(r.bases.empty());
    EXPECT_EQ(r.flowgram_values.size(), 8u);
    r.set_read_space();  // safe after a release
    EXPECT_EQ(r.bases.size(), 2u);
}

TEST(SffRead, VarEndianSwapReversesTheSevenHeaderFields) {
    sff_read r;
    r.read_header_length = 0x0018;
    r.name_length = 0x000E;
    r.number_of_bases = 0x00000104;
    r.clip_qual_left = 0x0005;
    r.clip_qual_right = 0x0100;
    r.clip_adapter_left = 0x0000;
    r.clip_adapter_right = 0x0203;
    r.numOfFlows = 400;
    r.var_endian_swap();
    EXPECT_EQ(r.read_header_length, 0x1800u);
    EXPECT_EQ(r.name_length, 0x0E00u);
    EXPECT_EQ(r.number_of_bases, 0x04010000u);
    EXPECT_EQ(r.clip_qual_left, 0x0500u);
    EXPECT_EQ(r.clip_qual_right, 0x0001u);
    EXPECT_EQ(r.clip_adapter_left, 0u);
    EXPECT_EQ(r.clip_adapter_right, 0x0302u);
    EXPECT_EQ(r.numOfFlows, 400u);
}

TEST(SffRead, LoadHeaderOverlaysOnlyTheDeliveredBytes) {
    sff_read r;
    const unsigned char full[16] = {0x18, 0, 0x0E, 0, 0x04, 0x01, 0, 0, 5, 0, 0, 1, 0, 0, 3, 2};
    r.load_header(full, 16);
    EXPECT_EQ(r.read_header_length, 0x18u);
    EXPECT_EQ(r.number_of_bases, 0x104u);
    const unsigned char part[3] = {0x20, 0, 0x07};
    r.load_header(part, 3);
    EXPECT_EQ(r.read_header_length, 0x20u);
    EXPECT_EQ(r.name_length, 0x07u);  // low byte replaced, high byte kept
    EXPECT_EQ(r.number_of_bases, 0x104u);
    EXPECT_EQ(r.clip_adapter_right, 0x0203u);
}

TEST(SffRead, PrintHeaderLine) {
    sff_read r = record({1, 1});
    r.read_header_length = 24;
    r.clip_qual_left = 1;
    r.clip_qual_right = 2;
    std::ostringstream out;
    r.print_header(out);
    EXPECT_EQ(out.str(), "24\t3\t2\t1\t2\t0\t0\n");
}

TEST(SffRead, PrintReadEndsNumberLinesWithATab) {
    sff_read r(3);
    r.name_length = 2;
    r.number_of_bases = 2;
    r.set_read_space();
    r.name = {'r', '1'};
    r.flowgram_values = {101, 2, 98};
    r.flow_index_per_base = {1, 2};
    r.bases = {'T', 'C'};
    r.quality_scores = {35, 33};
    std::ostringstream out;
    r.print_read(out);
    EXPECT_EQ(out.str(), "r1\n101\t2\t98\t\n1\t2\t\nTC\n35\t33\t\n");
}

}  // namespace
}  // namespace pelkrin
