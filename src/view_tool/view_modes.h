#pragma once
// The views that Pelkrin-view can show: one line of a table each, with what
// the program needs to know of it.
#include <span>
#include <string_view>

#include "view_tool/view_operations.h"

namespace pelkrin {

struct view_mode {
    std::string_view name;      // as given to -m
    bool html;                  // HTML output, which -p wraps in a page
    bool span;                  // START to START + WIDTH - 1; otherwise the whole contig
    bool flow_space;            // flows rather than bases
    bool read_list;             // lists the reads it drew, for -r
    // Null for the report, which covers every contig of the file rather
    // than one (report_run.h).
    view_operation operation;
};

// Every mode, in the order of the usage text.
std::span<const view_mode> view_modes();

// The mode shown when -m does not choose one: the table's first.
const view_mode& default_view_mode();

// The mode of that name, or null.
const view_mode* find_view_mode(std::string_view name);

}  // namespace pelkrin
