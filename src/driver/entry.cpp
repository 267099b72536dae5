#include "driver/entry.h"

#include <iostream>

#include "common/program_entry.h"
#include "driver/command_line.h"
#include "driver/texts.h"
#include "reads_format/output_names.h"

namespace pelkrin {

int entry(int argc, const char* const* argv, const run_function& run) {
    const command_line cl = scan_options(argc, argv, std::cerr);
    switch (decide(cl)) {
        case outcome::usage: print_usage(std::cout); return 0;
        case outcome::version: print_version(std::cout); return 0;
        case outcome::usage_then_version:
            print_usage(std::cout);
            print_version(std::cout);
            return 0;
        case outcome::run: break;
    }
    const std::string prefix = output_prefix(cl.ace_file);
    return run_guarded(PRG, std::cerr, [&] {
        return run(run_request{cl.flowgram, cl.ace_file, cl.sff_file, reads_file_name(prefix),
                               index_file_name(prefix)});
    });
}

}  // namespace pelkrin
