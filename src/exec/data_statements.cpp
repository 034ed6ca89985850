// data_statements.cpp — DATA, READ and RESTORE over the Data Statement Table.
//
// The check pass records every DATA statement (line, offset and length of
// its list); READ walks the lists item by item from a read position kept in
// the execution state, and RESTORE moves that position. Every check pass that
// records DATA starts the position again at the first item, so each program
// run reads its data from the beginning.
#include <cstring>

#include "exec/commands.h"
#include "exec/everyday_statements.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/program_store.h"
#include "exec/statement_targets.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

namespace tl {
namespace {

void restore_to_entry(std::uint32_t entry) {
    exec.data_entry = entry;
    exec.data_offset = 0;
}

/// The data list of a Data Statement Table entry in the program text.
struct DataList {
    const char* text = nullptr;  ///< start of the list
    const char* end = nullptr;
};

DataList data_list(const DataStatementEntry& e) {
    const char* line = areas.program.get() + e.program_offset;
    return DataList{line + e.data_offset, line + e.data_offset + e.data_length};
}

/// Reports a fault in a data value with the DATA line shown and the caret
/// under the value, then puts the reporter back on the READ.
int report_in_data(const DataStatementEntry& e, int number, int offset_in_list) {
    ProgramLine line;
    if (int rc = next_line(e.program_offset, line); rc < 0) return rc;
    ReporterState& r = lang.reporter;
    const char* text = r.text;
    const char* start = r.statement_start;
    r.text = line.text;
    r.statement_start = line.text;
    r.error_column = static_cast<int>(e.data_offset) + offset_in_list;
    const int rc = report_error(number);
    r.text = text;
    r.statement_start = start;
    return rc;
}

/// Finds the next item: moves past used-up and empty lists. Returns false
/// when the data is exhausted.
bool position_at_item() {
    while (exec.data_entry < areas.data_statement_count) {
        const DataStatementEntry& e = areas.data_statements[exec.data_entry];
        const DataList list = data_list(e);
        // A list of blanks only holds no items.
        if (exec.data_offset >= 0 && !(exec.data_offset == 0 && only_blanks(list.text, list.end))) return true;
        restore_to_entry(exec.data_entry + 1);
    }
    return false;
}

/// Reads the next data item into `target`.
int read_into(const VariableTarget& target) {
    if (!position_at_item()) return error_at_column(err_out_data, target.column);
    const DataStatementEntry& e = areas.data_statements[exec.data_entry];
    const DataList list = data_list(e);
    const char* pos = list.text + exec.data_offset;
    ValueItem item;
    bool more = false;
    int error_at = 0;
    const int fault = read_value_item(list.text, list.end, pos, item, more, error_at);
    if (fault != 0) return report_in_data(e, fault, error_at);
    if (const int unfit = entry_fault(target.type, item); unfit != 0) return report_in_data(e, unfit, item.column);
    exec.data_offset = more ? static_cast<std::int32_t>(pos - list.text) : -1;
    const std::string_view text = entry_text(item);
    return target.type == kind_string ? store_text(target, text) : store_number_text(target, text);
}

/// The end of a data list: the statement's end, or a "//" comment outside quotes.
const char* list_end(const char* p, const char* end) {
    bool quoted = false;
    for (; p < end; ++p) {
        if (quoted) {
            if (*p == '\\' && p + 1 < end) {
                ++p;
            } else if (*p == '"') {
                quoted = false;
            }
        } else if (*p == '"') {
            quoted = true;
        } else if (*p == '/' && p + 1 < end && p[1] == '/') {
            return p;
        }
    }
    return end;
}

}  // namespace

int do_data() {
    if (typed_at_prompt()) return error_at_column(err_statement_not_valid_command_line, 0);
    const char* data_start = lang.scan.position;
    skip_statement_text();
    if (!exec.check_mode) return 0;
    if (areas.data_statement_count > areas.sizes[size_number_of_data_statements])
        return error_at_column(err_too_many_data_statements, 0);
    if (areas.data_statement_count == 0) restore_to_entry(0);
    DataStatementEntry& e = areas.data_statements[areas.data_statement_count];
    // The first DATA of a numbered line carries the number.
    bool first_on_line = true;
    for (std::uint32_t i = 0; i < areas.data_statement_count; ++i) {
        if (areas.data_statements[i].program_offset == exec.position.line_offset) first_on_line = false;
    }
    e.number = first_on_line ? exec.statement_number : 0;
    e.program_offset = exec.position.line_offset;
    e.data_offset = static_cast<std::uint32_t>(data_start - exec.current_line->text);
    e.data_length = static_cast<std::uint32_t>(list_end(data_start, lang.scan.position) - data_start);
    ++areas.data_statement_count;
    return 0;
}

int do_read() {
    for (;;) {
        VariableTarget target;
        if (int rc = scan_target(target, err_string_numeric_variable); rc < 0) return rc;
        if (!exec.skip) {
            if (int rc = read_into(target); rc < 0) return rc;
        }
        const int more = next_target_separator();
        if (more < 0) return more;
        if (more == 0) return 0;
    }
}

int do_restore() {
    std::uint32_t number = 0;
    skip_blanks();
    const int column = scan_column();
    const char* p = lang.scan.position;
    const int rc = read_statement_number(p, lang.scan.start, number);
    if (rc < 0) return rc;
    lang.scan.position = p;
    if (!at_statement_end()) return error_at_column(err_invalid_statement_number, scan_column());
    if (exec.skip) return 0;
    if (rc == 0) {
        restore_to_entry(0);
        return 0;
    }
    for (std::uint32_t i = 0; i < areas.data_statement_count; ++i) {
        if (areas.data_statements[i].number == number) {
            restore_to_entry(i);
            return 0;
        }
    }
    if (find_statement_entry(number) < 0) return error_at_column(err_statement_number_not_found, column);
    return error_at_column(err_no_data_at_statement_number, column);
}

}  // namespace tl
