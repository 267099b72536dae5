#include <iostream>

#include "driver/entry.h"
#include "driver/run.h"

int main(int argc, char** argv) {
    return pelkrin::entry(argc, argv, [](const pelkrin::run_request& request) {
        return pelkrin::run(request, pelkrin::console{std::cout, std::cerr});
    });
}
