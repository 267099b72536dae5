#include "view_tool/table_writers.h"

#include <charconv>

namespace pelkrin {
namespace {

void append_number(std::string& out, int64_t n) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, n).ptr;
    out.append(digits, end);
}

// A field after the first one of a line.
void field(std::string& out) { out.push_back('\t'); }

}  // namespace

std::string flow_table_text(const std::vector<std::vector<int16_t>>& flows,
                            const std::vector<std::map<int32_t, fRead>>& rows) {
    std::string out;
    for (std::size_t k = 0; k < flows.size(); ++k) {
        out.append("C\t");
        append_number(out, static_cast<int64_t>(k));
        for (int16_t value : flows[k]) {
            field(out);
            append_number(out, value);
        }
        out.push_back('\n');
    }
    for (std::size_t r = 0; r < rows.size(); ++r) {
        out.append("R\t");
        append_number(out, static_cast<int64_t>(r));
        for (const auto& [key, read] : rows[r]) {
            field(out);
            append_number(out, key);
            out.append(":").append(read.name).append(":");
            append_number(out, read.flow_start);
            out.append(":");
            append_number(out, read.flow_end);
        }
        out.push_back('\n');
    }
    return out;
}

std::string seq_table_text(const std::vector<std::vector<char>>& columns,
                           const std::vector<std::map<int32_t, std::string>>& rows) {
    std::string out;
    for (std::size_t k = 0; k < columns.size(); ++k) {
        out.append("C\t");
        append_number(out, static_cast<int64_t>(k));
        field(out);
        out.append(columns[k].begin(), columns[k].end());
        out.push_back('\n');
    }
    for (std::size_t r = 0; r < rows.size(); ++r) {
        out.append("R\t");
        append_number(out, static_cast<int64_t>(r));
        for (const auto& [key, name] : rows[r]) {
            field(out);
            append_number(out, key);
            out.append(":").append(name);
        }
        out.push_back('\n');
    }
    return out;
}

std::string flow_consensus_text(const contig& c) {
    std::string out = "flow_consensus\t";
    out.append(c.flow_consensus.begin(), c.flow_consensus.end());
    out.push_back('\n');
    for (std::size_t i = 0; i < c.flow_index_map.size(); ++i) {
        append_number(out, static_cast<int64_t>(i));
        for (const auto& [letter, value] : c.flow_index_map[i]) {
            field(out);
            out.push_back(letter);
            out.push_back('=');
            append_number(out, value);
        }
        out.push_back('\n');
    }
    return out;
}

std::string layout_text(const contig& c, const std::vector<std::string>& ids) {
    std::string out = "stats\t";
    append_number(out, c.max_read_len);
    field(out);
    append_number(out, c.min_read_len);
    field(out);
    char digits[400];  // room for any double in fixed notation
    const auto end = std::to_chars(digits, digits + sizeof digits, c.avg_read_len, std::chars_format::fixed, 1).ptr;
    out.append(digits, end);
    out.push_back('\n');
    for (std::size_t r = 0; r < c.print_map.size(); ++r) {
        out.append("row\t");
        append_number(out, static_cast<int64_t>(r));
        for (const auto& [position, name] : c.print_map[r]) {
            field(out);
            append_number(out, position);
            out.append(":").append(name);
        }
        out.push_back('\n');
    }
    out.append("ids");
    for (const std::string& id : ids) {
        field(out);
        out.append(id);
    }
    out.push_back('\n');
    return out;
}

}  // namespace pelkrin
