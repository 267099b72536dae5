#pragma once
// A text output file written through a large buffer, so that a line costs no
// system call. Whatever has been written reaches the file when it is closed or
// destroyed, also when the run ends early through an exception.
#include <charconv>
#include <cstring>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "driver/small_numbers.h"

namespace pelkrin {

class output_file {
public:
    // When a file that exists is emptied: on opening, or by empty_now() before
    // the first write. Emptying a large file left by an earlier run takes a
    // while, which another thread can spend.
    enum class emptying { on_open, later };

    // Creates the file, or opens it to be emptied when it exists.
    explicit output_file(const std::string& path, emptying when = emptying::on_open);
    ~output_file();
    output_file(const output_file&) = delete;
    output_file& operator=(const output_file&) = delete;

    // True when the file could not be opened, or a write to it has failed.
    bool failed() const { return failed_; }

    // Empties a file opened with emptying::later, once; closing does it too, so
    // the file never keeps what it held before.
    void empty_now();
    // True when `path` names the file this one writes to.
    bool same_file_as(const std::string& path) const;

    void write(std::string_view text) {
        if (buf_.size() - used_ < text.size()) make_room(text.size());
        text.copy(buf_.data() + used_, text.size());
        used_ += text.size();
    }
    void put(char c) {
        if (used_ == buf_.size()) make_room(1);
        buf_[used_++] = c;
    }
    template <typename Integer>
    void number(Integer value) {
        if (buf_.size() - used_ < max_number_chars) make_room(max_number_chars);
        used_ = static_cast<std::size_t>(std::to_chars(buf_.data() + used_, buf_.data() + buf_.size(), value).ptr -
                                         buf_.data());
    }

    // The values separated by single tabs, then a line feed; no values give an
    // empty line. Most values are quality scores below 100, which come from a table.
    template <typename Integer>
    void values_line(const Integer* values, std::size_t n) {
        const std::size_t most = n * (max_number_chars + 1) + 1;
        if (buf_.size() - used_ < most) make_room(most);
        char* const start = buf_.data() + used_;
        char* out = start;
        for (std::size_t i = 0; i < n; ++i) {
            const Integer v = values[i];
            if (v >= 0 && v < 100) {
                const small_number& t = small_numbers[static_cast<std::size_t>(v)];
                std::memcpy(out, t.text, 4);  // digits, tab, and a byte the next value overwrites
                out += t.length;
            } else {
                out = std::to_chars(out, out + max_number_chars, v).ptr;
                *out++ = '\t';
            }
        }
        if (out != start) --out;  // the last tab becomes the line end
        *out++ = '\n';
        used_ += static_cast<std::size_t>(out - start);
    }

    // Bytes written so far, counted from the start of the file; -1 when the
    // stream has failed or the file cannot report positions.
    std::int64_t tellp() const;
    void close();

private:
    static constexpr std::size_t max_number_chars = 24;

    void make_room(std::size_t n);
    void flush();

    std::FILE* file_ = nullptr;
    std::vector<char> buf_;
    std::size_t used_ = 0;
    std::int64_t flushed_ = 0;
    bool seekable_ = false;
    bool failed_ = false;
    bool to_empty_ = false;
};

}  // namespace pelkrin
