// plot_series.cpp — PLOT: plot series, point insertion, data extents and the log-scale check.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "exec/commands.h"
#include "graph/graph_statements.h"
#include "graph/graph_values.h"
#include "lang/error_table.h"
#include "lang/keyword_tables.h"

namespace tl {
namespace {

/// The value stored for a plotted coordinate: NaN is 0, infinities are ±21474000.
double stored_coordinate(double v) {
    if (std::isnan(v)) return 0.0;
    if (std::isinf(v)) return v > 0 ? 21474000.0 : -21474000.0;
    return v;
}

/// Index of the first of the `count` points whose key is greater than the
/// new point's (the end when none is): binary search, as the points of a
/// sorted series are in order and equal keys keep their arrival order.
int insertion_index(const PlotSeries& s, double x, double y) {
    const PlotPoint* first = s.points.data();
    const PlotPoint* last = first + s.point_count;
    switch (s.sort_mode) {
        case sort_by_x:
            return static_cast<int>(
                std::upper_bound(first, last, x, [](double v, const PlotPoint& p) { return v < p.x; }) - first);
        case sort_by_y:
            return static_cast<int>(
                std::upper_bound(first, last, y, [](double v, const PlotPoint& p) { return v < p.y; }) - first);
        default: return s.point_count;
    }
}

struct PendingPlot {
    double lineweight = 3.0;
    int sort_mode = sort_by_x;
    Rgb color = 0;
    bool color_given = false;
    double average = 0.0;
    double smooth = 0.0;
    double x = 0.0, y = 0.0;
    bool x_given = false, y_given = false;
    int attributes = 0;
};

int read_plot_parameter(PendingPlot& p, int slot) {
    switch (slot) {
        case ppar_unsorted: p.sort_mode = sort_unsorted, ++p.attributes; return 0;
        case ppar_sortedx: p.sort_mode = sort_by_x, ++p.attributes; return 0;
        case ppar_sortedy: p.sort_mode = sort_by_y, ++p.attributes; return 0;
        default: break;
    }
    if (const int rc = expect_equal_sign(); rc < 0) return rc;
    if (slot == ppar_color) {
        ++p.attributes;
        p.color_given = true;
        return read_graph_colour(p.color);
    }
    double v = 0.0;
    if (const int rc = read_graph_number(v, err_invalid_value_plot_parameter); rc < 0) return rc;
    switch (slot) {
        case ppar_type: ++p.attributes; return 0;  // read, counted, and dropped on purpose
        case ppar_linetype: return 0;              // read and dropped on purpose
        case ppar_lineweight: p.lineweight = v, ++p.attributes; return check_graph_range(v, 0.0, 10.0);
        case ppar_x: p.x = v, p.x_given = true; return 0;
        case ppar_y: p.y = v, p.y_given = true; return 0;
        case ppar_average: p.average = v, ++p.attributes; return check_graph_range(v, 0.0, 10.0);
        case ppar_smooth: p.smooth = v, ++p.attributes; return check_graph_range(v, 0.0, 10.0);
        default: return 0;
    }
}

}  // namespace

int new_plot_series(double lineweight, int sort_mode, Rgb color, double average, double smooth) {
    if (graph.element_count >= max_graph_elements) {
        graph.current_series = -1;
        return error_at_column(err_graph_elements_table_full, 0);
    }
    PlotSeries s;
    s.lineweight = lineweight;
    s.sort_mode = sort_mode;
    s.color = color;
    s.average = average;
    s.smooth = smooth;
    try {
        s.points.reserve(series_growth);
        graph.series.push_back(std::move(s));
    } catch (const std::bad_alloc&) {
        graph.current_series = -1;
        return error_at_column(err_unable_allocate_memory_graph, 0);
    }
    graph.element_kinds[graph.element_count] = element_plot_series;
    graph.current_series = graph.element_count++;
    return 0;
}

int add_plot_point(double x, double y) {
    PlotSeries& s = graph.series[static_cast<std::size_t>(graph.current_series)];
    // The counted room grows by 50 points at a time; the storage behind it
    // grows geometrically, so a long series is not copied over and over.
    if (s.point_count >= s.capacity) s.capacity += series_growth;
    if (s.points.size() <= static_cast<std::size_t>(s.point_count)) {
        try {
            s.points.emplace_back();
        } catch (const std::bad_alloc&) {
            s.capacity = s.point_count;
            return error_at_column(err_plot_table_full, 0);
        }
    }
    x = stored_coordinate(x);
    y = stored_coordinate(y);
    const int at = insertion_index(s, x, y);
    PlotPoint* points = s.points.data();
    if (at < s.point_count)
        std::memmove(points + at + 1, points + at, static_cast<std::size_t>(s.point_count - at) * sizeof(PlotPoint));
    PlotPoint& p = points[at];
    p = PlotPoint{x, y, 0.0, 0.0};
    // Tested only now: a refused point stays at its place and the former last
    // point falls out of the counted range.
    const GraphSettings& g = graph.settings;
    if (g.hlog != 0) {
        if (!(x > 0.0)) return error_at_column(err_cannot_plot_negative_number_zero, 0);
        p.log_x = std::log10(x);
    }
    if (g.vlog != 0) {
        if (!(y > 0.0)) return error_at_column(err_cannot_plot_negative_number_zero, 0);
        p.log_y = std::log10(y);
    }
    s.drawn_count = ++s.point_count;
    DataExtents& e = graph.extents;
    e.xmin = std::min(e.xmin, x);
    e.xmax = std::max(e.xmax, x);
    e.ymin = std::min(e.ymin, y);
    e.ymax = std::max(e.ymax, y);
    graph.data_changed = true;
    return 0;
}

int log_scale_data_check() {
    const GraphSettings& g = graph.settings;
    if ((g.hlog != 0 && !(graph.extents.xmin > 0.0)) || (g.vlog != 0 && !(graph.extents.ymin > 0.0)))
        return error_at_column(err_cannot_plot_negative_number_zero, 0);
    for (int e = 0; e < graph.element_count; ++e) {
        if (graph.element_kinds[e] != element_plot_series) continue;
        PlotSeries& s = graph.series[static_cast<std::size_t>(e)];
        for (int i = 0; i < s.drawn_count; ++i) {
            PlotPoint& p = s.points[static_cast<std::size_t>(i)];
            if (g.hlog != 0) {
                if (!(p.x > 0.0)) return error_at_column(err_cannot_plot_negative_number_zero, 0);
                p.log_x = std::log10(p.x);
            }
            if (g.vlog != 0) {
                if (!(p.y > 0.0)) return error_at_column(err_cannot_plot_negative_number_zero, 0);
                p.log_y = std::log10(p.y);
            }
        }
    }
    return 0;
}

int do_plot() {
    PendingPlot p;
    while (next_graph_parameter()) {
        int column = 0;
        const int slot = read_graph_parameter(Table::plot_parameters, err_invalid_plot_function, column);
        if (slot < 0) return slot;
        if (const int rc = read_plot_parameter(p, slot); rc < 0) return rc;
    }
    if (graph_passing_over()) return 0;
    if (!graph.open) return error_at_column(err_graph_not_active_use_graph, 0);
    if (p.attributes > 0 || (!p.x_given && !p.y_given)) graph.current_series = -1;
    if (graph.current_series < 0) {
        const int rc = new_plot_series(p.lineweight, p.sort_mode, p.color_given ? p.color : 0, p.average, p.smooth);
        if (rc < 0) return rc;
    }
    if (p.x_given != p.y_given) return error_at_column(err_plot_requires_both_x_y, 0);
    if (p.x_given) {
        if (const int rc = add_plot_point(p.x, p.y); rc < 0) return rc;
    }
    request_graph_repaint();
    return 0;
}

}  // namespace tl
