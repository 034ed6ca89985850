// misc_statements.cpp — BEEP, CLS, COLOR, DELAY, CHDIR, SPAWN and HELP.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <string>
#include <thread>

#include "exec/commands.h"
#include "exec/console_effects.h"
#include "exec/document_viewer.h"
#include "exec/everyday_statements.h"
#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/run_loop.h"
#include "exec/statement_targets.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

extern char** environ;

namespace tl {
namespace {

struct HelpDocument {
    const char* file;
    const char* title;
};

// ORDER: HELP numbers the documents from 1 in this order.
constexpr HelpDocument help_documents[help_document_count] = {
    {"intro to basic.pdf", "Introduction to BASIC"},
    {"intro.pdf", "Introduction to Tessaline"},
    {"gui vs console.pdf", "Tessaline User Interface"},
    {"Advanced Features.pdf", "Advanced Features in Tessaline"},
    {"debugging.pdf", "Debugging"},
    {"functions.pdf", "Functions, Statements and Commands"},
    {"longmath.pdf", "Working With Long Numbers"},
    {"numbers.pdf", "Number Representation, Assignment and Conversion"},
    {"user functions.pdf", "User-Defined Funtions"},
    {"Working With Files.pdf", "Working With Files"},
    {"Beginning Graphics.pdf", "Beginning Graphics"},
    {"Intermediate Graphics.pdf", "Intermediate Graphics"},
    {"Advanced Graphics.pdf", "Advanced Graphics"},
    {"datetime.pdf", "Working With Dates and Times"},
    {"quickref book.pdf", "Quick Reference Booklet"},
};

/// Longest SPAWN command line, its quoted arguments included.
constexpr std::size_t spawn_line_size = 4096;

/// Delays wait in slices this long, checking for the user's interruption.
constexpr auto delay_slice = std::chrono::milliseconds(10);

bool console_front_end() { return host.front_end != nullptr && host.front_end->console_mode(); }

/// The statement's one number parameter: 1 with `value` set when it is
/// given and `in_range` takes it, 0 when the statement is passed over, else
/// the negated error, reported at the number.
template <typename InRange>
int number_parameter(double& value, InRange in_range) {
    const int column = scan_column();
    const int rc = evaluate_number(value);
    if (rc < 0) return rc;
    if (rc == 0) return error_at_column(err_missing_parameter, column);
    if (passing_over()) return 0;
    if (!in_range(value)) return error_at_column(err_parameter_out_range, column);
    return 1;
}

/// Text for the terminal only (bells, colours): not copied to the log.
void terminal_write(std::string_view text) {
    if (host.front_end != nullptr) host.front_end->write(text);
}

/// Appends `text` to `out` (holding `length` characters, room for `size`)
/// as one word of a shell command line: in single quotes, each quote inside
/// written as '\''. False when it does not fit.
bool append_shell_word(char* out, std::size_t size, std::size_t& length, std::string_view text) {
    const auto put = [&](std::string_view part) {
        if (length + part.size() >= size) return false;
        part.copy(out + length, part.size());
        length += part.size();
        out[length] = 0;
        return true;
    };
    if (!put("'")) return false;
    for (const char c : text)
        if (!(c == '\'' ? put("'\\''") : put(std::string_view(&c, 1)))) return false;
    return put("'");
}

/// Starts `command` through the shell without waiting for it. The shell
/// first makes sure the program (the first word) exists, so that a wrong
/// name is reported; the program itself runs in the background with its
/// input detached from the console. It inherits only standard input, output
/// and error: every other descriptor (the log, open files) is closed in it.
bool spawn_command(const char* command) {
    char first[256];
    std::size_t n = 0;
    const char* p = command;
    while (*p == ' ' || *p == '\t') ++p;
    if (*p == '"' || *p == '\'') {
        const char quote = *p++;
        while (*p != 0 && *p != quote && n < sizeof first - 1) first[n++] = *p++;
    } else {
        while (*p != 0 && *p != ' ' && *p != '\t' && n < sizeof first - 1) first[n++] = *p++;
    }
    first[n] = 0;
    if (n == 0) return false;
    char sh[] = "sh";
    char dash_c[] = "-c";
    char script[] = "command -v -- \"$1\" >/dev/null 2>&1 || exit 127\n(eval \"$0\") </dev/null &";
    char* argv[] = {sh, dash_c, script, const_cast<char*>(command), first, nullptr};
    pid_t pid = 0;
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) return false;
    int rc = posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    // Signals the interpreter ignores (a file over the size limit) take
    // their default action again in the command.
    posix_spawnattr_t attributes;
    if (rc == 0) rc = posix_spawnattr_init(&attributes);
    if (rc == 0) {
        sigset_t defaults;
        sigemptyset(&defaults);
        sigaddset(&defaults, SIGXFSZ);
        rc = posix_spawnattr_setsigdefault(&attributes, &defaults);
        if (rc == 0) rc = posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
        if (rc == 0) rc = posix_spawn(&pid, "/bin/sh", &actions, &attributes, argv, environ);
        posix_spawnattr_destroy(&attributes);
    }
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0) return false;
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

void help_folder(char (&out)[4096]) {
    constexpr std::string_view sub = "help/";
    const ssize_t n = readlink("/proc/self/exe", out, sizeof out - sub.size() - 1);
    std::size_t length = n > 0 ? static_cast<std::size_t>(n) : 0;
    while (length > 0 && out[length - 1] != '/') --length;
    sub.copy(out + length, sub.size());
    out[length + sub.size()] = 0;
}

namespace {

/// Evaluates a string parameter into `out`; 146 for anything else.
int string_parameter(char (&out)[scan_buffer_size]) {
    const int column = scan_column();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    if (kind != kind_string) return error_at_column(err_invalid_type_expecting_string, column);
    copy_text(out, sizeof out, lang.scan.buffer);
    return 0;
}

}  // namespace

const char* help_document_title(int number) {
    return number >= 1 && number <= help_document_count ? help_documents[number - 1].title : "";
}

const char* help_document_file(int number) {
    return number >= 1 && number <= help_document_count ? help_documents[number - 1].file : "";
}

std::size_t color_escape(int attribute, char (&out)[32]) {
    if (attribute == 7) {  // the console's normal grey on black
        std::snprintf(out, sizeof out, "\x1b[0m");
        return std::strlen(out);
    }
    // Console bits: 1 blue, 2 green, 4 red, 8 bright; ANSI: 1 red, 2 green, 4 blue.
    auto ansi = [](int bits) { return ((bits & 4) ? 1 : 0) | (bits & 2) | ((bits & 1) ? 4 : 0); };
    const int fg = attribute & 15;
    const int bg = (attribute >> 4) & 15;
    const int fg_code = ((fg & 8) ? 90 : 30) + ansi(fg);
    const int bg_code = ((bg & 8) ? 100 : 40) + ansi(bg);
    std::snprintf(out, sizeof out, "\x1b[0;%d;%dm", fg_code, bg_code);
    return std::strlen(out);
}

int do_beep() {
    if (exec.skip) return 0;
    if (host.effects != nullptr)
        host.effects->beep();
    else if (console_front_end())
        terminal_write("\a");
    return 0;
}

int do_cls() {
    if (exec.skip) return 0;
    if (host.effects != nullptr)
        host.effects->clear_console();
    else
        console_write("\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n");
    return 0;
}

int do_color() {
    double value = 0;
    if (int rc = number_parameter(value, [](double v) { return v >= 0.0 && v < 256.0; }); rc <= 0) return rc;
    if (host.effects != nullptr) {
        host.effects->set_console_color(static_cast<int>(value));
    } else if (console_front_end() && isatty(STDOUT_FILENO)) {
        char escape[32];
        terminal_write(std::string_view(escape, color_escape(static_cast<int>(value), escape)));
    }
    return 0;
}

int do_delay() {
    double seconds = 0;
    if (int rc = number_parameter(seconds, [](double v) { return v >= 0.0 && v <= 86400.0; }); rc <= 0) return rc;
    using clock = std::chrono::steady_clock;
    const auto until = clock::now() + std::chrono::duration_cast<clock::duration>(std::chrono::duration<double>(seconds));
    for (;;) {
        pump_events();
        if (host.flags.interrupt_requested.load()) return poll_interruption();
        const auto now = clock::now();
        if (now >= until) return 0;
        const auto left = until - now;
        std::this_thread::sleep_for(left < delay_slice ? left : clock::duration(delay_slice));
    }
}

int do_chdir() {
    char path[scan_buffer_size] = {};
    const int column = scan_column();
    const bool has_path = !at_statement_end();
    if (has_path) {
        if (int rc = string_parameter(path); rc < 0) return rc;
    }
    if (exec.skip) return 0;
    if (has_path && (path[0] == 0 || chdir(path) != 0)) return error_at_column(err_directory_does_not_exist, column);
    char current[4096];
    if (getcwd(current, sizeof current) == nullptr) current[0] = 0;
    console_print("Current directory is: %s\n", current);
    return 0;
}

int do_spawn() {
    // The command line, then each further parameter quoted as one argument.
    char line[spawn_line_size] = {};
    std::size_t length = 0;
    const int column = scan_column();
    if (at_statement_end()) return error_at_column(err_missing_parameter, column);
    for (bool first = true;; first = false) {
        const int part_column = scan_column();
        const int kind = evaluate_expression(scan_separators);
        if (kind < 0) return kind;
        if (kind == 0) return error_at_column(err_invalid_expression, part_column);
        if (kind != kind_string) return error_at_column(err_invalid_type_expecting_string, part_column);
        const std::string_view part = lang.scan.buffer;
        if (first) {
            length = part.copy(line, part.size());
        } else {
            if (length + 1 >= sizeof line) return error_at_column(err_string_too_long, part_column);
            line[length++] = ' ';
            if (!append_shell_word(line, sizeof line, length, part))
                return error_at_column(err_string_too_long, part_column);
        }
        if (lang.scan.terminator != ',') break;
    }
    if (!at_statement_end()) return error_at_column(err_invalid_statement, scan_column());
    if (exec.skip) return 0;
    if (!spawn_command(line)) return error_at_column(err_error_occurred_doing_spawn, column);
    return 0;
}

int do_help() {
    if (at_statement_end()) {
        if (exec.skip) return 0;
        for (int i = 1; i <= help_document_count; ++i) console_print("%d  %s\n", i, help_document_title(i));
        return 0;
    }
    double value = 0;
    const int column = scan_column();  // where a failed start is reported
    if (int rc = number_parameter(value, [](double v) { return v >= 1.0 && v < help_document_count + 1.0; }); rc <= 0)
        return rc;
    const int number = static_cast<int>(value);
    char folder[4096];
    help_folder(folder);
    if (host.documents != nullptr) {
        std::string path = folder;
        path += help_document_file(number);
        if (!host.documents->open_document(path)) return error_at_column(err_error_occurred_doing_spawn, column);
        return 0;
    }
    if (console_front_end()) {
        console_print("\"%s\" is the document %s%s\n", help_document_title(number), folder, help_document_file(number));
        return 0;
    }
    char document[4096 + 100];
    std::snprintf(document, sizeof document, "%s%s", folder, help_document_file(number));
    char command[2 * sizeof document];
    std::size_t length = std::string_view("xdg-open ").copy(command, sizeof command);
    if (!append_shell_word(command, sizeof command, length, document))
        return error_at_column(err_error_occurred_doing_spawn, column);
    if (!spawn_command(command)) return error_at_column(err_error_occurred_doing_spawn, column);
    return 0;
}

}  // namespace tl
