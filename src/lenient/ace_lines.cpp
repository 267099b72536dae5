#include "lenient/ace_lines.h"

#include <cstring>

#include "ace/blank.h"

namespace pelkrin {

bool ace_lines::read(ace_line& line) {
    if (at_ >= bytes_.size()) return false;
    const char* begin = reinterpret_cast<const char*>(bytes_.data() + at_);
    const std::size_t left = bytes_.size() - at_;
    const void* lf = std::memchr(begin, '\n', left);
    std::size_t length = lf != nullptr ? static_cast<std::size_t>(static_cast<const char*>(lf) - begin) : left;
    at_ += length + (lf != nullptr ? 1 : 0);
    line.number = ++number_;
    line.end = at_;
    line.had_cr = false;
    while (length > 0 && begin[length - 1] == '\r') {
        --length;
        line.had_cr = true;
    }
    line.text = std::string_view(begin, length);
    line.was_white = false;
    if (length > 0) {
        bool white = true;
        for (char c : line.text) {
            if (!is_blank(c)) {
                white = false;
                break;
            }
        }
        if (white) {
            line.was_white = true;
            line.text = std::string_view();
        }
    }
    return true;
}

bool ace_lines::next(ace_line& line) {
    if (peeked_) {
        peeked_ = false;
        line = held_;
        return true;
    }
    return read(line);
}

bool ace_lines::peek(ace_line& line) {
    if (!peeked_) {
        if (!read(held_)) return false;
        peeked_ = true;
    }
    line = held_;
    return true;
}

}  // namespace pelkrin
