#pragma once
// Pelkrin-view -m report: a folder of static pages over every contig of an
// ACE file, with the flowgrams of the reads when Pelkrin's PREFIX.reads and
// PREFIX.qdx (written with -f) stand beside it.
#include <ostream>
#include <string>

#include "common/console.h"
#include "views/colour_map.h"

namespace pelkrin {

// Writes the report of `ace_file` into `folder`. Failures, the ACE reader's
// own among them, throw fatal_error; `messages` takes the reader's other
// reports and, on its standard output, the closing line.
void write_report(const std::string& ace_file, const std::string& folder, const colour_map& colours,
                  console messages);

}  // namespace pelkrin
