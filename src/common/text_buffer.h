#pragma once
// Text gathered in a large buffer and handed on (to a file, to another
// thread) whenever the next piece would not fit, so that a line costs no
// system call. Where the buffer is handed on depends only on the pieces
// written: the same pieces give the same hand-offs, whoever writes them.
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace pelkrin {

// The most bytes a number of up to 64 bits takes.
inline constexpr std::size_t max_number_chars = 24;

class text_buffer {
public:
    // The size the buffer starts with (it grows for a piece larger than that).
    static constexpr std::size_t default_size = std::size_t{1} << 20;

    text_buffer() : buf_(default_size), size_(default_size) {}
    virtual ~text_buffer() = default;
    text_buffer(const text_buffer&) = delete;
    text_buffer& operator=(const text_buffer&) = delete;

    void write(std::string_view text) {
        if (size_ - used_ < text.size()) make_room(text.size());
        text.copy(buf_.data() + used_, text.size());
        used_ += text.size();
    }
    void put(char c) {
        if (used_ == size_) make_room(1);
        buf_[used_++] = c;
    }
    template <typename Integer>
    void number(Integer value) {
        if (size_ - used_ < max_number_chars) make_room(max_number_chars);
        used_ = static_cast<std::size_t>(std::to_chars(buf_.data() + used_, buf_.data() + size_, value).ptr -
                                         buf_.data());
    }
    // Room for a piece of up to `n` bytes written in place, for writers that
    // know the most a piece takes: write at room(n), then say where it ended
    // with wrote_up_to. Nothing else may be written between the two.
    char* room(std::size_t n) {
        if (size_ - used_ < n) make_room(n);
        return buf_.data() + used_;
    }
    void wrote_up_to(const char* end) { used_ = static_cast<std::size_t>(end - buf_.data()); }

    // Bytes written so far, handed on or not.
    std::int64_t written() const { return handed_ + static_cast<std::int64_t>(used_); }
    // Bytes written since the buffer was last handed on.
    std::size_t buffered() const { return used_; }

protected:
    // Hands on what the buffer holds, if anything.
    void flush() {
        if (used_ > 0) hand_over();
    }
    // Hands on what the buffer holds, even nothing.
    void hand_over();
    // Takes the buffer's first `used` bytes. `bytes` may be swapped for other
    // storage; it is sized to the buffer's size again after.
    virtual void hand_on(std::vector<char>& bytes, std::size_t used) = 0;

private:
    void make_room(std::size_t n);

    std::vector<char> buf_;
    std::size_t size_;  // the buffer's size; buf_ holds at least this much
    std::size_t used_ = 0;
    std::int64_t handed_ = 0;
};

}  // namespace pelkrin
