#include "view_tool/report/report_over_input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "view_tool/report/folder_entries.h"
#include "view_tool/report/report_file_names.h"

namespace pelkrin {

std::optional<output_over_input> report_file_over_input(const std::string& folder,
                                                        const std::vector<std::string>& inputs) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    std::vector<std::string> names;
    for (std::string& name : folder_names(fd)) {
        if (is_report_file_name(name)) names.push_back(std::move(name));
    }
    std::vector<struct stat> read(inputs.size());
    std::vector<bool> there(inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) there[i] = ::stat(inputs[i].c_str(), &read[i]) == 0;
    std::optional<output_over_input> found;
    std::size_t first = inputs.size();  // the input found, the first given wins
    for (const std::string& name : names) {
        struct stat out {};
        // A symbolic link is followed: writing the name would write what it leads to.
        if (::fstatat(fd, name.c_str(), &out, 0) != 0) continue;
        for (std::size_t i = 0; i < first; ++i) {
            if (there[i] && out.st_dev == read[i].st_dev && out.st_ino == read[i].st_ino) {
                found = output_over_input{(std::filesystem::path(folder) / name).string(), inputs[i]};
                first = i;
                break;
            }
        }
    }
    ::close(fd);
    return found;
}

}  // namespace pelkrin
