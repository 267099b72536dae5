// Every view operation on many small random contigs, reads reaching outside
// the consensus, 'N's, pads, lengths that differ from the bases and empty
// consensus included: nothing may read or write outside a container (the
// sanitizer build checks that), and only a span with a negative column
// count may fail.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <stdexcept>

#include "view_fixture.h"

namespace pelkrin::test {
namespace {

contig random_contig(std::mt19937& random) {
    auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const std::string alphabet = "ACGTacgtN*";
    std::string consensus;
    const int length = below(4) == 0 ? below(3) : 1 + below(30);
    for (int i = 0; i < length; ++i) consensus.push_back(alphabet[static_cast<std::size_t>(below(10))]);
    std::vector<read_plan> reads;
    const int count = below(8);
    for (int r = 0; r < count; ++r) {
        std::string seq;
        const int bases = below(12);
        for (int i = 0; i < bases; ++i) seq.push_back(alphabet[static_cast<std::size_t>(below(10))]);
        std::optional<int16_t> len;
        if (below(5) == 0) len = static_cast<int16_t>(below(15) - 2);
        std::string name = "r";
        name += std::to_string(r);
        reads.emplace_back(name, below(length + 10) - 5, seq, len);
    }
    contig c = make_contig(consensus, reads);
    if (below(6) == 0) c.base_num = below(40) - 5;
    return c;
}

TEST(ViewRandomContigs, EveryOperationStaysInsideItsContainers) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 400; ++round) {
        const contig source = random_contig(random);
        const int32_t start = static_cast<int32_t>(random() % 40) - 3;
        const int32_t width = static_cast<int32_t>(random() % 40) - 3;

        contig c = source;
        std::vector<std::string> ids;
        c.get_read_ids(ids);
        std::ostringstream whole;
        c.print_align_map(whole);
        c.print_align_map_html(whole, {{'A', "red"}});
        for (int32_t p = -2; p < static_cast<int32_t>(c.flow_index_map.size()) + 3; ++p) {
            (void)c.getFlowIdx_start(p);
            (void)c.getFlowIdx_end(p);
        }

        std::vector<std::vector<int16_t>> flows;
        std::vector<std::map<int32_t, fRead>> flow_rows;
        try {
            c.align_flow(flows, flow_rows, start, width);
        } catch (const std::length_error&) {
        }
        std::vector<std::vector<char>> columns;
        std::vector<std::map<int32_t, std::string>> seq_rows;
        try {
            c.align_seq(columns, seq_rows, start, width);
        } catch (const std::length_error&) {
        }

        // The renderers take positions from 1 on.
        const int32_t from = std::max(start, 1);
        std::string out;
        std::vector<std::string> drawn;
        colour_map colours = {{'A', "green"}};
        c.print_align_map_plain(out, drawn, from, width);
        c.print_align_map_html(out, drawn, colours, from, width);
        c.print_flow_map_plain(out, drawn, from, width);
        c.print_flow_map_html(out, drawn, colours, from, width);
        c.print_flow_map_html_space(out, drawn, colours, from, width);

        EXPECT_LE(c.print_map.size(), c.reads.size());
        for (const auto& row : flow_rows) {
            for (const auto& [key, f] : row) EXPECT_EQ(key, f.flow_end);
        }
    }
}

}  // namespace
}  // namespace pelkrin::test
