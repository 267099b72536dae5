#include "common/text_buffer.h"

namespace pelkrin {

void text_buffer::hand_over() {
    hand_on(buf_, used_);
    handed_ += static_cast<std::int64_t>(used_);
    used_ = 0;
    if (buf_.size() < size_) buf_.resize(size_);
}

void text_buffer::make_room(std::size_t n) {
    flush();
    if (size_ < n) {
        size_ = n;
        buf_.resize(size_);
    }
}

}  // namespace pelkrin
