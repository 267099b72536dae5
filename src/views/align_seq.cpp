// A span of the alignment in base space: the reads' padded characters, one
// column per position.
#include "ace/contig.h"
#include "views/seq_access.h"
#include "views/span_select.h"
#include "views/table_columns.h"

namespace pelkrin {

void contig::align_seq(std::vector<std::vector<char>>& columns, std::vector<std::map<int32_t, std::string>>& rows,
                       int32_t start, int32_t width) {
    if (print_map.empty()) create_print_map();

    const int64_t length = static_cast<int64_t>(consensus.size());
    // The last position is cut to the consensus (a negative one too, as an
    // unsigned comparison would); the start is not.
    int64_t e = static_cast<int64_t>(start) + width - 1;
    if (e < 0 || e > length) e = length;
    resize_columns(columns, e - start + 1);

    std::vector<span_read> shown;
    for (std::size_t r = 0; r < print_map.size(); ++r) {
        rows.emplace_back();
        shown.clear();
        select_span_reads(*this, print_map[r], start, e, shown);
        for (const span_read& sr : shown) {
            rows[r][static_cast<int32_t>(sr.b - start)] = *sr.name;
            // A read that begins before the span is laid from column 0 by its
            // index, so (start - p) columns right of its own positions.
            for (int64_t i = sr.a - sr.p; i <= sr.b - sr.p; ++i) {
                const auto ch = char_at(sr.read->seq, i);
                if (!ch) break;
                set_cell<char>(columns, (sr.a - start) + i, r, *ch, '0');
            }
        }
    }
}

}  // namespace pelkrin
