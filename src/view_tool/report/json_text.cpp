#include "view_tool/report/json_text.h"

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

// Copies `n` characters; false when one of them is not plain. Every test is
// on one byte, so that the compiler does many bytes a step.
[[gnu::noinline]] bool copy_plain(const char* __restrict from, char* __restrict to, std::size_t n) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(from);
    unsigned char escaped = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const unsigned char c = bytes[i];
        const unsigned char control = c < 0x20 ? 1 : 0;
        const unsigned char del = c == 0x7f ? 1 : 0;
        const unsigned char quote = c == '"' ? 1 : 0;
        const unsigned char apostrophe = c == '\'' ? 1 : 0;
        const unsigned char backslash = c == '\\' ? 1 : 0;
        const unsigned char less = c == '<' ? 1 : 0;
        const unsigned char greater = c == '>' ? 1 : 0;
        const unsigned char ampersand = c == '&' ? 1 : 0;
        escaped |= static_cast<unsigned char>(control | del | quote | apostrophe | backslash | less | greater |
                                              ampersand);
        to[i] = static_cast<char>(c);
    }
    return escaped == 0;
}

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
    // Most texts (bases, most names) need no escape: copied at once.
    const std::size_t at = out.size();
    out.resize(at + text.size());
    if (copy_plain(text.data(), out.data() + at, text.size())) {
        out.push_back('"');
        return;
    }
    out.resize(at);
    // Runs of plain characters go in at once.
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
