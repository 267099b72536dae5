#include "view_tool/report/report_summary.h"

#include <algorithm>

namespace pelkrin {

contig_summary summarise_contig(const contig& c, std::size_t max_bins) {
    contig_summary s;
    s.name = c.name;
    s.length = static_cast<int64_t>(c.consensus.size());
    s.reads = static_cast<int64_t>(c.reads.size());
    if (s.length == 0) return s;

    // Depth changes: +1 where a read begins, -1 after it ends.
    std::vector<int32_t> change(static_cast<std::size_t>(s.length) + 1, 0);
    int64_t bases = 0;
    for (const auto& [name, read] : c.reads) {
        const int64_t first = std::max<int64_t>(read.pos, 1);
        const int64_t last = std::min<int64_t>(static_cast<int64_t>(read.pos) + read.len - 1, s.length);
        if (last < first) continue;
        ++change[static_cast<std::size_t>(first - 1)];
        --change[static_cast<std::size_t>(last)];
        bases += last - first + 1;
    }
    s.mean_depth = static_cast<double>(bases) / static_cast<double>(s.length);

    const std::size_t bins = std::max<std::size_t>(1, std::min<std::size_t>(max_bins, static_cast<std::size_t>(s.length)));
    s.bin_width = (s.length + static_cast<int64_t>(bins) - 1) / static_cast<int64_t>(bins);
    s.depth_bins.assign(static_cast<std::size_t>((s.length + s.bin_width - 1) / s.bin_width), 0);
    int32_t depth = 0;
    std::size_t i = 0;
    const auto length = static_cast<std::size_t>(s.length);
    const auto width = static_cast<std::size_t>(s.bin_width);
    for (int32_t& bin : s.depth_bins) {
        const std::size_t end = std::min(i + width, length);
        for (; i < end; ++i) {
            depth += change[i];
            bin = std::max(bin, depth);
        }
        s.max_depth = std::max(s.max_depth, bin);
    }
    return s;
}

}  // namespace pelkrin
