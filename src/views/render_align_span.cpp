// A span in base space as text: the consensus, then the reads row by row,
// plain or coloured.
#include "ace/contig.h"
#include "views/seq_access.h"
#include "views/span_select.h"

namespace pelkrin {
namespace {

// Consensus positions from `start` while inside the consensus and the span;
// a position before the first counts as a pad.
std::vector<char> span_header(const std::vector<char>& consensus, int64_t start, int64_t width) {
    std::vector<char> header;
    const int64_t length = static_cast<int64_t>(consensus.size());
    for (int64_t q = start; q <= length && q < start + width; ++q) {
        header.push_back(q >= 1 ? consensus[static_cast<std::size_t>(q - 1)] : '*');
    }
    return header;
}

// The read's characters of positions a to b, up to the end of its bases.
std::vector<char> drawn_part(const span_read& sr) {
    std::vector<char> part;
    for (int64_t i = sr.a - sr.p; i <= sr.b - sr.p; ++i) {
        const auto ch = char_at(sr.read->seq, i);
        if (!ch) break;
        part.push_back(*ch);
    }
    return part;
}

void append_text(std::string& out, const std::vector<char>& chars) { out.append(chars.begin(), chars.end()); }

// Both renderers; a null colour map draws plain text.
void render(contig& c, std::string& out, std::vector<std::string>& read_list, const colour_map* colours,
            int64_t start, int64_t width) {
    if (c.print_map.empty()) c.create_print_map();

    const std::vector<char> header = span_header(c.consensus, start, width);
    if (colours) {
        contig::toHTML(out, header, *colours);
    } else {
        append_text(out, header);
    }
    out.push_back('\n');

    const int64_t last = start + width - 1;
    std::vector<span_read> shown;
    for (const auto& row : c.print_map) {
        shown.clear();
        select_span_reads(c, row, start, last, shown);
        int64_t x = start - 1;
        for (const span_read& sr : shown) {
            if (sr.p > x + 1) out.append(static_cast<std::size_t>(sr.p - x - 1), ' ');
            read_list.push_back(*sr.name);
            const std::vector<char> part = drawn_part(sr);
            if (colours) {
                contig::toHTML(out, part, *colours);
            } else {
                append_text(out, part);
            }
            x = sr.b;
        }
        if (x != start - 1) out.push_back('\n');
    }
}

}  // namespace

void contig::print_align_map_plain(std::string& out, std::vector<std::string>& read_list, int32_t start,
                                   int32_t width) {
    render(*this, out, read_list, nullptr, start, width);
}

void contig::print_align_map_html(std::string& out, std::vector<std::string>& read_list, const colour_map& colours,
                                  int32_t start, int32_t width) {
    render(*this, out, read_list, &colours, start, width);
}

}  // namespace pelkrin
