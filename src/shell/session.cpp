// session.cpp — the start and the end of a session.
#include "shell/session.h"

#include <cstdio>

#include "lang/language_init.h"
#include "shell/log_file.h"
#include "shell/session_settings.h"
#include "shell/shell_state.h"
#include "shell/working_folder.h"

namespace tl::shell {

bool begin_session(SessionStart& start, FrontEnd& front_end) {
    ShellState& s = shell_state;
    start.snapshot_path = settings_snapshot_path();
    start.loaded = load_session_settings(start.snapshot_path);
    s.settings = start.loaded.settings;
    host.front_end = &front_end;

    if (init_language_tables(s.settings.sizes) < 0) return false;
    std::snprintf(host.program_folder, sizeof host.program_folder, "%s%s", s.program_folder.c_str(),
                  s.program_folder.ends_with('/') ? "" : "/");

    s.working_folder = choose_working_folder(s.settings, start.loaded.documents_folder, s.program_folder);
    if (!enter_working_folder(s.working_folder))
        std::fprintf(stderr, "Cannot enter the working folder %s\n", s.working_folder.c_str());
    s.session = &start;
    return true;
}

bool save_session(SessionStart& start) {
    if (!save_session_settings(shell_state.settings, start.loaded, start.snapshot_path)) return false;
    // What is in the file now: a setting changed back later is written again.
    start.loaded.settings = shell_state.settings;
    start.loaded.needs_saving = false;
    return true;
}

bool save_settings_now() { return shell_state.session == nullptr || save_session(*shell_state.session); }

void end_session(SessionStart& start) {
    if (!save_session(start)) std::fprintf(stderr, "The settings could not be saved.\n");
    if (shell_state.session == &start) shell_state.session = nullptr;
    close_log_file();
    reset_interpreter_state();  // gives back every area, arrays included
    host.front_end = nullptr;
}

}  // namespace tl::shell
