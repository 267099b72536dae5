#include "driver/command_line.h"

namespace pelkrin {

command_line scan_options(int argc, const char* const* argv, std::ostream& err) {
    command_line cl;
    int i = 1;
    // A lone "-" is a file name, not an option argument.
    for (; i < argc && argv[i][0] == '-' && argv[i][1] != '\0'; ++i) {
        for (const char* c = argv[i] + 1; *c != '\0'; ++c) {
            switch (*c) {
                case 'h':
                case 'H': cl.help = true; break;
                case 'v':
                case 'V': cl.version = true; break;
                case 'f': cl.flowgram = true; break;
                default:
                    err << "Unreconized switch: " << *c << std::endl;
                    cl.help = true;
                    break;
            }
        }
    }
    cl.first_positional = i;
    cl.count_right = (argc == i + 2);
    if (cl.count_right) {
        cl.ace_file = argv[i];
        cl.sff_file = argv[i + 1];
    }
    return cl;
}

outcome decide(const command_line& cl) {
    if (cl.count_right) {
        if (cl.help) return cl.version ? outcome::usage_then_version : outcome::usage;
        return cl.version ? outcome::version : outcome::run;
    }
    // A wrong count prints both texts, unless -v came without -h.
    if (cl.version && !cl.help) return outcome::version;
    return outcome::usage_then_version;
}

}  // namespace pelkrin
