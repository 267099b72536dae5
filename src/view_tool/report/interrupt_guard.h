#pragma once
// A signal that ends the report (Ctrl-C, kill, a hang-up) first removes what
// the report had begun, so that the earlier report stays as it was and
// nothing of the new one is left beside it.
//
// While a guard lives, SIGINT, SIGTERM and SIGHUP are blocked in every thread
// and taken by a thread of the guard's own (a handler could only do what is
// safe in a handler, while the workers go on writing). That thread runs the
// cleanup, holding the guard's lock, then ends the program as the signal
// would have. A signal the caller chose to ignore stays ignored (nohup).
// Make the guard before any other thread, which then inherit the mask.
#include <signal.h>

#include <functional>
#include <mutex>
#include <thread>

namespace pelkrin {

class interrupt_guard {
public:
    interrupt_guard();
    ~interrupt_guard();
    interrupt_guard(const interrupt_guard&) = delete;
    interrupt_guard& operator=(const interrupt_guard&) = delete;

    // What a signal does before it ends the program; an empty function: nothing.
    void set_cleanup(std::function<void()> cleanup);
    // Keeps the cleanup from running while the lock is held: for steps that
    // must not be cut in two (putting the report in place).
    std::unique_lock<std::mutex> hold() { return std::unique_lock<std::mutex>(mutex_); }

private:
    void watch();

    sigset_t taken_{};
    sigset_t previous_mask_{};
    int signals_fd_ = -1;  // signalfd of the signals taken
    int stop_fd_ = -1;     // eventfd: the guard goes
    std::mutex mutex_;
    std::function<void()> cleanup_;
    std::thread watcher_;
};

}  // namespace pelkrin
