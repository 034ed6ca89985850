// evaluator.cpp — collecting an expression's Items and placing its result.
#include "lang/evaluator.h"

#include <cstring>

#include "exec/front_end.h"
#include "exec/stack_guard.h"
#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/expression_passes.h"
#include "lang/expression_plans.h"
#include "lang/item_listing.h"
#include "lang/lang_state.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// True when get_item would produce nothing more for this expression.
bool at_expression_end(int mode) {
    const ScanState& s = lang.scan;
    const char c = peek_nonblank();
    if (c == 0 || c == ':') return true;
    if ((mode & scan_in_parentheses) != 0 && c == ')') return true;
    return (mode & scan_separators) != 0 && (c == ',' || c == ';') && s.position < s.end;
}

int hold_text(Item& item, const char* text) {
    lang.reporter.error_column = item.column;
    const std::int64_t offset = new_temp_string(text);
    if (offset < 0) return static_cast<int>(offset);
    item.word = static_cast<std::uint32_t>(offset);
    return 0;
}

int hold_long(Item& item, const LongNumber& value) {
    lang.reporter.error_column = item.column;
    const std::int64_t ref = new_temp_long();
    if (ref < 0) return static_cast<int>(ref);
    item.word = static_cast<std::uint32_t>(ref);
    // Passing over a statement computes nothing: a long value is a zero there,
    // so no long arithmetic is done for it.
    if (lang.scan.skipping) {
        long_set_zero(long_at(item.word));
    } else {
        long_copy(value, long_at(item.word));
    }
    return 0;
}

/// Moves a scanned value out of the scanner's shared places into the Item:
/// texts into temporary string space, long numbers into a temporary long
/// number, arguments of a user-defined function to the kind of their value.
int hold_value(Item& item) {
    switch (item.kind) {
        case kind_string:
        case kind_numeric_text: return hold_text(item, lang.scan.buffer);
        case kind_long: return hold_long(item, long_state.work);
        case kind_argument: {
            const Item& arg = lang.scan.call.arguments[item.word];
            item.kind = arg.kind;
            item.number = arg.number;
            if (arg.kind == kind_string || arg.kind == kind_numeric_text) return hold_text(item, item_text(arg));
            if (arg.kind == kind_long) return hold_long(item, long_at(arg.word));
            item.word = 0;
            return 0;
        }
        default: return 0;
    }
}

int collect_items(ItemTable& t, int mode) {
    ScanState& s = lang.scan;
    for (;;) {
        if (t.count == max_expression_items && !at_expression_end(mode)) {
            skip_blanks();
            return scan_error(err_too_many_items_expression, scan_column());
        }
        Item& item = t.items[t.count];
        t.text_end = s.position;
        int k = get_item(item, mode);
        if (k < 0) return report_error(err_pass_get_item);
        if (k == 0) return 0;
        if (k == scan_number_constant || k == scan_string_constant) k = static_cast<int>(item.kind);
        if (k == scan_name) return scan_error(err_invalid_expression, item.column);
        if (k == kind_statement) {
            if ((mode & scan_in_parentheses) != 0) return scan_error(err_statement_inside_expression, item.column);
            s.position = s.start + item.column;  // the statement keyword is left for the executor
            s.terminator = 0;
            return 0;
        }
        const int r = hold_value(item);
        if (r < 0) return r;
        ++t.count;
    }
}

/// While a definition is checked the expression is only scanned: the result
/// is a dummy of the first Item's type.
void replace_by_dummy(ItemTable& t) {
    Item& first = t.items[0];
    if (t.count == 1 && (first.kind == kind_string_array || first.kind == kind_double_array)) return;
    const bool text = first.kind == kind_string;
    const int column = first.column;
    first = Item{};
    first.kind = text ? kind_string : kind_double;
    first.column = column;
    t.count = 1;
}

int place_result(const Item& r) {
    ScanState& s = lang.scan;
    switch (r.kind) {
        case kind_double: s.result = r.number; break;
        case kind_string:
        case kind_numeric_text: {
            const char* text = item_text(r);
            const std::size_t n = std::strlen(text);
            std::memmove(s.buffer, text, n + 1);
            break;
        }
        case kind_long: {
            LongNumber& w = long_state.work;
            long_copy(long_at(r.word), w);
            if (!long_state.mode.integer_mode && w.len > long_state.mode.precision) {
                w.nrm = 0;
                long_normalise(w, normalise_round);
            }
            break;
        }
        case kind_string_array:
        case kind_double_array: s.sole_reference = ValueReference{r.array, 0}; break;
        default: return scan_error(err_invalid_expression, r.column);
    }
    return static_cast<int>(r.kind);
}

/// Keeps the value of a number constant that is the whole result, for the
/// statement that converts it next (known_number_text).
void remember_constant(const Item& r) {
    ScanState& s = lang.scan;
    s.constant_text[0] = 0;
    if (r.kind != kind_numeric_text || !r.number_known) return;
    const std::size_t n = std::strlen(s.buffer);
    if (n >= sizeof s.constant_text) return;
    std::memcpy(s.constant_text, s.buffer, n + 1);
    s.constant_value = r.number;
}

int evaluate(int mode) {
    ScanState& s = lang.scan;
    ItemTable t;
    const char* begin = s.position;
    t.text_end = begin;
    const int collected = collect_items(t, mode);
    s.sole_reference = {};
    if (collected < 0) return collected;
    if (t.count == 0) return 0;

    const Item& sole = t.items[0];
    const bool one_name = t.count == 1 && (sole.kind == kind_string_array || sole.kind == kind_double_array ||
                                           (sole.kind == kind_string && sole.extra != 0));

    if (lang.reporter.debug) {
        const char* end = t.text_end;
        while (end > begin && (end[-1] == ' ' || end[-1] == '\t')) --end;
        char text[scan_buffer_size + 1];
        std::size_t n = static_cast<std::size_t>(end - begin);
        if (n > scan_buffer_size) n = scan_buffer_size;
        std::memcpy(text, begin, n);
        text[n] = 0;
        console_print("\n%sExpression: %s\n", listing_indent(), text);
    }
    if (s.defining_function) replace_by_dummy(t);
    const int r = reduce_expression(t);
    if (r < 0) return r;
    if (t.count != 1) return scan_error(err_invalid_expression, t.items[t.count > 1 ? 1 : 0].column);
    const int kind = place_result(t.items[0]);
    if (kind > 0 && one_name) s.sole_reference = item_reference(t.items[0]);
    remember_constant(t.items[0]);
    return kind;
}

}  // namespace

int evaluate_expression(int mode) {
    if (stack_nearly_full()) return report_nesting_too_deep();
    if (const int planned = run_expression_plan(mode); planned > 0) return planned;
    ++lang.scan.depth;
    const int r = evaluate(mode);
    --lang.scan.depth;
    return r;
}

}  // namespace tl
