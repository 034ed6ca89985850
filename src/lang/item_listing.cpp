// item_listing.cpp — one line per Item in the debug formats.
#include "lang/item_listing.h"

#include "exec/front_end.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/predefined_variables.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_space.h"

namespace tl {
namespace {

constexpr const char* blanks = "                                        ";
constexpr int max_indent = 40;

/// `numeric_text_label` differs between the table ("Num String.") and the
/// parameter and data lists ("Num. String").
void list_items(const Item* items, int count, const char* numeric_text_format) {
    const char* in = listing_indent();
    for (int i = 0; i < count; ++i) {
        const Item& it = items[i];
        switch (it.kind) {
            case kind_function: console_print("%sFunction    %s \n", in, keyword_name(Table::functions, static_cast<int>(it.word))); break;
            case kind_special_function:
                console_print("%sFunction    %s \n", in, keyword_name(Table::special_functions, static_cast<int>(it.word)));
                break;
            case kind_statement: console_print("%sStatement   %s \n", in, keyword_name(Table::statements, static_cast<int>(it.word))); break;
            case kind_operator: console_print("%sOperator    %c \n", in, static_cast<char>(it.word)); break;
            case kind_logical:
                console_print("%sLog. Oper   %s \n", in, keyword_name(Table::logical_operators, static_cast<int>(it.word)));
                break;
            case kind_comparison:
                console_print("%sComp. Oper  %s \n", in, keyword_name(Table::comparison_operators, static_cast<int>(it.word)));
                break;
            case kind_integer: console_print("%sInt var.    %d \n", in, static_cast<int>(it.number)); break;
            case kind_double: console_print("%sFloat var.  %23.18g \n", in, it.number); break;
            case kind_predefined: console_print("%sConstant .  %2s \n", in, predefined_name(static_cast<int>(it.word))); break;
            case kind_string: console_print("%sString var. %s \n", in, item_text(it)); break;
            case kind_numeric_text: console_print(numeric_text_format, in, item_text(it)); break;
            case kind_long: long_debug_dump("Longmath", long_at(it.word), 0); break;
            default: break;  // commands, arrays and arguments have no line
        }
    }
}

}  // namespace

const char* listing_indent() {
    int n = 2 * (lang.scan.depth > 0 ? lang.scan.depth - 1 : 0);
    if (n > max_indent) n = max_indent;
    return blanks + (max_indent - n);
}

void list_item_table(const Item* items, int count, const char* label) {
    console_print("\n%s%d Item(s) in Table%s%s:\n", listing_indent(), count, label != nullptr ? " after " : "",
                  label != nullptr ? label : "");
    list_items(items, count, "%sNum String. %s \n");
}

void list_parameter_list(const Item* items, int count, bool array, const char* name) {
    console_print(array ? "\n%s%d Item(s) in Parameter List for Array %s:\n"
                        : "\n%s%d Item(s) in Parameter List for function %s:\n",
                  listing_indent(), count, name);
    list_items(items, count, "%sNum. String %s \n");
}

void list_input_data(const Item* items, int count) {
    console_print("\n%s%d Item(s) in Data List for INPUT:\n", listing_indent(), count);
    list_items(items, count, "%sNum. String %s \n");
}

}  // namespace tl
