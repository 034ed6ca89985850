// memory_areas.h — the fixed run-time memory areas, allocated once at start-up.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "exec/sizing_settings.h"

namespace tl {

/// One scalar variable. `value` is a double (type 2), or its first word is a
/// String Space offset (type 3, 0 = empty) or a long-number reference (type 14).
struct VariableEntry {
    std::uint32_t name = 0;  ///< offset in the Variable Name Space
    std::uint32_t type = 0;  ///< 2, 3 or 14
    union {
        double number;
        std::uint32_t word;
    } value{0.0};
};

inline constexpr int max_array_dimensions = 6;

/// One array: elements in row-major order, 8 bytes (double) or 4 bytes (a
/// String Space offset or a long-number reference) each.
struct ArrayEntry {
    std::uint32_t name = 0;  ///< offset in the Array Name Space
    std::uint32_t type = 0;  ///< 2, 3 or 14
    std::int32_t dimensions = 0;
    std::int32_t sizes[max_array_dimensions] = {0, 0, 0, 0, 0, 0};
    void* elements = nullptr;  ///< separately allocated, zero-filled

    std::size_t element_count() const;
    double* doubles() const { return static_cast<double*>(elements); }
    std::uint32_t* words() const { return static_cast<std::uint32_t*>(elements); }
};

/// A byte area with a bump pointer and a capacity.
struct ByteArea {
    std::unique_ptr<char[]> data;
    std::uint32_t size = 0;
    std::uint32_t used = 0;  ///< next free offset (name spaces: bytes used)
    char* at(std::uint32_t offset) const { return data.get() + offset; }
};

/// One entry of the File Table; its fields belong to the file statements.
struct FileEntry {
    std::uint32_t open = 0;  ///< 0 while closed
    std::uint32_t record_width = 0;
    std::vector<char> line;  ///< the output line being built
    std::uint32_t column = 0;
};

struct StatementNumberEntry {
    std::uint32_t number = 0;
    std::uint32_t program_offset = 0;
    std::uint32_t loop_offset = 0;
    std::uint32_t loop_statement_offset = 0;
};

struct DataStatementEntry {
    std::uint32_t number = 0;
    std::uint32_t program_offset = 0;
    std::uint32_t data_offset = 0;
    std::uint32_t data_length = 0;
};

/// All memory areas of the interpreter.
struct MemoryAreas {
    SizingValues sizes;

    std::unique_ptr<VariableEntry[]> variables;
    std::uint32_t variable_count = 0;
    ByteArea variable_names;

    std::unique_ptr<ArrayEntry[]> arrays;
    std::uint32_t array_count = 0;
    ByteArea array_names;

    ByteArea strings;       ///< used = next free, starts at 1
    ByteArea temp_strings;  ///< used = next free, starts at 1
    std::uint32_t temp_high_water = 1;

    std::vector<FileEntry> files;  ///< NumberOfFiles + 2 entries

    std::unique_ptr<DataStatementEntry[]> data_statements;  ///< one more than the setting
    std::uint32_t data_statement_count = 0;
    std::unique_ptr<StatementNumberEntry[]> statement_numbers;
    std::uint32_t statement_number_count = 0;

    std::unique_ptr<char[]> program;  ///< kept across re-initialisation
    std::uint32_t program_size = 0;
    std::uint32_t program_length = 0;

    /// Scan-only mode: creating a variable only learns its type.
    bool scan_only = false;
    /// The mode in which new numeric variables are LONGMATH.
    bool long_default = false;
    /// The variable-table entry or array element last made the assignment target.
    void* assignment_target = nullptr;

    /// Failure injection for tests: the allocation with this number (0 = the
    /// Variable Table ... 11 = the Program Buffer) fails; -1 for none.
    int fail_allocation = -1;
};

extern MemoryAreas areas;

/// Allocates every area from `sizes` in the fixed order (Variable Table, its
/// names, Array Table, its names, String Space, Temporary String Space, the two
/// long-number spaces, File Table, Data Statement Table, Statement Number
/// Table, Program Buffer). The Program Buffer is kept when it exists. The
/// first failure is reported and its negated number returned; else 0.
[[nodiscard]] int init_memory_areas(const SizingValues& sizes);

/// CLEAR: frees every array, empties the variable and array tables, their
/// name spaces, String Space, Temporary String Space and the Long Number Space.
void clear_memory();

/// Prints the lines of PRINTALL "memory".
void print_memory_report();

/// Name of a variable or array entry.
const char* variable_name(const VariableEntry& v);
const char* array_name(const ArrayEntry& a);

}  // namespace tl
