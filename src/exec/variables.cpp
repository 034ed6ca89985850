// variables.cpp — the Variable Table: linear look-up and creation.
#include "exec/variables.h"

#include <cstring>

#include "lang/error_reporter.h"
#include "lang/error_table.h"

namespace tl {

bool names_equal(std::string_view a, const char* b) {
    std::size_t i = 0;
    for (; i < a.size(); ++i) {
        unsigned char x = static_cast<unsigned char>(a[i]);
        unsigned char y = static_cast<unsigned char>(b[i]);
        if (y == 0) return false;
        if (x >= 'A' && x <= 'Z') x = static_cast<unsigned char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z') y = static_cast<unsigned char>(y - 'A' + 'a');
        if (x != y) return false;
    }
    return b[i] == 0;
}

int find_variable(std::string_view name) {
    for (std::uint32_t i = 0; i < areas.variable_count; ++i) {
        if (names_equal(name, variable_name(areas.variables[i]))) return static_cast<int>(i);
    }
    return -1;
}

VariableEntry& variable_at(int index) { return areas.variables[index]; }

int create_variable(std::string_view name, bool declared_long) {
    if (areas.variable_count >= areas.sizes[size_num_variables]) return report_error(err_variable_table_full);
    ByteArea& names = areas.variable_names;
    if (names.used + name.size() >= names.size) return report_error(err_variable_name_table_full);
    const bool dollar = !name.empty() && name.back() == '$';
    std::uint32_t type;
    if (declared_long) {
        if (dollar) return report_error(err_long_name_ends_with_dollar);
        type = 14;
    } else if (dollar) {
        type = 3;
    } else {
        type = areas.long_default ? 14u : 2u;
    }
    if (areas.scan_only) return static_cast<int>(type);
    VariableEntry& v = areas.variables[areas.variable_count++];
    v.name = names.used;
    std::memcpy(names.at(names.used), name.data(), name.size());
    *names.at(names.used + static_cast<std::uint32_t>(name.size())) = 0;
    names.used += static_cast<std::uint32_t>(name.size()) + 1;
    v.type = type;
    v.value.number = 0.0;
    if (type != 2) v.value.word = 0;
    areas.assignment_target = &v;
    return static_cast<int>(type);
}

}  // namespace tl
