#pragma once
// A read's part of a span widened to whole runs, and the per-flow base counts
// taken from it.
#include <cstdint>
#include <vector>

namespace pelkrin {

struct run_range {
    int64_t j0 = 0;  // first read index of the widened part
    int64_t j1 = 0;  // last read index of the widened part
};

// Widens read indexes ia..ib of a read of `len` bases: left over the run that
// seq[ia] belongs to (to the read's start when seq[ia] is a pad), right over
// the run of seq[ib] (to the read's end when seq[ib] is a pad).
run_range widen_to_runs(const std::vector<char>& seq, int64_t ia, int64_t ib, int64_t len);

// Number of bases of `letter` from seq[j] on, within j1: leading 'N's are
// skipped, pads are passed over, and j is left on the first character not used.
int16_t count_flow(const std::vector<char>& seq, int64_t& j, int64_t j1, char letter);

// The plain flow renderer's own rule: the 'N's are skipped without looking at
// j1, and the bound is only tested after a character has been used, so the
// character after the 'N's is examined even when j is already past j1.
int16_t count_flow_plain(const std::vector<char>& seq, int64_t& j, int64_t j1, char letter);

}  // namespace pelkrin
