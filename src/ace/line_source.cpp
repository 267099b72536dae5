#include "ace/line_source.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <system_error>

#include "ace/blank.h"
#include "common/input_file.h"

namespace pelkrin {
namespace {

// Large reads keep the per-line cost down to the scan for the line feed.
constexpr std::size_t chunk_size = std::size_t{1} << 18;

}  // namespace

line_source::~line_source() {
    if (file_ != nullptr) std::fclose(file_);
}

bool line_source::open(const std::string& path) {
    input_file file;
    // A folder, or anything else that opens, is read: what cannot be read as
    // an ACE file is the reader's to tell, in its own words. A device is not
    // opened: /dev/zero would be read without end.
    file.open(path, input_reading::front_to_back);
    if (!file.is_open() || file.error() == ENODEV) return start(nullptr);
    std::FILE* stream = ::fdopen(file.descriptor(), "rb");
    if (stream != nullptr) file.release();
    return start(stream);
}

bool line_source::open_memory(std::string_view text) {
    // A stream over no bytes at all still needs a buffer to stand on.
    static char nothing = 0;
    char* bytes = text.empty() ? &nothing : const_cast<char*>(text.data());  // opened for reading only
    return start(::fmemopen(bytes, text.size(), "r"));
}

bool line_source::start(std::FILE* file) {
    close();
    begin_ = end_ = 0;
    file_drained_ = false;
    eof_ = false;
    failed_ = false;
    file_ = file;
    if (file_ == nullptr) {
        failed_ = true;
        return false;
    }
    // Our own buffer is the only one needed.
    std::setvbuf(file_, nullptr, _IONBF, 0);
    if (buffer_.size() < chunk_size) buffer_.resize(chunk_size);
    return true;
}

void line_source::close() {
    if (file_ == nullptr) return;
    if (std::fclose(file_) != 0) failed_ = true;
    file_ = nullptr;
    begin_ = end_ = 0;
    file_drained_ = true;
}

bool line_source::fill() {
    if (file_ == nullptr || file_drained_) return false;
    if (begin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    // A line longer than the buffer makes it grow.
    if (end_ == buffer_.size()) buffer_.resize(buffer_.size() * 2);
    const std::size_t got = std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, file_);
    if (got == 0) {
        file_drained_ = true;
        return false;
    }
    end_ += got;
    return true;
}

bool line_source::next_line(std::string_view& line) {
    line = {};
    if (failed_ || file_ == nullptr) {
        failed_ = true;
        return false;
    }
    std::size_t scanned = 0;  // bytes past begin_ known to hold no line feed
    for (;;) {
        const char* from = buffer_.data() + begin_ + scanned;
        const auto* lf = static_cast<const char*>(std::memchr(from, '\n', end_ - begin_ - scanned));
        if (lf != nullptr) {
            const std::size_t length = static_cast<std::size_t>(lf - (buffer_.data() + begin_));
            line = std::string_view(buffer_.data() + begin_, length);
            begin_ += length + 1;
            return true;
        }
        scanned = end_ - begin_;
        if (!fill()) break;
    }
    eof_ = true;
    if (begin_ == end_) {
        failed_ = true;
        return false;
    }
    line = std::string_view(buffer_.data() + begin_, end_ - begin_);
    begin_ = end_;
    return true;
}

bool line_source::append_block(std::vector<char>& out) {
    std::string_view line;
    for (;;) {
        // The lines whole in the buffer.
        if (!failed_ && file_ != nullptr) {
            const char* data = buffer_.data();
            while (const auto* lf = static_cast<const char*>(std::memchr(data + begin_, '\n', end_ - begin_))) {
                const char* first = data + begin_;
                begin_ = static_cast<std::size_t>(lf - data) + 1;
                if (lf == first) return true;
                out.insert(out.end(), first, lf);
            }
        }
        // A line that runs on past the buffer, or the last one.
        if (!next_line(line)) return false;
        if (line.empty()) return true;
        out.insert(out.end(), line.begin(), line.end());
    }
}

int line_source::peek() {
    if (begin_ == end_ && !fill()) {
        eof_ = true;
        return -1;
    }
    return static_cast<unsigned char>(buffer_[begin_]);
}

bool line_source::skip_blanks() {
    if (failed_ || file_ == nullptr || eof_) {
        failed_ = true;
        return false;
    }
    for (int c = peek(); c != -1; c = peek()) {
        if (!is_blank(static_cast<char>(c))) return true;
        ++begin_;
    }
    failed_ = true;
    return false;
}

bool line_source::read_word(std::string& out) {
    if (!skip_blanks()) return false;
    out.clear();
    for (int c = peek(); c != -1 && !is_blank(static_cast<char>(c)); c = peek()) {
        out.push_back(static_cast<char>(c));
        ++begin_;
    }
    return true;
}

bool line_source::read_number(int32_t& out) {
    if (!skip_blanks()) return false;
    std::string text;
    int c = peek();
    if (c == '+' || c == '-') {
        if (c == '-') text.push_back('-');
        ++begin_;
        c = peek();
    }
    for (; c >= '0' && c <= '9'; c = peek()) {
        text.push_back(static_cast<char>(c));
        ++begin_;
    }
    int32_t value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) {
        failed_ = true;
        return false;
    }
    out = value;
    return true;
}

}  // namespace pelkrin
