#include "lenient/sff_layout.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string_view>

#include "common/fatal_error.h"
#include "lenient/file_label.h"
#include "common/progress.h"
#include "sff/byte_order.h"
#include "sff/record_decode.h"
#include "sff/sff_header.h"
#include "sff/sff_read.h"

namespace pelkrin {
namespace {

constexpr unsigned char magic_big[4] = {'.', 's', 'f', 'f'};
constexpr unsigned char magic_little[4] = {'f', 'f', 's', '.'};

std::uint64_t align8(std::uint64_t n) { return (n + 7) / 8 * 8; }

// An SFF magic number of either byte order at `at`.
bool magic_at(std::span<const std::uint8_t> bytes, std::uint64_t at, bool& big_endian) {
    if (at + 4 > bytes.size()) return false;
    if (std::memcmp(bytes.data() + at, magic_big, 4) == 0) {
        big_endian = true;
        return true;
    }
    if (std::memcmp(bytes.data() + at, magic_little, 4) == 0) {
        big_endian = false;
        return true;
    }
    return false;
}

struct fields {
    const std::uint8_t* p;
    bool big;
    std::uint16_t u16(std::size_t at) const {
        const std::uint16_t v = load_le16(p + at);
        return big ? reverse_bytes16(v) : v;
    }
    std::uint32_t u32(std::size_t at) const {
        const std::uint32_t v = load_le32(p + at);
        return big ? reverse_bytes32(v) : v;
    }
    std::uint64_t u64(std::size_t at) const {
        const std::uint64_t v = load_le64(p + at);
        return big ? reverse_bytes64(v) : v;
    }
};

std::string at_text(std::uint64_t n) { return std::to_string(n); }

class walker {
public:
    walker(std::span<const std::uint8_t> bytes, progress* shown) : bytes_(bytes), shown_(shown) {}

    // Reads the common header at `start` into `part`; an empty text when it
    // makes sense, else what is wrong with it.
    std::string header(std::uint64_t start, bool big, sff_part& part) const {
        part.start = start;
        part.big_endian = big;
        if (start + sff_header_p1::size > bytes_.size()) return "the common header is cut off";
        const fields f{bytes_.data() + start, big};
        std::memcpy(part.version, f.p + 4, 4);
        part.index_offset = f.u64(8);
        part.index_length = f.u32(16);
        part.announced_reads = f.u32(20);
        part.header_length = f.u16(24);
        const std::uint16_t key_length = f.u16(26);
        part.flows = f.u16(28);
        part.format_code = f.p[30];
        const std::uint64_t needed = sff_header_p1::size + std::uint64_t{part.flows} + key_length;
        if (part.header_length < needed)
            return "the header length " + std::to_string(part.header_length) + " is shorter than its " +
                   std::to_string(needed) + " bytes of fields, flow characters and key";
        if (start + part.header_length > bytes_.size()) return "the common header is cut off";
        const char* chars = reinterpret_cast<const char*>(f.p + sff_header_p1::size);
        part.flow_chars.assign(chars, part.flows);
        part.key.assign(chars + part.flows, key_length);
        if (part.format_code != 1)
            return "flowgram format code " + std::to_string(part.format_code) + " (only 1 is known)";
        return {};
    }

    // Walks the records of `part`; false when the walk had to stop.
    bool records(sff_part& part, std::uint32_t part_number, sff_layout& out) {
        const std::uint64_t start = part.start;
        const std::uint64_t index_at = part.index_length > 0 ? start + part.index_offset : 0;
        const std::uint64_t index_end = start + align8(part.index_offset + part.index_length);
        std::uint64_t pos = start + part.header_length;
        part.content_end = std::min<std::uint64_t>(pos, bytes_.size());
        for (std::uint64_t i = 0; i < part.announced_reads; ++i) {
            if (index_at != 0 && pos == index_at) {
                part.index = i == 0 ? index_place::before_reads : index_place::among_reads;
                pos = index_end;
            }
            if (shown_ != nullptr) shown_->at(pos);
            const auto which = [&] {
                return "read " + std::to_string(i + 1) + " of " + std::to_string(part.announced_reads);
            };
            if (pos + sff_read::header_size > bytes_.size())
                return stop(out, pos, "the file ends inside the header of " + which());
            const fields f{bytes_.data() + pos, part.big_endian};
            sff_record r;
            r.offset = pos;
            r.part = part_number;
            r.read_header_length = f.u16(0);
            r.name_length = f.u16(2);
            r.number_of_bases = f.u32(4);
            if (r.read_header_length < sff_read::header_size + r.name_length)
                return stop(out, pos, "the header length " + std::to_string(r.read_header_length) + " of " + which() +
                                          " is too short for its name of " + std::to_string(r.name_length) +
                                          " bytes");
            r.data_offset = pos + sff_read::header_size + r.name_length + header_padding(r.read_header_length, r.name_length);
            const std::uint64_t data_length = std::uint64_t{part.flows} * 2 + 3 * std::uint64_t{r.number_of_bases};
            const std::uint64_t data_end = r.data_offset + data_length;
            if (data_end > bytes_.size()) {
                part.cut_inside_read = true;
                return stop(out, pos, "the file ends inside " + which() + " (" +
                                          std::to_string(r.number_of_bases) + " bases)");
            }
            // The name as Pelkrin's index keys it (up to its first zero byte), hashed
            // while it is at hand: the merge sorts records by it.
            const auto name = reinterpret_cast<const char*>(bytes_.data() + pos + sff_read::header_size);
            const std::size_t name_bytes = static_cast<std::size_t>(std::find(name, name + r.name_length, '\0') - name);
            r.key_hash = std::hash<std::string_view>{}(std::string_view(name, name_bytes));
            const std::uint64_t padded = data_end + data_padding(data_length);
            r.length = std::min<std::uint64_t>(padded, bytes_.size()) - pos;
            out.records.push_back(r);
            ++part.reads_found;
            part.content_end = data_end;
            pos = padded;
        }
        if (index_at != 0 && pos == index_at) {
            part.index = part.announced_reads == 0 ? index_place::before_reads : index_place::after_reads;
            pos = index_end;
            part.content_end = std::min<std::uint64_t>(index_at + part.index_length, bytes_.size());
        }
        if (index_at != 0 && part.index == index_place::none) part.index = index_place::elsewhere;
        part.end = std::min<std::uint64_t>(pos, bytes_.size());
        return true;
    }

