// arrays.h — dimensioning, addressing and erasing arrays.
#pragma once

#include <cstdint>
#include <string_view>

#include "exec/memory_areas.h"

namespace tl {

/// The first array named `name` (letter case ignored), or null.
[[nodiscard]] ArrayEntry* find_array(std::string_view name);

/// Dimensions a new array with `count` dimension values (n gives elements
/// 0..n-1; fractions are truncated). Type as for variables; `declared_long`
/// makes it LONGMATH. Returns the type or a reported, negated error
/// (89, 90, 163, 91, 270, 248, 92, 93).
[[nodiscard]] int dimension_array(std::string_view name, int count, const double* dims, bool declared_long);

/// Element offset for `count` subscripts, each tested as a double before
/// truncation (0 <= s < size). On failure prints the reference with its
/// subscripts, sets the error column to `columns[i]` of the failing subscript
/// (when columns is given) and reports 72 or 70; returns the negated number.
[[nodiscard]] std::int64_t address_element(const ArrayEntry& a, int count, const double* subscripts,
                                           const int* columns = nullptr);

/// ERASE: removes every array whose name equals `name` exactly (letter case counts).
void erase_array(std::string_view name);

/// Frees an array's elements (LONGMATH elements go back to the long space).
void release_array_elements(ArrayEntry& a);

/// Writes "name(s1,s2,...)" of an element reference into `out` (at least 128 bytes).
void format_element_reference(const ArrayEntry& a, int count, const double* subscripts, char* out, std::size_t size);

}  // namespace tl
