#include "view_tool/html_page.h"

namespace pelkrin {
namespace {

// Fixed-width font, no ligatures or kerning, so that every character of
// every line takes one column of the same width.
constexpr const char* style =
    "body { font-family: sans-serif; margin: 1.5em; }\n"
    "h1 { font-size: 1.3em; }\n"
    "pre.view, .legend code {\n"
    "  font-family: \"DejaVu Sans Mono\", \"Liberation Mono\", \"Courier New\", monospace;\n"
    "  font-variant-ligatures: none; font-kerning: none; letter-spacing: 0;\n"
    "}\n"
    "pre.view { font-size: 15px; line-height: 1.25; white-space: pre; overflow-x: auto; padding: 0.5em; "
    "background: #fbfbf8; border: 1px solid #ddd; }\n"
    "pre.view::first-line { font-weight: bold; }\n"
    ".legend code { font-size: 1.1em; padding: 0 0.2em; background: #fbfbf8; }\n";

void append_legend(std::string& out, const page_facts& facts, const colour_map& colours) {
    out.append("<p class=\"legend\">Colours:");
    bool first = true;
    for (const auto& [ch, colour] : colours) {
        out.append(first ? " " : ", ");
        first = false;
        out.append("<code><font color=").append(colour).append(">");
        out.append(html_escape(std::string(1, ch))).append("</font></code> ");
        out.append(colour.empty() ? "no colour" : html_escape(colour));
    }
    if (first) out.append(" none");
    out.append(".</p>\n");
    if (facts.flow_space) {
        out.append(
            "<p class=\"legend\">The first line holds the flows of the consensus in flow order; under each flow a "
            "read shows how many bases of its letter it carries, coloured as the flow's letter: 0 to 9, then A for "
            "10, B for 11 and on.</p>\n");
    } else {
        out.append("<p class=\"legend\">The first line is the padded consensus (* is a pad); the reads follow "
                   "under it, one display row a line.</p>\n");
    }
}

}  // namespace

std::string html_escape(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
            case '&': out.append("&amp;"); break;
            case '<': out.append("&lt;"); break;
            case '>': out.append("&gt;"); break;
            case '"': out.append("&quot;"); break;
            default: out.push_back(c);
        }
    }
    return out;
}

std::string html_page(const std::string& view, const page_facts& facts, const colour_map& colours) {
    const std::string heading = html_escape(facts.contig_name) + ", " + html_escape(facts.span);
    std::string out =
        "<!DOCTYPE html>\n"
        "<html lang=\"en\">\n"
        "<head>\n"
        "<meta charset=\"utf-8\">\n"
        "<title>";
    out.append(heading).append(" (").append(html_escape(facts.mode)).append(")</title>\n");
    out.append("<style>\n").append(style).append("</style>\n</head>\n<body>\n");
    out.append("<h1>").append(heading).append("</h1>\n");
    append_legend(out, facts, colours);
    // A line feed right after <pre> is dropped by the browser, so the view
    // starts on the block's first line.
    out.append("<pre class=\"view\">\n").append(view).append("</pre>\n</body>\n</html>\n");
    return out;
}

}  // namespace pelkrin
