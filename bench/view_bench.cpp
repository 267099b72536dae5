// Time per span of the contig views, on two contigs built in memory with the
// same read density: 20,000 positions with 5,000 reads, and 80,000 positions
// with 20,000 reads. Every span of width 100 across each contig is cut or
// rendered in each span mode. A span visits only the reads of its window, so
// the time per span should not grow with the contig's length.
//
//   view_bench [SEED]
#include "random_source.h"
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "ace/contig.h"

namespace {

using pelkrin::colour_map;
using pelkrin::contig;

// Reads of 350 to 450 bases copied from the consensus with a few 'N's; some
// start left of the consensus and some run past its end, as in real assemblies.
contig make_contig(int32_t positions, int32_t read_count, random_source& random) {
    static const char bases[] = "ACGT";
    contig c;
    c.name = "bench" + std::to_string(positions);
    c.base_num = positions;
    c.read_num = read_count;
    for (int32_t i = 0; i < positions; ++i) c.consensus.push_back(random.below(50) == 0 ? '*' : bases[random.below(4)]);
    for (int32_t r = 0; r < read_count; ++r) {
        pelkrin::READ read;
        read.name = "read" + std::to_string(r);
        read.len = static_cast<int16_t>(random.between(350, 450));
        read.pos = random.between(-100, positions - read.len + 100);
        for (int32_t k = 0; k < read.len; ++k) {
            const int32_t q = read.pos + k;  // 1-based consensus position
            char ch = (q >= 1 && q <= positions) ? c.consensus[static_cast<std::size_t>(q - 1)] : bases[random.below(4)];
            if (random.below(200) == 0) ch = 'N';
            read.seq.push_back(ch);
        }
        read.uncomplemented = 1;
        read.align_start = 1;
        read.align_end = read.len;
        c.reads[read.name] = read;
    }
    return c;
}

double seconds_since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct span_mode {
    const char* name;
    std::function<std::size_t(contig&, int32_t start, int32_t width)> run;  // returns a size, kept as a checksum
};

std::vector<span_mode> span_modes() {
    return {
        {"flow-table (align_flow)",
         [](contig& c, int32_t s, int32_t w) {
             std::vector<std::vector<int16_t>> flows;
             std::vector<std::map<int32_t, pelkrin::fRead>> rows;
             c.align_flow(flows, rows, s, w);
             return flows.size() + rows.size();
         }},
        {"seq-table (align_seq)",
         [](contig& c, int32_t s, int32_t w) {
             std::vector<std::vector<char>> columns;
             std::vector<std::map<int32_t, std::string>> rows;
             c.align_seq(columns, rows, s, w);
             return columns.size() + rows.size();
         }},
        {"align (plain)",
         [](contig& c, int32_t s, int32_t w) {
             std::string out;
             std::vector<std::string> reads;
             c.print_align_map_plain(out, reads, s, w);
             return out.size();
         }},
        {"align-html",
         [](contig& c, int32_t s, int32_t w) {
             static const colour_map colours = {{'A', "green"}, {'C', "blue"}, {'G', "orange"}, {'T', "red"}};
             std::string out;
             std::vector<std::string> reads;
             c.print_align_map_html(out, reads, colours, s, w);
             return out.size();
         }},
        {"flow (plain)",
         [](contig& c, int32_t s, int32_t w) {
             std::string out;
             std::vector<std::string> reads;
             c.print_flow_map_plain(out, reads, s, w);
             return out.size();
         }},
        {"flow-html",
         [](contig& c, int32_t s, int32_t w) {
             colour_map colours = {{'A', "green"}, {'C', "blue"}, {'G', "orange"}, {'T', "red"}};
             std::string out;
             std::vector<std::string> reads;
             c.print_flow_map_html(out, reads, colours, s, w);
             return out.size();
         }},
        {"flow-html-space",
         [](contig& c, int32_t s, int32_t w) {
             colour_map colours = {{'A', "green"}, {'C', "blue"}, {'G', "orange"}, {'T', "red"}};
             std::string out;
             std::vector<std::string> reads;
             c.print_flow_map_html_space(out, reads, colours, s, w);
             return out.size();
         }},
    };
}

struct contig_result {
    int32_t positions = 0;
    std::size_t rows = 0;
    double setup_seconds = 0;
    std::vector<double> micros_per_span;
};

contig_result measure(int32_t positions, int32_t read_count, std::uint64_t seed, std::size_t& checksum) {
    random_source random(seed);
    contig c = make_contig(positions, read_count, random);
    contig_result result;
    result.positions = positions;

    // The lazily built layout and flow consensus, once per contig.
    const auto setup = std::chrono::steady_clock::now();
    c.create_print_map();
    c.create_flow_concensus();
    result.setup_seconds = seconds_since(setup);
    result.rows = c.print_map.size();

    // Passes over all spans are repeated for at least half a second, and the
    // fastest pass counts: the machine may be busy with other work.
    constexpr int32_t width = 100;
    for (const span_mode& mode : span_modes()) {
        double best = 1e30;
        double total = 0;
        for (int pass = 0; pass < 3 || total < 0.5; ++pass) {
            const auto start = std::chrono::steady_clock::now();
            int32_t spans = 0;
            for (int32_t s = 1; s + width - 1 <= positions; s += width, ++spans) checksum += mode.run(c, s, width);
            const double seconds = seconds_since(start);
            total += seconds;
            best = std::min(best, seconds * 1e6 / spans);
        }
        result.micros_per_span.push_back(best);
    }
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    const std::uint64_t seed = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 7;
    std::size_t checksum = 0;
    const contig_result small = measure(20000, 5000, seed, checksum);
    const contig_result large = measure(80000, 20000, seed + 1, checksum);

    std::printf("Spans of width 100, every one across the contig; reads of 350 to 450 bases, 100-fold cover;\n"
                "fastest of repeated passes.\n");
    std::printf("%-26s %14s %14s %8s\n", "", "20,000 pos.", "80,000 pos.", "ratio");
    std::printf("%-26s %14zu %14zu\n", "display rows", small.rows, large.rows);
    std::printf("%-26s %11.1f ms %11.1f ms\n", "layout + flow consensus", small.setup_seconds * 1e3,
                large.setup_seconds * 1e3);
    const std::vector<span_mode> modes = span_modes();
    for (std::size_t m = 0; m < modes.size(); ++m) {
        std::printf("%-26s %9.1f us/span %6.1f us/span %5.2f\n", modes[m].name, small.micros_per_span[m],
                    large.micros_per_span[m], large.micros_per_span[m] / small.micros_per_span[m]);
    }
    std::printf("(checksum %zu)\n", checksum);
    return 0;
}
