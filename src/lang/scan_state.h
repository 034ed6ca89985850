// scan_state.h — the scanner's process-wide state: where the statement is, what was scanned last.
#pragma once

#include <cstdint>

#include "lang/item.h"

namespace tl {

inline constexpr int scan_buffer_size = 256;
/// A name of up to 60 characters, or an element reference "name(s1,s2,...)".
inline constexpr int name_buffer_size = 160;

/// Where a fetched value lives, in the same encoding as an Item's `array` and
/// `extra` fields: a simple variable (array null, word = variable index + 1),
/// an array element (array set, word = element offset + 1) or a whole array
/// (array set, word 0). All null/zero: no reference.
struct ValueReference {
    ArrayEntry* array = nullptr;
    std::uint32_t word = 0;
    bool empty() const { return array == nullptr && word == 0; }
};

/// The arguments of the user-defined function call being evaluated.
struct FunctionCallFrame {
    int function = -1;              ///< index in the user-function table
    const Item* arguments = nullptr;  ///< evaluated values (kinds 2, 3, 14, 16)
    int argument_count = 0;
};

struct ScanState {
    /// Next character to scan, one past the statement's last character, and
    /// the statement's first character (Item columns count from it).
    const char* position = nullptr;
    const char* end = nullptr;
    const char* start = nullptr;
    /// Text of the last string constant, number constant or string value.
    char buffer[scan_buffer_size] = {};
    /// The last name scanned (or element reference), for traces and errors;
    /// read it through scan_name_text(), which writes an element reference
    /// into it when it is first wanted.
    char name[name_buffer_size] = {};
    /// The element last fetched, while its reference is not yet in `name`.
    const ArrayEntry* name_element = nullptr;
    int name_subscript_count = 0;
    double name_subscripts[8] = {};
    /// Depth of nested evaluations; selects the indentation of debug listings.
    int depth = 0;
    /// Storage of the value last fetched (variable value or array element).
    void* value_ref = nullptr;
    /// The last double produced.
    double result = 0.0;
    /// When the last evaluation gave a number constant: a copy of its text
    /// and its double (empty text otherwise). See known_number_text.
    char constant_text[24] = {};
    double constant_value = 0.0;
    /// What ended the last get_item that returned 0: ')', ',', ';', ':' or 0 (end of text).
    char terminator = 0;
    /// Write-back reference of the last evaluated expression when it was one
    /// string variable or one array name; empty otherwise.
    ValueReference sole_reference;
    /// Index of the user-defined function that slot 41 is to call.
    int called_function = -1;
    /// The checking pass of a DEF: names give dummy values, functions dummy results.
    bool defining_function = false;
    /// A user-defined function's body is being evaluated: its argument names
    /// scan as kind 19 with the values in `call`.
    bool evaluating_function = false;
    FunctionCallFrame call;
    /// Set by the PRINT statement while its items are evaluated (TAB is valid).
    bool in_print = false;
    /// The statement is passed over (skip mode or the check pass): values are
    /// scanned for their syntax and type only, and no value-dependent error
    /// (division by zero, a subscript out of range, a function's domain) is raised.
    bool skipping = false;
    /// Math-error indicator: a division went ahead under "matherrok".
    bool math_error = false;
};

}  // namespace tl
