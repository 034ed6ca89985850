// longmath_statement.cpp — INTEGER, FLOAT and LONG, and the text store of long results.
//
// LONG has three forms (docs/longmath.md is the user's reference):
//   LONG                         long-default mode on (LONG OFF: off again)
//   LONG a, b, c(100)            declares LONGMATH variables and arrays
//   LONG r$, sqr, 2              runs a named operation; the first item is the
//                                string variable or string array for the result
#include "exec/long_text_buffers.h"
#include "exec/longmath_statement.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "exec/arrays.h"
#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/statements.h"
#include "exec/string_array_long.h"
#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "lang/user_functions.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {


bool equals_word(std::string_view word, const char* lower) {
    if (word.size() != std::strlen(lower)) return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        char c = word[i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != lower[i]) return false;
    }
    return true;
}

bool next_is(char c) {
    skip_blanks();
    return lang.scan.position < lang.scan.end && *lang.scan.position == c;
}

/// The string-space word that a kind 3 Item with a reference names, or null.
std::uint32_t* string_target(const Item& dest) {
    const ValueReference ref = item_reference(dest);
    if (ref.word == 0) return nullptr;
    if (ref.array != nullptr) {
        if (ref.array->type != kind_string) return nullptr;
        return &ref.array->words()[ref.word - 1];
    }
    VariableEntry& v = variable_at(static_cast<int>(ref.word - 1));
    return v.type == kind_string ? &v.value.word : nullptr;
}

// ---------------------------------------------------------------------------
// LONG a, b, c(100)

/// After a declared name: "," and more names, or the end of the statement.
/// Anything else is given to the scanner, which names what is out of place
/// (an operator, a comparison, ...); what it accepts is still no declaration.
int declaration_separator(bool& more) {
    more = false;
    if (next_is(',')) {
        ++lang.scan.position;
        if (at_statement_end()) return error_at_column(err_expect_more_items_following_comma, scan_column());
        more = true;
        return 0;
    }
    if (at_clause_end()) return 0;
    Item stray;
    const int column = scan_column();
    const int k = get_item(stray, scan_declaration | scan_name_only);
    if (k < 0) return k;
    return error_at_column(err_invalid_statement, column);
}

/// The array sizes behind a declared name, dimensioned as LONGMATH unless passing over.
int declare_array(const char* name, int column) {
    Item dims[max_parameters];
    const std::uint32_t string_mark = temp_string_mark();
    const std::uint32_t long_mark = temp_long_mark();
    const int count = parse_parameter_list(dims);
    double values[max_parameters];
    for (int i = 0; i < count; ++i) {
        switch (dims[i].kind) {
            case kind_double: values[i] = dims[i].number; break;
            case kind_numeric_text: values[i] = std::strtod(item_text(dims[i]), nullptr); break;
            case kind_long:
                if (long_to_double(long_at(dims[i].word), values[i], false) < 0) values[i] = -1;
                break;
            default: values[i] = -1; break;  // no number: refused as a size
        }
    }
    release_temp_strings(string_mark);
    release_temp_longs(long_mark);
    if (count < 0) return count;
    if (passing_over()) return 0;
    lang.reporter.error_column = column;
    const int rc = dimension_array(name, count, values, true);
    return rc < 0 ? rc : 0;
}

/// Declares a LONGMATH scalar that the scanner did not create itself (its
/// name is also an array's, or the statement is passed over).
int declare_scalar(std::string_view name, int column) {
    if (!name.empty() && name.back() == '$') return error_at_column(err_long_name_ends_with_dollar, column);
    if (passing_over()) return 0;
    if (find_variable(name) >= 0) return error_at_column(err_variable_already_defined, column);
    lang.reporter.error_column = column;
    const int rc = create_variable(name, true);
    return rc < 0 ? rc : 0;
}

