// numeric_operands.cpp — conversions of operands to a common numeric type.
#include "lang/numeric_operands.h"

#include <cmath>
#include <cstdlib>

#include "exec/memory_areas.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "lang/number_text.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"

namespace tl {
namespace {

int fail(int number, const Item& at) {
    lang.reporter.error_column = at.column;
    return report_error(number);
}

bool is_text(const Item& item) { return item.kind == kind_string || item.kind == kind_numeric_text; }

/// A new temporary long number for `item`; returns its reference or a negated error.
std::int64_t new_long_for(const Item& item) {
    lang.reporter.error_column = item.column;
    return new_temp_long();
}

/// Text into a new temporary long number; false when it is no number.
int text_to_long(Item& item, int error) {
    const std::uint32_t mark = temp_long_mark();
    const std::int64_t ref = new_long_for(item);
    if (ref < 0) return static_cast<int>(ref);
    const auto r = static_cast<std::uint32_t>(ref);
    if (long_from_text(item_text(item), long_at(r), false) < 0) {
        release_temp_longs(mark);
        return fail(error, item);
    }
    item.kind = kind_long;
    item.word = r;
    return kind_long;
}

/// While a statement is passed over, values are not judged: a text stands
/// for the number 0 whatever it holds (a variable may not have its value yet).
int dummy_double(Item& item) {
    item.kind = kind_double;
    item.number = 0.0;
    item.word = 0;
    item.number_known = false;
    return kind_double;
}

int dummy_long(Item& item) {
    const std::int64_t ref = new_long_for(item);
    if (ref < 0) return static_cast<int>(ref);
    item.kind = kind_long;
    item.word = static_cast<std::uint32_t>(ref);
    long_set_zero(long_at(item.word));
    return kind_long;
}

}  // namespace

bool long_is_zero(const LongNumber& n) { return n.blks <= 1 && n.blocks[0] == 0; }

int make_numeric(Item& item) {
    if (item.kind == kind_double || item.kind == kind_long) return static_cast<int>(item.kind);
    if (!is_text(item)) return fail(err_invalid_type_expecting_number, item);
    if (lang.scan.skipping) return dummy_double(item);
    if (item.kind == kind_numeric_text && item.number_known) {
        item.kind = kind_double;
        item.word = 0;
        item.number_known = false;
        return kind_double;
    }
    const char* text = item_text(item);
    int digits = 0;
    if (is_decimal_number(text, digits) && digits < long_text_digits) {
        const double x = std::strtod(text, nullptr);
        if (std::isfinite(x)) {
            item.kind = kind_double;
            item.number = x;
            item.word = 0;
            return kind_double;
        }
    }
    return text_to_long(item, err_could_not_convert_number);
}

int make_long(Item& item) {
    if (item.kind == kind_long) return kind_long;
    if (lang.scan.skipping && (is_text(item) || item.kind == kind_double)) return dummy_long(item);
    if (is_text(item)) return text_to_long(item, err_unable_convert_numeric);
    if (item.kind != kind_double) return fail(err_invalid_type_expecting_number, item);
    const std::uint32_t mark = temp_long_mark();
    const std::int64_t ref = new_long_for(item);
    if (ref < 0) return static_cast<int>(ref);
    const auto r = static_cast<std::uint32_t>(ref);
    if (long_from_double(item.number, long_at(r), false) < 0) {
        release_temp_longs(mark);
        return fail(err_unable_convert_numeric, item);
    }
    item.kind = kind_long;
    item.word = r;
    return kind_long;
}

int common_numeric_type(Item& a, Item& b) {
    if (areas.long_default) {
        const int ka = make_long(a);
        if (ka < 0) return ka;
        const int kb = make_long(b);
        return kb < 0 ? kb : static_cast<int>(kind_long);
    }
    const int ka = make_numeric(a);
    if (ka < 0) return ka;
    const int kb = make_numeric(b);
    if (kb < 0) return kb;
    if (ka == kb) return ka;
    const int k = ka == kind_long ? make_long(b) : make_long(a);
    return k < 0 ? k : static_cast<int>(kind_long);
}

int truth_value(Item& item, bool& truth) {
    if (item.kind == kind_string) {
        truth = item_text(item)[0] != 0;
        return 0;
    }
    if (item.kind == kind_numeric_text) {
        const int k = make_numeric(item);
        if (k < 0) return k;
    }
    if (item.kind == kind_double) {
        truth = item.number != 0.0;
        return 0;
    }
    if (item.kind == kind_long) {
        truth = !long_is_zero(long_at(item.word));
        return 0;
    }
    return fail(err_invalid_logical_expression, item);
}

}  // namespace tl
