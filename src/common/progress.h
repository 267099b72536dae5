#pragma once
// How far a long pass over a file has come, shown on standard error as a
// percentage that rewrites itself after what the pass does ("Pelkrin-prep:
// reading big.sff: 42%"). Shown only for files over 100 MB and only
// when standard error is a terminal: a log or a pipe gets nothing.
#include <cstdint>
#include <ostream>
#include <string>

namespace pelkrin {

class progress {
public:
    static constexpr std::uint64_t threshold = std::uint64_t{100} << 20;

    // Nothing is shown unless `shown` (see shown_for()).
    progress(std::ostream& err, std::string what, std::uint64_t total, bool shown);
    ~progress();
    progress(const progress&) = delete;
    progress& operator=(const progress&) = delete;

    // `done` of the total bytes are behind.
    void at(std::uint64_t done) {
        if (shown_ && done >= next_) draw(done);
    }
    // Ends the line, once.
    void finish();

    // Whether a pass over `total` bytes shows progress: standard error is a
    // terminal and the file is over the threshold.
    static bool shown_for(std::uint64_t total);

private:
    void draw(std::uint64_t done);

    std::ostream& err_;
    std::string what_;
    std::uint64_t total_;
    bool shown_;
    std::uint64_t next_ = 0;  // the next byte count worth a redraw
    int percent_ = -1;
};

}  // namespace pelkrin
