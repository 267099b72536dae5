// Reads indexed by start position, packed into display rows, and listed in
// the order of those rows.
#include <algorithm>
#include <cstdint>
#include <limits>

#include "ace/contig.h"

namespace pelkrin {

void contig::create_pos_map() {
    if (reads.empty()) return;
    for (const auto& entry : reads) pos_map.emplace(entry.second.pos, entry.second.name);
    measure_reads();
}

void contig::measure_reads() {
    if (reads.empty()) return;
    // Unsigned 32-bit sum and division: the fraction of the mean is dropped.
    uint32_t sum = 0;
    for (const auto& entry : reads) {
        const READ& read = entry.second;
        sum += static_cast<uint32_t>(static_cast<int32_t>(read.len));
        if (read.len > max_read_len) max_read_len = read.len;
        if (read.len < min_read_len) min_read_len = read.len;
    }
    avg_read_len = static_cast<double>(sum / static_cast<uint32_t>(reads.size()));
}

void contig::create_print_map() {
    if (pos_map.empty()) create_pos_map();
    std::multimap<int32_t, std::string> pending = pos_map;
    std::size_t remaining = pending.size();
    while (remaining != 0) {
        std::map<int32_t, std::string> row;
        std::size_t placed = 0;
        // 64-bit, so that a scan near the largest position cannot overflow.
        // Positions without a pending start are jumped over: the scan would
        // do nothing there.
        int64_t p = 1;
        while (base_num > 0 && p <= base_num) {
            const int64_t from = std::max<int64_t>(p, std::numeric_limits<int32_t>::min());
            // Among equal starts the earliest inserted comes first.
            const auto it = pending.lower_bound(static_cast<int32_t>(from));
            if (it == pending.end() || it->first > base_num) break;
            p = it->first;
            row[it->first] = it->second;
            p = p + reads[it->second].len - 1;
            pending.erase(it);
            --remaining;
            ++placed;
            ++p;
        }
        // Reads left pending now start outside 1 to base_num: no pass can place them.
        if (placed == 0) break;
        print_map.push_back(std::move(row));
    }
}

void contig::get_read_ids(std::vector<std::string>& ids) {
    if (print_map.empty()) create_print_map();
    for (const auto& row : print_map) {
        for (const auto& entry : row) ids.push_back(entry.second);
    }
}

}  // namespace pelkrin
