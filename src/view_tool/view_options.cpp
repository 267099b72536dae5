#include "view_tool/view_options.h"

#include <charconv>
#include <limits>

#include "common/argument_walk.h"
#include "view_tool/view_modes.h"

namespace pelkrin {
namespace {

constexpr int64_t largest = std::numeric_limits<int32_t>::max();

bool takes_value(char letter) {
    return letter == 'm' || letter == 's' || letter == 'w' || letter == 'c' || letter == 'r' ||
           letter == 'o';
}

// Stores the value of option `letter`; returns what is wrong with it, if anything.
std::string set_value(view_options& o, char letter, const std::string& value) {
    switch (letter) {
        case 'm':
            if (!find_view_mode(value)) return "unknown mode " + value;
            o.mode = value;
            return {};
        case 's': {
            const auto n = parse_view_number(value);
            if (!n) return "START must be an integer from 1 to 2147483647: " + value;
            o.start = *n;
            return {};
        }
        case 'w': {
            const auto n = parse_view_number(value);
            if (!n) return "WIDTH must be an integer from 1 to 2147483647: " + value;
            o.width = *n;
            return {};
        }
        case 'c':
            o.colour_file = value;
            return {};
        case 'o':
            o.report_folder = value;
            return {};
        default:
            o.reads_file = value;
            return {};
    }
}

parsed_view_options usage_error(std::string what) { return usage_error_of<parsed_view_options>(std::move(what)); }

}  // namespace

std::optional<int32_t> parse_view_number(std::string_view text) {
    if (text.empty()) return std::nullopt;
    for (char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
    }
    int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 1) return std::nullopt;
    return value;
}

parsed_view_options parse_view_options(const std::vector<std::string>& args) {
    parsed_view_options parsed;
    view_options& o = parsed.options;
    o.mode = std::string(default_view_mode().name);
    argument_walk walk(args);
    std::string arg;
    while (walk.next_option(arg)) {
        if (arg == "--help") {
            parsed.command = command_kind::help;
            return parsed;
        }
        if (arg == "--version") {
            parsed.command = command_kind::version;
            return parsed;
        }
        if (arg[1] == '-') return usage_error("unknown option " + arg);
        // Letters may share one argument (-ph); a value follows its letter
        // directly (-malign) or comes as the next argument.
        for (std::size_t k = 1; k < arg.size(); ++k) {
            const char letter = arg[k];
            if (letter == 'h') {
                parsed.command = command_kind::help;
                return parsed;
            }
            if (letter == 'p') {
                o.page = true;
                continue;
            }
            if (!takes_value(letter)) return usage_error(std::string("unknown option -") + letter);
            std::string value;
            if (k + 1 < arg.size()) {
                value = arg.substr(k + 1);
            } else if (!walk.next_value(value)) {
                return usage_error(std::string("option -") + letter + " needs a value");
            }
            if (std::string wrong = set_value(o, letter, value); !wrong.empty()) return usage_error(wrong);
            break;
        }
    }
    const std::vector<std::string>& names = walk.names();

    if (o.mode == "report") {
        if (names.empty()) return usage_error("missing argument aceFile");
        if (names.size() > 1) return usage_error("unexpected argument " + names[1]);
        if (!o.report_folder) return usage_error("-m report needs the folder of the report: -o DIR");
        o.ace_file = names[0];
        return parsed;
    }
    if (o.report_folder) return usage_error("option -o goes with -m report only");
    if (names.size() < 2) {
        return usage_error(names.empty() ? "missing arguments aceFile and contigName" : "missing argument contigName");
    }
    if (names.size() > 2) return usage_error("unexpected argument " + names[2]);
    if (o.width && static_cast<int64_t>(o.start) + *o.width - 1 > largest) {
        return usage_error("START + WIDTH - 1 must not exceed 2147483647");
    }
    o.ace_file = names[0];
    o.contig_name = names[1];
    return parsed;
}

}  // namespace pelkrin
