#pragma once
// Numbers with one decimal, as the report's plots and facts write them.
#include <string>

namespace pelkrin {

// Appends `v` exactly as std::to_chars writes it in fixed notation with one
// decimal (the exact value rounded, a tie to even). Most values of the plots
// are done with integer arithmetic; the rest go through to_chars.
void append_fixed1(std::string& out, double v);

}  // namespace pelkrin
