#pragma once

namespace pelkrin {

// Blank in the "C" locale: space, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

}  // namespace pelkrin
