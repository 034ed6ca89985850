// settings_snapshot.h — the settings as last read through Qt, kept for the
// next start so that it need not load Qt to read them again.
//
// The snapshot holds the settings, the documents folder and whether saving
// would change the settings file, stamped with the state (existence, size,
// modification time, inode) of every file they were read from and with the
// environment that chose those files. Any difference, or a snapshot of
// another version, makes it stale: the settings are then read through Qt
// again. It lives in $XDG_CACHE_HOME/tessaline (~/.cache/tessaline).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "shell/settings.h"

namespace tl::shell {

struct SettingsSnapshot {
    AppSettings settings;
    std::string documents_folder;
    /// Saving `settings` would change the file (it lacks values, say).
    bool needs_saving = false;
};

/// Where the snapshot is kept ("" when there is no home folder).
[[nodiscard]] std::string settings_snapshot_path();

/// The snapshot at `path`, when it is there, whole, of this version, and
/// every file and variable it was stamped with is as it was.
[[nodiscard]] std::optional<SettingsSnapshot> read_settings_snapshot(const std::string& path);

/// Writes the snapshot to `path` (atomically), stamped with the state of
/// `files` now. False when it could not be written.
bool write_settings_snapshot(const SettingsSnapshot& snapshot, const std::vector<std::string>& files,
                             const std::string& path);

}  // namespace tl::shell
