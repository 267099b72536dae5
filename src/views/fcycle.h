#pragma once
// The flow cycle: flow order is T, then A, then C, then G.
#include <string_view>

namespace pelkrin {

inline constexpr std::string_view fcycle = "TACG";

}  // namespace pelkrin
