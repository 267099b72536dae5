#pragma once
// A line of numbers separated by single tabs and ended by a line feed, the
// layout of every data line of the reads file: written here, and checked and
// read back by whoever reads the file. Most values are quality scores, flows
// and flowgram values below 1000, whose texts come from a table.
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "../common/text_buffer.h"

namespace pelkrin {

// The room write_values_line may need for n values.
constexpr std::size_t values_line_room(std::size_t n) { return n * (max_number_chars + 1) + 1; }

// The text of a number below 1000 and a tab ("7\t", "42\t", "310\t"), padded
// to four bytes so that one fixed-size copy writes any of them.
struct value_text {
    char text[4];
    std::uint32_t length;  // the digits and the tab
};

constexpr std::array<value_text, 1000> make_value_texts() {
    std::array<value_text, 1000> table{};
    for (int v = 0; v < 1000; ++v) {
        value_text& e = table[static_cast<std::size_t>(v)];
        const int digits = v < 10 ? 1 : v < 100 ? 2 : 3;
        int rest = v;
        for (int i = digits - 1; i >= 0; --i) {
            e.text[i] = static_cast<char>('0' + rest % 10);
            rest /= 10;
        }
        e.text[digits] = '\t';
        e.length = static_cast<std::uint32_t>(digits + 1);
    }
    return table;
}

inline constexpr std::array<value_text, 1000> value_texts = make_value_texts();

// Writes the values at `out`, which has room for values_line_room(n) bytes;
// returns the end of the line. No values give an empty line.
template <typename Integer>
char* write_values_line(char* out, const Integer* values, std::size_t n) {
    char* const start = out;
    for (std::size_t i = 0; i < n; ++i) {
        const Integer v = values[i];
        if (v >= 0 && v < 1000) {
            const value_text& t = value_texts[static_cast<std::size_t>(v)];
            std::memcpy(out, t.text, 4);  // digits, tab, and bytes the next value overwrites
            out += t.length;
        } else {
            out = std::to_chars(out, out + max_number_chars, v).ptr;
            *out++ = '\t';
        }
    }
    if (out != start) --out;  // the last tab becomes the line end
    *out++ = '\n';
    return out;
}

// The values as a line at the end of `out`.
template <typename Integer>
void append_values_line(text_buffer& out, const Integer* values, std::size_t n) {
    out.wrote_up_to(write_values_line(out.room(values_line_room(n)), values, n));
}

// True when `line` (without its line end) is empty or holds decimal integers,
// a minus sign allowed before each, separated by single tabs: what
// write_values_line writes.
bool is_values_line(std::string_view line);

// The numbers of a values line, in order (none for a line that is not one).
std::vector<int64_t> parse_values_line(std::string_view line);

}  // namespace pelkrin