    bool stop(sff_layout& out, std::uint64_t at, std::string what) {
        out.stopped = std::move(what);
        out.stopped_at = at;
        return false;
    }

private:
    std::span<const std::uint8_t> bytes_;
    progress* shown_;
};

// Bytes from `at` to the end that are all zero: padding, nothing to report.
bool only_zeros(std::span<const std::uint8_t> bytes, std::uint64_t at) {
    return std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end(),
                       [](std::uint8_t b) { return b == 0; });
}

// Where another SFF file begins after `part`, or 0 when none does. Files are
// joined by whoever had them at hand: right after the last record or index
// block, on the next multiple of 4 or 8, or after some zero bytes. So the
// magic number is looked for on every byte of the padding the walk passed
// over, and at the first byte after it that is not zero: a few comparisons
// and one pass over zeros, never a search of the rest of the file.
std::uint64_t next_part_at(std::span<const std::uint8_t> bytes, const sff_part& part, bool& big_endian) {
    for (std::uint64_t at = part.content_end; at < part.end; ++at)
        if (magic_at(bytes, at, big_endian)) return at;
    const auto nonzero = std::find_if(bytes.begin() + static_cast<std::ptrdiff_t>(part.end), bytes.end(),
                                      [](std::uint8_t b) { return b != 0; });
    const auto at = static_cast<std::uint64_t>(nonzero - bytes.begin());
    return magic_at(bytes, at, big_endian) ? at : 0;
}

}  // namespace

std::string_view sff_layout::key(std::span<const std::uint8_t> bytes, const sff_record& r) const {
    const auto name = reinterpret_cast<const char*>(bytes.data() + r.offset + sff_read::header_size);
    return std::string_view(name, static_cast<std::size_t>(std::find(name, name + r.name_length, '\0') - name));
}

std::string_view sff_layout::bases(std::span<const std::uint8_t> bytes, const sff_record& r) const {
    const std::uint64_t at = r.data_offset + std::uint64_t{parts[r.part].flows} * 2 + r.number_of_bases;
    return std::string_view(reinterpret_cast<const char*>(bytes.data() + at), r.number_of_bases);
}

std::string_view index_place_text(index_place p) {
    switch (p) {
        case index_place::none: return "none";
        case index_place::before_reads: return "before the reads";
        case index_place::among_reads: return "among the reads";
        case index_place::after_reads: return "after the reads";
        case index_place::elsewhere: return "not at a record boundary";
    }
    return "none";
}

sff_layout scan_sff(std::span<const std::uint8_t> bytes, const std::string& name, progress* shown,
                    std::string_view program) {
    sff_layout out;
    walker walk(bytes, shown);
    bool big = true;
    if (!magic_at(bytes, 0, big))
        throw fatal_error(1, file_label(program, name).append(
                                 ": byte 0: not an SFF file (no \".sff\" magic number)\n"));
    std::uint64_t at = 0;
    while (true) {
        sff_part part;
        const std::string wrong = walk.header(at, big, part);
        if (!wrong.empty()) {
            if (out.parts.empty())
                throw fatal_error(1, file_label(program, name).append(": byte ").append(at_text(at))
                                         .append(": ").append(wrong).append("\n"));
            walk.stop(out, at, "the SFF header here: " + wrong);
            return out;
        }
        out.parts.push_back(part);
        sff_part& added = out.parts.back();
        if (!walk.records(added, static_cast<std::uint32_t>(out.parts.size() - 1), out)) return out;
        if (added.content_end >= bytes.size()) break;
        at = next_part_at(bytes, added, big);
        if (at == 0) {
            if (added.end < bytes.size() && !only_zeros(bytes, added.end)) {
                out.stray_offset = added.end;
                out.stray_bytes = bytes.size() - added.end;
            }
            break;
        }
        // A file begun inside the padding of the last record: the record ends where it begins.
        if (!out.records.empty()) {
            sff_record& last = out.records.back();
            if (last.part == out.parts.size() - 1 && last.offset + last.length > at) last.length = at - last.offset;
        }
        added.end = std::min(added.end, at);
    }
    if (shown != nullptr) shown->finish();
    return out;
}

}  // namespace pelkrin
