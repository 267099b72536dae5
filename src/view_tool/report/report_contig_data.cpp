#include "view_tool/report/report_contig_data.h"

#include <charconv>
#include <string_view>

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

}  // namespace

void append_contig_data_js(std::string& out, const contig& c, const colour_map& colours, const flowgram_places& places) {
    const flow_space flows = build_flow_space(c);

    out.append("pelkrinContig({\"name\":");
    append_json_string(out, c.name);
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

    // Reads in name order: [name, padded start, padded length, bases, flowgram
    // file, alignment clip start and end (padded, 1-based, from the QA line),
    // 1 when the read is complemented in the contig]. The page packs them into
    // rows of its own for each window.
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
        out.push_back(',');
        append_number(out, read.align_start);
        out.push_back(',');
        append_number(out, read.align_end);
        out.append(read.uncomplemented == 0 ? ",1]" : ",0]");
        ++k;
    }
    out.append("],\"flowgramFiles\":");
    append_number(out, places.files);
    out.append(",\"flowgramNote\":");
    append_json_string(out, places.note);
    out.append("});\n");
}

std::string contig_data_js(const contig& c, const colour_map& colours, const flowgram_places& places) {
    std::string out;
    append_contig_data_js(out, c, colours, places);
    return out;
}

}  // namespace pelkrin
