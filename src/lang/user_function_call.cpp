// user_function_call.cpp — calling a user-defined function (function slot 41).
//
// The scanner has evaluated the arguments and names the definition in
// lang.scan.called_function. A one-line definition evaluates its expression
// from the DEF line with the arguments bound (names equal to an argument scan
// as kind 19); a body of lines is run like a GOSUB and its RETURN value is
// the function value. Everything the call changes in the scanner and the
// executor is put back on every way out, so a failed call leaves the
// interpreter as it was.
#include "lang/user_function_call.h"

#include <cstring>

#include "exec/exec_state.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/statements.h"
#include "lang/builtin_support.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

bool is_string_name(const char* name) {
    const std::size_t n = std::strlen(name);
    return n > 0 && name[n - 1] == '$';
}

/// The scanner and reporter state of the calling statement.
struct CallerScan {
    const char* position;
    const char* end;
    const char* start;
    char terminator;
    ValueReference sole_reference;
    bool in_print;
    bool skipping;
    bool evaluating_function;
    FunctionCallFrame call;
    const char* reporter_text;
    const char* reporter_start;
    int error_column;

    static CallerScan take() {
        const ScanState& s = lang.scan;
        return CallerScan{s.position,  s.end,      s.start,    s.terminator,
                          s.sole_reference, s.in_print, s.skipping, s.evaluating_function,
                          s.call,      lang.reporter.text, lang.reporter.statement_start,
                          lang.reporter.error_column};
    }
    void restore() const {
        ScanState& s = lang.scan;
        s.position = position;
        s.end = end;
        s.start = start;
        s.terminator = terminator;
        s.sole_reference = sole_reference;
        s.in_print = in_print;
        s.skipping = skipping;
        s.evaluating_function = evaluating_function;
        s.call = call;
        lang.reporter.text = reporter_text;
        lang.reporter.statement_start = reporter_start;
        lang.reporter.error_column = error_column;
    }
};

/// The executor state that a body changes, as GOSUB saves it.
struct CallerExec {
    ExecPosition position;
    BlockState block;
    bool skip;
    bool forced_skip;
    bool return_reached;
    std::uint32_t statement_number;
    ProgramLine* current_line;

    static CallerExec take() {
        return CallerExec{exec.position,       exec.block,          exec.skip,        exec.forced_skip,
                          exec.return_reached, exec.statement_number, exec.current_line};
    }
    void restore() const {
        exec.position = position;
        exec.block = block;
        exec.skip = skip;
        exec.forced_skip = forced_skip;
        exec.return_reached = return_reached;
        exec.statement_number = statement_number;
        exec.current_line = current_line;
    }
};

/// Arguments must match the names: "$" names take strings, others numbers.
int check_arguments(const UserFunction& f, const Item* params, int count) {
    if (count != f.argument_count) return report_error(err_incorrect_number_parameters);
    for (int i = 0; i < count; ++i) {
        const std::uint32_t k = params[i].kind;
        if (is_string_name(f.arguments[i])) {
            if (k != kind_string) return fail_at(err_invalid_type_expecting_string, params[i]);
        } else if (k != kind_double && k != kind_long && k != kind_numeric_text) {
            return fail_at(err_invalid_type_expecting_number, params[i]);
        }
    }
    return 0;
}

/// The result must match the function's name; `column` is where to point.
int check_result(const UserFunction& f, int kind, int column) {
    lang.reporter.error_column = column;
    if (is_string_name(f.name)) {
        if (kind != kind_string) return report_error(err_invalid_type_expecting_string);
    } else if (kind != kind_double && kind != kind_long && kind != kind_numeric_text) {
        return report_error(err_invalid_type_expecting_number);
    }
    return kind;
}

/// Evaluates a one-line definition's expression on its own line.
int evaluate_one_line(const UserFunction& f) {
    ProgramLine line;
    if (int rc = next_line(f.body_offset, line); rc < 0) return rc;
    begin_statement(line.text);  // carets count from the line start
    lang.scan.position = line.text + f.statement_offset;
    const int column = scan_column();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    return check_result(f, kind, column);
}

/// Runs a body of lines like a GOSUB; the RETURN value is the result.
int run_body(const UserFunction& f) {
    const CallerExec saved = CallerExec::take();
    exec.block = BlockState{};
    exec.block.block_type = block_gosub;
    exec.block.inside_gosub = true;
    exec.skip = false;
    exec.forced_skip = false;
    exec.return_reached = false;
    int rc = run_program_from(f.body_offset);
    const bool returned = exec.return_reached;
    const bool ended = exec.program_ended && !returned;
    saved.restore();
    if (ended) {
        // END inside the body ends the program once this statement is done.
        end_run_loop();
        exec.program_ended = true;
    }
    if (rc < 0) return rc;
    const Item& v = exec.return_value;
    int kind = returned ? static_cast<int>(v.kind) : 0;
    switch (kind) {
        case 0:  // DEF END, or the program ended: 0 or ""
            if (is_string_name(f.name)) {
                lang.scan.buffer[0] = 0;
                return kind_string;
            }
            lang.scan.result = 0.0;
            return kind_double;
        case kind_double: lang.scan.result = v.number; break;
        case kind_string:
        case kind_numeric_text: std::memcpy(lang.scan.buffer, exec.return_text, sizeof lang.scan.buffer); break;
        case kind_long: long_copy(exec.return_long, long_state.work); break;
        default: break;
    }
    return kind;  // checked against the name by the caller, on the calling line
}

}  // namespace

int user_function_result_kind() {
    const int index = lang.scan.called_function;
    if (index < 0 || index >= lang.functions.count) return kind_double;
    return is_string_name(lang.functions.entries[static_cast<std::size_t>(index)].name) ? kind_string : kind_double;
}

int fn_user_function_handler(Item* params, int count) {
    UserFunctionTable& t = lang.functions;
    const int index = lang.scan.called_function;
    if (index < 0 || index >= t.count) return report_error(err_invalid_function_call);
    const UserFunction& f = t.entries[static_cast<std::size_t>(index)];
    if (int rc = check_arguments(f, params, count); rc < 0) return rc;
    if (t.call_depth >= max_function_nesting) return report_error(err_nesting_user_defined_functions_too);

    const CallerScan caller = CallerScan::take();
    ScanState& s = lang.scan;
    s.call = FunctionCallFrame{index, params, count};
    s.evaluating_function = true;
    s.in_print = false;
    s.skipping = false;
    ++t.call_depth;
    int kind = f.multi_line ? run_body(f) : evaluate_one_line(f);
    --t.call_depth;
    caller.restore();
    if (kind >= 0 && f.multi_line) kind = check_result(f, kind, caller.error_column);
    if (kind >= 0) return kind;
    // The fault was reported where it happened; the outermost call adds
    // that the function failed, pointing at the call.
    if (t.call_depth > 0) return kind;
    return report_error(err_error_return_user_defined_function);
}

}  // namespace tl
