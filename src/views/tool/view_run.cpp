#include "views/tool/view_run.h"

#include <algorithm>
#include <fstream>
#include <limits>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "ace/ace_reader.h"
#include "common/fatal_error.h"
#include "views/tool/colour_file.h"
#include "views/tool/html_page.h"
#include "views/tool/table_writers.h"
#include "views/tool/view_modes.h"
#include "views/tool/view_options.h"
#include "views/tool/view_usage.h"

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

std::string span_words(const view_options& o, const contig& c, int32_t width) {
    const std::string length = std::to_string(c.consensus.size());
    if (o.mode == "contig-html") return "whole contig, " + length + " positions";
    return "positions " + std::to_string(o.start) + " to " +
           std::to_string(static_cast<int64_t>(o.start) + width - 1) + " of " + length;
}

struct view_output {
    std::string text;
    std::vector<std::string> read_list;
    bool span_cut = true;  // false when a table's span could not be cut
};

view_output call_view(contig& c, const view_options& o, colour_map& colours, int32_t width, std::ostream& out) {
    view_output v;
    const std::string& m = o.mode;
    if (m == "align") {
        c.print_align_map_plain(v.text, v.read_list, o.start, width);
    } else if (m == "align-html") {
        c.print_align_map_html(v.text, v.read_list, colours, o.start, width);
    } else if (m == "flow") {
        c.print_flow_map_plain(v.text, v.read_list, o.start, width);
    } else if (m == "flow-html") {
        c.print_flow_map_html(v.text, v.read_list, colours, o.start, width);
    } else if (m == "flow-html-space") {
        c.print_flow_map_html_space(v.text, v.read_list, colours, o.start, width);
    } else if (m == "contig") {
        // Straight to the output, as the operation writes it.
        c.print_align_map(out);
    } else if (m == "contig-html") {
        std::ostringstream page;
        c.print_align_map_html(page, colours);
        v.text = page.str();
    } else if (m == "flow-table") {
        std::vector<std::vector<int16_t>> flows;
        std::vector<std::map<int32_t, fRead>> rows;
        try {
            c.align_flow(flows, rows, o.start, width);
        } catch (const std::length_error&) {
            v.span_cut = false;
            return v;
        }
        v.text = flow_table_text(flows, rows);
    } else if (m == "seq-table") {
        std::vector<std::vector<char>> columns;
        std::vector<std::map<int32_t, std::string>> rows;
        try {
            c.align_seq(columns, rows, o.start, width);
        } catch (const std::length_error&) {
            v.span_cut = false;
            return v;
        }
        v.text = seq_table_text(columns, rows);
    } else if (m == "flow-consensus") {
        c.create_flow_concensus();
        v.text = flow_consensus_text(c);
    } else {
        c.create_print_map();
        std::vector<std::string> ids;
        c.get_read_ids(ids);
        v.text = layout_text(c, ids);
    }
    return v;
}

bool write_read_list(std::ofstream& file, const std::vector<std::string>& names) {
    for (const std::string& name : names) file << name << '\n';
    file.close();
    return !file.fail();
}

}  // namespace

int run_view(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    const parsed_view_options parsed = parse_view_options(args);
    if (parsed.command == view_command::help) {
        out << view_usage() << std::flush;
        return 0;
    }
    if (parsed.command == view_command::usage_error) {
        err << prefix << parsed.error << '\n' << view_usage() << std::flush;
        return 2;
    }
    const view_options& o = parsed.options;

    colour_map colours = default_colours();
    if (o.colour_file) {
        colour_file_result loaded = read_colour_file(*o.colour_file);
        if (!loaded.colours) {
            err << prefix << loaded.error << std::endl;
            return 1;
        }
        colours = std::move(*loaded.colours);
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

    // Created empty first, whatever the mode; only span renderers fill it.
    std::ofstream reads_out;
    if (o.reads_file) {
        reads_out.open(*o.reads_file, std::ios::out | std::ios::trunc | std::ios::binary);
        if (!reads_out) {
            err << prefix << "can not open file " << *o.reads_file << std::endl;
            return 1;
        }
        if (!is_span_render_mode(o.mode) && !write_read_list(reads_out, {})) {
            err << prefix << "can not open file " << *o.reads_file << std::endl;
            return 1;
        }
    }

    const int32_t width = o.width ? *o.width : default_width(c, o.start);
    const view_output v = call_view(c, o, colours, width, out);
    if (!v.span_cut) {
        err << prefix << "the span cannot be cut from contig " << o.contig_name << std::endl;
        return 1;
    }
    if (o.reads_file && reads_out.is_open() && !write_read_list(reads_out, v.read_list)) {
        err << prefix << "can not open file " << *o.reads_file << std::endl;
        return 1;
    }

    if (o.page && is_html_mode(o.mode)) {
        page_facts facts{o.contig_name, o.mode, span_words(o, c, width), o.mode.rfind("flow", 0) == 0};
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
