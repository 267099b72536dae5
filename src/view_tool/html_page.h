#pragma once
// A complete HTML5 page around the output of an HTML view, for a browser.
#include <string>

#include "views/colour_map.h"

namespace pelkrin {

struct page_facts {
    std::string contig_name;
    std::string mode;
    std::string span;  // e.g. "positions 1 to 100 of 250"
    bool flow_space = false;
};

// The view's text stands unchanged in a <pre> block in a fixed-width font,
// under a legend of `colours`.
std::string html_page(const std::string& view, const page_facts& facts, const colour_map& colours);

// Text made safe for HTML content and attribute values.
std::string html_escape(const std::string& text);

}  // namespace pelkrin
