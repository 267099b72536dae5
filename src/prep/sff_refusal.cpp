#include "prep/sff_refusal.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "sff/sff_header.h"

namespace pelkrin::prep {
namespace {

// What a file that is no regular file is, for the reason.
std::string kind_of(int descriptor) {
    struct stat st {};
    if (descriptor < 0 || ::fstat(descriptor, &st) != 0) return "not a regular file";
    if (S_ISDIR(st.st_mode)) return "not a regular file: a directory";
    if (S_ISFIFO(st.st_mode)) return "not a regular file: a pipe or FIFO";
    if (S_ISCHR(st.st_mode) || S_ISBLK(st.st_mode)) return "not a regular file: a device";
    if (S_ISSOCK(st.st_mode)) return "not a regular file: a socket";
    return "not a regular file";
}

}  // namespace

sff_refusal refusal_on_opening(const std::string& name, const input_file& file) {
    // Pelkrin opens the file as input_file does, and goes on with any file the
    // system opens; only then does it ask for a regular file.
    if (!file.is_open())
        return {"fail to open file " + name,
                "it cannot be opened: " + std::string(std::strerror(file.error() != 0 ? file.error() : ENOENT))};
    if (!file.regular()) return {"Error: the SFF file " + name + " is not a regular file", kind_of(file.descriptor())};
    return {};
}

sff_refusal refusal_of_contents(const std::string& name, std::uint64_t size, std::span<const std::uint8_t> first) {
    if (size < sff_header_p1::size)
        return {"Error ocurred while reading file " + name,
                "too short for an SFF header: " + std::to_string(size) + " of its 31 bytes"};
    const bool magic = first.size() >= 4 && (std::memcmp(first.data(), ".sff", 4) == 0 ||
                                             std::memcmp(first.data(), "ffs.", 4) == 0);
    if (magic) return {};
    const bool gzip = first.size() >= 2 && first[0] == 0x1f && first[1] == 0x8b;
    return {"The input file " + name + " is not a SFF file",
            gzip ? "not an SFF file but gzip data, which Pelkrin-prep sff inflates" : "not an SFF file"};
}

}  // namespace pelkrin::prep
