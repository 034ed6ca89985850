// control_flow.cpp — IF/THEN/ELSE, FOR/NEXT, WHILE/WEND, GOTO, GOSUB/RETURN, ON,
// BREAK, CONTINUE, END, STOP and CONT.
//
// Blocks are not kept in a table: FOR, WHILE and GOSUB run their bodies by
// calling the run loop recursively; NEXT, WEND and RETURN end that inner run
// loop, and the statement that opened the block restores its saved state and
// decides what comes next. Untaken code is passed over in skip mode.
#include <cmath>
#include <cstring>

#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "graph/graph_state.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scan_caches.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// Everything a block changes, saved on entry and restored on every way out.
struct SavedState {
    ExecPosition position;
    BlockState block;
    bool skip;
    bool forced_skip;
    const char* scan_position;
    const char* scan_end;
    const char* scan_start;
    const char* reporter_text;
    const char* reporter_start;
    ProgramLine* current_line;

    static SavedState take() {
        SavedState s;
        s.position = exec.position;
        s.block = exec.block;
        s.skip = exec.skip;
        s.forced_skip = exec.forced_skip;
        s.scan_position = lang.scan.position;
        s.scan_end = lang.scan.end;
        s.scan_start = lang.scan.start;
        s.reporter_text = lang.reporter.text;
        s.reporter_start = lang.reporter.statement_start;
        s.current_line = exec.current_line;
        return s;
    }
    void restore_position() const {
        exec.position = position;
        exec.current_line = current_line;
        lang.scan.position = scan_position;
        lang.scan.end = scan_end;
        lang.scan.start = scan_start;
        lang.reporter.text = reporter_text;
        lang.reporter.statement_start = reporter_start;
    }
    void restore_flags() const {
        exec.block = block;
        exec.skip = skip;
        exec.forced_skip = forced_skip;
    }
};

bool display_on() { return lang.reporter.debug || exec.trace || host.flags.step_mode.load(); }

int error_at(int number, int column) {
    lang.reporter.error_column = column;
    return report_error(number);
}

/// Skip mode for a branch or round: `skip`, forced on while anything forces it.
void set_skip(bool skip) {
    exec.skip = skip || exec.forced_skip || exec.check_mode || exec.break_pending || exec.continue_pending;
}

/// Consumes the statement keyword `slot` when it comes next (a whole word).
bool match_keyword(int slot) { return take_word(keyword_name(Table::statements, slot)); }

/// The slot of the statement keyword that comes next, without consuming it; -1 if none.
int peek_keyword() {
    skip_blanks();
    const char* p = lang.scan.position;
    char word[16];
    std::size_t n = 0;
    while (p + n < lang.scan.end && n < sizeof word - 1) {
        const char c = p[n];
        if (!is_name_char(c)) break;
        word[n] = c;
        ++n;
    }
    if (n == 0) return -1;
    const std::string_view name(word, n);
    if (const NameCacheEntry* known = cached_name(name)) return known->slots.statement;
    return find_keyword(Table::statements, name);
}

void skip_colon() {
    skip_blanks();
    if (lang.scan.position < lang.scan.end && *lang.scan.position == ':') ++lang.scan.position;
}

int column_in_line() { return static_cast<int>(lang.scan.position - exec.current_line->text); }

/// Reads the statement number of GOTO/GOSUB; "Missing statement number." if none.
/// Later errors about the target point at it.
int read_target(std::uint32_t& number) {
    skip_blanks();
    exec.target_column = scan_column();
    const char* p = lang.scan.position;
    const int rc = read_statement_number(p, lang.scan.start, number);
    if (rc < 0) return rc;
    if (rc == 0) return error_at(err_missing_statement_number, scan_column());
    lang.scan.position = p;
    return 0;
}

/// Continues behind the NEXT or WEND that ended a loop.
int continue_behind_loop_end(std::uint32_t loop_line) {
    if (exec.end_line_offset != loop_line) {
        ProgramLine& line = *exec.current_line;
        if (int rc = next_line(exec.end_line_offset, line); rc < 0) return rc;
        exec.position.line_offset = exec.end_line_offset;
        exec.position.next_offset = line.next;
    }
    begin_statement(exec.current_line->text, exec.current_line->text + exec.end_in_line);
    return 0;
}

