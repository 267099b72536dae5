// A read's place on the unpadded consensus: position, CIGAR and bases.
#include "bam/read_placement.h"

#include <gtest/gtest.h>

#include <string>

namespace pelkrin::bam {
namespace {

READ read_of(const std::string& padded, std::int32_t pos, std::int16_t align_start, std::int16_t align_end) {
    READ r;
    r.name = "r";
    r.pos = pos;
    r.seq.assign(padded.begin(), padded.end());
    r.len = static_cast<std::int16_t>(padded.size());
    r.uncomplemented = 1;
    r.align_start = align_start;
    r.align_end = align_end;
    return r;
}

padded_reference ref_of(const std::string& consensus) {
    return make_padded_reference(std::vector<char>(consensus.begin(), consensus.end()));
}

struct placement_case {
    const char* what;
    std::string consensus;
    std::string read;
    std::int32_t pos;
    std::int16_t align_start;
    std::int16_t align_end;
    bool mapped;
    std::int64_t expected_pos;
    const char* cigar;
    const char* seq;
};

TEST(ReadPlacement, EachColumnGivesItsOperation) {
    const placement_case cases[] = {
        {"bases over bases", "ACGTACGT", "CGTA", 2, 1, 4, true, 1, "4M", "CGTA"},
        {"a base over a consensus pad", "AC*GTA", "AC*GTA", 1, 1, 6, true, 0, "5M", "ACGTA"},
        {"an insertion", "AC*GTA", "ACTGTA", 1, 1, 6, true, 0, "2M1I3M", "ACTGTA"},
        {"a deletion", "ACGTA", "AC*TA", 1, 1, 5, true, 0, "2M1D2M", "ACTA"},
        {"clipped ends, their pads dropped", "ACGTACGT", "g*ACGTAcc", 0, 3, 7, true, 1, "1S5M2S", "gACGTAcc"},
        {"left of position 1 and past the end", "ACGT", "TTACGTGG", -1, 1, 8, true, 0, "2S4M2S", "TTACGTGG"},
        {"a deletion at an end is not part of it", "ACGTA", "*CGT*", 1, 1, 5, true, 1, "3M", "CGT"},
        {"an insertion at an end is clipped", "A*CGT*", "ATCGTG", 1, 2, 6, true, 1, "2S3M1S", "ATCGTG"},
        {"a pad over a pad is nothing", "AC*GT", "AC*GT", 1, 1, 5, true, 0, "4M", "ACGT"},
        {"no clip range", "ACGT", "ACGT", 1, 0, 0, false, 0, "*", "ACGT"},
        {"a range beyond the read", "ACGT", "ACGT", 1, 6, 9, false, 0, "*", "ACGT"},
        {"all of it right of the consensus", "ACGT", "GG", 6, 1, 2, false, 3, "*", "GG"},
        {"its start a pad of the consensus", "AC*GT", "TT", 3, 5, 6, false, 2, "*", "TT"},
    };
    for (const placement_case& c : cases) {
        SCOPED_TRACE(c.what);
        const placed_read p = place_read(read_of(c.read, c.pos, c.align_start, c.align_end), ref_of(c.consensus));
        EXPECT_EQ(p.mapped, c.mapped);
        EXPECT_EQ(p.pos, c.expected_pos);
        EXPECT_EQ(cigar_text(p.cigar), c.cigar);
        EXPECT_EQ(p.seq, c.seq);
    }
}

// Whatever the read, the CIGAR's query length is SEQ's length, clips stand
// only at the ends, and it begins and ends with M.
TEST(ReadPlacement, TheCigarAlwaysSpansSeqOnRandomReads) {
    std::uint32_t state = 12345;
    const auto next = [&state] { return state = state * 1103515245u + 12345u; };
    const std::string letters = "ACGT*";
    int mapped = 0;
    for (int n = 0; n < 3000; ++n) {
        std::string consensus(1 + next() % 40, 'A');
        for (char& c : consensus) c = letters[next() % 5];
        std::string padded(1 + next() % 30, 'A');
        for (char& c : padded) c = letters[next() % 5];
        const auto pos = static_cast<std::int32_t>(next() % 50) - 10;
        const auto start = static_cast<std::int16_t>(next() % 35);
        const auto end = static_cast<std::int16_t>(next() % 35);
        const placed_read p = place_read(read_of(padded, pos, start, end), ref_of(consensus));
        std::uint64_t query = 0;
        for (const cigar_op& op : p.cigar) query += op.op == 'D' ? 0 : op.length;
        if (p.mapped) {
            ++mapped;
            ASSERT_EQ(query, p.seq.size()) << padded << " on " << consensus;
            std::size_t first = 0;
            while (p.cigar[first].op == 'S') ++first;
            std::size_t last = p.cigar.size() - 1;
            while (p.cigar[last].op == 'S') --last;
            EXPECT_EQ(p.cigar[first].op, 'M');
            EXPECT_EQ(p.cigar[last].op, 'M');
            for (std::size_t k = first; k <= last; ++k) EXPECT_NE(p.cigar[k].op, 'S');
            ASSERT_GE(p.pos, 0);
        } else {
            EXPECT_TRUE(p.cigar.empty());
        }
        std::size_t bases = 0;
        for (char c : padded) bases += c == '*' ? 0 : 1;
        EXPECT_EQ(p.seq.size(), bases);
    }
    EXPECT_GT(mapped, 300) << "many of the random reads must be mapped";
}

}  // namespace
}  // namespace pelkrin::bam
