// arrays.cpp — the Array Table: DIM, element addressing and ERASE.
#include "exec/arrays.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "exec/front_end.h"
#include "exec/variables.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/lang_state.h"
#include "longmath/long_space.h"

namespace tl {

ArrayEntry* find_array(std::string_view name) {
    for (std::uint32_t i = 0; i < areas.array_count; ++i) {
        if (names_equal(name, array_name(areas.arrays[i]))) return &areas.arrays[i];
    }
    return nullptr;
}

void release_array_elements(ArrayEntry& a) {
    if (a.elements == nullptr) return;
    if (a.type == 14) {
        const std::size_t n = a.element_count();
        for (std::size_t i = 0; i < n; ++i) free_long_variable(a.words()[i]);
    }
    std::free(a.elements);
    a.elements = nullptr;
}

int dimension_array(std::string_view name, int count, const double* dims, bool declared_long) {
    if (count > max_array_dimensions) return report_error(err_too_many_dimensions_array);
    if (count < 1) return report_error(err_array_requires_at_least_one);
    if (areas.array_count >= areas.sizes[size_number_of_arrays]) return report_error(err_array_table_full);
    ByteArea& names = areas.array_names;
    if (names.used + name.size() >= names.size) return report_error(err_array_name_table_full);

    ArrayEntry& a = areas.arrays[areas.array_count];
    a = ArrayEntry{};
    a.name = names.used;
    std::memcpy(names.at(names.used), name.data(), name.size());
    *names.at(names.used + static_cast<std::uint32_t>(name.size())) = 0;
    names.used += static_cast<std::uint32_t>(name.size()) + 1;

    if (find_variable(name) >= 0) return report_error(err_array_same_name_as_variable);
    const bool dollar = !name.empty() && name.back() == '$';
    if (declared_long || (areas.long_default && !dollar)) {
        if (dollar) return report_error(err_long_name_ends_with_dollar);
        a.type = 14;
    } else {
        a.type = dollar ? 3u : 2u;
    }
    std::size_t elements = 1;
    for (int i = 0; i < count; ++i) {
        if (!(dims[i] >= 1.0) || dims[i] >= 2147483648.0) return report_error(err_array_dimension_numeric_1);
        a.sizes[i] = static_cast<std::int32_t>(dims[i]);
        elements *= static_cast<std::size_t>(a.sizes[i]);
        if (elements > (std::size_t{1} << 31)) return report_error(err_unable_allocate_array_storage);
    }
    a.dimensions = count;
    const std::size_t width = a.type == 2 ? 8 : 4;
    a.elements = std::calloc(elements, width);
    if (a.elements == nullptr) return report_error(err_unable_allocate_array_storage);
    ++areas.array_count;
    return static_cast<int>(a.type);
}

namespace {

/// "name(s1,s2,...)" when every subscript prints as an int and the whole fits
/// in `size`: the text the general form below gives, without printf.
bool format_int_reference(const ArrayEntry& a, int count, const double* subscripts, char* out, std::size_t size) {
    const char* name = array_name(a);
    const std::size_t length = std::strlen(name);
    if (length + 2 + static_cast<std::size_t>(count) * 12 + 1 > size) return false;
    for (int i = 0; i < count; ++i) {
        if (!(subscripts[i] > -2147483648.0 && subscripts[i] < 2147483648.0)) return false;
    }
    std::memcpy(out, name, length);
    char* p = out + length;
    *p++ = '(';
    for (int i = 0; i < count; ++i) {
        if (i > 0) *p++ = ',';
        p = std::to_chars(p, out + size, static_cast<int>(subscripts[i])).ptr;
    }
    *p++ = ')';
    *p = 0;
    return true;
}

}  // namespace

void format_element_reference(const ArrayEntry& a, int count, const double* subscripts, char* out, std::size_t size) {
    if (format_int_reference(a, count, subscripts, out, size)) return;
    int n = std::snprintf(out, size, "%s(", array_name(a));
    for (int i = 0; i < count && n > 0 && static_cast<std::size_t>(n) < size; ++i) {
        const double v = subscripts[i];
        const bool fits_int = v > -2147483648.0 && v < 2147483648.0;
        if (i > 0) n += std::snprintf(out + n, size - static_cast<std::size_t>(n), ",");
        if (fits_int) {
            n += std::snprintf(out + n, size - static_cast<std::size_t>(n), "%d", static_cast<int>(v));
        } else {
            n += std::snprintf(out + n, size - static_cast<std::size_t>(n), "%g", v);
        }
    }
    if (n > 0 && static_cast<std::size_t>(n) + 1 < size) {
        out[n] = ')';
        out[n + 1] = 0;
    }
}

std::int64_t address_element(const ArrayEntry& a, int count, const double* subscripts, const int* columns) {
    char reference[160];
    if (count != a.dimensions) {
        format_element_reference(a, count, subscripts, reference, sizeof reference);
        console_print("\n%s\n", reference);
        return report_error(err_incorrect_number_subscripts);
    }
    std::int64_t offset = 0;
    for (int i = 0; i < count; ++i) {
        const double s = subscripts[i];
        if (!(s >= 0.0 && s < static_cast<double>(a.sizes[i]))) {
            format_element_reference(a, count, subscripts, reference, sizeof reference);
            console_print("\n%s\n", reference);
            if (columns != nullptr) lang.reporter.error_column = columns[i];
            return report_error(err_subscript_out_range_invalid);
        }
        offset = offset * a.sizes[i] + static_cast<std::int64_t>(s);
    }
    return offset;
}

void erase_array(std::string_view name) {
    std::uint32_t i = 0;
    while (i < areas.array_count) {
        ArrayEntry& a = areas.arrays[i];
        const char* n = array_name(a);
        if (std::strlen(n) == name.size() && std::memcmp(n, name.data(), name.size()) == 0) {
            release_array_elements(a);
            for (std::uint32_t j = i + 1; j < areas.array_count; ++j) areas.arrays[j - 1] = areas.arrays[j];
            --areas.array_count;
            ++areas.name_tables_generation;
            areas.arrays[areas.array_count] = ArrayEntry{};
        } else {
            ++i;
        }
    }
}

}  // namespace tl
