// user_functions.h — the table of user-defined functions (DEF) as the scanner sees it.
//
// The DEF statement fills the table during the check pass; the scanner only
// looks names up in it. While the table is empty, no name is a user function.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tl {

inline constexpr int max_user_functions = 40;
inline constexpr int max_function_arguments = 7;
inline constexpr int max_function_name = 60;

struct UserFunction {
    char name[max_function_name + 1] = {};
    int argument_count = 0;
    char arguments[max_function_arguments][max_function_name + 1] = {};
    /// Where the defining expression starts in the program text, and the
    /// statement that holds it (for error echoes during a call).
    std::uint32_t body_offset = 0;
    std::uint32_t statement_offset = 0;
    /// A body of program lines ("DEF name(args)" ... "DEF END") instead of
    /// one expression: `body_offset` is then the line after the header and
    /// `end_offset` the line after "DEF END" (0 until the check pass reaches it).
    bool multi_line = false;
    std::uint32_t end_offset = 0;
};

/// Calls of user-defined functions may nest this deep.
inline constexpr int max_function_nesting = 199;

struct UserFunctionTable {
    std::array<UserFunction, max_user_functions> entries{};
    int count = 0;
    /// Raised whenever the table is emptied or a definition is added; cached
    /// look-ups check it.
    std::uint32_t generation = 0;
    /// Calls in progress (nested through their arguments and bodies).
    int call_depth = 0;
    /// The multi-line definition whose body the check pass is in, or -1.
    int open_definition = -1;
};

/// Empties the table.
void clear_user_functions();

/// Index of the definition named `name` (letter case ignored), or -1.
[[nodiscard]] int find_user_function(std::string_view name);

/// Index of `name` among the arguments of definition `function`, or -1.
[[nodiscard]] int find_function_argument(int function, std::string_view name);

/// Appends a definition (no checks beyond capacity and name length); returns
/// its index or -1 when the table is full. The DEF statement adds its own
/// checks and messages (202, 203, 214).
[[nodiscard]] int add_user_function(std::string_view name, const std::string_view* arguments, int count);

}  // namespace tl
