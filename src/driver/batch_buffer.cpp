#include "driver/batch_buffer.h"

#include <limits>
#include <utility>

namespace pelkrin {
namespace {

// Bytes handed over and not yet written, at most: a few buffers.
constexpr std::size_t most_waiting = 4 * text_buffer::default_size;

}  // namespace

batch_buffer::batch_buffer() : full_(most_waiting), spare_(std::numeric_limits<std::size_t>::max()) {}

void batch_buffer::mark_contig_start(std::string name, std::size_t reads) {
    text_batch::mark m;
    m.at = buffered();
    m.contig_start = true;
    m.name = std::move(name);
    m.reads = reads;
    m.offset = written();
    batch_.marks.push_back(std::move(m));
}

void batch_buffer::mark_contig_end() {
    text_batch::mark m;
    m.at = buffered();
    batch_.marks.push_back(std::move(m));
}

void batch_buffer::end(std::exception_ptr error) {
    batch_.last = error == nullptr;
    batch_.error = error;
    hand_over();
}

void batch_buffer::hand_on(std::vector<char>& bytes, std::size_t used) {
    text_batch full = std::move(batch_);
    batch_ = text_batch{};
    full.text.swap(bytes);
    full.used = used;
    if (!cancelled_ && !full_.push(std::move(full), used)) cancelled_ = true;
    // The storage of a batch already written, if one is back.
    text_batch spare;
    if (spare_.try_pop(spare)) bytes.swap(spare.text);
}

void batch_buffer::next(text_batch& out) {
    if (!out.text.empty()) {
        out.clear();
        spare_.push(std::move(out), 0);
    }
    out = text_batch{};
    // Cancelled: the sequence ends as if every contig had been written.
    if (!full_.pop(out)) out.last = true;
}

void batch_buffer::cancel() {
    full_.cancel();
    spare_.cancel();
}

}  // namespace pelkrin
