#include "bam/bam_run.h"

#include <htslib/faidx.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <numeric>
#include <set>
#include <thread>
#include <unistd.h>

#include "bam/bam_header.h"
#include "bam/bam_options.h"
#include "bam/bam_output.h"
#include "bam/bam_record.h"
#include "bam/edit_tags.h"
#include "bam/fasta_output.h"
#include "bam/padded_reference.h"
#include "bam/read_placement.h"
#include "bam/read_qualities.h"
#include "bam/record_builder.h"
#include "bam/sff_reads.h"
#include "common/fatal_error.h"
#include "common/output_file.h"
#include "common/progress.h"
#include "common/same_file.h"
#include "common/staged_files.h"
#include "common/command_answer.h"
#include "lenient/ace_layout.h"
#include "lenient/file_label.h"
#include "lenient/whole_input.h"

namespace pelkrin::bam {
namespace {

constexpr const char* program = "Pelkrin-bam";

[[noreturn]] void fail(const std::string& text) { throw fatal_error(1, file_label(program, text) + "\n"); }

struct output_names {
    std::string bam, bai, csi, fasta, fai;

    explicit output_names(const std::string& prefix)
        : bam(prefix + ".bam"), bai(prefix + ".bam.bai"), csi(prefix + ".bam.csi"), fasta(prefix + ".fa"),
          fai(prefix + ".fa.fai") {}
    std::vector<const std::string*> all() const { return {&bam, &bai, &csi, &fasta, &fai}; }
};

// An output that is one of the inputs would be destroyed before it is read.
void refuse_to_overwrite_inputs(const output_names& outputs, const bam_options& o) {
    std::vector<const std::string*> inputs = {&o.ace_file};
    for (const std::string& s : o.sff_files) inputs.push_back(&s);
    for (const std::string* output : outputs.all()) {
        for (const std::string* input : inputs) {
            if (*output == *input || same_file(*output, *input)) fail(would_overwrite(*output, *input));
        }
    }
}

// Stops the run at a contig the lenient reading could not read whole.
void refuse_unreadable(const ace_findings& f, const std::string& ace_file) {
    if (!f.malformed.empty()) fail(ace_file + ": line " + std::to_string(f.malformed_line) + ": " + f.malformed);
    if (f.cut_off) {
        fail(ace_file + ": line " + std::to_string(f.cut_at_line) + ": the file is cut off inside contig " +
             f.cut_contig + " (its CO line is line " + std::to_string(f.cut_line) + ")");
    }
    if (f.contigs == 0) fail(ace_file + ": no complete contig");
}

// The first pass: every contig's unpadded consensus, written to the FASTA
// file, and what the header says of it.
struct references {
    std::vector<reference_sequence> sequences;
    std::int64_t longest = 0;
};

references write_references(const whole_input& ace, const std::string& ace_file, output_file& fasta,
                            std::ostream& err) {
    references refs;
    std::set<std::string> names;
    ace_options options;
    options.program = program;
    options.reads_bases = false;
    progress shown(err, file_label(program, "reading " + ace_file), ace.bytes().size(),
                   progress::shown_for(ace.bytes().size()));
    options.shown = &shown;
    options.each_contig = [&](contig& c) {
        if (!names.insert(c.name).second) fail(ace_file + ": contig " + c.name + " stands twice");
        const padded_reference ref = make_padded_reference(c.consensus);
        append_fasta_record(fasta, c.name, ref.bases);
        refs.sequences.push_back(
            reference_sequence{c.name, static_cast<std::int64_t>(ref.bases.size()), sequence_md5(ref.bases)});
        refs.longest = std::max<std::int64_t>(refs.longest, static_cast<std::int64_t>(ref.bases.size()));
    };
    refuse_unreadable(read_ace(ace.bytes(), ace_file, options), ace_file);
    return refs;
}

// The records of one contig, built and sorted by position before they are
// written; the records stay from contig to contig.
class contig_writer {
public:
    contig_writer(const sff_reads& sff, const std::vector<std::string>& group_ids, bam_output& out)
        : builder_(sff, group_ids), out_(out) {}
    ~contig_writer() {
        for (bam1_t* b : pool_) bam_destroy1(b);
    }
    contig_writer(const contig_writer&) = delete;
    contig_writer& operator=(const contig_writer&) = delete;

