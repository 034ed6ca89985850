// predefined_variables.h — the fourteen names with start-up values that every program sees.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tl {

// ORDER: slots of the predefined-variable table.
enum : int {
    pre_pi = 0,
    pre_euler,
    pre_defaultprintformat,  // "defaultprintformat$$"
    pre_defaultprinttabs,
    pre_date,  // "date$"
    pre_time,  // "time$"
    pre_dayofweek,  // "dayofweek$"
    pre_floatingptlength,
    pre_printformatmax,  // "printformatmax$$"
    pre_defaultzerodatetime,
    pre_lastshapeid,
    pre_mousexcoord,
    pre_mouseycoord,
    pre_keystate,
    pre_count
};

/// One predefined variable: its type (2 double, 3 string) and value.
struct PredefinedVariable {
    std::uint32_t type = 2;
    double number = 0.0;
    std::array<char, 256> text{};  ///< NUL-terminated value of a string
};

using PredefinedTable = std::array<PredefinedVariable, pre_count>;

/// Name of slot `slot` (lower case), or "" when out of range.
const char* predefined_name(int slot);

/// Slot of `name`, compared without regard to letter case, or -1.
[[nodiscard]] int find_predefined(std::string_view name);

/// Gives every entry of `table` its start-up value.
void fill_predefined_variables(PredefinedTable& table);

/// Stores a string value (cut at 255 characters).
void set_predefined_text(PredefinedVariable& v, std::string_view text);

}  // namespace tl
