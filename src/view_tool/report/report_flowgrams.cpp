#include "view_tool/report/report_flowgrams.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "reads_format/read_block.h"
#include "reads_format/values_line.h"
#include "view_tool/report/json_text.h"
#include "view_tool/report/read_bases_check.h"

namespace pelkrin {
namespace {

// The tabs of a line, counted in bytes, 255 at most at a time, so that the
// compiler counts many a step.
std::size_t tabs_in(std::string_view line) {
    std::size_t total = 0;
    for (std::size_t at = 0; at < line.size(); at += 255) {
        const std::size_t n = std::min<std::size_t>(255, line.size() - at);
        unsigned char k = 0;
        for (std::size_t i = 0; i < n; ++i) k = static_cast<unsigned char>(k + (line[at + i] == '\t'));
        total += k;
    }
    return total;
}

// A values line as a JSON string of comma-separated numbers; a line that is
// not a values line gives an empty list (and false). (The page reads the text
// as numbers, never as code.) Both the check and the copy go many bytes a
// step: this copies most of the reads file.
bool append_values(std::string& out, std::string_view line) {
    out.push_back('"');
    const bool numbers = is_values_line(line);
    if (numbers) {
        const std::size_t at = out.size();
        out.resize(at + line.size());
        std::replace_copy(line.begin(), line.end(), out.begin() + static_cast<std::ptrdiff_t>(at), '\t', ',');
    }
    out.push_back('"');
    return numbers;
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
    // Each read's number (its place in name order) and its record.
    std::unordered_map<std::string_view, std::pair<std::size_t, const READ*>> read_of;
    read_of.reserve(c.reads.size());
    std::size_t k = 0;
    for (const auto& named : c.reads) read_of.emplace(named.first, std::make_pair(k++, &named.second));

    // Files hold reads in the order of their starts, so that a window of the
    // page needs the files of a few neighbouring reads, not of every read.
    std::vector<std::size_t> by_start(c.reads.size());
    {
        std::vector<std::pair<int32_t, std::size_t>> starts;
        starts.reserve(c.reads.size());
        std::size_t n = 0;
        for (const auto& named : c.reads) starts.emplace_back(named.second.pos, n++);
        std::sort(starts.begin(), starts.end());
        for (std::size_t rank = 0; rank < starts.size(); ++rank) by_start[starts[rank].second] = rank;
    }
    const std::size_t per_file = reads_per_file == 0 ? 1 : reads_per_file;
    std::size_t placed = 0;
    for (const read_entry& e : entries) {
        const auto found = read_of.find(e.name);
        // A name the contig does not hold, or one met before, is left out.
        if (found == read_of.end()) continue;
        int& place = result.places.file_of_read[found->second.first];
        if (place != -1) continue;
        // A read's file follows from its place among the starts alone, so
        // that a read not in the SFF file moves no other read to another file.
        const std::size_t file = by_start[found->second.first] / per_file;
        ++placed;
        while (result.files.size() <= file) {
            result.files.emplace_back("pelkrinFlowgrams(");
            result.files.back().append(std::to_string(result.files.size() - 1)).append(",[");
        }
        std::string& out = result.files[file];
        const std::size_t entry_at = out.size();
        if (out.back() != '[') out.push_back(',');
        out.push_back('[');
        append_json_string(out, e.name);
        out.push_back(',');
        append_values(out, e.lines[0]);
        out.push_back(',');
        const bool judged = append_values(out, e.lines[1]);
        out.push_back(',');
        // Counted while the line is at hand in the cache.
        const std::size_t flows = append_values(out, e.lines[2]) && !e.lines[2].empty() ? tabs_in(e.lines[2]) + 1 : 0;
        out.push_back(']');
        const READ& read = *found->second.second;
        // A damaged flow index line is not judged.
        if (!judged || entry_carries_read_bases(e.lines[1], flows, read.seq, read.uncomplemented == 0)) {
            place = static_cast<int>(file);
        } else {
            // Not the read's own: what Pelkrin decoded for a read the SFF file lacks.
            out.resize(entry_at);
            place = not_in_sff_file;
        }
    }
    for (std::string& file : result.files) file.append("]);\n");
    result.places.files = static_cast<int>(result.files.size());
    if (placed == 0) result.places.note = "The reads file holds none of this contig's reads.";
    return result;
}

}  // namespace pelkrin
