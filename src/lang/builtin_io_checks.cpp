// builtin_io_checks.cpp — the file, serial, dialog and message functions:
// read, eof, input, open, filesize, browseinputfile$, browseoutputfile$,
// browsecommports$, select, inputdialog, updatedialog and messagebox.
//
// The parameters are checked here in full. The file functions find no open
// file until the file statements exist; the dialogs exist only in the window.
#include <cctype>
#include <cmath>
#include <cstring>
#include <string>

#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "exec/message_dialog.h"
#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

namespace tl {
namespace {

// Words of open and messagebox (matched without regard to case).
constexpr const char* modes[] = {"i", "o", "a", "r", "b", "s"};
constexpr const char* parities[] = {"no", "even", "odd", "mark", "space"};
constexpr const char* button_sets[] = {"ok", "okcancel", "yesno", "yesnocancel"};
constexpr const char* icons[] = {"none", "information", "warning", "error", "question"};
constexpr const char* prompts[] = {"Press <enter> to continue. ", "OK or Cancel? ", "Yes or No? ", "Yes, No or Cancel? "};
constexpr const char* icon_marks[] = {"", "(i) ", "(!) ", "(x) ", "(?) "};
constexpr int first_button[] = {1, 1, 6, 6};

bool in_console_mode() { return host.front_end == nullptr || host.front_end->console_mode(); }

bool word_is(const char* text, const char* word) {
    for (; *text != 0 && *word != 0; ++text, ++word) {
        if (std::tolower(static_cast<unsigned char>(*text)) != *word) return false;
    }
    return *text == 0 && *word == 0;
}

/// Index of `text` among `words` (letter case ignored), or -1.
template <std::size_t N>
int word_index(const char* text, const char* const (&words)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        if (word_is(text, words[i])) return static_cast<int>(i);
    }
    return -1;
}

int file_count() { return static_cast<int>(areas.sizes[size_number_of_files]); }

/// A file-number parameter naming an open file: 125 when it is no valid
/// number, 128 when the file is not open. `entry` is set on success.
int open_file_parameter(Item& p, FileEntry*& entry) {
    double n = 0.0;
    const int r = double_parameter(p, n);
    if (r < 0) return r;
    n = std::trunc(n);
    if (!(n >= 1.0 && n <= file_count()) || static_cast<std::size_t>(n) >= areas.files.size())
        return fail_at(err_invalid_file_number, p);
    entry = &areas.files[static_cast<std::size_t>(n)];
    if (entry->open == 0) return fail_at(err_file_number_does_not_represent, p);
    return 0;
}

/// The file statements that read and write open files are not built yet.
int file_operation_unavailable(const Item& p) { return fail_at(err_invalid_function_call, p); }

int whole_in_range(Item& p, double low, double high, int error, double& out) {
    const int r = double_parameter(p, out);
    if (r < 0) return r;
    out = std::trunc(out);
    if (!(out >= low && out <= high)) return fail_at(error, p);
    return 0;
}

}  // namespace

int fn_eof_handler(Item* p, int count) {
    if (count == 2) {
        const char* which = nullptr;
        const int r = string_parameter(p[1], which);
        if (r < 0) return r;
        if (!word_is(which, "line")) return fail_at(err_invalid_parameter, p[1]);
    }
    FileEntry* f = nullptr;
    const int r = open_file_parameter(p[0], f);
    return r < 0 ? r : file_operation_unavailable(p[0]);
}

/// read(file, target, ...) and input(file, target, ...).
int fn_file_read_handler(Item* p, int) {
    FileEntry* f = nullptr;
    const int r = open_file_parameter(p[0], f);
    return r < 0 ? r : file_operation_unavailable(p[0]);
}

int fn_filesize_handler(Item* p, int) {
    FileEntry* f = nullptr;
    const int r = open_file_parameter(p[0], f);
    return r < 0 ? r : file_operation_unavailable(p[0]);
}

