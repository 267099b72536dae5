#pragma once
// The texts of the numbers 0 to 99 followed by a tab ("7\t", "42\t"), padded to
// four bytes so that one fixed-size copy writes any of them.
#include <array>
#include <cstddef>

namespace pelkrin {

struct small_number {
    char text[4];
    std::size_t length;  // the digits and the tab
};

constexpr std::array<small_number, 100> make_small_numbers() {
    std::array<small_number, 100> table{};
    for (int v = 0; v < 100; ++v) {
        auto& e = table[static_cast<std::size_t>(v)];
        if (v < 10) {
            e = {{static_cast<char>('0' + v), '\t', '\0', '\0'}, 2};
        } else {
            e = {{static_cast<char>('0' + v / 10), static_cast<char>('0' + v % 10), '\t', '\0'}, 3};
        }
    }
    return table;
}

inline constexpr std::array<small_number, 100> small_numbers = make_small_numbers();

}  // namespace pelkrin
