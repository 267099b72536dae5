#pragma once
// The style sheet and the script that every page of the report shares,
// written once into the report's folder as pelkrin-report.css and
// pelkrin-report.js. Hand-written, with nothing fetched from elsewhere.
#include <string_view>

namespace pelkrin {

std::string_view report_style();
std::string_view report_script();

}  // namespace pelkrin