/// open(mode, file, name [, record length])  or, for a serial port,
/// open("s", file, port [, baud [, parity [, data bits [, stop bits]]]]).
int fn_open_handler(Item* p, int count) {
    const char* mode_text = nullptr;
    int r = string_parameter(p[0], mode_text);
    if (r < 0) return r;
    const int mode = word_index(mode_text, modes);
    if (mode < 0) return fail_at(err_invalid_mode_open, p[0]);
    double number = 0.0;
    r = whole_in_range(p[1], 1.0, file_count(), err_invalid_file_number_open, number);
    if (r < 0) return r;
    const char* name = nullptr;
    if (p[2].kind != kind_string) return fail_at(err_invalid_file_specification_open, p[2]);
    name = item_text(p[2]);
    if (name[0] == 0) return fail_at(err_invalid_file_specification_open, p[2]);
    double value = 0.0;
    if (mode == 5) {  // serial port
        if (count > 3) r = whole_in_range(p[3], 1.0, 256000.0, err_invalid_baud_rate_serial_open, value);
        if (r >= 0 && count > 4) {
            const char* parity = nullptr;
            r = string_parameter(p[4], parity);
            if (r >= 0 && word_index(parity, parities) < 0) r = fail_at(err_invalid_patiry_serial_open, p[4]);
        }
        if (r >= 0 && count > 5) r = whole_in_range(p[5], 5.0, 8.0, err_invalid_parameter, value);
        if (r >= 0 && count > 6) {
            r = double_parameter(p[6], value);
            if (r >= 0 && value != 1.0 && value != 1.5 && value != 2.0) r = fail_at(err_invalid_stop_bits_serial_open, p[6]);
        }
    } else {
        if (count > 4) return report_error(err_incorrect_number_parameters);
        if (mode == 3 && count < 4) return fail_at(err_record_length_required_random_files, p[2]);
        if (count == 4) r = whole_in_range(p[3], 1.0, 32767.0, err_invalid_logical_record_length_open, value);
    }
    if (r < 0) return r;
    if (areas.files[static_cast<std::size_t>(number)].open != 0) return fail_at(err_file_number_use, p[1]);
    return file_operation_unavailable(p[0]);
}

/// browseinputfile$(title), browseoutputfile$(title), browsecommports$(title):
/// dialogs of the window.
int fn_browse_handler(Item* p, int) {
    const char* title = nullptr;
    const int r = string_parameter(p[0], title);
    if (r < 0) return r;
    if (in_console_mode()) return report_error(err_statement_not_valid_console_mode);
    return report_error(err_invalid_function_call);  // the window has no file dialogs yet
}

/// select(list$() [, title [, initial]]): a choice from a one-dimensional string array.
int fn_select_handler(Item* p, int count) {
    if (p[0].kind != kind_string_array || p[0].array == nullptr)
        return fail_at(err_invalid_type_expecting_string_array, p[0]);
    if (p[0].array->dimensions != 1) return fail_at(err_array_1_dimensional, p[0]);
    const char* title = nullptr;
    double initial = 0.0;
    int r = 0;
    if (count > 1) r = string_parameter(p[1], title);
    if (r >= 0 && count > 2) r = double_parameter(p[2], initial);
    if (r < 0) return r;
    if (in_console_mode()) return report_error(err_function_not_valid_console_mode);
    return report_error(err_invalid_function_call);  // the window has no selection dialog yet
}

/// messagebox(text [, title [, buttons [, icon]]]). Buttons: "ok" (the
/// default), "okcancel", "yesno", "yesnocancel"; icon: "information",
/// "warning", "error", "question" or "none". Returns the button chosen:
/// 1 OK, 2 Cancel, 6 Yes, 7 No. In Console mode the message is printed and
/// the answer read from a line.
int fn_messagebox_handler(Item* p, int count) {
    const char* text = nullptr;
    const char* title = "Message";
    int buttons = 0;
    int icon = 0;
    int r = string_parameter(p[0], text);
    if (r >= 0 && count > 1) r = string_parameter(p[1], title);
    if (r >= 0 && count > 2) {
        const char* word = nullptr;
        r = string_parameter(p[2], word);
        if (r >= 0 && (buttons = word_index(word, button_sets)) < 0) r = fail_at(err_invalid_parameter, p[2]);
    }
    if (r >= 0 && count > 3) {
        const char* word = nullptr;
        r = string_parameter(p[3], word);
        if (r >= 0 && (icon = word_index(word, icons)) < 0) r = fail_at(err_invalid_parameter, p[3]);
    }
    if (r < 0) return r;

    if (host.message_dialog != nullptr) {
        const int chosen = host.message_dialog->ask(title, text, buttons, icon);
        if (chosen == answer_interrupted || host.flags.interrupt_requested) {
            host.flags.interrupt_requested = false;
            return report_error(err_user_interrupted_program);
        }
        return double_result(chosen);
    }
    console_print("%s%s: %s\n", icon_marks[icon], title, text);
    // A keyword's first letter answers; an empty line or the end of input
    // chooses the first button.
    int answer = first_button[buttons];
    std::string line;
    while (host.front_end != nullptr && host.front_end->read_line(prompts[buttons], line)) {
        if (host.flags.interrupt_requested) break;
        const char c = line.empty() ? 0 : static_cast<char>(std::tolower(static_cast<unsigned char>(line[0])));
        if (c == 0 || buttons == 0) break;
        if (c == 'o' && buttons == 1) break;
        if (c == 'y' && buttons >= 2) break;
        if (c == 'n' && buttons >= 2) {
            answer = 7;
            break;
        }
        if (c == 'c' && (buttons == 1 || buttons == 3)) {
            answer = 2;
            break;
        }
    }
    if (host.flags.interrupt_requested) {
        host.flags.interrupt_requested = false;
        return report_error(err_user_interrupted_program);
    }
    return double_result(answer);
}

}  // namespace tl
