#pragma once
// The last word of every program's main: nothing thrown leaves it. The one
// error type gives its own text and status; running out of memory, and any
// other exception, end the program with a message naming it and status 1,
// never with an abort.
#include <functional>
#include <ostream>
#include <string_view>

namespace pelkrin {

// Runs `body` and returns its status; what it throws is written to `err`:
// a fatal_error's text as it is, else "PROGRAM: out of memory" or
// "PROGRAM: " and the exception's text, or "PROGRAM: unexpected error",
// each with a line end.
int run_guarded(std::string_view program, std::ostream& err, const std::function<int()>& body);

}  // namespace pelkrin
