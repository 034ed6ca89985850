// user_function_call.h — the handler of function slot 41: calls of user-defined functions.
#pragma once

#include "lang/item.h"

namespace tl {

/// Calls the definition lang.scan.called_function with the evaluated
/// arguments. Returns the result kind (2, 3, 14 or 16; the value where
/// do_function leaves it) or a negated error: 145 and 144/146 for wrong
/// arguments, 216 beyond the nesting limit, and for a failure inside the
/// body the body's error followed by 200 at the outermost call.
[[nodiscard]] int fn_user_function_handler(Item* params, int count);

/// The kind of the called function's value while a call is only checked:
/// 3 for a name ending in "$", else 2.
[[nodiscard]] int user_function_result_kind();

}  // namespace tl
