#pragma once
// One buffer's worth of the reads file, on its way from the thread that
// formats the entries to the one that writes them: the bytes as output_file's
// own buffer would have held them when it went to the file, and the places in
// them where the writing thread has something to do besides writing them.
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <vector>

namespace pelkrin {

struct text_batch {
    struct mark {
        std::size_t at = 0;         // bytes of `text` before the mark
        bool contig_start = false;  // true: a contig's header line ends here; false: its last entry does
        // For a start, the index line's fields: the contig's name, its read
        // count and the reads file's length up to here.
        std::string name;
        std::size_t reads = 0;
        std::int64_t offset = 0;
    };

    std::vector<char> text;  // the bytes are its first `used`
    std::size_t used = 0;
    std::vector<mark> marks;
    bool last = false;         // every contig has been formatted: nothing follows
    std::exception_ptr error;  // the run ends here, after the bytes of this batch

    // Empties the batch, keeping its storage.
    void clear() {
        used = 0;
        marks.clear();
        last = false;
        error = nullptr;
    }
};

}  // namespace pelkrin
