// The contig's consensus in flow space, built from the positions at which the
// reads begin runs of a letter.
#include <cstdint>

#include "ace/contig.h"
#include "views/fcycle.h"
#include "views/flow_space.h"
#include "views/seq_access.h"

namespace pelkrin {
namespace {

// toupper of the "C" locale, which the programs never leave: only a to z
// change. Written out, as it is called for every base of every read.
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// A consensus character that does not exist counts as a pad.
char consensus_at(const std::vector<char>& consensus, int64_t i) {
    if (i < 0 || i >= static_cast<int64_t>(consensus.size())) return '*';
    return consensus[static_cast<std::size_t>(i)];
}

// The letters of the flow cycle that begin runs at a position, one bit each
// (bit k for fcycle[k]): only those letters ever make flows, so a start of
// any other letter need not be kept.
using run_starts = std::vector<std::uint8_t>;

constexpr std::uint8_t cycle_bit(char ch) {
    switch (ch) {
        case 'T': return 1;
        case 'A': return 2;
        case 'C': return 4;
        case 'G': return 8;
        default: return 0;
    }
}
static_assert(cycle_bit(fcycle[0]) == 1 && cycle_bit(fcycle[1]) == 2 && cycle_bit(fcycle[2]) == 4 &&
              cycle_bit(fcycle[3]) == 8);

// Records a run start; one whose consensus index does not exist is not kept.
void record(run_starts& starts, int64_t i, char ch) {
    if (i < 0 || i >= static_cast<int64_t>(starts.size())) return;
    starts[static_cast<std::size_t>(i)] |= cycle_bit(ch);
}

// Collects the run starts of one read into `starts`.
void collect_run_starts(const std::vector<char>& consensus, const READ& read, run_starts& starts) {
    const int64_t s = static_cast<int64_t>(read.pos) - 1;
    const int64_t n = read.len;
    const std::vector<char>& seq = read.seq;
    if (n <= 0 || seq.empty()) return;

    char ch = upper(seq[0]);
    char previous = ch;
    if (ch != '*') {
        if (ch == 'N') {
            ch = consensus_at(consensus, s);
            if (ch == '*') ch = 'N';
            // Stored characters, case-sensitive, as the neighbour test is.
            std::size_t k = 0;
            while (n > 2 && char_at(seq, 1) == ch && k < fcycle.size()) ch = fcycle[k++];
            previous = ch;
        }
        record(starts, s, ch);
    }

    for (int64_t i = 1; i < n; ++i) {
        const auto stored = char_at(seq, i);
        if (!stored) break;
        ch = upper(*stored);
        if (ch == previous) continue;  // the run goes on
        previous = ch;
        if (ch == '*') continue;  // a pad ends a run and starts none
        if (ch == 'N') {
            // The consensus letter at the read's first position, not at the
            // 'N' itself.
            ch = consensus_at(consensus, s);
            if (ch == '*') ch = 'N';
            if (i + 1 < n) {
                std::size_t k = 0;
                while ((char_at(seq, i + 1) == ch || char_at(seq, i - 1) == ch) && k < fcycle.size()) {
                    ch = fcycle[k++];
                }
            }
        }
        record(starts, s + i, ch);
    }
}

// Builds the flows of the contig's consensus; `place(i, letter, k)` is told
// that run starts of `letter` at consensus index i are at flow k, in the
// order of the flow cycle within a position. Nothing when there are no reads.
template <typename Place>
void walk_flows(const contig& c, std::vector<char>& flows, Place place) {
    if (c.reads.empty()) return;

    run_starts starts(c.consensus.size(), 0);
    for (const auto& entry : c.reads) collect_run_starts(c.consensus, entry.second, starts);

    char first = consensus_at(c.consensus, 0);
    if (first == '*' || first == 'N' || first == 'n') first = 'T';
    flows.push_back(first);

    std::size_t k = 0;  // index of the last flow
    for (std::size_t i = 0; i < starts.size(); ++i) {
        // Compared with the flow that was last on entering the position, not
        // with one appended for an earlier letter of this same position.
        const char last = flows[k];
        if (starts[i] == 0) continue;
        for (char b : fcycle) {
            if ((starts[i] & cycle_bit(b)) == 0) continue;
            if (b != last) {
                flows.push_back(b);
                ++k;
            }
            place(i, b, static_cast<int32_t>(k));
        }
    }
}

}  // namespace

void contig::create_flow_concensus() {
    if (!reads.empty()) flow_index_map.resize(consensus.size());
    walk_flows(*this, flow_consensus, [this](std::size_t i, char b, int32_t k) { flow_index_map[i][b] = k; });
}

flow_space build_flow_space(const contig& c) {
    flow_space fs;
    if (c.reads.empty()) return fs;
    const std::size_t n = c.consensus.size();
    // -1: no flow recorded at that index (yet).
    fs.first_flow.assign(n, -1);
    fs.last_flow.assign(n, -1);
    walk_flows(c, fs.flows, [&fs](std::size_t i, char, int32_t k) {
        if (fs.first_flow[i] < 0) fs.first_flow[i] = k;
        fs.last_flow[i] = k;
    });
    // An index without flows takes those of the nearest index before it that
    // has any, or 0, as the look-ups walk back.
    int32_t first = 0;
    int32_t last = 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (fs.first_flow[i] < 0) {
            fs.first_flow[i] = first;
            fs.last_flow[i] = last;
        }
        first = fs.first_flow[i];
        last = fs.last_flow[i];
    }
    return fs;
}

}  // namespace pelkrin
