// expression_passes.h — the seven reduction passes of the evaluator (internal).
#pragma once

#include "lang/evaluator.h"
#include "lang/item.h"

namespace tl {

struct ItemTable {
    Item items[max_expression_items + 1];
    int count = 0;
    /// Where the expression's text ends (before the Item or separator that ended it).
    const char* text_end = nullptr;
};

/// Reduces the table in the seven passes (listing it after each pass in the
/// debug state). Returns 0 or a negated, reported error.
[[nodiscard]] int reduce_expression(ItemTable& table);

}  // namespace tl
