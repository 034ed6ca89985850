// commands.cpp — list, run, houseclean, clear, load; the check pass; load and run; CHAIN.
#include "exec/commands.h"

#include <cstring>

#include "exec/exec_state.h"
#include "exec/file_table.h"
#include "exec/front_end.h"
#include "graph/graph_state.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "lang/user_functions.h"
#include "longmath/long_arith.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

const char* const begin_banner =
    "\n----- Beginning Program Execution---------------------------------------------\n";

void set_program_file(const char* name) {
    copy_text(exec.program_file, sizeof exec.program_file, name);
    exec.program_file[sizeof exec.program_file - 1] = 0;
}

/// Reads the optional file-name expression of run and load into `name`.
/// Returns 1 with a name, 0 without one, or a negated error.
int read_file_name(char (&name)[261]) {
    if (at_statement_end()) return 0;
    const int column = scan_column();
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    if (kind != kind_string) return error_at_column(err_invalid_file_name_run_load, column);
    copy_text(name, sizeof name, lang.scan.buffer);
    name[sizeof name - 1] = 0;
    return 1;
}

/// Resets what a program run changes, before the run starts.
void reset_run_state(bool keep_data) {
    exec.block = BlockState{};
    exec.skip = false;
    exec.forced_skip = false;
    exec.check_mode = false;
    exec.next_reached = exec.wend_reached = exec.return_reached = false;
    exec.break_pending = exec.continue_pending = false;
    exec.jump_target = 0;
    exec.position = ExecPosition{};
    exec.announce = host.flags.step_mode.load();
    if (!keep_data) {
        clear_memory();
        long_state.mode.integer_mode = false;
        areas.long_default = false;
    }
}

}  // namespace

int check_program() {
    areas.statement_number_count = 0;
    ++areas.statement_numbers_generation;
    areas.data_statement_count = 0;
    clear_user_functions();
    const ExecState saved = exec;
    const bool saved_trace = exec.trace;
    reset_run_state(true);
    exec.interrupted = false;
    exec.check_mode = true;
    exec.skip = true;
    exec.trace = false;
    areas.scan_only = true;
    const int rc = run_program_from(0);
    areas.scan_only = false;
    const bool ended = exec.program_ended;
    (void)ended;
    exec.check_mode = false;
    exec.skip = false;
    exec.trace = saved_trace;
    exec.block = BlockState{};
    exec.program_ended = false;
    exec.program_has_errors = rc < 0;
    (void)saved;
    return rc < 0 ? rc : 0;
}

int start_program(bool keep_data) {
    set_long_interrupt_check(&poll_interruption);
    if (exec.program_has_errors) return report_error_no_echo(err_program_has_errors_cannot_run);
    reset_run_state(keep_data);
    exec.running_command_line = false;
    lang.reporter.text = nullptr;
    const int rc = run_program_from(0);
    repaint_graph_if_open();
    exec.block = BlockState{};
    exec.skip = false;
    if (!exec.chain_pending) areas.long_default = keep_data && areas.long_default;
    return rc;
}

int load_and_run(const char* file, bool load_only, bool keep_data) {
    char name[261] = {};
    if (file != nullptr) {
        copy_text(name, sizeof name, file);
        set_program_file(name);
    }
    bool chained = false;
    for (;;) {
        if (!keep_data) clear_memory();
        if (file != nullptr) {
            lang.reporter.text = nullptr;
            if (read_program_file(exec.program_file, read_load) < 0) {
                exec.program_has_errors = true;
                return -err_unable_load_program;
            }
        }
        const int checked = check_program();
        if (checked < 0) {
            // An interruption while checking was reported as such; the
            // program itself may be free of errors.
            if (load_only) return checked;
            if (exec.interrupted) {
                if (chained && exec.program_messages) console_write("\n----- Program Terminated-------\n");
                return checked;
            }
            return report_error_no_echo(err_program_has_errors_cannot_run);
        }
        if (load_only) {
            console_write("\nProgram successfully loaded. No errors\n");
            return 0;
        }
        if (areas.program_length == 0) return report_error_no_echo(err_no_program_loaded);
        exec.chain_pending = false;
        const int rc = start_program(keep_data);
        if (!exec.chain_pending || rc < 0) {
            // The end of a sequence of chained programs is announced.
            if (chained && exec.program_messages) console_write("\n----- Program Terminated-------\n");
            exec.chain_pending = false;
            (void)flush_all_files();
            return rc;
        }
        // CHAIN: the next program takes over.
        chained = true;
        exec.chain_pending = false;
        keep_data = exec.chain_keep_data;
        set_program_file(exec.chain_file);
        file = exec.program_file;
        if (exec.program_messages) console_write("\n----- Chaining to New Program -------\n");
    }
}

int do_command(int slot) {
    if (lang.reporter.debug) console_print("Command is %s\n", keyword_name(Table::commands, slot));
    if (exec.skip) {
        skip_statement_text();
        return 0;
    }
    switch (slot) {
        case cmd_list:
            // A line typed at the prompt sits behind the program; it is not listed.
            list_program(exec.running_command_line && exec.command_line_offset >= 7 ? exec.command_line_offset - 7
                                                                                   : areas.program_length);
            return 0;
        case cmd_houseclean:
            return houseclean(true) < 0 ? -1 : 0;
        case cmd_clear:
            clear_user_functions();
            clear_memory();
            return 0;
        case cmd_run:
        case cmd_load: {
            if (!exec.running_command_line || exec.stepping_command_depth > 0)
                return error_at_column(err_run_load_only_valid_command, 0);
            char name[261] = {};
            const int has_name = read_file_name(name);
            if (has_name < 0) return has_name;
            console_write(begin_banner);
            if (slot == cmd_load && has_name == 0) return error_at_column(err_missing_file_name_load_append, 0);
            // The typed line is behind the program text; drop it before loading.
            const std::uint32_t command_at = exec.command_line_offset >= 7 ? exec.command_line_offset - 7 : 0;
            areas.program_length = command_at;
            areas.program.get()[command_at] = 0;
            program_text_changed(command_at);
            exec.running_command_line = false;
            const int rc = load_and_run(has_name != 0 ? name : nullptr, slot == cmd_load, false);
            exec.last_run_failed = rc < 0;
            exec.program_replaced = true;
            // Nothing of the command line is left to run.
            end_run_loop();
            exec.program_ended = true;
            return rc < 0 ? rc : 0;
        }
        default:
            return -1;
    }
}

}  // namespace tl
