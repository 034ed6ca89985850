// command_line.h — checks of the command line and the program's own folder.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tl::shell {

inline constexpr const char* tessaline_version = TESSALINE_VERSION;  // from the project version

/// Longest command line accepted: the program path and the parameters, each
/// separated by one blank.
inline constexpr std::size_t max_command_line_length = 511;
inline constexpr std::size_t max_parameters = 10;

inline constexpr const char* too_long_message = "Invalid Parameters (too long)";
inline constexpr const char* too_many_message = "Invalid Parameters (too many)";
inline constexpr const char* batch_without_file_message = "--batch needs the name of a program file";

enum class StartAction { run, show_help, show_version, refuse };

struct CommandLineCheck {
    StartAction action = StartAction::run;
    /// "/c" (any letter case) as the first parameter.
    bool console_mode = false;
    /// "--batch" (not with "/c"): run the program file in window mode, unseen.
    bool batch = false;
    /// A program file to load and run first: the first parameter after "/c"
    /// (or the first parameter) that is not an option; empty when none.
    std::string program_file;
    /// For StartAction::refuse: the message, shown with the title "Error".
    std::string error;
};

/// Length of the command line as the checks count it.
[[nodiscard]] std::size_t command_line_length(const std::string& program_path,
                                              const std::vector<std::string>& parameters);

/// Refuses a command line over 511 characters or with more than 10 parameters;
/// otherwise notes Console mode, "--batch" (which needs a program file) and
/// "--help" / "--version" (in any position).
/// Parameters other than these are ignored.
[[nodiscard]] CommandLineCheck check_command_line(const std::string& program_path,
                                                  const std::vector<std::string>& parameters);

/// Carries out a start that only answers (the refusal, "--help",
/// "--version"): true with the exit status in `status`; false when the
/// program is to run.
[[nodiscard]] bool answer_without_running(const CommandLineCheck& check, int& status);

/// The running executable's full path (from /proc/self/exe), or `argv0` made
/// absolute when that cannot be read.
[[nodiscard]] std::string executable_path(const char* argv0);

/// The folder part of `path` without its last "/" ("." when there is none).
[[nodiscard]] std::string folder_of(const std::string& path);

/// A program file named on the command line, made absolute and normal from
/// the current folder (before the working folder becomes current); as given
/// when empty or when that fails.
[[nodiscard]] std::string absolute_program_file(const std::string& file);

/// The text printed by "--help".
[[nodiscard]] std::string usage_text();

}  // namespace tl::shell
