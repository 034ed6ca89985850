// def_statement.cpp — DEF: user-defined functions.
//
//   DEF name(arguments) = expression        one line
//   DEF name(arguments)                     a body of program lines, run like
//     ...                                   a GOSUB whose RETURN value is the
//   DEF END                                 function value
//
// Definitions are registered by the check pass; the one-line expression is
// then scanned with dummy values. At run time a one-line DEF does nothing
// and a body header moves execution to the line after its DEF END.
#include <cstring>

#include "exec/commands.h"
#include "exec/everyday_statements.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/statement_targets.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "lang/user_functions.h"

namespace tl {
namespace {

bool is_blank(char c) { return c == ' ' || c == '\t'; }

/// True when the text of a line is a "DEF END" statement.
bool is_def_end_line(const char* p, const char* end) {
    while (p < end && is_blank(*p)) ++p;
    while (p < end && *p >= '0' && *p <= '9') ++p;  // the statement number
    while (p < end && is_blank(*p)) ++p;
    if (!starts_with_word(p, end, "def")) return false;
    p += 3;
    while (p < end && is_blank(*p)) ++p;
    return starts_with_word(p, end, "end");
}

/// Whether a "DEF END" line follows at or after program offset `from`.
bool def_end_follows(std::uint32_t from) {
    const char* text = areas.program.get();
    const char* end = text + areas.program_length;
    const char* p = text + from;
    while (p < end) {
        const char* line_end = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
        if (line_end == nullptr) line_end = end;
        if (is_def_end_line(p, line_end)) return true;
        p = line_end + 1;
    }
    return false;
}

/// The multi-line definition whose body the check pass is in, or -1. The
/// record is trusted only when it belongs to this pass (a failed pass may
/// have left it behind).
int open_definition() {
    const UserFunctionTable& t = lang.functions;
    const int i = t.open_definition;
    if (i < 0 || i >= t.count) return -1;
    const UserFunction& f = t.entries[static_cast<std::size_t>(i)];
    return f.multi_line && f.end_offset == 0 ? i : -1;
}

/// True when only blanks or a "//" comment are left on the line.
bool at_line_end_or_comment() {
    skip_blanks();
    const ScanState& s = lang.scan;
    return s.position >= s.end || *s.position == 0 ||
           (s.position + 1 < s.end && s.position[0] == '/' && s.position[1] == '/');
}

/// DEF END: closes a body in the check pass; at run time it returns from
/// the function without a value.
int do_def_end() {
    const int column = scan_column();
    if (!at_line_end_or_comment()) return error_at_column(err_expect_colon_end_line, column);
    lang.scan.position = lang.scan.end;
    if (exec.check_mode) {
        const int open = open_definition();
        if (open < 0) return error_at_column(err_invalid_statement, 0);
        lang.functions.entries[static_cast<std::size_t>(open)].end_offset = exec.position.next_offset;
        lang.functions.open_definition = -1;
        return 0;
    }
    if (exec.skip) return 0;
    if (lang.functions.call_depth == 0 || !exec.block.inside_gosub) return error_at_column(err_invalid_statement, 0);
    exec.return_value = Item{};  // no value: the function gives 0 or ""
    exec.return_reached = true;
    end_run_loop();
    return 0;
}

/// Reads "(a, b$, ...)" into `names`; returns the count or a negated error.
int read_argument_names(char (&names)[max_function_arguments][max_function_name + 1]) {
    ScanState& s = lang.scan;
    skip_blanks();
    if (s.position >= s.end || *s.position != '(') return 0;
    ++s.position;
    skip_blanks();
    if (s.position < s.end && *s.position == ')') {
        ++s.position;
        return 0;
    }
    int count = 0;
    for (;;) {
        skip_blanks();
        const int column = scan_column();
        if (count == max_function_arguments) return error_at_column(err_too_many_parameters, column);
        Item item;
        const int k = get_item(item, scan_name_only | scan_no_shorthands);
        if (k < 0) return k;
        if (k != scan_name || find_user_function(scan_name_text()) >= 0) return error_at_column(err_invalid_argument, column);
        for (int i = 0; i < count; ++i) {
            if (names_equal(scan_name_text(), names[i])) return error_at_column(err_invalid_argument, column);
        }
        copy_text(names[count], sizeof names[count], scan_name_text());
        ++count;
        skip_blanks();
        if (s.position < s.end && *s.position == ',') {
            ++s.position;
            continue;
        }
        if (s.position < s.end && *s.position == ')') {
            ++s.position;
            return count;
        }
        return error_at_column(err_missing_right_parenthesis, scan_column());
    }
}

/// The check pass: registers the definition and checks a one-line body.
int register_definition(const char* name, int name_column, const char (&names)[max_function_arguments][max_function_name + 1],
                        int count, bool one_line) {
    UserFunctionTable& t = lang.functions;
    if (t.count == 0) t.open_definition = -1;  // the first definition of this pass
    if (open_definition() >= 0) return error_at_column(err_invalid_statement, 0);  // no DEF inside a body
    if (find_user_function(name) >= 0) return error_at_column(err_duplicate_user_defined_function_name, name_column);
    if (t.count >= max_user_functions) return error_at_column(err_too_many_user_defined_functions, name_column);
    if (!one_line && (exec.block.inside_if || exec.block.inside_for || exec.block.inside_while))
        return error_at_column(err_invalid_statement, 0);
    std::string_view arguments[max_function_arguments];
    for (int i = 0; i < count; ++i) arguments[i] = names[i];
    const int index = add_user_function(name, arguments, count);
    if (index < 0) return error_at_column(err_unable_allocate_storage_def_function, name_column);
    UserFunction& f = t.entries[static_cast<std::size_t>(index)];
    ScanState& s = lang.scan;
    if (!one_line) {
        f.multi_line = true;
        f.body_offset = exec.position.next_offset;
        if (!def_end_follows(f.body_offset)) return error_at_column(err_invalid_statement, scan_column());
        t.open_definition = index;
        s.position = s.end;
        return 0;
    }
    f.body_offset = exec.position.line_offset;
    f.statement_offset = static_cast<std::uint32_t>(s.position - exec.current_line->text);
    const int column = scan_column();
    s.defining_function = true;
    const int kind = evaluate_expression(0);
    s.defining_function = false;
    if (kind < 0) return kind;
    if (kind == 0) return error_at_column(err_invalid_expression, column);
    if (!at_statement_end()) return error_at_column(err_expect_colon_end_line, scan_column());
    return 0;
}

}  // namespace

int do_def() {
    ScanState& s = lang.scan;
    if (take_word("end")) return do_def_end();
    if (typed_at_prompt()) return error_at_column(err_statement_not_valid_command_line, 0);
    skip_blanks();
    const int name_column = scan_column();
    Item item;
    const int k = get_item(item, scan_name_only | scan_no_shorthands);
    if (k < 0) return k;
    if (k != scan_name) return error_at_column(err_reserved_word_not_valid_user, name_column);
    char name[max_function_name + 1];
    copy_text(name, sizeof name, scan_name_text());
    char names[max_function_arguments][max_function_name + 1];
    const int count = read_argument_names(names);
    if (count < 0) return count;
    skip_blanks();
    const bool one_line = s.position < s.end && *s.position == '=';
    if (one_line) {
        ++s.position;
    } else if (!at_line_end_or_comment()) {
        return error_at_column(err_expect_equal_sign, scan_column());
    }
    if (exec.check_mode) return register_definition(name, name_column, names, count, one_line);
    if (one_line || exec.skip) {
        skip_statement_text();
        if (!one_line) s.position = s.end;
        return 0;
    }
    // A body header: execution goes on behind the body's DEF END.
    const int f = find_user_function(name);
    if (f < 0 || lang.functions.entries[static_cast<std::size_t>(f)].end_offset == 0)
        return error_at_column(err_invalid_statement, name_column);
    exec.position.next_offset = lang.functions.entries[static_cast<std::size_t>(f)].end_offset;
    s.position = s.end;
    return 1;
}

}  // namespace tl
