#include "common/same_file.h"

#include <sys/stat.h>

namespace pelkrin {

bool same_file(const std::string& a, const std::string& b) {
    struct stat sa {};
    struct stat sb {};
    return ::stat(a.c_str(), &sa) == 0 && ::stat(b.c_str(), &sb) == 0 && sa.st_dev == sb.st_dev &&
           sa.st_ino == sb.st_ino;
}

std::string would_overwrite(const std::string& output, const std::string& input) {
    return "Error: output file " + output + " would overwrite input file " + input;
}

}  // namespace pelkrin
