// datetime_statements.cpp — UPDATEDATETIME, SETTIMEZONE, SETDSTRULES and the
// statement form of EXPANDDATETIME.
#include "exec/datetime_statements.h"

#include <cmath>
#include <cstdio>
#include <iterator>
#include <string>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/open_without_waiting.h"
#include "exec/statement_targets.h"
#include "exec/statements.h"
#include "lang/datetime_state.h"
#include "lang/datetime_text.h"
#include "lang/datetime_value.h"
#include "lang/dst_rules_file.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

namespace tl {
namespace {

/// A date-time value at the scan position (up to a separator when
/// `separators`). Returns 1, 0 when there is none, or a negated error.
int datetime_expression(double& value, bool separators) {
    skip_blanks();
    const int column = scan_column();
    const int r = evaluate_number(value, separators ? scan_separators : 0);
    if (r <= 0) return r;
    // The separator ended the expression and was consumed: put a comma back.
    if (separators && lang.scan.terminator == ',') --lang.scan.position;
    if (!exec.skip && !is_datetime_value(value)) return error_at_column(err_parameter_out_range, column);
    return 1;
}

/// A string expression up to the end of the statement into `out`.
/// Returns 1, 0 when there is none, or a negated error (146 for a number).
int string_expression(std::string& out, int& column) {
    skip_blanks();
    column = scan_column();
    if (at_statement_end()) return 0;
    const int kind = evaluate_expression(0);
    if (kind < 0) return kind;
    if (kind != kind_string) return error_at_column(err_invalid_type_expecting_string, column);
    out = lang.scan.buffer;
    return 1;
}

void set_text(int slot, const char* layout, double value) {
    char text[256];
    std::size_t bad_at = 0;
    const int n = format_datetime(value, current_zone(), layout, text, sizeof text, bad_at);
    set_predefined_text(lang.predefined[static_cast<std::size_t>(slot)], n < 0 ? "" : text);
}

std::string trimmed_copy(const std::string& s) {
    const std::size_t a = s.find_first_not_of(" \t");
    if (a == std::string::npos) return "";
    const std::size_t b = s.find_last_not_of(" \t");
    return s.substr(a, b - a + 1);
}

}  // namespace

int do_updatedatetime() {
    double value = 0;
    const int r = datetime_expression(value, false);
    if (r < 0) return r;
    if (exec.skip) return 0;
    if (r == 0) value = datetime_now();
    set_text(pre_date, "%m-%d-%Y", value);
    set_text(pre_time, "%H:%M:%S", value);
    set_text(pre_dayofweek, "%A", value);
    return 0;
}

int do_settimezone() {
    std::string name;
    int column = 0;
    const int r = string_expression(name, column);
    if (r < 0) return r;
    if (exec.skip) return 0;
    TimeZone zone;
    if (r == 0) {
        system_zone(zone);
        set_current_zone(std::move(zone));
        return 0;
    }
    name = trimmed_copy(name);
    std::int32_t offset = 0;
    if (parse_fixed_offset(name, offset)) {
        ZoneRule rule;
        rule.std_offset = offset;
        rule.std_abbr = offset_abbreviation(offset);
        zone_from_rule(rule, name, zone);
    } else if (load_database_zone(name, zone) != 0) {
        return error_at_column(err_invalid_value_parameter, column);
    }
    set_current_zone(std::move(zone));
    return 0;
}

int do_setdstrules() {
    std::string file;
    int column = 0;
    const int r = string_expression(file, column);
    if (r < 0) return r;
    if (exec.skip) return 0;
    if (r == 0) file = dst_rules_file_name;
    std::FILE* in = open_without_waiting(file.c_str(), "rb");
    if (in == nullptr) return error_at_column(err_open_file_failed, column);
    std::string text;
    constexpr std::size_t most = 1 << 16;  // a rules file is a few lines
    char chunk[4096];
    for (std::size_t n = 0; (n = std::fread(chunk, 1, sizeof chunk, in)) > 0;) {
        text.append(chunk, n);
        if (text.size() > most) break;
    }
    std::fclose(in);
    ZoneRule rule;
    DstRulesFault fault;
    if (text.size() > most) {
        fault.what = "the file is too long";
    } else if (parse_dst_rules(text, rule, fault)) {
        TimeZone zone;
        zone_from_rule(rule, file, zone);
        set_current_zone(std::move(zone));
        return 0;
    }
    // The message first, then what is wrong and where.
    const int rc = error_at_column(err_invalid_value_parameter, column);
    if (fault.line > 0) {
        console_print("%s line %d: %s\n", file.c_str(), fault.line, fault.what.c_str());
    } else {
        console_print("%s: %s\n", file.c_str(), fault.what.c_str());
    }
    return rc;
}

int do_expanddatetime() {
    double value = 0;
    const int value_column = scan_column();
    const int r = datetime_expression(value, true);
    if (r < 0) return r;
    if (r == 0) return error_at_column(err_missing_parameter, value_column);
    VariableTarget targets[expanddatetime_targets];
    int count = 0;
    for (;;) {
        const int more = next_target_separator();
        if (more < 0) return more;
        if (more == 0) break;
        if (count == expanddatetime_targets) return error_at_column(err_too_many_parameters, scan_column());
        VariableTarget& t = targets[count++];
        if (const int rc = scan_target(t, err_invalid_destination_variable_type); rc < 0) return rc;
        if (t.type != kind_double) return error_at_column(err_invalid_destination_variable_type, t.column);
    }
    if (count == 0) return error_at_column(err_missing_parameter, scan_column());
    if (exec.skip) return 0;
    double fields[expanddatetime_targets] = {};
    if (value != no_date_value()) {
        const LocalFields f = split_datetime(value, current_zone());
        fields[0] = static_cast<double>(f.date.year);
        fields[1] = f.date.month;
        fields[2] = f.date.day;
        fields[3] = f.hour;
        fields[4] = f.minute;
        fields[5] = f.second + f.fraction;
        fields[6] = f.weekday == 0 ? 7 : f.weekday;
        fields[7] = f.yearday;
    }
    for (int i = 0; i < count; ++i) *targets[i].number = fields[i];
    return 0;
}

}  // namespace tl
