// working_folder.cpp — choosing and entering the working folder.
#include "shell/working_folder.h"

#include <filesystem>
#include <system_error>

namespace tl::shell {
namespace {

namespace fs = std::filesystem;

bool is_folder(const std::string& path) {
    std::error_code ec;
    return !path.empty() && fs::is_directory(path, ec);
}

std::string join(const std::string& folder, const char* name) {
    if (!folder.empty() && folder.back() == '/') return folder + name;
    return folder + "/" + name;
}

}  // namespace

std::string choose_working_folder(AppSettings& settings, const std::string& documents_folder,
                                  const std::string& program_folder) {
    if (is_folder(settings.work_path)) return settings.work_path;
    settings.work_path.clear();

    std::error_code ec;
    if (!documents_folder.empty()) {
        const std::string own = join(documents_folder, "Tessaline");
        fs::create_directories(own, ec);
        if (is_folder(own)) return own;
    }

    const std::string programs = join(program_folder, "programs");
    fs::create_directory(programs, ec);
    if (is_folder(programs)) return programs;
    return program_folder;
}

bool enter_working_folder(const std::string& folder) {
    std::error_code ec;
    fs::current_path(folder, ec);
    return !ec;
}

}  // namespace tl::shell
