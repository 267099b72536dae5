#pragma once
// Whether the flowgram entry that the reads file holds for a read is that
// read's own. Pelkrin writes an entry for every read of the assembly; for a
// read that the SFF file does not hold, it is whatever Pelkrin decodes at the
// start of that file (the viewer expects one): a single base, called at a flow
// that has nothing to do with the read, or at none. A read's own entry calls
// the read's bases, so they can be found in the assembly's.
#include <string_view>
#include <vector>

namespace pelkrin {

// `flow_indexes` is the entry's flow index line (the 0-based flow that called
// each base, tab-separated), a values line (is_values_line: the caller has
// checked it), and `flows` the number of its flowgram values; `padded_bases`
// the read's bases in the assembly, pads '*' included. True when the bases
// the flow indexes call (each the letter of its flow in the flow order TACG
// repeated) occur, in that order, in the read's bases with the pads taken
// out, case ignored, or in their reverse complement; false when a base is
// called at no flow of the flowgram. `other_strand_first` (the read lies
// complemented in the assembly) only tells which strand to try first.
bool entry_carries_read_bases(std::string_view flow_indexes, std::size_t flows, const std::vector<char>& padded_bases,
                              bool other_strand_first = false);

}  // namespace pelkrin
