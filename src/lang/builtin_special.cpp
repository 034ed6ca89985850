// builtin_special.cpp — the special functions, which take no parameter list:
// longpi, longe, remainder, cossame, checkdegrees, starttimer, endtimer,
// matherror, workingdir$, programdir$, checkmouseclick, inkey$, choosefont$.
#include <unistd.h>

#include <chrono>
#include <cstring>

#include "exec/front_end.h"
#include "graph/graph_mapping.h"
#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

bool in_console_mode() { return host.front_end == nullptr || host.front_end->console_mode(); }

double seconds_since(std::chrono::steady_clock::time_point t) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t).count();
}

/// The long constants and cosine need floating-point mode (the caller has
/// set the error column to the function name).
int floating_mode_only() {
    if (long_state.mode.integer_mode) return report_error(err_long_operation_only_valid_floating);
    return 0;
}

}  // namespace

int special_longpi() {
    int r = floating_mode_only();
    if (r >= 0) r = long_pi(long_state.work);
    return r < 0 ? r : long_result();
}

int special_longe() {
    int r = floating_mode_only();
    if (r >= 0) r = long_e(long_state.work);
    return r < 0 ? r : long_result();
}

int special_remainder() {
    long_copy(long_state.remainder, long_state.work);
    return long_result();
}

int special_cossame() {
    if (lang.last_sine_long) {
        int r = floating_mode_only();
        if (r >= 0) r = long_cos(long_state.last_sine_argument, lang.degrees, long_state.work);
        return r < 0 ? r : long_result();
    }
    double s = 0.0;
    double c = 0.0;
    sine_cosine(lang.last_sine_argument, s, c);
    return double_result(c);
}

int special_checkdegrees() { return double_result(lang.degrees ? 1.0 : 0.0); }

int special_starttimer() {
    const auto now = std::chrono::steady_clock::now();
    lang.stopwatch_start = now;
    return double_result(std::chrono::duration<double>(now - lang.start_time).count());
}

int special_endtimer() { return double_result(seconds_since(lang.stopwatch_start)); }

int special_matherror() { return double_result(lang.scan.math_error ? 1.0 : 0.0); }

int special_workingdir() {
    char folder[1024];
    if (::getcwd(folder, sizeof folder) == nullptr) return report_error(err_invalid_path);
    return text_result(folder, std::strlen(folder));
}

int special_programdir() { return text_result(host.program_folder, std::strlen(host.program_folder)); }

int special_checkmouseclick() {
    if (in_console_mode()) return report_error(err_function_not_valid_console_mode);
    return double_result(static_cast<double>(take_mouse_click()));
}

int special_inkey() {
    const int key = host.front_end == nullptr ? -1 : host.front_end->read_key();
    // No key can come any more: a loop waiting for one would never end.
    if (key == key_end_of_input) host.flags.input_ended = true;
    if (key < 0 || key > 255) return text_result("", 0);
    const char c = static_cast<char>(key);
    return text_result(&c, 1);
}

int special_choosefont() {
    if (in_console_mode()) return report_error(err_function_not_valid_console_mode);
    return report_error(err_invalid_function_call);  // the window has no font dialog yet
}

}  // namespace tl
