#include "bam/bam_header.h"

#include <htslib/hts.h>

#include <cctype>
#include <set>

#include "pelkrin_version.h"  // VERSION

namespace pelkrin::bam {
namespace {

// Header fields end at a tab or a line end: neither may stand in a value.
std::string field_value(std::string_view text) {
    std::string value(text);
    for (char& c : value) {
        if (c == '\t' || c == '\n' || c == '\r') c = ' ';
    }
    return value;
}

bool ends_with(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

}  // namespace

std::string sequence_md5(std::string_view bases) {
    hts_md5_context* md5 = hts_md5_init();
    if (md5 == nullptr) return {};
    std::string upper;
    upper.reserve(bases.size());
    for (char c : bases) upper.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    hts_md5_update(md5, upper.data(), static_cast<unsigned long>(upper.size()));
    unsigned char digest[16];
    hts_md5_final(digest, md5);
    hts_md5_destroy(md5);
    char hex[33];
    hts_md5_hex(hex, digest);
    return std::string(hex, 32);
}

std::vector<std::string> read_group_ids(const std::vector<std::string>& sff_files) {
    std::vector<std::string> ids;
    std::set<std::string> taken;
    for (const std::string& file : sff_files) {
        std::string_view name = file;
        if (const auto slash = name.rfind('/'); slash != std::string_view::npos) name.remove_prefix(slash + 1);
        if (ends_with(name, ".gz")) name.remove_suffix(3);
        if (ends_with(name, ".sff") || ends_with(name, ".SFF")) name.remove_suffix(4);
        std::string id = field_value(name);
        for (char& c : id) {
            if (c == ' ') c = '_';
        }
        if (id.empty()) id = "sff";
        std::string unique = id;
        for (int n = 2; taken.count(unique) > 0; ++n) unique = id + "." + std::to_string(n);
        taken.insert(unique);
        ids.push_back(unique);
    }
    return ids;
}

std::string header_text(const std::vector<reference_sequence>& references, const std::vector<read_group>& groups,
                        std::string_view sample, std::string_view command_line) {
    std::string text = "@HD\tVN:1.6\tSO:coordinate\n";
    for (const reference_sequence& r : references) {
        text.append("@SQ\tSN:").append(r.name).append("\tLN:").append(std::to_string(r.length));
        if (!r.md5.empty()) text.append("\tM5:").append(r.md5);
        text.push_back('\n');
    }
    for (const read_group& g : groups) {
        text.append("@RG\tID:").append(g.id).append("\tPL:LS454");
        if (!g.flow_chars.empty()) text.append("\tFO:").append(field_value(g.flow_chars));
        if (!g.key.empty()) text.append("\tKS:").append(field_value(g.key));
        text.append("\tSM:").append(field_value(sample)).push_back('\n');
    }
    text.append("@PG\tID:Pelkrin-bam\tPN:Pelkrin-bam\tVN:").append(VERSION);
    text.append("\tCL:").append(field_value(command_line)).push_back('\n');
    return text;
}

}  // namespace pelkrin::bam
