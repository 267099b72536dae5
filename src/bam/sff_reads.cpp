#include "bam/sff_reads.h"

#include "common/fatal_error.h"
#include "common/progress.h"
#include "lenient/file_label.h"
#include "sff/byte_order.h"

namespace pelkrin::bam {
namespace {

constexpr const char* program = "Pelkrin-bam";

}  // namespace

record_bases found_record::bases() const {
    const auto n = static_cast<std::size_t>(view.number_of_bases);
    return record_bases{std::span<const char>(reinterpret_cast<const char*>(view.bases), n),
                        std::span<const std::uint8_t>(view.quality, n),
                        std::span<const std::uint8_t>(view.flow_index, n), clip_start};
}

void found_record::flowgram(std::vector<std::uint16_t>& out) const {
    out.resize(view.flows);
    for (std::size_t i = 0; i < view.flows; ++i) {
        const std::uint8_t* p = view.flowgram + 2 * i;
        out[i] = view.big_endian ? static_cast<std::uint16_t>(p[0] << 8 | p[1])
                                 : static_cast<std::uint16_t>(p[1] << 8 | p[0]);
    }
}

sff_reads::sff_reads(const std::vector<std::string>& names, std::ostream& err) {
    files_.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        sff_file f;
        f.name = names[i];
        f.input = std::make_unique<whole_input>(f.name, err, program);
        progress shown(err, file_label(program, "reading " + f.name), f.input->bytes().size(),
                       progress::shown_for(f.input->bytes().size()));
        f.layout = scan_sff(f.input->bytes(), f.name, &shown, program);
        if (!f.layout.stopped.empty()) {
            throw fatal_error(1, file_label(program, f.name) + ": byte " + std::to_string(f.layout.stopped_at) + ": " +
                                     f.layout.stopped + "\n");
        }
        files_.push_back(std::move(f));
    }
    index_names();
}

sff_reads::sff_reads(const std::string& name, std::span<const std::uint8_t> bytes) {
    sff_file f;
    f.name = name;
    f.input = std::make_unique<whole_input>(name, bytes);
    f.layout = scan_sff(f.input->bytes(), f.name, nullptr, program);
    if (!f.layout.stopped.empty()) {
        throw fatal_error(1, file_label(program, f.name) + ": byte " + std::to_string(f.layout.stopped_at) + ": " +
                                 f.layout.stopped + "\n");
    }
    files_.push_back(std::move(f));
    index_names();
}

void sff_reads::index_names() {
    std::size_t total = 0;
    for (const sff_file& f : files_) total += f.layout.records.size();
    names_.reserve(total);
    records_.reserve(total);
    for (std::size_t i = 0; i < files_.size(); ++i) {
        const sff_file& f = files_[i];
        for (std::size_t r = 0; r < f.layout.records.size(); ++r) {
            records_.push_back(record_ref{static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(r)});
            names_.set(std::string(f.layout.key(f.input->bytes(), f.layout.records[r])),
                       static_cast<std::int64_t>(records_.size()));
        }
    }
}

bool sff_reads::find(std::string_view name, found_record& out) const {
    const std::int64_t number = names_.position_of(name);
    if (number <= 0) return false;
    const record_ref ref = records_[static_cast<std::size_t>(number - 1)];
    const sff_file& f = files_[ref.file];
    const sff_record& r = f.layout.records[ref.record];
    const sff_part& part = f.layout.parts[r.part];
    out.file = ref.file;
    out.part = &part;
    if (!view_record(f.input->bytes(), static_cast<std::int64_t>(r.offset), part.big_endian, part.flows, out.view))
        return false;
    // The kept range begins after both left clips.
    out.clip_start = std::max(out.view.clip_qual_left, out.view.clip_adapter_left);
    return true;
}

}  // namespace pelkrin::bam
