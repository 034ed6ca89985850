// named_variables.h — numeric BASIC variables read and written by name from
// inside the interpreter (tuning values and timings of the long algorithms).
#pragma once

#include <string_view>

namespace tl {

/// The value of the double variable `name`; 0 when it is missing or not a
/// double. A name of the form "base(k)" reads element k of the one-dimensional
/// double array `base` (0 when there is no such element). Never creates anything.
[[nodiscard]] double named_double(std::string_view name);

/// Stores `v` into the double variable `name`, creating it when missing. A
/// name "base(k)" writes element k of an existing one-dimensional double
/// array `base`; arrays are never created. Does nothing, silently, when the
/// variable tables are full, the name exists with another type, or while
/// statements are only being scanned.
void set_named_double(std::string_view name, double v);

}  // namespace tl
