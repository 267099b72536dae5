#include "view_tool/report/decimal_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace pelkrin {

void append_fixed1(std::string& out, double v) {
    // Tenths of v, with the rounding error of one multiplication (below
    // 1e-8 under 1e6): unless the fraction lies that near one half, the
    // nearest whole number of tenths is the one the exact value rounds to.
    if (!std::signbit(v) && v < 1e6) {
        const double tenths = v * 10.0;
        const double whole = std::floor(tenths);
        const double fraction = tenths - whole;
        if (std::fabs(fraction - 0.5) > 1e-6) {
            const auto rounded = static_cast<std::uint64_t>(whole) + (fraction > 0.5 ? 1 : 0);
            char text[24];
            char* end = std::to_chars(text, text + sizeof text, rounded / 10).ptr;
            *end++ = '.';
            *end++ = static_cast<char>('0' + rounded % 10);
            out.append(text, end);
            return;
        }
    }
    // Room for the largest double: 309 digits, the point and a decimal.
    char text[328];
    out.append(text, std::to_chars(text, text + sizeof text, v, std::chars_format::fixed, 1).ptr);
}

}  // namespace pelkrin
