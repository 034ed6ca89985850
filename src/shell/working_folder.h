// working_folder.h — the rule that picks the folder the interpreter starts in.
#pragma once

#include <string>

#include "shell/settings.h"

namespace tl::shell {

/// Picks the working folder:
///  1. "WorkPath" when it names an existing folder;
///  2. otherwise "WorkPath" is cleared and `documents_folder` + "/Tessaline" is
///     used, created (with any missing parents) when needed;
///  3. otherwise `program_folder` + "/programs", created when needed;
///  4. otherwise `program_folder` itself.
/// Failures to create a folder only move on to the next choice.
[[nodiscard]] std::string choose_working_folder(AppSettings& settings, const std::string& documents_folder,
                                                const std::string& program_folder);

/// Makes `folder` the current directory; false when that fails.
bool enter_working_folder(const std::string& folder);

}  // namespace tl::shell
