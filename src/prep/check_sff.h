#pragma once
// The SFF files' part of Pelkrin-prep check: each file read and reported on,
// and every read name indexed for the assembly's reads to be looked up.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "common/fatal_error.h"
#include "lenient/sff_layout.h"
#include "prep/sff_refusal.h"
#include "lenient/whole_input.h"
#include "sff/read_index.h"

namespace pelkrin::prep {

struct checked_sff {
    static constexpr std::size_t no_file = static_cast<std::size_t>(-1);

    std::string name;
    std::unique_ptr<whole_input> input;  // null when the file could not be read
    sff_layout layout;
    sff_refusal refusal;            // Pelkrin's, when it would refuse the file
    std::size_t same_as = no_file;  // an earlier file of the list that this one is (given twice)
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
    // Some file was read, so the assembly's reads were looked for.
    bool any_read() const;
    // Pelkrin runs on them: one file, which it does not refuse.
    bool pelkrin_runs() const { return files.size() == 1 && !files[0].refusal.refused(); }
};

// Reads every file and writes its section of the report to `out`;
// `err` takes progress.
checked_sffs check_sffs(const std::vector<std::string>& names, std::ostream& out, std::ostream& err);

// A fatal error's text for a report line: without its line end and the
// program's name.
std::string problem_text(const fatal_error& e);

}  // namespace pelkrin::prep
