// run_loop.cpp — the run loop over lines, one line, one statement, and the assignment.
#include "exec/run_loop.h"

#include <cstdio>
#include <cstring>
#include <new>
#include <stdexcept>

#include "exec/arrays.h"
#include "exec/commands.h"
#include "exec/datetime_statements.h"
#include "exec/everyday_statements.h"
#include "exec/everyday_statements.h"
#include "exec/exec_state.h"
#include "exec/file_table.h"
#include "exec/front_end.h"
#include "graph/graph_state.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/stack_guard.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "lang/statement_heads.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {

ExecState exec;

namespace {

/// Reports an open block at the end of the text.
int report_open_block() {
    lang.reporter.text = nullptr;
    if (exec.block.inside_for && exec.block.block_type == block_for) return report_error(err_for_without_next);
    if (exec.block.inside_while && exec.block.block_type == block_while) return report_error(err_while_without_wend);
    if (exec.block.inside_gosub && exec.block.block_type == block_gosub) return report_error(err_gosub_without_return);
    return 0;
}

/// Records the line's statement number in the check pass.
int record_statement_number(std::uint32_t number) {
    lang.reporter.error_column = 0;
    if (find_statement_entry(number) >= 0) return report_error(err_duplicate_statement_number);
    if (areas.statement_number_count >= areas.sizes[size_number_of_statement_numbers])
        return report_error(err_statement_number_table_full);
    StatementNumberEntry& e = areas.statement_numbers[areas.statement_number_count++];
    e.number = number;
    e.program_offset = exec.position.line_offset;
    e.loop_offset = exec.block.loop_offset;
    e.loop_statement_offset = exec.block.loop_statement_offset;
    e.in_loop = exec.block.in_loop;
    return 0;
}

/// Shows the statement about to run with its marker line.
void show_statement() {
    const char* line = exec.current_line != nullptr ? exec.current_line->text : "";
    const int column = static_cast<int>(lang.scan.position - line);
    console_print("%s\n", line);
    char caret[260];
    console_write(caret_line(line, column, caret));
}

/// Waits in step mode and handles interruption and pending commands. Returns
/// 0 when the statement may run, or a negated error.
int housekeeping() {
    if (exec.statement_budget != 0 && --exec.statement_budget == 0) host.flags.interrupt_requested = true;
    for (;;) {
        pump_events();
        if (host.flags.interrupt_requested.load()) {
            end_program_by_interruption();
            lang.reporter.error_column = scan_column();
            return report_error(err_user_interrupted_program);
        }
        if (host.flags.input_ended.exchange(false)) return end_of_input();
        if (exec.skip || !host.flags.step_mode.load() || exec.stepping_command_depth > 0) return 0;
        // Step mode: wait for the user before this statement.
        if (exec.announce) {
            exec.announce = false;
            char offset[16];
            format_offset(exec.position.line_offset, offset);
            console_print("User interrupted program at offset%s. Next statement is:\r\n", offset);
            show_statement();
            console_write("\nStepping...(click STEP or CONTINUE)\n");
        } else {
            show_statement();
        }
        exec.paused = true;
        const int r = wait_for_step(exec.pending_command);
        exec.paused = false;
        if (r < 0) {
            end_program_by_interruption();
            return report_error(err_user_interrupted_program);
        }
        if (r == step_run_statement) return 0;
                // A command typed at the stepping prompt runs at once; the statement waits.
        const ScanState saved_scan = lang.scan;
        const ReporterState saved_reporter = lang.reporter;
        ++exec.stepping_command_depth;
        (void)run_command_line(exec.pending_command);
        --exec.stepping_command_depth;
        lang.scan = saved_scan;
        lang.reporter.text = saved_reporter.text;
        lang.reporter.statement_start = saved_reporter.statement_start;
        if (exec.program_ended) return 0;
    }
}

}  // namespace

void end_program_by_interruption() {
    exec.interrupted = true;
    exec.chain_pending = false;
    end_run_loop();
    exec.program_ended = true;
    host.flags.step_mode = false;
    host.flags.interrupt_requested = false;
    lang.reporter.debug = false;
    exec.trace = false;
    repaint_graph_if_open();
}

int poll_interruption() {
    pump_events();
    if (!host.flags.interrupt_requested.load()) return 0;
    end_program_by_interruption();
    return report_error_no_echo(err_user_interrupted_program);
}

