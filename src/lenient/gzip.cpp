#include "lenient/gzip.h"

#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <iostream>
#include <limits>

#include "common/fatal_error.h"
#include "common/progress.h"
#include "lenient/file_label.h"

namespace pelkrin {
namespace {

[[noreturn]] void damaged(const std::string& name, std::uint64_t at, const std::string& what) {
    throw fatal_error(1, std::string(name).append(": byte ").append(std::to_string(at))
                             .append(" of the gzip data: ").append(what).append("\n"));
}

std::uint64_t memory_for_inflating() {
    const long pages = ::sysconf(_SC_PHYS_PAGES);
    const long page_size = ::sysconf(_SC_PAGESIZE);
    if (pages <= 0 || page_size <= 0) return std::uint64_t{1} << 32;
    return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(page_size) / 2;
}

}  // namespace

bool is_gzip(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= 2 && bytes[0] == 0x1f && bytes[1] == 0x8b;
}

std::vector<std::uint8_t> gunzip(std::span<const std::uint8_t> bytes, const std::string& file, std::ostream* err,
                                 std::string_view program) {
    const std::string name = file_label(program, file);
    std::vector<std::uint8_t> out;
    // A guess at the inflated size; the vector grows from there.
    out.reserve(std::min<std::size_t>(bytes.size() * 4, std::size_t{1} << 30));
    progress shown(*(err != nullptr ? err : &std::cerr), file_label(program, "inflating " + file), bytes.size(),
                   err != nullptr && progress::shown_for(bytes.size()));

    z_stream z{};
    if (inflateInit2(&z, 15 + 16) != Z_OK) damaged(name, 0, "zlib cannot start");
    std::size_t in_at = 0;
    constexpr std::size_t chunk = std::size_t{1} << 20;
    constexpr std::size_t most_in = std::numeric_limits<uInt>::max();
    // The inflated bytes are held in memory: a file that inflates past half of
    // the machine's memory (a damaged or hostile one, or one too large for
    // this machine) is refused before it takes the rest.
    const std::uint64_t most_out = memory_for_inflating();
    try {
        while (true) {
            z.next_in = const_cast<Bytef*>(bytes.data() + in_at);
            z.avail_in = static_cast<uInt>(std::min(bytes.size() - in_at, most_in));
            const std::size_t used = out.size();
            if (used + chunk > most_out)
                damaged(name, in_at, std::string("it inflates to more than ").append(std::to_string(most_out))
                                         .append(" bytes, half of this machine's memory"));
            out.resize(used + chunk);
            z.next_out = out.data() + used;
            z.avail_out = static_cast<uInt>(chunk);
            const int rc = inflate(&z, Z_NO_FLUSH);
            const std::size_t took = static_cast<std::size_t>(z.next_in - (bytes.data() + in_at));
            in_at += took;
            out.resize(used + (chunk - z.avail_out));
            shown.at(in_at);
            if (rc == Z_STREAM_END) {
                // Another member may follow; anything else after the data is refused.
                if (in_at == bytes.size()) break;
                if (!is_gzip(bytes.subspan(in_at))) damaged(name, in_at, "data after the end of the compressed stream");
                inflateReset(&z);
                continue;
            }
            if (rc == Z_BUF_ERROR && in_at == bytes.size()) damaged(name, in_at, "the compressed data ends early");
            if (rc != Z_OK && rc != Z_BUF_ERROR) damaged(name, in_at, z.msg != nullptr ? z.msg : "damaged data");
            if (took == 0 && z.avail_out == chunk && in_at == bytes.size())
                damaged(name, in_at, "the compressed data ends early");
        }
    } catch (...) {
        inflateEnd(&z);
        throw;
    }
    inflateEnd(&z);
    shown.finish();
    return out;
}

}  // namespace pelkrin
