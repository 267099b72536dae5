#pragma once
// Pelkrin-view -m report: a folder of static pages over every contig of an
// ACE file, with the flowgrams of the reads when Pelkrin's PREFIX.reads and
// PREFIX.qdx (written with -f) stand beside it.
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "common/console.h"
#include "views/colour_map.h"

namespace pelkrin {

// The files a report of `ace_file` reads: it, the colour file if any, and
// Pelkrin's outputs beside it (PREFIX.qdx, PREFIX.reads).
std::vector<std::string> report_inputs(const std::string& ace_file, const std::optional<std::string>& colour_file);

// Writes the report of `ace_file` into `folder`. Failures, the ACE reader's
// own among them, throw fatal_error; `messages` takes the reader's other
// reports and, on its standard output, the closing line. The files of
// `inputs` are never written over (report_inputs).
void write_report(const std::string& ace_file, const std::string& folder, const colour_map& colours,
                  console messages, const std::vector<std::string>& inputs);

}  // namespace pelkrin
