// scanner.cpp — get_item: blanks, shorthands, operators, constants and parentheses.
//
// Names (keywords, functions, variables, arrays) are handled in scan_names.cpp;
// parameter lists in parameter_list.cpp.
#include "lang/scanner.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "exec/arrays.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/number_text.h"
#include "lang/numeric_operands.h"
#include "lang/scan_caches.h"
#include "lang/scan_names.h"

namespace tl {
namespace {

bool is_blank(char c) { return c == ' ' || c == '\t'; }

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_operator_char(char c) {
    return c == '+' || c == '-' || c == '*' || c == '/' || c == '^' || c == '%';
}

char char_at(std::ptrdiff_t ahead) {
    const ScanState& s = lang.scan;
    const char* p = s.position + ahead;
    return p < s.end ? *p : 0;
}

int scan_shorthand(Item& item, int mode) {
    int slot = -1;
    int width = 1;
    const char c = char_at(0);
    if (c == '?') {
        slot = char_at(1) == '?' ? stmt_debugprint : stmt_print;
        width = slot == stmt_debugprint ? 2 : 1;
    } else if (c == '/' && char_at(1) == '/') {
        slot = stmt_rem;
        width = 2;
    }
    if (slot < 0) return 0;
    if ((mode & scan_declaration_context) != 0) return scan_error(err_statement_invalid_long_dimension, item.column);
    lang.scan.position += width;
    item.kind = kind_statement;
    item.word = static_cast<std::uint32_t>(slot);
    return kind_statement;
}

struct ComparisonForm {
    const char* text;
    int slot;
    std::size_t length = text[1] == 0 ? 1 : 2;
};

// The two-character forms come first so that "<=" is not read as "<".
constexpr ComparisonForm comparison_forms[] = {{"<=", cmp_le}, {">=", cmp_ge}, {"<>", cmp_ne},
                                               {"=", cmp_eq},  {"<", cmp_lt},  {">", cmp_gt}};

/// A string constant may hold at most this many characters.
constexpr std::size_t max_string_constant = scan_buffer_size - 2;

int scan_comparison(Item& item, int mode) {
    for (const ComparisonForm& f : comparison_forms) {
        const std::size_t n = f.length;
        if (char_at(0) != f.text[0] || (n == 2 && char_at(1) != f.text[1])) continue;
        if ((mode & scan_declaration_context) != 0)
            return scan_error(err_comparison_operator_invalid_long_dimension, item.column);
        lang.scan.position += n;
        item.kind = kind_comparison;
        item.word = static_cast<std::uint32_t>(f.slot);
        return kind_comparison;
    }
    return 0;
}

/// The number cache slot for the scan position when it lies in the current
/// program line (null elsewhere, or with the caches off).
NumberCacheEntry* number_slot(std::uint32_t& offset) {
    const ProgramLine* line = exec.current_line;
    const char* p = lang.scan.position;
    if (!exec.caches_enabled || line == nullptr || p < line->text || p >= line->text + line->length) return nullptr;
    offset = line->start + static_cast<std::uint32_t>(p - line->text) + 1;
    return &lang.caches.numbers[(offset * 2654435761u >> 8) & (number_cache_size - 1)];
}

/// True when the entry's constant stands at the scan position, followed by
/// the same character: reading it again would give the same text.
bool number_matches(const NumberCacheEntry& e, std::uint32_t offset) {
    const ScanState& s = lang.scan;
    if (e.offset != offset || s.end - s.position < e.length) return false;
    if (std::memcmp(e.text, s.position, e.length) != 0) return false;
    const char after = s.position + e.length < s.end ? s.position[e.length] : 0;
    return after == e.text[e.length];
}

void remember_number(NumberCacheEntry& e, std::uint32_t offset, const NumberText& r) {
    const ScanState& s = lang.scan;
    if (r.length > cached_text_max) return;
    e.offset = offset;
    e.length = static_cast<std::uint8_t>(r.length);
    std::memcpy(e.text, s.position, r.length);
    e.text[r.length] = s.position + r.length < s.end ? s.position[r.length] : 0;
    // The double make_numeric would take (a longer text becomes a long number).
    e.is_double = false;
    int digits = 0;
    if (is_decimal_number(s.buffer, digits) && digits < long_text_digits) {
        e.value = std::strtod(s.buffer, nullptr);
        e.is_double = std::isfinite(e.value);
    }
}

int scan_number(Item& item, int mode) {
    ScanState& s = lang.scan;
    std::uint32_t offset = 0;
    NumberCacheEntry* cached = number_slot(offset);
    if (cached != nullptr && number_matches(*cached, offset)) {
        std::memcpy(s.buffer, s.position, cached->length);
        s.buffer[cached->length] = 0;
        s.position += cached->length;
        item.kind = kind_numeric_text;
        if (cached->is_double) {
            item.number = cached->value;
            item.number_known = true;
        }
        return (mode & scan_statement_position) != 0 ? scan_number_constant : static_cast<int>(kind_numeric_text);
    }
    const NumberText r = read_number_text(s.position, s.end, s.buffer);
    if (r.error != 0) {
        s.position += r.error_offset;
        return scan_error(r.error, item.column + static_cast<int>(r.error_offset));
    }
    if (cached != nullptr) remember_number(*cached, offset, r);
    s.position += r.length;
    item.kind = kind_numeric_text;
    return (mode & scan_statement_position) != 0 ? scan_number_constant : static_cast<int>(kind_numeric_text);
}

int scan_string(Item& item, int mode) {
    ScanState& s = lang.scan;
    ++s.position;  // the opening quote
    std::size_t n = 0;
    for (;;) {
        if (s.position >= s.end || *s.position == 0) return scan_error(err_string_not_terminated_quote, scan_column());
        char c = *s.position;
        if (c == '"') {
            ++s.position;
            break;
        }
        if (c == '\\') {
            ++s.position;
            if (s.position >= s.end || *s.position == 0)
                return scan_error(err_string_not_terminated_quote, scan_column());
            c = escaped_character(*s.position);
        }
        if (n >= max_string_constant) return scan_error(err_string_too_long, scan_column());
        s.buffer[n++] = c;
        ++s.position;
    }
    s.buffer[n] = 0;
    item.kind = kind_string;
    return (mode & scan_statement_position) != 0 ? scan_string_constant : static_cast<int>(kind_string);
}

int scan_parenthesised(Item& item, int mode) {
    if ((mode & scan_declaration_context) != 0) return scan_error(err_invalid_name, item.column);
    if ((mode & scan_statement_position) != 0) return scan_error(err_string_numeric_variable, item.column);
    ++lang.scan.position;
    const int k = evaluate_expression(scan_in_parentheses);
    if (k < 0) return report_error(err_pass_evaluate_expression);
    switch (k) {
        case kind_double: item.number = lang.scan.result; [[fallthrough]];
        case kind_string:
        case kind_numeric_text:
        case kind_long:
            item.kind = static_cast<std::uint32_t>(k);
            return k;
        default:
            return scan_error(err_invalid_type, item.column);
    }
}

}  // namespace

int scan_error(int number, int column) {
    lang.reporter.error_column = column;
    return report_error(number);
}

void begin_statement(const char* line, const char* statement, const char* end) {
    ScanState& s = lang.scan;
    s.start = statement != nullptr ? statement : line;
    s.position = s.start;
    s.end = end != nullptr ? end : s.start + std::strlen(s.start);
    s.terminator = 0;
    s.sole_reference = {};
    lang.reporter.text = line;
    lang.reporter.statement_start = s.start;
    lang.reporter.error_column = 0;
}

void skip_blanks() {
    ScanState& s = lang.scan;
    const char* p = s.position;
    const char* const end = s.end;
    while (p < end && is_blank(*p)) ++p;
    s.position = p;
}

char peek_nonblank() {
    const ScanState& s = lang.scan;
    const char* p = s.position;
    while (p < s.end && is_blank(*p)) ++p;
    return p < s.end ? *p : 0;
}

bool known_number_text(const char* text, double& value) {
    const ScanState& s = lang.scan;
    if (!exec.caches_enabled || s.constant_text[0] == 0 || std::strcmp(text, s.constant_text) != 0) return false;
    value = s.constant_value;
    return true;
}

int scan_column() { return static_cast<int>(lang.scan.position - lang.scan.start); }

std::string_view peek_word() {
    skip_blanks();
    const char* p = lang.scan.position;
    while (p < lang.scan.end && ((*p >= 'a' && *p <= 'z') || (*p >= 'A' && *p <= 'Z'))) ++p;
    return {lang.scan.position, static_cast<std::size_t>(p - lang.scan.position)};
}

std::string_view peek_name() {
    skip_blanks();
    const char* p = lang.scan.position;
    while (p < lang.scan.end && is_name_char(*p)) ++p;
    return {lang.scan.position, static_cast<std::size_t>(p - lang.scan.position)};
}

bool starts_with_word(const char* p, const char* end, const char* word) {
    const std::size_t n = std::strlen(word);
    if (static_cast<std::size_t>(end - p) < n) return false;
    for (std::size_t i = 0; i < n; ++i) {
        char c = p[i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != word[i]) return false;
    }
    return p + n >= end || !is_name_char(p[n]);
}

bool take_word(const char* word) {
    skip_blanks();
    if (!starts_with_word(lang.scan.position, lang.scan.end, word)) return false;
    lang.scan.position += std::strlen(word);
    return true;
}

const char* scan_name_text() {
    ScanState& s = lang.scan;
    if (s.name_element != nullptr) {
        format_element_reference(*s.name_element, s.name_subscript_count, s.name_subscripts, s.name, name_buffer_size);
        s.name_element = nullptr;
    }
    return s.name;
}

const char* item_text(const Item& item) { return temp_string_at(item.word); }

ValueReference item_reference(const Item& item) { return ValueReference{item.array, item.extra}; }

int get_item(Item& item, int mode) {
    ScanState& s = lang.scan;
    item = Item{};
    skip_blanks();
    item.column = scan_column();
    const bool at_end = s.position >= s.end || *s.position == 0;
    const char c = at_end ? 0 : *s.position;

    if ((mode & scan_in_parentheses) != 0) {
        if (at_end || c == ':') return scan_error(err_missing_right_parenthesis, item.column);
        if (c == ')') {
            ++s.position;
            s.terminator = ')';
            return 0;
        }
    }
    if (at_end || c == ':') {
        s.terminator = c;
        return 0;
    }
    if ((mode & scan_separators) != 0 && (c == ',' || c == ';')) {
        ++s.position;
        s.terminator = c;
        return 0;
    }
    if ((mode & scan_no_shorthands) == 0) {
        const int k = scan_shorthand(item, mode);
        if (k != 0) return k;
    }
    if (is_operator_char(c)) {
        if ((mode & scan_declaration_context) != 0) return scan_error(err_operator_invalid_long_dimension, item.column);
        ++s.position;
        item.kind = kind_operator;
        item.word = static_cast<unsigned char>(c);
        return kind_operator;
    }
    if (c == '<' || c == '>' || c == '=') return scan_comparison(item, mode);
    if (c == '@') return scan_indirect_name(item, mode);
    if (is_letter(c)) {
        const char* begin = s.position;
        std::size_t length = 0;
        if (NameCacheEntry* known = name_at_place(begin, s.end, length)) {
            s.position += length;
            return scan_name_item(item, mode, std::string_view(begin, length), known);
        }
        while (s.position < s.end && is_name_char(*s.position)) {
            if (s.position - begin == max_name_chars) return scan_error(err_name_too_long, item.column);
            ++s.position;
        }
        const std::string_view name(begin, static_cast<std::size_t>(s.position - begin));
        NameCacheEntry* entry = cached_name(name);
        note_name_place(name, s.end, entry);
        return scan_name_item(item, mode, name, entry);
    }
    if (is_digit(c) || c == '.') return scan_number(item, mode);
    if (c == '"') return scan_string(item, mode);
    if (c == '(') return scan_parenthesised(item, mode);
    return scan_error(err_invalid_expression, item.column);
}

}  // namespace tl
