#include "prep/base_match.h"

#include <algorithm>
#include <array>

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

}  // namespace

bool bases_occur(std::string_view assembly, std::string_view record, bool complemented, std::string& scratch) {
    // The assembly's bases: pads removed, upper case, at the end of `scratch`;
    // the record's bases in front of them, one strand then the other.
    scratch.clear();
    for (char c : record) scratch.push_back(upper[static_cast<unsigned char>(c)]);
    const std::size_t n = scratch.size();
    for (char c : assembly)
        if (c != '*') scratch.push_back(upper[static_cast<unsigned char>(c)]);
    const std::string_view wanted(scratch.data() + n, scratch.size() - n);
    if (wanted.size() > n) return false;

    std::string reversed(n, '\0');
    std::transform(record.rbegin(), record.rend(), reversed.begin(),
                   [](char c) { return complement[static_cast<unsigned char>(c)]; });
    const std::string_view forward(scratch.data(), n);
    if (complemented) return reversed.find(wanted) != std::string::npos || forward.find(wanted) != std::string_view::npos;
    return forward.find(wanted) != std::string_view::npos || reversed.find(wanted) != std::string::npos;
}

}  // namespace pelkrin::prep
