#include "views/count_digit.h"

#include <charconv>

namespace pelkrin {

char count_digit(int16_t n) {
    if (n >= 0 && n <= 9) {
        char digit = '0';
        std::to_chars(&digit, &digit + 1, n);
        return digit;
    }
    // 10 is 'A', 35 is 'Z'; larger counts run on through the character table.
    return static_cast<char>(n + 55);
}

}  // namespace pelkrin
