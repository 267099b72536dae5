#pragma once
// What every fuzz target needs: a console that drops the readers' reports,
// scratch files for the whole run (which takes file names), and the fatal
// error turned into a status.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "common/console.h"

namespace pelkrin::fuzz {

// Standard output and standard error of the code under test: both dropped.
console quiet();

// A path for a scratch file of this process, in memory when the system has /dev/shm.
std::string scratch_path(const std::string& leaf);
void write_bytes(const std::string& path, const std::uint8_t* data, std::size_t size);

// Runs `body`; returns the status of the fatal_error it threw, or -1 when it
// threw none.
int run_guarded(const std::function<void()>& body);

}  // namespace pelkrin::fuzz
