// builtin_functions.h — do_function and do_special_function: the builtin functions.
#pragma once

#include "lang/item.h"

namespace tl {

/// Computes builtin function `slot` (0..56 of the function table; 41 calls the
/// user-defined function lang.scan.called_function) from its evaluated
/// parameters. `has_list` is false when the name had no parameter list.
/// The caller sets the error column to the function name first.
/// Returns the result kind — 2 (lang.scan.result), 3 or 16 (lang.scan.buffer),
/// 14 (long_state.work) — or a negated error number (already reported); a
/// slot above 56 returns -1 unreported.
[[nodiscard]] int do_function(int slot, Item* params, int count, bool has_list);

/// Computes special function `slot` (0..12), which takes no parameters.
/// Results as do_function.
[[nodiscard]] int do_special_function(int slot);

}  // namespace tl
