#include "driver/contig_feed.h"

#include <utility>

namespace pelkrin {
namespace {

// Bytes of names queued at most (a read's name and where it ends, some two
// dozen bytes): room for about a million reads. The SFF file is indexed
// meanwhile, which takes a fifth of a second for a million reads; with room
// for fewer, the reading of the assembly would stop then, leaving a core idle,
// and take that core from the formatting later. Counted in bytes, not reads,
// so that long names (or many contigs of no reads) hold no more memory.
constexpr std::size_t most_queued_bytes = std::size_t{32} << 20;

// What a contig's names take in memory, roughly.
std::size_t bytes_of(const contig_names& c) {
    return c.name.size() + c.names.size() + c.name_ends.size() * sizeof(std::size_t) + sizeof(contig_names);
}

}  // namespace

contig_feed::contig_feed(aceReader& ace) : ace_(ace), queue_(most_queued_bytes) {
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
            const std::size_t weight = bytes_of(i.names);
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
