// recent_lists.cpp — the recent-use lists.
#include "shell/recent_lists.h"

#include <algorithm>
#include <filesystem>

namespace tl::shell {

bool remember_recent(RecentList& list, const std::string& entry) {
    if (entry.empty() || list.entries.empty()) return false;
    if (list.entries.front() == entry) return false;
    const std::size_t size = list.entries.size();
    const auto found = std::find(list.entries.begin(), list.entries.end(), entry);
    if (found != list.entries.end()) list.entries.erase(found);
    list.entries.insert(list.entries.begin(), entry);
    list.entries.resize(size);
    return true;
}

std::vector<std::string> existing_entries(const RecentList& list, bool folders) {
    std::vector<std::string> out;
    for (const std::string& e : list.entries) {
        if (e.empty()) continue;
        std::error_code ec;
        const bool ok = folders ? std::filesystem::is_directory(e, ec) : std::filesystem::is_regular_file(e, ec);
        if (ok) out.push_back(e);
    }
    return out;
}

}  // namespace tl::shell
