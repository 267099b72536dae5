#include "reads_format/output_names.h"

namespace pelkrin {

std::string output_prefix(const std::string& ace_file) {
    std::size_t p = ace_file.find_last_of(".ace");
    if (p == std::string::npos) p = ace_file.find_last_of(".ACE");
    if (p == std::string::npos) return ace_file;
    // Unsigned on purpose: a hit at 0, 1 or 2 wraps and keeps the whole name.
    return ace_file.substr(0, p - 3);
}

std::string reads_file_name(const std::string& prefix) { return prefix + ".reads"; }
std::string index_file_name(const std::string& prefix) { return prefix + ".qdx"; }

}  // namespace pelkrin
