// variable_statements.cpp — statements that work on named variables: SWAP,
// the MID$ statement, LSET and RSET, DEBUGPRINT ("??") and PRINTALL.
#include <cstring>
#include <string_view>
#include <utility>

#include "exec/commands.h"
#include "exec/everyday_statements.h"
#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/long_text_buffers.h"
#include "exec/memory_areas.h"
#include "exec/statement_targets.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "lang/user_functions.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

const char* type_name(std::uint32_t type) {
    switch (type) {
        case kind_double: return "double";
        case kind_string: return "string";
        case kind_long: return "long";
        default: return "?";
    }
}

/// Consumes `c` after blanks; false when something else comes.
bool consume(char c) {
    skip_blanks();
    ScanState& s = lang.scan;
    if (s.position >= s.end || *s.position != c) return false;
    ++s.position;
    return true;
}

// ---- displays shared by DEBUGPRINT and PRINTALL --------------------------

void show_double(const char* name, double value) { console_print("%s:  %23.18g\n", name, value); }

void show_text(const char* name, const char* text) {
    console_print("%s:  length=%d   %s\n", name, static_cast<int>(std::strlen(text)), text);
}

int show_long(const char* name, const LongNumber& n) {
    std::string_view text;
    const int rc = long_plain_text(n, long_text_buffers.print, text);
    if (rc < 0) return rc;
    console_print("%s:  (long) ", name);
    console_write(text);
    console_write("\n");
    trim_text_buffer(long_text_buffers.print);
    return 0;
}

/// The long number a variable or element refers to (0: none yet, value zero).
int show_long_ref(const char* name, std::uint32_t ref) {
    if (ref != 0) return show_long(name, long_at(ref));
    LongNumber& w = long_state.work;
    long_set_zero(w);
    return show_long(name, w);
}

int show_variable(const VariableEntry& v) {
    const char* name = variable_name(v);
    switch (v.type) {
        case kind_double: show_double(name, v.value.number); return 0;
        case kind_string: show_text(name, string_at(v.value.word)); return 0;
        case kind_long: return show_long_ref(name, v.value.word);
        default: return 0;
    }
}

void show_array(const ArrayEntry& a) {
    char dims[96];
    std::size_t n = 0;
    for (int i = 0; i < a.dimensions && n < sizeof dims - 16; ++i) {
        n += static_cast<std::size_t>(std::snprintf(dims + n, sizeof dims - n, i == 0 ? "%d" : ",%d", a.sizes[i]));
    }
    console_print("%s(%s)  %s, %zu elements\n", array_name(a), dims, type_name(a.type), a.element_count());
}

int print_variables() {
    console_print("Variables: %u\n", areas.variable_count);
    for (std::uint32_t i = 0; i < areas.variable_count; ++i) {
        if (int rc = show_variable(areas.variables[i]); rc < 0) return rc;
    }
    return 0;
}

void print_arrays() {
    console_print("Arrays: %u\n", areas.array_count);
    for (std::uint32_t i = 0; i < areas.array_count; ++i) show_array(areas.arrays[i]);
}

void print_reserved() {
    console_print("Reserved variables: %d\n", static_cast<int>(pre_count));
    for (int i = 0; i < pre_count; ++i) {
        const PredefinedVariable& p = lang.predefined[static_cast<std::size_t>(i)];
        if (p.type == kind_string) {
            show_text(predefined_name(i), p.text.data());
        } else {
            show_double(predefined_name(i), p.number);
        }
    }
}

/// One item of DEBUGPRINT: a variable, an array element, a predefined
/// variable or an argument of the user-defined function being evaluated.
/// Returns the kind of its value, which is left where get_item leaves it,
/// and its name in `name`.
int debugprint_item(char (&name)[name_buffer_size]) {
    ScanState& s = lang.scan;
    skip_blanks();
    const int column = scan_column();
    const char* start = s.position;
    Item probe;
    int k = get_item(probe, scan_name_only | scan_no_shorthands);
    if (k < 0) return k;
    if ((k != scan_name && k != kind_predefined) || find_user_function(scan_name_text()) >= 0)
        return error_at_column(err_string_numeric_variable, column);
    s.position = start;
    Item item;
    k = get_item(item, scan_no_shorthands);
    if (k < 0) return k;
    if (k == kind_argument) k = static_cast<int>(s.call.arguments[item.word].kind);
    if (k != kind_double && k != kind_string && k != kind_long && k != kind_numeric_text)
        return error_at_column(err_string_numeric_variable, column);
    copy_text(name, sizeof name, scan_name_text());
    return k;
}

/// A number of the MID$ parameter list; the list goes on when the
/// evaluation ended at a comma.
int mid_parameter(double& out, bool& more) {
    const int column = scan_column();
    const int kind = evaluate_expression(scan_in_parentheses | scan_separators);
    if (kind < 0) return kind;
    if (kind == 0) return error_at_column(err_mids_not_enough_parameters, column);
    more = lang.scan.terminator == ',';
    if (lang.scan.terminator == ';') return error_at_column(err_missing_comma, column);
    const int rc = evaluated_double(kind, column, out);
    if (rc < 0) return rc;
    return rc == 0 ? error_at_column(err_mids_2nd_3rd_parms_numbers, column) : 0;
}

}  // namespace

