#pragma once
// The whole job: index the SFF file, walk the assembly, write both output files.
#include "common/console.h"
#include "driver/entry.h"

namespace pelkrin {

// Returns 0; a fatal error throws fatal_error (status 1), after which the output
// files hold what was written before it. The completion message and the SFF
// reader's reports go to `messages`.
int run(const run_request& request, console messages);

}  // namespace pelkrin
