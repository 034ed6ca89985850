// debug_statement.cpp — DEBUG: the debug output, trace and stepping switches,
// and the options that steer and measure the long-number routines.
//
//   DEBUG option [off] [, option [off] ...]
//   DEBUG timer name [off]      DEBUG timer name, off
//   DEBUG peekbcd expression
#include <unistd.h>

#include <cstring>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/longmath_statement.h"
#include "exec/memory_areas.h"
#include "exec/statements.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

/// The letters at the scan position; `column` is where they start.
std::string_view read_word(int& column) {
    const std::string_view word = peek_word();
    column = scan_column();
    lang.scan.position += word.size();
    return word;
}

bool is_off(std::string_view word) {
    return word.size() == 3 && (word[0] | 0x20) == 'o' && (word[1] | 0x20) == 'f' && (word[2] | 0x20) == 'f';
}

/// Consumes a following word "off" (in the same option); true when there was one.
bool take_off() {
    const char* saved = lang.scan.position;
    int column = 0;
    if (is_off(read_word(column))) return true;
    lang.scan.position = saved;
    return false;
}

/// Options that a following "off" switches off again.
bool can_be_switched_off(int option) {
    switch (option) {
        case dbg_optmul:
        case dbg_step:
        case dbg_trace:
        case dbg_long:
        case dbg_detail:
        case dbg_lnrat:
        case dbg_oldconvert:
        case dbg_matherrok: return true;
        default: return false;
    }
}

const char* on_off(bool on) { return on ? "on" : "off"; }

/// "testroutine": the state of the long-number modes and the debug switches.
void print_status() {
    const LongMode& m = long_state.mode;
    if (m.integer_mode) {
        console_print("LONGMATH: integer mode (floating-point length %d), rounding %s\n", m.precision,
                      on_off(m.rounding));
    } else {
        console_print("LONGMATH: floating-point mode, length %d, rounding %s\n", m.precision, on_off(m.rounding));
    }
    console_print("Long default %s, optmul %s, long %s, lnrat %s, oldconvert %s, matherrok %s\n",
                  on_off(areas.long_default), on_off(m.optmul), on_off(m.debug_display), on_off(m.peek_values),
                  on_off(m.oldconvert), on_off(m.matherrok));
    console_print("Debug output %s, trace %s, step %s\n", on_off(lang.reporter.debug), on_off(exec.trace),
                  on_off(host.flags.step_mode.load()));
    console_write("Timers:");
    bool any = false;
    for (int op = 0; op < lop_count; ++op) {
        if (!long_timer_on(op)) continue;
        console_print(" %s", keyword_name(Table::longmath_operations, op));
        any = true;
    }
    console_write(any ? "\n" : " none\n");
}

/// "dir": the folder that file names are relative to.
void print_folder() {
    char folder[1024];
    if (getcwd(folder, sizeof folder) == nullptr) {
        console_write("Current directory is not known.\n");
        return;
    }
    console_print("Current directory is: %s\n", folder);
}

/// "peekbcd expression": publishes the internals of the value as a long
/// number into the peek variables, whether or not "lnrat" is on.
int peek_value(bool passing) {
    const int column = scan_column();
    const std::uint32_t long_mark = temp_long_mark();
    const int kind = evaluate_expression(scan_separators);
    if (kind < 0) return kind;
    if (lang.scan.terminator == ',') --lang.scan.position;  // the option list goes on
    if (kind != kind_double && kind != kind_numeric_text && kind != kind_long)
        return error_at_column(kind == 0 ? err_invalid_expression : err_invalid_type_expecting_number, column);
    if (passing) return 0;
    const std::int64_t ref = new_temp_long();
    if (ref < 0) return static_cast<int>(ref);
    LongNumber& n = long_at(static_cast<std::uint32_t>(ref));
    lang.reporter.error_column = column;
    int rc = 0;
    if (kind == kind_double) rc = long_from_double(lang.scan.result, n, true);
    if (kind == kind_numeric_text) rc = long_from_text(lang.scan.buffer, n, true);
    if (kind == kind_long) long_copy(long_state.work, n);
    if (rc >= 0) {
        const bool saved = long_state.mode.peek_values;
        long_state.mode.peek_values = true;
        long_peek_values(n);
        long_state.mode.peek_values = saved;
    }
    release_temp_longs(long_mark);
    return rc < 0 ? rc : 0;
}

/// "timer name [off]" or "timer name, off".
int timer_option(bool passing) {
    int column = 0;
    const std::string_view name = read_word(column);
    const int op = name.empty() ? -1 : find_keyword(Table::longmath_operations, name);
    if (op < 0) return error_at_column(err_invalid_debug_function, column);
    bool on = !take_off();
    skip_blanks();
    if (on && lang.scan.position < lang.scan.end && *lang.scan.position == ',') {
        ++lang.scan.position;
        if (!is_off(read_word(column))) return error_at_column(err_invalid_debug_function, column);
        on = false;
    }
    if (!at_clause_end()) return error_at_column(err_invalid_debug_function, scan_column());
    if (!passing) set_long_timer(op, on);
    return 0;
}

/// Switches option `option` on (`on` false: off) unless passing over.
void apply(int option, bool on) {
    LongMode& m = long_state.mode;
    switch (option) {
        case dbg_optmul: m.optmul = on; break;
        case dbg_testdata: console_write("Initializing test variables.\n"); break;
        case dbg_step:
            host.flags.step_mode = on;
            exec.announce = on;
            break;
        case dbg_trace: exec.trace = on; break;
        case dbg_long: m.debug_display = on; break;
        case dbg_round:
        case dbg_truncate:
            m.rounding = option == dbg_round;
            clear_long_constants();
            break;
        case dbg_detail: lang.reporter.debug = on; break;
        case dbg_dir: print_folder(); break;
        case dbg_off:
            lang.reporter.debug = false;
            exec.trace = false;
            m.debug_display = false;
            m.peek_values = false;
            clear_long_timers();
            break;
        case dbg_lnrat: m.peek_values = on; break;
        case dbg_oldconvert: m.oldconvert = on; break;
        case dbg_matherrok: m.matherrok = on; break;
        case dbg_testroutine: print_status(); break;
        case dbg_graph:
        case dbg_zbox:
        case dbg_mousecheckforward:
            console_print("DEBUG %s: the graph window diagnostics are not available in this version.\n",
                          keyword_name(Table::debug_options, option));
            break;
        default: break;
    }
}

}  // namespace

int do_debug() {
    const bool passing = passing_over();
    for (;;) {
        int column = 0;
        const std::string_view word = read_word(column);
        const int option = word.empty() ? -1 : find_keyword(Table::debug_options, word);
        if (option < 0) return error_at_column(err_invalid_debug_function, column);
        if (option == dbg_timer) return timer_option(passing);
        if (option == dbg_peekbcd) {
            if (const int rc = peek_value(passing); rc < 0) return rc;
        } else {
            const bool off = can_be_switched_off(option) && take_off();
            if (!passing) apply(option, !off);
        }
        skip_blanks();
        if (lang.scan.position < lang.scan.end && *lang.scan.position == ',') {
            ++lang.scan.position;
            continue;
        }
        if (!at_clause_end()) return error_at_column(err_invalid_debug_function, scan_column());
        return 0;
    }
}

}  // namespace tl
