// A span of the alignment in flow space: for each flow, how many bases of its
// letter every read shows.
#include <algorithm>

#include "ace/contig.h"
#include "views/clamp_index.h"
#include "views/flow_runs.h"
#include "views/span_select.h"
#include "views/table_columns.h"

namespace pelkrin {

void contig::align_flow(std::vector<std::vector<int16_t>>& flows, std::vector<std::map<int32_t, fRead>>& rows,
                        int32_t start, int32_t width) {
    if (print_map.empty()) create_print_map();
    if (flow_consensus.empty()) create_flow_concensus();

    const int64_t length = static_cast<int64_t>(consensus.size());
    const int64_t s = std::min<int64_t>(start, length);
    const int64_t e = std::min<int64_t>(s + width - 1, length);
    const int32_t fs = getFlowIdx_start(clamp_index(s - 1));
    const int32_t fe = getFlowIdx_end(clamp_index(e - 1));
    resize_columns(flows, static_cast<int64_t>(fe) - fs + 1);

    // The column origin is the last flow of the span's first position, while
    // the column count above runs from its first flow.
    const int32_t f0 = getFlowIdx_end(clamp_index(s - 1));
    const int64_t last = s + width - 1;  // not cut to the consensus

    std::vector<span_read> shown;
    for (std::size_t r = 0; r < print_map.size(); ++r) {
        rows.emplace_back();
        shown.clear();
        select_span_reads(*this, print_map[r], s, last, shown);
        for (const span_read& sr : shown) {
            const std::vector<char>& seq = sr.read->seq;
            const run_range runs = widen_to_runs(seq, sr.a - sr.p, sr.b - sr.p, sr.read->len);
            const int32_t fsr = getFlowIdx_start(clamp_index(sr.a - 1));
            const int32_t fer = getFlowIdx_end(clamp_index(sr.b - 1));
            rows[r][fer - f0] = fRead{*sr.name, fsr - f0, fer - f0};
            int64_t j = runs.j0;
            for (int64_t f = fsr; f <= fer; ++f) {
                if (f < 0 || f >= static_cast<int64_t>(flow_consensus.size())) continue;
                const char letter = flow_consensus[static_cast<std::size_t>(f)];
                const int16_t count = count_flow(seq, j, runs.j1, letter);
                set_cell<int16_t>(flows, f - f0, r, count, -1);
            }
        }
    }
}

}  // namespace pelkrin
