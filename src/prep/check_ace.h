#pragma once
// The ACE file's part of Pelkrin-prep check: its dialect and each problem
// with the first line it was found on.
#include <functional>
#include <ostream>
#include <string>

#include "ace/contig.h"

namespace pelkrin::prep {

struct ace_verdict {
    // Pelkrin's reader reads the file as it stands, and nothing is wrong.
    bool ready = false;
    // Why the file cannot be read at all (it cannot be opened, is no regular
    // file, its gzip data is damaged); empty when it was read.
    std::string cannot_read;
};

// Reads the file leniently, handing each complete contig to `each_contig`,
// and writes its section of the report to `out`; `err` takes progress.
ace_verdict check_ace(const std::string& name, const std::function<void(contig&)>& each_contig, std::ostream& out,
                      std::ostream& err);

}  // namespace pelkrin::prep
