// text_statement.cpp — TEXT: free text entries, the axis labels and the text defaults.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>

#include "exec/commands.h"
#include "exec/front_end.h"
#include "exec/graph_window.h"
#include "exec/memory_areas.h"
#include "exec/statements.h"
#include "exec/string_space.h"
#include "exec/variables.h"
#include "graph/graph_statements.h"
#include "graph/graph_values.h"
#include "lang/error_table.h"
#include "lang/evaluator.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

namespace tl {
namespace {

constexpr double pi = 3.141592653589793;
constexpr const char* justify_words[] = {"left", "center", "right"};

/// What one TEXT statement gave; column[slot] is -1 for a parameter not given.
struct PendingText {
    int column[tpar_count];
    double h = 50.0, v = 85.0, x = 0.0, y = 0.0, x2 = 0.0, y2 = 0.0;
    double size = 0.0, datasize = 0.0, angle = 0.0;
    Rgb color = 0;
    int justify = justify_center;
    /// The text: a string variable, or a constant still to be stored.
    ValueReference variable;
    bool constant = false;
    char constant_text[256] = {};
    char font[font_name_size] = {};
    PendingText() {
        for (int& c : column) c = -1;
    }
    bool has(int slot) const { return column[slot] >= 0; }
};

/// The text of STRING =: a string variable (or element), or a string constant.
int read_text_source(PendingText& p) {
    skip_blanks();
    const int column = scan_column();
    const bool quoted = lang.scan.position < lang.scan.end && *lang.scan.position == '"';
    Item item;
    const int kind = get_item(item, 0);
    if (kind < 0) return kind;
    const ValueReference ref = kind == kind_string ? item_reference(item) : ValueReference{};
    const bool variable = kind == kind_string && !quoted && !ref.empty() && (ref.array == nullptr || ref.word != 0);
    if (graph_passing_over()) return 0;  // scanned, not checked
    if ((kind != kind_string || !(quoted || variable)) || (!at_statement_end() && peek_nonblank() != ','))
        return error_at_column(err_string_variable_string_constant, column);
    p.constant = quoted;
    if (quoted) copy_text(p.constant_text, sizeof p.constant_text, lang.scan.buffer);
    p.variable = ref;
    return 0;
}

int read_font(PendingText& p) {
    skip_blanks();
    const int at = scan_column();
    const int kind = evaluate_expression(scan_separators);
    if (kind < 0) return kind;
    if (graph_passing_over()) return 0;
    if (kind != kind_string) return error_at_column(err_invalid_type_expecting_string, at);
    copy_text(p.font, sizeof p.font, lang.scan.buffer);
    return 0;
}

int read_text_parameter(PendingText& p, int slot, int column) {
    p.column[slot] = column;
    switch (slot) {
        case tpar_xaxis:
        case tpar_yaxis:
        case tpar_boxed:
        case tpar_bold:
        case tpar_italic:
        case tpar_normal: return 0;
        default: break;
    }
    if (const int rc = expect_equal_sign(); rc < 0) return rc;
    switch (slot) {
        case tpar_string: return read_text_source(p);
        case tpar_color: return read_graph_colour(p.color);
        case tpar_font: return read_font(p);
        case tpar_justify: {
            int at = 0;
            const int word = read_graph_word(justify_words, 3, at);
            if (word < 0) return error_at_column(err_invalid_value_text_parameter, at);
            p.justify = word;
            return 0;
        }
        default: break;
    }
    double v = 0.0;
    if (const int rc = read_graph_number(v, err_invalid_value_text_parameter); rc < 0) return rc;
    switch (slot) {
        case tpar_h: p.h = std::trunc(v); return check_graph_range(v, 0.0, 100.0);
        case tpar_v: p.v = std::trunc(v); return check_graph_range(v, 0.0, 99.0);
        case tpar_x: p.x = v; return 0;
        case tpar_y: p.y = v; return 0;
        case tpar_x2: p.x2 = v; return 0;
        case tpar_y2: p.y2 = v; return 0;
        case tpar_size: p.size = v; return check_graph_range(v, 6.0, 100.0);
        case tpar_datasize: p.datasize = v; return check_graph_range(v, 0.0, HUGE_VAL);
        case tpar_angle: return graph_passing_over() ? 0 : read_angle(v, p.angle);
        default: return 0;
    }
}

/// The incompatible pairs, in their order; the second of a pair is reported.
int check_compatible(const PendingText& p) {
    const auto clash = [&](int given, std::initializer_list<int> others) {
        if (!p.has(given)) return -1;
        for (int o : others)
            if (p.has(o)) return p.column[o];
        return -1;
    };
    int at = clash(tpar_xaxis, {tpar_yaxis, tpar_x, tpar_y, tpar_v, tpar_boxed, tpar_angle, tpar_justify});
    if (at < 0) at = clash(tpar_yaxis, {tpar_x, tpar_y, tpar_h, tpar_boxed, tpar_angle, tpar_justify});
    if (at < 0) at = clash(tpar_h, {tpar_x, tpar_x2});
    if (at < 0) at = clash(tpar_v, {tpar_y, tpar_y2});
    if (at < 0 && p.has(tpar_x2) && !p.has(tpar_x)) at = p.column[tpar_x2];
    if (at < 0) at = clash(tpar_x2, {tpar_size});
    if (at < 0 && p.has(tpar_y2) && !p.has(tpar_y)) at = p.column[tpar_y2];
    if (at < 0) at = clash(tpar_y2, {tpar_size});
    if (at < 0) at = clash(tpar_size, {tpar_datasize});
    if (at >= 0) return error_at_column(err_text_statement_incompatible_parameters, at);
    if (p.has(tpar_x2) && p.x2 < p.x) return error_at_column(err_invalid_value_graph_plot_text, p.column[tpar_x2]);
    if (p.has(tpar_y2) && p.y2 < p.y) return error_at_column(err_invalid_value_graph_plot_text, p.column[tpar_y2]);
    return 0;
}

/// The variable that shows the text: a constant goes into a new hidden
/// variable "_textstr<n>$".
int text_variable(const PendingText& p, ValueReference& out) {
    if (!p.constant) {
        out = p.variable;
        return 0;
    }
    char name[32];
    std::snprintf(name, sizeof name, "_textstr%d$", ++graph.text_constant_counter);
    int index = find_variable(name);
    if (index < 0) {
        if (const int rc = create_variable(name, false); rc < 0) return rc;
        index = static_cast<int>(areas.variable_count) - 1;
    }
    VariableEntry& v = variable_at(index);
    if (const int rc = store_string(&v.value.word, p.constant_text, store_assign); rc < 0) return rc;
    out = ValueReference{nullptr, static_cast<std::uint32_t>(index) + 1};
    return 0;
}

int bold_of(const PendingText& p) { return p.has(tpar_normal) ? 0 : p.has(tpar_bold) ? 1 : graph.default_bold; }
int italic_of(const PendingText& p) { return p.has(tpar_normal) ? 0 : p.has(tpar_italic) ? 1 : graph.default_italic; }

int set_axis_label(AxisLabel& label, const PendingText& p, double position) {
    if (p.has(tpar_size) && !(p.size >= 10.0 && p.size <= 30.0))
        return error_at_column(err_invalid_value_graph_plot_text, p.column[tpar_size]);
    ValueReference ref;
    if (const int rc = text_variable(p, ref); rc < 0) return rc;
    label.set = 1;
    label.size = p.size;
    label.text_variable = ref;
    label.color = p.color;
    label.position = position;
    label.bold = bold_of(p);
    label.italic = italic_of(p);
    std::memcpy(label.font_name, graph.default_font, sizeof label.font_name);
    request_graph_repaint();
    return 0;
}

int add_text_entry(const PendingText& p) {
    const int count = static_cast<int>(graph.texts.size());
    if (count >= max_text_entries) return error_at_column(err_text_table_full, 0);
    if (count >= graph.text_room) {
        try {
            graph.texts.reserve(static_cast<std::size_t>(graph.text_room + text_table_growth));
        } catch (const std::bad_alloc&) {
            return error_at_column(err_unable_allocate_memory_graph, 0);
        }
        graph.text_room += text_table_growth;
    }
    TextEntry e;
    if (const int rc = text_variable(p, e.text_variable); rc < 0) return rc;
    e.hmode = p.has(tpar_x) ? position_data : position_percent;
    e.vmode = p.has(tpar_y) ? position_data : position_percent;
    e.hpos = p.has(tpar_x) ? p.x : p.h;
    e.vpos = p.has(tpar_y) ? p.y : p.v;
    e.x2 = p.x2;
    e.y2 = p.y2;
    e.x2_given = p.has(tpar_x2);
    e.y2_given = p.has(tpar_y2);
    e.size = p.size;
    e.datasize = p.datasize;
    e.color = p.color;
    e.boxed = p.has(tpar_boxed);
    e.bold = bold_of(p);
    e.italic = italic_of(p);
    e.angle = p.angle;
    e.justify = p.justify;
    std::memcpy(e.font_name, graph.default_font, sizeof e.font_name);
    graph.texts.push_back(e);
    if (host.graph_window != nullptr) host.graph_window->draw_text_entry(count);
    request_graph_repaint();
    return 0;
}

}  // namespace

const char* graph_text(const ValueReference& ref) {
    if (ref.word == 0) return "";
    if (ref.array == nullptr) {
        if (ref.word > areas.variable_count) return "";
        const VariableEntry& v = variable_at(static_cast<int>(ref.word) - 1);
        return v.type == kind_string ? string_at(v.value.word) : "";
    }
    // An array entry is trusted only while it is still in the Array Table.
    for (std::uint32_t i = 0; i < areas.array_count; ++i) {
        const ArrayEntry& a = areas.arrays[i];
        if (&a != ref.array) continue;
        if (a.type != kind_string || ref.word > a.element_count()) return "";
        return string_at(static_cast<const std::uint32_t*>(a.elements)[ref.word - 1]);
    }
    return "";
}

int read_angle(double value, double& radians) {
    const double turn = lang.degrees ? 360.0 : 2.0 * pi;
    const double limit = lang.degrees ? 3600.0 : 20.0 * pi;
    if (const int rc = check_graph_range(value, -limit, limit); rc < 0) return rc;
    double r = std::fmod(value, turn);
    if (r < 0) r += turn;
    if (lang.degrees) r = r * pi / 180.0;
    radians = r < 2.0 * pi ? r : 0.0;
    return 0;
}

int do_text() {
    PendingText p;
    while (next_graph_parameter()) {
        int column = 0;
        const int slot = read_graph_parameter(Table::text_parameters, err_invalid_text_function, column);
        if (slot < 0) return slot;
        if (const int rc = read_text_parameter(p, slot, column); rc < 0) return rc;
    }
    if (graph_passing_over()) return 0;
    if (const int rc = check_compatible(p); rc < 0) return rc;
    if (!graph.open) return error_at_column(err_graph_not_active_use_graph, 0);
    const bool has_string = p.has(tpar_string);
    if (!has_string) {
        if (p.has(tpar_normal)) graph.default_bold = graph.default_italic = 0;
        if (p.has(tpar_bold)) graph.default_bold = 1;
        if (p.has(tpar_italic)) graph.default_italic = 1;
        if (p.has(tpar_font)) std::memcpy(graph.default_font, p.font, sizeof p.font);
        if (p.has(tpar_normal) || p.has(tpar_bold) || p.has(tpar_italic) || p.has(tpar_font)) return 0;
        return error_at_column(err_text_statement_missing_string_parameter, 0);
    }
    if (p.has(tpar_font)) std::memcpy(graph.default_font, p.font, sizeof p.font);
    if (p.has(tpar_xaxis)) return set_axis_label(graph.xaxis_label, p, p.h);
    if (p.has(tpar_yaxis)) return set_axis_label(graph.yaxis_label, p, p.has(tpar_v) ? p.v : 50.0);
    return add_text_entry(p);
}

}  // namespace tl
