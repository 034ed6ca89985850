// variables.h — creating and finding scalar variables.
#pragma once

#include <cstdint>
#include <string_view>

#include "exec/memory_areas.h"

namespace tl {

inline constexpr int max_name_length = 60;

/// Index of the first variable named `name` (letter case ignored), or -1.
[[nodiscard]] int find_variable(std::string_view name);

/// Creates a variable at the end of the Variable Table and makes it the
/// assignment target. Its type: 14 when `declared_long` (a "$" ending is then
/// error 248), 3 for a "$" ending, else 2 (14 in the long-default mode).
/// In scan-only mode nothing is stored; only the type is returned.
/// Returns the type, or reports 97, 96 or 248 and returns the negated number.
[[nodiscard]] int create_variable(std::string_view name, bool declared_long);

/// The entry at `index`.
VariableEntry& variable_at(int index);

/// Case-blind name comparison used by every look-up.
[[nodiscard]] bool names_equal(std::string_view a, const char* b);

}  // namespace tl
