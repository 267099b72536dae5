#pragma once
// A text output file written through a large buffer, so that a line costs no
// system call.
//
// A file that is absent or regular is written under a temporary name in its
// folder and put in place of its name by finish(), which the destructor calls
// too (so a run that ends with an error still leaves what it wrote). A run
// killed by a signal removes the temporary file and leaves the previous file
// untouched (see temporary_files.h). A symbolic link is followed: the file it
// names is replaced and the link stays a link. Any other kind of file (a
// device, a FIFO), or a file whose folder admits no new file, is written in
// place, emptied on opening.
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "driver/small_numbers.h"

namespace pelkrin {

class output_file {
public:
    // Opens the file as described above.
    explicit output_file(std::string path);
    ~output_file();
    output_file(const output_file&) = delete;
    output_file& operator=(const output_file&) = delete;

    // The name it was opened by.
    const std::string& name() const { return name_; }
    // True when the file could not be opened.
    bool failed_to_open() const { return file_ == nullptr && !finished_; }
    // True once a write to the file has failed; what is written after that is dropped.
    bool write_failed() const { return write_failed_; }
    // True when `path` names the file this one will stand at.
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

    // Bytes written so far, counted from the start of the file; -1 once a write
    // has failed or when the file cannot report positions (a pipe, a device).
    std::int64_t tellp() const;
    // Writes what is buffered, closes the file and puts it in place of its name.
    // False when any write, the close or the renaming failed. Once only.
    bool finish();

private:
    static constexpr std::size_t max_number_chars = 24;

    // Opens `name_` in place, emptying it; false when it cannot.
    bool open_in_place();
    void make_room(std::size_t n);
    void flush();

    std::string name_;
    std::string final_path_;  // where the temporary file goes at the end: the name, or the file a link names
    std::string temp_path_;   // empty when written in place
    std::FILE* file_ = nullptr;
    std::vector<char> buf_;
    std::size_t used_ = 0;
    std::int64_t flushed_ = 0;
    bool seekable_ = false;
    bool write_failed_ = false;
    bool finished_ = false;
};

}  // namespace pelkrin
