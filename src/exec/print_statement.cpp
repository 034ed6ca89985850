// print_statement.cpp — the item loop of PRINT and WRITE: USING, TAB, separators.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/file_statements.h"
#include "exec/long_text_buffers.h"
#include "exec/output_line.h"
#include "exec/statements.h"
#include "exec/string_array_long.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// True when the next item is the word `word` (letter case ignored) as a whole
/// name; with `paren` it must be followed by "(". Consumes the word on a match.
bool next_word_is(const char* word, bool paren) {
    skip_blanks();
    const char* p = lang.scan.position;
    if (!starts_with_word(p, lang.scan.end, word)) return false;
    const std::size_t n = std::strlen(word);
    const char* q = p + n;
    if (paren) {
        while (q < lang.scan.end && (*q == ' ' || *q == '\t')) ++q;
        if (q >= lang.scan.end || *q != '(') return false;
    }
    lang.scan.position = p + n;
    return true;
}

/// True for a character that can start an item but not an operator.
bool starts_item(char c) { return is_name_char(c) || c == '"' || c == '.'; }

/// Where a USING format that is a single string constant or variable name is
/// followed directly by another item (the separator forgotten); null when it
/// is not. Reads the text only: nothing is evaluated twice.
const char* item_after_single_format() {
    const char* p = lang.scan.position;
    const char* const end = lang.scan.end;
    while (p < end && (*p == ' ' || *p == '\t')) ++p;
    if (p >= end) return nullptr;
    if (*p == '"') {
        for (++p; p < end && *p != '"'; ++p) {
            if (*p == '\\' && p + 1 < end) ++p;
        }
        if (p >= end) return nullptr;
        ++p;
    } else if ((*p >= 'a' && *p <= 'z') || (*p >= 'A' && *p <= 'Z')) {
        while (p < end && is_name_char(*p)) ++p;
    } else {
        return nullptr;
    }
    while (p < end && (*p == ' ' || *p == '\t')) ++p;
    // A name followed by "(" is a call or an element, and one followed by
    // an operator an expression: the evaluator reads those.
    if (p >= end || !starts_item(*p)) return nullptr;
    return p;
}

/// Digits of a number text before any exponent.
int numeric_text_digits(const char* text) {
    int n = 0;
    for (; *text != 0 && *text != 'e' && *text != 'E'; ++text) n += (*text >= '0' && *text <= '9') ? 1 : 0;
    return n;
}

/// Text of the long number `n` for PRINT (plain, or formatted under USING),
/// in a buffer sized from that text.
int long_text(const PrintSession& s, const LongNumber& n, std::string_view& out) {
    std::vector<char>& buffer = long_text_buffers.print;
    if (!s.using_format) return long_plain_text(n, buffer, out);
    if (int rc = reserve_text_buffer(buffer, long_format_size); rc < 0) return rc;
    const int length = long_format(n, s.format, buffer.data(), buffer.size(), true);
    if (length < 0) return length;
    out = std::string_view(buffer.data(), static_cast<std::size_t>(length));
    return 0;
}

