// input_statement.cpp — INPUT and LINE INPUT from the console.
//
//   INPUT ["prompt" ; | ,] variable [, variable ...]
//   LINE INPUT ["prompt" ; | ,] string-variable
//
// A line is read through the front end. For INPUT it holds one value per
// variable, separated by commas; a line that does not fit (too few or too
// many values, a number that is not one, a broken quoted value) is
// answered with "?Redo from start" and the message, and read again — nothing
// is stored until the whole line fits. The end of the input ends the program.
#include <cstdio>
#include <cstring>

#include "exec/commands.h"
#include "exec/everyday_statements.h"
#include "exec/exec_state.h"
#include "exec/file_statements.h"
#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "exec/run_loop.h"
#include "exec/statement_targets.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

namespace tl {
namespace {

/// Variables one INPUT may name.
constexpr int max_input_targets = 64;


/// Reads the optional prompt: a string constant followed by ";" or ",".
/// `question` tells whether "? " is to follow it.
int read_prompt(char (&prompt)[scan_buffer_size + 4], bool line_input) {
    ScanState& s = lang.scan;
    skip_blanks();
    prompt[0] = 0;
    bool question = !line_input;
    if (s.position < s.end && *s.position == '"') {
        Item item;
        const int k = get_item(item, scan_no_shorthands);
        if (k < 0) return k;
        copy_text(prompt, sizeof prompt, s.buffer);
        skip_blanks();
        if (s.position >= s.end || (*s.position != ';' && *s.position != ',')) {
            lang.reporter.error_column = scan_column();
            return error_at_column(err_prompt_string_followed_by_semicolon, scan_column());
        }
        question = !line_input && *s.position == ';';
        ++s.position;
    }
    if (question) std::strcat(prompt, "? ");
    return 0;
}

/// Reads one line; false at the end of the input.
bool read_input_line(const char* prompt) {
    std::string& line = host.input_line;
    if (host.front_end == nullptr || !host.front_end->read_line(prompt, line)) return false;
    log_typed_line(prompt, line);
    return true;
}

/// Checks the typed line against the targets; 0 when it fits, else the
/// number of the message to show.
int check_entry(const VariableTarget* targets, int count) {
    const std::string& line = host.input_line;
    const char* list = line.data();
    const char* end = list + line.size();
    const char* pos = list;
    bool more = true;
    for (int i = 0; i < count; ++i) {
        if (!more) return err_not_enough_data_values;
        ValueItem item;
        int error_at = 0;
        const int fault = read_value_item(list, end, pos, item, more, error_at);
        if (fault != 0) return fault;
        if (const int unfit = entry_fault(targets[i].type, item); unfit != 0) return unfit;
    }
    return more ? err_too_many_data_values : 0;
}

int store_entry(const VariableTarget* targets, int count) {
    const std::string& line = host.input_line;
    const char* list = line.data();
    const char* end = list + line.size();
    const char* pos = list;
    for (int i = 0; i < count; ++i) {
        ValueItem item;
        bool more = false;
        int error_at = 0;
        if (read_value_item(list, end, pos, item, more, error_at) != 0) return -1;
        const std::string_view text = entry_text(item);
        const int rc = targets[i].type == kind_string ? store_text(targets[i], text) : store_number_text(targets[i], text);
        if (rc < 0) return rc;
    }
    return 0;
}

int input_statement(bool line_input) {
    skip_blanks();
    if (lang.scan.position < lang.scan.end && *lang.scan.position == '#') return do_input_from_file(line_input);
    char prompt[scan_buffer_size + 4];
    if (int rc = read_prompt(prompt, line_input); rc < 0) return rc;
    VariableTarget targets[max_input_targets];
    int count = 0;
    const int not_variable = line_input ? err_line_input_requires_string_variable : err_string_numeric_variable;
    for (;;) {
        VariableTarget& t = targets[count];
        if (int rc = scan_target(t, not_variable); rc < 0) return rc;
        if (line_input && t.type != kind_string) return error_at_column(not_variable, t.column);
        ++count;
        // LINE INPUT fills exactly one variable.
        const int more = line_input ? (at_statement_end() ? 0 : error_at_column(err_too_many_parameters, scan_column()))
                                    : next_target_separator();
        if (more < 0) return more;
        if (more == 0) break;
        if (count == max_input_targets) return error_at_column(err_too_many_parameters, scan_column());
    }
    if (exec.skip) return 0;
    for (;;) {
        if (!read_input_line(prompt)) return end_of_input();
        if (host.flags.interrupt_requested.load()) return poll_interruption();
        if (line_input) {
            const std::string& line = host.input_line;
            if (line.size() <= max_string_length) return store_text(targets[0], line);
            console_print("?Redo from start - %s\n", error_messages[static_cast<std::size_t>(err_string_too_long)]);
            continue;
        }
        const int fault = check_entry(targets, count);
        if (fault == 0) return store_entry(targets, count);
        console_print("?Redo from start - %s\n", error_messages[static_cast<std::size_t>(fault)]);
    }
}

}  // namespace

int end_of_input() {
    console_write("\nEnd of input - program ended.\n");
    exec.program_ended = true;
    end_run_loop();
    host.flags.step_mode = false;
    return 0;
}

int do_input() { return input_statement(false); }

/// LINE must be followed by INPUT.
int do_line_input() {
    if (!take_word("input")) return error_at_column(err_invalid_statement, 0);
    return input_statement(true);
}

}  // namespace tl
