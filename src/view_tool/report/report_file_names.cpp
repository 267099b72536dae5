#include "view_tool/report/report_file_names.h"

namespace pelkrin {
namespace {

// Takes a number of decimal digits with no leading zero (0 itself when
// `zero`) off the front of `name`; false when there is none.
bool take_number(std::string_view& name, bool zero) {
    std::size_t n = 0;
    while (n < name.size() && name[n] >= '0' && name[n] <= '9') ++n;
    if (n == 0 || (name[0] == '0' && (n > 1 || !zero))) return false;
    name.remove_prefix(n);
    return true;
}

bool take(std::string_view& name, std::string_view text) {
    if (name.substr(0, text.size()) != text) return false;
    name.remove_prefix(text.size());
    return true;
}

}  // namespace

bool is_report_file_name(std::string_view name) {
    if (name == "index.html" || name == "pelkrin-report.css" || name == "pelkrin-report.js") return true;
    if (!take(name, "contig-") || !take_number(name, false)) return false;
    if (name == ".html" || name == ".js") return true;
    return take(name, "-flowgrams-") && take_number(name, true) && name == ".js";
}

}  // namespace pelkrin
