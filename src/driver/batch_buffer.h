#pragma once
// The reads file's text buffered as output_file buffers it, but handed over to
// another thread, a buffer at a time, instead of going to the file: that
// thread writes the buffers to the file, in order. Marks tell it where each
// contig's header line and last entry end. At most a few buffers wait for it;
// the formatting thread waits when they are not taken.
#include <exception>
#include <string>
#include <vector>

#include "driver/text_batch.h"
#include "common/text_buffer.h"
#include "common/work_queue.h"

namespace pelkrin {

class batch_buffer : public text_buffer {
public:
    batch_buffer();

    // The formatting thread's side. A contig's header line was just written:
    void mark_contig_start(std::string name, std::size_t reads);
    // ...its last entry was just written:
    void mark_contig_end();
    // Hands over what is left, and the end: every contig written, or `error`.
    void end(std::exception_ptr error);
    // The writing thread stopped taking batches: formatting may stop.
    bool cancelled() const { return cancelled_; }

    // The writing thread's side: the next batch, into `out`, whose storage is
    // given back for later batches. A batch marked last or with an error is
    // the last one.
    void next(text_batch& out);
    // Either side: ends the handing over; waiting on either side stops.
    void cancel();

protected:
    void hand_on(std::vector<char>& bytes, std::size_t used) override;

private:
    work_queue<text_batch> full_;
    work_queue<text_batch> spare_;  // batches written, back for reuse
    text_batch batch_;              // being filled
    bool cancelled_ = false;
};

}  // namespace pelkrin