int print_items(PrintSession& s) {
    const bool skip = exec.skip;
    if (next_word_is("using", false)) {
        if (const char* next = item_after_single_format(); next != nullptr) {
            lang.scan.position = next;
            return error_at_column(err_format_string_followed_by_semicolon, scan_column());
        }
        const int column = scan_column();
        const int kind = evaluate_expression(scan_separators);
        if (kind < 0) return kind;
        if (kind != kind_string) return error_at_column(err_invalid_format_string_print_using, column);
        if (lang.scan.terminator != ';' && lang.scan.terminator != ',')
            return error_at_column(err_format_string_followed_by_semicolon, scan_column());
        s.item_column = column;
        if (!skip) {
            if (int rc = select_using_format(s, lang.scan.buffer); rc < 0) return rc;
        }
    }
    bool any = false;
    // A TAB followed by ";" that ends the statement keeps its position for
    // the next PRINT, as an item followed by ";" keeps the line.
    bool tab_continues = false;
    for (;;) {
        // Passed over, a PRINT changes nothing: not the line's continue flag,
        // not a pending TAB.
        if (!skip) begin_print_item(s);
        s.item_column = scan_column();
        if (next_word_is("tab", true)) {
            Item params[7];
            const int count = parse_parameter_list(params);
            if (count < 0) return count;
            if (count != 1) return error_at_column(err_incorrect_number_parameters, s.item_column);
            double column = 0;
            if (params[0].kind == kind_double) {
                column = params[0].number;
            } else if (params[0].kind == kind_numeric_text) {
                column = std::strtod(item_text(params[0]), nullptr);
            } else {
                return error_at_column(err_invalid_type_expecting_number, s.item_column);
            }
            if (!skip) {
                if (int rc = set_tab_target(s, column); rc < 0) return rc;
            }
            skip_blanks();
            tab_continues = lang.scan.position < lang.scan.end && *lang.scan.position == ';';
            if (lang.scan.position < lang.scan.end && (*lang.scan.position == ';' || *lang.scan.position == ','))
                ++lang.scan.position;
            continue;
        }
        const int kind = evaluate_expression(scan_separators);
        if (kind < 0) return kind;
        if (kind == 0) break;
        tab_continues = false;
        std::string_view text;
        double number = 0;
        int write_kind = kind;
        switch (kind) {
            case kind_double: number = lang.scan.result; break;
            case kind_numeric_text:
                // A number written as a constant keeps its text, except under
                // USING, whose format applies to it as to any other number.
                if (s.using_format && !skip) {
                    if (numeric_text_digits(lang.scan.buffer) < 17) {
                        number = std::strtod(lang.scan.buffer, nullptr);
                        write_kind = kind_double;
                    } else if (long_from_text(lang.scan.buffer, long_state.work, true) >= 0) {
                        if (int rc = long_text(s, long_state.work, text); rc < 0) return rc;
                        write_kind = kind_long;
                    } else {
                        return -1;
                    }
                    break;
                }
                text = lang.scan.buffer;
                break;
            case kind_string: text = lang.scan.buffer; break;
            case kind_long:
                if (!skip) {
                    if (int rc = long_text(s, long_state.work, text); rc < 0) return rc;
                }
                break;
            case kind_string_array:
                // A long number kept across the elements of a string array
                // prints as that number, as a long variable would.
                if (!skip) {
                    const ArrayEntry* array = lang.scan.sole_reference.array;
                    if (array == nullptr) return error_at_column(err_invalid_type, s.item_column);
                    if (int rc = long_from_string_array(*array, s.item_column, long_state.work); rc < 0) return rc;
                    if (int rc = long_text(s, long_state.work, text); rc < 0) return rc;
                }
                break;
            default: return error_at_column(err_invalid_type, s.item_column);
        }
        if (!skip) {
            if (int rc = write_print_item(s, static_cast<std::uint32_t>(write_kind), number, text); rc < 0) return rc;
        }
        any = true;
        const char t = lang.scan.terminator;
        if (!skip) finish_print_item(s, t == ';');
        if (t != ';' && t != ',') break;
    }
    if (skip) return 0;
    return end_print_line(s, any || tab_continues);
}

}  // namespace

int do_print(bool write_mode) {
    skip_blanks();
    int file = 0;
    if (lang.scan.position < lang.scan.end && *lang.scan.position == '#') {
        if (exec.skip) {
            skip_statement_text();
            return 0;
        }
        file = start_print_to_file(write_mode);
        if (file <= 0) return file;
    }
    PrintSession s;
    if (exec.skip) {
        s.write_mode = write_mode;  // the console's print zones stay as they are
    } else {
        begin_print(s, file, write_mode);
    }
    lang.scan.in_print = true;
    const int rc = print_items(s);
    lang.scan.in_print = false;
    trim_text_buffer(long_text_buffers.print);
    return rc;
}

}  // namespace tl
