// session_settings.cpp — the settings of a session, through the snapshot or the Qt module.
#include "shell/session_settings.h"

#include <cstdlib>

#include "shell/qt_module.h"

namespace tl::shell {
namespace {

/// Reads everything through the module and keeps it in the snapshot.
SettingsSnapshot read_through_module(const QtServices& qt, const std::string& snapshot_path) {
    SettingsSnapshot s;
    s.settings = qt.load_settings({});
    s.documents_folder = qt.user_documents_folder();
    s.needs_saving = !qt.settings_stored_as(s.settings, {});
    (void)write_settings_snapshot(s, qt.settings_files(), snapshot_path);
    return s;
}

}  // namespace

SettingsSnapshot load_session_settings(const std::string& snapshot_path) {
    if (std::optional<SettingsSnapshot> known = read_settings_snapshot(snapshot_path)) return *known;
    if (const QtServices* qt = qt_services()) return read_through_module(*qt, snapshot_path);
    SettingsSnapshot s;
    const char* home = std::getenv("HOME");
    if (home != nullptr && *home != 0) s.documents_folder = std::string(home) + "/Documents";
    return s;
}

bool save_session_settings(const AppSettings& settings, const SettingsSnapshot& loaded,
                           const std::string& snapshot_path) {
    if (settings == loaded.settings && !loaded.needs_saving) return true;
    const QtServices* qt = qt_services();
    if (qt == nullptr) return false;
    const bool saved = qt->save_settings(settings, {});
    (void)read_through_module(*qt, snapshot_path);
    return saved;
}

}  // namespace tl::shell
