// Fuzz targets of the two readers, on the bytes in memory, and of the whole run.
#include <cstring>
#include <span>
#include <string_view>

#include "ace/ace_reader.h"
#include "driver/run.h"
#include "fuzz_support.h"
#include "fuzz_targets.h"
#include "sff/reader.h"

namespace pelkrin::fuzz {

void ace_reader(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    run_guarded([&] {
        aceReader reader("in.ace", text, quiet());
        while (true) {
            contig c;
            if (!reader.next_contig(c)) break;
        }
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
