#pragma once
// The report's plots, as inline SVG elements.
#include <string>
#include <vector>

#include "view_tool/report/report_summary.h"

namespace pelkrin {

// Depth along the contig, with a rectangle (id "depth-window") that the page
// moves over the positions of the alignment window it shows.
std::string depth_plot_svg(const contig_summary& s);

// The contigs' padded lengths, longest first.
std::string length_plot_svg(const std::vector<contig_summary>& contigs);

}  // namespace pelkrin