int do_swap() {
    VariableTarget a;
    VariableTarget b;
    if (int rc = scan_target(a, err_invalid_type); rc < 0) return rc;
    if (!consume(',')) return error_at_column(err_missing_comma, scan_column());
    if (int rc = scan_target(b, err_invalid_type); rc < 0) return rc;
    if (a.type != b.type) return error_at_column(err_invalid_type, b.column);
    if (exec.skip) return 0;
    if (a.type == kind_double) {
        std::swap(*a.number, *b.number);
    } else {
        std::swap(*a.word, *b.word);  // each text or long number has one owner
    }
    return 0;
}

/// MID$(s$, start [, length]) = value
int do_mid_statement() {
    const int column = scan_column();
    if (!consume('(')) return error_at_column(err_mids_requires_parameters, column);
    VariableTarget target;
    if (int rc = scan_target(target, err_mids_first_parm_string_var); rc < 0) return rc;
    if (target.type != kind_string) return error_at_column(err_mids_first_parm_string_var, target.column);
    if (!consume(',')) return error_at_column(err_mids_not_enough_parameters, scan_column());
    const int start_column = scan_column();
    double start = 0;
    double length = 0;
    bool more = false;
    if (int rc = mid_parameter(start, more); rc < 0) return rc;
    int length_column = start_column;
    const bool has_length = more;
    if (more) {
        length_column = scan_column();
        if (int rc = mid_parameter(length, more); rc < 0) return rc;
        if (more) return error_at_column(err_too_many_parameters, scan_column());
    }
    if (!consume('=')) return error_at_column(err_mids_expect_sign_after_parms, scan_column());
    const int value_column = scan_column();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    if (kind != kind_string) return error_at_column(err_invalid_type_expecting_string, value_column);
    if (exec.skip) return 0;
    char text[max_string_length + 1];
    copy_text(text, sizeof text, string_at(*target.word));
    const double old_length = static_cast<double>(std::strlen(text));
    if (!(start >= 1.0 && start <= old_length)) return error_at_column(err_mids_invalid_start_position, start_column);
    if (has_length && !(length >= 0.0)) return error_at_column(err_mids_invalid_length, length_column);
    const std::size_t from = static_cast<std::size_t>(start) - 1;
    std::size_t n = std::strlen(lang.scan.buffer);
    if (has_length && static_cast<double>(n) > length) n = static_cast<std::size_t>(length);
    if (n > std::strlen(text) - from) n = std::strlen(text) - from;
    std::memcpy(text + from, lang.scan.buffer, n);
    return store_text(target, text);
}

/// LSET / RSET s$ = value: justified into the string's present length.
int do_lset_rset(bool right) {
    VariableTarget target;
    if (int rc = scan_target(target, err_string_variable); rc < 0) return rc;
    if (target.type != kind_string) return error_at_column(err_string_variable, target.column);
    if (!consume('=')) return error_at_column(err_expect_equal_sign, scan_column());
    const int value_column = scan_column();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    if (kind == 0) return error_at_column(err_invalid_expression, value_column);
    if (kind != kind_string) return error_at_column(err_invalid_type_expecting_string, value_column);
    if (exec.skip) return 0;
    lang.reporter.error_column = target.column;
    const int rc = store_string(target.word, lang.scan.buffer, right ? store_rset : store_lset);
    return rc < 0 ? rc : 0;
}

int do_debugprint() {
    for (;;) {
        char name[name_buffer_size];
        const int kind = debugprint_item(name);
        if (kind < 0) return kind;
        // The list is checked up to the next item before anything is shown.
        const int more = next_target_separator();
        if (more < 0) return more;
        if (!exec.skip) {
            switch (kind) {
                case kind_double: show_double(name, lang.scan.result); break;
                case kind_long:
                    if (int rc = show_long(name, long_state.work); rc < 0) return rc;
                    break;
                default: show_text(name, lang.scan.buffer); break;
            }
        }
        if (more == 0) return 0;
    }
}

/// PRINTALL ["variables" | "arrays" | "memory" | "reserved"]
int do_printall() {
    char which[20] = {};
    if (!at_statement_end()) {
        const int column = scan_column();
        const std::uint32_t mark = temp_string_mark();
        const int kind = evaluate_expression(0);
        if (kind < 0) return kind;
        if (kind != kind_string) return error_at_column(err_invalid_parameter_printall, column);
        copy_text(which, sizeof which, lang.scan.buffer);
        release_temp_strings(mark);  // the memory report shows the space as between statements
        if (passing_over()) return 0;
        for (char& c : which)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (std::strcmp(which, "variables") != 0 && std::strcmp(which, "arrays") != 0 &&
            std::strcmp(which, "memory") != 0 && std::strcmp(which, "reserved") != 0)
            return error_at_column(err_invalid_parameter_printall, column);
    }
    if (exec.skip) return 0;
    const bool all = which[0] == 0;
    if (all || std::strcmp(which, "variables") == 0) {
        if (int rc = print_variables(); rc < 0) return rc;
    }
    if (all || std::strcmp(which, "arrays") == 0) print_arrays();
    if (all || std::strcmp(which, "memory") == 0) print_memory_report();
    if (all || std::strcmp(which, "reserved") == 0) print_reserved();
    return 0;
}

}  // namespace tl
