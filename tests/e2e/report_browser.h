#pragma once
// Pages of Pelkrin-view's report opened in headless Chromium with a test
// script added: the script drives the page and leaves what it found as
// key=value lines (values percent-encoded) in a <pre id="results"> element,
// which the test reads from the dumped DOM. Errors that the page throws or
// logs are gathered from its first script on.
#include <filesystem>
#include <map>
#include <string>

namespace pelkrin::test {

inline constexpr const char* chromium_path = "/usr/bin/chromium";

struct browser_results {
    std::map<std::string, std::string> values;  // decoded
    std::string dom;                            // the whole dumped DOM
    std::string browser_err;
};

// Copies `page` (a file of a report folder) to a sibling file with the test
// script `body` added at the end of its body, opens the copy and returns
// what the script reported. `body` may call put(key, value) and must call
// finish() once, perhaps later (wait_for_loads lets loads started by the
// script complete: the browser's clock runs virtually).
browser_results run_in_browser(const std::filesystem::path& page, const std::string& body, bool wait_for_loads);

// The same, the page opened with `fragment` as its address's fragment (from
// '#' on, or empty) in a window of `window_size` ("WIDTH,HEIGHT", or empty
// for the browser's own).
browser_results run_in_browser(const std::filesystem::path& page, const std::string& body, bool wait_for_loads,
                               const std::string& fragment, const std::string& window_size);

// The text of HTML with its tags taken out.
std::string without_tags(const std::string& html);

}  // namespace pelkrin::test
