#include "sff_writer.h"

namespace pelkrin::test {
namespace {

class byte_sink {
public:
    explicit byte_sink(bool big_endian) : big_(big_endian) {}
    void u8(std::uint8_t v) { out.push_back(static_cast<char>(v)); }
    void u16(std::uint16_t v) { put(v, 2); }
    void u32(std::uint32_t v) { put(v, 4); }
    void u64_little(std::uint64_t v) {
        for (int i = 0; i < 8; ++i) u8(static_cast<std::uint8_t>(v >> (8 * i)));
    }
    void text(const std::string& s) { out += s; }
    // Overwrites `width` bytes at `at` with v in the file's byte order.
    void patch(std::size_t at, std::uint64_t v, int width) {
        for (int i = 0; i < width; ++i) {
            const int shift = big_ ? 8 * (width - 1 - i) : 8 * i;
            out[at + static_cast<std::size_t>(i)] = static_cast<char>(static_cast<std::uint8_t>(v >> shift));
        }
    }
    void pad_to_8(std::size_t from) {
        while ((out.size() - from) % 8 != 0) u8(0);
    }
    std::string out;

private:
    void put(std::uint64_t v, int width) {
        for (int i = 0; i < width; ++i) {
            const int shift = big_ ? 8 * (width - 1 - i) : 8 * i;
            u8(static_cast<std::uint8_t>(v >> shift));
        }
    }
    bool big_;
};

}  // namespace

sff_bytes build_sff(const sff_fixture& f) {
    std::string flow_chars = f.flow_chars;
    if (flow_chars.empty()) {
        for (int i = 0; i < f.flows; ++i) flow_chars.push_back("TACG"[i % 4]);
    }
    const std::size_t unpadded = 31 + f.flows + f.key.size();
    const std::size_t header_length = f.pad_headers ? (unpadded + 7) / 8 * 8 : unpadded;

    byte_sink s(f.big_endian);
    s.text(f.big_endian ? ".sff" : "ffs.");
    s.text(std::string("\0\0\0\1", 4));
    s.u64_little(f.index_offset);
    s.u32(f.index_length);
    s.u32(f.claimed_reads.value_or(static_cast<std::uint32_t>(f.reads.size())));
    s.u16(static_cast<std::uint16_t>(header_length));
    s.u16(static_cast<std::uint16_t>(f.key.size()));
    s.u16(f.flows);
    s.u8(1);
    s.text(flow_chars.substr(0, f.flows));
    s.text(f.key);
    while (s.out.size() < header_length) s.u8(0);

    sff_bytes result;
    result.header_length = static_cast<std::uint16_t>(header_length);
    const auto index_block = [&] {
        const std::size_t at = s.out.size();
        std::string manifest = ".mft1.00";
        while (manifest.size() < f.index_block_length) manifest.push_back(static_cast<char>('a' + manifest.size() % 26));
        s.text(manifest.substr(0, f.index_block_length));
        s.pad_to_8(at);
        s.patch(8, at, 8);
        s.patch(16, f.index_block_length, 4);
    };
    for (std::size_t i = 0; i < f.reads.size(); ++i) {
        if (f.index_block_before == i) index_block();
        const auto& r = f.reads[i];
        result.record_offsets.push_back(static_cast<std::int64_t>(s.out.size()));
        const std::size_t start = s.out.size();
        const std::size_t read_header = 16 + r.name.size();
        const std::size_t read_header_length = f.pad_headers ? (read_header + 7) / 8 * 8 : read_header;
        s.u16(static_cast<std::uint16_t>(read_header_length));
        s.u16(static_cast<std::uint16_t>(r.name.size()));
        s.u32(static_cast<std::uint32_t>(r.bases.size()));
        s.u16(r.clip_qual_left);
        s.u16(r.clip_qual_right);
        s.u16(r.clip_adapter_left);
        s.u16(r.clip_adapter_right);
        s.text(r.name);
        while (s.out.size() - start < read_header_length) s.u8(0);
        const std::size_t data = s.out.size();
        for (int i = 0; i < f.flows; ++i) s.u16(i < static_cast<int>(r.flowgram.size()) ? r.flowgram[i] : 0);
        for (std::size_t i = 0; i < r.bases.size(); ++i) s.u8(i < r.flow_index.size() ? r.flow_index[i] : 0);
        s.text(r.bases);
        for (std::size_t i = 0; i < r.bases.size(); ++i) s.u8(i < r.quals.size() ? r.quals[i] : 0);
        s.pad_to_8(data);  // the data section is always padded: readers skip it by rule
    }
    if (f.index_block_before == f.reads.size()) index_block();
    result.bytes = std::move(s.out);
    return result;
}

sff_fixture_read read_from_flows(const std::string& name, const std::vector<int>& flows_of_bases,
                                 const std::vector<std::uint8_t>& quals, std::uint16_t n_flows) {
    sff_fixture_read r;
    r.name = name;
    r.quals = quals;
    int previous = -1;
    for (int flow : flows_of_bases) {
        r.bases.push_back("TACG"[flow % 4]);
        r.flow_index.push_back(static_cast<std::uint8_t>(flow - previous));
        previous = flow;
    }
    r.flowgram.assign(n_flows, 0);
    for (int flow : flows_of_bases) r.flowgram[static_cast<std::size_t>(flow)] += 100;
    return r;
}

}  // namespace pelkrin::test
