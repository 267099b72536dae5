#include "driver/entry_values.h"

#include <algorithm>

#include "sff/byte_order.h"

namespace pelkrin {

void values_of(const record_view& r, bool flowgram, entry_values& out) {
    // The kept range as seqRead::assign takes it: 1-based, 16-bit, the tighter
    // clip at each end; empty when it comes out empty or reversed.
    const auto base_start = static_cast<std::int16_t>(std::max<std::uint16_t>({r.clip_qual_left, r.clip_adapter_left, 1}));
    const std::uint32_t right_q = r.clip_qual_right != 0 ? r.clip_qual_right : r.number_of_bases;
    const std::uint32_t right_a = r.clip_adapter_right != 0 ? r.clip_adapter_right : r.number_of_bases;
    const auto base_end = static_cast<std::int16_t>(std::min(right_q, right_a));
    const auto length = static_cast<std::int16_t>(base_end - base_start + 1);
    const std::size_t kept = (length > 0 && base_start >= 1) ? static_cast<std::size_t>(length) : 0;

    // Kept bases the record lacks (a clip point past its last base) stay 0.
    out.quals.assign(kept, 0);
    if (flowgram) out.flowIdx.assign(kept, 0);
    const std::size_t held = r.number_of_bases;
    const std::size_t first = kept == 0 ? 0 : static_cast<std::size_t>(base_start - 1);
    const std::size_t copied = kept == 0 || held <= first ? 0 : std::min(held, first + kept) - first;
    std::int16_t* quals = out.quals.data();
    for (std::size_t j = 0; j < copied; ++j) quals[j] = static_cast<std::int16_t>(r.quality[first + j]);
    if (!flowgram) return;

    // Every base advances the flow, clipped or not.
    std::int16_t p = -1;
    if (copied > 0) {
        for (std::size_t i = 0; i < first; ++i) p = static_cast<std::int16_t>(p + r.flow_index[i]);
        std::int16_t* flows = out.flowIdx.data();
        for (std::size_t j = 0; j < copied; ++j) {
            p = static_cast<std::int16_t>(p + r.flow_index[first + j]);
            flows[j] = p;
        }
    }
    out.flowgram.resize(r.flows);
    std::uint16_t* values = out.flowgram.data();
    for (std::size_t i = 0; i < r.flows; ++i) {
        const std::uint16_t v = load_le16(r.flowgram + 2 * i);
        values[i] = r.big_endian ? reverse_bytes16(v) : v;
    }
}

void values_of(const seqRead& read, const sff_read& record, bool flowgram, entry_values& out) {
    out.quals.assign(read.quals.begin(), read.quals.end());
    if (!flowgram) return;
    out.flowIdx.assign(read.flowIdx.begin(), read.flowIdx.end());
    const std::size_t flows = std::min<std::size_t>(record.numOfFlows, record.flowgram_values.size());
    out.flowgram.assign(record.flowgram_values.begin(), record.flowgram_values.begin() + static_cast<std::ptrdiff_t>(flows));
}

}  // namespace pelkrin
