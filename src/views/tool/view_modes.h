#pragma once
// The views that Pelkrin-view can show, and what each of them needs.
#include <string_view>

namespace pelkrin {

bool is_view_mode(std::string_view mode);
// Modes whose output is HTML, which -p wraps in a page.
bool is_html_mode(std::string_view mode);
// Span renderers: the modes that fill a read list for -r.
bool is_span_render_mode(std::string_view mode);

}  // namespace pelkrin
