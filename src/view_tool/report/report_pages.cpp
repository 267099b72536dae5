#include "view_tool/report/report_pages.h"

#include <cstdint>

#include "view_tool/report/decimal_text.h"
#include "view_tool/html_page.h"
#include "view_tool/report/report_plots.h"

namespace pelkrin {
namespace {

std::string fixed1(double v) {
    std::string text;
    append_fixed1(text, v);
    return text;
}

std::string page_head(const std::string& title) {
    return std::string(
               "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
               "<meta name=\"viewport\" content=\"width=device-width\">\n<title>")
        .append(title)
        .append("</title>\n<link rel=\"stylesheet\" href=\"pelkrin-report.css\">\n</head>\n");
}

// "1 contig", "3 contigs".
std::string counted(int64_t n, const char* one, const char* many) {
    return std::to_string(n).append(" ").append(n == 1 ? one : many);
}

}  // namespace

std::string contig_file_stem(std::size_t ordinal) { return std::string("contig-").append(std::to_string(ordinal)); }

std::string index_page(const std::vector<contig_summary>& contigs, const std::string& ace_file,
                       const flowgram_state& flowgrams) {
    const std::string file = html_escape(ace_file);
    std::string out = page_head(std::string("Contigs of ").append(file));
    out.append("<body class=\"index\">\n<h1>Contigs of ").append(file).append("</h1>\n");
    const assembly_totals totals = total_up(contigs);
    out.append("<p class=\"facts\" id=\"totals\">").append(counted(totals.contigs, "contig", "contigs"));
    out.append(", ").append(counted(totals.reads, "read", "reads"));
    out.append("; total length ").append(counted(totals.length, "base", "bases"));
    out.append(", N50 ").append(counted(totals.n50, "base", "bases")).append(" (pads not counted).</p>\n");
    out.append("<p class=\"facts\" id=\"flowgram-state\">");
    if (flowgrams.reads_file.empty()) {
        out.append(html_escape(flowgrams.note));
    } else {
        out.append("Flowgrams: from ").append(html_escape(flowgrams.reads_file));
        out.append("; click a read on a contig's page to see its flowgram.");
    }
    out.append("</p>\n");
    out.append("<h2>Padded lengths</h2>\n").append(length_plot_svg(contigs));
    out.append(
        "<h2>Contigs</h2>\n<p class=\"hint\">Click a column's heading to sort by it; click again to reverse.</p>\n"
        "<table id=\"contigs\">\n<thead><tr>"
        "<th data-sort=\"text\">Contig</th><th data-sort=\"number\">Padded length</th>"
        "<th data-sort=\"number\">Reads</th><th data-sort=\"number\">Mean depth</th>"
        "</tr></thead>\n<tbody>\n");
    for (std::size_t i = 0; i < contigs.size(); ++i) {
        const contig_summary& s = contigs[i];
        // Rows keep their file order as the first sort key's tie-break.
        out.append("<tr data-order=\"").append(std::to_string(i)).append("\"><td><a href=\"");
        out.append(contig_file_stem(i + 1)).append(".html\">").append(html_escape(s.name)).append("</a></td><td>");
        out.append(std::to_string(s.length)).append("</td><td>").append(std::to_string(s.reads)).append("</td><td>");
        out.append(fixed1(s.mean_depth)).append("</td></tr>\n");
    }
    out.append("</tbody>\n</table>\n<script src=\"pelkrin-report.js\"></script>\n</body>\n</html>\n");
    return out;
}

void append_contig_page(std::string& out, const contig_summary& s, std::size_t ordinal, bool last,
                        const std::string& ace_file, const contig_scripts& scripts) {
    const std::string name = html_escape(s.name);
    out.append(page_head(std::string("Contig ").append(name).append(" of ").append(html_escape(ace_file))));
    out.append("<body class=\"contig\">\n<nav><a href=\"index.html\">All contigs</a>");
    if (ordinal > 1) out.append(" · <a href=\"").append(contig_file_stem(ordinal - 1)).append(".html\">previous</a>");
    if (!last) out.append(" · <a href=\"").append(contig_file_stem(ordinal + 1)).append(".html\">next</a>");
    out.append("</nav>\n<h1>Contig <span id=\"contig-name\">").append(name).append("</span></h1>\n");
    out.append("<p class=\"facts\">").append(std::to_string(s.length)).append(" padded positions, ");
    out.append(std::to_string(s.reads)).append(" reads, mean depth ").append(fixed1(s.mean_depth));
    out.append(", largest depth ").append(std::to_string(s.max_depth)).append(".</p>\n");
    out.append("<h2>Depth</h2>\n").append(depth_plot_svg(s));
    out.append(
        "<h2>Alignment</h2>\n"
        "<div class=\"controls\" id=\"controls\">\n"
        "<button id=\"go-first\" title=\"first position (Home)\">|&lt;</button>"
        "<button id=\"go-page-back\" title=\"one window back (Page Up)\">&lt;&lt;</button>"
        "<button id=\"go-back\" title=\"ten positions back (left arrow)\">&lt;</button>"
        "<input id=\"slider\" type=\"range\" min=\"1\" max=\"1\" value=\"1\" aria-label=\"window start\">"
        "<button id=\"go-on\" title=\"ten positions on (right arrow)\">&gt;</button>"
        "<button id=\"go-page-on\" title=\"one window on (Page Down)\">&gt;&gt;</button>"
        "<button id=\"go-last\" title=\"last window (End)\">&gt;|</button>\n"
        "<label>from <input id=\"start\" type=\"number\" value=\"1\"></label> "
        "<label>width <input id=\"width\" type=\"number\" min=\"10\" max=\"1000\" value=\"120\"></label> "
        "<label><input id=\"dots\" type=\"checkbox\"> dots for bases equal to the consensus</label> "
        "<span id=\"span-text\"></span>\n</div>\n"
        "<p class=\"facts\" id=\"cover-text\"></p>\n"
        "<p class=\"hint\">Every read that reaches into the window is drawn, packed into rows. Bases equal to the "
        "consensus are muted, other bases and pads coloured, the ends of a read outside its aligned part grey; with "
        "flowgrams, a darker background marks a lower quality score. Click a read, in the alignment or in the list "
        "below it, to see its flowgram.</p>\n"
        "<h3>Base space</h3>\n<div class=\"pane\"><pre class=\"names\" id=\"base-names\"></pre>"
        "<pre class=\"view\" id=\"base-view\"></pre></div>\n"
        "<h3>Flow space</h3>\n<p class=\"hint\">The consensus flows, under the positions; under each flow a read "
        "shows how many bases of the flow's letter it carries: 0 to 9, then A for 10. Click a column to see the flow "
        "signals of every read at that flow.</p>\n"
        "<div class=\"pane\"><pre class=\"names\" id=\"flow-names\"></pre>"
        "<pre class=\"view\" id=\"flow-view\"></pre></div>\n"
        "<section id=\"column\" hidden>\n<h3>Flow signals at <span id=\"column-name\"></span> "
        "<button id=\"column-close\" title=\"close\">&times;</button></h3>\n"
        "<p id=\"column-facts\"></p>\n<div id=\"column-plot\"></div>\n<table id=\"column-counts\"></table>\n"
        "</section>\n"
        "<h3>Reads in the window</h3>\n<ol id=\"read-list\"></ol>\n"
        "<section id=\"flowgram\" hidden>\n<h2>Flowgram of <span id=\"flowgram-name\"></span></h2>\n"
        "<p id=\"flowgram-place\"></p>\n<p id=\"flowgram-facts\"></p>\n<div id=\"flowgram-plot\"></div>\n"
        "<p class=\"bases\">Bases: <code id=\"flowgram-bases\"></code></p>\n"
        "<p class=\"bases\">Qualities: <code id=\"flowgram-qualities\"></code></p>\n</section>\n"
        "<p id=\"flowgram-note\" class=\"hint\"></p>\n");
    const std::string stem = contig_file_stem(ordinal);
    out.append("<script>var pelkrinDataStem = \"").append(stem).append("\";</script>\n");
    out.append("<script src=\"pelkrin-report.js\"></script>\n");
    // The scripts' names are JSON text with '<' escaped: none can end the element.
    for (const std::string& flowgrams : scripts.flowgrams) out.append("<script>").append(flowgrams).append("</script>\n");
    if (scripts.alignment.empty()) {
        out.append("<script src=\"").append(stem).append(".js\"></script>\n");
    } else {
        out.append("<script>").append(scripts.alignment).append("</script>\n");
    }
    out.append("</body>\n</html>\n");
}

std::string contig_page(const contig_summary& s, std::size_t ordinal, bool last, const std::string& ace_file,
                        const contig_scripts& scripts) {
    std::string out;
    append_contig_page(out, s, ordinal, last, ace_file, scripts);
    return out;
}

}  // namespace pelkrin
