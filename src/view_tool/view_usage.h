#pragma once
// Pelkrin-view's usage text.
#include <string>

namespace pelkrin {

std::string view_usage();

}  // namespace pelkrin
