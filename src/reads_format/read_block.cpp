#include "reads_format/read_block.h"

namespace pelkrin {
namespace {

// The next line of `text` without its line end (and a carriage return before
// it); false at the end of the text.
bool next_line(std::string_view& text, std::string_view& line) {
    if (text.empty()) return false;
    const std::size_t end = text.find('\n');
    line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return true;
}

}  // namespace

std::vector<read_entry> parse_read_block(std::string_view text, uint64_t read_count, int32_t lines_per_read) {
    std::vector<read_entry> entries;
    if (lines_per_read < 1) return entries;
    std::string_view line;
    while (entries.size() < read_count && next_line(text, line)) {
        if (!line.empty() && line.front() == '>') break;
        read_entry entry;
        const std::size_t tab = line.rfind('\t');
        entry.name = tab == std::string_view::npos ? line : line.substr(0, tab);
        for (int32_t k = 0; k < lines_per_read; ++k) {
            if (!next_line(text, line)) return entries;
            entry.lines.push_back(line);
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

}  // namespace pelkrin
