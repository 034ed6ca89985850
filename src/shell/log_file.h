// log_file.h — the log file that receives a copy of the whole console session.
#pragma once

#include <ctime>
#include <string>

#include "shell/settings.h"

namespace tl::shell {

/// The C runtime's asctime() text for `t`, e.g. "Wed Jun 30 21:49:08 1993\n",
/// always in English whatever the locale.
[[nodiscard]] std::string asctime_text(const std::tm& t);

/// "LogFilePath" + "/" + "LogFileName"; the name alone (relative to the
/// working folder) when the path is empty.
[[nodiscard]] std::string log_file_full_name(const AppSettings& settings);

/// When "CreateLogFile" is set and no log is open, creates the log file anew,
/// writes its header and installs it as host.log so that every console line is
/// copied to it. A failure is reported on the console (and in a message box
/// when the front end is a window); the interpreter then runs without a log.
/// Returns true when a log is open afterwards.
bool start_log_file(const AppSettings& settings);

/// Closes the log, if one is open, and uninstalls it.
void close_log_file();

}  // namespace tl::shell
