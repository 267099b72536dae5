#include "prep/base_match.h"

#include <algorithm>
#include <array>
#include <string.h>

#include <cstring>

namespace pelkrin::prep {
namespace {

constexpr std::array<char, 256> upper_table() {
    std::array<char, 256> t{};
    for (int c = 0; c < 256; ++c) t[c] = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    return t;
}

constexpr std::array<char, 256> complement_table() {
    std::array<char, 256> t = upper_table();
    const char pairs[][2] = {{'A', 'T'}, {'C', 'G'}, {'R', 'Y'}, {'K', 'M'}, {'B', 'V'}, {'D', 'H'}};
    for (const auto& p : pairs) {
        for (char a : {p[0], static_cast<char>(p[0] - 'A' + 'a')}) t[static_cast<unsigned char>(a)] = p[1];
        for (char b : {p[1], static_cast<char>(p[1] - 'A' + 'a')}) t[static_cast<unsigned char>(b)] = p[0];
    }
    return t;
}

constexpr auto upper = upper_table();
constexpr auto complement = complement_table();

// glibc's memmem is a two-way search: linear in the worst case, where a
// plain scan over a record of one repeated letter takes the square.
bool contains(std::string_view hay, std::string_view needle) {
    if (needle.empty()) return true;
    return ::memmem(hay.data(), hay.size(), needle.data(), needle.size()) != nullptr;
}

}  // namespace

bool bases_occur(std::string_view assembly, std::string_view record, bool complemented, match_scratch& scratch) {
    // The assembly's bases, pads removed, upper case, turned to the record's
    // strand when the assembly placed the read reversed: most records hold
    // them as they are.
    std::string& wanted = scratch.wanted;
    wanted.resize(assembly.size());
    char* out = wanted.data();
    std::size_t n = 0;
    if (complemented) {
        for (std::size_t i = assembly.size(); i-- > 0;) {
            const char c = assembly[i];
            out[n] = complement[static_cast<unsigned char>(c)];
            n += c != '*';
        }
    } else {
        for (const char c : assembly) {
            out[n] = upper[static_cast<unsigned char>(c)];
            n += c != '*';
        }
    }
    wanted.resize(n);
    if (n > record.size()) return false;
    if (contains(record, wanted)) return true;
    // Else either strand, either case.
    scratch.forward.resize(record.size());
    std::transform(record.begin(), record.end(), scratch.forward.begin(),
                   [](char c) { return upper[static_cast<unsigned char>(c)]; });
    if (contains(scratch.forward, wanted)) return true;
    scratch.reversed.resize(record.size());
    std::transform(record.rbegin(), record.rend(), scratch.reversed.begin(),
                   [](char c) { return complement[static_cast<unsigned char>(c)]; });
    return contains(scratch.reversed, wanted);
}

}  // namespace pelkrin::prep
