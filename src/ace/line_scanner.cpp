#include "ace/line_scanner.h"

#include <charconv>
#include <limits>
#include <system_error>

namespace pelkrin {

void line_scanner::skip_blanks() {
    std::size_t i = 0;
    while (i < rest_.size() && is_blank(rest_[i])) ++i;
    rest_.remove_prefix(i);
}

bool line_scanner::word(std::string& out) {
    if (failed_) return false;
    skip_blanks();
    std::size_t n = 0;
    while (n < rest_.size() && !is_blank(rest_[n])) ++n;
    if (n == 0) {
        failed_ = true;
        return false;
    }
    out.assign(rest_.data(), n);
    rest_.remove_prefix(n);
    return true;
}

bool line_scanner::character(char& out) {
    if (failed_) return false;
    skip_blanks();
    if (rest_.empty()) {
        failed_ = true;
        return false;
    }
    out = rest_.front();
    rest_.remove_prefix(1);
    return true;
}

// Reads a sign and digits as a 32-bit value; 16-bit targets narrow it after.
bool line_scanner::next_value(int32_t& value) {
    if (failed_) return false;
    skip_blanks();
    std::size_t n = 0;
    if (n < rest_.size() && (rest_[n] == '+' || rest_[n] == '-')) ++n;
    const std::size_t first_digit = n;
    while (n < rest_.size() && rest_[n] >= '0' && rest_[n] <= '9') ++n;
    if (n == first_digit) {
        failed_ = true;
        return false;
    }
    // from_chars takes a minus sign but not a plus sign.
    const char* begin = rest_.data() + (rest_[0] == '+' ? 1 : 0);
    const char* end = rest_.data() + n;
    rest_.remove_prefix(n);
    const auto result = std::from_chars(begin, end, value);
    if (result.ec != std::errc() || result.ptr != end) {
        failed_ = true;
        return false;
    }
    return true;
}

bool line_scanner::number(int32_t& out) {
    int32_t value = 0;
    if (!next_value(value)) return false;
    out = value;
    return true;
}

bool line_scanner::number(int16_t& out) {
    int32_t value = 0;
    if (!next_value(value)) return false;
    if (value < std::numeric_limits<int16_t>::min() || value > std::numeric_limits<int16_t>::max()) {
        failed_ = true;
        return false;
    }
    out = static_cast<int16_t>(value);
    return true;
}

}  // namespace pelkrin