    void write(const contig& c, std::int32_t tid, record_counts& n) {
        const padded_reference ref = make_padded_reference(c.consensus);
        while (pool_.size() < c.reads.size()) {
            bam1_t* b = bam_init1();
            if (b == nullptr) throw std::bad_alloc();
            pool_.push_back(b);
        }
        std::size_t k = 0;
        for (const auto& [name, read] : c.reads) builder_.build(pool_[k++], name, read, ref, tid, n);
        std::vector<std::size_t> order(k);
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b) { return pool_[a]->core.pos < pool_[b]->core.pos; });
        for (std::size_t i : order) out_.write(pool_[i]);
    }

private:
    record_builder builder_;
    bam_output& out_;
    std::vector<bam1_t*> pool_;
};

std::string command_line_text(const std::vector<std::string>& args) {
    std::string text = program;
    for (const std::string& a : args) text.append(" ").append(a);
    return text;
}

int processors() { return static_cast<int>(std::max(1u, std::thread::hardware_concurrency())); }

}  // namespace

int run_bam(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    const parsed_bam_options parsed = parse_bam_options(args);
    if (const auto answered = answer_command(parsed.command, program, bam_usage(), parsed.error, out, err)) {
        return *answered;
    }
    const bam_options& o = parsed.options;
    const output_names outputs(o.prefix);
    refuse_to_overwrite_inputs(outputs, o);
    const int threads = o.threads > 0 ? o.threads : processors();

    const whole_input ace(o.ace_file, err, program);
    const sff_reads sff(o.sff_files, err);

    staged_files staged;
    const std::string fasta_temporary = staged.stage(outputs.fasta, program);
    references refs;
    {
        output_file fasta(fasta_temporary);
        if (fasta.failed_to_open()) fail("can not write file " + outputs.fasta + ": " + fasta.failure_reason());
        refs = write_references(ace, o.ace_file, fasta, err);
        if (!fasta.finish()) fail("can not write file " + outputs.fasta + ": " + fasta.failure_reason());
    }

    // A contig of no base has no place in the header: its reads are written unplaced.
    std::vector<reference_sequence> header_refs;
    std::vector<std::int32_t> tids;
    for (const reference_sequence& r : refs.sequences) {
        tids.push_back(r.length > 0 ? static_cast<std::int32_t>(header_refs.size()) : -1);
        if (r.length > 0) header_refs.push_back(r);
    }
    const std::vector<std::string> group_ids = read_group_ids(o.sff_files);
    std::vector<read_group> groups;
    for (std::size_t i = 0; i < sff.files().size(); ++i) {
        const sff_file& f = sff.files()[i];
        read_group g{group_ids[i], {}, {}};
        if (!f.layout.parts.empty()) {
            g.flow_chars = f.layout.parts.front().flow_chars;
            g.key = f.layout.parts.front().key;
        }
        groups.push_back(std::move(g));
    }

    const bool csi = refs.longest > longest_for_bai;
    const std::string& index_name = csi ? outputs.csi : outputs.bai;
    const std::string bam_temporary = staged.stage(outputs.bam, program);
    const std::string index_temporary = staged.stage(index_name, program);
    const std::string fai_temporary = staged.stage(outputs.fai, program);

    record_counts n;
    {
        bam_output bam(bam_temporary, index_temporary, outputs.bam,
                       header_text(header_refs, groups, o.sample, command_line_text(args)), csi, threads);
        contig_writer writer(sff, group_ids, bam);
        ace_options options;
        options.program = program;
        progress shown(err, file_label(program, "writing " + outputs.bam), ace.bytes().size(),
                       progress::shown_for(ace.bytes().size()));
        options.shown = &shown;
        std::size_t ordinal = 0;
        options.each_contig = [&](contig& c) { writer.write(c, tids[ordinal++], n); };
        read_ace(ace.bytes(), o.ace_file, options);
        bam.close();
    }
    errno = 0;
    if (fai_build3(fasta_temporary.c_str(), fai_temporary.c_str(), nullptr) != 0) {
        fail("can not write file " + outputs.fai + (errno != 0 ? std::string(": ") + std::strerror(errno) : ""));
    }
    staged.put_in_place(program);
    // An index of the other kind, from an earlier run, would stand for a file it no longer fits.
    ::unlink((csi ? outputs.bai : outputs.csi).c_str());

    out << program << ": " << n.reads << " reads of " << refs.sequences.size() << " contigs written to "
        << outputs.bam << " (" << n.unmapped << " unmapped), the reference to " << outputs.fasta << std::endl;
    if (n.not_in_sff > 0) {
        err << program << ": " << n.not_in_sff
            << " reads of the assembly are in no SFF file: written without qualities and flow signals" << std::endl;
    }
    if (n.bases_not_found > 0) {
        err << program << ": " << n.bases_not_found
            << " reads' bases are not found in their SFF records: written without qualities" << std::endl;
    }
    if (!out) throw fatal_error(1, std::string(program) + ": can not write standard output\n");
    return 0;
}

}  // namespace pelkrin::bam
