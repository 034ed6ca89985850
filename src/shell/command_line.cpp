// command_line.cpp — command-line checks, the program's folder and the usage text.
#include "shell/command_line.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace tl::shell {
namespace {

bool is_console_switch(const std::string& p) {
    return p.size() == 2 && p[0] == '/' && std::tolower(static_cast<unsigned char>(p[1])) == 'c';
}

}  // namespace

std::size_t command_line_length(const std::string& program_path, const std::vector<std::string>& parameters) {
    std::size_t length = program_path.size();
    for (const std::string& p : parameters) length += 1 + p.size();
    return length;
}

CommandLineCheck check_command_line(const std::string& program_path, const std::vector<std::string>& parameters) {
    CommandLineCheck check;
    if (command_line_length(program_path, parameters) > max_command_line_length) {
        check.action = StartAction::refuse;
        check.error = too_long_message;
        return check;
    }
    if (parameters.size() > max_parameters) {
        check.action = StartAction::refuse;
        check.error = too_many_message;
        return check;
    }
    check.console_mode = !parameters.empty() && is_console_switch(parameters.front());
    if (std::find(parameters.begin(), parameters.end(), "--help") != parameters.end())
        check.action = StartAction::show_help;
    else if (std::find(parameters.begin(), parameters.end(), "--version") != parameters.end())
        check.action = StartAction::show_version;
    check.batch = !check.console_mode && std::find(parameters.begin(), parameters.end(), "--batch") != parameters.end();
    for (std::size_t i = check.console_mode ? 1 : 0; i < parameters.size(); ++i) {
        if (parameters[i].rfind("--", 0) == 0) continue;
        check.program_file = parameters[i];
        break;
    }
    if (check.batch && check.program_file.empty() && check.action == StartAction::run) {
        check.action = StartAction::refuse;
        check.error = batch_without_file_message;
    }
    return check;
}

std::string executable_path(const char* argv0) {
    std::error_code ec;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (!ec && !self.empty()) return self.string();
    if (argv0 == nullptr || *argv0 == '\0') return {};
    const std::filesystem::path given = std::filesystem::absolute(argv0, ec);
    return ec ? std::string(argv0) : given.lexically_normal().string();
}

std::string folder_of(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

bool answer_without_running(const CommandLineCheck& check, int& status) {
    switch (check.action) {
    case StartAction::refuse:
        std::fprintf(stderr, "Error: %s\n", check.error.c_str());
        status = -1;
        return true;
    case StartAction::show_help:
        std::fputs(usage_text().c_str(), stdout);
        status = 0;
        return true;
    case StartAction::show_version:
        std::printf("Tessaline %s\n", tessaline_version);
        status = 0;
        return true;
    case StartAction::run:
        break;
    }
    return false;
}

std::string absolute_program_file(const std::string& file) {
    if (file.empty()) return file;
    std::error_code ec;
    const std::filesystem::path absolute = std::filesystem::absolute(file, ec);
    return ec ? file : absolute.lexically_normal().string();
}

std::string usage_text() {
    return "Usage: tessaline [/c] [FILE.bas] [--help] [--version]\n"
           "       tessaline --batch FILE.bas\n"
           "\n"
           "Tessaline, an interactive BASIC interpreter.\n"
           "\n"
           "  (nothing)  open the main window\n"
           "  /c         run in Console mode, in this terminal (must be the first parameter)\n"
           "  FILE.bas   load and run this program first, as the command run \"FILE.bas\" does;\n"
           "             in Console mode the command loop then reads standard input, and the\n"
           "             exit status is 1 when that program ended with an error, else 0.\n"
           "  --batch    run FILE.bas in window mode without showing anything: console lines\n"
           "             go to standard output, INPUT reads standard input, dialogs take their\n"
           "             default answers; the exit status is 1 after an error, else 0.\n"
           "  --help     print this text and exit\n"
           "  --version  print the version and exit\n"
           "\n"
           "Without a display Tessaline says so and starts in Console mode.\n"
           "Settings are kept in \"Ostraval Software/Tessaline.conf\" under the user's\n"
           "configuration folder (usually ~/.config).\n";
}

}  // namespace tl::shell
