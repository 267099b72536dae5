#pragma once
// One assembled contig: what the ACE reader fills, plus the structures that
// the view operations derive from it on first use.
#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "read_record.h"
#include "../views/colour_map.h"
#include "../views/f_read.h"

namespace pelkrin {

struct contig {
    std::string name;
    int32_t base_num = 0;
    int32_t read_num = 0;
    int32_t seg_num = 0;
    int16_t max_read_len = 0;
    int16_t min_read_len = 5000;
    double avg_read_len = 0.0;
    std::vector<char> consensus;  // padded, exactly as in the file
    // The reader only ever sets this to 1, so it keeps whatever it held for a
    // complemented contig; start it at 0.
    int32_t uncomplemented = 0;
    std::map<std::string, READ> reads;

    // Derived on demand by the view operations.
    std::multimap<int32_t, std::string> pos_map;
    std::vector<std::map<int32_t, std::string>> print_map;
    std::vector<std::map<char, int32_t>> flow_index_map;
    std::vector<char> flow_consensus;

    friend bool operator==(const contig&, const contig&) = default;

    // Position maps and display rows (src/views/pos_maps.cpp). The first
    // also sets the largest, smallest and mean read length, as
    // measure_reads() does alone.
    void create_pos_map();
    void measure_reads();
    void create_print_map();
    void get_read_ids(std::vector<std::string>& ids);

    // Flow index of the first / last flow recorded at 0-based position p, or
    // at the nearest position before it that has any (src/views/flow_index.cpp).
    int32_t getFlowIdx_start(int32_t p) const;
    int32_t getFlowIdx_end(int32_t p) const;

    // The consensus in flow space (src/views/flow_consensus.cpp).
    void create_flow_concensus();

    // Span tables for a viewer (src/views/align_flow.cpp, align_seq.cpp).
    // Both throw std::length_error when the span's column count is negative.
    void align_flow(std::vector<std::vector<int16_t>>& flows, std::vector<std::map<int32_t, fRead>>& rows,
                    int32_t start, int32_t width);
    void align_seq(std::vector<std::vector<char>>& columns, std::vector<std::map<int32_t, std::string>>& rows,
                   int32_t start, int32_t width);

    // Renderings. Span renderers append to `out` and to `read_list`.
    static void toHTML(std::string& out, const std::vector<char>& chars, const colour_map& colours);
    void print_align_map_plain(std::string& out, std::vector<std::string>& read_list, int32_t start, int32_t width);
    void print_align_map_html(std::string& out, std::vector<std::string>& read_list, const colour_map& colours,
                              int32_t start, int32_t width);
    void print_align_map_html(std::ostream& out, const colour_map& colours);
    void print_align_map(std::ostream& out);
    void print_flow_map_plain(std::string& out, std::vector<std::string>& read_list, int32_t start, int32_t width);
    // The two HTML flow renderers add a letter that has no colour to `colours`.
    void print_flow_map_html(std::string& out, std::vector<std::string>& read_list, colour_map& colours,
                             int32_t start, int32_t width);
    void print_flow_map_html_space(std::string& out, std::vector<std::string>& read_list, colour_map& colours,
                                   int32_t start, int32_t width);
};

}  // namespace pelkrin
