#include "views/tool/view_modes.h"

#include <array>

namespace pelkrin {
namespace {

constexpr std::array<std::string_view, 11> modes = {
    "align", "align-html",  "flow",      "flow-html", "flow-html-space", "contig",
    "contig-html", "flow-table", "seq-table", "flow-consensus", "layout"};

bool one_of(std::string_view mode, std::initializer_list<std::string_view> names) {
    for (std::string_view name : names) {
        if (mode == name) return true;
    }
    return false;
}

}  // namespace

bool is_view_mode(std::string_view mode) {
    for (std::string_view name : modes) {
        if (mode == name) return true;
    }
    return false;
}

bool is_html_mode(std::string_view mode) {
    return one_of(mode, {"align-html", "flow-html", "flow-html-space", "contig-html"});
}

bool is_span_render_mode(std::string_view mode) {
    return one_of(mode, {"align", "align-html", "flow", "flow-html", "flow-html-space"});
}

}  // namespace pelkrin
