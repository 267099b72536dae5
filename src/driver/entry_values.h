#pragma once
// The numbers of one read's entry in the reads file: the quality score and
// the flow of each kept (clipped) base and, with the flowgram, every flowgram
// value. Taken from a record read in place, or from what get_read decoded.
#include <cstdint>
#include <vector>

#include "sff/record_view.h"
#include "sff/seq_read.h"
#include "sff/sff_read.h"

namespace pelkrin {

struct entry_values {
    std::vector<std::int16_t> quals;
    std::vector<std::int16_t> flowIdx;      // filled only with the flowgram
    std::vector<std::uint16_t> flowgram;    // filled only with the flowgram
};

// What seqRead::assign and the record decoded at the view's place would give.
void values_of(const record_view& r, bool flowgram, entry_values& out);
// `read` and `record` as get_read left them.
void values_of(const seqRead& read, const sff_read& record, bool flowgram, entry_values& out);

}  // namespace pelkrin
