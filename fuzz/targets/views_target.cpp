// Fuzz target of the contig views: every operation and renderer over several
// spans of every contig that arbitrary ACE bytes give.
#include <sstream>
#include <stdexcept>

#include "ace/ace_reader.h"
#include "fuzz_support.h"
#include "fuzz_targets.h"
#include "views/colour_map.h"

namespace pelkrin::fuzz {
namespace {

void every_view(contig c) {
    std::vector<std::string> ids;
    c.get_read_ids(ids);
    c.create_flow_concensus();
    const auto positions = static_cast<std::int32_t>(c.flow_index_map.size());
    for (std::int32_t p = -2; p <= positions + 2; ++p) {
        c.getFlowIdx_start(p);
        c.getFlowIdx_end(p);
    }
    colour_map colours{{'A', "red"}, {'*', "gray"}};
    const std::int32_t length = static_cast<std::int32_t>(c.consensus.size());
    for (std::int32_t start : {1, 2, length / 2, length, length + 3}) {
        for (std::int32_t width : {1, 7, 100}) {
            if (start < 1) continue;
            try {
                std::vector<std::vector<std::int16_t>> flows;
                std::vector<std::map<std::int32_t, fRead>> flow_rows;
                c.align_flow(flows, flow_rows, start, width);
                std::vector<std::vector<char>> columns;
                std::vector<std::map<std::int32_t, std::string>> seq_rows;
                c.align_seq(columns, seq_rows, start, width);
            } catch (const std::length_error&) {
                // A span that cannot be cut.
            }
            std::string out;
            std::vector<std::string> reads;
            c.print_align_map_plain(out, reads, start, width);
            c.print_align_map_html(out, reads, colours, start, width);
            c.print_flow_map_plain(out, reads, start, width);
            c.print_flow_map_html(out, reads, colours, start, width);
            c.print_flow_map_html_space(out, reads, colours, start, width);
        }
    }
    std::ostringstream whole;
    c.print_align_map(whole);
    c.print_align_map_html(whole, colours);
}

}  // namespace

void contig_views(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    run_guarded([&] {
        aceReader reader("views.ace", text, quiet());
        while (true) {
            contig c;
            if (!reader.next_contig(c)) break;
            every_view(c);
        }
    });
}

}  // namespace pelkrin::fuzz
