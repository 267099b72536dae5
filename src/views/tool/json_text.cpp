#include "views/tool/json_text.h"

namespace pelkrin {
namespace {

// Characters written as they are: printable ASCII but for the escaped ones,
// and every byte from 0x80 (parts of UTF-8 characters).
constexpr bool plain_char(unsigned char c) {
    return (c >= 0x20 && c < 0x7f && c != '"' && c != '\\' && c != '<' && c != '>' && c != '&' && c != '\'') ||
           c >= 0x80;
}

struct plain_table {
    bool plain[256];
    constexpr plain_table() : plain() {
        for (int c = 0; c < 256; ++c) plain[c] = plain_char(static_cast<unsigned char>(c));
    }
};
constexpr plain_table plain_chars;

void append_escaped(std::string& out, char ch) {
    static constexpr char hex[] = "0123456789abcdef";
    switch (ch) {
        case '"': out.append("\\\""); return;
        case '\\': out.append("\\\\"); return;
        case '\n': out.append("\\n"); return;
        case '\t': out.append("\\t"); return;
        default: break;
    }
    const auto c = static_cast<unsigned char>(ch);
    out.append("\\u00");
    out.push_back(hex[c >> 4]);
    out.push_back(hex[c & 0xf]);
}

}  // namespace

void append_json_string(std::string& out, std::string_view text) {
    out.push_back('"');
    // Runs of plain characters (bases, most names) go in at once.
    std::size_t i = 0;
    while (i < text.size()) {
        std::size_t j = i;
        while (j < text.size() && plain_chars.plain[static_cast<unsigned char>(text[j])]) ++j;
        out.append(text.data() + i, j - i);
        if (j == text.size()) break;
        append_escaped(out, text[j]);
        i = j + 1;
    }
    out.push_back('"');
}

}  // namespace pelkrin
