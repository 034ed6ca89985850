// memory_areas.h — the fixed run-time memory areas, allocated once at start-up.
#pragma once

#include <cstddef>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
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

/// Gives back memory taken with std::calloc.
struct FreeBytes {
    void operator()(char* p) const;
};

/// A byte area with a bump pointer and a capacity. Its bytes start as zeros;
/// a large area takes pages from the system only as they are first written.
struct ByteArea {
    std::unique_ptr<char[], FreeBytes> data;
    std::uint32_t size = 0;
    std::uint32_t used = 0;  ///< next free offset (name spaces: bytes used)
    char* at(std::uint32_t offset) const { return data.get() + offset; }
};

// ORDER: file modes. The output line treats RANDOM, SERIAL and BINARY
// specially; the sequential modes and the console (0) behave alike.
enum FileMode : std::uint32_t {
    file_mode_input = 1,
    file_mode_random = 2,  ///< the line is the record buffer
    file_mode_output = 3,
    file_mode_serial = 4,
    file_mode_append = 5,
    file_mode_binary = 6,
};

/// One variable of a FIELD statement: `width` characters of the record from
/// `offset` on belong to the string variable whose offset word is `word`.
struct FieldEntry {
    std::uint32_t* word = nullptr;
    std::uint32_t offset = 0;
    std::uint32_t width = 0;
};

/// Capacity of an output line buffer: a line of up to 255 characters or a
/// RANDOM record of up to line_buffer_size - 1 characters, plus a NUL.
inline constexpr std::size_t line_buffer_size = 512;

struct FileEntry;

/// Takes a finished piece of an output line for a file that is not written
/// through `stream` (a serial port). Returns 0, or a negated error number that
/// it has already reported.
using LineSink = int (*)(FileEntry& entry, const char* text, std::size_t length);

/// One entry of the File Table (entry 0 is the console). The file statements
/// own `open`, `mode`, `width`, `stream` and `sink`; the output line fields
/// below belong to PRINT and WRITE (exec/output_line.h).
struct FileEntry {
    std::uint32_t open = 0;  ///< 0 while closed
    std::uint32_t mode = 0;  ///< FileMode, or a sequential mode
    /// Line or record width: 80 for the console, the record length for RANDOM
    /// and SERIAL files (at most line_buffer_size - 1), 255 otherwise.
    std::uint32_t width = 255;
    /// Where finished lines of a sequential file go; null when closed.
    std::FILE* stream = nullptr;
    /// When set, finished lines go here instead of `stream`.
    LineSink sink = nullptr;

    /// Set when the last item ended with ";" or a TAB position is pending: the
    /// next item is not moved to the next print zone and the line stays open.
    bool continue_line = false;
    std::uint32_t column = 0;     ///< characters on the line so far
    std::int32_t tab_target = -1; ///< 0-based column asked for by TAB, or -1
    std::uint32_t write_index = 0;///< where the next character goes in `line`
    std::uint32_t tab_width = 14; ///< print-zone width
    /// The part of the line not yet written out; for RANDOM files the record.
    char line[line_buffer_size] = {};

    // Owned by the file statements (exec/file_table.h).
    int fd = -1;                         ///< descriptor of a serial port
    std::uint32_t record_length = 0;     ///< RANDOM, SERIAL and BINARY files
    std::vector<char> record;            ///< RANDOM record; bytes received on a port
    std::vector<FieldEntry> fields;      ///< FIELD definitions of a RANDOM file
    std::string input;                   ///< the line INPUT # is reading
    std::size_t input_position = 0;      ///< next unread character of `input`
    bool input_loaded = false;           ///< `input` holds a line not used up
    bool skip_line_feed = false;         ///< a port's last record ended with CR
    bool skip_message = false;           ///< the rest of a port's too-long message is still coming
    bool pipe = false;                   ///< an INPUT file that is a pipe: reads wait without blocking
    char name[261] = {};                 ///< the name given to OPEN, for messages
};

struct StatementNumberEntry {
    std::uint32_t number = 0;
    std::uint32_t program_offset = 0;
    std::uint32_t loop_offset = 0;
    std::uint32_t loop_statement_offset = 0;
    /// The line lies inside a FOR or WHILE (a loop at the very start of the
    /// program has the identification 0, 0 too).
    bool in_loop = false;
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
    /// Raised whenever variable or array entries are removed or the tables
    /// start again (entries added show in the counts); cached look-ups check it.
    std::uint32_t name_tables_generation = 0;

    ByteArea strings;       ///< used = next free, starts at 1
    ByteArea temp_strings;  ///< used = next free, starts at 1
    std::uint32_t temp_high_water = 1;

    std::vector<FileEntry> files;  ///< NumberOfFiles + 2 entries

    std::unique_ptr<DataStatementEntry[]> data_statements;  ///< one more than the setting
    std::uint32_t data_statement_count = 0;
    std::unique_ptr<StatementNumberEntry[]> statement_numbers;
    std::uint32_t statement_number_count = 0;
    /// Raised whenever the Statement Number Table is emptied.
    std::uint32_t statement_numbers_generation = 0;
    /// Hash index of the Statement Number Table (entry + 1 per slot, 0 for an
    /// empty slot) over its first statement_index_count entries, built in
    /// generation statement_index_generation; see find_statement_entry.
    std::vector<std::int32_t> statement_index;
    std::uint32_t statement_index_count = 0;
    std::uint32_t statement_index_generation = 0;

    std::unique_ptr<char[]> program;  ///< kept across re-initialisation
    std::uint32_t program_size = 0;
    std::uint32_t program_length = 0;
    /// The program text with its line ends made NULs (program_image), up to
    /// date for [0, program_image_valid) and terminated at program_image_length.
    std::unique_ptr<char[]> program_image;
    std::uint32_t program_image_size = 0;
    std::uint32_t program_image_valid = 0;
    std::uint32_t program_image_length = 0;
    /// Raised whenever the program text changes; cached plans check it.
    std::uint32_t program_generation = 0;
    /// Lines split before, by offset (see next_line), in generation `generation`.
    struct LineCacheEntry {
        std::uint32_t key = 0;  ///< line offset + 1; 0: unused
        std::uint32_t generation = 0;
        std::uint32_t next = 0;
        std::uint32_t length = 0;
        std::uint32_t text_length = 0;
    };
    static constexpr std::size_t line_cache_size = 256;  // a power of two
    std::array<LineCacheEntry, line_cache_size> line_cache{};
    /// The start of a line too long to run, as its error report shows it.
    char long_line[256] = {};

    /// Scan-only mode: creating a variable only learns its type.
    bool scan_only = false;
    /// The mode in which new numeric variables are LONGMATH.
    bool long_default = false;
    /// The variable-table entry or array element last made the assignment target.
    void* assignment_target = nullptr;

    /// Failure injection for tests: the allocation with this number (0 = the
    /// Variable Table ... 11 = the Program Buffer) fails; -1 for none.
    int fail_allocation = -1;

    MemoryAreas() = default;
    MemoryAreas(MemoryAreas&&) = default;
    MemoryAreas& operator=(MemoryAreas&&) = default;
    /// Gives the array elements back at exit (they are not owned by the table).
    ~MemoryAreas();
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
