#pragma once
// Every fatal error of the program ends the process here, so that
//  - output files written through large buffers are flushed first, and
//  - tests and fuzz targets can turn the exit into something they can catch.
#include <functional>

namespace pelkrin {

// Something holding buffered output that must reach its file before the process ends.
class flushable {
public:
    virtual void flush_before_exit() = 0;

protected:
    ~flushable() = default;
};

void register_flushable(flushable* f);
void unregister_flushable(flushable* f);

// Flushes every registered output, then ends the process with `status`, or hands
// the status to the hook when one is installed. A hook must not return; if it
// does, the process ends all the same.
[[noreturn]] void end_process(int status);

using end_process_hook = std::function<void(int status)>;
// Installs `hook` (an empty function restores the plain process exit) and
// returns the previous one.
end_process_hook set_end_process_hook(end_process_hook hook);

}  // namespace pelkrin
