#pragma once
// An ACE file's lines as a lenient reading takes them: a line ends at a line
// feed, carriage returns before it are dropped, and a line of white space
// only counts as empty. Lines are numbered from 1.
#include <cstdint>
#include <span>
#include <string_view>

namespace pelkrin {

struct ace_line {
    std::string_view text;     // normalised as above
    std::uint64_t number = 0;  // 1-based
    bool had_cr = false;       // carriage returns were dropped from its end
    bool was_white = false;    // it held white space only, and counts as empty
    std::uint64_t end = 0;     // the byte offset after its line feed
};

class ace_lines {
public:
    explicit ace_lines(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    // The next line; false at the end of the file.
    bool next(ace_line& line);
    // The line next() would give, without taking it.
    bool peek(ace_line& line);
    // The bytes taken so far.
    std::uint64_t offset() const { return at_; }

private:
    bool read(ace_line& line);

    std::span<const std::uint8_t> bytes_;
    std::uint64_t at_ = 0;
    std::uint64_t number_ = 0;
    bool peeked_ = false;
    ace_line held_;
};

}  // namespace pelkrin
