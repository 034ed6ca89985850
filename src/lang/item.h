// item.h — the Item record: one scanned element of a statement, and the kind codes.
#pragma once

#include <cstdint>

namespace tl {

struct ArrayEntry;

// ORDER: the kind codes are fixed; they double as the value types of variables
// and arrays (2 double, 3 string, 14 LONGMATH). 8, 9, 17, 18, 21 and 22 are
// never Item kinds.
enum ItemKind : std::uint32_t {
    kind_none = 0,
    kind_integer = 1,
    kind_double = 2,
    kind_string = 3,
    kind_operator = 4,
    kind_function = 5,
    kind_logical = 6,
    kind_statement = 7,
    kind_comparison = 10,
    kind_predefined = 11,
    kind_command = 12,
    kind_string_array = 13,
    kind_long = 14,
    kind_special_function = 15,
    kind_numeric_text = 16,
    kind_argument = 19,
    kind_double_array = 20,
    kind_long_array = 23,
};

// Extra return codes of the scanner in statement position and name-only modes.
inline constexpr int scan_number_constant = 8;
inline constexpr int scan_string_constant = 9;
inline constexpr int scan_name = 18;

/// One scanned element of a statement.
struct Item {
    /// kind 2: the double. Other kinds use `word`.
    double number = 0.0;
    /// Table slot (kinds 5, 6, 7, 10, 11, 12, 15), the operator character
    /// (kind 4), the text offset in temporary string space (kinds 3, 16), or
    /// the reference of its temporary long number (kind 14).
    std::uint32_t word = 0;
    std::uint32_t kind = kind_none;
    /// Offset of the Item's first character from the statement start (for carets).
    std::int32_t column = 0;
    /// Kind 16 only: `number` already holds the double that make_numeric
    /// would read from the text (set for number constants met before).
    bool number_known = false;
    /// Array-table entry for kinds 13, 20 and 23; null otherwise.
    ArrayEntry* array = nullptr;
    /// Carried along; zero unless a consumer needs it.
    std::uint32_t extra = 0;
};

}  // namespace tl
