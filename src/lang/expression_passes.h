// expression_passes.h — the seven reduction passes of the evaluator (internal).
#pragma once

#include "lang/evaluator.h"
#include "lang/item.h"

namespace tl {

struct ItemTable {
    // The Items are not set up when the table is made (an evaluation makes one
    // for every expression): only items[0, count) are ever read, and get_item
    // sets up each Item it fills.
    ItemTable() {}
    union {
        Item items[max_expression_items + 1];
    };
    int count = 0;
    /// Where the expression's text ends (before the Item or separator that ended it).
    const char* text_end = nullptr;
};

/// The order of two values that have none: a NaN against anything.
constexpr int order_unordered = 2;

/// -1, 0 or 1 as `a` is below, equal to or above `b`; order_unordered when
/// either is a NaN.
[[nodiscard]] constexpr int double_order(double a, double b) {
    return a < b ? -1 : (a > b ? 1 : (a == b ? 0 : order_unordered));
}

/// Whether a comparison of slot `slot` (cmp_eq ... cmp_ne) holds for an
/// order of -1, 0 or 1, or order_unordered (then only "<>" holds).
[[nodiscard]] bool comparison_holds(int slot, int order);

/// Reduces the table in the seven passes (listing it after each pass in the
/// debug state). Returns 0 or a negated, reported error.
[[nodiscard]] int reduce_expression(ItemTable& table);

}  // namespace tl
