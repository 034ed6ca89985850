// memory_areas.cpp — allocation of the memory areas, CLEAR and the memory report.
#include "exec/memory_areas.h"
#include "exec/file_table.h"

#include <cstdlib>

#include <cstring>
#include <new>

#include "exec/arrays.h"
#include "exec/front_end.h"
#include "exec/program_store.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "longmath/long_space.h"

namespace tl {

MemoryAreas areas;

namespace {

// ORDER: allocation order of the areas; the index is used by fail_allocation.
enum AreaStep : int {
    step_variable_table,
    step_variable_names,
    step_array_table,
    step_array_names,
    step_string_space,
    step_temp_strings,
    step_long_space,
    step_temp_long_space,
    step_file_table,
    step_data_statements,
    step_statement_numbers,
    step_program_buffer,
};

bool injected_failure(int step) { return areas.fail_allocation == step; }

}  // namespace

void FreeBytes::operator()(char* p) const { std::free(p); }

namespace {

template <typename T>
std::unique_ptr<T[]> allocate(std::size_t count, int step) {
    if (injected_failure(step)) return nullptr;
    return std::unique_ptr<T[]>(new (std::nothrow) T[count]());
}

bool allocate_bytes(ByteArea& area, std::uint32_t size, int step, std::uint32_t first_free) {
    // calloc, not new char[]() with its memset: the zeros of a fresh large
    // block cost nothing until the pages are used.
    area.data.reset(injected_failure(step) ? nullptr : static_cast<char*>(std::calloc(size, 1)));
    if (!area.data) return false;
    area.size = size;
    area.used = first_free;
    return true;
}

void free_arrays() {
    for (std::uint32_t i = 0; i < areas.array_count; ++i) release_array_elements(areas.arrays[i]);
    areas.array_count = 0;
    ++areas.name_tables_generation;
}

}  // namespace

std::size_t ArrayEntry::element_count() const {
    std::size_t n = 1;
    for (int i = 0; i < dimensions; ++i) n *= static_cast<std::size_t>(sizes[i]);
    return n;
}

int init_memory_areas(const SizingValues& sizes) {
    if (areas.arrays) free_arrays();
    areas.sizes = sizes;
    areas.variable_count = 0;
    areas.array_count = 0;
    ++areas.name_tables_generation;
    areas.temp_high_water = 1;
    areas.data_statement_count = 0;
    areas.statement_number_count = 0;
    ++areas.statement_numbers_generation;
    areas.scan_only = false;
    areas.long_default = false;
    areas.assignment_target = nullptr;

    areas.variables = allocate<VariableEntry>(sizes[size_num_variables], step_variable_table);
    if (!areas.variables) return report_error(err_unable_allocate_storage_variable_table);
    if (!allocate_bytes(areas.variable_names, sizes[size_variable_name_space], step_variable_names, 0))
        return report_error(err_unable_allocate_storage_variable_names);
    areas.arrays = allocate<ArrayEntry>(sizes[size_number_of_arrays], step_array_table);
    if (!areas.arrays) return report_error(err_unable_allocate_storage_array_table);
    if (!allocate_bytes(areas.array_names, sizes[size_array_name_space], step_array_names, 0))
        return report_error(err_unable_allocate_storage_array_names);
    if (!allocate_bytes(areas.strings, sizes[size_string_space], step_string_space, 1))
        return report_error(err_unable_allocate_storage_string_variables);
    if (!allocate_bytes(areas.temp_strings, sizes[size_temp_string_space], step_temp_strings, 1))
        return report_error(err_unable_allocate_storage_temporary_strings);
    if (int rc = init_long_spaces(sizes[size_long_number_space], sizes[size_temp_long_number_space],
                                  injected_failure(step_long_space), injected_failure(step_temp_long_space));
        rc < 0)
        return rc;
    if (injected_failure(step_file_table)) return report_error(err_unable_allocate_storage_file_table);
    close_all_files();
    areas.files.assign(sizes[size_number_of_files] + 2, FileEntry{});
    areas.files.front().width = 80;  // the console line; the others keep 255
    areas.data_statements = allocate<DataStatementEntry>(sizes[size_number_of_data_statements] + 1, step_data_statements);
    if (!areas.data_statements) return report_error(err_unable_allocate_storage_data_statement);
    areas.statement_numbers = allocate<StatementNumberEntry>(sizes[size_number_of_statement_numbers], step_statement_numbers);
    if (!areas.statement_numbers) return report_error(err_unable_allocate_storage_statement_number);
    if (!areas.program) {
        areas.program = allocate<char>(sizes[size_program_buffer_space] + 1u, step_program_buffer);
        if (!areas.program) return report_error(err_none);
        areas.program_size = sizes[size_program_buffer_space];
        areas.program_length = 0;
        program_text_changed(0);
    }
    return 0;
}

MemoryAreas::~MemoryAreas() {
    for (std::uint32_t i = 0; arrays && i < array_count; ++i) {
        std::free(arrays[i].elements);
        arrays[i].elements = nullptr;
    }
}

void clear_memory() {
    close_all_files();
    free_arrays();
    areas.array_names.used = 0;
    clear_long_space();
    areas.variable_count = 0;
    areas.variable_names.used = 0;
    ++areas.name_tables_generation;
    areas.strings.used = 1;
    areas.temp_strings.used = 1;
    areas.assignment_target = nullptr;
}

const char* variable_name(const VariableEntry& v) { return areas.variable_names.at(v.name); }
const char* array_name(const ArrayEntry& a) { return areas.array_names.at(a.name); }

void print_memory_report() {
    const SizingValues& s = areas.sizes;
    console_print("Variables         Used:  %5u, max: %7u\n", areas.variable_count, s[size_num_variables]);
    console_print("Var.  Name  Space Used:  %5u, max: %7u\n", areas.variable_names.used, areas.variable_names.size);
    console_print("Arrays            Used:  %5u, max: %7u\n", areas.array_count, s[size_number_of_arrays]);
    console_print("Array Name  Space Used:  %5u, max: %7u\n", areas.array_names.used, areas.array_names.size);
    console_print("String      Space Used:  %5u, max: %7u\n", areas.strings.used, areas.strings.size);
    console_print("Temp String Space Used:  %5u, max: %7u\n", areas.temp_high_water, areas.temp_strings.size);
    console_print("Next Temp String offset: %5u  (should be 1) \n", areas.temp_strings.used);
    areas.temp_high_water = 1;
    console_print("Long Number Space Used:  %5u, max: %7u\n", long_space_used_bytes(), long_space_size_bytes());
    console_print("Temp Long # Space Used:  %5u, max: %7u\n", temp_long_used_bytes(), temp_long_size_bytes());
    console_print("Next Temp Long# Offset:  %5u  (should be 0) \n", temp_long_next_offset());
    reset_temp_long_high_water();
    std::uint32_t open = 0;
    for (std::size_t i = 1; i + 1 < areas.files.size(); ++i) open += areas.files[i].open != 0 ? 1u : 0u;
    console_print("Files used            :  %5u, max: %7u\n", open, s[size_number_of_files]);
    console_print("Files currently open  :  %5u\n", open);
    console_print("Statement Numbers Used:  %5u, max: %7u\n", areas.statement_number_count, s[size_number_of_statement_numbers]);
    console_print("Data Statements Used  :  %5u, max: %7u\n", areas.data_statement_count, s[size_number_of_data_statements]);
    console_print("Program Space     Used:  %5u, max: %7u\n", areas.program_length, areas.program_size);
}

}  // namespace tl
