#include "common/command_answer.h"

#include "common/version_line.h"

namespace pelkrin {

std::optional<int> answer_command(command_kind kind, std::string_view program, const std::string& usage,
                                  const std::string& error, std::ostream& out, std::ostream& err) {
    switch (kind) {
        case command_kind::help:
            out << usage << std::flush;
            return 0;
        case command_kind::version:
            out << version_line(program) << std::flush;
            return 0;
        case command_kind::usage_error:
            err << program << ": " << error << '\n' << usage << std::flush;
            return 2;
        case command_kind::run:
            break;
    }
    return std::nullopt;
}

}  // namespace pelkrin
