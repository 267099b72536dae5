#include "prep/prep_run.h"

#include <memory>

#include "common/fatal_error.h"
#include "common/same_file.h"
#include "common/version_line.h"
#include "common/output_file.h"
#include "lenient/ace_layout.h"
#include "prep/ace_rewrite.h"
#include "prep/check.h"
#include "lenient/whole_input.h"
#include "common/progress.h"
#include "prep/sff_merge.h"
#include "lenient/file_label.h"
#include "prep/program_name.h"

namespace pelkrin::prep {
namespace {

[[noreturn]] void fail(const std::string& text) { throw fatal_error(1, "Pelkrin-prep: " + text + "\n"); }

// Refuses to write `output` over any of the inputs.
void refuse_overwrite(const std::string& output, const std::vector<std::string>& inputs) {
    for (const std::string& in : inputs)
        if (output == in || same_file(output, in)) fail(would_overwrite(output, in));
}

// Refuses a list of inputs that names one file twice (by its name, or through
// another name or a link): merged with itself, every read would be a duplicate.
void refuse_twice_given(const std::vector<std::string>& inputs) {
    for (std::size_t i = 0; i < inputs.size(); ++i)
        for (std::size_t j = 0; j < i; ++j) {
            if (inputs[i] == inputs[j]) fail(inputs[i] + " is given twice; give each file once");
            if (same_file(inputs[i], inputs[j]))
                fail(inputs[i] + " and " + inputs[j] + " are the same file; give each file once");
        }
}

// The system's reason, or a general one where it gave none.
std::string reason_of(const output_file& file) {
    const std::string reason = file.failure_reason();
    return reason.empty() ? std::string("the system gave no reason") : reason;
}

// Opens the output under a temporary name; finish() puts it in place.
std::unique_ptr<output_file> open_output(const std::string& path) {
    auto file = std::make_unique<output_file>(path);
    if (file->failed_to_open()) fail(path + ": cannot open for writing: " + reason_of(*file));
    // As cp and cat do: the outputs are as large as the inputs, and asking for
    // them on the disk as they are written would cost the run the writing's time.
    file->send_to_disk_when_the_system_does();
    return file;
}

// A failed write leaves no temporary file and the earlier file of the name as it was.
[[noreturn]] void cannot_write(output_file& file) {
    file.discard();
    fail(file.name() + ": cannot write: " + reason_of(file));
}

void finish_output(output_file& file) {
    if (!file.finish()) fail(file.name() + ": cannot write: " + reason_of(file));
}

int ace_command(const std::vector<std::string>& args, std::ostream& err) {
    bool keep_complete = false;
    std::vector<std::string> files;
    for (const std::string& a : args) {
        if (a == "--keep-complete") keep_complete = true;
        else files.push_back(a);
    }
    if (files.size() != 2) {
        err << prep_usage();
        return 2;
    }
    const std::string& in_name = files[0];
    const std::string& out_name = files[1];
    refuse_overwrite(out_name, {in_name});
    whole_input in(in_name, err, program_name);
    ace_options options;
    options.program = program_name;
    options.keep_complete = keep_complete;
    options.sequences = false;
    progress reading(err, file_label(program_name, "reading " + in_name), in.bytes().size(), progress::shown_for(in.bytes().size()));
    options.shown = &reading;
    const ace_findings f = read_ace(in.bytes(), in_name, options);
    if (!f.malformed.empty())
        fail(in_name + ": line " + std::to_string(f.malformed_line) + ": " + f.malformed);
    if (f.cut_off && !keep_complete)
        fail(in_name + ": line " + std::to_string(f.cut_at_line) + ": the file is cut off inside contig " +
             f.cut_contig + " (its CO line is line " + std::to_string(f.cut_line) +
             "); --keep-complete writes the complete contigs only");
    if (f.contigs == 0) fail(in_name + ": no complete contig to write");
    auto out = open_output(out_name);
    progress writing(err, file_label(program_name, "writing " + out_name), in.bytes().size(), progress::shown_for(in.bytes().size()));
    try {
        write_ace(in.bytes(), f.edits, *out, &writing);
    } catch (...) {
        out->discard();
        throw;
    }
    finish_output(*out);
    if (f.cut_off)
        err << "Pelkrin-prep: " << in_name << ": contig " << f.cut_contig << ", cut off at the end, was left out\n";
    return 0;
}

// What the merge's progress calls reach: the progress shown, and the output,
// whose first failed write ends the merge rather than its last.
struct merge_watch {
    progress* shown;
    output_file* out;
};

void report_progress(void* context, std::uint64_t done) {
    const auto* watch = static_cast<merge_watch*>(context);
    watch->shown->at(done);
    if (watch->out->write_failed()) cannot_write(*watch->out);
}

int sff_command(const std::vector<std::string>& args, std::ostream& err) {
    if (args.size() < 2) {
        err << prep_usage();
        return 2;
    }
    const std::string& out_name = args[0];
    const std::vector<std::string> in_names(args.begin() + 1, args.end());
    refuse_overwrite(out_name, in_names);
    refuse_twice_given(in_names);
    std::vector<std::unique_ptr<whole_input>> files;
    std::vector<sff_input> inputs;
    std::uint64_t total = 0;
    for (const std::string& name : in_names) {
        files.push_back(std::make_unique<whole_input>(name, err, program_name));
        const whole_input& f = *files.back();
        progress shown(err, file_label(program_name, "reading " + name), f.bytes().size(), progress::shown_for(f.bytes().size()));
        inputs.push_back(sff_input{name, f.bytes(), scan_sff(f.bytes(), name, &shown, program_name), f.descriptor()});
        total += f.bytes().size();
    }
    const merge_plan plan = plan_merge(inputs);
    for (const std::string& note : plan.notes) err << note << "\n";
    auto out = open_output(out_name);
    progress shown(err, file_label(program_name, "writing " + out_name), total, progress::shown_for(total));
    merge_watch watch{&shown, out.get()};
    try {
        write_merge(inputs, plan, *out, out.get(), report_progress, &watch);
    } catch (...) {
        out->discard();
        throw;
    }
    finish_output(*out);
    shown.finish();
    return 0;
}

}  // namespace

std::string prep_usage() {
    return "usage: Pelkrin-prep check aceFile sffFile...\n"
           "       Pelkrin-prep ace [--keep-complete] IN OUT\n"
           "       Pelkrin-prep sff OUT IN...\n"
           "       Pelkrin-prep -h | --help | --version\n"
           "  check  reports what stands between an assembly, its SFF files and Pelkrin\n"
           "  ace    writes an ACE file in the layout Pelkrin reads (input may be gzip)\n"
           "  sff    merges SFF files into one big-endian SFF file (input may be gzip)\n";
}

int run_prep(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() == 1 && (args[0] == "-h" || args[0] == "--help")) {
        out << prep_usage() << std::flush;
        return 0;
    }
    if (args.size() == 1 && args[0] == "--version") {
        out << version_line("Pelkrin-prep") << std::flush;
        return 0;
    }
    if (args.empty()) {
        err << prep_usage();
        return 2;
    }
    const std::string& command = args[0];
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (command == "check") {
        if (rest.size() < 2) {
            err << prep_usage();
            return 2;
        }
        return run_check(rest[0], std::vector<std::string>(rest.begin() + 1, rest.end()), out, err);
    }
    if (command == "ace") return ace_command(rest, err);
    if (command == "sff") return sff_command(rest, err);
    err << "Pelkrin-prep: unknown command '" << command << "'\n" << prep_usage();
    return 2;
}

}  // namespace pelkrin::prep
