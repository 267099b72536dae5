#pragma once
// A viewer's colours: drawn character to the colour text written after "<font color=".
#include <map>
#include <string>

namespace pelkrin {

using colour_map = std::map<char, std::string>;

}  // namespace pelkrin
