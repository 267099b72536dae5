#include "bam/read_qualities.h"

#include <algorithm>
#include <limits>
#include <string>

namespace pelkrin::bam {
namespace {

// ASCII capitals, without the locale's toupper (a call a base).
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

char complement(char c) {
    switch (upper(c)) {
        case 'A': return 'T';
        case 'C': return 'G';
        case 'G': return 'C';
        case 'T': return 'A';
        default: return upper(c);
    }
}

// The read's bases as they stand on the record's strand, in capitals.
std::string on_strand(std::string_view seq, bool reverse) {
    std::string s(seq.size(), 'N');
    for (std::size_t i = 0; i < seq.size(); ++i) s[i] = reverse ? complement(seq[seq.size() - 1 - i]) : upper(seq[i]);
    return s;
}

// A BAM file's qualities go up to 93 (SAM writes each as a character up to
// '~'); a damaged record's higher scores are taken as 93.
constexpr std::uint8_t highest_quality = 93;

std::uint8_t quality_at(const record_bases& r, std::int64_t k) {
    if (k < 0 || static_cast<std::size_t>(k) >= r.quals.size()) return 0;
    return std::min(r.quals[static_cast<std::size_t>(k)], highest_quality);
}

// The 0-based flow that called record base k: the flow steps up to it, less one.
std::int32_t flow_of(const record_bases& r, std::int64_t k) {
    std::int64_t flow = -1;
    const auto last = std::min<std::int64_t>(k, static_cast<std::int64_t>(r.flow_steps.size()) - 1);
    for (std::int64_t i = 0; i <= last; ++i) flow += r.flow_steps[static_cast<std::size_t>(i)];
    return static_cast<std::int32_t>(std::min<std::int64_t>(flow, std::numeric_limits<std::int32_t>::max()));
}

// Where `want` stands in the record's bases: at the kept range's start when it
// does, else its first place; -1 when it does not occur.
std::int64_t find_in(const std::string& bases, const std::string& want, std::uint16_t clip_start) {
    if (want.empty()) return -1;
    const std::size_t kept = clip_start > 0 ? clip_start - 1u : 0u;
    if (kept + want.size() <= bases.size() && bases.compare(kept, want.size(), want) == 0) {
        return static_cast<std::int64_t>(kept);
    }
    const std::size_t at = bases.find(want);
    return at == std::string::npos ? -1 : static_cast<std::int64_t>(at);
}

// An alignment of the whole of `query` to a stretch of `bases` (unit costs;
// the record's bases before and after the stretch are free), in capitals
// both. Only the diagonals near `start`, where the record's kept bases
// begin, are searched: an assembler's edits move a read's bases a few
// places, and bases the record lacks at the read's end move them by their
// number. For each base of the query, the record base it stands over, or
// -1; and the cost.
struct fit {
    std::vector<std::int64_t> over;
    std::uint64_t cost = std::numeric_limits<std::uint64_t>::max();
};

fit align(const std::string& query, const std::string& bases, std::size_t start) {
    constexpr std::int64_t band = 64;
    constexpr std::uint32_t far = std::numeric_limits<std::uint32_t>::max() / 2;
    const auto n = static_cast<std::int64_t>(query.size());
    const auto m = static_cast<std::int64_t>(bases.size());
    const auto s = static_cast<std::int64_t>(std::min<std::size_t>(start, bases.size()));
    // Diagonals j - i from `low` to `high`.
    const std::int64_t lacking = std::max<std::int64_t>(0, n - (m - s));
    const std::int64_t low = s - band - lacking;
    const std::int64_t high = s + band;
    const auto width = static_cast<std::size_t>(m + 1);
    // 0: diagonal, 1: a query base over nothing, 2: a record base passed over.
    std::vector<std::uint8_t> from(static_cast<std::size_t>(n + 1) * width, 1);
    std::vector<std::uint32_t> previous(width, far);
    std::vector<std::uint32_t> current(width, far);
    for (std::int64_t j = std::max<std::int64_t>(0, low); j <= std::min(m, high); ++j) previous[static_cast<std::size_t>(j)] = 0;
    for (std::int64_t i = 1; i <= n; ++i) {
        const std::int64_t first = std::max<std::int64_t>(0, i + low);
        const std::int64_t last = std::min(m, i + high);
        std::fill(current.begin(), current.end(), far);
        if (first == 0) current[0] = static_cast<std::uint32_t>(i);
        const char q = query[static_cast<std::size_t>(i - 1)];
        std::uint8_t* row = from.data() + static_cast<std::size_t>(i) * width;
        for (std::int64_t j = std::max<std::int64_t>(1, first); j <= last; ++j) {
            const auto k = static_cast<std::size_t>(j);
            std::uint32_t best = previous[k - 1] + (q == bases[k - 1] ? 0u : 1u);
            std::uint8_t way = 0;
            if (previous[k] + 1 < best) {
                best = previous[k] + 1;
                way = 1;
            }
            if (current[k - 1] + 1 < best) {
                best = current[k - 1] + 1;
                way = 2;
            }
            current[k] = best;
            row[k] = way;
        }
        std::swap(previous, current);
    }
    fit f;
    std::size_t end = 0;
    for (std::size_t j = 0; j < width; ++j) {
        if (previous[j] < f.cost) {
            f.cost = previous[j];
            end = j;
        }
    }
    f.over.assign(static_cast<std::size_t>(n), -1);
    if (f.cost >= far) return f;
    std::size_t i = static_cast<std::size_t>(n);
    std::size_t j = end;
    while (i > 0) {
        const std::uint8_t way = from[i * width + j];
        if (way == 0 && j > 0) {
            f.over[i - 1] = static_cast<std::int64_t>(j - 1);
            --i;
            --j;
        } else if (way == 2 && j > 0) {
            --j;
        } else {
            --i;
        }
    }
    return f;
}

// The read's bases on the record's strand stand at `at` of the record, case
// ignored: compared in place, with no copy of either.
bool stands_at(std::string_view seq, bool reverse, const record_bases& record, std::size_t at) {
    const std::size_t n = seq.size();
    if (at + n > record.bases.size()) return false;
    const char* bases = record.bases.data() + at;
    for (std::size_t j = 0; j < n; ++j) {
        const char want = reverse ? complement(seq[n - 1 - j]) : upper(seq[j]);
        if (upper(bases[j]) != want) return false;
    }
    return true;
}

// The qualities of SEQ's bases standing at `at` of the record.
void take_qualities(std::size_t n, bool reverse, const record_bases& record, std::int64_t at, seq_qualities& result) {
    result.found = true;
    result.reverse = reverse;
    result.quals.resize(n);
    for (std::size_t j = 0; j < n; ++j) {
        result.quals[j] = quality_at(record, at + static_cast<std::int64_t>(reverse ? n - 1 - j : j));
    }
    result.first_flow = flow_of(record, at);
}

}  // namespace

seq_qualities qualities_of(std::string_view seq, bool complemented, const record_bases& record,
                           std::uint64_t max_cells) {
    seq_qualities result;
    if (seq.empty() || record.bases.empty()) return result;
    // Most reads: the record's kept bases, on the AF line's strand.
    const std::size_t kept = record.clip_start > 0 ? record.clip_start - 1u : 0u;
    if (stands_at(seq, complemented, record, kept)) {
        take_qualities(seq.size(), complemented, record, static_cast<std::int64_t>(kept), result);
        return result;
    }
    std::string bases(record.bases.size(), 'N');
    std::transform(record.bases.begin(), record.bases.end(), bases.begin(), upper);
    const std::size_t n = seq.size();

    // As they stand: the AF line's strand first, then the other.
    for (const bool reverse : {complemented, !complemented}) {
        const std::int64_t at = find_in(bases, on_strand(seq, reverse), record.clip_start);
        if (at < 0) continue;
        take_qualities(n, reverse, record, at, result);
        return result;
    }

    // Edited bases: the better of the two strands' alignments, if it is near enough.
    if (static_cast<std::uint64_t>(n + 1) * (bases.size() + 1) > max_cells) return result;
    fit best;
    bool best_reverse = complemented;
    for (const bool reverse : {complemented, !complemented}) {
        fit f = align(on_strand(seq, reverse), bases, record.clip_start > 0 ? record.clip_start - 1u : 0u);
        if (f.cost < best.cost) {
            best = std::move(f);
            best_reverse = reverse;
        }
    }
    // More than half the bases changed: not this read's bases at all.
    if (best.cost * 2 > n) return result;
    std::vector<std::int32_t> on_record(n, -1);  // quality of each query base, -1 while unknown
    for (std::size_t i = 0; i < n; ++i) {
        if (best.over[i] >= 0) on_record[i] = quality_at(record, best.over[i]);
    }
    // A base the record lacks: the lower quality of its nearest neighbours that have one.
    std::vector<std::int32_t> left(n, -1);
    std::vector<std::int32_t> right(n, -1);
    for (std::size_t i = 0, last = static_cast<std::size_t>(-1); i < n; ++i) {
        if (on_record[i] >= 0) last = i;
        if (last != static_cast<std::size_t>(-1)) left[i] = on_record[last];
    }
    for (std::size_t i = n, next = static_cast<std::size_t>(-1); i-- > 0;) {
        if (on_record[i] >= 0) next = i;
        if (next != static_cast<std::size_t>(-1)) right[i] = on_record[next];
    }
    result.found = true;
    result.aligned = true;
    result.reverse = best_reverse;
    result.quals.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        std::int32_t q = on_record[i];
        if (q < 0) q = left[i] < 0 ? std::max(right[i], 0) : right[i] < 0 ? left[i] : std::min(left[i], right[i]);
        result.quals[best_reverse ? n - 1 - i : i] = static_cast<std::uint8_t>(q);
    }
    for (std::size_t i = 0; i < n; ++i) {
        if (best.over[i] >= 0) {
            result.first_flow = flow_of(record, best.over[i]);
            break;
        }
    }
    return result;
}

}  // namespace pelkrin::bam
