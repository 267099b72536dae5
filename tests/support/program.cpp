#include "program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <sstream>
#include <csignal>
#include <stdexcept>
#include <thread>

#include "files.h"

namespace pelkrin::test {

namespace {

// Starts the program without copying this process: posix_spawn shares the
// memory until the child execs. Cases run one process each, thousands of
// them, and a fork of a test process grown large under the sanitizers (page
// tables copied, then every page it writes copied again) costs more than the
// program run itself. Returns -1 when the program could not be started.
pid_t start_spawned(std::vector<char*>& args, const std::filesystem::path& cwd, const std::filesystem::path& out_path,
                    const std::filesystem::path& err_path) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, 1, out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    ::posix_spawn_file_actions_addopen(&actions, 2, err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (!cwd.empty()) ::posix_spawn_file_actions_addchdir_np(&actions, cwd.c_str());
    pid_t pid = -1;
    const int failed = ::posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return failed == 0 ? pid : -1;
}

// Starts the program under limits, which posix_spawn cannot set: the child
// sets them after the fork.
pid_t start_forked(std::vector<char*>& args, const std::filesystem::path& cwd, const std::filesystem::path& out_path,
                   const std::filesystem::path& err_path, const run_limits& limits) {
    const pid_t pid = ::fork();
    if (pid < 0) throw std::runtime_error("fork failed");
    if (pid == 0) {
        const std::string stdout_path = limits.stdout_path.empty() ? out_path.string() : limits.stdout_path;
        int out = ::open(stdout_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        int err = ::open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        int in = ::open("/dev/null", O_RDONLY);
        if (out < 0 || err < 0 || in < 0) ::_exit(126);
        ::dup2(in, 0);
        ::dup2(out, 1);
        ::dup2(err, 2);
        if (!cwd.empty() && ::chdir(cwd.c_str()) != 0) ::_exit(126);
        if (limits.address_space != 0) {
            const rlimit limit{limits.address_space, limits.address_space};
            ::setrlimit(RLIMIT_AS, &limit);
        }
        if (limits.file_size != 0) {
            const rlimit limit{limits.file_size, limits.file_size};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            ::signal(SIGXFSZ, SIG_IGN);  // a write past the limit then fails instead of killing
        }
        ::execvp(args[0], args.data());
        ::_exit(127);
    }
    return pid;
}

// Waits until the child ends or `seconds` have passed since it started; true
// when it ended. Sleeps on a descriptor of the child where the system has one,
// else looks every 200 microseconds.
template <typename Elapsed>
bool ended_within(pid_t pid, double seconds, const Elapsed& elapsed) {
    const int pidfd = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    if (pidfd >= 0) {
        bool ended = false;
        while (!ended) {
            const double left = seconds - elapsed();
            if (left <= 0) break;
            pollfd p{pidfd, POLLIN, 0};
            const int ready = ::poll(&p, 1, static_cast<int>(left * 1000) + 1);
            ended = ready > 0;
            if (ready < 0 && errno != EINTR) break;
        }
        ::close(pidfd);
        return ended;
    }
    while (elapsed() <= seconds) {
        siginfo_t info{};
        if (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == pid)
            return true;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return false;
}

}  // namespace

program_result run_program(const std::vector<std::string>& argv, const std::filesystem::path& cwd,
                           const run_limits& limits) {
    auto dir = scratch_root() / "program-io";
    std::filesystem::create_directories(dir);
    auto tag = std::to_string(::getpid());
    auto out_path = dir / (tag + ".out");
    auto err_path = dir / (tag + ".err");

    // PELKRIN_TEST_WRAPPER (say, "valgrind --error-exitcode=1 -q") runs every
    // program under another; whatever it reports on standard error fails the
    // tests that compare it.
    std::vector<std::string> full;
    if (const char* wrapper = std::getenv("PELKRIN_TEST_WRAPPER")) {
        std::istringstream words(wrapper);
        for (std::string w; words >> w;) full.push_back(w);
    }
    full.insert(full.end(), argv.begin(), argv.end());
    std::vector<char*> args;
    for (const auto& a : full) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);

    const bool forked = limits.address_space != 0 || limits.file_size != 0 || !limits.stdout_path.empty();
    const pid_t pid = forked ? start_forked(args, cwd, out_path, err_path, limits) : start_spawned(args, cwd, out_path, err_path);
    if (pid < 0) {
        // What a shell reports for a program it cannot run.
        program_result r;
        r.status = 127;
        return r;
    }
    program_result r;
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
    int wstatus = 0;
    if (limits.seconds > 0) {
        r.timed_out = !ended_within(pid, limits.seconds, elapsed);
        if (r.timed_out) ::kill(pid, SIGKILL);
    }
    ::waitpid(pid, &wstatus, 0);
    r.seconds = elapsed();
    r.status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : 128 + WTERMSIG(wstatus);
    if (limits.stdout_path.empty()) r.out = read_file(out_path);
    r.err = read_file(err_path);
    std::filesystem::remove(out_path);
    std::filesystem::remove(err_path);
    return r;
}

std::string pelkrin_binary() { return PELKRIN_BINARY; }

std::string pelkrin_view_binary() { return PELKRIN_VIEW_BINARY; }

std::string pelkrin_prep_binary() { return PELKRIN_PREP_BINARY; }

}  // namespace pelkrin::test
