// named_variables.cpp — numeric BASIC variables read and written by name.
#include "exec/named_variables.h"

#include <cstring>

#include "exec/arrays.h"
#include "exec/memory_areas.h"
#include "exec/variables.h"

namespace tl {
namespace {

/// Splits "base(k)" into its base name and subscript; false for a plain name.
bool split_element(std::string_view name, std::string_view& base, long& index) {
    const std::size_t open = name.find('(');
    if (open == std::string_view::npos || name.size() < open + 3 || name.back() != ')') return false;
    base = name.substr(0, open);
    index = 0;
    for (std::size_t i = open + 1; i + 1 < name.size(); ++i) {
        const char c = name[i];
        if (c < '0' || c > '9' || index > 100000000) return false;
        index = index * 10 + (c - '0');
    }
    return true;
}

/// Element `index` of the one-dimensional double array `base`, or null.
double* double_element(std::string_view base, long index) {
    ArrayEntry* a = find_array(base);
    if (a == nullptr || a->type != 2 || a->dimensions != 1 || a->elements == nullptr) return nullptr;
    if (index < 0 || index >= a->sizes[0]) return nullptr;
    return a->doubles() + index;
}

}  // namespace

double named_double(std::string_view name) {
    std::string_view base;
    long index = 0;
    if (split_element(name, base, index)) {
        const double* element = double_element(base, index);
        return element != nullptr ? *element : 0.0;
    }
    const int i = find_variable(name);
    if (i < 0) return 0.0;
    const VariableEntry& v = variable_at(i);
    return v.type == 2 ? v.value.number : 0.0;
}

void set_named_double(std::string_view name, double v) {
    if (areas.scan_only) return;
    std::string_view base;
    long index = 0;
    if (split_element(name, base, index)) {
        double* element = double_element(base, index);
        if (element != nullptr) *element = v;
        return;
    }
    int i = find_variable(name);
    if (i < 0) {
        // Room is checked first: a full table is not an error here.
        if (name.empty() || name.size() > static_cast<std::size_t>(max_name_length)) return;
        if (areas.variables == nullptr || areas.variable_count >= areas.sizes[size_num_variables]) return;
        if (areas.variable_names.used + name.size() + 1 > areas.variable_names.size) return;
        void* const target = areas.assignment_target;  // creation must not move the assignment target
        const int type = create_variable(name, false);
        areas.assignment_target = target;
        if (type < 0) return;
        i = static_cast<int>(areas.variable_count) - 1;
        VariableEntry& created = variable_at(i);
        created.type = 2;  // a double even in the long-default mode
        created.value.number = 0.0;
    }
    VariableEntry& entry = variable_at(i);
    if (entry.type == 2) entry.value.number = v;
}

}  // namespace tl
