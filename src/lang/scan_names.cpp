// scan_names.cpp — names in get_item: the look-up order, values of variables
// and array elements, calls of builtin and user-defined functions, "@(...)".
#include "lang/scan_names.h"

#include <cstdlib>
#include <cstring>

#include "exec/arrays.h"
#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "exec/stack_guard.h"
#include "exec/string_space.h"
#include "exec/variables.h"
#include "lang/builtin_functions.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/expression_plans.h"
#include "lang/item_listing.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/long_constants.h"
#include "lang/scan_caches.h"
#include "lang/scanner.h"
#include "lang/user_functions.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// Modes in which names of functions and predefined variables come back unevaluated.
constexpr int unevaluated_modes = scan_statement_position | scan_reference_only | scan_no_calls | scan_name_only;

bool declaring(int mode) { return (mode & scan_declaration_context) != 0; }

void copy_to_buffer(char* dest, std::size_t size, const char* text) {
    std::size_t n = std::strlen(text);
    if (n >= size) n = size - 1;
    std::memcpy(dest, text, n);
    dest[n] = 0;
}

void remember_name(std::string_view name) {
    const std::size_t n = name.size() < name_buffer_size - 1 ? name.size() : name_buffer_size - 1;
    std::memcpy(lang.scan.name, name.data(), n);
    lang.scan.name[n] = 0;
    lang.scan.name_element = nullptr;
}

/// Loads a variable's or element's long number (0 = no value yet) into the work register.
void load_long(std::uint32_t ref) {
    if (ref == 0) {
        long_set_zero(long_state.work);
    } else {
        long_copy(long_at(ref), long_state.work);
    }
}

int give_double(Item& item, double value) {
    item.number = value;
    lang.scan.result = value;
    item.kind = kind_double;
    return kind_double;
}

int give_string(Item& item, const char* text) {
    copy_to_buffer(lang.scan.buffer, scan_buffer_size, text);
    item.kind = kind_string;
    return kind_string;
}

int give_result(Item& item, int kind) {
    switch (kind) {
        case kind_double: return give_double(item, lang.scan.result);
        case kind_string:
        case kind_numeric_text:
        case kind_long:
            item.kind = static_cast<std::uint32_t>(kind);
            return kind;
        default:
            return scan_error(err_invalid_type, item.column);
    }
}

int predefined_value(Item& item, int slot) {
    const PredefinedVariable& v = lang.predefined[static_cast<std::size_t>(slot)];
    if (v.type == kind_string) return give_string(item, v.text.data());
    if (v.type != kind_double) return scan_error(err_invalid_type, item.column);
    if (areas.long_default && (slot == pre_pi || slot == pre_euler)) {
        lang.reporter.error_column = item.column;
        const int r = long_constant(slot == pre_pi ? long_constant_pi : long_constant_e, long_state.work);
        if (r < 0) return r;
        item.kind = kind_long;
        return kind_long;
    }
    return give_double(item, v.number);
}

/// A builtin function (slot < 57) or a user-defined function (slot 41) with
/// its parameter list. Temporaries taken by the parameters are released after
/// the call; the result is in the double slot, the scan buffer or the work register.
/// `user` is the definition's index for slot 41.
int call_function(Item& item, int slot, int user = -1) {
    Item params[max_parameters];
    int count = 0;
    bool has_list = true;
    const std::uint32_t string_mark = temp_string_mark();
    const std::uint32_t long_mark = temp_long_mark();
    if (peek_nonblank() != '(' &&
        (slot == fn_placeholder_41 || slot == fn_formatdatetime_s || slot == fn_makedatetime)) {
        has_list = false;
    } else {
        count = parse_parameter_list(params);
        if (count < 0) {
            release_temp_strings(string_mark);
            release_temp_longs(long_mark);
            return count;
        }
        if (lang.reporter.debug) {
            const char* name = slot == fn_placeholder_41
                                   ? lang.functions.entries[static_cast<std::size_t>(user)].name
                                   : keyword_name(Table::functions, slot);
            list_parameter_list(params, count, false, name);
        }
    }
    lang.reporter.error_column = item.column;
    lang.scan.called_function = user;  // set late: the parameters may call other definitions
    const int k = do_function(slot, params, count, has_list);
    release_temp_strings(string_mark);
    release_temp_longs(long_mark);
    if (k < 0) {
        lang.reporter.error_column = item.column;
        return report_error(err_pass_do_function);
    }
    return give_result(item, k);
}

int call_special_function(Item& item, int slot) {
    lang.reporter.error_column = item.column;
    const int k = do_special_function(slot);
    if (k < 0) {
        lang.reporter.error_column = item.column;
        return report_error(err_pass_do_function);
    }
    return give_result(item, k);
}

}  // namespace