int run_program_from(std::uint32_t offset) {
    if (stack_nearly_full()) return report_nesting_too_deep();
    exec.program_ended = false;
    ProgramLine line;
    ProgramLine* const outer_line = exec.current_line;
    exec.current_line = &line;
    exec.position.line_offset = offset;
    int result = 0;
    while (exec.position.line_offset < areas.program_length) {
        int rc = next_line(exec.position.line_offset, line);
        if (rc < 0) {
            result = rc;
            break;
        }
        exec.position.next_offset = line.next;
        if (line.length > 0) {
            const bool resume = exec.position.resume_in_line >= 0;
            const int from = resume ? exec.position.resume_in_line : 0;
            const char* start = line.text + from;
            exec.position.resume_in_line = -1;
            const bool before_nul = static_cast<std::uint32_t>(from) <= line.text_length;
            begin_statement(line.text, start, before_nul ? line.text + line.text_length : nullptr);
            if (!(exec.check_mode && exec.program_ended)) {
                rc = process_line(!resume);
                if (rc < 0) {
                    result = report_error(err_pass_statement_line);
                    break;
                }
            }
        }
        if (exec.program_ended || exec.return_reached || exec.next_reached || exec.wend_reached ||
            exec.position.resume_in_line >= 0)
            continue;
        if (exec.jump_target != 0) {
            const std::uint32_t target = exec.jump_target;
            exec.jump_target = 0;
            const std::int64_t found = find_statement(target);
            if (found < 0) {
                result = static_cast<int>(found);
                break;
            }
            exec.position.line_offset = static_cast<std::uint32_t>(found);
            continue;
        }
        exec.position.line_offset = exec.position.next_offset;
    }
    if (result == 0 && !exec.return_reached && !exec.next_reached && !exec.wend_reached &&
        (exec.check_mode || !exec.program_ended))
        result = report_open_block();
    exec.current_line = outer_line;
    return result;
}

int process_line(bool at_line_start) {
    ScanState& s = lang.scan;
    if (at_line_start) {
        skip_blanks();
        if (s.position < s.end && *s.position >= '0' && *s.position <= '9') {
            std::uint32_t number = 0;
            const char* p = s.position;
            const int rc = read_statement_number(p, exec.current_line->text, number);
            if (rc < 0) return rc;
            s.position = p;
            exec.statement_number = number;
            if (exec.running_command_line && !exec.check_mode &&
                exec.position.line_offset >= exec.command_line_offset) {
                lang.reporter.error_column = 0;
                return report_error(err_statement_number_invalid_command_line);
            }
            if (exec.check_mode) {
                if (int r = record_statement_number(number); r < 0) return r;
            }
            if (exec.trace && !exec.skip) console_print("Statement Number:    %u \n", number);
        } else {
            exec.statement_number = 0;
        }
    }
    const bool while_in_if_before = exec.block.while_begun_in_line;
    exec.block.while_begun_in_line = false;
    for (;;) {
        skip_blanks();
        if (s.position >= s.end || *s.position == 0) break;
        s.start = s.position;
        lang.reporter.statement_start = s.position;
        const int rc = execute_statement();
        if (rc < 0) return report_error(err_pass_statement);
        if (rc == 1 || exec.program_ended || exec.return_reached || exec.next_reached || exec.wend_reached) break;
        skip_blanks();
        if (s.position < s.end && *s.position == ':') {
            ++s.position;
        } else if (s.position < s.end && *s.position != 0 && !exec.program_ended && !exec.next_reached &&
                   !exec.wend_reached && !exec.return_reached) {
            // A statement that stopped before the end without a ":" (the
            // keyword handlers leave ELSE and the like for the loop).
            continue;
        }
    }
    exec.block.while_begun_in_line = while_in_if_before;
    return 0;
}

}  // namespace tl

