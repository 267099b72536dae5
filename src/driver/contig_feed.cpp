#include "driver/contig_feed.h"

#include <utility>

namespace pelkrin {
namespace {

// Read names queued at most: some two dozen bytes each, some 25 MB in all.
// The SFF file is indexed meanwhile, which takes a fifth of a second for a
// million reads; with room for fewer names, the reading of the assembly would
// stop then, leaving a core idle, and take that core from the formatting later.
constexpr std::size_t most_queued_reads = std::size_t{1} << 20;

}  // namespace

contig_feed::contig_feed(aceReader& ace) : ace_(ace), queue_(most_queued_reads) {
    thread_ = std::thread([this] { read_all(); });
}

contig_feed::~contig_feed() {
    cancel();
    join();
}

void contig_feed::cancel() { queue_.cancel(); }

void contig_feed::join() {
    if (thread_.joinable()) thread_.join();
}

void contig_feed::read_all() {
    item last;
    try {
        while (true) {
            item i;
            if (!ace_.next_contig_names(i.names)) break;
            const std::size_t weight = i.names.reads() + 1;
            if (!queue_.push(std::move(i), weight)) return;
        }
        last.end = true;
    } catch (...) {
        last.error = std::current_exception();
    }
    queue_.push(std::move(last), 1);
}

bool contig_feed::next(contig_names& out) {
    item i;
    if (over_ || !queue_.pop(i)) return false;
    if (i.end || i.error) {
        over_ = true;
        join();
        if (i.error) std::rethrow_exception(i.error);
        return false;
    }
    out = std::move(i.names);
    return true;
}

}  // namespace pelkrin
