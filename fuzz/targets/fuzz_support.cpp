#include "fuzz_support.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <streambuf>

#include "common/fatal_error.h"

namespace pelkrin::fuzz {
namespace {

class null_buffer : public std::streambuf {
protected:
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

}  // namespace

console quiet() {
    static null_buffer sink;
    static std::ostream dropped(&sink);
    return console{dropped, dropped};
}

// The folder of this process's scratch files, removed when the process ends.
std::string& scratch_folder();
void remove_scratch_folder();

std::string& scratch_folder() {
    static std::string dir;
    return dir;
}

void remove_scratch_folder() {
    std::error_code ec;
    std::filesystem::remove_all(scratch_folder(), ec);
}

std::string scratch_path(const std::string& leaf) {
    std::string& dir = scratch_folder();
    if (dir.empty()) {
        std::error_code ec;
        const std::filesystem::path root = std::filesystem::is_directory("/dev/shm", ec)
                                               ? std::filesystem::path("/dev/shm")
                                               : std::filesystem::temp_directory_path();
        const auto d = root / ("pelkrin-fuzz-" + std::to_string(::getpid()));
        std::filesystem::create_directories(d);
        dir = d.string();
        std::atexit(remove_scratch_folder);
    }
    return dir + "/" + leaf;
}

void write_bytes(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

int run_guarded(const std::function<void()>& body) {
    try {
        body();
    } catch (const fatal_error& e) {
        return e.status();
    }
    return -1;
}

}  // namespace pelkrin::fuzz
