#pragma once
// The names of the files a report is made of, and no others: what a report
// folder may hold of an earlier report, and what is not the report's.
#include <string_view>

namespace pelkrin {

// index.html, pelkrin-report.css, pelkrin-report.js, contig-N.html,
// contig-N.js and contig-N-flowgrams-K.js (N from 1, K from 0, in decimal
// digits with no leading zero).
bool is_report_file_name(std::string_view name);

}  // namespace pelkrin
