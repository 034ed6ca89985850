// qt_module.h — the shell's services that need Qt, loaded when first wanted.
//
// Loading Qt takes several milliseconds, most of a short Console-mode run.
// The services that use it (the settings file through QSettings, the user's
// documents folder) are built into the module libtessaline_qt.so, which sits
// beside the executable and is loaded the first time one of them is needed;
// a run whose settings are known from the snapshot (settings_snapshot.h) and
// that changes none of them never loads it.
#pragma once

#include <string>
#include <vector>

#include "shell/settings.h"

namespace tl::shell {

/// The module's services: the functions of settings.h that use Qt.
struct QtServices {
    AppSettings (*load_settings)(const std::string& ini_file);
    bool (*save_settings)(const AppSettings& settings, const std::string& ini_file);
    bool (*settings_stored_as)(const AppSettings& settings, const std::string& ini_file);
    std::string (*user_documents_folder)();
    std::vector<std::string> (*settings_files)();
};

/// The name of the module's entry point, which returns its QtServices.
inline constexpr const char* qt_module_entry = "tessaline_qt_services";

/// The services, the module being loaded on the first call; null (after a
/// message on standard error) when it cannot be loaded.
[[nodiscard]] const QtServices* qt_services();

}  // namespace tl::shell