int fetch_variable(Item& item, int index, int mode) {
    VariableEntry& v = variable_at(index);
    lang.scan.value_ref = &v;
    areas.assignment_target = &v;
    item.extra = static_cast<std::uint32_t>(index) + 1;
    switch (v.type) {
        case kind_double: return give_double(item, v.value.number);
        case kind_string:
            // At the start of a statement the name is a target: its text is not wanted.
            if ((mode & scan_statement_position) != 0) {
                item.kind = kind_string;
                return kind_string;
            }
            return give_string(item, string_at(v.value.word));
        case kind_long:
            if ((mode & (scan_statement_position | scan_no_calls)) == 0) load_long(v.value.word);
            item.kind = kind_long;
            return kind_long;
        default:
            return scan_error(err_invalid_type, item.column);
    }
}

namespace {

int create_unknown(Item& item, int mode, std::string_view name) {
    lang.reporter.error_column = item.column;
    const int type = create_variable(name, (mode & scan_declare_new) != 0);
    if (type < 0) return type;
    if (!areas.scan_only) {
        item.extra = areas.variable_count;  // index of the new entry + 1
        lang.scan.value_ref = &areas.variables[areas.variable_count - 1];
    }
    switch (type) {
        case kind_string: return give_string(item, "");
        case kind_long:
            long_set_zero(long_state.work);
            item.kind = kind_long;
            return kind_long;
        default:
            return give_double(item, 0.0);
    }
}

/// A subscript as a double; false for a value that is not a number.
bool subscript_value(const Item& p, double& out) {
    switch (p.kind) {
        case kind_double: out = p.number; return true;
        case kind_numeric_text: {
            char* endp = nullptr;
            out = std::strtod(item_text(p), &endp);
            return endp != nullptr && *endp == 0;
        }
        case kind_long: return long_to_double(long_at(p.word), out, false) >= 0;
        default: return false;
    }
}

/// True when the subscripts address an element (the checks of address_element, quietly).
bool element_in_range(const ArrayEntry& a, int count, const double* values) {
    if (count != a.dimensions) return false;
    for (int i = 0; i < count; ++i) {
        if (!(values[i] >= 0.0 && values[i] < static_cast<double>(a.sizes[i]))) return false;
    }
    return true;
}

/// The element of `a` at the subscripts `values` (checked when the statement
/// runs; while it is passed over a stale subscript gives a dummy), as get_item
/// gives it. `columns` place the caret of a subscript out of range.
int fetch_element(Item& item, int mode, ArrayEntry* a, int count, const double* values,
                  const int* columns = nullptr);

}  // namespace

int scan_element_item(Item& item, int mode, std::string_view name, ArrayEntry* a) {
    ScanState& s = lang.scan;
    if (a != nullptr && !stack_nearly_full()) {
        // Subscripts of doubles met before come from their plans when they
        // address an element; anything else goes through the parameter list.
        double values[max_parameters];
        const char* end = nullptr;
        const int count = run_subscript_plans(values, end);
        if (count > 0 && element_in_range(*a, count, values)) {
            finish_subscript_plans(end, count, values);
            // What giving back the (unused) temporaries of the subscripts records.
            if (areas.temp_strings.used > areas.temp_high_water) areas.temp_high_water = areas.temp_strings.used;
            return fetch_element(item, mode, a, count, values);
        }
    }
    Item subscripts[max_parameters];
    const std::uint32_t string_mark = temp_string_mark();
    const std::uint32_t long_mark = temp_long_mark();
    auto release = [&] {
        release_temp_strings(string_mark);
        release_temp_longs(long_mark);
    };
    const int count = parse_parameter_list(subscripts);
    if (count < 0) {
        release();
        return count;
    }
    if (a == nullptr) {  // checking a definition or passing over: a dummy element
        release();
        s.value_ref = nullptr;
        if (!name.empty() && name.back() == '$') return give_string(item, "");
        return give_double(item, 0.0);
    }
    if (lang.reporter.debug) list_parameter_list(subscripts, count, true, array_name(*a));
    double values[max_parameters];
    int columns[max_parameters];
    for (int i = 0; i < count; ++i) {
        columns[i] = subscripts[i].column;
        if (!subscript_value(subscripts[i], values[i])) {
            release();
            return scan_error(err_subscript_out_range_invalid, subscripts[i].column);
        }
    }
    release();
    return fetch_element(item, mode, a, count, values, columns);
}

