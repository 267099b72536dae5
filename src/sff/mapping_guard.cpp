#include "sff/mapping_guard.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>

namespace pelkrin {
namespace {

// The mappings guarded at once: a few readers at most.
constexpr int slot_count = 16;

struct slot {
    std::atomic<bool> taken{false};
    std::atomic<std::uintptr_t> begin{0};  // 0 while the slot is being filled or emptied
    std::atomic<std::size_t> length{0};
    std::atomic<int> fd{-1};
    std::atomic<bool> faulted{false};
};

slot slots[slot_count];
struct sigaction previous {};
std::uintptr_t page = 4096;  // taken when the handler is installed
std::once_flag installed;

// Maps zero pages over [from, end) of a guarded mapping; the fault is then gone.
bool cover_with_zeros(std::uintptr_t from, std::uintptr_t end) {
    void* at = ::mmap(reinterpret_cast<void*>(from), end - from, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED,
                      -1, 0);
    return at != MAP_FAILED;
}

void pass_on(int signal_number, siginfo_t* info, void* context) {
    if ((previous.sa_flags & SA_SIGINFO) != 0 && previous.sa_sigaction != nullptr) {
        previous.sa_sigaction(signal_number, info, context);
        return;
    }
    if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN) {
        previous.sa_handler(signal_number);
        return;
    }
    // The fault happens again on return, and ends the program as it would have.
    ::signal(signal_number, SIG_DFL);
}

void on_bus_error(int signal_number, siginfo_t* info, void* context) {
    const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
    for (slot& s : slots) {
        const std::uintptr_t begin = s.begin.load();
        const std::size_t length = s.length.load();
        if (begin == 0 || address < begin || address - begin >= length) continue;
        // Every page past the file's new end, in one go; or the faulting page
        // alone when the file's size cannot be had (or it is not the cause).
        const std::uintptr_t fault_page = address / page * page;
        std::uintptr_t from = fault_page;
        std::uintptr_t to = std::min<std::uintptr_t>(begin + length, fault_page + page);
        struct stat st {};
        if (::fstat(s.fd.load(), &st) == 0 && st.st_size >= 0) {
            const std::uintptr_t kept = begin + (static_cast<std::uintptr_t>(st.st_size) + page - 1) / page * page;
            if (kept <= fault_page) {
                from = kept;
                to = begin + length;
            }
        }
        s.faulted.store(true);
        if (cover_with_zeros(from, to)) return;
        break;
    }
    pass_on(signal_number, info, context);
}

void install() {
    page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    struct sigaction action {};
    action.sa_sigaction = on_bus_error;
    action.sa_flags = SA_SIGINFO;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGBUS, &action, &previous);
}

}  // namespace

bool mapping_guard::watch(const void* begin, std::size_t length, int fd) {
    release();
    std::call_once(installed, install);
    for (int i = 0; i < slot_count; ++i) {
        bool expected = false;
        if (!slots[i].taken.compare_exchange_strong(expected, true)) continue;
        slots[i].length.store(length);
        slots[i].fd.store(fd);
        slots[i].faulted.store(false);
        slots[i].begin.store(reinterpret_cast<std::uintptr_t>(begin));
        slot_ = i;
        return true;
    }
    return false;
}

void mapping_guard::release() {
    if (slot_ < 0) return;
    slots[slot_].begin.store(0);
    slots[slot_].faulted.store(false);
    slots[slot_].taken.store(false);
    slot_ = -1;
}

bool mapping_guard::faulted() const { return slot_ >= 0 && slots[slot_].faulted.load(std::memory_order_relaxed); }

}  // namespace pelkrin
