#pragma once
// The operations behind Pelkrin-view's modes: each calls one view of the
// contig and hands back what it produced.
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "ace/contig.h"
#include "views/colour_map.h"

namespace pelkrin {

struct view_output {
    std::string text;
    std::vector<std::string> read_list;
    bool span_cut = true;  // false when a table's span could not be cut
};

// The span is START to START + WIDTH - 1; the HTML flow renderers may add to
// `colours`, and `out` is for the one operation that writes there itself.
using view_operation = view_output (*)(contig& c, int32_t start, int32_t width, colour_map& colours,
                                       std::ostream& out);

view_output view_align(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_align_html(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_flow(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_flow_html(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_flow_html_space(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_contig(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_contig_html(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_flow_table(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_seq_table(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_flow_consensus(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);
view_output view_layout(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream& out);

}  // namespace pelkrin
