#include "program.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <sstream>
#include <csignal>
#include <stdexcept>
#include <thread>

#include "files.h"

namespace pelkrin::test {

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

    pid_t pid = ::fork();
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
    program_result r;
    const auto start = std::chrono::steady_clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); };
    int wstatus = 0;
    if (limits.seconds > 0) {
        while (::waitpid(pid, &wstatus, WNOHANG) == 0) {
            if (elapsed() > limits.seconds) {
                ::kill(pid, SIGKILL);
                ::waitpid(pid, &wstatus, 0);
                r.timed_out = true;
                break;
            }
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    } else {
        ::waitpid(pid, &wstatus, 0);
    }
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

}  // namespace pelkrin::test
