#pragma once
// Where the readers send the reports that do not end the run (a short read,
// the end of an SFF file): a program passes its standard streams, which is
// what a reader takes when given none; a test or a fuzz target passes
// whatever it wants to look at or drop.
#include <iostream>
#include <ostream>

namespace pelkrin {

struct console {
    std::ostream& out;
    std::ostream& err;
};

// Standard output and standard error.
inline console standard_console() { return console{std::cout, std::cerr}; }

}  // namespace pelkrin
