// expression_passes.cpp — the seven precedence passes of the evaluator.
//
// Each pass runs left to right and replaces operand-operator-operand by the
// result, which takes the left operand's place and column; the next look
// starts at the same position, so chains associate to the left (2^3^2 = 64).
#include "lang/expression_passes.h"

#include <cmath>
#include <cstring>

#include "exec/memory_areas.h"
#include "exec/string_space.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/item_listing.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/numeric_operands.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "longmath/long_arith.h"
#include "longmath/long_convert.h"
#include "longmath/long_functions.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"
#include "longmath/long_timing.h"

namespace tl {
namespace {

char op_char(const Item& item) { return static_cast<char>(item.word); }

bool is_op(const Item& item, char c) { return item.kind == kind_operator && op_char(item) == c; }

bool is_sign(const Item& item) { return is_op(item, '+') || is_op(item, '-'); }

bool is_any_operator(const Item& item) {
    return item.kind == kind_operator || item.kind == kind_comparison || item.kind == kind_logical;
}

void remove_items(ItemTable& t, int at, int n) {
    for (int i = at; i + n < t.count; ++i) t.items[i] = t.items[i + n];
    t.count -= n;
}

/// The left operand becomes the double `value`; operator and right operand go.
void replace_by_double(ItemTable& t, int op_index, double value) {
    Item& left = t.items[op_index - 1];
    const int column = left.column;
    left = Item{};
    left.kind = kind_double;
    left.number = value;
    left.column = column;
    remove_items(t, op_index, 2);
}

/// Runs a long operation into a fresh temporary and copies the result into the
/// left operand's own temporary, so that a reduction takes no temporary space.
template <typename Op>
int long_operation(ItemTable& t, int op_index, Op op) {
    Item& left = t.items[op_index - 1];
    Item& right = t.items[op_index + 1];
    const std::uint32_t mark = temp_long_mark();
    lang.reporter.error_column = t.items[op_index].column;
    const std::int64_t ref = new_temp_long();
    if (ref < 0) return static_cast<int>(ref);
    LongNumber& result = long_at(static_cast<std::uint32_t>(ref));
    // Passing over a statement needs no value, and raises no value errors.
    int r = 0;
    if (lang.scan.skipping) {
        long_set_zero(result);
    } else {
        r = op(long_at(left.word), long_at(right.word), result);
        if (r >= 0) r = long_check_exponent(result, true);
    }
    if (r < 0) {
        release_temp_longs(mark);
        return r;
    }
    long_copy(result, long_at(left.word));
    release_temp_longs(mark);
    remove_items(t, op_index, 2);
    return 0;
}

// ---- pass 1: unary signs -------------------------------------------------

int negate(Item& operand) {
    switch (operand.kind) {
        case kind_double: operand.number = -operand.number; return 0;
        case kind_long: {
            LongNumber& n = long_at(operand.word);
            if (!long_is_zero(n)) n.sgn = n.sgn == -1 ? 0 : -1;
            return 0;
        }
        case kind_numeric_text: {
            const char* text = item_text(operand);
            char flipped[scan_buffer_size + 1];
            if (text[0] == '-') {
                std::strncpy(flipped, text + 1, scan_buffer_size);
            } else {
                flipped[0] = '-';
                std::strncpy(flipped + 1, text, scan_buffer_size - 1);
            }
            flipped[scan_buffer_size] = 0;
            lang.reporter.error_column = operand.column;
            const std::int64_t offset = new_temp_string(flipped);
            if (offset < 0) return static_cast<int>(offset);
            operand.word = static_cast<std::uint32_t>(offset);
            if (operand.number_known) operand.number = -operand.number;
            return 0;
        }
        default: return scan_error(err_invalid_expression, operand.column);
    }
}

int pass_unary_signs(ItemTable& t) {
    for (int i = 0; i < t.count;) {
        Item& op = t.items[i];
        if (op.kind != kind_operator) {
            ++i;
            continue;
        }
        const bool sign = is_sign(op);
        const bool unary = sign && (i == 0 || is_any_operator(t.items[i - 1]));
        if (i == t.count - 1) {
            if (unary) return scan_error(is_op(op, '-') ? err_unary_minus_last : err_unary_plus_last, op.column);
            return scan_error(err_operator_last_item, op.column);
        }
        Item& next = t.items[i + 1];
        if (next.kind == kind_operator && !is_sign(next)) {
            if (!sign) return scan_error(err_operator_follows_operator, next.column);
            return scan_error(err_sign_before_operator, op.column);
        }
        if (!unary) {
            ++i;
            continue;
        }
        if (is_op(op, '-')) {
            if (is_sign(next)) {
                next.word = is_op(next, '+') ? '-' : '+';
            } else {
                const int r = negate(next);
                if (r < 0) return r;
            }
        } else if (!is_sign(next) && next.kind != kind_double && next.kind != kind_long &&
                   next.kind != kind_numeric_text) {
            return scan_error(err_unary_plus_before_non_number, op.column);
        }
        next.column = op.column;
        remove_items(t, i, 1);  // the operand (or the turned sign) is examined next
    }
    return 0;
}

// ---- passes 2 to 4: arithmetic --------------------------------------------

/// Both operands of the operator at `i` as one numeric type; on failure the
/// operator reports `own_error` after the conversion's own message.
int operands(ItemTable& t, int i, int own_error) {
    const int k = common_numeric_type(t.items[i - 1], t.items[i + 1]);
    if (k < 0) return scan_error(own_error, t.items[i].column);
    return k;
}

/// x ^ y with the precision raised by 16 digits, rounded back.
int long_power_operator(const LongNumber& x, const LongNumber& y, LongNumber& result) {
    const auto start = long_timer_start();
    const int r = long_power_operator_value(x, y, result);
    if (r == 0) long_timer_report(power_time_label, start);
    return r;
}

int pass_power(ItemTable& t) {
    for (int i = 0; i < t.count;) {
        const Item& op = t.items[i];
        if (!is_op(op, '^')) {
            ++i;
            continue;
        }
        if (i == 0) return scan_error(err_raise_power_both_operands_numeric, op.column);
        const int k = operands(t, i, err_operands_must_be_numbers);
        if (k < 0) return k;
        if (k == kind_double) {
            double r = std::pow(t.items[i - 1].number, t.items[i + 1].number);
            if (!std::isfinite(r)) {
                if (!lang.scan.skipping) return scan_error(err_power_root_error_result, op.column);
                r = 0.0;  // a value met while passing over a statement raises nothing
            }
            replace_by_double(t, i, r);
            continue;
        }
        if (long_state.mode.integer_mode) return scan_error(err_long_operation_only_valid_floating, op.column);
        const int r = long_operation(t, i, [](LongNumber& a, LongNumber& b, LongNumber& q) {
            if (lang.scan.skipping) return (long_set_zero(q), 0);  // passing over: no value errors
            return long_power_operator(a, b, q);
        });
        if (r < 0) return r;
    }
    return 0;
}

int divide_doubles(ItemTable& t, int i, char c) {
    const int column = t.items[i].column;
    const double a = t.items[i - 1].number;
    const double b = t.items[i + 1].number;
    double r = 0.0;
    if (lang.scan.skipping) {
        // Passing over a statement: stale or dummy values raise nothing.
        r = c == '*' ? a * b : (b == 0.0 ? 0.0 : (c == '%' ? std::fmod(a, b) : a / b));
        replace_by_double(t, i, std::isfinite(r) ? r : 0.0);
        return 0;
    }
    if (c == '*') {
        r = a * b;
        if (!std::isfinite(r)) return scan_error(err_invalid_result_multiply_divide, column);
    } else if (c == '%') {
        if (b == 0.0) return scan_error(err_attempt_divide_by_zero, column);
        r = std::fmod(a, b);  // the remainder takes the dividend's sign
        if (!std::isfinite(r)) return scan_error(err_invalid_result_multiply_divide, column);
    } else {
        const bool tolerate = long_state.mode.matherrok;
        if (b == 0.0) {
            if (!tolerate) return scan_error(err_attempt_divide_by_zero, column);
            lang.scan.math_error = true;
        }
        r = a / b;
        if (!std::isfinite(r)) {
            if (!tolerate) return scan_error(err_invalid_result_multiply_divide, column);
            lang.scan.math_error = true;
        }
    }
    replace_by_double(t, i, r);
    return 0;
}

int pass_multiply_divide(ItemTable& t) {
    for (int i = 0; i < t.count;) {
        const Item& op = t.items[i];
        const char c = op.kind == kind_operator ? op_char(op) : 0;
        if (c != '*' && c != '/' && c != '%') {
            ++i;
            continue;
        }
        if (i == 0) return scan_error(err_first_item_mul_div, op.column);
        const int k = operands(t, i, err_operands_must_be_numbers);
        if (k < 0) return k;
        int r = 0;
        if (k == kind_double) {
            r = divide_doubles(t, i, c);
        } else if (c == '*') {
            r = long_operation(t, i, [](LongNumber& a, LongNumber& b, LongNumber& q) { return long_multiply(a, b, q); });
        } else if (c == '/') {
            r = long_operation(t, i, [](LongNumber& a, LongNumber& b, LongNumber& q) {
                if (lang.scan.skipping && b.blocks[0] == 0) return (long_set_zero(q), 0);
                return long_divide(a, b, q);
            });
        } else {
            r = long_operation(t, i, [](LongNumber& a, LongNumber& b, LongNumber& q) {
                if (lang.scan.skipping && b.blocks[0] == 0) return (long_set_zero(q), 0);
                return long_mod(a, b, q);
            });
        }
        if (r < 0) return r;
    }
    return 0;
}

int concatenate(ItemTable& t, int i) {
    char joined[scan_buffer_size];
    const char* a = item_text(t.items[i - 1]);
    const char* b = item_text(t.items[i + 1]);
    std::size_t n = std::strlen(a);
    if (n > max_string_length) n = max_string_length;
    std::memcpy(joined, a, n);
    std::size_t m = std::strlen(b);
    if (n + m > max_string_length) m = max_string_length - n;
    std::memcpy(joined + n, b, m);
    joined[n + m] = 0;
    if (areas.temp_strings.used + scan_buffer_size > areas.temp_strings.size)
        return scan_error(err_no_more_space_temporary_strings, t.items[i].column);
    lang.reporter.error_column = t.items[i].column;
    const std::int64_t offset = new_temp_string(joined);
    if (offset < 0) return static_cast<int>(offset);
    t.items[i - 1].word = static_cast<std::uint32_t>(offset);
    t.items[i - 1].extra = 0;
    t.items[i - 1].array = nullptr;
    remove_items(t, i, 2);
    return 0;
}

int pass_add_subtract(ItemTable& t) {
    for (int i = 0; i < t.count;) {
        const Item& op = t.items[i];
        if (!is_sign(op)) {
            ++i;
            continue;
        }
        if (i == 0) return scan_error(err_invalid_expression, op.column);
        const bool plus = is_op(op, '+');
        const bool left_string = t.items[i - 1].kind == kind_string;
        const bool right_string = t.items[i + 1].kind == kind_string;
        if (plus && left_string != right_string) return scan_error(err_type_mismatch, op.column);
        if (plus && left_string) {
            const int r = concatenate(t, i);
            if (r < 0) return r;
            continue;
        }
        const int k = operands(t, i, err_operands_must_be_numbers);
        if (k < 0) return k;
        if (k == kind_double) {
            const double a = t.items[i - 1].number;
            const double b = t.items[i + 1].number;
            replace_by_double(t, i, plus ? a + b : a - b);
            continue;
        }
        const int r = plus ? long_operation(t, i,
                                            [](LongNumber& a, LongNumber& b, LongNumber& s) {
                                                const int e = long_add(a, b, s);
                                                if (e >= 0) long_normalise(s, normalise_round);
                                                return e;
                                            })
                           : long_operation(t, i, [](LongNumber& a, LongNumber& b, LongNumber& s) {
                                 const int e = long_subtract(a, b, s);
                                 if (e >= 0) long_normalise(s, normalise_round);
                                 return e;
                             });
        if (r < 0) return r;
    }
    return 0;
}

// ---- pass 5: comparisons --------------------------------------------------

int pass_comparisons(ItemTable& t) {
    for (int i = 0; i < t.count;) {
        const Item& op = t.items[i];
        if (op.kind != kind_comparison) {
            ++i;
            continue;
        }
        if (i == 0) return scan_error(err_first_item_logical_expression_cannot, op.column);
        if (i == t.count - 1) {  // left alone; the expression then fails as a whole
            ++i;
            continue;
        }
        const int slot = static_cast<int>(op.word);
        Item& a = t.items[i - 1];
        Item& b = t.items[i + 1];
        int order = 0;
        if (a.kind == kind_string && b.kind != kind_string)
            return scan_error(err_invalid_type_expecting_string, op.column);
        if (a.kind != kind_string && b.kind == kind_string) return scan_error(err_type_mismatch, op.column);
        if (a.kind == kind_string) {
            const int c = std::strcmp(item_text(a), item_text(b));
            order = c < 0 ? -1 : (c > 0 ? 1 : 0);
        } else {
            const int k = operands(t, i, err_type_mismatch);
            if (k < 0) return k;
            if (k == kind_double) {
                order = double_order(a.number, b.number);
            } else {
                order = long_compare(long_at(a.word), long_at(b.word));
            }
        }
        replace_by_double(t, i, comparison_holds(slot, order) ? 1.0 : 0.0);
    }
    return 0;
}

// ---- passes 6 and 7: logical operators ------------------------------------

int pass_not(ItemTable& t) {
    for (int i = 0; i < t.count; ++i) {
        Item& op = t.items[i];
        if (op.kind != kind_logical || op.word != logic_not) continue;
        if (i == t.count - 1) return scan_error(err_logical_operator_cannot_last_item, op.column);
        bool truth = false;
        const int r = truth_value(t.items[i + 1], truth);
        if (r < 0) return r;
        const int column = op.column;
        op = Item{};
        op.kind = kind_double;
        op.number = truth ? 0.0 : 1.0;
        op.column = column;
        remove_items(t, i + 1, 1);
    }
    return 0;
}

int pass_binary_logic(ItemTable& t) {
    // AND binds tighter than OR, OR tighter than the exclusive ors; EOR goes before XOR.
    for (const int slot : {logic_and, logic_or, logic_eor, logic_xor}) {
        for (int i = 0; i < t.count;) {
            const Item& op = t.items[i];
            if (op.kind != kind_logical || static_cast<int>(op.word) != slot) {
                ++i;
                continue;
            }
            if (i == 0) return scan_error(err_logical_operator_cannot_first_item, op.column);
            if (i == t.count - 1) return scan_error(err_logical_operator_cannot_last_item, op.column);
            bool a = false;
            bool b = false;
            int r = truth_value(t.items[i - 1], a);
            if (r >= 0) r = truth_value(t.items[i + 1], b);
            if (r < 0) return r;
            const bool v = slot == logic_and ? (a && b) : slot == logic_or ? (a || b) : (a != b);
            replace_by_double(t, i, v ? 1.0 : 0.0);
        }
    }
    return 0;
}

struct Pass {
    int (*run)(ItemTable&);
    const char* label;
};

// ORDER: precedence, highest first.
constexpr Pass passes[] = {
    {pass_unary_signs, "functions and unary - and +"},
    {pass_power, "raise to power"},
    {pass_multiply_divide, "multiply and divide"},
    {pass_add_subtract, "add and subtract"},
    {pass_comparisons, "comparison operations"},
    {pass_not, "Logical NOT"},
    {pass_binary_logic, "Logical AND, OR, XOR, EOR"},
};

/// Bit i is set when pass i has an operator to work on. A pass never makes an
/// operator, so a pass whose bit is clear would only walk the table.
unsigned passes_needed(const ItemTable& t) {
    unsigned needed = 0;
    for (int i = 0; i < t.count; ++i) {
        const Item& item = t.items[i];
        if (item.kind == kind_operator) {
            needed |= 1u;
            const char c = op_char(item);
            if (c == '^') needed |= 2u;
            if (c == '*' || c == '/' || c == '%') needed |= 4u;
            if (c == '+' || c == '-') needed |= 8u;
        } else if (item.kind == kind_comparison) {
            needed |= 16u;
        } else if (item.kind == kind_logical) {
            needed |= item.word == logic_not ? 32u : 64u;
        }
    }
    return needed;
}

}  // namespace

bool comparison_holds(int slot, int order) {
    if (order == order_unordered) return slot == cmp_ne;
    switch (slot) {
        case cmp_eq: return order == 0;
        case cmp_lt: return order < 0;
        case cmp_gt: return order > 0;
        case cmp_le: return order <= 0;
        case cmp_ge: return order >= 0;
        default: return order != 0;
    }
}

int reduce_expression(ItemTable& t) {
    if (lang.reporter.debug) list_item_table(t.items, t.count, nullptr);
    // With the listing off, passes with nothing to do are left out.
    const unsigned needed = lang.reporter.debug ? ~0u : passes_needed(t);
    unsigned bit = 1;
    for (const Pass& p : passes) {
        const bool skip = (needed & bit) == 0;
        bit <<= 1;
        if (skip) continue;
        const int r = p.run(t);
        if (r < 0) return r;
        if (lang.reporter.debug) list_item_table(t.items, t.count, p.label);
    }
    return 0;
}

}  // namespace tl