/// Runs a loop body from `line_offset`, resuming at `column` of that line.
int run_body(std::uint32_t line_offset, int column) {
    exec.next_reached = false;
    exec.wend_reached = false;
    // A body that starts on the next line is run from there: the rest of
    // this line holds nothing to run.
    const ProgramLine& line = *exec.current_line;
    if (column <= line.length) {
        const char* rest = line.text + column;
        while (*rest == ' ' || *rest == '\t') ++rest;
        if (*rest == 0 && exec.position.line_offset == line_offset) {
            exec.position.resume_in_line = -1;
            return run_program_from(exec.position.next_offset);
        }
    }
    exec.position.resume_in_line = column;
    return run_program_from(line_offset);
}

/// Converts an evaluated numeric result to a double (kinds 2, 16, 14).
bool numeric_double(int kind, double& out) {
    switch (kind) {
        case kind_double: out = lang.scan.result; return true;
        case kind_numeric_text: {
            if (known_number_text(lang.scan.buffer, out)) return true;
            char* end = nullptr;
            out = std::strtod(lang.scan.buffer, &end);
            if (end != nullptr && *end == 0) return true;
            LongNumber tmp;
            return long_from_text(lang.scan.buffer, tmp, false) >= 0 && long_to_double(tmp, out, false) >= 0;
        }
        case kind_long: return long_to_double(long_state.work, out, false) >= 0;
        default: return false;
    }
}

/// Converts an evaluated numeric result into `dest` as a long number.
bool numeric_long(int kind, LongNumber& dest) {
    switch (kind) {
        case kind_double: return long_from_double(lang.scan.result, dest, false) >= 0;
        case kind_numeric_text: return long_from_text(lang.scan.buffer, dest, false) >= 0;
        case kind_long: long_copy(long_state.work, dest); return true;
        default: return false;
    }
}

}  // namespace

bool condition_value(int kind) {
    switch (kind) {
        case kind_double: return lang.scan.result != 0.0 && !std::isnan(lang.scan.result);
        case kind_string: return lang.scan.buffer[0] != 0;
        case kind_numeric_text: {
            double d = 0;
            if (numeric_double(kind, d)) return d != 0.0;
            return false;
        }
        case kind_long: return !(long_state.work.blocks[0] == 0);
        default: return false;
    }
}

