#include "bam/padded_reference.h"

namespace pelkrin::bam {

padded_reference make_padded_reference(const std::vector<char>& consensus) {
    padded_reference ref;
    ref.padded = consensus;
    ref.bases_before.reserve(consensus.size());
    ref.bases.reserve(consensus.size());
    for (char c : consensus) {
        ref.bases_before.push_back(static_cast<std::int64_t>(ref.bases.size()));
        // A reference holds letters: anything else a damaged file holds
        // there is an unknown base, as SAM's MD and FASTA readers take it.
        const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (c != '*') ref.bases.push_back(letter ? c : 'N');
    }
    return ref;
}

}  // namespace pelkrin::bam
