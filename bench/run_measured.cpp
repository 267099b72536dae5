// Runs a command and prints, on one line of standard error:
//   wall_seconds user_seconds sys_seconds peak_RssAnon_kB
// The peak of anonymous memory (what the process allocates, not the file
// pages it maps) is sampled from /proc/PID/status every 10 ms: no standard
// tool reports it, and /usr/bin/time's maximum RSS counts mapped input pages.
// The command's own output goes where this program's goes.
//
//   run_measured COMMAND [ARGUMENTS...]
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>

namespace {

long rss_anon_kb(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("RssAnon:", 0) == 0) return std::strtol(line.c_str() + 8, nullptr, 10);
    }
    return 0;
}

double seconds(const timeval& t) { return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6; }

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: run_measured COMMAND [ARGUMENTS...]\n");
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) {
        std::perror("fork");
        return 2;
    }
    if (child == 0) {
        execvp(argv[1], argv + 1);
        std::perror(argv[1]);
        _exit(127);
    }
    // Sampling runs beside a blocking wait, so the wall time ends when the child does.
    std::atomic<bool> running{true};
    long peak = 0;
    std::thread sampler([&] {
        while (running.load()) {
            const long now = rss_anon_kb(child);
            if (now > peak) peak = now;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    });
    int status = 0;
    rusage usage{};
    const pid_t done = wait4(child, &status, 0, &usage);
    running.store(false);
    sampler.join();
    if (done != child) {
        std::perror("wait4");
        return 2;
    }
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::fprintf(stderr, "%.3f %.3f %.3f %ld\n", wall, seconds(usage.ru_utime), seconds(usage.ru_stime), peak);
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    return 128 + (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
}
