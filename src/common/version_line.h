#pragma once
// The line a program prints for --version: its name and the one version of
// the project that every program of it shares.
#include <string>
#include <string_view>

namespace pelkrin {

// "PROGRAM (Pelkrin) VERSION" and a line end.
std::string version_line(std::string_view program);

}  // namespace pelkrin
