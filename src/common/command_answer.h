#pragma once
// What a program's command line asks for, and the answer to all but a run:
// the usage text, the version line, or what is wrong followed by the usage.
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace pelkrin {

enum class command_kind { run, help, version, usage_error };

// A parsed command line (a record with `command` and `error`) that is a
// usage error saying `what`.
template <typename Parsed>
Parsed usage_error_of(std::string what) {
    Parsed parsed;
    parsed.command = command_kind::usage_error;
    parsed.error = std::move(what);
    return parsed;
}

// The exit status of a command line that asks for no run, after writing its
// answer: 0 after the usage text or the version line (standard output), 2
// after "PROGRAM: ERROR" and the usage text (standard error); nothing for a
// run, which the caller goes on to.
std::optional<int> answer_command(command_kind kind, std::string_view program, const std::string& usage,
                                  const std::string& error, std::ostream& out, std::ostream& err);

}  // namespace pelkrin
