#include "view_tool/report/report_contig_data.h"

#include <charconv>
#include <string_view>
#include <unordered_map>

#include "views/display_rows.h"
#include "views/flow_space.h"
#include "view_tool/report/json_text.h"
#include "view_tool/report/step_digits.h"

namespace pelkrin {
namespace {

void append_number(std::string& out, int64_t v) {
    char digits[24];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, v).ptr);
}

// Flow indexes by position never fall, and rise by at most seven flows a
// position: written as a string of steps, one digit each (the page adds them
// up), unless a step is not a digit; then as a list of numbers.
void append_flows(std::string& out, const std::vector<int32_t>& values) {
    out.push_back('"');
    const std::size_t at = out.size();
    out.resize(at + values.size());
    if (step_digits(values.data(), values.size(), out.data() + at)) {
        out.push_back('"');
        return;
    }
    out.resize(at - 1);
    out.push_back('[');
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i > 0) out.push_back(',');
        append_number(out, values[i]);
    }
    out.push_back(']');
}

// The display rows with reads by number. A contig whose maps were never built
// gets them without the maps, which cost much more on a deep contig; it is
// measured as building them would.
std::vector<std::vector<row_read>> rows_of(contig& c) {
    if (c.print_map.empty() && c.pos_map.empty()) {
        c.measure_reads();
        return display_rows(c);
    }
    if (c.print_map.empty()) c.create_print_map();
    std::unordered_map<std::string_view, uint32_t> number;
    number.reserve(c.reads.size());
    for (const auto& named : c.reads) number.emplace(named.first, static_cast<uint32_t>(number.size()));
    std::vector<std::vector<row_read>> rows;
    for (const auto& print_row : c.print_map) {
        std::vector<row_read>& row = rows.emplace_back();
        for (const auto& [p, name] : print_row) {
            const auto found = number.find(name);
            if (found != number.end()) row.push_back({p, found->second});
        }
    }
    return rows;
}

}  // namespace

void append_contig_data_js(std::string& out, contig& c, const colour_map& colours, const flowgram_places& places) {
    const std::vector<std::vector<row_read>> rows = rows_of(c);
    const flow_space flows = build_flow_space(c);

    out.append("pelkrinContig({\"name\":");
    append_json_string(out, c.name);
    out.append(",\"maxReadLen\":");
    append_number(out, c.max_read_len);
    out.append(",\"minReadLen\":");
    append_number(out, c.min_read_len);
    out.append(",\"consensus\":");
    append_json_string(out, std::string_view(c.consensus.data(), c.consensus.size()));
    out.append(",\"flows\":");
    append_json_string(out, std::string_view(flows.flows.data(), flows.flows.size()));
    out.append(",\"flowStart\":");
    append_flows(out, flows.first_flow);
    out.append(",\"flowEnd\":");
    append_flows(out, flows.last_flow);

    out.append(",\"colours\":[");
    bool first = true;
    for (const auto& [ch, colour] : colours) {
        if (!first) out.push_back(',');
        first = false;
        out.push_back('[');
        append_json_string(out, std::string_view(&ch, 1));
        out.push_back(',');
        append_json_string(out, colour);
        out.push_back(']');
    }
    out.append("]");

    // Reads in name order: [name, padded start, padded length, bases, flowgram file].
    out.append(",\"reads\":[");
    std::size_t k = 0;
    for (const auto& [name, read] : c.reads) {
        if (k > 0) out.push_back(',');
        out.push_back('[');
        append_json_string(out, name);
        out.push_back(',');
        append_number(out, read.pos);
        out.push_back(',');
        append_number(out, read.len);
        out.push_back(',');
        append_json_string(out, std::string_view(read.seq.data(), read.seq.size()));
        out.push_back(',');
        append_number(out, k < places.file_of_read.size() ? places.file_of_read[k] : -1);
        out.push_back(']');
        ++k;
    }
    out.append("]");

    // Display rows: pairs of padded start and read number, in ascending start.
    out.append(",\"rows\":[");
    for (std::size_t r = 0; r < rows.size(); ++r) {
        if (r > 0) out.push_back(',');
        out.push_back('[');
        for (std::size_t i = 0; i < rows[r].size(); ++i) {
            if (i > 0) out.push_back(',');
            append_number(out, rows[r][i].pos);
            out.push_back(',');
            append_number(out, rows[r][i].read);
        }
        out.push_back(']');
    }
    out.append("],\"flowgramFiles\":");
    append_number(out, places.files);
    out.append(",\"flowgramNote\":");
    append_json_string(out, places.note);
    out.append("});\n");
}

std::string contig_data_js(contig& c, const colour_map& colours, const flowgram_places& places) {
    std::string out;
    append_contig_data_js(out, c, colours, places);
    return out;
}

}  // namespace pelkrin
