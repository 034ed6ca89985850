// recent_lists.h — keeping the recent-use lists: newest first, no repeats.
#pragma once

#include <string>
#include <vector>

#include "shell/settings.h"

namespace tl::shell {

/// Puts `entry` first in `list`, removing an equal entry further down and
/// dropping the last one when the list is full. An empty entry is ignored.
/// Returns true when the list changed.
bool remember_recent(RecentList& list, const std::string& entry);

/// The non-empty entries that name an existing file (or, with `folders`, an
/// existing folder), in the list's order.
[[nodiscard]] std::vector<std::string> existing_entries(const RecentList& list, bool folders);

}  // namespace tl::shell
