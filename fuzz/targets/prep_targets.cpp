// Fuzz targets of Pelkrin-prep's readers and writers, on bytes in memory.
#include <cstdlib>
#include <span>
#include <string_view>

#include "ace/ace_reader.h"
#include "fuzz_support.h"
#include "fuzz_targets.h"
#include "lenient/ace_layout.h"
#include "prep/ace_rewrite.h"
#include "lenient/whole_input.h"
#include "lenient/sff_layout.h"
#include "prep/sff_merge.h"
#include "prep/string_output.h"
#include "sff/reader.h"

namespace pelkrin::fuzz {

void prep_ace(const std::uint8_t* data, std::size_t size) {
    run_guarded([&] {
        whole_input in("in.ace", std::span<const std::uint8_t>(data, size));
        std::vector<contig> lenient;
        ace_options options;
        options.keep_complete = size % 2 == 0;
        options.each_contig = [&](contig& c) { lenient.push_back(c); };
        const ace_findings f = read_ace(in.bytes(), in.name(), options);
        if (!f.malformed.empty() || (f.cut_off && !options.keep_complete) || f.contigs == 0) return;
        prep::string_output out;
        prep::write_ace(in.bytes(), f.edits, out);
        // What the lenient reading found must be what Pelkrin's reader finds in the repaired file.
        aceReader strict("out.ace", out.text(), quiet());
        for (const contig& expected : lenient) {
            contig c;
            if (!strict.next_contig(c) || !(c == expected)) std::abort();
        }
        contig after;
        if (strict.next_contig(after)) std::abort();
    });
}

void prep_sff(const std::uint8_t* data, std::size_t size) {
    run_guarded([&] {
        whole_input in("in.sff", std::span<const std::uint8_t>(data, size));
        std::vector<prep::sff_input> inputs;
        inputs.push_back(prep::sff_input{in.name(), in.bytes(), scan_sff(in.bytes(), in.name())});
        const prep::merge_plan plan = prep::plan_merge(inputs);
        prep::string_output out;
        prep::write_merge(inputs, plan, out);
        if (out.text().size() != plan.bytes) std::abort();
        // Pelkrin's reader finds every read written, and nothing cut short.
        reader r("out.sff", std::span<const std::uint8_t>(reinterpret_cast<const std::uint8_t*>(out.text().data()),
                                                          out.text().size()),
                 quiet());
        read_index index;
        if (r.build_read_index(index) != 1 || !r.walk_complete() || index.size() != plan.reads) std::abort();
    });
}

}  // namespace pelkrin::fuzz
