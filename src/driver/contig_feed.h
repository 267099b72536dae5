#pragma once
// Reads the assembly's contigs on a thread of its own, ahead of their use, and
// hands them over in file order as the names their entries need. The thread
// starts with the feed and reads until the file ends, something ends the
// reading early, or the feed is cancelled; it holds at most 32 MB of names
// (about a million reads) at a time, and waits while they are not taken.
#include <exception>
#include <thread>

#include "ace/ace_reader.h"
#include "ace/contig_names.h"
#include "common/work_queue.h"

namespace pelkrin {

class contig_feed {
public:
    // `ace` is the feed's alone until next() has returned false or thrown.
    explicit contig_feed(aceReader& ace);
    ~contig_feed();
    contig_feed(const contig_feed&) = delete;
    contig_feed& operator=(const contig_feed&) = delete;

    // The next contig; false after the last one or once cancelled. What ended
    // the reading early (a malformed file's fatal_error) is thrown here, in
    // the place of the contig it stopped at. Once it returned false (not
    // cancelled) or threw, the reading is over and `ace` tells how the file ended.
    bool next(contig_names& out);
    // Ends the reading; next() returns false from then on. Any thread.
    void cancel();

private:
    struct item {
        contig_names names;
        bool end = false;
        std::exception_ptr error;
    };

    void read_all();
    // Waits for the reading thread to be over.
    void join();

    aceReader& ace_;
    work_queue<item> queue_;
    std::thread thread_;
    bool over_ = false;  // the last item was taken
};

}  // namespace pelkrin
