#include "view_tool/view_run.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <limits>
#include <optional>

#include "ace/ace_reader.h"
#include "common/fatal_error.h"
#include "common/same_file.h"
#include "view_tool/colour_file.h"
#include "view_tool/html_page.h"
#include "view_tool/report/report_over_input.h"
#include "view_tool/report/report_run.h"
#include "view_tool/view_modes.h"
#include "view_tool/view_options.h"
#include "view_tool/view_usage.h"

namespace pelkrin {
namespace {

constexpr const char* prefix = "Pelkrin-view: ";

// The first contig of the file with that name, if any.
std::optional<contig> find_contig(const std::string& ace_file, const std::string& name, console messages) {
    aceReader reader(ace_file, messages);
    for (;;) {
        contig c;
        if (!reader.next_contig(c)) return std::nullopt;
        if (c.name == name) return c;
    }
}

// Up to the end of the consensus, but at least one position.
int32_t default_width(const contig& c, int32_t start) {
    const int64_t length = static_cast<int64_t>(c.consensus.size());
    const int64_t width = std::min<int64_t>(length, std::numeric_limits<int32_t>::max()) - start + 1;
    return static_cast<int32_t>(std::max<int64_t>(width, 1));
}

std::string span_words(const view_options& o, const view_mode& mode, const contig& c, int32_t width) {
    const std::string length = std::to_string(c.consensus.size());
    if (!mode.span) return "whole contig, " + length + " positions";
    return "positions " + std::to_string(o.start) + " to " +
           std::to_string(static_cast<int64_t>(o.start) + width - 1) + " of " + length;
}

bool write_read_list(std::ofstream& file, const std::vector<std::string>& names) {
    for (const std::string& name : names) file << name << '\n';
    file.close();
    return !file.fail();
}

}  // namespace

int run_view(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    const parsed_view_options parsed = parse_view_options(args);
    if (const auto answered = answer_command(parsed.command, "Pelkrin-view", view_usage(), parsed.error, out, err)) {
        return *answered;
    }
    const view_options& o = parsed.options;
    // The options hold only names that the table knows.
    const view_mode& mode = *find_view_mode(o.mode);
    // The read list must not be written over an input.
    if (o.reads_file) {
        for (const std::string* input : {&o.ace_file, o.colour_file ? &*o.colour_file : nullptr}) {
            if (input != nullptr && same_file(*o.reads_file, *input)) {
                err << prefix << would_overwrite(*o.reads_file, *input) << std::endl;
                return 1;
            }
        }
    }

    // Nor the report's files, nor what it removes of an earlier report.
    if (!mode.operation) {
        if (const auto over = report_file_over_input(*o.report_folder, report_inputs(o.ace_file, o.colour_file))) {
            err << prefix << would_overwrite(over->output, over->input) << std::endl;
            return 1;
        }
    }

    colour_map colours = default_colours();
    if (o.colour_file) {
        colour_file_result loaded = read_colour_file(*o.colour_file);
        if (!loaded.colours) {
            err << prefix << loaded.error << std::endl;
            return 1;
        }
        colours = std::move(*loaded.colours);
    }

    if (!mode.operation) {
        try {
            write_report(o.ace_file, *o.report_folder, colours, console{out, err},
                         report_inputs(o.ace_file, o.colour_file));
        } catch (const fatal_error& e) {
            err << e.message() << std::flush;
            return e.status();
        } catch (const std::exception& e) {
            // Out of memory, or no thread to be had for the writers.
            err << "Pelkrin-view: " << e.what() << std::endl;
            return 1;
        }
        return 0;
    }

    std::optional<contig> found;
    try {
        found = find_contig(o.ace_file, o.contig_name, console{out, err});
    } catch (const fatal_error& e) {  // the ACE reader's own messages, as Pelkrin gives them
        err << e.message() << std::flush;
        return e.status();
    }
    if (!found) {
        err << prefix << "contig " << o.contig_name << " not found in " << o.ace_file << std::endl;
        return 1;
    }
    contig& c = *found;

    // Created empty first, whatever the mode; only modes with a read list fill it.
    std::ofstream reads_out;
    if (o.reads_file) {
        reads_out.open(*o.reads_file, std::ios::out | std::ios::trunc | std::ios::binary);
        if (!reads_out) {
            err << prefix << "can not open file " << *o.reads_file << std::endl;
            return 1;
        }
        if (!mode.read_list && !write_read_list(reads_out, {})) {
            err << prefix << "can not open file " << *o.reads_file << std::endl;
            return 1;
        }
    }

    const int32_t width = o.width ? *o.width : default_width(c, o.start);
    const view_output v = mode.operation(c, o.start, width, colours, out);
    if (!v.span_cut) {
        err << prefix << "the span cannot be cut from contig " << o.contig_name << std::endl;
        return 1;
    }
    if (o.reads_file && reads_out.is_open() && !write_read_list(reads_out, v.read_list)) {
        err << prefix << "can not open file " << *o.reads_file << std::endl;
        return 1;
    }

    if (o.page && mode.html) {
        page_facts facts{o.contig_name, o.mode, span_words(o, mode, c, width), mode.flow_space};
        out << html_page(v.text, facts, colours);
    } else {
        out << v.text;
    }
    out.flush();
    if (!out) {
        err << prefix << "can not write the output" << std::endl;
        return 1;
    }
    return 0;
}

}  // namespace pelkrin
