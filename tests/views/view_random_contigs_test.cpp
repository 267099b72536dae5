// Every view operation on many small random contigs, reads reaching outside
// the consensus, 'N's, pads, lengths that differ from the bases and empty
// consensus included. Every index or position an operation hands back must lie
// inside the container it indexes: map entries name reads of the contig, flow
// indexes are flows of the flow consensus, table keys are columns of their
// table and rows are print rows. Nothing may read or write outside a container
// (the sanitizer build checks that), and only a span with a negative column
// count may fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>

#include "view_fixture.h"
#include "views/flow_space.h"

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

bool names_a_read(const contig& c, const std::string& name) { return c.reads.count(name) == 1; }

// Every start in the position and print maps is a read of the contig at that
// start, and every print row holds starts from 1 to base_num only.
void expect_maps_index_the_reads(const contig& c) {
    EXPECT_EQ(c.pos_map.size(), c.reads.size());
    for (const auto& [pos, name] : c.pos_map) {
        ASSERT_TRUE(names_a_read(c, name)) << name;
        EXPECT_EQ(pos, c.reads.at(name).pos) << name;
    }
    EXPECT_LE(c.print_map.size(), c.reads.size());
    for (const auto& row : c.print_map) {
        for (const auto& [pos, name] : row) {
            EXPECT_TRUE(names_a_read(c, name)) << name;
            EXPECT_GE(pos, 1) << name;
            EXPECT_LE(pos, c.base_num) << name;
        }
    }
}

// Every flow index recorded for a position is a flow of the flow consensus,
// and there is one set of them per position of the consensus.
void expect_flow_indexes_inside_the_flow_consensus(const contig& c) {
    if (c.reads.empty()) {
        EXPECT_TRUE(c.flow_index_map.empty());
        EXPECT_TRUE(c.flow_consensus.empty());
        return;
    }
    EXPECT_EQ(c.flow_index_map.size(), c.consensus.size());
    ASSERT_FALSE(c.flow_consensus.empty());
    for (std::size_t i = 0; i < c.flow_index_map.size(); ++i) {
        for (const auto& [letter, flow] : c.flow_index_map[i]) {
            EXPECT_GE(flow, 0) << "position " << i << " " << letter;
            EXPECT_LT(static_cast<std::size_t>(flow), c.flow_consensus.size()) << "position " << i << " " << letter;
        }
    }
}

// A flow looked up for any position, inside the consensus or not, is a flow of
// the flow consensus (0 when there is none).
void expect_flow_lookup_inside_the_flow_consensus(const contig& c, int32_t p) {
    for (const int32_t flow : {c.getFlowIdx_start(p), c.getFlowIdx_end(p)}) {
        if (c.flow_consensus.empty()) {
            EXPECT_EQ(flow, 0) << "position " << p;
        } else {
            EXPECT_GE(flow, 0) << "position " << p;
            EXPECT_LT(static_cast<std::size_t>(flow), c.flow_consensus.size()) << "position " << p;
        }
    }
}

// Each table has one row per print row, and no column holds more entries than
// there are rows.
template <typename Column, typename Row>
void expect_rows_inside_the_table(const contig& c, const std::vector<Column>& columns, const std::vector<Row>& rows) {
    EXPECT_EQ(rows.size(), c.print_map.size());
    for (std::size_t col = 0; col < columns.size(); ++col) {
        EXPECT_LE(columns[col].size(), c.print_map.size()) << "column " << col;
    }
}

// Each read of the flow table is keyed by its last flow, which is a column of
// the table; its first flow is no later than the table's last column and no
// earlier than the first flow of the span, which may lie left of column 0. A
// span narrower than one position still lists the reads that reach its start,
// under keys that index no column: only their names are checked.
void expect_flow_table_inside_its_columns(const contig& c, const std::vector<std::vector<int16_t>>& flows,
                                          const std::vector<std::map<int32_t, fRead>>& rows, int32_t start,
                                          int32_t width) {
    expect_rows_inside_the_table(c, flows, rows);
    const int64_t s = std::min<int64_t>(start, static_cast<int64_t>(c.consensus.size()));
    const auto before_start = static_cast<int32_t>(std::max<int64_t>(s - 1, -1));
    const int32_t first_of_span = c.getFlowIdx_start(before_start) - c.getFlowIdx_end(before_start);
    for (const auto& row : rows) {
        for (const auto& [key, f] : row) {
            EXPECT_TRUE(names_a_read(c, f.name)) << f.name;
            EXPECT_EQ(key, f.flow_end) << f.name;
            if (width < 1) continue;
            EXPECT_GE(f.flow_end, 0) << f.name;
            EXPECT_LT(static_cast<std::size_t>(f.flow_end), flows.size()) << f.name;
            EXPECT_GE(f.flow_start, first_of_span) << f.name;
            EXPECT_LT(f.flow_start, static_cast<int64_t>(flows.size())) << f.name;
        }
    }
}

