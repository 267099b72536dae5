#pragma once
// Text for JavaScript data written into a page or a script file.
#include <string>
#include <string_view>

namespace pelkrin {

// Appends `text` as a JSON string literal, quotes included. Besides what JSON
// requires, '<', '>', '&' and the single quote are written as \u escapes, so
// that no name from a file can close a <script> element or an attribute.
void append_json_string(std::string& out, std::string_view text);

}  // namespace pelkrin
