#include "big_contig.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "files.h"

namespace pelkrin::test {

namespace fs = std::filesystem;

void write_big_contig(const fs::path& path, int reads, int length) {
    uint64_t state = 12345;
    auto next = [&state](int below) {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<int>((state >> 33) % static_cast<uint64_t>(below));
    };
    std::string consensus;
    for (int i = 0; i < length; ++i) consensus.push_back(next(60) == 0 ? '*' : "ACGT"[next(4)]);
    auto lines_of = [](const std::string& s) {
        std::string out;
        for (std::size_t i = 0; i < s.size(); i += 60) out.append(s.substr(i, 60)).push_back('\n');
        return out;
    };
    std::string ace = "AS 1 " + std::to_string(reads) + "\n\nCO BigContig " + std::to_string(length) + " " +
                      std::to_string(reads) + " 0 U\n" + lines_of(consensus) + "\nBQ\n";
    for (int i = 0; i < length; ++i) {
        if (consensus[static_cast<std::size_t>(i)] != '*') ace.append(" 30");
        if (i % 50 == 49) ace.push_back('\n');
    }
    ace.append("\n\n");
    std::vector<std::pair<int, int>> placed;  // start, length
    for (int k = 0; k < reads; ++k) {
        const int len = 300 + next(201);
        placed.emplace_back(1 + next(length - len + 1), len);
        ace.append("AF big").append(std::to_string(k)).append(" U ").append(std::to_string(placed.back().first)).push_back('\n');
    }
    ace.append("BS 1 ").append(std::to_string(length)).append(" big0\n");
    for (int k = 0; k < reads; ++k) {
        const auto [start, len] = placed[static_cast<std::size_t>(k)];
        const std::string name = std::string("big").append(std::to_string(k));
        ace.append("\nRD ").append(name).append(" ").append(std::to_string(len)).append(" 0 0\n");
        ace.append(lines_of(consensus.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(len))));
        ace.append("\nQA 1 ").append(std::to_string(len)).append(" 1 ").append(std::to_string(len)).push_back('\n');
        ace.append("DS CHROMAT_FILE: ").append(name).append(" PHD_FILE: ").append(name).append(".phd.1\n");
    }
    ace.push_back('\n');
    write_file(path, ace);

    // Pelkrin -f output for it, made up: ten bases and 100 flows a read, in
    // files larger than a page takes in, so that the page loads them. The
    // ten bases are the read's first unpadded ones, each called at the next
    // flow of its letter (flow order TACG), as a read's own entry calls them.
    std::vector<std::pair<std::string, int>> names;  // name, number
    for (int k = 0; k < reads; ++k) names.emplace_back(std::string("big").append(std::to_string(k)), k);
    std::sort(names.begin(), names.end());
    const std::string header = ">BigContig\t" + std::to_string(reads) + "\t3\n";
    std::string block = header;
    for (const auto& [name, k] : names) {
        block.append(name).append("\t1\n");
        for (int i = 0; i < 10; ++i) block.append(i ? "\t" : "").append(std::to_string(20 + next(20)));
        block.push_back('\n');
        const auto [start, len] = placed[static_cast<std::size_t>(k)];
        int flow = -1;
        int called = 0;
        for (int at = start - 1; at < start - 1 + len && called < 10; ++at) {
            const char base = consensus[static_cast<std::size_t>(at)];
            if (base == '*') continue;
            if (flow < 0 || "TACG"[flow % 4] != base) {
                do ++flow;
                while ("TACG"[flow % 4] != base);
            }
            block.append(called++ ? "\t" : "").append(std::to_string(flow));
        }
        block.push_back('\n');
        for (int i = 0; i < 100; ++i) block.append(i ? "\t" : "").append(std::to_string(next(400)));
        block.push_back('\n');
    }
    fs::path prefix = path;
    prefix.replace_extension();
    write_file(prefix.string() + ".reads", block);
    write_file(prefix.string() + ".qdx", "BigContig\t" + std::to_string(header.size()) + "\t" + std::to_string(reads) + "\t3\n");
}

}  // namespace pelkrin::test
