#include "common/staged_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "common/fatal_error.h"
#include "common/temporary_files.h"

namespace pelkrin {
namespace {

std::string folder_of(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

[[noreturn]] void cannot(const std::string& program, const char* what, const std::string& path, int error) {
    throw fatal_error(1, program + ": can not " + what + " " + path + ": " + std::strerror(error) + "\n");
}

}  // namespace

staged_files::~staged_files() { discard(); }

std::string staged_files::stage(const std::string& final_path, const std::string& program) {
    const auto slash = final_path.rfind('/');
    const std::string leaf = slash == std::string::npos ? final_path : final_path.substr(slash + 1);
    std::string temporary = folder_of(final_path) + "/." + leaf + ".XXXXXX";
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) cannot(program, "create file", final_path, errno);
    // The mode a new file would get.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd, 0666 & ~mask);
    ::close(fd);
    register_temporary_file(temporary);
    files_.push_back(staged{temporary, final_path});
    return temporary;
}

void staged_files::put_in_place(const std::string& program) {
    while (!files_.empty()) {
        const staged f = files_.front();
        if (std::rename(f.temporary.c_str(), f.final_path.c_str()) != 0) {
            const int error = errno;
            discard();
            cannot(program, "write file", f.final_path, error);
        }
        unregister_temporary_file(f.temporary);
        files_.erase(files_.begin());
    }
}

void staged_files::discard() {
    for (const staged& f : files_) {
        ::unlink(f.temporary.c_str());
        unregister_temporary_file(f.temporary);
    }
    files_.clear();
}

}  // namespace pelkrin
