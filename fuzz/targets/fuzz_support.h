#pragma once
// What every fuzz target needs: scratch files for the readers, which take file
// names, and a fatal exit that returns instead of ending the process.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace pelkrin::fuzz {

// A path for a scratch file of this process, in memory when the system has /dev/shm.
std::string scratch_path(const std::string& leaf);
void write_bytes(const std::string& path, const std::uint8_t* data, std::size_t size);

// Runs `body` with standard output and standard error silenced and the fatal
// exit turned into a return; returns the exit status, or -1 when it did not end.
int run_guarded(const std::function<void()>& body);

}  // namespace pelkrin::fuzz
