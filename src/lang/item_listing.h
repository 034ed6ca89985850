// item_listing.h — debug listings of Item tables and parameter lists.
//
// Callers print only while the debug state (lang.reporter.debug) is on.
#pragma once

#include "lang/item.h"

namespace tl {

/// Indentation for the current evaluation depth (two blanks a level).
[[nodiscard]] const char* listing_indent();

/// "\n<indent><n> Item(s) in Table[ after <label>]:\n" and one line per Item.
/// `label` null: the table as collected, before any pass.
void list_item_table(const Item* items, int count, const char* label);

/// The parameter list of a function call (`array` false) or the subscripts of
/// an array element (`array` true).
void list_parameter_list(const Item* items, int count, bool array, const char* name);

/// The data list of INPUT.
void list_input_data(const Item* items, int count);

}  // namespace tl
