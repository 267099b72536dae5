#include "view_tool/report/report_summary.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace pelkrin {

contig_summary summarise_contig(const contig& c, std::size_t max_bins) {
    contig_summary s;
    s.name = c.name;
    s.length = static_cast<int64_t>(c.consensus.size());
    s.unpadded_length = s.length - std::count(c.consensus.begin(), c.consensus.end(), '*');
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

int64_t n50_length(std::vector<int64_t> lengths) {
    int64_t total = 0;
    for (const int64_t length : lengths) total += length;
    if (total <= 0) return 0;
    std::sort(lengths.begin(), lengths.end(), std::greater<>());
    int64_t held = 0;
    for (const int64_t length : lengths) {
        held += length;
        // Twice what is held, against the total: no rounding of an odd half.
        if (2 * held >= total) return length;
    }
    return 0;
}

assembly_totals total_up(const std::vector<contig_summary>& contigs) {
    assembly_totals t;
    std::vector<int64_t> lengths;
    lengths.reserve(contigs.size());
    for (const contig_summary& s : contigs) {
        t.reads += s.reads;
        t.length += s.unpadded_length;
        lengths.push_back(s.unpadded_length);
    }
    t.contigs = static_cast<int64_t>(contigs.size());
    t.n50 = n50_length(std::move(lengths));
    return t;
}

}  // namespace pelkrin
