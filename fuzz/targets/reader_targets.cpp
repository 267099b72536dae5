// Fuzz targets of the two readers, on the bytes in memory, and of the whole run.
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "ace/ace_reader.h"
#include "driver/run.h"
#include "fuzz_support.h"
#include "fuzz_targets.h"
#include "sff/reader.h"

namespace pelkrin::fuzz {

namespace {

// The contigs' names and their reads' names as one reading gives them, with
// how it ended: the end, or the message it stopped with.
std::string names_read(std::string_view text, bool names_only) {
    std::string seen;
    const int status = run_guarded([&] {
        aceReader reader("in.ace", text, quiet());
        while (true) {
            if (names_only) {
                contig_names c;
                if (!reader.next_contig_names(c)) break;
                seen.append(c.name).append("\n");
                for (std::size_t i = 0; i < c.reads(); ++i) seen.append(" ").append(c.read_name(i)).append("\n");
            } else {
                contig c;
                if (!reader.next_contig(c)) break;
                seen.append(c.name).append("\n");
                for (const auto& entry : c.reads) seen.append(" ").append(entry.first).append("\n");
            }
        }
        seen.append(reader.ended_inside_contig() ? "cut " + reader.unfinished_contig() : "end");
    });
    return seen + std::to_string(status);
}

}  // namespace

void ace_reader(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    // Reading names only gives what the whole reading gives.
    if (names_read(text, true) != names_read(text, false)) std::abort();
    run_guarded([&] {
        std::vector<contig> some;
        aceReader again("in.ace", text, quiet());
        again.next_contig(some, 3);
    });
}

void sff_reader(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    run_guarded([&] {
        reader r("in.sff", bytes, quiet());
        r.get_header();
        read_index index;
        r.build_read_index(index);
        std::size_t decoded = 0;
        for (const auto& entry : index) {
            seqRead s;
            const sff_read& record = r.get_read(entry.second, s);
            // The run-length view costs as much as the record holds: a few suffice.
            if (decoded++ < 4) {
                std::vector<std::int16_t> flows, counts;
                record.map_flow_num(flows, counts);
            }
        }
        reader walker("in.sff", bytes, quiet());
        walker.get_header();
        read_index walked;
        while (walker.get_next_read(walked) == 1) {
        }
    });
}

void whole_run(const std::uint8_t* data, std::size_t size) {
    std::uint32_t ace_length = 0;
    if (size >= 4) std::memcpy(&ace_length, data, 4);
    const std::size_t rest = size >= 4 ? size - 4 : 0;
    const std::size_t ace_size = rest == 0 ? 0 : ace_length % (rest + 1);
    const std::string ace = scratch_path("run.ace");
    const std::string sff = scratch_path("run.sff");
    write_bytes(ace, data + (size >= 4 ? 4 : 0), ace_size);
    write_bytes(sff, data + (size >= 4 ? 4 : 0) + ace_size, rest - ace_size);
    for (bool flowgram : {false, true}) {
        run_guarded([&] {
            run(run_request{flowgram, ace, sff, scratch_path("run.reads"), scratch_path("run.qdx")}, quiet());
        });
    }
}

}  // namespace pelkrin::fuzz
