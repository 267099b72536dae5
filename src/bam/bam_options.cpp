#include "bam/bam_options.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "common/argument_walk.h"

namespace pelkrin::bam {
namespace {

bool ends_with_any_case(const std::string& text, const std::string& end) {
    if (text.size() < end.size()) return false;
    return std::equal(end.begin(), end.end(), text.end() - static_cast<std::ptrdiff_t>(end.size()),
                      [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b)); });
}

parsed_bam_options usage_error(std::string what) { return usage_error_of<parsed_bam_options>(std::move(what)); }

}  // namespace

std::string default_prefix(const std::string& ace_file) {
    std::string prefix = ace_file;
    if (ends_with_any_case(prefix, ".gz")) prefix.resize(prefix.size() - 3);
    if (ends_with_any_case(prefix, ".ace")) prefix.resize(prefix.size() - 4);
    return prefix;
}

std::string last_component(const std::string& prefix) {
    const auto slash = prefix.rfind('/');
    return slash == std::string::npos ? prefix : prefix.substr(slash + 1);
}

parsed_bam_options parse_bam_options(const std::vector<std::string>& args) {
    parsed_bam_options parsed;
    bam_options& o = parsed.options;
    argument_walk walk(args);
    std::string arg;
    while (walk.next_option(arg)) {
        if (arg == "-h" || arg == "--help") {
            parsed.command = command_kind::help;
            return parsed;
        }
        if (arg == "--version") {
            parsed.command = command_kind::version;
            return parsed;
        }
        // An option's value: "--threads 4", "--threads=4", "-o out" or "-oout".
        std::string name = arg;
        std::string value;
        bool has_value = false;
        if (arg.rfind("--", 0) == 0) {
            if (const auto eq = arg.find('='); eq != std::string::npos) {
                name = arg.substr(0, eq);
                value = arg.substr(eq + 1);
                has_value = true;
            }
        } else if (arg.size() > 2) {
            name = arg.substr(0, 2);
            value = arg.substr(2);
            has_value = true;
        }
        if (name != "-o" && name != "--sample" && name != "--threads") return usage_error("unknown option " + name);
        if (!has_value && !walk.next_value(value)) return usage_error("option " + name + " needs a value");
        if (name == "-o") {
            if (value.empty()) return usage_error("-o needs a prefix");
            o.prefix = value;
        } else if (name == "--sample") {
            if (value.empty()) return usage_error("--sample needs a name");
            o.sample = value;
        } else {
            int n = 0;
            const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), n);
            if (error != std::errc() || end != value.data() + value.size() || n < 1 || n > 1024)
                return usage_error("--threads must be a number from 1 to 1024: " + value);
            o.threads = n;
        }
    }
    const std::vector<std::string>& names = walk.names();
    if (names.size() < 2) {
        return usage_error(names.empty() ? "missing arguments aceFile and sffFile" : "missing argument sffFile");
    }
    o.ace_file = names[0];
    o.sff_files.assign(names.begin() + 1, names.end());
    if (o.prefix.empty()) o.prefix = default_prefix(o.ace_file);
    if (o.sample.empty()) o.sample = last_component(o.prefix);
    return parsed;
}

std::string bam_usage() {
    return "Usage: Pelkrin-bam [-o PREFIX] [--sample NAME] [--threads N] aceFile sffFile...\n"
           "       Pelkrin-bam -h | --help | --version\n"
           "\n"
           "Writes the assembly of aceFile, with each read's base qualities and flow\n"
           "signals from the SFF files, as PREFIX.bam with its index (PREFIX.bam.bai, or\n"
           "PREFIX.bam.csi for a contig too long for BAI), and the contigs without their\n"
           "pads as PREFIX.fa with PREFIX.fa.fai.\n"
           "\n"
           "  -o PREFIX       the outputs' prefix, default aceFile without .gz and .ace\n"
           "  --sample NAME   the read groups' sample (SM), default PREFIX's last component\n"
           "  --threads N     threads compressing the BAM file, default one a processor\n"
           "  -h, --help      show this text and exit\n"
           "  --version       show the version and exit\n";
}

}  // namespace pelkrin::bam
