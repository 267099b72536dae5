// The contig's consensus in flow space, built from the positions at which the
// reads begin runs of a letter.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "ace/contig.h"
#include "views/fcycle.h"
#include "views/flow_space.h"
#include "views/flow_steps.h"
#include "views/run_marks.h"
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
// (cycle_bit): only those letters ever make flows, so a start of any other
// letter need not be kept.
using run_starts = std::vector<std::uint8_t>;

static_assert(cycle_bit(fcycle[0]) == 1 && cycle_bit(fcycle[1]) == 2 && cycle_bit(fcycle[2]) == 4 &&
              cycle_bit(fcycle[3]) == 8);

// Records a run start; one whose consensus index does not exist is not kept.
void record(run_starts& starts, int64_t i, char ch) {
    if (i < 0 || i >= static_cast<int64_t>(starts.size())) return;
    starts[static_cast<std::size_t>(i)] |= cycle_bit(ch);
}

// Collects the run starts of a read with an 'N' into `starts`, base by base.
void collect_run_starts_with_n(const std::vector<char>& consensus, const READ& read, run_starts& starts) {
    const int64_t s = static_cast<int64_t>(read.pos) - 1;
    const int64_t n = read.len;
    const std::vector<char>& seq = read.seq;

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

// Collects the run starts of one read into `starts`. Without an 'N' a base
// starts a run just when it differs from the one before it, which
// mark_run_starts tests many bases at once. An 'N' changes only the start at
// its own index (and, first in the read, the one after it): when the marked
// bases hold one, the rules base by base run as well, and mark the same
// starts elsewhere besides those of the 'N's.
void collect_run_starts(const std::vector<char>& consensus, const READ& read, run_starts& starts) {
    const int64_t s = static_cast<int64_t>(read.pos) - 1;
    // The bases in use: the padded length, or fewer when the read holds fewer.
    const int64_t n = std::min<int64_t>(read.len, static_cast<int64_t>(read.seq.size()));
    if (n <= 0) return;
    const char* bases = read.seq.data();
    const char first = upper(bases[0]);
    if (first == 'N') {
        collect_run_starts_with_n(consensus, read, starts);
        return;
    }
    record(starts, s, first);
    // Bases 1 to n - 1 whose consensus index exists.
    const int64_t size = static_cast<int64_t>(starts.size());
    const int64_t from = std::max<int64_t>(1, -s);
    const int64_t to = std::min<int64_t>(n, size - s);
    if (from >= to) return;
    if (mark_run_starts(bases + from - 1, starts.data() + (s + from), static_cast<std::size_t>(to - from))) {
        collect_run_starts_with_n(consensus, read, starts);
    }
}

// The run starts of all the contig's reads, by consensus index.
run_starts collect_all_run_starts(const contig& c) {
    run_starts starts(c.consensus.size(), 0);
    for (const auto& entry : c.reads) collect_run_starts(c.consensus, entry.second, starts);
    return starts;
}

// The first flow: the first consensus character, or 'T' for a pad or an 'N'.
char first_flow_letter(const contig& c) {
    const char first = consensus_at(c.consensus, 0);
    return first == '*' || first == 'N' || first == 'n' ? 'T' : first;
}

// Builds the flows of the contig's consensus; `place(i, letter, k)` is told
// that run starts of `letter` at consensus index i are at flow k, in the
// order of the flow cycle within a position. Nothing when there are no reads.
template <typename Place>
void walk_flows(const contig& c, std::vector<char>& flows, Place place) {
    if (c.reads.empty()) return;

    const run_starts starts = collect_all_run_starts(c);
    flows.push_back(first_flow_letter(c));

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
    const run_starts starts = collect_all_run_starts(c);
    const std::size_t n = starts.size();
    fs.first_flow.resize(n);
    fs.last_flow.resize(n);

    // Up to four flows a position after the first; cut to length at the end.
    fs.flows.resize(1 + 4 * n + 4);
    const char first = first_flow_letter(c);
    fs.flows[0] = first;
    const std::size_t at = fcycle.find(first);
    int last = at == std::string_view::npos ? other_flow : static_cast<int>(at);

    // An index without flows takes those of the nearest index before it that
    // has any, or 0, as the look-ups walk back. Plain pointers: the compiler
    // cannot tell that the flows written do not change the vectors.
    int32_t k = 0;  // index of the last flow
    int32_t first_here = 0;
    int32_t last_here = 0;
    const std::uint8_t* marks = starts.data();
    int32_t* firsts = fs.first_flow.data();
    int32_t* lasts = fs.last_flow.data();
    char* end = fs.flows.data() + 1;
    const flow_step* steps = flow_steps[static_cast<std::size_t>(last)].data();
    for (std::size_t i = 0; i < n; ++i) {
        if (marks[i] != 0) {
            const flow_step& step = steps[marks[i]];
            std::memcpy(end, step.letters.data(), step.letters.size());
            end += step.count;
            first_here = k + step.first_offset;
            k += step.count;
            last_here = k;
            steps = flow_steps[step.last].data();
        }
        firsts[i] = first_here;
        lasts[i] = last_here;
    }
    fs.flows.resize(static_cast<std::size_t>(end - fs.flows.data()));
    return fs;
}

}  // namespace pelkrin
