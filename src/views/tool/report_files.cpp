#include "views/tool/report_files.h"

#include <cstdio>
#include <system_error>

#include "common/fatal_error.h"

namespace pelkrin {
namespace {

[[noreturn]] void cannot(const std::string& what, const std::filesystem::path& path) {
    throw fatal_error(1, std::string("Pelkrin-view: can not ").append(what).append(" ").append(path.string()).append("\n"));
}

}  // namespace

void make_report_folder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error || !std::filesystem::is_directory(folder, error)) cannot("create folder", folder);
}

void write_report_file(const std::filesystem::path& folder, const std::string& name, std::string_view text) {
    const std::filesystem::path path = folder / name;
    const std::filesystem::path temporary = folder / (std::string(".").append(name).append(".part"));
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (!file) cannot("open file", path);
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const bool closed = std::fclose(file) == 0;
    std::error_code error;
    if (!written || !closed) {
        std::filesystem::remove(temporary, error);
        cannot("write file", path);
    }
    std::filesystem::rename(temporary, path, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        cannot("write file", path);
    }
}

std::string read_file_range(std::FILE* file, int64_t from, int64_t to) {
    std::string bytes;
    if (file == nullptr || from < 0 || std::fseek(file, static_cast<long>(from), SEEK_SET) != 0) return bytes;
    constexpr std::size_t piece = std::size_t{1} << 20;
    while (to < 0 || static_cast<int64_t>(bytes.size()) < to - from) {
        const std::size_t want =
            to < 0 ? piece : std::min<std::size_t>(piece, static_cast<std::size_t>(to - from) - bytes.size());
        const std::size_t had = bytes.size();
        bytes.resize(had + want);
        const std::size_t got = std::fread(bytes.data() + had, 1, want, file);
        bytes.resize(had + got);
        if (got < want) break;
    }
    return bytes;
}

}  // namespace pelkrin
