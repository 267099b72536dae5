#pragma once
// Reading a file through a memory mapping while another process may shrink it.
// Touching a mapped page that lies wholly past the file's end raises SIGBUS.
// For a guarded mapping the handler maps zero-filled pages over the part of
// the mapping past the file's new end and notes the fault; the read that
// faulted then goes on, reading zeros, and the owner asks faulted() before
// it trusts what it read. A SIGBUS anywhere else is left to the handler that
// was in place before (by default it ends the program).
#include <cstddef>

namespace pelkrin {

class mapping_guard {
public:
    mapping_guard() = default;
    ~mapping_guard() { release(); }
    mapping_guard(const mapping_guard&) = delete;
    mapping_guard& operator=(const mapping_guard&) = delete;

    // Guards `length` bytes at `begin`, a shared mapping of the open file `fd`
    // from its offset 0. False when every slot is taken (the mapping is then
    // unguarded, and should not be used).
    bool watch(const void* begin, std::size_t length, int fd);
    // Stops guarding; the mapping may then go.
    void release();
    // A read of the mapping met the end of a file that had shrunk.
    bool faulted() const;

private:
    int slot_ = -1;
};

}  // namespace pelkrin
