#pragma once
// Word, character and integer extraction from one line, with the rules of
// formatted stream extraction in the "C" locale, except that a number that
// cannot be read is never stored. The first failed extraction makes every
// later one from the same line fail as well.
#include <cstdint>
#include <string>
#include <string_view>

#include "blank.h"

namespace pelkrin {

class line_scanner {
public:
    line_scanner() = default;
    explicit line_scanner(std::string_view text) : rest_(text) {}

    // A run of non-blank characters; `out` is left as it was when there is none.
    bool word(std::string& out);
    // The next non-blank character; the rest of its word stays for later.
    bool character(char& out);
    // Optional sign and decimal digits, ending at the first non-digit. A value
    // outside the target's range is not stored and fails the line.
    bool number(int32_t& out);
    bool number(int16_t& out);

    bool failed() const { return failed_; }
    // What has not been extracted yet.
    std::string_view rest() const { return rest_; }
    // Copies the rest into `storage` and reads on from there, so that the
    // scanner outlives the buffer that held its line.
    void move_rest_to(std::string& storage) {
        storage.assign(rest_);
        rest_ = storage;
    }

private:
    void skip_blanks();
    bool next_value(int32_t& value);

    std::string_view rest_;
    bool failed_ = false;
};

}  // namespace pelkrin
