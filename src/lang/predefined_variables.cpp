// predefined_variables.cpp — names and start-up values of the predefined variables.
#include "lang/predefined_variables.h"

#include <cstring>

namespace tl {
namespace {

struct PredefinedStart {
    const char* name;
    std::uint32_t type;
    double number;
    const char* text;
};

// ORDER: must match the pre_ slots in predefined_variables.h.
constexpr std::array<PredefinedStart, pre_count> start_values = {{
    {"pi", 2, 3.141592653589793, ""},
    {"euler", 2, 2.718281828459045, ""},
    {"defaultprintformat$$", 3, 0, "%13.6g"},
    {"defaultprinttabs", 2, 14, ""},
    {"date$", 3, 0, "mm-dd-yyyy"},
    {"time$", 3, 0, "hh:mm:ss"},
    {"dayofweek$", 3, 0, ""},
    {"floatingptlength", 2, 50, ""},
    {"printformatmax$$", 3, 0, "%23.18g"},
    {"defaultzerodatetime", 2, 0, ""},
    {"lastshapeid", 2, -1, ""},
    {"mousexcoord", 2, 0, ""},
    {"mouseycoord", 2, 0, ""},
    {"keystate", 2, 0, ""},
}};

bool equal_ignoring_case(std::string_view a, const char* b) {
    std::size_t i = 0;
    for (; i < a.size(); ++i) {
        char c = a[i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (b[i] == 0 || c != b[i]) return false;
    }
    return b[i] == 0;
}

}  // namespace

const char* predefined_name(int slot) {
    return (slot >= 0 && slot < pre_count) ? start_values[static_cast<std::size_t>(slot)].name : "";
}

int find_predefined(std::string_view name) {
    for (int i = 0; i < pre_count; ++i) {
        if (equal_ignoring_case(name, start_values[static_cast<std::size_t>(i)].name)) return i;
    }
    return -1;
}

void set_predefined_text(PredefinedVariable& v, std::string_view text) {
    std::size_t n = text.size() < v.text.size() - 1 ? text.size() : v.text.size() - 1;
    std::memcpy(v.text.data(), text.data(), n);
    v.text[n] = 0;
}

void fill_predefined_variables(PredefinedTable& table) {
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i].type = start_values[i].type;
        table[i].number = start_values[i].number;
        set_predefined_text(table[i], start_values[i].text);
    }
}

}  // namespace tl