// Each read of the base table is keyed by the column of its last position in
// the span. A span of no position (it begins right after the consensus, or is
// narrower than one position) has no column, and lists the reads that reach
// its start under key -1.
void expect_base_table_inside_its_columns(const contig& c, const std::vector<std::vector<char>>& columns,
                                          const std::vector<std::map<int32_t, std::string>>& rows) {
    expect_rows_inside_the_table(c, columns, rows);
    for (const auto& row : rows) {
        for (const auto& [key, name] : row) {
            EXPECT_TRUE(names_a_read(c, name)) << name;
            if (columns.empty()) {
                EXPECT_EQ(key, -1) << name;
            } else {
                EXPECT_GE(key, 0) << name;
                EXPECT_LT(static_cast<std::size_t>(key), columns.size()) << name;
            }
        }
    }
}

TEST(ViewRandomContigs, EveryOperationStaysInsideItsContainers) {
    std::mt19937 random(20240611);
    std::size_t listed = 0, flow_reads = 0, base_reads = 0;
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const contig source = random_contig(random);
        const int32_t start = static_cast<int32_t>(random() % 40) - 3;
        const int32_t width = static_cast<int32_t>(random() % 40) - 3;

        contig c = source;
        std::vector<std::string> ids;
        c.get_read_ids(ids);
        expect_maps_index_the_reads(c);
        std::size_t in_rows = 0;
        for (const auto& row : c.print_map) in_rows += row.size();
        EXPECT_EQ(ids.size(), in_rows);
        for (const std::string& id : ids) EXPECT_TRUE(names_a_read(c, id)) << id;
        listed += ids.size();

        std::ostringstream whole;
        c.print_align_map(whole);
        c.print_align_map_html(whole, {{'A', "red"}});

        std::vector<std::vector<int16_t>> flows;
        std::vector<std::map<int32_t, fRead>> flow_rows;
        bool flow_span = true;
        try {
            c.align_flow(flows, flow_rows, start, width);
        } catch (const std::length_error&) {
            flow_span = false;
        }
        expect_flow_indexes_inside_the_flow_consensus(c);
        for (int32_t p = -2; p < static_cast<int32_t>(c.flow_index_map.size()) + 3; ++p) {
            expect_flow_lookup_inside_the_flow_consensus(c, p);
        }
        if (flow_span) {
            expect_flow_table_inside_its_columns(c, flows, flow_rows, start, width);
            for (const auto& row : flow_rows) flow_reads += row.size();
        }

        std::vector<std::vector<char>> columns;
        std::vector<std::map<int32_t, std::string>> seq_rows;
        try {
            c.align_seq(columns, seq_rows, start, width);
            expect_base_table_inside_its_columns(c, columns, seq_rows);
            for (const auto& row : seq_rows) base_reads += row.size();
        } catch (const std::length_error&) {
        }

        // The renderers take positions from 1 on; every read they list is one
        // of the contig.
        const int32_t from = std::max(start, 1);
        std::string out;
        std::vector<std::string> drawn;
        colour_map colours = {{'A', "green"}};
        c.print_align_map_plain(out, drawn, from, width);
        c.print_align_map_html(out, drawn, colours, from, width);
        c.print_flow_map_plain(out, drawn, from, width);
        c.print_flow_map_html(out, drawn, colours, from, width);
        c.print_flow_map_html_space(out, drawn, colours, from, width);
        for (const std::string& name : drawn) EXPECT_TRUE(names_a_read(c, name)) << name;

        if (::testing::Test::HasFailure()) break;
    }
    // The rounds reach the tables with reads in them, so the checks above ran.
    EXPECT_GT(listed, 400u);
    EXPECT_GT(flow_reads, 100u);
    EXPECT_GT(base_reads, 100u);
}

// The flow consensus without the maps (views/flow_space.h) gives what the
// maps give, on contigs with odd characters, reads outside the consensus and
// lengths that do not match the bases.
TEST(ViewRandomContigs, FlowSpaceMatchesTheFlowIndexMaps) {
    std::mt19937 random(20261123);
    for (int n = 0; n < 2000; ++n) {
        contig c = random_contig(random);
        const flow_space fs = build_flow_space(c);
        c.create_flow_concensus();
        ASSERT_EQ(fs.flows, c.flow_consensus) << n;
        if (c.reads.empty()) continue;
        ASSERT_EQ(fs.first_flow.size(), c.consensus.size()) << n;
        for (std::size_t i = 0; i < c.consensus.size(); ++i) {
            ASSERT_EQ(fs.first_flow[i], c.getFlowIdx_start(static_cast<int32_t>(i))) << n << " at " << i;
            ASSERT_EQ(fs.last_flow[i], c.getFlowIdx_end(static_cast<int32_t>(i))) << n << " at " << i;
        }
    }
}

}  // namespace
}  // namespace pelkrin::test
