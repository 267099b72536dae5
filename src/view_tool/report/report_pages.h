#pragma once
// The report's HTML pages. Every name from the files is escaped; the pages
// load the shared style and script files and the contig's data file, all in
// the same folder, so the folder works offline as it is.
#include <cstddef>
#include <string>
#include <vector>

#include "view_tool/report/report_summary.h"

namespace pelkrin {

// "contig-N" for the N-th contig of the file (from 1): the name of its page
// (.html), its data (.js) and its flowgram files (-flowgrams-K.js).
std::string contig_file_stem(std::size_t ordinal);

// Whether the contig pages can show flowgrams: the reads file they come
// from, or else why they cannot.
struct flowgram_state {
    std::string reads_file;  // empty: no flowgrams
    std::string note;        // why there are none
};

// The assembly's totals and whether there are flowgrams, then every contig
// with its padded length, reads and mean depth, sortable by each column,
// under a plot of the lengths.
std::string index_page(const std::vector<contig_summary>& contigs, const std::string& ace_file,
                       const flowgram_state& flowgrams);

// Where a contig page finds its data: the script text of the alignment
// (pelkrinContig(...)) and of its flowgram files (pelkrinFlowgrams(...)),
// written into the page itself when they are small, or else each in its own
// file that the page loads (the alignment's at once, a flowgram file when a
// read of it is opened).
struct contig_scripts {
    std::string alignment;               // empty: in contig-N.js
    std::vector<std::string> flowgrams;  // empty: in contig-N-flowgrams-K.js, if any
};

// One contig: its depth plot and the window over its alignment. `last` tells
// that no contig follows it. The first appends the page to `out`.
void append_contig_page(std::string& out, const contig_summary& s, std::size_t ordinal, bool last,
                        const std::string& ace_file, const contig_scripts& scripts);
std::string contig_page(const contig_summary& s, std::size_t ordinal, bool last, const std::string& ace_file,
                        const contig_scripts& scripts);

}  // namespace pelkrin
