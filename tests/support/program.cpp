#include "program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "files.h"

namespace pelkrin::test {

program_result run_program(const std::vector<std::string>& argv, const std::filesystem::path& cwd) {
    auto dir = scratch_root() / "program-io";
    std::filesystem::create_directories(dir);
    auto tag = std::to_string(::getpid());
    auto out_path = dir / (tag + ".out");
    auto err_path = dir / (tag + ".err");

    std::vector<char*> args;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);

    pid_t pid = ::fork();
    if (pid < 0) throw std::runtime_error("fork failed");
    if (pid == 0) {
        int out = ::open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        int err = ::open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        int in = ::open("/dev/null", O_RDONLY);
        if (out < 0 || err < 0 || in < 0) ::_exit(126);
        ::dup2(in, 0);
        ::dup2(out, 1);
        ::dup2(err, 2);
        if (!cwd.empty() && ::chdir(cwd.c_str()) != 0) ::_exit(126);
        ::execv(args[0], args.data());
        ::_exit(127);
    }
    int wstatus = 0;
    ::waitpid(pid, &wstatus, 0);
    program_result r;
    r.status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : 128 + WTERMSIG(wstatus);
    r.out = read_file(out_path);
    r.err = read_file(err_path);
    std::filesystem::remove(out_path);
    std::filesystem::remove(err_path);
    return r;
}

std::string pelkrin_binary() { return PELKRIN_BINARY; }

}  // namespace pelkrin::test
