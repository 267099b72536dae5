#include "common/temporary_files.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <climits>
#include <cstring>
#include <mutex>

namespace pelkrin {
namespace {

// Fixed slots: the handler may only read memory that is never reallocated.
struct slot {
    std::atomic<bool> used{false};
    char path[PATH_MAX] = {};
};
std::array<slot, 8> slots;
std::mutex registering;
bool handlers_installed = false;

extern "C" void remove_and_end(int signal_number) {
    for (slot& s : slots) {
        if (s.used.load()) ::unlink(s.path);
    }
    // End as the signal would have, so the parent sees the signal.
    ::signal(signal_number, SIG_DFL);
    ::raise(signal_number);
}

void install_handlers() {
    struct sigaction action {};
    action.sa_handler = remove_and_end;
    sigemptyset(&action.sa_mask);
    for (int s : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&action.sa_mask, s);
    for (int s : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous {};
        // A signal the caller chose to ignore stays ignored (nohup).
        if (::sigaction(s, nullptr, &previous) == 0 && previous.sa_handler == SIG_IGN) continue;
        ::sigaction(s, &action, nullptr);
    }
}

}  // namespace

void register_temporary_file(const std::string& path) {
    std::lock_guard lock(registering);
    if (!handlers_installed) {
        install_handlers();
        handlers_installed = true;
    }
    for (slot& s : slots) {
        if (s.used.load() || path.size() >= sizeof s.path) continue;
        std::memcpy(s.path, path.c_str(), path.size() + 1);
        s.used.store(true);
        return;
    }
    // No slot: the file is simply not removed on a signal.
}

void unregister_temporary_file(const std::string& path) {
    std::lock_guard lock(registering);
    for (slot& s : slots) {
        if (s.used.load() && path == s.path) s.used.store(false);
    }
}

}  // namespace pelkrin
