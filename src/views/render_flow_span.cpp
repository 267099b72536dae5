// A span in flow space as text: the flows of the consensus, then for every
// read how many bases of each flow's letter it shows.
#include <algorithm>

#include "ace/contig.h"
#include "views/clamp_index.h"
#include "views/count_digit.h"
#include "views/flow_runs.h"
#include "views/span_select.h"

namespace pelkrin {
namespace {

enum class flow_style { plain, html, html_space };

// The letter of flow f, or none when flow_consensus has no such flow.
const char* flow_letter(const std::vector<char>& flows, int64_t f) {
    if (f < 0 || f >= static_cast<int64_t>(flows.size())) return nullptr;
    return &flows[static_cast<std::size_t>(f)];
}

void open_font(std::string& out, colour_map& colours, char letter) {
    // Map access: a letter without a colour is added with an empty one.
    out.append("<font color=").append(colours[letter]).append(">");
}

void render_header(const contig& c, std::string& out, colour_map* colours, flow_style style, int64_t fs,
                   int64_t fe) {
    bool first = true;
    for (int64_t f = fs; f <= fe; ++f) {
        const char* letter = flow_letter(c.flow_consensus, f);
        if (!letter) continue;
        if (style == flow_style::plain) {
            out.push_back(' ');
            out.push_back(*letter);
            continue;
        }
        if (style == flow_style::html_space && !first) out.push_back(' ');
        open_font(out, *colours, *letter);
        out.push_back(*letter);
        out.append("</font>");
        first = false;
    }
}

// One read's flows from the first flow of position a to the last of b.
void render_read(const contig& c, std::string& out, colour_map* colours, flow_style style, const span_read& sr) {
    const std::vector<char>& seq = sr.read->seq;
    const run_range runs = widen_to_runs(seq, sr.a - sr.p, sr.b - sr.p, sr.read->len);
    const int64_t fsr = c.getFlowIdx_start(clamp_index(sr.a - 1));
    const int64_t fer = c.getFlowIdx_end(clamp_index(sr.b - 1));
    int64_t j = runs.j0;
    for (int64_t f = fsr; f <= fer; ++f) {
        const char* letter = flow_letter(c.flow_consensus, f);
        if (!letter) continue;
        if (style == flow_style::plain) {
            const int16_t count = count_flow_plain(seq, j, runs.j1, *letter);
            out.push_back(' ');
            out.push_back(count_digit(count));
            continue;
        }
        const int16_t count = count_flow(seq, j, runs.j1, *letter);
        open_font(out, *colours, *letter);
        if (style == flow_style::html_space && f != fsr) out.push_back(' ');
        out.push_back(count_digit(count));
        out.append("</font>");
    }
}

void render(contig& c, std::string& out, std::vector<std::string>& read_list, colour_map* colours,
            flow_style style, int64_t start, int64_t width) {
    if (c.print_map.empty()) c.create_print_map();
    if (c.flow_consensus.empty()) c.create_flow_concensus();

    const int64_t length = static_cast<int64_t>(c.consensus.size());
    const int64_t s = std::min(start, length);
    const int64_t e = std::min(start + width - 1, length);
    render_header(c, out, colours, style, c.getFlowIdx_start(clamp_index(s - 1)),
                  c.getFlowIdx_end(clamp_index(e - 1)));
    out.push_back('\n');

    // A flow takes two columns in the plain and spaced renderings, one in the other.
    const std::size_t gap_unit = style == flow_style::html ? 1 : 2;
    const int64_t last = start + width - 1;
    std::vector<span_read> shown;
    for (const auto& row : c.print_map) {
        shown.clear();
        select_span_reads(c, row, start, last, shown);
        int64_t x = start - 1;  // a consensus index: the position after the last drawn one
        for (const span_read& sr : shown) {
            const int64_t gap = static_cast<int64_t>(c.getFlowIdx_start(clamp_index(sr.p - 1))) -
                                c.getFlowIdx_start(clamp_index(x));
            if (gap > 0) out.append(static_cast<std::size_t>(gap) * gap_unit, ' ');
            read_list.push_back(*sr.name);
            render_read(c, out, colours, style, sr);
            x = sr.b;
        }
        if (x != start - 1) out.push_back('\n');
    }
}

}  // namespace

void contig::print_flow_map_plain(std::string& out, std::vector<std::string>& read_list, int32_t start,
                                  int32_t width) {
    render(*this, out, read_list, nullptr, flow_style::plain, start, width);
}

void contig::print_flow_map_html(std::string& out, std::vector<std::string>& read_list, colour_map& colours,
                                 int32_t start, int32_t width) {
    render(*this, out, read_list, &colours, flow_style::html, start, width);
}

void contig::print_flow_map_html_space(std::string& out, std::vector<std::string>& read_list, colour_map& colours,
                                       int32_t start, int32_t width) {
    render(*this, out, read_list, &colours, flow_style::html_space, start, width);
}

}  // namespace pelkrin