namespace {

int fetch_element(Item& item, int mode, ArrayEntry* a, int count, const double* values, const int* columns) {
    ScanState& s = lang.scan;
    // The reference text is made when somebody wants it (scan_name_text).
    s.name_element = a;
    s.name_subscript_count = count;
    std::memcpy(s.name_subscripts, values, sizeof(double) * static_cast<std::size_t>(count));
    if (s.skipping && !element_in_range(*a, count, values)) {
        // A stale subscript while passing over a statement: a dummy element.
        s.value_ref = nullptr;
        item.array = a;
        if (a->type == kind_string) return give_string(item, "");
        if (a->type == kind_long) {
            long_set_zero(long_state.work);
            item.kind = kind_long;
            return kind_long;
        }
        return give_double(item, 0.0);
    }
    const std::int64_t offset = address_element(*a, count, values, columns);
    if (offset < 0) return static_cast<int>(offset);
    const auto element = static_cast<std::size_t>(offset);
    item.array = a;
    item.extra = static_cast<std::uint32_t>(offset) + 1;
    switch (a->type) {
        case kind_double:
            s.value_ref = &a->doubles()[element];
            return give_double(item, a->doubles()[element]);
        case kind_string:
            s.value_ref = &a->words()[element];
            if ((mode & scan_statement_position) != 0) {  // a target: its text is not wanted
                item.kind = kind_string;
                return kind_string;
            }
            return give_string(item, string_at(a->words()[element]));
        case kind_long:
            s.value_ref = &a->words()[element];
            if ((mode & scan_statement_position) == 0) load_long(a->words()[element]);
            item.kind = kind_long;
            return kind_long;
        default:
            return scan_error(err_invalid_type, item.column);
    }
}

int scan_array_element(Item& item, int mode, std::string_view name, NameCacheEntry* cached) {
    ArrayEntry* a = find_array_via(cached, name);
    if (a == nullptr) {
        if (declaring(mode)) return scan_name;  // DIM or LONG of a new array: the statement reads the sizes
        if ((mode & scan_reference_only) != 0) return -1;
        if (!lang.scan.defining_function && !lang.scan.skipping) {
            console_print("\n%s\n", scan_name_text());
            return scan_error(err_not_function_or_array, item.column);
        }
    } else if (declaring(mode)) {
        // Passed over, a DIM changes nothing and depends on no state: the
        // array may be erased by then when the statement runs.
        if (lang.scan.skipping) return scan_name;
        return scan_error(err_array_already_dimensioned, item.column);
    }
    return scan_element_item(item, mode, name, a);
}

/// An argument of the user-defined function being evaluated (kind 19): the
/// value is left where get_item leaves values of its kind; item.word is the
/// argument's index.
int argument_value(Item& item, int index) {
    const Item& arg = lang.scan.call.arguments[index];
    item.word = static_cast<std::uint32_t>(index);
    switch (arg.kind) {
        case kind_double:
            item.number = arg.number;
            lang.scan.result = arg.number;
            break;
        case kind_string:
        case kind_numeric_text: copy_to_buffer(lang.scan.buffer, scan_buffer_size, item_text(arg)); break;
        case kind_long: long_copy(long_at(arg.word), long_state.work); break;
        default: return scan_error(err_invalid_argument, item.column);
    }
    item.kind = kind_argument;
    return kind_argument;
}

/// Steps 10.1 to 10.7: logical operators, commands, statements, predefined
/// variables, builtin functions, user-defined functions, special functions.
/// Returns 0 when the name is none of them.
int scan_keyword(Item& item, int mode, std::string_view name, NameCacheEntry* cached) {
    const bool evaluate = (mode & unevaluated_modes) == 0;
    const KeywordSlots* known = cached != nullptr ? &cached->slots : nullptr;
    int slot = known != nullptr ? known->logical : find_keyword(Table::logical_operators, name);
    if (slot >= 0) {
        if (declaring(mode)) return scan_error(err_logical_operator_invalid_long_dimension, item.column);
        item.kind = kind_logical;
        item.word = static_cast<std::uint32_t>(slot);
        return kind_logical;
    }
    slot = known != nullptr ? known->command : find_keyword(Table::commands, name);
    if (slot >= 0) {
        if (declaring(mode)) return scan_error(err_command_invalid_long_dimension, item.column);
        item.kind = kind_command;
        item.word = static_cast<std::uint32_t>(slot);
        return kind_command;
    }
    slot = known != nullptr ? known->statement : find_keyword(Table::statements, name);
    if (slot >= 0 && ((mode & scan_statement_position) != 0 || !is_shared_with_function(slot))) {
        if (declaring(mode)) return scan_error(err_statement_invalid_long_dimension, item.column);
        item.kind = kind_statement;
        item.word = static_cast<std::uint32_t>(slot);
        return kind_statement;
    }
    slot = known != nullptr ? known->predefined : find_predefined(name);
    if (slot >= 0) {
        item.word = static_cast<std::uint32_t>(slot);
        if (!evaluate) {
            item.kind = kind_predefined;
            return kind_predefined;
        }
        if (declaring(mode)) return scan_error(err_constant_invalid_long_dimension, item.column);
        return predefined_value(item, slot);
    }
    slot = known != nullptr ? known->function : find_keyword(Table::functions, name);
    if (slot >= 0) {
        item.word = static_cast<std::uint32_t>(slot);
        if (!evaluate) {
            item.kind = kind_function;
            return kind_function;
        }
        if (declaring(mode)) return scan_error(err_function_invalid_long_dimension, item.column);
        return call_function(item, slot);
    }
    const int user = find_user_function_via(cached, name);
    if (user >= 0) {
        if ((mode & scan_name_only) != 0) return scan_name;
        item.word = fn_placeholder_41;
        item.extra = static_cast<std::uint32_t>(user);
        if (!evaluate) {
            item.kind = kind_function;
            return kind_function;
        }
        if (declaring(mode)) return scan_error(err_function_invalid_long_dimension, item.column);
        item.extra = 0;
        return call_function(item, fn_placeholder_41, user);
    }
    slot = known != nullptr ? known->special : find_keyword(Table::special_functions, name);
    if (slot >= 0) {
        item.word = static_cast<std::uint32_t>(slot);
        if (!evaluate) {
            item.kind = kind_special_function;
            return kind_special_function;
        }
        if (declaring(mode)) return scan_error(err_function_invalid_long_dimension, item.column);
        return call_special_function(item, slot);
    }
    return 0;
}

}  // namespace

