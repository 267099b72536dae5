#include "common/progress.h"

#include <unistd.h>

namespace pelkrin {

progress::progress(std::ostream& err, std::string what, std::uint64_t total, bool shown)
    : err_(err), what_(std::move(what)), total_(total), shown_(shown && total > 0) {}

progress::~progress() { finish(); }

bool progress::shown_for(std::uint64_t total) { return total > threshold && ::isatty(2) == 1; }

void progress::draw(std::uint64_t done) {
    const int percent = static_cast<int>(done >= total_ ? 100 : done * 100 / total_);
    next_ = (static_cast<std::uint64_t>(percent) + 1) * total_ / 100;
    if (percent == percent_) return;
    percent_ = percent;
    err_ << "\r" << what_ << ": " << percent << "%" << std::flush;
}

void progress::finish() {
    if (!shown_) return;
    shown_ = false;
    if (percent_ >= 0) err_ << "\r" << what_ << ": done\n" << std::flush;
}

}  // namespace pelkrin
