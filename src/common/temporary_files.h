#pragma once
// Temporary output files that a signal ending the program must not leave
// behind. While any is registered, SIGINT, SIGTERM and SIGHUP remove every
// registered file and then end the program as the signal would have.
#include <string>

namespace pelkrin {

void register_temporary_file(const std::string& path);
void unregister_temporary_file(const std::string& path);

}  // namespace pelkrin
