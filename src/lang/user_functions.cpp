// user_functions.cpp — look-up in the table of user-defined functions.
#include "lang/user_functions.h"

#include <cstring>

#include "exec/variables.h"
#include "lang/lang_state.h"

namespace tl {
namespace {

void copy_name(char (&dest)[max_function_name + 1], std::string_view name) {
    const std::size_t n = name.size() < max_function_name ? name.size() : max_function_name;
    std::memcpy(dest, name.data(), n);
    dest[n] = 0;
}

}  // namespace

void clear_user_functions() {
    lang.functions.count = 0;
    ++lang.functions.generation;
}

int find_user_function(std::string_view name) {
    const UserFunctionTable& t = lang.functions;
    for (int i = 0; i < t.count; ++i) {
        if (names_equal(name, t.entries[static_cast<std::size_t>(i)].name)) return i;
    }
    return -1;
}

int find_function_argument(int function, std::string_view name) {
    if (function < 0 || function >= lang.functions.count) return -1;
    const UserFunction& f = lang.functions.entries[static_cast<std::size_t>(function)];
    for (int i = 0; i < f.argument_count; ++i) {
        if (names_equal(name, f.arguments[i])) return i;
    }
    return -1;
}

int add_user_function(std::string_view name, const std::string_view* arguments, int count) {
    UserFunctionTable& t = lang.functions;
    if (t.count >= max_user_functions || count < 0 || count > max_function_arguments) return -1;
    if (name.size() > max_function_name) return -1;
    for (int i = 0; i < count; ++i) {
        if (arguments[i].size() > max_function_name) return -1;
    }
    UserFunction& f = t.entries[static_cast<std::size_t>(t.count)];
    f = UserFunction{};
    copy_name(f.name, name);
    for (int i = 0; i < count; ++i) copy_name(f.arguments[i], arguments[i]);
    f.argument_count = count;
    ++t.generation;
    return t.count++;
}

}  // namespace tl
