#include "views/display_rows.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace pelkrin {
namespace {

// The reads not yet placed, by start: `next[i]` leads to the first read from
// index i on that is still pending (the end when none is).
class pending_reads {
public:
    explicit pending_reads(std::size_t n) : next_(n + 1) {
        for (std::size_t i = 0; i <= n; ++i) next_[i] = i;
    }

    std::size_t first_from(std::size_t i) {
        std::size_t root = i;
        while (next_[root] != root) root = next_[root];
        // Shorten the path walked for the next look-up.
        while (next_[i] != root) {
            const std::size_t after = next_[i];
            next_[i] = root;
            i = after;
        }
        return root;
    }

    void place(std::size_t i) { next_[i] = i + 1; }

private:
    std::vector<std::size_t> next_;
};

}  // namespace

std::vector<std::vector<row_read>> display_rows(const contig& c) {
    std::vector<std::vector<row_read>> rows;
    // The position map's order: by start, reads of one start in name order.
    std::vector<row_read> starts;
    std::vector<int16_t> lengths;
    starts.reserve(c.reads.size());
    lengths.reserve(c.reads.size());
    for (const auto& entry : c.reads) {
        starts.push_back({entry.second.pos, static_cast<uint32_t>(starts.size())});
        lengths.push_back(entry.second.len);
    }
    std::sort(starts.begin(), starts.end(),
              [](const row_read& a, const row_read& b) { return a.pos < b.pos || (a.pos == b.pos && a.read < b.read); });

    pending_reads pending(starts.size());
    std::size_t remaining = starts.size();
    while (remaining != 0) {
        std::vector<row_read> row;
        // As create_print_map: each pass places the first pending read that
        // starts at or after p, then goes on after its last position. Starts
        // beyond base_num end the pass.
        int64_t p = 1;
        while (c.base_num > 0 && p <= c.base_num) {
            const int64_t from = std::max<int64_t>(p, std::numeric_limits<int32_t>::min());
            const auto bound = std::lower_bound(starts.begin(), starts.end(), from,
                                                [](const row_read& r, int64_t v) { return r.pos < v; });
            const std::size_t i = pending.first_from(static_cast<std::size_t>(bound - starts.begin()));
            if (i == starts.size() || starts[i].pos > c.base_num) break;
            row.push_back(starts[i]);
            pending.place(i);
            --remaining;
            p = static_cast<int64_t>(starts[i].pos) + lengths[starts[i].read];
        }
        // Reads left pending now start outside 1 to base_num: no pass can place them.
        if (row.empty()) break;
        // A read of no or negative length lets the pass go back: the row is a
        // map by start, where a later read of the same start takes the place.
        const auto back = [](const row_read& a, const row_read& b) { return b.pos <= a.pos; };
        if (std::adjacent_find(row.begin(), row.end(), back) != row.end()) {
            std::stable_sort(row.begin(), row.end(), [](const row_read& a, const row_read& b) { return a.pos < b.pos; });
            std::vector<row_read> kept;
            for (std::size_t k = 0; k < row.size(); ++k) {
                if (k + 1 < row.size() && row[k + 1].pos == row[k].pos) continue;
                kept.push_back(row[k]);
            }
            row = std::move(kept);
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace pelkrin
