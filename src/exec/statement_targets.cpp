// statement_targets.cpp — target variables of INPUT, READ and friends, and value lists.
#include "exec/statement_targets.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"
#include "lang/user_functions.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_text.h"

namespace tl {
namespace {

bool is_blank(char c) { return c == ' ' || c == '\t'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace

int scan_target(VariableTarget& t, int not_variable_error) {
    ScanState& s = lang.scan;
    t = VariableTarget{};
    skip_blanks();
    t.column = scan_column();
    const char* start = s.position;
    // First only the name: keywords, functions and predefined variables are
    // refused before anything is evaluated.
    Item probe;
    int k = get_item(probe, scan_name_only | scan_no_shorthands);
    if (k < 0) return k;
    if (k != scan_name || find_user_function(scan_name_text()) >= 0) return error_at_column(not_variable_error, t.column);
    s.position = start;
    s.value_ref = nullptr;
    Item item;
    k = get_item(item, scan_no_shorthands);
    if (k < 0) return k;
    if (k == kind_argument) return error_at_column(err_cannot_assign_value_argument, t.column);
    if (k != kind_double && k != kind_string && k != kind_long) return error_at_column(not_variable_error, t.column);
    copy_text(t.name, sizeof t.name, scan_name_text());
    if (item.array != nullptr) {
        t.type = item.array->type;
        if (s.value_ref != nullptr) {
            if (t.type == kind_double) {
                t.number = static_cast<double*>(s.value_ref);
            } else {
                t.word = static_cast<std::uint32_t*>(s.value_ref);
            }
        }
    } else if (s.value_ref != nullptr && !areas.scan_only) {
        VariableEntry* v = static_cast<VariableEntry*>(s.value_ref);
        t.type = v->type;
        t.number = &v->value.number;
        t.word = &v->value.word;
    } else {
        t.type = static_cast<std::uint32_t>(k);
    }
    // Without storage the statement can only be checked, never executed.
    if (!lang.scan.skipping && !areas.scan_only && t.number == nullptr && t.word == nullptr)
        return error_at_column(not_variable_error, t.column);
    return 0;
}

int next_target_separator() {
    skip_blanks();
    ScanState& s = lang.scan;
    if (s.position < s.end && *s.position == ',') {
        ++s.position;
        return 1;
    }
    if (at_statement_end()) return 0;
    return error_at_column(err_missing_comma, scan_column());
}

int evaluate_number(double& out, int mode) {
    skip_blanks();
    const int column = scan_column();
    const int kind = evaluate_expression(mode);
    if (kind <= 0) return kind;
    if (const int rc = evaluated_double(kind, column, out); rc != 0) return rc;
    return error_at_column(err_invalid_type_expecting_number, column);
}

int evaluated_double(int kind, int column, double& out) {
    switch (kind) {
        case kind_double: out = lang.scan.result; return 1;
        case kind_numeric_text: out = std::strtod(lang.scan.buffer, nullptr); return 1;
        case kind_long: {
            lang.reporter.error_column = column;
            const int rc = long_to_double(long_state.work, out, true);
            return rc < 0 ? rc : 1;
        }
        default: return 0;
    }
}

bool is_number_entry(std::string_view text) {
    text = trimmed(text);
    if (text.empty()) return true;
    std::size_t i = 0;
    if (text[i] == '+' || text[i] == '-') ++i;
    int digits = 0;
    int points = 0;
    for (; i < text.size(); ++i) {
        if (is_digit(text[i])) {
            ++digits;
        } else if (text[i] == '.' && points == 0) {
            ++points;
        } else {
            break;
        }
    }
    if (digits == 0) return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
        int exponent_digits = 0;
        while (i < text.size() && is_digit(text[i])) {
            ++i;
            ++exponent_digits;
        }
        if (exponent_digits == 0) return false;
    }
    return i == text.size();
}

/// The double that `text` (a checked number entry) stands for; a text too
/// long for a stack buffer is copied to the heap, which only an over-long
/// typed or read value ever needs.
double entry_double(std::string_view text) {
    char digits[max_string_length + 1];
    // strtod does not take the "+" that a number entry may start with.
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.size() < sizeof digits) {
        std::memcpy(digits, text.data(), text.size());
        digits[text.size()] = 0;
        return std::strtod(digits, nullptr);
    }
    const std::string copy(text);
    return std::strtod(copy.c_str(), nullptr);
}

int store_number_text(const VariableTarget& t, std::string_view text) {
    text = trimmed(text);
    if (text.empty()) text = "0";
    if (t.type == kind_double) {
        *t.number = entry_double(text);
        return 0;
    }
    if (*t.word == 0) {
        const std::int64_t ref = new_long_variable();
        if (ref < 0) return static_cast<int>(ref);
        *t.word = static_cast<std::uint32_t>(ref);
    }
    lang.reporter.error_column = t.column;
    const int rc = long_from_text(text, long_at(*t.word), true);
    return rc < 0 ? rc : 0;
}

std::string_view entry_text(const ValueItem& item) {
    if (!item.quoted && item.too_long) return item.whole;
    return std::string_view(item.text, item.length);
}

int entry_fault(std::uint32_t type, const ValueItem& item) {
    if (type == kind_string) return item.too_long ? err_string_too_long : 0;
    const std::string_view text = trimmed(entry_text(item));
    if (item.quoted || !is_number_entry(text)) return err_incorrect_data_type_looking_number;
    if (text.empty()) return 0;
    if (type == kind_double) return std::isinf(entry_double(text)) ? err_too_large_for_double : 0;
    ParsedLongText parsed;
    const int rc = long_parse_text(text, parsed, false);
    return rc < 0 ? -rc : 0;
}

int store_text(const VariableTarget& t, std::string_view text) {
    lang.reporter.error_column = t.column;
    const int rc = store_string(t.word, text, store_assign);
    return rc < 0 ? rc : 0;
}

bool typed_at_prompt() {
    return exec.running_command_line && !exec.check_mode && exec.position.line_offset >= exec.command_line_offset;
}

bool only_blanks(const char* pos, const char* end) {
    while (pos < end && is_blank(*pos)) ++pos;
    return pos >= end;
}

int read_value_item(const char* list, const char* end, const char*& pos, ValueItem& item, bool& more,
                    int& error_at) {
    const char* p = pos;
    while (p < end && is_blank(*p)) ++p;
    item = ValueItem{};
    item.column = static_cast<int>(p - list);
    std::size_t n = 0;
    if (p < end && *p == '"') {
        item.quoted = true;
        ++p;
        for (;;) {
            if (p >= end) {
                error_at = item.column;
                return err_incorrect_data_type_looking_string;
            }
            char c = *p;
            if (c == '"') {
                ++p;
                break;
            }
            if (c == '\\') {
                if (++p >= end) {
                    error_at = item.column;
                    return err_incorrect_data_type_looking_string;
                }
                c = escaped_character(*p);
            }
            if (n < max_string_length) {
                item.text[n++] = c;
            } else {
                item.too_long = true;
            }
            ++p;
        }
        while (p < end && is_blank(*p)) ++p;
        if (p < end && *p != ',') {
            error_at = static_cast<int>(p - list);
            return err_missing_comma_following_data_value;
        }
    } else {
        const char* q = p;
        while (q < end && *q != ',') ++q;
        const std::string_view text = trimmed(std::string_view(p, static_cast<std::size_t>(q - p)));
        item.whole = text;
        item.too_long = text.size() > max_string_length;
        n = item.too_long ? max_string_length : text.size();
        std::memcpy(item.text, text.data(), n);
        p = q;
    }
    item.text[n] = 0;
    item.length = n;
    more = p < end && *p == ',';
    pos = more ? p + 1 : end;
    return 0;
}

}  // namespace tl