int long_declarations() {
    for (;;) {
        Item item;
        const int column = scan_column();
        // Executing: the scanner creates new scalars as LONGMATH and refuses
        // names in use (178). Passing over: names are only read.
        const int mode = passing_over() ? (scan_declaration | scan_name_only) : scan_declaration_context;
        const int k = get_item(item, mode);
        if (k < 0) return k;
        char name[name_buffer_size];
        std::memcpy(name, scan_name_text(), sizeof name);
        switch (k) {
            case 0: return error_at_column(err_expect_more_items_following_comma, column);
            case kind_predefined:
            case kind_numeric_text:
            case kind_string: return error_at_column(err_constant_invalid_long_dimension, column);
            case kind_function:
            case kind_special_function: return error_at_column(err_function_invalid_long_dimension, column);
            case kind_long: break;  // a new LONGMATH variable, made by the scanner
            case kind_string_array:
            case kind_double_array:
            case kind_long_array: {  // an existing array's name: the scalar is new
                const int rc = declare_scalar(name, column);
                if (rc < 0) return rc;
                break;
            }
            case scan_name: {
                if (find_user_function(name) >= 0) return error_at_column(err_function_invalid_long_dimension, column);
                const int rc = next_is('(') ? declare_array(name, column) : declare_scalar(name, column);
                if (rc < 0) return rc;
                break;
            }
            default: return error_at_column(err_invalid_name, column);
        }
        bool more = false;
        const int rc = declaration_separator(more);
        if (rc < 0 || !more) return rc;
    }
}

// ---------------------------------------------------------------------------
// LONG r$, operation [, operand ...]

/// Operands the operation takes (div takes an optional third item: the
/// destination of the integer-mode remainder).
int operand_count(int op) {
    switch (op) {
        case lop_longpi:
        case lop_longe: return 0;
        case lop_root:
        case lop_power:
        case lop_mult:
        case lop_div:
        case lop_mod: return 2;
        default: return 1;
    }
}

/// Transcendental operations: floating-point mode only.
bool floating_only(int op) {
    switch (op) {
        case lop_atn:
        case lop_sqr:
        case lop_longpi:
        case lop_longe:
        case lop_sin:
        case lop_exp:
        case lop_log:
        case lop_root:
        case lop_power: return true;
        default: return false;
    }
}

/// The value of the operand just evaluated (kind `kind`) as a long number.
int operand_value(int kind, int column, LongNumber& dest) {
    lang.reporter.error_column = column;
    switch (kind) {
        case kind_double: return long_from_double(lang.scan.result, dest, true);
        case kind_long: long_copy(long_state.work, dest); return 0;
        case kind_numeric_text:
        case kind_string: return long_from_operand_text(lang.scan.buffer, column, dest);
        case kind_string_array: return long_from_string_array(*lang.scan.sole_reference.array, column, dest);
        default: return error_at_column(err_invalid_value_longmath_variable, column);
    }
}

/// A destination item (the first one, or div's remainder), scanned as a name.
int scan_destination(Item& dest, int not_a_destination) {
    const int column = scan_column();
    const int k = get_item(dest, scan_no_shorthands);
    if (k < 0) return k;
    dest.column = column;
    // While passing over, a new name has no entry yet.
    const bool usable = (k == kind_string && (passing_over() || !item_reference(dest).empty())) ||
                        k == kind_string_array || k == kind_argument;
    if (!usable) return error_at_column(not_a_destination, column);
    return k;
}

/// The plain text of `n` into long_text_buffers.result.
int long_text_of(const LongNumber& n, std::string_view& out) {
    return long_plain_text(n, long_text_buffers.result, out);
}

/// Runs operation `op` on the operands into `r`.
int compute(int op, LongNumber* const* operands, LongNumber& r, int column) {
    LongNumber* const* x = operands;
    LongMode& mode = long_state.mode;
    lang.reporter.error_column = column;
    const LongClock::time_point start = long_timer_start();
    int rc = 0;
    switch (op) {
        case lop_atn: rc = long_atn(*x[0], false, r); break;
        case lop_sqr: rc = long_sqrt(*x[0], r); break;
        case lop_longpi: rc = long_pi(r); break;
        case lop_longe: rc = long_e(r); break;
        case lop_sin: rc = long_sin(*x[0], false, r); break;
        case lop_exp: rc = long_exp(*x[0], r); break;
        case lop_log: rc = long_log(*x[0], r); break;
        case lop_root:
            rc = long_root(*x[0], *x[1], r);
            if (rc >= 0) long_timer_report(root_time_label, start);
            break;
        case lop_power:
            // As the "^" operator: 16 more digits while computing, then rounded back.
            rc = long_power_operator_value(*x[0], *x[1], r);
            if (rc >= 0) long_timer_report(power_time_label, start);
            break;
        case lop_mult: rc = long_multiply(*x[0], *x[1], r); break;
        case lop_div: rc = long_divide(*x[0], *x[1], r); break;
        case lop_factorial:
            rc = long_factorial(*x[0], r);
            if (rc >= 0) long_timer_report(factorial_time_label, start);
            break;
        case lop_mod: rc = long_mod(*x[0], *x[1], r); break;
        case lop_half:
            rc = long_half(*x[0], r);
            if (rc >= 0) long_timer_report(half_time_label, start);
            break;
        default:  // convert: the operand as the current mode keeps it
            long_copy(*x[0], r);
            r.nrm = 0;
            long_normalise(r, normalise_round);
            break;
    }
    if (rc < 0) return rc;
    if (mode.integer_mode && r.len > max_long_digits) return error_at_column(err_invalid_long_number_length, column);
    lang.reporter.error_column = column;
    return long_check_exponent(r, true);
}

