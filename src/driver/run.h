#pragma once
// The whole job: index the SFF file, walk the assembly, write both output files.
#include "driver/entry.h"

namespace pelkrin {

// Returns 0; fatal errors end the process with status 1.
int run(const run_request& request);

}  // namespace pelkrin
