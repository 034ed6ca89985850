// module_entry.cpp — the entry point of the Qt module (see qt_module.h).
#include "shell/qt_module.h"
#include "shell/settings.h"

namespace {

std::vector<std::string> files() { return tl::shell::settings_files(); }

}  // namespace

extern "C" __attribute__((visibility("default"))) const tl::shell::QtServices* tessaline_qt_services() {
    static const tl::shell::QtServices services{
        [](const std::string& ini) { return tl::shell::load_settings(ini); },
        [](const tl::shell::AppSettings& s, const std::string& ini) { return tl::shell::save_settings(s, ini); },
        [](const tl::shell::AppSettings& s, const std::string& ini) { return tl::shell::settings_stored_as(s, ini); },
        [] { return tl::shell::user_documents_folder(); },
        files,
    };
    return &services;
}