int long_operation_body() {
    Item dest;
    if (const int k = scan_destination(dest, err_long_first_item_dest_string); k < 0) return k;
    // Without an operation name behind it, the statement is a declaration,
    // and a name ending in "$" cannot be LONGMATH.
    if (!next_is(',')) return error_at_column(err_long_name_ends_with_dollar, dest.column);
    ++lang.scan.position;
    const std::string_view word = peek_word();
    const int op_column = scan_column();
    const int op = word.empty() ? -1 : find_keyword(Table::longmath_operations, word);
    if (op < 0) return error_at_column(err_long_name_ends_with_dollar, dest.column);
    lang.scan.position += word.size();

    const int wanted = operand_count(op);
    LongNumber* x[2] = {nullptr, nullptr};
    int given = 0;
    Item remainder_dest;
    bool has_remainder_dest = false;
    while (next_is(',')) {
        ++lang.scan.position;
        if (given == wanted && op == lop_div && !has_remainder_dest) {
            if (const int k = scan_destination(remainder_dest, err_long_invalid_string_string_array); k < 0) return k;
            has_remainder_dest = true;
            continue;
        }
        if (given >= wanted || has_remainder_dest)
            return error_at_column(err_long_incorrect_number_parameters, scan_column());
        const int column = scan_column();
        const int kind = evaluate_expression(scan_separators);
        if (kind < 0) return kind;
        if (kind == 0) return error_at_column(err_invalid_expression, column);
        if (lang.scan.terminator == ',') --lang.scan.position;  // seen again by next_is(',')
        if (passing_over()) {
            ++given;
            continue;
        }
        const std::int64_t ref = new_temp_long();
        if (ref < 0) return static_cast<int>(ref);
        x[given] = &long_at(static_cast<std::uint32_t>(ref));
        const LongClock::time_point start = long_timer_start();
        if (const int rc = operand_value(kind, column, *x[given]); rc < 0) return rc;
        if (op == lop_convert) long_timer_report("long_convert_in Time:      ", start);
        ++given;
    }
    if (!at_clause_end()) return error_at_column(err_invalid_statement, scan_column());
    if (given != wanted) return error_at_column(err_long_incorrect_number_parameters, op_column);
    if (passing_over()) return 0;

    if (long_state.mode.integer_mode && floating_only(op))
        return error_at_column(err_long_operation_only_valid_floating, op_column);
    if (has_remainder_dest && !long_state.mode.integer_mode)
        return error_at_column(err_long_operation_only_valid_integer, remainder_dest.column);

    const std::int64_t result_ref = new_temp_long();
    if (result_ref < 0) return static_cast<int>(result_ref);
    LongNumber& r = long_at(static_cast<std::uint32_t>(result_ref));
    if (const int rc = compute(op, x, r, op_column); rc < 0) return rc;
    long_peek_values(r);

    std::string_view text;
    lang.reporter.error_column = dest.column;
    if (const int rc = long_text_of(r, text); rc < 0) return rc;
    if (const int rc = store_long_text(dest, text, false); rc < 0) return rc;
    if (has_remainder_dest) {
        lang.reporter.error_column = remainder_dest.column;
        if (const int rc = long_text_of(long_state.remainder, text); rc < 0) return rc;
        if (const int rc = store_long_text(remainder_dest, text, false); rc < 0) return rc;
    }
    return 0;
}

int long_operation() {
    const std::uint32_t string_mark = temp_string_mark();
    const std::uint32_t long_mark = temp_long_mark();
    const int rc = long_operation_body();
    release_temp_strings(string_mark);
    release_temp_longs(long_mark);
    return rc;
}

}  // namespace

