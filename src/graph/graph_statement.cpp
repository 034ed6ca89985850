// graph_statement.cpp — GRAPH: opening, changing, listing and ending the graph.
#include <cmath>

#include "exec/commands.h"
#include "exec/front_end.h"
#include "exec/graph_window.h"
#include "graph/graph_statements.h"
#include "graph/graph_values.h"
#include "lang/error_reporter.h"
#include "lang/error_table.h"
#include "lang/keyword_tables.h"
#include "lang/lang_state.h"
#include "lang/scanner.h"

namespace tl {
namespace {

/// What one GRAPH statement asks for, before any of it is applied.
struct PendingGraph {
    double width = 0.0;  // 0: not given
    double height = 0.0;
    double hscale = 0.0, vscale = 0.0, hoffset = 0.0, voffset = 0.0;
    bool hscale_given = false, vscale_given = false, hoffset_given = false, voffset_given = false;
    double hmargin = 0.0, vmargin = 0.0, axisweight = 0.0;
    bool hmargin_given = false, vmargin_given = false, axisweight_given = false;
    double clearance = -1.0;  // -1: not given
    Rgb bgcolor = 0xFFFFFF, gridcolor = 0x808080, axiscolor = 0x000000;
    bool bgcolor_given = false, gridcolor_given = false, axiscolor_given = false;
    int htype = -1, vtype = -1;  // -1: not given
    int others = 0;  // parameters other than end, print, metafile, jpeg and maximize
    bool end = false, print = false, metafile = false, jpeg = false;
    bool listparms = false, maximize = false;
    int exclusive_column = 0;
};

constexpr const char* scale_type_words[] = {"linear", "log", "datetime"};

bool console_refuses() { return host.front_end == nullptr || host.front_end->console_mode(); }

/// A value that must be exactly 0 or 1, stored at once.
int read_switch(int& target) {
    double v = 0.0;
    if (const int rc = read_graph_number(v, err_invalid_value_graph_plot_text); rc < 0) return rc;
    if (graph_passing_over()) return 0;
    if (!(v == 0.0 || v == 1.0)) return error_at_column(err_invalid_value_graph_plot_text, graph.value_column);
    target = static_cast<int>(v);
    return 0;
}

/// hscale (horizontal) or vscale: 0 makes the axis automatic.
int read_scale(PendingGraph& p, bool horizontal) {
    double v = 0.0;
    if (const int rc = read_graph_number(v, err_invalid_value_graph_plot_text); rc < 0) return rc;
    const bool equal = graph.settings.equalscales != 0;
    if (v == 0.0) {
        if (horizontal || equal) {
            p.hscale = p.hoffset = 0.0;
            p.hscale_given = p.hoffset_given = true;
        }
        if (!horizontal || equal) {
            p.vscale = p.voffset = 0.0;
            p.vscale_given = p.voffset_given = true;
        }
        return 0;
    }
    if (const int rc = check_graph_range(v, min_scale, max_scale); rc < 0) return rc;
    if (horizontal || equal) {
        p.hscale = v;
        p.hscale_given = true;
    }
    if (!horizontal || equal) {
        p.vscale = v;
        p.vscale_given = true;
    }
    return 0;
}

int read_scale_type(int& type) {
    int column = 0;
    const int word = read_graph_word(scale_type_words, 3, column);
    if (word < 0) return error_at_column(err_invalid_value_graph_plot_text, column);
    if (word == scale_log && !graph_passing_over()) graph.settings.equalscales = 0;
    type = word;
    return 0;
}

/// One parameter of slot `slot`.
int read_parameter(PendingGraph& p, int slot, int column) {
    GraphSettings& s = graph.settings;
    // A statement passed over (skipped, or the check before a run) changes
    // no setting: the flags below act at once only when it is carried out.
    const bool carried_out = !graph_passing_over();
    const auto flag = [&p, carried_out](int& target, int value) {
        if (carried_out) target = value;
        ++p.others;
        return 0;
    };
    switch (slot) {
        case gpar_portrait: p.width = 7.5, p.height = 10.0, ++p.others; return 0;
        case gpar_landscape: p.width = 10.0, p.height = 7.5, ++p.others; return 0;
        case gpar_border: return flag(s.border, 1);
        case gpar_noborder: return flag(s.border, 0);
        case gpar_grid: return flag(s.grid, 1);
        case gpar_nogrid: return flag(s.grid, 0);
        case gpar_axes: return flag(s.axes, 1);
        case gpar_noaxes: return flag(s.axes, 0);
        case gpar_equalscales:
            ++p.others;
            if (s.hlog != 0 || s.vlog != 0 || !carried_out) return 0;
            s.equalscales = 1;
            p.vscale = s.hscale;
            p.vscale_given = true;
            return 0;
        case gpar_end: p.end = true, p.exclusive_column = column; return 0;
        case gpar_print: p.print = true, p.exclusive_column = column; return 0;
        case gpar_metafile: p.metafile = true, p.exclusive_column = column; return 0;
        case gpar_jpeg: p.jpeg = true, p.exclusive_column = column; return 0;
        case gpar_maximize: p.maximize = true; return 0;
        case gpar_listparms: p.listparms = true, ++p.others; return 0;
        default: break;
    }
    ++p.others;
    if (const int rc = expect_equal_sign(); rc < 0) return rc;
    switch (slot) {
        case gpar_hscaletype: return read_scale_type(p.htype);
        case gpar_vscaletype: return read_scale_type(p.vtype);
        case gpar_bgcolor: p.bgcolor_given = true; return read_graph_colour(p.bgcolor);
        case gpar_gridcolor: p.gridcolor_given = true; return read_graph_colour(p.gridcolor);
        case gpar_axiscolor: p.axiscolor_given = true; return read_graph_colour(p.axiscolor);
        case gpar_includexaxis: return read_switch(s.includexaxis);
        case gpar_includeyaxis: return read_switch(s.includeyaxis);
        case gpar_numberxaxis: return read_switch(s.numberxaxis);
        case gpar_numberyaxis: return read_switch(s.numberyaxis);
        case gpar_lockscreen: return read_switch(s.lockscreen);
        case gpar_hscale: return read_scale(p, true);
        case gpar_vscale: return read_scale(p, false);
        default: break;
    }
    double v = 0.0;
    if (const int rc = read_graph_number(v, err_invalid_value_graph_plot_text); rc < 0) return rc;
    switch (slot) {
        case gpar_width: p.width = v; return 0;
        case gpar_height: p.height = v; return 0;
        case gpar_hoffset: p.hoffset = v, p.hoffset_given = true; return 0;
        case gpar_voffset: p.voffset = v, p.voffset_given = true; return 0;
        case gpar_hmargin: p.hmargin = v, p.hmargin_given = true; return 0;
        case gpar_vmargin: p.vmargin = v, p.vmargin_given = true; return 0;
        case gpar_axisweight:
            p.axisweight = v, p.axisweight_given = true;
            return check_graph_range(v, 0.0, 10.0);
        case gpar_clearance:
            p.clearance = v;
            return check_graph_range(v, 0.0, 0.25);
        default: return error_at_column(err_invalid_graph_function, column);
    }
}

/// The exclusive parameters alone, and no two of them but metafile with jpeg.
int check_exclusive(const PendingGraph& p) {
    if (!(p.end || p.print || p.metafile || p.jpeg)) return 0;
    const bool clash = p.others > 0 || (p.end && p.print) || (p.end && p.metafile) || (p.print && p.metafile) ||
                       (p.end && p.jpeg) || (p.print && p.jpeg);
    if (clash) return error_at_column(err_graph_end_print_metafile_may, p.exclusive_column);
    return 0;
}

/// The given scales and offsets; `reset_offsets` makes a given scale also
/// reset its offset (a new graph).
void apply_scales(const PendingGraph& p, bool reset_offsets) {
    GraphSettings& s = graph.settings;
    if (p.hscale_given) {
        s.hscale = p.hscale;
        if (reset_offsets) s.hoffset = 0.0;
    }
    if (p.vscale_given) {
        s.vscale = p.vscale;
        if (reset_offsets) s.voffset = 0.0;
    }
    if (p.hoffset_given) s.hoffset = p.hoffset;
    if (p.voffset_given) s.voffset = p.voffset;
}

/// The offset validity test of both axes. A failing axis gets back the scale
/// and offset of `before` (hscale, vscale, hoffset, voffset); the first
/// failure is reported.
int check_offsets(const double (&before)[4]) {
    GraphSettings& s = graph.settings;
    int error = 0;
    for (int axis = 0; axis < 2; ++axis) {
        double& scale = axis == 0 ? s.hscale : s.vscale;
        double& offset = axis == 0 ? s.hoffset : s.voffset;
        const bool datetime = (axis == 0 ? s.hdatetime : s.vdatetime) != 0;
        if (scale == 0.0 || offset == 0.0) continue;
        const double limit = datetime ? datetime_offset_ratio_limit : offset_ratio_limit;
        if (!(std::fabs(offset) / scale > limit)) continue;
        scale = before[axis];
        offset = before[axis + 2];
        if (error == 0)
            error = datetime ? err_graph_offset_scale_too_large_296 : err_graph_offset_scale_too_large;
    }
    return error == 0 ? 0 : error_at_column(error, 0);
}

/// Colours, margins, clearance and axis weight, where given.
void apply_appearance(const PendingGraph& p) {
    GraphSettings& s = graph.settings;
    if (p.bgcolor_given) s.bgcolor = p.bgcolor;
    if (p.gridcolor_given) s.gridcolor = p.gridcolor;
    if (p.axiscolor_given) s.axiscolor = p.axiscolor;
    if (p.hmargin_given) s.hmargin = p.hmargin;
    if (p.vmargin_given) s.vmargin = p.vmargin;
    if (p.clearance >= 0.0) s.clearance = p.clearance;
    if (p.axisweight_given) s.axisweight = p.axisweight;
}

/// A scale-type change on an open graph; a switch to log must pass the data check.
int change_scale_type(bool horizontal, int type) {
    if (type < 0 || !set_axis_scale_type(horizontal, type) || type != scale_log) return 0;
    if (const int rc = log_scale_data_check(); rc < 0) {
        set_axis_scale_type(horizontal, scale_linear);
        return rc;
    }
    return 0;
}

/// The settings that parameters change as they are read (the switches and
/// flags) put back as they were before the statement.
void restore_switches(const GraphSettings& before) {
    GraphSettings& s = graph.settings;
    s.border = before.border, s.grid = before.grid, s.axes = before.axes, s.equalscales = before.equalscales;
    s.includexaxis = before.includexaxis, s.includeyaxis = before.includeyaxis;
    s.numberxaxis = before.numberxaxis, s.numberyaxis = before.numberyaxis, s.lockscreen = before.lockscreen;
}

int change_open_graph(const PendingGraph& p, const double (&before)[4], const GraphSettings& switches) {
    GraphWindow* window = host.graph_window;
    if (p.listparms) {
        // Only the listing: the other parameters were read, none applies.
        restore_switches(switches);
        list_graph_parameters();
        return 0;
    }
    if (p.end) {
        end_graph(true);
        return 0;
    }
    // A cancelled or failed output has been shown by the window; the
    // statement itself succeeds. METAFILE wins over JPEG.
    if (p.print) {
        (void)window->print_graph();
        return 0;
    }
    if (p.metafile) {
        (void)window->export_metafile();
        return 0;
    }
    if (p.jpeg) {
        (void)window->export_jpeg();
        return 0;
    }

    GraphSettings& s = graph.settings;
    if (p.width != 0.0 || p.height != 0.0) {
        if (p.width != 0.0) s.width = p.width;
        if (p.height != 0.0) s.height = p.height;
        window->resize_to_graph();
    }
    if (const int rc = change_scale_type(true, p.htype); rc < 0) return rc;
    if (const int rc = change_scale_type(false, p.vtype); rc < 0) return rc;
    apply_scales(p, false);
    if (const int rc = check_offsets(before); rc < 0) return rc;
    apply_appearance(p);
    window->update_menu_marks();
    if (p.others > 0) {
        graph.repaint_pending = true;
        window->repaint(true);
    }
    if (p.maximize) window->maximise();
    if (p.others == 0 && !p.maximize) return error_at_column(err_graph_already_active, 0);
    return 0;
}

int open_new_graph(const PendingGraph& p, const double (&before)[4]) {
    if (p.end || p.print || p.metafile || p.jpeg) return error_at_column(err_graph_end_print_metafile_not, p.exclusive_column);
    if (p.listparms) return error_at_column(err_graph_not_active, 0);
    GraphSettings& s = graph.settings;
    if (p.width != 0.0) s.width = p.width;
    if (p.height != 0.0) s.height = p.height;
    if (p.htype >= 0) set_axis_scale_type(true, p.htype);
    if (p.vtype >= 0) set_axis_scale_type(false, p.vtype);
    apply_scales(p, true);
    apply_appearance(p);
    if (const int rc = check_offsets(before); rc < 0) return rc;

    GraphWindow* window = host.graph_window;
    if (window == nullptr) return error_at_column(err_unable_create_graph_window, 0);
    graph.series.reserve(max_graph_elements);
    graph.texts.reserve(text_table_growth);
    graph.text_room = text_table_growth;
    graph.shape_room = initial_shape_room;
    graph.element_count = 0;
    graph.current_series = -1;
    graph.open = true;
    graph.repaint_pending = true;
    if (!window->create()) {
        graph.open = false;
        return error_at_column(err_unable_create_graph_window, 0);
    }
    if (p.maximize) window->maximise();
    return 0;
}

}  // namespace

bool set_axis_scale_type(bool horizontal, int type) {
    GraphSettings& s = graph.settings;
    int& log = horizontal ? s.hlog : s.vlog;
    int& datetime = horizontal ? s.hdatetime : s.vdatetime;
    const int old = log != 0 ? scale_log : datetime != 0 ? scale_datetime : scale_linear;
    if (old == type) return false;
    log = type == scale_log;
    datetime = type == scale_datetime;
    double& lo = horizontal ? s.hmin : s.vmin;
    double& hi = horizontal ? s.hmax : s.vmax;
    switch (type) {
        case scale_log: lo = log_axis_min, hi = log_axis_max; break;
        case scale_datetime: lo = datetime_axis_min, hi = datetime_axis_max; break;
        default: lo = linear_axis_min, hi = linear_axis_max; break;
    }
    (horizontal ? s.hscale : s.vscale) = 0.0;
    (horizontal ? s.hoffset : s.voffset) = 0.0;
    return true;
}

int do_graph() {
    if (console_refuses()) return error_at_column(err_graph_statement_not_valid_console, 0);
    const GraphSettings& s = graph.settings;
    const double before[4] = {s.hscale, s.vscale, s.hoffset, s.voffset};
    const GraphSettings switches = s;
    PendingGraph p;
    while (next_graph_parameter()) {
        int column = 0;
        const int slot = read_graph_parameter(Table::graph_parameters, err_invalid_graph_function, column);
        if (slot < 0) return slot;
        if (const int rc = read_parameter(p, slot, column); rc < 0) return rc;
    }
    if (const int rc = check_exclusive(p); rc < 0) return rc;
    if (graph_passing_over()) return 0;
    if (graph.open && host.graph_window == nullptr) reset_graph();  // the host took its window away
    return graph.open ? change_open_graph(p, before, switches) : open_new_graph(p, before);
}

void list_graph_parameters() {
    if (graph.open && graph.repaint_pending && host.graph_window != nullptr) host.graph_window->repaint_now();
    const GraphSettings& s = graph.settings;
    console_write("GRAPH parameters currently in effect:\n");
    console_write(s.grid != 0 ? "   GRID\n" : "   NOGRID\n");
    console_write(s.axes != 0 ? "   AXES\n" : "   NOAXES\n");
    console_write(s.border != 0 ? "   BORDER\n" : "   NOBORDER\n");
    if (s.equalscales != 0) console_write("   EQUALSCALES\n");
    console_print("   IncludeXAxis =   %4d\n", s.includexaxis);
    console_print("   IncludeYAxis =   %4d\n", s.includeyaxis);
    console_print("   NumberXAxis =   %4d\n", s.numberxaxis);
    console_print("   NumberYAxis =   %4d\n", s.numberyaxis);
    console_print("   Height       = %10.6g in.\n", s.height);
    console_print("   Width        = %10.6g in.\n", s.width);
    const auto type_line = [](const char* head, int log, int datetime) {
        console_write(head);
        console_write(log != 0 ? "Log\n" : datetime != 0 ? "DateTime\n" : "Linear\n");
    };
    // A value of 0 is chosen automatically: the value in use follows on a line of its own.
    const auto automatic_line = [](const char* format, double value, const char* calculated_format, double calculated) {
        console_print(format, value);
        if (value == 0.0) {
            console_write("(automatic)\n");
            console_print(calculated_format, calculated);
        } else {
            console_write("\n");
        }
    };
    const char* const scale_calculated = "              %10.6g data units/in. (calculated).\n";
    const char* const offset_calculated = "                %10.6g data units (calculated).\n";
    type_line("   HScaleType   =      ", s.hlog, s.hdatetime);
    automatic_line("   HScale       = %10.6g data units/in. ", s.hscale, scale_calculated, s.hscale_calculated);
    type_line("   VScaleType   =      ", s.vlog, s.vdatetime);
    automatic_line("   VScale       = %10.6g data units/in. ", s.vscale, scale_calculated, s.vscale_calculated);
    automatic_line("   HOffset      = %10.6g data units ", s.hoffset, offset_calculated, s.hoffset_calculated);
    automatic_line("   VOffset      = %10.6g data units ", s.voffset, offset_calculated, s.voffset_calculated);
    console_print("   HMargin      = %10.6g in. %s\n", s.hmargin, s.hmargin < 0 ? "(centered)" : "");
    console_print("   VMargin      = %10.6g in. %s\n", s.vmargin, s.vmargin < 0 ? "(centered)" : "");
    console_print("   AxisWeight   = %9.6g points.\n", s.axisweight);
    console_print("   Clearance    = %9.6g in.\n", s.clearance);
}

}  // namespace tl
