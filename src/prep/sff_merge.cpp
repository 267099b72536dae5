#include "prep/sff_merge.h"

#include <algorithm>
#include <string_view>

#include "common/fatal_error.h"
#include "common/output_file.h"
#include "common/text_buffer.h"
#include "sff/byte_order.h"
#include "sff/record_decode.h"
#include "sff/sff_header.h"
#include "sff/sff_read.h"

namespace pelkrin::prep {
namespace {

std::string prefix(const std::string& name) { return std::string("Pelkrin-prep: ").append(name).append(": "); }

// A text for messages: the characters, shortened when long.
std::string shown(const std::string& chars) {
    if (chars.size() <= 24) return "\"" + chars + "\"";
    return "\"" + chars.substr(0, 24) + "...\" (" + std::to_string(chars.size()) + ")";
}

std::uint64_t align8(std::uint64_t n) { return (n + 7) / 8 * 8; }

void put16(std::string& s, std::uint16_t v) {
    s.push_back(static_cast<char>(v >> 8));
    s.push_back(static_cast<char>(v & 0xFF));
}

void put32(std::string& s, std::uint32_t v) {
    put16(s, static_cast<std::uint16_t>(v >> 16));
    put16(s, static_cast<std::uint16_t>(v & 0xFFFF));
}

std::uint16_t field16(const std::uint8_t* p, bool big) {
    const std::uint16_t v = load_le16(p);
    return big ? reverse_bytes16(v) : v;
}

}  // namespace

merge_plan plan_merge_header(const std::vector<sff_input>& inputs) {
    merge_plan plan;
    // The part with the most flows gives the flow characters; every other must begin alike.
    const sff_part* widest = nullptr;
    const std::string* widest_name = nullptr;
    for (const sff_input& in : inputs) {
        if (!in.layout.stopped.empty())
            throw fatal_error(1, prefix(in.name) + "byte " + std::to_string(in.layout.stopped_at) + ": " +
                                     in.layout.stopped + "\n");
        for (const sff_part& p : in.layout.parts) {
            if (widest == nullptr || p.flows > widest->flows) {
                widest = &p;
                widest_name = &in.name;
            }
        }
    }
    if (widest == nullptr) return plan;
    plan.flows = widest->flows;
    plan.flow_chars = widest->flow_chars;
    plan.key = widest->key;
    std::copy_n(widest->version, 4, plan.version);
    // The header's length is a 16-bit field: flows and key that need more
    // cannot be written as one file's header.
    if (align8(sff_header_p1::size + std::uint64_t{plan.flows} + plan.key.size()) > 0xFFFF)
        throw fatal_error(1, prefix(*widest_name) + std::to_string(plan.flows) + " flows and a key of " +
                                 std::to_string(plan.key.size()) +
                                 " bases need a header longer than an SFF header can say (65535 bytes)\n");
    for (const sff_input& in : inputs) {
        for (const sff_part& p : in.layout.parts) {
            if (p.key != plan.key)
                throw fatal_error(1, std::string("Pelkrin-prep: ").append(in.name).append(" and ").append(*widest_name)
                                         .append(" have different keys: ").append(shown(p.key)).append(" and ")
                                         .append(shown(plan.key)).append("\n"));
            if (plan.flow_chars.compare(0, p.flows, p.flow_chars) != 0)
                throw fatal_error(1, std::string("Pelkrin-prep: ").append(in.name).append(" and ").append(*widest_name)
                                         .append(" have different flow characters: ").append(shown(p.flow_chars))
                                         .append(" and ").append(shown(plan.flow_chars)).append("\n"));
        }
        bool noted = false;
        for (const sff_part& p : in.layout.parts) {
            if (p.flows < plan.flows && !noted) {
                noted = true;
                plan.notes.push_back(prefix(in.name) + "note: " + std::to_string(p.flows) +
                                     " flows per read where others have " + std::to_string(plan.flows) +
                                     ": its reads' flowgrams are padded with zero values");
            }
        }
        if (in.layout.stray_bytes > 0)
            plan.notes.push_back(prefix(in.name) + "note: byte " + std::to_string(in.layout.stray_offset) + ": " +
                                 std::to_string(in.layout.stray_bytes) +
                                 " bytes after the last read that are no SFF file are left out");
    }

    return plan;
}

merge_plan plan_merge(const std::vector<sff_input>& inputs) {
    merge_plan plan = plan_merge_header(inputs);
    // No SFF file in any of them: nothing more to settle.
    if (std::all_of(inputs.begin(), inputs.end(), [](const sff_input& in) { return in.layout.parts.empty(); }))
        return plan;
    // The last record of each name is the one kept, as Pelkrin's index would
    // take it. Records are sorted by the hash of their name (taken when the
    // walk had the name at hand), so that only records whose hashes agree
    // have their names compared: the names stay where they are in the files.
    struct named {
        std::uint64_t hash;
        std::size_t input;
        std::size_t record;
    };
    std::vector<named> all;
    std::size_t total = 0;
    for (const sff_input& in : inputs) total += in.layout.records.size();
    all.reserve(total);
    plan.kept.resize(inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const sff_layout& l = inputs[i].layout;
        plan.kept[i].assign(l.records.size(), true);
        for (std::size_t r = 0; r < l.records.size(); ++r) all.push_back(named{l.records[r].key_hash, i, r});
    }
    const auto order = [](const named& a, const named& b) {
        return a.hash != b.hash ? a.hash < b.hash : a.input != b.input ? a.input < b.input : a.record < b.record;
    };
    std::sort(all.begin(), all.end(), order);
    const auto key_of = [&](const named& n) {
        return inputs[n.input].layout.key(inputs[n.input].bytes, inputs[n.input].layout.records[n.record]);
    };
    // Each record left out, with the later record of its name that is kept.
    std::vector<std::pair<named, named>> left_out;
    for (std::size_t a = 0; a < all.size();) {
        std::size_t b = a + 1;
        while (b < all.size() && all[b].hash == all[a].hash) ++b;
        // Within a run of one hash, in file order: a record whose name comes again later is left out.
        for (std::size_t x = a; x + 1 < b; ++x) {
            for (std::size_t y = b; y-- > x + 1;) {
                if (key_of(all[x]) != key_of(all[y])) continue;
                plan.kept[all[x].input][all[x].record] = false;
                left_out.emplace_back(all[x], all[y]);
                break;
            }
        }
        a = b;
    }
    plan.duplicates = left_out.size();
    std::sort(left_out.begin(), left_out.end(), [](const auto& p, const auto& q) {
        return p.first.input != q.first.input ? p.first.input < q.first.input : p.first.record < q.first.record;
    });
    for (std::size_t d = 0; d < left_out.size() && d < 10; ++d) {
        const auto& [was, kept] = left_out[d];
        plan.notes.push_back(std::string("Pelkrin-prep: read ").append(key_of(was)).append(" occurs again: ")
                                 .append(inputs[was.input].name).append(" byte ")
                                 .append(std::to_string(inputs[was.input].layout.records[was.record].offset))
                                 .append(" is left out for ").append(inputs[kept.input].name).append(" byte ")
                                 .append(std::to_string(inputs[kept.input].layout.records[kept.record].offset)));
    }
    if (plan.duplicates > 10)
        plan.notes.push_back("Pelkrin-prep: " + std::to_string(plan.duplicates) +
                             " records in all were left out for a later record of their name");

    plan.bytes = align8(sff_header_p1::size + std::uint64_t{plan.flows} + plan.key.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const sff_layout& l = inputs[i].layout;
        for (std::size_t r = 0; r < l.records.size(); ++r) {
            if (!plan.kept[i][r]) continue;
            ++plan.reads;
            const sff_record& rec = l.records[r];
            const std::uint64_t data = std::uint64_t{plan.flows} * 2 + 3 * std::uint64_t{rec.number_of_bases};
            plan.bytes += (rec.data_offset - rec.offset) + data + data_padding(data);
        }
    }
    if (plan.reads > 0xFFFFFFFFu)
        throw fatal_error(1, "Pelkrin-prep: " + std::to_string(plan.reads) +
                                 " reads are more than one SFF file can hold\n");
    return plan;
}

void write_merge(const std::vector<sff_input>& inputs, const merge_plan& plan, text_buffer& out,
                 output_file* direct, void (*done)(void*, std::uint64_t), void* context) {
    std::string header;
    header.append(".sff");
    header.append(reinterpret_cast<const char*>(plan.version), 4);
    header.append(8, '\0');  // no index block
    put32(header, 0);
    put32(header, static_cast<std::uint32_t>(plan.reads));
    const std::uint64_t header_length = align8(sff_header_p1::size + std::uint64_t{plan.flows} + plan.key.size());
    put16(header, static_cast<std::uint16_t>(header_length));
    put16(header, static_cast<std::uint16_t>(plan.key.size()));
    put16(header, plan.flows);
    header.push_back(1);
    header.append(plan.flow_chars);
    header.append(plan.key);
    header.resize(header_length, '\0');
    out.write(header);

    const std::string zeros(std::size_t{plan.flows} * 2 + 8, '\0');
    std::string converted;
    std::uint64_t handled = 0;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const sff_input& in = inputs[i];
        const auto text = [&](std::uint64_t at, std::uint64_t n) {
            return std::string_view(reinterpret_cast<const char*>(in.bytes.data() + at), n);
        };
        // Records that go out as they are, one after the other in the input, are
        // copied by the kernel from file to file where it can; else they go
        // from the mapping to the file in pieces of 1 MB (larger pieces made the
        // kernel's copy from the mapping slower and less steady).
        std::uint64_t run_start = 0;
        std::uint64_t run_end = 0;
        const auto end_run = [&] {
            if (run_end == run_start) return;
            if (direct != nullptr && in.descriptor >= 0)
                run_start += direct->copy_range(in.descriptor, static_cast<std::int64_t>(run_start), run_end - run_start);
            constexpr std::uint64_t piece = std::uint64_t{1} << 20;
            for (std::uint64_t at = run_start; at < run_end; at += piece) {
                const std::uint64_t n = std::min(piece, run_end - at);
                if (direct != nullptr) direct->write_through(reinterpret_cast<const char*>(in.bytes.data() + at), n);
                else out.write(text(at, n));
            }
            run_start = run_end = 0;
        };
        for (std::size_t r = 0; r < in.layout.records.size(); ++r) {
            const sff_record& rec = in.layout.records[r];
            if (done != nullptr && (r & 1023) == 0) done(context, handled + rec.offset);
            if (!plan.kept[i][r]) continue;
            const sff_part& part = in.layout.parts[rec.part];
            const std::uint64_t bases = rec.number_of_bases;
            const std::uint64_t flow_bytes = std::uint64_t{part.flows} * 2;
            const std::uint64_t data = flow_bytes + 3 * bases;
            const std::uint64_t whole = rec.data_offset + data + data_padding(data) - rec.offset;
            if (part.big_endian && part.flows == plan.flows && rec.length == whole) {
                // The record and its padding, byte for byte.
                if (run_end != rec.offset) {
                    end_run();
                    run_start = rec.offset;
                }
                run_end = rec.offset + whole;
                continue;
            }
            end_run();
            if (part.big_endian) {
                // The read header, name, padding and flowgram as they are.
                out.write(text(rec.offset, rec.data_offset + flow_bytes - rec.offset));
            } else {
                // A little-endian file: the header's fields and the flowgram values
                // turned to big-endian, each two-byte value's bytes swapped.
                const std::uint8_t* p = in.bytes.data() + rec.offset;
                converted.clear();
                put16(converted, rec.read_header_length);
                put16(converted, rec.name_length);
                put32(converted, rec.number_of_bases);
                for (std::size_t f = 8; f < sff_read::header_size; f += 2) put16(converted, field16(p + f, false));
                converted.append(text(rec.offset + sff_read::header_size,
                                      rec.data_offset - rec.offset - sff_read::header_size));
                const std::size_t at = converted.size();
                converted.resize(at + flow_bytes);
                char* to = converted.data() + at;
                const std::uint8_t* values = in.bytes.data() + rec.data_offset;
                for (std::size_t b = 0; b < flow_bytes; b += 2) {
                    to[b] = static_cast<char>(values[b + 1]);
                    to[b + 1] = static_cast<char>(values[b]);
                }
                out.write(converted);
            }
            // Flows this file's reads lack are zero.
            out.write(std::string_view(zeros.data(), (std::size_t{plan.flows} - part.flows) * 2));
            out.write(text(rec.data_offset + flow_bytes, 3 * bases));
            const std::uint64_t written = std::uint64_t{plan.flows} * 2 + 3 * bases;
            out.write(std::string_view(zeros.data(), data_padding(written)));
        }
        end_run();
        handled += in.bytes.size();
    }
    if (done != nullptr) done(context, handled);
}

}  // namespace pelkrin::prep
