// session.h — the start and the end of a session, shared by Console mode, the window and batch mode.
#pragma once

#include <string>

#include "exec/front_end.h"
#include "shell/settings_snapshot.h"

namespace tl::shell {

/// What the end of a session needs from its start.
struct SessionStart {
    std::string snapshot_path;
    SettingsSnapshot loaded;
};

/// Start-up in its fixed order with `front_end` installed: the settings, the
/// language tables and memory areas, the program's folder and the working
/// folder (the caller then starts the log file, once its front end can show
/// the failure box: start_log_file). False when the memory areas could not be had
/// (the message has been shown).
[[nodiscard]] bool begin_session(SessionStart& start, FrontEnd& front_end);

/// Saves the settings of shell_state when they changed since they were read
/// or last saved (through the Qt module when needed); `start` then knows
/// them as saved. False when they could not be written.
bool save_session(SessionStart& start);

/// Saves the settings of the session begun last, at once, when they changed:
/// every place that changes a stored setting (a dialog, a menu, an export)
/// calls it, so that a session that is killed keeps them. True, doing
/// nothing, outside a session; false when they could not be written.
bool save_settings_now();

/// The end of a session: saves the settings, closes the log, gives back every
/// memory area and uninstalls the front end.
void end_session(SessionStart& start);

}  // namespace tl::shell
