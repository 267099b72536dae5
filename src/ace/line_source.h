#pragma once
// Buffered reading of a file by lines (ending at a line feed only) and, for a
// file's header, by whitespace-separated words and numbers, with the end-of-
// input and failure states of an input file stream.
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace pelkrin {

class line_source {
public:
    line_source() = default;
    ~line_source();
    line_source(const line_source&) = delete;
    line_source& operator=(const line_source&) = delete;

    // Opens `path` for reading; false (and the failed state) when it cannot.
    bool open(const std::string& path);
    // Reads `text`, which must outlive the reading, as a file's contents.
    bool open_memory(std::string_view text);
    // Closes the file if one is open; a failed close sets the failed state.
    void close();
    bool is_open() const { return file_ != nullptr; }

    // The next line without its line feed (a carriage return stays). The view
    // holds until the next read. A last line without a line feed is still a
    // line; false when there is no line left, or in the failed state.
    bool next_line(std::string_view& line);
    // Appends the lines up to the next empty one to `out`, each without its
    // line feed, and takes the empty line too: as next_line would give them,
    // without a call a line. False when there was no empty line before the
    // end (what there was is appended) or in the failed state.
    bool append_block(std::vector<char>& out);

    // Formatted extraction across lines, for the header: skips blanks, then
    // reads a word, or a signed decimal number that is stored only when it
    // fits. A failure sets the failed state.
    bool read_word(std::string& out);
    bool read_number(int32_t& out);

    // Leaves the failed state, as clearing an input stream does: reading goes
    // on from where the failed read stopped. Nothing open stays failed.
    void clear_failure() { failed_ = file_ == nullptr; }

    // The end of the data has been met, a read failed, or nothing is open.
    bool at_end() const { return eof_ || failed_ || file_ == nullptr; }
    bool failed() const { return failed_; }

private:
    // Reads from `file` (null: could not be opened) from its start.
    bool start(std::FILE* file);
    // Makes room and reads more of the file behind the unread bytes; false
    // when the file has nothing more.
    bool fill();
    // The next unread byte, or -1 at the end of the data (which sets `eof_`).
    int peek();
    bool skip_blanks();

    std::FILE* file_ = nullptr;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;  // first unread byte
    std::size_t end_ = 0;    // one past the last byte read from the file
    bool file_drained_ = false;
    bool eof_ = false;
    bool failed_ = false;
};

}  // namespace pelkrin