void skip_statement_text() {
    ScanState& s = lang.scan;
    bool quoted = false;
    while (s.position < s.end && *s.position != 0) {
        const char c = *s.position;
        if (quoted) {
            if (c == '\\' && s.position + 1 < s.end) {
                ++s.position;
            } else if (c == '"') {
                quoted = false;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ':') {
            return;
        }
        ++s.position;
    }
}

void end_run_loop() {
    lang.scan.position = lang.scan.end;
    exec.position.line_offset = areas.program_length;
    exec.position.next_offset = areas.program_length;
}

bool at_statement_end() {
    skip_blanks();
    const char* p = lang.scan.position;
    if (p >= lang.scan.end || *p == ':' || *p == 0) return true;
    // "//" starts a comment (a REM statement) that runs to the end of the line.
    return *p == '/' && p + 1 < lang.scan.end && p[1] == '/';
}

// ---- IF ---------------------------------------------------------------

int do_if() {
    const int if_column = lang.scan.start - lang.scan.start;  // the IF keyword starts the statement
    const std::uint32_t string_mark = temp_string_mark();
    const std::uint32_t long_mark = temp_long_mark();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;  // reported where it failed
    if (kind == 0) return error_at(err_invalid_expression_if, if_column);
    const bool condition = condition_value(kind);
    // The rest of the line runs inside this statement (a GOSUB there may
    // recurse deeply): the condition's temporaries are given back first.
    release_temp_strings(string_mark);
    release_temp_longs(long_mark);
    if (display_on() && !exec.skip) console_write(condition ? "IF Expression is TRUE\n" : "IF Expression is FALSE\n");
    const int next = peek_keyword();
    if (next != stmt_then && next != stmt_else && next != stmt_goto)
        return error_at(err_then_else_goto_follow_condition, scan_column());

    const SavedState saved = SavedState::take();
    const std::uint32_t if_line = exec.position.line_offset;
    if (exec.skip) exec.forced_skip = true;
    exec.block.block_type = block_if;
    exec.block.inside_if = true;
    exec.block.if_condition = condition;
    exec.block.else_seen = false;
    exec.block.while_begun_in_line = false;
    if (next == stmt_goto) set_skip(!condition);

    int result = 0;
    while (!at_statement_end() || (lang.scan.position < lang.scan.end && *lang.scan.position == ':')) {
        if (lang.scan.position < lang.scan.end && *lang.scan.position == ':') {
            ++lang.scan.position;
            continue;
        }
        lang.scan.start = lang.scan.position;
        lang.reporter.statement_start = lang.scan.position;
        const int rc = execute_statement();
        if (rc < 0) {
            result = rc;
            break;
        }
        if (rc == 1 || exec.program_ended || exec.next_reached || exec.wend_reached || exec.return_reached) break;
    }
    if (result == 0 && exec.position.line_offset != if_line && exec.block.while_begun_in_line)
        result = report_error(err_while_within_if_statement_not);

    const bool break_pending = exec.break_pending;
    const bool continue_pending = exec.continue_pending;
    exec.block = saved.block;
    exec.forced_skip = saved.forced_skip;
    if (result < 0) {
        exec.skip = saved.skip;
        return result;
    }
    const bool in_loop = exec.block.block_type != block_none && exec.block.block_type != block_gosub;
    if (break_pending && !in_loop && !exec.block.inside_for && !exec.block.inside_while) {
        exec.skip = saved.skip;
        return error_at(err_break_inside_loop, 0);
    }
    if (continue_pending && !in_loop && !exec.block.inside_for && !exec.block.inside_while) {
        exec.skip = saved.skip;
        return error_at(err_continue_inside_loop, 0);
    }
    exec.skip = (break_pending || continue_pending) ? true : saved.skip;
    // The rest of the line was run here.
    lang.scan.position = lang.scan.end;
    return 0;
}

int do_then() {
    if (!exec.block.inside_if || exec.block.block_type != block_if) return error_at(err_then_without_if, 0);
    if (exec.block.else_seen) return error_at(err_then_cannot_follow_else, 0);
    set_skip(!exec.block.if_condition);
    return 0;
}

int do_else() {
    if (!exec.block.inside_if || exec.block.block_type != block_if) return error_at(err_else_without_if, 0);
    if (exec.block.else_seen) return 1;
    set_skip(exec.block.if_condition);
    exec.block.else_seen = true;
    return 0;
}

// ---- FOR / NEXT -------------------------------------------------------

int do_for() {
    const SavedState saved = SavedState::take();
    const bool outer_continue = exec.continue_pending;
    exec.continue_pending = false;
    auto fail = [&](int rc) {
        saved.restore_flags();
        exec.continue_pending = outer_continue;
        return rc;
    };

    Item control;
    const int control_column = scan_column();
    // The control variable must be a variable or an element: a predefined
    // variable, a function or a value names no place to count in.
    const char* const control_start = lang.scan.position;
    Item probe;
    const int named = get_item(probe, scan_name_only);
    if (named < 0) return fail(named);
    if (named != scan_name) return fail(error_at(err_for_control_not_numeric, control_column));
    lang.scan.position = control_start;
    lang.scan.value_ref = nullptr;
    const int k = get_item(control, 0);
    if (k < 0) return fail(k);
    if (k != kind_double && k != kind_long) return fail(error_at(err_for_control_not_numeric, control_column));
    if (lang.scan.value_ref == nullptr && !exec.skip && !areas.scan_only)
        return fail(error_at(err_for_control_not_numeric, control_column));
    const bool is_long = k == kind_long;
    void* target = lang.scan.value_ref;
    ArrayEntry* target_array = control.array;
    std::uint32_t bound_generation = areas.name_tables_generation;
    Item eq;
    const int eq_column = scan_column();
    if (get_item(eq, 0) != kind_comparison || eq.word != cmp_eq)
        return fail(error_at(err_expect_equal_sign, eq_column));

    // Initial value, limit and step, evaluated once.
    const std::uint32_t string_mark = temp_string_mark();
    double start = 0, limit = 0, step = 1;
    std::int64_t start_ref = 0, limit_ref = 0, step_ref = 0, sum_ref = 0;
    if (is_long) {
        start_ref = new_temp_long();
        limit_ref = new_temp_long();
        step_ref = new_temp_long();
        // The sum of each step, kept for the whole loop: its digits are
        // allocated once, not at every NEXT.
        sum_ref = new_temp_long();
        if (start_ref < 0 || limit_ref < 0 || step_ref < 0 || sum_ref < 0) return fail(-1);
    }
    auto value_of = [&](int err, double& d, std::int64_t ref) {
        const int column = scan_column();
        const int kind = evaluate_expression(0);
        if (kind < 0) return kind;
        const bool ok = is_long ? numeric_long(kind, long_at(static_cast<std::uint32_t>(ref))) : numeric_double(kind, d);
        if (kind == 0 || !ok) return error_at(err, column);
        return 0;
    };
    if (int rc = value_of(err_for_initial_not_numeric, start, start_ref); rc < 0) return fail(rc);
    if (!match_keyword(stmt_to)) return fail(error_at(err_to_must_follow_initial, scan_column()));
    if (int rc = value_of(err_for_to_not_numeric, limit, limit_ref); rc < 0) return fail(rc);
    if (match_keyword(stmt_step)) {
        if (int rc = value_of(err_for_step_not_numeric, step, step_ref); rc < 0) return fail(rc);
    } else if (is_long) {
        if (long_from_text("1", long_at(static_cast<std::uint32_t>(step_ref)), false) < 0) return fail(-1);
    }
    // The values are kept here (long ones in their temporaries): the texts
    // met on the way are given back before the body runs, which may recurse.
    release_temp_strings(string_mark);

    // The control variable's storage: a variable entry's value or an element.
    auto long_ref_word = [&]() -> std::uint32_t* {
        if (target_array != nullptr) return static_cast<std::uint32_t*>(target);
        return &static_cast<VariableEntry*>(target)->value.word;
    };
    auto double_slot = [&]() -> double* {
        if (target_array != nullptr) return static_cast<double*>(target);
        return &static_cast<VariableEntry*>(target)->value.number;
    };
    auto long_value = [&]() -> LongNumber* {
        std::uint32_t* w = long_ref_word();
        if (*w == 0) {
            const std::int64_t r = new_long_variable();
            if (r < 0) return nullptr;
            *w = static_cast<std::uint32_t>(r);
        }
        return &long_at(*w);
    };
    const bool can_store = target != nullptr && !areas.scan_only;
    // CLEAR, ERASE or DIM in the body may take the control variable's
    // storage away. The control is then named again, as a statement naming
    // it would: a variable is found (or made) anew, an element of an erased
    // array is an error like any use of it.
    auto rebind = [&]() -> int {
        if (areas.name_tables_generation == bound_generation) return 0;
        const char* const resume = lang.scan.position;
        lang.scan.position = control_start;
        lang.scan.value_ref = nullptr;
        Item again;
        const int kind = get_item(again, 0);
        lang.scan.position = resume;
        if (kind < 0) return kind;
        if (kind != k || lang.scan.value_ref == nullptr) return error_at(err_for_control_not_numeric, control_column);
        target = lang.scan.value_ref;
        target_array = again.array;
        bound_generation = areas.name_tables_generation;
        return 0;
    };

    if (!exec.skip && can_store) {
        if (int rc = rebind(); rc < 0) return fail(rc);
        if (is_long) {
            LongNumber* v = long_value();
            if (v == nullptr) return fail(-1);
            long_copy(long_at(static_cast<std::uint32_t>(start_ref)), *v);
        } else {
            *double_slot() = start;
        }
    }

    // Enter the loop.
    const std::uint32_t for_line = exec.position.line_offset;
    const std::uint32_t statement_offset = static_cast<std::uint32_t>(lang.scan.start - exec.current_line->text);
    exec.block.inside_for = true;
    exec.block.block_type = block_for;
    if (exec.skip) exec.forced_skip = true;
    skip_colon();
    exec.block.loop_offset = for_line;
    exec.block.loop_statement_offset = statement_offset;
    exec.block.in_loop = true;
    const int body_column = column_in_line();

    int result = 0;
    for (;;) {
        if (!exec.skip && can_store) {
            if (int rc = rebind(); rc < 0) {
                result = rc;
                break;
            }
        }
        if (!exec.skip) {
            bool run = false;
            if (!can_store) {
                run = false;
            } else if (is_long) {
                LongNumber* v = long_value();
                if (v == nullptr) {
                    result = -1;
                    break;
                }
                const LongNumber& s = long_at(static_cast<std::uint32_t>(step_ref));
                const int c = long_compare(*v, long_at(static_cast<std::uint32_t>(limit_ref)));
                run = s.sgn != -1 ? c <= 0 : c >= 0;
            } else {
                const double v = *double_slot();
                run = step >= 0 ? v <= limit : v >= limit;
            }
            if (display_on())
                console_write(run ? "FOR Expression is TRUE - (run loop)\n" : "FOR Expression is FALSE - (exit loop)\n");
            set_skip(!run);
        } else {
            set_skip(true);
        }
        const int rc = run_body(for_line, body_column);
        saved.restore_position();
        exec.position.line_offset = for_line;
        exec.position.next_offset = saved.position.next_offset;
        if (rc < 0) {
            result = rc;
            break;
        }
        if (exec.program_ended) break;
        if (!exec.next_reached) break;
        if (!exec.skip) {
            if (int r = rebind(); r < 0) {
                result = r;
                break;
            }
            if (is_long) {
                LongNumber* v = long_value();
                if (v == nullptr) {
                    result = -1;
                    break;
                }
                LongNumber& sum = long_at(static_cast<std::uint32_t>(sum_ref));
                if (int r = long_add(*v, long_at(static_cast<std::uint32_t>(step_ref)), sum); r < 0) {
                    result = r;
                    break;
                }
                long_normalise(sum, normalise_round);
                if (int r = long_check_exponent(sum, true); r < 0) {
                    result = r;
                    break;
                }
                long_copy(sum, *v);
            } else {
                *double_slot() += step;
            }
            continue;
        }
        if (exec.continue_pending) continue;  // passes over the body again and again, by design
        break;
    }

    if (result == 0 && !exec.program_ended && exec.next_reached) result = continue_behind_loop_end(for_line);
    exec.next_reached = false;
    exec.break_pending = false;
    exec.continue_pending = outer_continue;
    saved.restore_flags();
    // END or a RETURN in the body ends every run loop up to the program's or
    // the subroutine's: the rest of this line is not run.
    if (exec.program_ended || exec.return_reached) end_run_loop();
    return result;
}

int do_next() {
    if (lang.reporter.debug) console_write("NEXT\n");
    if (!exec.block.inside_for || exec.block.block_type != block_for) return error_at(err_next_without_for, 0);
    exec.next_reached = true;
    // A variable name behind NEXT is passed over unchecked; anything else
    // (ELSE, another statement, garbage) is left to be scanned as usual.
    skip_blanks();
    const char first = lang.scan.position < lang.scan.end ? *lang.scan.position : 0;
    if (((first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z')) && peek_keyword() < 0) {
        while (lang.scan.position < lang.scan.end && is_name_char(*lang.scan.position)) ++lang.scan.position;
    }
    skip_colon();
    exec.end_line_offset = exec.position.line_offset;
    exec.end_in_line = column_in_line();
    end_run_loop();
    return 0;
}

// ---- WHILE / WEND -----------------------------------------------------

int do_while() {
    const SavedState saved = SavedState::take();
    const bool outer_continue = exec.continue_pending;
    const bool in_if_line = exec.block.block_type == block_if;
    exec.continue_pending = false;
    if (exec.skip) exec.forced_skip = true;
    const std::uint32_t while_line = exec.position.line_offset;
    const char* const condition_start = lang.scan.position;
    const std::uint32_t statement_offset = static_cast<std::uint32_t>(lang.scan.start - exec.current_line->text);

    // The condition's temporaries are given back after each test, or a long
    // loop would fill the temporary spaces.
    const std::uint32_t string_mark = temp_string_mark();
    const std::uint32_t long_mark = temp_long_mark();
    int result = 0;
    for (;;) {
        lang.scan.position = condition_start;
        const int column = scan_column();
        const int kind = evaluate_expression(0);
        if (kind <= 0) {
            result = kind < 0 ? kind : error_at(err_invalid_expression_while, column);  // reported once
            break;
        }
        const bool condition = condition_value(kind);
        release_temp_strings(string_mark);
        release_temp_longs(long_mark);
        if (display_on() && !exec.skip)
            console_write(condition ? "WHILE condition is TRUE\n" : "WHILE condition is FALSE\n");
        set_skip(!condition);
        exec.block.inside_while = true;
        exec.wend_reached = false;
        exec.block.block_type = block_while;
        exec.block.loop_offset = while_line;
        exec.block.loop_statement_offset = statement_offset;
        exec.block.in_loop = true;
        skip_colon();
        const int rc = run_body(while_line, column_in_line());
        saved.restore_position();
        exec.position.line_offset = while_line;
        if (rc < 0) {
            result = rc;
            break;
        }
        if (exec.program_ended || !exec.wend_reached) break;
        if (exec.skip && !exec.continue_pending) break;
        if (exec.continue_pending) {
            exec.continue_pending = false;
            exec.skip = saved.skip;
        }
        if (exec.forced_skip) break;  // a skipped loop is passed over once
    }
    const bool ended_elsewhere = exec.wend_reached && exec.end_line_offset != while_line;
    if (result == 0 && !exec.program_ended && exec.wend_reached) result = continue_behind_loop_end(while_line);
    exec.wend_reached = false;
    exec.break_pending = false;
    exec.continue_pending = outer_continue;
    saved.restore_flags();
    if (in_if_line && ended_elsewhere) exec.block.while_begun_in_line = true;
    if (exec.program_ended || exec.return_reached) end_run_loop();
    return result;
}

int do_wend() {
    if (lang.reporter.debug) console_write("WEND\n");
    if (exec.block.block_type == block_if && exec.block.inside_while)
        return error_at(err_wend_invalid_within_if_statement, 0);
    if (!exec.block.inside_while || exec.block.block_type != block_while) return error_at(err_wend_without_while, 0);
    exec.wend_reached = true;
    skip_colon();
    exec.end_line_offset = exec.position.line_offset;
    exec.end_in_line = column_in_line();
    end_run_loop();
    return 0;
}

// ---- GOTO, GOSUB, RETURN, ON ------------------------------------------

namespace {

int jump_to(std::uint32_t number) {
    const int entry = find_statement_entry(number);
    if (entry < 0) return error_at(err_statement_number_not_found, exec.target_column);
    const StatementNumberEntry& e = areas.statement_numbers[entry];
    if (e.loop_offset != exec.block.loop_offset || e.loop_statement_offset != exec.block.loop_statement_offset ||
        e.in_loop != exec.block.in_loop)
        return error_at(err_goto_cannot_jump_into_out, exec.target_column);
    exec.jump_target = number;
    lang.scan.position = lang.scan.end;
    return 1;
}

int gosub_to(std::uint32_t number) {
    lang.reporter.error_column = exec.target_column;
    const std::int64_t offset = find_statement(number);
    if (offset < 0) return static_cast<int>(offset);
    const SavedState saved = SavedState::take();
    // The subroutine's body is a block of its own: the loops around the
    // GOSUB are not open in it (BREAK there is outside a loop).
    exec.block.loop_offset = 0;
    exec.block.loop_statement_offset = 0;
    exec.block.in_loop = false;
    exec.block.inside_for = false;
    exec.block.inside_while = false;
    exec.block.inside_if = false;
    exec.block.else_seen = false;
    exec.block.block_type = block_gosub;
    exec.block.inside_gosub = true;
    exec.return_reached = false;
    const int rc = run_program_from(static_cast<std::uint32_t>(offset));
    const bool ended = exec.program_ended && !exec.return_reached;
    exec.return_reached = false;
    saved.restore_position();
    saved.restore_flags();
    if (rc < 0) return rc;
    if (ended) {
        end_run_loop();
        exec.program_ended = true;
    }
    return 0;
}

}  // namespace

int do_goto() {
    std::uint32_t number = 0;
    if (int rc = read_target(number); rc < 0) return rc;
    if (exec.skip) return 0;
    return jump_to(number);
}

int do_gosub() {
    if (lang.reporter.debug) console_write("Gosub\n");
    std::uint32_t number = 0;
    if (int rc = read_target(number); rc < 0) return rc;
    if (exec.skip) return 0;
    return gosub_to(number);
}

int do_return() {
    if (lang.reporter.debug) console_write("Return\n");
    if (exec.check_mode || exec.skip) {
        skip_statement_text();
        return 0;
    }
    if (!exec.block.inside_gosub) return error_at(err_return_without_gosub, 0);
    Item& v = exec.return_value;
    v = Item{};
    const int column = scan_column();
    const int kind = at_statement_end() ? 0 : evaluate_expression(0);
    if (kind < 0) return kind;
    switch (kind) {
        case 0:
            v.kind = kind_double;
            v.number = 0.0;
            break;
        case kind_double:
            v.kind = kind_double;
            v.number = lang.scan.result;
            break;
        case kind_string:
        case kind_numeric_text:
            v.kind = static_cast<std::uint32_t>(kind);
            std::memcpy(exec.return_text, lang.scan.buffer, sizeof exec.return_text);
            break;
        case kind_long:
            v.kind = kind_long;
            long_copy(long_state.work, exec.return_long);
            break;
        default:
            return error_at(err_invalid_return_value_return_statement, column);
    }
    exec.return_reached = true;
    end_run_loop();
    return 0;
}

int do_on() {
    const int column = scan_column();
    const std::uint32_t string_mark = temp_string_mark();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    double value = 0;
    if (kind != kind_double && kind != kind_numeric_text && kind != kind_long)
        return error_at(err_invalid_value_on_goto_on, column);
    // The value is judged only when the statement runs: 0 to 255 inclusive
    // before it is truncated (255.5 is refused).
    if (!passing_over() && (!numeric_double(kind, value) || !(value >= 0.0 && value <= 255.0)))
        return error_at(err_invalid_value_on_goto_on, column);
    const int k = passing_over() ? 0 : static_cast<int>(value);
    release_temp_strings(string_mark);  // an ON GOSUB may recurse deeply
    const bool is_gosub = match_keyword(stmt_gosub);
    if (!is_gosub && !match_keyword(stmt_goto)) return error_at(err_goto_gosub_follow_expression, scan_column());
    std::uint32_t chosen = 0;
    int count = 0;
    for (;;) {
        skip_blanks();
        const char* p = lang.scan.position;
        std::uint32_t number = 0;
        const int rc = read_statement_number(p, lang.scan.start, number, true);
        if (rc < 0) return rc;
        if (rc == 0) {
            if (count == 0) return error_at(err_missing_statement_number, scan_column());
            return error_at(err_expect_more_items_following_comma, scan_column());
        }
        if (++count == k) {
            chosen = number;
            exec.target_column = scan_column();
        }
        lang.scan.position = p;
        skip_blanks();
        if (lang.scan.position < lang.scan.end && *lang.scan.position == ',') {
            ++lang.scan.position;
            continue;
        }
        break;
    }
    if (exec.skip || chosen == 0) return 0;
    if (is_gosub) return gosub_to(chosen);
    return jump_to(chosen);
}

// ---- BREAK, CONTINUE, END, STOP, CONT ----------------------------------

namespace {

/// BREAK and CONTINUE: only inside a loop; the rest of the body is passed
/// over with `pending` set for the loop's end to act on.
int leave_loop_body(bool& pending, int outside_loop_error) {
    if (!exec.block.inside_for && !exec.block.inside_while) return error_at(outside_loop_error, 0);
    if (exec.skip) return 0;
    pending = true;
    exec.skip = true;
    return 0;
}

}  // namespace

int do_break() { return leave_loop_body(exec.break_pending, err_break_inside_loop); }

int do_continue() { return leave_loop_body(exec.continue_pending, err_continue_inside_loop); }

int do_end() {
    if (exec.skip) return 0;
    exec.program_ended = true;
    end_run_loop();
    if (!exec.chain_pending) host.flags.step_mode = false;
    repaint_graph_if_open();
    return 0;
}

int do_stop() {
    if (exec.skip) return 0;
    host.flags.step_mode = true;
    exec.announce = true;
    return 0;
}

int do_cont() {
    if (exec.skip) return 0;
    if (!exec.paused && exec.stepping_command_depth == 0) return error_at(err_not_paused_cannot_continue, 0);
    host.flags.step_mode = false;
    return 0;
}

}  // namespace tl
