#pragma once
// The location index that Pelkrin writes beside its reads file (PREFIX.qdx):
// for every contig, where its reads begin in PREFIX.reads.
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace pelkrin {

struct qdx_entry {
    std::string contig_name;
    int64_t offset = 0;          // of the contig's first read header line in the reads file
    uint64_t read_count = 0;
    int32_t lines_per_read = 0;  // 1: qualities only; 3: also flow indexes and flowgram values
};

// The lines of an index file, in order. A line that is not a name and three
// tab-separated numbers (an offset of -1 among them) is left out.
std::vector<qdx_entry> parse_qdx(std::string_view text);

// The entries of an index file, and where the first entry of each name is:
// an index in another order than the ACE file's (or of another file) is
// searched by name without a pass over every entry for every contig.
struct qdx_table {
    std::vector<qdx_entry> entries;
    std::unordered_map<std::string, std::size_t> first_of_name;
};

qdx_table make_qdx_table(std::vector<qdx_entry> entries);

// The entry of the contig that comes `ordinal`-th (from 0) in the file and is
// named `name`: the entry at that place when its name matches, otherwise the
// first entry of that name; null when there is none.
const qdx_entry* find_qdx_entry(const qdx_table& table, std::size_t ordinal, std::string_view name);

}  // namespace pelkrin
