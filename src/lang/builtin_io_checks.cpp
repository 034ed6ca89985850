// builtin_io_checks.cpp — the dialog and message functions: browseinputfile$,
// browseoutputfile$, select, inputdialog, updatedialog and messagebox.
//
// The parameters are checked here in full; the dialogs exist only in the window.
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

// Words of messagebox (matched without regard to case).
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

}  // namespace

/// browseinputfile$(title), browseoutputfile$(title): dialogs of the window.
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
