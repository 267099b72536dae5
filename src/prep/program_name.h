#pragma once
// The name Pelkrin-prep's messages begin with.

namespace pelkrin::prep {

inline constexpr const char* program_name = "Pelkrin-prep";

}  // namespace pelkrin::prep
