#include "view_tool/report/interrupt_guard.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

namespace pelkrin {

interrupt_guard::interrupt_guard() {
    sigemptyset(&taken_);
    for (const int s : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction now {};
        if (::sigaction(s, nullptr, &now) == 0 && now.sa_handler == SIG_IGN) continue;
        sigaddset(&taken_, s);
    }
    ::pthread_sigmask(SIG_BLOCK, &taken_, &previous_mask_);
    signals_fd_ = ::signalfd(-1, &taken_, SFD_CLOEXEC);
    stop_fd_ = ::eventfd(0, EFD_CLOEXEC);
    try {
        if (signals_fd_ >= 0 && stop_fd_ >= 0) watcher_ = std::thread([this] { watch(); });
    } catch (...) {
        ::close(signals_fd_);
        ::close(stop_fd_);
        ::pthread_sigmask(SIG_SETMASK, &previous_mask_, nullptr);
        throw;
    }
    // Without a descriptor to wait on, the signals end the program as they
    // would have, with nothing cleaned: unblocked again.
    if (!watcher_.joinable()) ::pthread_sigmask(SIG_SETMASK, &previous_mask_, nullptr);
}

interrupt_guard::~interrupt_guard() {
    if (watcher_.joinable()) {
        const std::uint64_t one = 1;
        while (::write(stop_fd_, &one, sizeof one) < 0 && errno == EINTR) {
        }
        watcher_.join();
    }
    if (signals_fd_ >= 0) ::close(signals_fd_);
    if (stop_fd_ >= 0) ::close(stop_fd_);
    // A signal that came after the watcher stopped ends the program now.
    ::pthread_sigmask(SIG_SETMASK, &previous_mask_, nullptr);
}

void interrupt_guard::set_cleanup(std::function<void()> cleanup) {
    std::lock_guard lock(mutex_);
    cleanup_ = std::move(cleanup);
}

void interrupt_guard::watch() {
    pollfd fds[2] = {{signals_fd_, POLLIN, 0}, {stop_fd_, POLLIN, 0}};
    for (;;) {
        if (::poll(fds, 2, -1) < 0) {
            if (errno == EINTR) continue;
            return;
        }
        if (fds[1].revents != 0) return;
        signalfd_siginfo info{};
        if (fds[0].revents == 0 || ::read(signals_fd_, &info, sizeof info) != sizeof info) continue;
        const int s = static_cast<int>(info.ssi_signo);
        // Held for good: nothing may be put in place after the cleanup.
        mutex_.lock();
        if (cleanup_) cleanup_();
        ::signal(s, SIG_DFL);
        sigset_t one;
        sigemptyset(&one);
        sigaddset(&one, s);
        ::pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
        ::raise(s);
        ::_exit(128 + s);  // not reached: the signal ends the program
    }
}

}  // namespace pelkrin
