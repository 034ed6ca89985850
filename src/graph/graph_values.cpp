// graph_values.cpp — parameter names, "=", numbers, colours and the range check
// shared by the graph statements.
#include "graph/graph_values.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "exec/commands.h"
#include "exec/exec_state.h"
#include "exec/memory_areas.h"
#include "exec/statement_targets.h"
#include "exec/statements.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/lang_state.h"
#include "lang/scan_names.h"
#include "lang/scanner.h"
#include "longmath/long_convert.h"
#include "longmath/long_state.h"

namespace tl {
namespace {

/// The name characters at the scan position, consumed.
std::string_view take_name(int& column) {
    const std::string_view name = peek_name();
    column = scan_column();
    lang.scan.position += name.size();
    return name;
}

/// The number of an evaluated value of kind `kind`; false when it is none.
bool numeric_value(int kind, const Item& item, double& out) {
    switch (kind) {
        case kind_double: out = item.number; return true;
        case kind_numeric_text:
            out = item.number_known ? item.number : std::strtod(item_text(item), nullptr);
            return true;
        default: return false;
    }
}

bool words_equal(std::string_view word, const char* lower) {
    if (word.size() != std::strlen(lower)) return false;
    for (std::size_t i = 0; i < word.size(); ++i)
        if ((word[i] >= 'A' && word[i] <= 'Z' ? word[i] - 'A' + 'a' : word[i]) != lower[i]) return false;
    return true;
}

}  // namespace

bool graph_passing_over() { return exec.skip || areas.scan_only; }

bool next_graph_parameter() {
    skip_blanks();
    if (lang.scan.position < lang.scan.end && *lang.scan.position == ',') ++lang.scan.position;
    return !at_statement_end();
}

int read_graph_parameter(Table table, int unknown_error, int& column) {
    const std::string_view name = take_name(column);
    const int slot = name.empty() ? -1 : find_keyword(table, name);
    if (slot < 0) return error_at_column(unknown_error, column);
    return slot;
}

int read_graph_word(const char* const* words, int count, int& column) {
    const char* saved = lang.scan.position;
    const std::string_view name = take_name(column);
    for (int i = 0; i < count; ++i)
        if (words_equal(name, words[i])) return i;
    lang.scan.position = saved;
    return -1;
}

int expect_equal_sign() {
    skip_blanks();
    if (lang.scan.position < lang.scan.end && *lang.scan.position == '=') {
        ++lang.scan.position;
        return 0;
    }
    return error_at_column(err_missing_equal_sign, scan_column());
}

int read_graph_number(double& out, int invalid_error) {
    skip_blanks();
    graph.value_column = scan_column();
    const int kind = evaluate_expression(scan_separators);
    if (kind < 0) return kind;
    const int rc = evaluated_double(kind, graph.value_column, out);
    if (rc < 0) return rc;
    return rc == 0 ? error_at_column(invalid_error, graph.value_column) : 0;
}

int check_graph_range(double value, double lo, double hi) {
    if (graph_passing_over() || (value >= lo && value <= hi)) return 0;
    return error_at_column(err_invalid_value_graph_plot_text, graph.value_column);
}

int read_graph_colour(Rgb& out) {
    skip_blanks();
    graph.value_column = scan_column();
    if (lang.scan.position < lang.scan.end && *lang.scan.position == '(') {
        Item parts[max_parameters];
        const int count = parse_parameter_list(parts);
        if (count < 0) return count;
        if (count != 3) return error_at_column(err_incorrect_number_parameters, graph.value_column);
        int rgb[3] = {0, 0, 0};
        for (int i = 0; i < 3; ++i) {
            double v = 0.0;
            if (!numeric_value(static_cast<int>(parts[i].kind), parts[i], v))
                return error_at_column(err_invalid_value_graph_plot_text, graph.value_column);
            if (const int rc = check_graph_range(v, 0.0, 255.0); rc < 0) return rc;
            rgb[i] = graph_passing_over() || !(v >= 0.0 && v <= 255.0) ? 0 : static_cast<int>(v);
        }
        out = pack_rgb(rgb[0], rgb[1], rgb[2]);
        return 0;
    }
    if (at_statement_end() || *lang.scan.position == ',')
        return error_at_column(err_missing_parameter_list_function_subscripts, graph.value_column);
    double v = 0.0;
    if (const int rc = read_graph_number(v, err_invalid_value_graph_plot_text); rc < 0) return rc;
    if (const int rc = check_graph_range(v, 0.0, 16777215.0); rc < 0) return rc;
    out = v >= 0.0 && v <= 16777215.0 ? static_cast<Rgb>(v) : 0;
    return 0;
}

}  // namespace tl
