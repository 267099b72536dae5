#pragma once
// The SFF files' part of Pelkrin-prep check: each file read and reported on,
// and every read name indexed for the assembly's reads to be looked up.
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "common/fatal_error.h"
#include "prep/whole_input.h"
#include "prep/sff_layout.h"
#include "sff/read_index.h"

namespace pelkrin::prep {

struct checked_sff {
    std::string name;
    std::unique_ptr<whole_input> input;  // null when the file could not be read
    sff_layout layout;
};

struct record_ref {
    std::size_t file;
    std::size_t record;
};

struct checked_sffs {
    std::vector<checked_sff> files;
    // Read name to its record's number in `records`, plus one (0: no such
    // read); a later record of a name wins, as in Pelkrin's index.
    read_index names;
    std::vector<record_ref> records;
    // Pelkrin reads them as they stand: one file, one SFF file in it, whole,
    // no duplicate names.
    bool ready = true;

    // The bases of the record that `at` (a value of `names`) stands for.
    std::string_view bases(std::int64_t at) const;
};

// Reads every file and writes its section of the report to `out`;
// `err` takes progress.
checked_sffs check_sffs(const std::vector<std::string>& names, std::ostream& out, std::ostream& err);

// A fatal error's text for a report line: without its line end and the
// program's name.
std::string problem_text(const fatal_error& e);

}  // namespace pelkrin::prep
