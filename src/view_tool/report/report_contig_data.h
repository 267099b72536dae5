#pragma once
// A contig's alignment as data for the report page's script: the padded
// consensus, the consensus in flow space with the first and last flow of
// every position, and the reads with their padded bases, places, alignment
// clip ranges and directions. The page packs and draws one window at a time.
#include <string>
#include <vector>

#include "ace/contig.h"
#include "views/colour_map.h"

namespace pelkrin {

// The place of a read whose entry in the reads file is not its own: the SFF
// file does not hold it (see read_bases_check.h).
inline constexpr int not_in_sff_file = -2;

struct flowgram_places {
    // For every read of the contig, in name order: the file of flowgrams
    // (from 0) that holds it, -1 when the reads file has none for it, or
    // not_in_sff_file.
    std::vector<int> file_of_read;
    int files = 0;
    std::string note;  // why no flowgrams are shown, when none are
};

// Appends the text of the script file, one call of pelkrinContig({...}), to
// `out`: a caller that writes many contigs keeps one buffer for them all.
void append_contig_data_js(std::string& out, const contig& c, const colour_map& colours, const flowgram_places& places);

// The text of the script file on its own.
std::string contig_data_js(const contig& c, const colour_map& colours, const flowgram_places& places);

}  // namespace pelkrin
