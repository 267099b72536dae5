#include "report_browser.h"

#include <gtest/gtest.h>

#include "files.h"
#include "program.h"

namespace pelkrin::test {
namespace {

constexpr const char* error_catcher = R"(<script>
window.testErrors = [];
window.addEventListener('error', function (e) { window.testErrors.push('error: ' + e.message); }, true);
window.addEventListener('unhandledrejection', function (e) { window.testErrors.push('rejection: ' + e.reason); });
(function () {
  var original = console.error;
  console.error = function () {
    window.testErrors.push('console: ' + Array.prototype.join.call(arguments, ' '));
    original.apply(console, arguments);
  };
})();
</script>
)";

constexpr const char* reporter_head = R"(<script>
(function () {
  var lines = [];
  window.put = function (key, value) { lines.push(key + '=' + encodeURIComponent(String(value))); };
  window.finish = function () {
    put('errors', window.testErrors.join(' | '));
    var pre = document.createElement('pre');
    pre.id = 'results';
    pre.textContent = lines.join('\n');
    document.body.appendChild(pre);
  };
})();
</script>
)";

int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

std::string percent_decoded(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() + 0 && hex_value(text[i + 1]) >= 0 && hex_value(text[i + 2]) >= 0) {
            out.push_back(static_cast<char>(hex_value(text[i + 1]) * 16 + hex_value(text[i + 2])));
            i += 2;
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

}  // namespace

std::string without_tags(const std::string& html) {
    std::string out;
    bool in_tag = false;
    for (char c : html) {
        if (c == '<') in_tag = true;
        if (!in_tag) out.push_back(c);
        if (c == '>') in_tag = false;
    }
    return out;
}

browser_results run_in_browser(const std::filesystem::path& page, const std::string& body, bool wait_for_loads) {
    return run_in_browser(page, body, wait_for_loads, "", "");
}

browser_results run_in_browser(const std::filesystem::path& page, const std::string& body, bool wait_for_loads,
                               const std::string& fragment, const std::string& window_size) {
    browser_results results;
    std::string html = read_file(page);
    const auto head = html.find("<head>");
    const auto body_end = html.rfind("</body>");
    if (head == std::string::npos || body_end == std::string::npos) {
        ADD_FAILURE() << page << " has no <head> or no </body>";
        return results;
    }
    html.insert(body_end, std::string(reporter_head) + "<script>\n" + body + "\n</script>\n");
    html.insert(head + 6, error_catcher);
    const std::filesystem::path copy = page.parent_path() / ("under-test-" + page.filename().string());
    write_file(copy, html);

    const std::filesystem::path profile = scratch_subdir("browser-profile");
    std::vector<std::string> args = {"/usr/bin/timeout", "120", chromium_path, "--headless", "--no-sandbox",
                                     "--disable-gpu", "--disable-quic", "--no-first-run",
                                     "--disable-background-networking", "--disable-component-update", "--disable-sync",
                                     "--user-data-dir=" + profile.string()};
    if (wait_for_loads) args.push_back("--virtual-time-budget=20000");
    if (!window_size.empty()) args.push_back("--window-size=" + window_size);
    args.push_back("--dump-dom");
    args.push_back("file://" + copy.string() + fragment);
    const program_result r = run_program(args);
    EXPECT_EQ(r.status, 0) << r.err;
    results.dom = r.out;
    results.browser_err = r.err;
    const auto from = r.out.find("<pre id=\"results\">");
    const auto to = r.out.find("</pre>", from);
    if (from == std::string::npos || to == std::string::npos) {
        ADD_FAILURE() << "no results in the page " << copy << ":\n" << r.out.substr(0, 3000) << "\n" << r.err;
        return results;
    }
    // The results are percent-encoded, so the dump holds no entity inside them.
    std::string text = r.out.substr(from + 18, to - from - 18);
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) end = text.size();
        const std::string line = text.substr(at, end - at);
        const auto eq = line.find('=');
        if (eq != std::string::npos) results.values[line.substr(0, eq)] = percent_decoded(line.substr(eq + 1));
        at = end + 1;
    }
    return results;
}

}  // namespace pelkrin::test
