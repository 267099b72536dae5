#include "view_tool/report/read_bases_check.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace pelkrin {
namespace {

// Each byte as a base of the read: upper case, pads '*' to 0 (left out).
constexpr std::array<char, 256> make_read_letters() {
    std::array<char, 256> table{};
    for (int c = 0; c < 256; ++c) table[static_cast<std::size_t>(c)] = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    table['*'] = 0;
    return table;
}
constexpr std::array<char, 256> read_letters = make_read_letters();

constexpr std::array<char, 256> make_complements() {
    std::array<char, 256> table{};
    for (int c = 0; c < 256; ++c) table[static_cast<std::size_t>(c)] = static_cast<char>(c);
    table['A'] = 'T';
    table['T'] = 'A';
    table['C'] = 'G';
    table['G'] = 'C';
    return table;
}
constexpr std::array<char, 256> complements = make_complements();

// The read's bases without pads, in upper case.
void unpadded(const std::vector<char>& padded, std::string& out) {
    out.resize(padded.size());
    char* to = out.data();
    for (const char c : padded) {
        const char b = read_letters[static_cast<unsigned char>(c)];
        *to = b;
        to += b != 0;
    }
    out.resize(static_cast<std::size_t>(to - out.data()));
}

void reverse_complement(const std::string& bases, std::string& out) {
    const std::size_t n = bases.size();
    out.resize(n);
    for (std::size_t i = 0; i < n; ++i) out[i] = complements[static_cast<unsigned char>(bases[n - 1 - i])];
}

bool holds(const std::string& text, const std::string& part) {
    return std::string_view(text).find(part) != std::string_view::npos;
}

enum class match { whole, not_whole, no_flow };

// The next value of a values line at `p` (which points at its first
// character), `p` moved past its tab; false when it is negative or longer
// than 18 digits. Values of up to three digits, nearly all in a flow index
// line, take one step.
inline bool next_value(const char*& p, const char* end, std::uint64_t& value) {
    if (*p == '-') return false;
    const auto digit = [](char c) { return static_cast<std::uint64_t>(c - '0'); };
    if (end - p >= 4) {
        if (p[1] == '\t') {
            value = digit(p[0]);
            p += 2;
            return true;
        }
        if (p[2] == '\t') {
            value = digit(p[0]) * 10 + digit(p[1]);
            p += 3;
            return true;
        }
        if (p[3] == '\t') {
            value = digit(p[0]) * 100 + digit(p[1]) * 10 + digit(p[2]);
            p += 4;
            return true;
        }
    }
    const char* const first = p;
    value = 0;
    for (; p < end && *p != '\t'; ++p) value = value * 10 + digit(*p);
    const bool fits = p - first <= 18;
    if (p < end) ++p;
    return fits;
}

// The called bases into `out`; false when one is called at no flow.
bool called_bases(std::string_view line, std::size_t flows, std::string& out) {
    static constexpr char flow_order[] = "TACG";
    out.clear();
    const char* p = line.data();
    const char* const end = p + line.size();
    while (p < end) {
        std::uint64_t flow = 0;
        if (!next_value(p, end, flow) || flow >= flows) return false;
        out.push_back(flow_order[flow & 3]);
    }
    return true;
}

// Most often the read in the assembly is just its called bases: compared in
// one pass, with nothing copied, on one strand (`forward`: as the read lies;
// else its reverse complement). `no_flow` when a base is called at no flow.
template <bool forward>
match whole_read(std::string_view line, std::size_t flows, const std::vector<char>& padded) {
    static constexpr char flow_order[] = "TACG";
    const char* const bases = padded.data();
    const std::size_t n = padded.size();
    std::size_t at = forward ? 0 : n;  // the next base: bases[at], or bases[at - 1] backwards
    const char* p = line.data();
    const char* const end = p + line.size();
    bool same = true;
    while (p < end) {
        std::uint64_t flow = 0;
        if (!next_value(p, end, flow) || flow >= flows) return match::no_flow;
        if (!same) continue;  // the flows are still to be checked
        char base = 0;
        if constexpr (forward) {
            while (at < n && (base = read_letters[static_cast<unsigned char>(bases[at++])]) == 0) {
            }
        } else {
            while (at > 0 && (base = read_letters[static_cast<unsigned char>(bases[--at])]) == 0) {
            }
            base = complements[static_cast<unsigned char>(base)];
        }
        same = base == flow_order[flow & 3];
    }
    if constexpr (forward) {
        while (same && at < n) same = bases[at++] == '*';
    } else {
        while (same && at > 0) same = bases[--at] == '*';
    }
    return same ? match::whole : match::not_whole;
}

}  // namespace

bool entry_carries_read_bases(std::string_view flow_indexes, std::size_t flows, const std::vector<char>& padded_bases,
                              bool other_strand_first) {
    if (flow_indexes.empty()) return true;
    // The strand the read lies on in the assembly is the likelier one; the
    // answer is the same either way.
    const auto as_it_lies = [&] { return whole_read<true>(flow_indexes, flows, padded_bases); };
    const auto other_strand = [&] { return whole_read<false>(flow_indexes, flows, padded_bases); };
    const match likely = other_strand_first ? other_strand() : as_it_lies();
    if (likely != match::not_whole) return likely == match::whole;
    if ((other_strand_first ? as_it_lies() : other_strand()) == match::whole) return true;
    // Kept by each thread from read to read: the report judges every read.
    thread_local std::string called;
    thread_local std::string other;
    thread_local std::string bases;
    called_bases(flow_indexes, flows, called);
    unpadded(padded_bases, bases);
    if (called.size() > bases.size()) return false;
    if (holds(bases, called)) return true;
    reverse_complement(called, other);
    return holds(bases, other);
}

}  // namespace pelkrin
