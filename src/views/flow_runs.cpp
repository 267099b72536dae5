#include "views/flow_runs.h"

#include "views/seq_access.h"

namespace pelkrin {

run_range widen_to_runs(const std::vector<char>& seq, int64_t ia, int64_t ib, int64_t len) {
    run_range r{ia, ib};
    const auto first = char_at(seq, ia);
    if (ia >= 1 && first) {
        if (*first == '*') {
            r.j0 = 0;
        } else {
            while (r.j0 >= 1 && char_at(seq, r.j0 - 1) == first) --r.j0;
        }
    }
    const auto last = char_at(seq, ib);
    if (last) {
        while (r.j1 + 1 < len) {
            const auto next = char_at(seq, r.j1 + 1);
            if (!next || (*next != *last && *last != '*')) break;
            ++r.j1;
        }
    }
    return r;
}

int16_t count_flow(const std::vector<char>& seq, int64_t& j, int64_t j1, char letter) {
    int16_t count = 0;
    while (j <= j1 && char_at(seq, j) == 'N') ++j;
    while (j <= j1) {
        const auto c = char_at(seq, j);
        if (!c || (*c != letter && *c != '*')) break;
        if (*c == letter) ++count;
        ++j;
    }
    return count;
}

int16_t count_flow_plain(const std::vector<char>& seq, int64_t& j, int64_t j1, char letter) {
    int16_t count = 0;
    while (char_at(seq, j) == 'N') ++j;
    for (;;) {
        const auto c = char_at(seq, j);
        if (!c || (*c != letter && *c != '*')) break;
        if (*c == letter) ++count;
        ++j;
        if (j > j1) break;
    }
    return count;
}

}  // namespace pelkrin
