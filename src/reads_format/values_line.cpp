#include "reads_format/values_line.h"

namespace pelkrin {
namespace {

constexpr unsigned char is_digit(unsigned char c) { return static_cast<unsigned char>(c - '0') <= 9 ? 1 : 0; }

}  // namespace

// Each byte is judged with the one after it alone (a digit comes before a
// digit or a tab, a tab before a digit or a minus sign, a minus sign before a
// digit), with no state carried from byte to byte, so that the compiler
// checks many bytes a step: the report checks every line of a reads file.
bool is_values_line(std::string_view line) {
    const auto* p = reinterpret_cast<const unsigned char*>(line.data());
    const std::size_t n = line.size();
    if (n == 0) return true;
    unsigned char bad = 0;
    for (std::size_t i = 0; i + 1 < n; ++i) {
        const unsigned char c = p[i];
        const unsigned char next = p[i + 1];
        const unsigned char next_digit = is_digit(next);
        const unsigned char ok = static_cast<unsigned char>(
            (is_digit(c) & (next_digit | (next == '\t'))) | ((c == '\t') & (next_digit | (next == '-'))) |
            ((c == '-') & next_digit));
        bad |= static_cast<unsigned char>(ok ^ 1);
    }
    return bad == 0 && (is_digit(p[0]) || p[0] == '-') && is_digit(p[n - 1]);
}

std::vector<int64_t> parse_values_line(std::string_view line) {
    std::vector<int64_t> values;
    if (!is_values_line(line)) return values;
    const char* p = line.data();
    const char* const end = p + line.size();
    while (p < end) {
        int64_t v = 0;
        const auto result = std::from_chars(p, end, v);
        if (result.ec != std::errc()) return {};
        values.push_back(v);
        p = result.ptr;
        if (p < end) ++p;  // the tab
    }
    return values;
}

}  // namespace pelkrin
