// scan_names.h — the scanner's handling of names: look-up order, variables,
// array elements, function calls and the indirect name "@(...)".
// Internal to the scanner (scanner.cpp, scan_names.cpp, parameter_list.cpp).
#pragma once

#include <string_view>

#include "lang/item.h"

namespace tl {

struct ArrayEntry;
struct NameCacheEntry;

inline constexpr int max_name_chars = 60;

[[nodiscard]] inline bool is_name_char(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$';
}

/// Statement keywords that are also functions: outside statement position the
/// function of the same name is found instead.
[[nodiscard]] bool is_shared_with_function(int slot);

/// Sets the error column and reports `number`; returns its negation.
[[nodiscard]] int scan_error(int number, int column);

/// Step 10 of get_item for a name already read (the scan position is after
/// it); `entry` is its name-cache entry if the caller has it.
[[nodiscard]] int scan_name_item(Item& item, int mode, std::string_view name, NameCacheEntry* entry = nullptr);

/// A variable found at `index` of the Variable Table: its value as get_item
/// gives it (kinds 2, 3, 14), with the value reference set.
[[nodiscard]] int fetch_variable(Item& item, int index, int mode);

/// An element of array `a` (null while passing over or checking a
/// definition: a dummy of the type the name gives), its subscript list at
/// the scan position.
[[nodiscard]] int scan_element_item(Item& item, int mode, std::string_view name, ArrayEntry* a);

/// "@(expression)": the name is read from the string value of the expression.
[[nodiscard]] int scan_indirect_name(Item& item, int mode);

}  // namespace tl
