#include "files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <system_error>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace pelkrin::test {

std::filesystem::path scratch_root() {
    std::filesystem::path root;
    if (const char* env = std::getenv("PELKRIN_TEST_TMP")) {
        root = env;
    } else {
        root = std::filesystem::temp_directory_path() / "pelkrin-tests";
    }
    std::filesystem::create_directories(root);
    return root;
}

namespace {

std::filesystem::path test_folder() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::filesystem::path root = scratch_root();
    std::string leaf = info ? std::string(info->test_suite_name()) + "." + info->name() : "no-test";
    for (char& c : leaf) {
        if (c == '/') c = '_';
    }
    return root / leaf;
}

}  // namespace

std::filesystem::path scratch_dir() {
    auto dir = test_folder();
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir;
}

std::filesystem::path scratch_subdir(std::string_view name) {
    auto dir = test_folder() / std::string(name);
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir;
}

shared_scratch::shared_scratch() {
    std::string name = (std::filesystem::temp_directory_path() / "pelkrin-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make a folder in " + name);
    path_ = name;
    std::filesystem::permissions(path_, std::filesystem::perms(0755));
}

shared_scratch::~shared_scratch() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms(0755), ignored);  // a test may have closed it
    std::filesystem::remove_all(path_, ignored);
}

void shared_scratch::write(const std::string& leaf, std::string_view bytes, bool executable) const {
    write_file(path_ / leaf, bytes);
    std::filesystem::permissions(path_ / leaf, std::filesystem::perms(executable ? 0755 : 0644));
}

std::string read_file(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + p.string());
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void write_file(const std::filesystem::path& p, std::string_view bytes) {
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("cannot write " + p.string());
}

std::filesystem::path data_file(std::string_view name) {
    return std::filesystem::path(PELKRIN_DATA_DIR) / name;
}

std::filesystem::path source_file(std::string_view name) {
    return std::filesystem::path(PELKRIN_SOURCE_DIR) / name;
}

std::vector<std::uint8_t> bytes_of(std::string_view text) { return {text.begin(), text.end()}; }

}  // namespace pelkrin::test
