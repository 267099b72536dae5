#include "view_tool/view_operations.h"

#include <map>
#include <sstream>
#include <stdexcept>

#include "view_tool/table_writers.h"

namespace pelkrin {

view_output view_align(contig& c, int32_t start, int32_t width, colour_map&, std::ostream&) {
    view_output v;
    c.print_align_map_plain(v.text, v.read_list, start, width);
    return v;
}

view_output view_align_html(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream&) {
    view_output v;
    c.print_align_map_html(v.text, v.read_list, colours, start, width);
    return v;
}

view_output view_flow(contig& c, int32_t start, int32_t width, colour_map&, std::ostream&) {
    view_output v;
    c.print_flow_map_plain(v.text, v.read_list, start, width);
    return v;
}

view_output view_flow_html(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream&) {
    view_output v;
    c.print_flow_map_html(v.text, v.read_list, colours, start, width);
    return v;
}

view_output view_flow_html_space(contig& c, int32_t start, int32_t width, colour_map& colours, std::ostream&) {
    view_output v;
    c.print_flow_map_html_space(v.text, v.read_list, colours, start, width);
    return v;
}

view_output view_contig(contig& c, int32_t, int32_t, colour_map&, std::ostream& out) {
    // Straight to the output, as the operation writes it.
    c.print_align_map(out);
    return {};
}

view_output view_contig_html(contig& c, int32_t, int32_t, colour_map& colours, std::ostream&) {
    std::ostringstream page;
    c.print_align_map_html(page, colours);
    view_output v;
    v.text = page.str();
    return v;
}

view_output view_flow_table(contig& c, int32_t start, int32_t width, colour_map&, std::ostream&) {
    std::vector<std::vector<int16_t>> flows;
    std::vector<std::map<int32_t, fRead>> rows;
    view_output v;
    try {
        c.align_flow(flows, rows, start, width);
    } catch (const std::length_error&) {
        v.span_cut = false;
        return v;
    }
    v.text = flow_table_text(flows, rows);
    return v;
}

view_output view_seq_table(contig& c, int32_t start, int32_t width, colour_map&, std::ostream&) {
    std::vector<std::vector<char>> columns;
    std::vector<std::map<int32_t, std::string>> rows;
    view_output v;
    try {
        c.align_seq(columns, rows, start, width);
    } catch (const std::length_error&) {
        v.span_cut = false;
        return v;
    }
    v.text = seq_table_text(columns, rows);
    return v;
}

view_output view_flow_consensus(contig& c, int32_t, int32_t, colour_map&, std::ostream&) {
    c.create_flow_concensus();
    view_output v;
    v.text = flow_consensus_text(c);
    return v;
}

view_output view_layout(contig& c, int32_t, int32_t, colour_map&, std::ostream&) {
    c.create_print_map();
    std::vector<std::string> ids;
    c.get_read_ids(ids);
    view_output v;
    v.text = layout_text(c, ids);
    return v;
}

}  // namespace pelkrin
