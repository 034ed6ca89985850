// sizing_settings.h — the fourteen sizing settings: names, defaults and limits.
//
// The shell reads the values from the user's settings; the core only sees
// the clamped numbers.
#pragma once

#include <array>
#include <cstdint>

namespace tl {

// ORDER: reading order of the sizing settings.
enum SizingIndex : int {
    size_screen_size = 0,
    size_variable_name_space,
    size_num_variables,
    size_array_name_space,
    size_number_of_arrays,
    size_string_space,
    size_temp_string_space,
    size_long_number_space,
    size_temp_long_number_space,
    size_number_of_files,
    size_number_of_statement_numbers,
    size_program_buffer_space,
    size_number_of_data_statements,
    size_console_buffer_size,
    sizing_count
};

struct SizingRecord {
    const char* value_name;  ///< name of the value in the settings
    const char* label;       ///< label in the Customize dialog
    std::uint32_t default_value;
    std::uint32_t minimum;
    std::uint32_t maximum;
};

// ORDER: must match SizingIndex.
inline constexpr std::array<SizingRecord, sizing_count> sizing_records = {{
    {"ScreenSize", "Screen Size", 1, 1, 2},
    {"VariableNameSpace", "Variable Name Space", 2000, 100, 60000},
    {"NumVariables", "Number of Variables", 200, 30, 1000},
    {"ArrayNameSpace", "Array Name Space", 1000, 100, 30000},
    {"NumberOfArrays", "Number of Arrays", 50, 20, 1000},
    {"StringSpace", "String Space", 65536, 1000, 4000000},
    {"TempStringSpace", "Temporary String Space", 8192, 4096, 32768},
    {"LongNumberSpace", "Long Number Space", 30000, 9000, 650000},
    {"TempLongNumberSpace", "Temp Long Number Space", 6000, 4500, 45000},
    {"NumberOfFiles", "Number of Files", 5, 2, 20},
    {"NumberOfStatementNumbers", "Number of Statement Numbers", 1000, 20, 20000},
    {"ProgramBufferSpace", "Program Buffer Space", 65536, 4096, 1048576},
    {"NumberOfDataStatements", "Number of Data Statements", 500, 50, 5000},
    {"ConsoleBufferSize", "Console Buffer Size", 32768, 4096, 65536},
}};

/// Current sizing values, indexed by SizingIndex.
struct SizingValues {
    std::array<std::uint32_t, sizing_count> value{};
    std::uint32_t operator[](SizingIndex i) const { return value[static_cast<std::size_t>(i)]; }
    bool operator==(const SizingValues&) const = default;
};

/// A value outside [minimum, maximum] (a missing value reads as 0) becomes the default.
[[nodiscard]] constexpr std::uint32_t clamp_sizing(SizingIndex i, std::uint32_t v) {
    const SizingRecord& r = sizing_records[static_cast<std::size_t>(i)];
    return (v < r.minimum || v > r.maximum) ? r.default_value : v;
}

/// Every value at its default.
[[nodiscard]] constexpr SizingValues default_sizing() {
    SizingValues s;
    for (int i = 0; i < sizing_count; ++i) s.value[static_cast<std::size_t>(i)] = sizing_records[static_cast<std::size_t>(i)].default_value;
    return s;
}

}  // namespace tl
