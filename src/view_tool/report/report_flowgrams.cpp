#include "view_tool/report/report_flowgrams.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>

#include "reads_format/read_block.h"
#include "reads_format/values_line.h"
#include "view_tool/report/json_text.h"

namespace pelkrin {
namespace {

// A values line as a JSON string of comma-separated numbers; a line that is
// not a values line gives an empty list. (The page reads the text as
// numbers, never as code.) Both the check and the copy go many bytes a
// step: this copies most of the reads file.
void append_values(std::string& out, std::string_view line) {
    out.push_back('"');
    if (is_values_line(line)) {
        const std::size_t at = out.size();
        out.resize(at + line.size());
        std::replace_copy(line.begin(), line.end(), out.begin() + static_cast<std::ptrdiff_t>(at), '\t', ',');
    }
    out.push_back('"');
}

}  // namespace

contig_flowgrams no_flowgrams(const contig& c, std::string note) {
    contig_flowgrams result;
    result.places.file_of_read.assign(c.reads.size(), -1);
    result.places.note = std::move(note);
    return result;
}

contig_flowgrams contig_flowgram_files(const contig& c, std::string_view block, const qdx_entry& entry,
                                       std::size_t reads_per_file) {
    if (entry.lines_per_read < 3) {
        return no_flowgrams(c, "The reads file holds no flowgrams: Pelkrin wrote it without -f.");
    }
    const std::vector<read_entry> entries = parse_read_block(block, entry.read_count, entry.lines_per_read);
    if (entries.empty()) return no_flowgrams(c, "The reads file holds no reads for this contig.");

    contig_flowgrams result = no_flowgrams(c, {});
    std::unordered_map<std::string_view, std::size_t> read_number;
    read_number.reserve(c.reads.size());
    std::size_t k = 0;
    for (const auto& named : c.reads) read_number.emplace(named.first, k++);

    const std::size_t per_file = reads_per_file == 0 ? 1 : reads_per_file;
    std::size_t placed = 0;
    for (const read_entry& e : entries) {
        const auto found = read_number.find(e.name);
        // A name the contig does not hold, or one met before, is left out.
        if (found == read_number.end() || result.places.file_of_read[found->second] >= 0) continue;
        const std::size_t file = placed / per_file;
        if (file == result.files.size()) {
            result.files.emplace_back("pelkrinFlowgrams(");
            result.files.back().append(std::to_string(file)).append(",[");
        }
        std::string& out = result.files.back();
        if (placed % per_file != 0) out.push_back(',');
        out.push_back('[');
        append_json_string(out, e.name);
        for (int line = 0; line < 3; ++line) {
            out.push_back(',');
            append_values(out, e.lines[static_cast<std::size_t>(line)]);
        }
        out.push_back(']');
        result.places.file_of_read[found->second] = static_cast<int>(file);
        ++placed;
    }
    for (std::string& file : result.files) file.append("]);\n");
    result.places.files = static_cast<int>(result.files.size());
    if (placed == 0) result.places.note = "The reads file holds none of this contig's reads.";
    return result;
}

}  // namespace pelkrin
