#include "folder_state.h"

#include "files.h"

namespace pelkrin::test {

namespace fs = std::filesystem;

std::map<std::string, std::string> folder_state(const fs::path& dir) {
    std::map<std::string, std::string> state;
    for (const fs::directory_entry& e : fs::recursive_directory_iterator(dir)) {
        const std::string leaf = fs::relative(e.path(), dir).string();
        const fs::file_status st = e.symlink_status();
        if (fs::is_symlink(st)) state[leaf] = "link to " + fs::read_symlink(e.path()).string();
        else if (fs::is_regular_file(st)) state[leaf] = read_file(e.path());
        else if (fs::is_directory(st)) state[leaf] = "directory";
        else if (fs::is_fifo(st)) state[leaf] = "fifo";
        else state[leaf] = "other";
    }
    return state;
}

std::string state_difference(const std::map<std::string, std::string>& before,
                             const std::map<std::string, std::string>& after) {
    std::string text;
    for (const auto& [leaf, what] : before) {
        const auto found = after.find(leaf);
        if (found == after.end()) text += leaf + ": gone\n";
        else if (found->second != what) text += leaf + ": changed (" + std::to_string(found->second.size()) + " bytes)\n";
    }
    for (const auto& [leaf, what] : after)
        if (before.count(leaf) == 0) text += leaf + ": new (" + std::to_string(what.size()) + " bytes)\n";
    return text;
}

}  // namespace pelkrin::test
