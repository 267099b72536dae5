#pragma once
// Where the readers send the reports that do not end the run (a short read,
// the end of an SFF file): a program passes its standard streams, a test or a
// fuzz target whatever it wants to look at or drop.
#include <ostream>

namespace pelkrin {

struct console {
    std::ostream& out;
    std::ostream& err;
};

}  // namespace pelkrin