namespace tl {
namespace {

bool to_double(int kind, double& out);

/// Digits of a number text before any exponent.
int count_digits(const char* text) {
    int n = 0;
    for (; *text != 0 && *text != 'e' && *text != 'E'; ++text) n += (*text >= '0' && *text <= '9') ? 1 : 0;
    return n;
}

/// Prints the value that could not be assigned.
void print_answer(int kind) {
    double number = 0;
    switch (kind) {
        case kind_double: console_print("\nAnswer     %23.18g  ************\n", lang.scan.result); break;
        case kind_numeric_text:
            // A number kept as text is shown as a number; a long one as its text.
            if (count_digits(lang.scan.buffer) < 17 && to_double(kind, number)) {
                console_print("\nAnswer     %23.18g  ************\n", number);
                break;
            }
            [[fallthrough]];
        case kind_string: console_print("\nAnswer     %s  ************\n", lang.scan.buffer); break;
        case kind_long: {
            console_write("\nAnswer if a long number**************\n");
            long_debug_dump("", long_state.work, 0);
            char text[4096];
            if (long_to_string(long_state.work, text, sizeof text, false) >= 0) console_print("%s\n", text);
            break;
        }
        default: break;
    }
}

bool to_double(int kind, double& out) {
    switch (kind) {
        case kind_double: out = lang.scan.result; return true;
        case kind_string:
        case kind_numeric_text: {
            const char* text = lang.scan.buffer;
            if (kind == kind_numeric_text && known_number_text(text, out)) return true;
            char* end = nullptr;
            out = std::strtod(text, &end);
            if (end != text && end != nullptr && *end == 0) return true;
            LongNumber tmp;
            return long_from_text(text, tmp, false) >= 0 && long_to_double(tmp, out, false) >= 0;
        }
        case kind_long: return long_to_double(long_state.work, out, true) >= 0;
        default: return false;
    }
}

/// Stores the evaluated value of kind `kind` into the target. Returns 0,
/// 1 for a type mismatch, or a negated error.
int store_value(std::uint32_t target_type, double* number, std::uint32_t* word, int kind) {
    if (target_type == kind_double) {
        double d = 0;
        if (kind == kind_long) {
            if (int rc = long_to_double(long_state.work, d, true); rc < 0) return rc;
        } else if (!to_double(kind, d)) {
            return 1;
        }
        *number = d;
        return 0;
    }
    if (target_type == kind_long) {
        LongNumber* dest = nullptr;
        if (*word == 0) {
            const std::int64_t r = new_long_variable();
            if (r < 0) return static_cast<int>(r);
            *word = static_cast<std::uint32_t>(r);
        }
        dest = &long_at(*word);
        switch (kind) {
            case kind_double: return long_from_double(lang.scan.result, *dest, true) < 0 ? -1 : 0;
            case kind_numeric_text: return long_from_text(lang.scan.buffer, *dest, true) < 0 ? -1 : 0;
            case kind_long: long_copy(long_state.work, *dest); return 0;
            default: return 1;
        }
    }
    // A string target takes a string, or a long number as its decimal text.
    if (kind == kind_string) return store_string(word, lang.scan.buffer, store_assign) < 0 ? -1 : 0;
    if (kind == kind_long) {
        char text[max_string_length + 1];
        const int n = long_to_string(long_state.work, text, sizeof text, false);
        if (n < 0) return report_error(err_long_output_too_long_string);
        return store_string(word, std::string_view(text, static_cast<std::size_t>(n)), store_assign) < 0 ? -1 : 0;
    }
    return 1;
}

void show_result(std::uint32_t type, const char* name, double number, std::uint32_t word) {
    switch (type) {
        case kind_double: console_print("Result: %s = %23.18g  ************\n", name, number); break;
        case kind_string: console_print("\nResult: %s = %s  ************\n", name, string_at(word)); break;
        case kind_long: console_print("\nResult: %s = (long number)  ************\n", name); break;
        default: break;
    }
}

/// target = expression, with the target already scanned into `target`.
int do_assignment(const Item& target, int kind) {
    ScanState& s = lang.scan;
    if (kind == kind_argument) return error_at_column(err_cannot_assign_value_argument, target.column);
    // Where the value goes.
    std::uint32_t type = 0;
    double* number = nullptr;
    std::uint32_t* word = nullptr;
    int predefined = -1;
    if (kind == kind_predefined) {
        predefined = static_cast<int>(target.word);
        type = lang.predefined[static_cast<std::size_t>(predefined)].type;
        number = &lang.predefined[static_cast<std::size_t>(predefined)].number;
    } else if (target.array != nullptr) {
        type = target.array->type;
        // A whole array takes no value; an element passed over has no storage.
        const bool whole = kind == kind_double_array || kind == kind_string_array || kind == kind_long_array;
        if ((whole || s.value_ref == nullptr) && !exec.skip && !areas.scan_only)
            return error_at_column(err_invalid_statement, target.column);
        if (whole) {
            // Scanned for its syntax only: nothing is stored.
        } else if (type == kind_double) {
            number = static_cast<double*>(s.value_ref);
        } else {
            word = static_cast<std::uint32_t*>(s.value_ref);
        }
    } else if (s.value_ref != nullptr && !areas.scan_only) {
        VariableEntry* v = static_cast<VariableEntry*>(s.value_ref);
        type = v->type;
        number = &v->value.number;
        word = &v->value.word;
    } else {
        type = kind == kind_long ? kind_long : (kind == kind_string ? kind_string : kind_double);
    }
    // The target's name for the Result line; an element's reference is
    // written out only if the line is shown.
    char name[sizeof s.name];
    std::memcpy(name, s.name, sizeof name);
    const ArrayEntry* const name_element = s.name_element;
    const int name_subscript_count = s.name_subscript_count;
    double name_subscripts[sizeof s.name_subscripts / sizeof(double)];
    std::memcpy(name_subscripts, s.name_subscripts, sizeof name_subscripts);

    // The "=": a plain "=" is the only comparison form that starts with it,
    // so it is taken directly; anything else goes through the scanner for its error.
    const int eq_column = scan_column();
    skip_blanks();
    if (s.position < s.end && *s.position == '=') {
        ++s.position;
    } else {
        Item eq;
        if (get_item(eq, 0) != kind_comparison || eq.word != cmp_eq)
            return error_at_column(err_invalid_statement, eq_column);
    }
    const int value_column = scan_column();
    const int value_kind = evaluate_expression(0);
    if (value_kind < 0) return value_kind;
    if (value_kind == 0) return error_at_column(err_invalid_expression, value_column);
    if (exec.skip || areas.scan_only) return 0;

    int rc;
    if (predefined >= 0) {
        PredefinedVariable& p = lang.predefined[static_cast<std::size_t>(predefined)];
        if (p.type == kind_string) {
            rc = value_kind == kind_string ? 0 : 1;
            if (rc == 0) set_predefined_text(p, s.buffer);
        } else {
            rc = to_double(value_kind, p.number) ? 0 : 1;
        }
    } else {
        rc = store_value(type, number, word, value_kind);
    }
    if (rc < 0) return rc;
    if (rc == 1) {
        print_answer(value_kind);
        return error_at_column(err_type_mismatch_assignment_statement, value_column);
    }
    if (lang.reporter.debug || host.flags.step_mode.load() || exec.trace || exec.running_command_line) {
        if (name_element != nullptr)
            format_element_reference(*name_element, name_subscript_count, name_subscripts, name, sizeof name);
        if (predefined >= 0) {
            const PredefinedVariable& p = lang.predefined[static_cast<std::size_t>(predefined)];
            if (p.type == kind_string) {
                console_print("\nResult: %s = %s  ************\n", name, p.text.data());
            } else {
                show_result(p.type, name, p.number, 0);
            }
        } else {
            show_result(type, name, number != nullptr ? *number : 0.0, word != nullptr ? *word : 0);
        }
    }
    return 0;
}

/// An expression typed at the prompt: its value is shown as the answer.
int immediate_answer() {
    ScanState& s = lang.scan;
    s.position = s.start;
    const int column = scan_column();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    if (kind == 0 || !at_statement_end()) return error_at_column(err_invalid_statement, column);
    if (exec.skip) return 0;
    print_answer(kind);
    return 0;
}

}  // namespace

int error_at_column(int number, int column) { return scan_error(number, column); }

namespace {

/// Runs the statement at the scan position; returns what its handler returned.
int dispatch_statement() {
    int result = 0;
    Item item;
    const int kind = scan_statement_head(item);
    switch (kind) {
        case kind_double:
        case kind_string:
        case kind_long:
        case kind_argument:
        case kind_string_array:
        case kind_double_array:
        case kind_long_array:
        case kind_predefined:
            if (peek_nonblank() == '=') {
                result = do_assignment(item, kind);
            } else if (exec.running_command_line && exec.stepping_command_depth >= 0) {
                result = immediate_answer();
            } else {
                result = error_at_column(err_invalid_statement, item.column);
            }
            break;
        case kind_statement:
            if (item.word == stmt_long && lang.scan.position < lang.scan.end && *lang.scan.position == '(') {
                // "long(1) / 7": the function LONG, not the statement ("long (k)"
                // with a blank stays a declaration, and a wrong one).
                result = exec.running_command_line ? immediate_answer()
                                                   : error_at_column(err_invalid_statement, item.column);
            } else {
                result = do_keyword_statement(static_cast<int>(item.word));
            }
            break;
        case kind_command: result = do_command(static_cast<int>(item.word)); break;
        case 0: result = 0; break;
        default:
            if (kind == kind_function && item.word == fn_expanddatetime) {
                result = do_expanddatetime();  // a function name used as a statement
            } else if (kind < 0) {
                result = kind;
            } else if (exec.running_command_line) {
                result = immediate_answer();
            } else {
                result = error_at_column(err_invalid_statement, item.column);
            }
            break;
    }
    return result;
}

/// The statement could not get memory: reported, and the flags a statement
/// holds while it runs are dropped.
int memory_failed() {
    lang.scan.in_print = false;
    return report_error(err_long_memory_allocation_failed);
}

}  // namespace

int execute_statement() {
    ScanState& s = lang.scan;
    if (int rc = housekeeping(); rc < 0) return rc;
    if (exec.program_ended) {
        s.position = s.end;
        return 1;
    }
    if (exec.trace && !exec.skip && !host.flags.step_mode.load()) {
        console_write("\n");
        show_statement();
    }
    const std::uint32_t string_mark = temp_string_mark();
    const std::uint32_t long_mark = temp_long_mark();
    // The evaluator passes over values while the statement is skipped; a
    // block's own expressions (a WHILE's condition) are judged by the state
    // its statement began in, whatever its body left.
    const bool outer_skipping = lang.scan.skipping;
    lang.scan.skipping = exec.skip;

    // Memory that cannot be had, wherever it was asked for, ends the
    // statement with a message; the interpreter stays usable.
    int result = 0;
    try {
        result = dispatch_statement();
    } catch (const std::bad_alloc&) {
        result = memory_failed();
    } catch (const std::length_error&) {
        result = memory_failed();
    }
    release_temp_strings(string_mark);
    release_temp_longs(long_mark);
    lang.scan.skipping = outer_skipping;
    if (result == 1) {
        s.position = s.end;
    } else if (result < 0) {
        result = report_error(err_pass_do_keyword_statement);
    }
    return result;
}

int run_command_line(const char* text) {
    set_long_interrupt_check(&poll_interruption);
    const std::size_t n = std::strlen(text);
    const std::uint32_t length = areas.program_length;
    if (length + n + 10 >= areas.program_size) {
        console_write("Insufficient program file buffer space.\n");
        return -1;
    }
    char* buffer = areas.program.get();
    std::memcpy(buffer + length, "\r\nend\r\n", 7);
    std::memcpy(buffer + length + 7, text, n);
    std::memcpy(buffer + length + 7 + n, "\r\n", 2);
    areas.program_length = length + 7 + static_cast<std::uint32_t>(n) + 2;
    buffer[areas.program_length] = 0;
    program_text_changed(length);

    const ExecState saved = exec;
    exec.program_replaced = false;
    exec.running_command_line = true;
    exec.command_line_offset = length + 7;
    exec.jump_target = 0;
    exec.program_ended = false;
    if (exec.stepping_command_depth > 0) {
        // A line typed while the program waits inside a FOR, WHILE, GOSUB or
        // IF runs on its own, outside those blocks: it must neither see them
        // open at its end nor close them. `saved` brings them back afterwards.
        exec.block = BlockState{};
        exec.skip = false;
        exec.forced_skip = false;
        exec.next_reached = false;
        exec.wend_reached = false;
        exec.return_reached = false;
        exec.break_pending = false;
        exec.continue_pending = false;
        exec.position.resume_in_line = -1;
    }
    host.flags.interrupt_requested = exec.stepping_command_depth > 0 ? host.flags.interrupt_requested.load() : false;
    host.flags.input_ended = false;
    const int rc = run_program_from(length + 7);
    // A GOTO typed at the prompt continues in the program, which then ends at
    // the END in front of the command line.
    const bool stepping = exec.stepping_command_depth > 0;
    if (stepping) {
        ProgramLine* line = saved.current_line;
        const bool ended = exec.program_ended;
        exec = saved;
        exec.current_line = line;
        exec.program_ended = ended && exec.program_ended;
    } else {
        exec.running_command_line = false;
        exec.block = BlockState{};
        exec.skip = false;
        exec.forced_skip = false;
    }
    if (!exec.program_replaced) {
        areas.program_length = length;
        buffer[length] = 0;
        program_text_changed(length);
    }
    exec.program_replaced = false;
    // Whatever ended the line (END, an error, an interruption), nothing
    // written to a file stays in a buffer.
    if (!stepping) (void)flush_all_files();
    return rc;
}

}  // namespace tl