bool is_shared_with_function(int slot) {
    return slot == stmt_input || slot == stmt_mid_s || slot == stmt_read || slot == stmt_open ||
           slot == stmt_long || slot == stmt_inputdialog || slot == stmt_updatedialog;
}

int scan_name_item(Item& item, int mode, std::string_view name, NameCacheEntry* entry) {
    ScanState& s = lang.scan;
    remember_name(name);
    NameCacheEntry* const cached = entry != nullptr ? entry : cached_name(name);
    if ((mode & scan_variables_only) == 0) {
        const int k = scan_keyword(item, mode, name, cached);
        if (k != 0) return k;
    }
    if ((mode & scan_name_only) != 0) return scan_name;
    if (peek_nonblank() == '(') {
        if ((mode & scan_no_calls) != 0) return -1;
        return scan_array_element(item, mode, name, cached);
    }
    if (s.defining_function) {
        return !name.empty() && name.back() == '$' ? give_string(item, "") : give_double(item, 0.0);
    }
    if (s.evaluating_function) {
        const int index = find_function_argument(s.call.function, name);
        if (index >= 0 && index < s.call.argument_count) return argument_value(item, index);
    }
    if (ArrayEntry* a = find_array_via(cached, name)) {
        item.array = a;
        item.kind = a->type == kind_string ? kind_string_array
                    : a->type == kind_long ? kind_long_array
                                           : kind_double_array;
        return static_cast<int>(item.kind);
    }
    const int index = find_variable_via(cached, name);
    if (index >= 0) {
        if ((mode & scan_declare_new) != 0) return scan_error(err_variable_already_defined, item.column);
        return fetch_variable(item, index, mode);
    }
    if ((mode & scan_reference_only) != 0) return scan_name;
    return create_unknown(item, mode, name);
}

int scan_indirect_name(Item& item, int mode) {
    ScanState& s = lang.scan;
    ++s.position;  // "@"
    if (s.position >= s.end || *s.position != '(') return scan_error(err_expect_left_parenthesis, scan_column());
    ++s.position;
    const int k = evaluate_expression(scan_in_parentheses);
    if (k < 0) return report_error(err_pass_evaluate_expression);
    char text[scan_buffer_size];
    if (s.defining_function) {
        copy_to_buffer(text, sizeof text, "a$");
    } else {
        if (k != kind_string) return scan_error(err_invalid_type_expecting_string, item.column);
        copy_to_buffer(text, sizeof text, s.buffer);
    }
    std::size_t n = 0;
    const bool letter = (text[0] >= 'a' && text[0] <= 'z') || (text[0] >= 'A' && text[0] <= 'Z');
    if (letter) {
        while (text[n] != 0 && is_name_char(text[n])) {
            if (n == max_name_chars) return scan_error(err_name_too_long, item.column);
            ++n;
        }
    }
    if (n == 0) return scan_error(err_invalid_name, item.column);
    return scan_name_item(item, mode, std::string_view(text, n));
}

}  // namespace tl
