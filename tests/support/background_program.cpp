#include "background_program.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <stdexcept>

#include "files.h"

namespace pelkrin::test {

background_program::background_program(const std::vector<std::string>& argv, const std::filesystem::path& cwd,
                                       bool as_other_user) {
    static std::atomic<int> started{0};
    const std::filesystem::path dir = scratch_root() / "program-io";
    std::filesystem::create_directories(dir);
    const std::string tag = std::to_string(::getpid()) + "-bg" + std::to_string(started++);
    out_ = dir / (tag + ".out");
    err_ = dir / (tag + ".err");
    // Opened here: the other user may not create files where the tests do.
    const int out = ::open(out_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const int err = ::open(err_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (out < 0 || err < 0) throw std::runtime_error("cannot open the output files of a program in " + dir.string());
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    pid_ = ::fork();
    if (pid_ < 0) throw std::runtime_error("fork failed");
    if (pid_ == 0) {
        const int in = ::open("/dev/null", O_RDONLY);
        ::dup2(in, 0);
        ::dup2(out, 1);
        ::dup2(err, 2);
        if (as_other_user && ::geteuid() == 0 &&
            (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0)) {
            ::_exit(125);
        }
        if (!cwd.empty() && ::chdir(cwd.c_str()) != 0) ::_exit(126);
        ::execv(args[0], args.data());
        ::_exit(127);
    }
    ::close(out);
    ::close(err);
}

background_program::~background_program() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
    std::error_code ignored;
    std::filesystem::remove(out_, ignored);
    std::filesystem::remove(err_, ignored);
}

void background_program::send(int signal) const {
    if (pid_ > 0) ::kill(pid_, signal);
}

program_result background_program::wait() {
    program_result r;
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    r.out = read_file(out_);
    r.err = read_file(err_);
    return r;
}

program_result run_as_other_user(const std::vector<std::string>& argv, const std::filesystem::path& cwd) {
    background_program p(argv, cwd, true);
    return p.wait();
}

}  // namespace pelkrin::test