bool at_clause_end() {
    if (at_statement_end()) return true;
    const std::string_view word = peek_word();
    return !word.empty() && find_keyword(Table::statements, word) == stmt_else;
}

void set_floating_length(int digits) {
    long_state.mode.precision = digits;
    long_state.mode.saved_precision = digits;
    lang.predefined[pre_floatingptlength].number = digits;
}

int do_integer() {
    if (!at_clause_end()) return error_at_column(err_invalid_statement, scan_column());
    if (!exec.skip) long_state.mode.integer_mode = true;
    return 0;
}

int do_float() {
    if (at_clause_end()) {
        if (exec.skip) return 0;
        long_state.mode.integer_mode = false;
        set_floating_length(long_state.mode.saved_precision);
        return 0;
    }
    const int column = scan_column();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    double n = 0.0;
    switch (kind) {
        case kind_double: n = lang.scan.result; break;
        case kind_numeric_text: n = std::strtod(lang.scan.buffer, nullptr); break;
        case kind_long:
            lang.reporter.error_column = column;
            if (exec.skip) break;
            if (const int rc = long_to_double(long_state.work, n, true); rc < 0) return rc;
            break;
        default: return error_at_column(err_invalid_type_expecting_number, column);
    }
    if (!at_clause_end()) return error_at_column(err_invalid_statement, scan_column());
    if (exec.skip) return 0;
    // The bounds as written: 10 itself is refused, 11 is the shortest length.
    if (!(n > min_floating_length - 1 && n <= max_long_digits))
        return error_at_column(err_invalid_floating_point_length, column);
    long_state.mode.integer_mode = false;
    set_floating_length(static_cast<int>(n));
    return 0;
}

int do_long() {
    if (at_clause_end()) {
        if (!exec.skip) areas.long_default = true;
        return 0;
    }
    const std::string_view name = peek_name();
    if (equals_word(name, "off")) {
        const char* after_name = lang.scan.position + name.size();
        const char* saved = lang.scan.position;
        lang.scan.position = after_name;
        if (at_clause_end()) {
            if (!exec.skip) areas.long_default = false;
            return 0;
        }
        lang.scan.position = saved;
    }
    if (!name.empty() && name.back() == '$') {
        // "LONG a$(n)" with nothing behind it is a declaration, and cannot be LONGMATH.
        const char* p = lang.scan.position + name.size();
        while (p < lang.scan.end && (*p == ' ' || *p == '\t')) ++p;
        if (p < lang.scan.end && *p == '(') {
            int depth = 0;
            bool quoted = false;
            for (; p < lang.scan.end; ++p) {
                if (*p == '"') quoted = !quoted;
                if (quoted) continue;
                if (*p == '(') ++depth;
                if (*p == ')' && --depth == 0) break;
            }
            const char* saved = lang.scan.position;
            lang.scan.position = p < lang.scan.end ? p + 1 : p;
            const bool declaration = at_clause_end();
            lang.scan.position = saved;
            if (declaration) return error_at_column(err_long_name_ends_with_dollar, scan_column());
        }
        return long_operation();
    }
    return long_declarations();
}

int store_long_text(const Item& dest, std::string_view text, bool single_string) {
    lang.reporter.error_column = dest.column;
    if (single_string && text.size() > max_string_length) return report_error(err_long_output_too_long_string);
    switch (dest.kind) {
        case kind_string: {
            std::uint32_t* target = string_target(dest);
            if (target == nullptr) return report_error(err_long_first_item_dest_string);
            if (text.size() > max_string_length) return report_error(err_long_output_too_long_string);
            return store_string(target, text, store_assign);
        }
        case kind_argument:
            if (text.size() > max_string_length) return report_error(err_long_output_too_long_string);
            text.copy(lang.scan.buffer, text.size());
            lang.scan.buffer[text.size()] = 0;
            return kind_string;
        case kind_string_array: {
            ArrayEntry& a = *dest.array;
            if (a.dimensions != 1) return report_error(err_output_array_one_dimensional);
            const std::size_t count = a.element_count();
            if (count * max_string_length < text.size() + 1) return report_error(err_output_array_too_small_long);
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t from = i * max_string_length;
                const std::string_view piece = from < text.size() ? text.substr(from, max_string_length) : "";
                if (const int rc = store_string(&a.words()[i], piece, store_assign); rc < 0) return rc;
            }
            return kind_string;
        }
        default: return report_error(err_long_first_item_dest_string);
    }
}

}  // namespace tl
