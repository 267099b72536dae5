#pragma once
// The program's fixed texts: its name, its version, the usage and version texts.
#include <ostream>

#include "pelkrin_version.h"  // VERSION

namespace pelkrin {

inline constexpr const char* PRG = "Pelkrin";
// Follows a tab at the end of the version text and of the completion message.
inline constexpr const char* AUTHORSHIP = "Written by the Pelkrin developers";

void print_usage(std::ostream& out);
void print_version(std::ostream& out);

}  // namespace pelkrin
