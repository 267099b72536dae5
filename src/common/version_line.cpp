#include "common/version_line.h"

#include "pelkrin_version.h"  // VERSION

namespace pelkrin {

std::string version_line(std::string_view program) {
    return std::string(program).append(" (Pelkrin) ").append(VERSION).append("\n");
}

}  // namespace pelkrin
