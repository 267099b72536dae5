#include "views/span_select.h"

#include <algorithm>
#include <limits>

namespace pelkrin {

void select_span_reads(const contig& c, const std::map<int32_t, std::string>& row, int64_t first, int64_t last,
                       std::vector<span_read>& out) {
    static const READ missing_read{};
    const int64_t lo = std::max<int64_t>(first - c.max_read_len + 1, 1);
    const int64_t hi = c.min_read_len == 0 ? last : last - c.min_read_len + 1;
    if (hi < lo || lo > std::numeric_limits<int32_t>::max()) return;

    for (auto it = row.lower_bound(static_cast<int32_t>(lo)); it != row.end() && it->first <= hi; ++it) {
        const int64_t p = it->first;
        if (p > last) continue;
        const auto found = c.reads.find(it->second);
        const READ& read = found == c.reads.end() ? missing_read : found->second;
        const int64_t read_end = p + read.len - 1;
        if (read_end < first) continue;
        span_read shown;
        shown.p = it->first;
        shown.name = &it->second;
        shown.read = &read;
        shown.a = std::max(p, first);
        shown.b = std::min(read_end, last);
        out.push_back(shown);
    }
}

}  // namespace pelkrin
