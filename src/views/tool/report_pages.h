#pragma once
// The report's HTML pages. Every name from the files is escaped; the pages
// load the shared style and script files and the contig's data file, all in
// the same folder, so the folder works offline as it is.
#include <cstddef>
#include <string>
#include <vector>

#include "views/tool/report_summary.h"

namespace pelkrin {

// "contig-N" for the N-th contig of the file (from 1): the name of its page
// (.html), its data (.js) and its flowgram files (-flowgrams-K.js).
std::string contig_file_stem(std::size_t ordinal);

// Every contig with its padded length, reads and mean depth, sortable by each
// column, under a plot of the lengths.
std::string index_page(const std::vector<contig_summary>& contigs, const std::string& ace_file);

// One contig: its depth plot and the window over its alignment.
std::string contig_page(const contig_summary& s, std::size_t ordinal, std::size_t count, const std::string& ace_file);

}  // namespace pelkrin
