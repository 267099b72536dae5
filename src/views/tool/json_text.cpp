#include "views/tool/json_text.h"

namespace pelkrin {

void append_json_string(std::string& out, std::string_view text) {
    static constexpr char hex[] = "0123456789abcdef";
    out.push_back('"');
    for (char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        switch (ch) {
            case '"': out.append("\\\""); continue;
            case '\\': out.append("\\\\"); continue;
            case '\n': out.append("\\n"); continue;
            case '\t': out.append("\\t"); continue;
            default: break;
        }
        if (c < 0x20 || ch == '<' || ch == '>' || ch == '&' || ch == '\'' || c == 0x7f) {
            out.append("\\u00");
            out.push_back(hex[c >> 4]);
            out.push_back(hex[c & 0xf]);
        } else {
            out.push_back(ch);
        }
    }
    out.push_back('"');
}

}  // namespace pelkrin
