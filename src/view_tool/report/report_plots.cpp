#include "view_tool/report/report_plots.h"

#include <algorithm>

#include "view_tool/report/decimal_text.h"

namespace pelkrin {
namespace {

constexpr int plot_width = 1000;
constexpr int plot_height = 160;
constexpr int left_margin = 60;
constexpr int bottom_margin = 24;
constexpr int top_margin = 8;

std::string whole(int64_t v) { return std::to_string(v); }

// The frame of a plot: axes, the largest value on the y axis and the first
// and last x labels.
std::string open_plot(const std::string& id, const std::string& label, int64_t y_max, const std::string& x_first,
                      const std::string& x_last) {
    const int inner_bottom = plot_height - bottom_margin;
    std::string out = std::string("<svg class=\"plot\" id=\"").append(id).append("\" viewBox=\"0 0 ");
    out.append(whole(plot_width + left_margin + 10)).append(" ").append(whole(plot_height));
    out.append("\" role=\"img\" aria-label=\"").append(label).append("\">\n");
    out.append("<line class=\"axis\" x1=\"").append(whole(left_margin)).append("\" y1=\"").append(whole(top_margin));
    out.append("\" x2=\"").append(whole(left_margin)).append("\" y2=\"").append(whole(inner_bottom)).append("\"/>\n");
    out.append("<line class=\"axis\" x1=\"").append(whole(left_margin)).append("\" y1=\"").append(whole(inner_bottom));
    out.append("\" x2=\"").append(whole(left_margin + plot_width)).append("\" y2=\"").append(whole(inner_bottom));
    out.append("\"/>\n");
    out.append("<text x=\"").append(whole(left_margin - 6)).append("\" y=\"").append(whole(top_margin + 10));
    out.append("\" text-anchor=\"end\">").append(whole(y_max)).append("</text>\n");
    out.append("<text x=\"").append(whole(left_margin - 6)).append("\" y=\"").append(whole(inner_bottom));
    out.append("\" text-anchor=\"end\">0</text>\n");
    out.append("<text x=\"").append(whole(left_margin)).append("\" y=\"").append(whole(plot_height - 6));
    out.append("\">").append(x_first).append("</text>\n");
    out.append("<text x=\"").append(whole(left_margin + plot_width)).append("\" y=\"").append(whole(plot_height - 6));
    out.append("\" text-anchor=\"end\">").append(x_last).append("</text>\n");
    return out;
}

// A filled step outline of `values`, one step per value, over the plot's width;
// a run of equal values is one step.
std::string step_area(const std::vector<int64_t>& values, int64_t y_max, const std::string& css_class) {
    const double inner = plot_height - bottom_margin - top_margin;
    const double bottom = plot_height - bottom_margin;
    const double step = static_cast<double>(plot_width) / static_cast<double>(std::max<std::size_t>(values.size(), 1));
    std::string out = std::string("<path class=\"").append(css_class).append("\" d=\"M");
    out.append(whole(left_margin)).append(" ");
    append_fixed1(out, bottom);
    for (std::size_t i = 0; i < values.size();) {
        std::size_t j = i + 1;
        while (j < values.size() && values[j] == values[i]) ++j;
        const double y = bottom - (y_max > 0 ? inner * static_cast<double>(values[i]) / static_cast<double>(y_max) : 0);
        out.push_back('L');
        append_fixed1(out, left_margin + step * static_cast<double>(i));
        out.push_back(' ');
        append_fixed1(out, y);
        out.push_back('L');
        append_fixed1(out, left_margin + step * static_cast<double>(j));
        out.push_back(' ');
        append_fixed1(out, y);
        i = j;
    }
    out.append("L").append(whole(left_margin + plot_width)).append(" ");
    append_fixed1(out, bottom);
    out.append("Z\"/>\n");
    return out;
}

}  // namespace

std::string depth_plot_svg(const contig_summary& s) {
    std::string out = open_plot("depth-plot", "Read depth along the contig", s.max_depth, "1", whole(s.length));
    const std::vector<int64_t> values(s.depth_bins.begin(), s.depth_bins.end());
    out.append(step_area(values, s.max_depth, "depth"));
    out.append("<rect id=\"depth-window\" x=\"").append(whole(left_margin)).append("\" y=\"").append(whole(top_margin));
    out.append("\" width=\"0\" height=\"").append(whole(plot_height - bottom_margin - top_margin));
    out.append("\" data-left=\"").append(whole(left_margin)).append("\" data-width=\"").append(whole(plot_width));
    out.append("\"/>\n</svg>\n");
    return out;
}

std::string length_plot_svg(const std::vector<contig_summary>& contigs) {
    std::vector<int64_t> lengths;
    lengths.reserve(contigs.size());
    for (const contig_summary& s : contigs) lengths.push_back(s.length);
    std::sort(lengths.begin(), lengths.end(), std::greater<>());
    const int64_t longest = lengths.empty() ? 0 : lengths.front();
    std::string out = open_plot("length-plot", "Padded contig lengths, longest first", longest, "longest",
                                std::string("shortest (").append(whole(static_cast<int64_t>(lengths.size()))).append(" contigs)"));
    out.append(step_area(lengths, longest, "lengths"));
    out.append("</svg>\n");
    return out;
}

}  // namespace pelkrin
