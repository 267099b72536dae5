// Pelkrin-prep: finds and repairs what keeps an assembly and its SFF files
// from Pelkrin: ACE dialects, several SFF files, wrong pairs.
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "common/fatal_error.h"
#include "prep/prep_run.h"

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    try {
        return pelkrin::prep::run_prep(args, std::cout, std::cerr);
    } catch (const pelkrin::fatal_error& e) {
        std::cerr << e.message() << std::flush;
        return e.status();
    } catch (const std::bad_alloc&) {
        std::cerr << "Pelkrin-prep: out of memory\n";
        return 1;
    }
}
