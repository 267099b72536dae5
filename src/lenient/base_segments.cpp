#include "lenient/base_segments.h"

#include <algorithm>

namespace pelkrin {

std::vector<base_segment> cover_consensus(std::int64_t length, std::vector<placed_read> reads) {
    std::vector<base_segment> out;
    if (reads.empty()) return out;
    std::stable_sort(reads.begin(), reads.end(),
                     [](const placed_read& a, const placed_read& b) { return a.first < b.first; });
    const std::int64_t end = std::max<std::int64_t>(length, 1);
    std::size_t next = 0;  // the first read not yet considered
    std::int64_t at = 1;
    const placed_read* best = nullptr;
    while (at <= end) {
        // Of the reads that begin at or before `at`, the one that reaches furthest.
        while (next < reads.size() && reads[next].first <= at) {
            if (best == nullptr || reads[next].last > best->last) best = &reads[next];
            ++next;
        }
        if (best != nullptr && best->last >= at) {
            const std::int64_t last = std::min(best->last, end);
            out.push_back({at, last, best->name});
            at = last + 1;
            continue;
        }
        // Nothing covers `at`: the read that begins next takes the gap and its own range.
        if (next >= reads.size()) {
            out.push_back({at, end, (best != nullptr ? best : &reads.back())->name});
            break;
        }
        best = &reads[next];
        ++next;
        const std::int64_t last = std::clamp(best->last, at, end);
        out.push_back({at, last, best->name});
        at = last + 1;
    }
    return out;
}

std::string base_segment_lines(const std::vector<base_segment>& segments) {
    std::string text;
    for (const base_segment& s : segments)
        text.append("BS ").append(std::to_string(s.first)).append(" ").append(std::to_string(s.last)).append(" ")
            .append(s.read).append("\n");
    return text;
}

}  // namespace pelkrin
