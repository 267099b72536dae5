#include "qdx_index.h"

#include <charconv>
#include <utility>

namespace pelkrin {
namespace {

template <typename Number>
bool parse_whole(std::string_view text, Number& value) {
    if (text.empty()) return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

// The next field up to a tab (or the end of the line); moves `rest` past it.
std::string_view next_field(std::string_view& rest) {
    const std::size_t tab = rest.find('\t');
    const std::string_view field = rest.substr(0, tab);
    rest = tab == std::string_view::npos ? std::string_view() : rest.substr(tab + 1);
    return field;
}

}  // namespace

std::vector<qdx_entry> parse_qdx(std::string_view text) {
    std::vector<qdx_entry> entries;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);

        // The name may itself hold tabs: the three numbers are the last fields.
        const std::size_t t3 = line.rfind('\t');
        if (t3 == std::string_view::npos || t3 == 0) continue;
        const std::size_t t2 = line.rfind('\t', t3 - 1);
        if (t2 == std::string_view::npos || t2 == 0) continue;
        const std::size_t t1 = line.rfind('\t', t2 - 1);
        if (t1 == std::string_view::npos) continue;
        std::string_view numbers = line.substr(t1 + 1);
        qdx_entry entry;
        entry.contig_name = std::string(line.substr(0, t1));
        if (!parse_whole(next_field(numbers), entry.offset) || !parse_whole(next_field(numbers), entry.read_count) ||
            !parse_whole(next_field(numbers), entry.lines_per_read)) {
            continue;
        }
        if (entry.offset < 0 || entry.lines_per_read < 1) continue;
        entries.push_back(std::move(entry));
    }
    return entries;
}

qdx_table make_qdx_table(std::vector<qdx_entry> entries) {
    qdx_table table;
    table.entries = std::move(entries);
    table.first_of_name.reserve(table.entries.size());
    for (std::size_t i = 0; i < table.entries.size(); ++i) table.first_of_name.try_emplace(table.entries[i].contig_name, i);
    return table;
}

const qdx_entry* find_qdx_entry(const qdx_table& table, std::size_t ordinal, std::string_view name) {
    const std::vector<qdx_entry>& entries = table.entries;
    if (ordinal < entries.size() && entries[ordinal].contig_name == name) return &entries[ordinal];
    const auto found = table.first_of_name.find(std::string(name));
    return found == table.first_of_name.end() ? nullptr : &entries[found->second];
}

}  // namespace pelkrin
