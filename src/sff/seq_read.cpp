#include "sff/seq_read.h"

#include <algorithm>

namespace pelkrin {

seqRead::seqRead(const sff_read& r) { assign(r); }

void seqRead::assign(const sff_read& r) {
    const std::int16_t base_start = r.get_base_start();
    const std::int16_t base_end = r.get_base_end();
    name.assign(r.name.data(), std::min<std::size_t>(r.name_length, r.name.size()));

    // Positions are 16-bit: a kept range that comes out empty or reversed, or that
    // starts beyond 16 bits (a read of 32768 bases or more, a clip point of 32768
    // or more), gives an empty read.
    const auto length = static_cast<std::int16_t>(base_end - base_start + 1);
    const std::size_t kept = (length > 0 && base_start >= 1) ? static_cast<std::size_t>(length) : 0;
    bases.assign(kept, '\0');
    quals.assign(kept, 0);
    flowIdx.assign(kept, 0);
    if (kept == 0) return;

    // Only what the record really holds is visited; kept bases it lacks stay 0.
    const std::size_t held = std::min({static_cast<std::size_t>(r.number_of_bases), r.flow_index_per_base.size(),
                                       r.bases.size(), r.quality_scores.size()});
    const auto first = static_cast<std::size_t>(base_start - 1);  // base_start is at least 1
    const std::size_t last = std::min(held, first + kept);
    if (last <= first) return;
    const std::size_t copied = last - first;
    std::copy_n(r.bases.data() + first, copied, bases.data());
    // Its own loop, which the compiler can widen many scores at a time.
    const std::uint8_t* in_quals = r.quality_scores.data() + first;
    std::int16_t* out_quals = quals.data();
    for (std::size_t j = 0; j < copied; ++j) out_quals[j] = static_cast<std::int16_t>(in_quals[j]);

    // Every base advances the flow position, clipped or not, so a kept base's flow
    // counts from the read's first flow.
    const std::uint8_t* flow_index = r.flow_index_per_base.data();
    std::int16_t* out_flows = flowIdx.data();
    std::int16_t p = -1;
    for (std::size_t i = 0; i < std::min(first, held); ++i) p = static_cast<std::int16_t>(p + flow_index[i]);
    for (std::size_t j = 0; j < copied; ++j) {
        p = static_cast<std::int16_t>(p + flow_index[first + j]);
        out_flows[j] = p;
    }
}

}  // namespace pelkrin
