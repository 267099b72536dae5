// Fuzz target of the readers of Pelkrin's own outputs, as the report reads
// them: the location index, then each contig's block of the reads file, and
// the report's flowgram files made from it.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "fuzz_targets.h"
#include "reads_format/qdx_index.h"
#include "reads_format/read_block.h"
#include "reads_format/values_line.h"
#include "view_tool/report/report_flowgrams.h"

namespace pelkrin::fuzz {

void reads_file(const std::uint8_t* data, std::size_t size) {
    // The first four bytes (little-endian) give the index file's length.
    if (size < 4) return;
    std::uint32_t index_length = 0;
    std::memcpy(&index_length, data, 4);
    const std::string_view rest(reinterpret_cast<const char*>(data) + 4, size - 4);
    const std::string_view index = rest.substr(0, std::min<std::size_t>(index_length, rest.size()));
    const std::string_view reads = rest.substr(index.size());

    const qdx_table table = make_qdx_table(parse_qdx(index));
    const std::vector<qdx_entry>& entries = table.entries;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const qdx_entry& entry = entries[i];
        // By place, or else the first entry of the name.
        const qdx_entry* found = find_qdx_entry(table, i, entry.contig_name);
        if (found == nullptr || found->contig_name != entry.contig_name || found > &entry) std::abort();
        if (entry.offset > static_cast<int64_t>(reads.size())) continue;
        const std::string_view block = reads.substr(static_cast<std::size_t>(entry.offset));
        contig c;
        c.name = entry.contig_name;
        for (const read_entry& e : parse_read_block(block, entry.read_count, std::min(entry.lines_per_read, 8))) {
            for (std::string_view line : e.lines) {
                // Numbers come only from a values line (which may still give
                // none, when one of them is past 64 bits).
                if (!parse_values_line(line).empty() && !is_values_line(line)) std::abort();
            }
            c.reads[std::string(e.name)].name = std::string(e.name);
        }
        contig_flowgram_files(c, block, entry, 2);
    }
}

}  // namespace pelkrin::fuzz
