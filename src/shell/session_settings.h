// session_settings.h — the settings of a session: read at start-up, saved at exit.
#pragma once

#include <string>

#include "shell/settings_snapshot.h"

namespace tl::shell {

/// The settings, the documents folder and whether the file needs saving:
/// from the snapshot at `snapshot_path` when it is fresh, otherwise through
/// the Qt module (the snapshot is then written anew). Without the module the
/// defaults are used and the documents folder is $HOME/Documents.
[[nodiscard]] SettingsSnapshot load_session_settings(const std::string& snapshot_path);

/// Saves `settings` through the Qt module when they differ from `loaded` or
/// the file needs them, then refreshes the snapshot; a session that changed
/// nothing does not load Qt at all. False when saving failed.
bool save_session_settings(const AppSettings& settings, const SettingsSnapshot& loaded,
                           const std::string& snapshot_path);

}  // namespace tl::shell
