#pragma once
// The flowgrams of a contig's reads, taken from its block of the reads file
// that Pelkrin wrote with -f, as script files for the report page: each file
// holds up to `reads_per_file` reads, neighbours by their starts, so that the
// page loads only the files of the reads it draws or opens.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ace/contig.h"
#include "reads_format/qdx_index.h"
#include "view_tool/report/report_contig_data.h"

namespace pelkrin {

struct contig_flowgrams {
    flowgram_places places;
    std::vector<std::string> files;  // the text of each script file
};

// `block` is the reads file from the contig's offset on (it may run into the
// next contig's block, where reading stops). Script file n (from 0) calls
// pelkrinFlowgrams(n, [[name, qualities, flow indexes, flowgram values], ...]),
// each list a text of comma-separated numbers.
contig_flowgrams contig_flowgram_files(const contig& c, std::string_view block, const qdx_entry& entry,
                                       std::size_t reads_per_file);

// No flowgrams, and the reason the page gives for it.
contig_flowgrams no_flowgrams(const contig& c, std::string note);

}  // namespace pelkrin
