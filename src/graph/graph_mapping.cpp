// graph_mapping.cpp — the mapping between data and pixels, zoom, drag-move, clicks.
#include "graph/graph_mapping.h"

#include <cmath>

#include "exec/front_end.h"
#include "exec/graph_window.h"
#include "graph/graph_state.h"
#include "lang/lang_state.h"
#include "lang/predefined_variables.h"

namespace tl {
namespace {

/// One axis of the settings and the surface, seen the same way for both.
struct Axis {
    double& scale;
    double& offset;
    double& scale_calculated;
    double& offset_calculated;
    double min;  ///< axis limits of the scale type
    double max;
    bool datetime;
    double graph_inches;  ///< the graph's width or height
    double area_inches;   ///< the plotting area's width or height
};

Axis axis(bool horizontal) {
    GraphSettings& s = graph.settings;
    const GraphSurface& f = graph.surface;
    if (horizontal)
        return {s.hscale, s.hoffset, s.hscale_calculated, s.hoffset_calculated, s.hmin, s.hmax, s.hdatetime != 0,
                s.width, f.ppi_x > 0 ? f.area_width / f.ppi_x : 0.0};
    return {s.vscale, s.voffset, s.vscale_calculated, s.voffset_calculated, s.vmin, s.vmax, s.vdatetime != 0,
            s.height, f.ppi_y > 0 ? f.area_height / f.ppi_y : 0.0};
}

double ratio_limit(const Axis& a) { return a.datetime ? datetime_offset_ratio_limit : offset_ratio_limit; }

/// The lowest and highest offsets that keep the visible range inside the axis limits.
double lowest_offset(const Axis& a, double scale) { return a.area_inches * scale - a.max; }
double highest_offset(const Axis& a) { return -a.min; }

void repaint_full() {
    graph.repaint_pending = true;
    if (host.graph_window != nullptr) host.graph_window->repaint(true);
}

/// Makes a scale and offset the given ones (and the calculated ones).
void fix(Axis a, double scale, double offset) {
    a.scale = a.scale_calculated = scale;
    a.offset = a.offset_calculated = offset;
}

/// A whole pixel from an exact position, guarded against values outside int.
int whole_pixel(double v) {
    if (!(v > -1e9)) return -1000000000;
    if (!(v < 1e9)) return 1000000000;
    return static_cast<int>(v);
}

}  // namespace

double axis_value_x(double x) { return graph.settings.hlog != 0 ? std::log10(x) : x; }
double axis_value_y(double y) { return graph.settings.vlog != 0 ? std::log10(y) : y; }

int map_to_pixel_x(double x) {
    const GraphSurface& f = graph.surface;
    return whole_pixel(f.area_left + (axis_value_x(x) + graph.settings.hoffset_calculated) * f.ppdu_x + 0.5);
}

int map_to_pixel_y(double y) {
    const GraphSurface& f = graph.surface;
    const double up = (axis_value_y(y) + graph.settings.voffset_calculated) * f.ppdu_y + 0.5;
    return whole_pixel(f.area_top + f.area_height - 1.0 - static_cast<double>(whole_pixel(up)));
}

double pixel_x_of(double v) {
    const GraphSurface& f = graph.surface;
    return f.area_left + (v + graph.settings.hoffset_calculated) * f.ppdu_x + 0.5;
}

double pixel_y_of(double v) {
    const GraphSurface& f = graph.surface;
    return f.area_top + f.area_height - 0.5 - (v + graph.settings.voffset_calculated) * f.ppdu_y;
}

double map_to_data_x(double px) {
    const GraphSurface& f = graph.surface;
    const double v = (px - f.area_left - 0.5) / f.ppdu_x - graph.settings.hoffset_calculated;
    return graph.settings.hlog != 0 ? std::pow(10.0, v) : v;
}

double map_to_data_y(double py) {
    const GraphSurface& f = graph.surface;
    const double v = (f.area_top + f.area_height - 1.0 - py - 0.5) / f.ppdu_y - graph.settings.voffset_calculated;
    return graph.settings.vlog != 0 ? std::pow(10.0, v) : v;
}

int zoom_graph(int direction, double factor, bool horizontal_only) {
    const Axis h = axis(true);
    const Axis v = axis(false);
    const bool in = direction == 1;
    double hs = h.scale_calculated;
    double vs = v.scale_calculated;
    if (in) {
        hs /= factor;
        if (!horizontal_only) vs /= factor;
        if (hs < min_scale || vs < min_scale) {
            graph_message("Graph Zoom", "Unable to perform requested zoom. Scale factor would be too small.");
            return -1;
        }
    } else {
        hs *= factor;
        if (!horizontal_only) vs *= factor;
        if (!(hs < max_scale && vs < max_scale)) {
            graph_message("Graph Zoom", "Unable to perform requested zoom. Scale factor would be too large.");
            return -1;
        }
    }
    double ho = h.graph_inches / 2.0 * (hs - h.scale_calculated) + h.offset_calculated;
    double vo = v.graph_inches / 2.0 * (vs - v.scale_calculated) + v.offset_calculated;
    if (in) {
        if (std::fabs(ho / hs) > ratio_limit(h) || std::fabs(vo / vs) > ratio_limit(v)) {
            graph_message("Graph Zoom", "Unable to perform requested zoom. |Offset / scale| would be too large.");
            return -1;
        }
    } else {
        const auto keep_inside = [](const Axis& a, double scale, double& offset) {
            const double low = lowest_offset(a, scale);
            const double high = highest_offset(a);
            if (offset < low) {
                offset = low;
                return offset <= high;
            }
            if (offset > high) {
                offset = high;
                return offset >= low;
            }
            return true;
        };
        if (!keep_inside(h, hs, ho) || !keep_inside(v, vs, vo)) {
            graph_message("Graph Zoom", "Unable to perform requested zoom. Scale factor would be too large.");
            return -1;
        }
    }
    fix(h, hs, ho);
    fix(v, vs, vo);
    repaint_full();
    return 0;
}

int wheel_zoom(bool forward) {
    if (graph.settings.lockscreen != 0) return 0;
    return zoom_graph(forward ? 1 : 0, 1.1, false);
}

void drag_press(double px, double py, int key_state) {
    if ((key_state & (key_shift | key_ctrl)) != 0) return;
    GraphSettings& s = graph.settings;
    DragState& d = graph.drag;
    d.press_x = px;
    d.press_y = py;
    d.dragging = true;
    d.saved_hscale = s.hscale, d.saved_vscale = s.vscale;
    d.saved_hoffset = s.hoffset, d.saved_voffset = s.voffset;
    d.saved_hscale_calculated = s.hscale_calculated, d.saved_vscale_calculated = s.vscale_calculated;
    d.saved_hoffset_calculated = s.hoffset_calculated, d.saved_voffset_calculated = s.voffset_calculated;
    s.hscale = s.hscale_calculated, s.vscale = s.vscale_calculated;
    s.hoffset = s.hoffset_calculated, s.voffset = s.voffset_calculated;
    const Axis h = axis(true);
    const Axis v = axis(false);
    d.low_hoffset = lowest_offset(h, s.hscale), d.high_hoffset = highest_offset(h);
    d.low_voffset = lowest_offset(v, s.vscale), d.high_voffset = highest_offset(v);
    d.delta_x = d.delta_y = 0.0;
}

namespace {

/// Gives an axis back its values from the press.
void restore_axis(bool horizontal) {
    const DragState& d = graph.drag;
    GraphSettings& s = graph.settings;
    if (horizontal) {
        s.hscale = d.saved_hscale, s.hoffset = d.saved_hoffset;
        s.hscale_calculated = d.saved_hscale_calculated, s.hoffset_calculated = d.saved_hoffset_calculated;
    } else {
        s.vscale = d.saved_vscale, s.voffset = d.saved_voffset;
        s.vscale_calculated = d.saved_vscale_calculated, s.voffset_calculated = d.saved_voffset_calculated;
    }
}

/// Moves one axis by `delta` data units from its offset at the press.
/// Returns false when |offset / scale| would pass its limit.
bool move_axis(bool horizontal, double delta) {
    const DragState& d = graph.drag;
    Axis a = axis(horizontal);
    const double saved = horizontal ? d.saved_hoffset_calculated : d.saved_voffset_calculated;
    const double scale = horizontal ? d.saved_hscale_calculated : d.saved_vscale_calculated;
    const double candidate = saved + delta;
    if (std::fabs(candidate) / scale > ratio_limit(a)) return false;
    a.scale = a.scale_calculated = scale;
    const double low = horizontal ? d.low_hoffset : d.low_voffset;
    const double high = horizontal ? d.high_hoffset : d.high_voffset;
    double offset = candidate;
    if (delta < 0 && offset < low) offset = low;
    if (delta > 0 && offset > high) offset = high;
    a.offset = a.offset_calculated = offset;
    return true;
}

}  // namespace

void drag_move(double px, double py) {
    DragState& d = graph.drag;
    if (!d.dragging) return;
    const GraphSurface& f = graph.surface;
    const bool locked = graph.settings.lockscreen != 0;
    d.delta_x = (px - d.press_x) / f.ppdu_x;
    d.delta_y = -(py - d.press_y) / f.ppdu_y;
    for (int i = 0; i < 2; ++i) {
        const bool horizontal = i == 0;
        const bool moved = horizontal ? px != d.press_x : py != d.press_y;
        if (!moved || locked) {
            restore_axis(horizontal);
            continue;
        }
        if (!move_axis(horizontal, horizontal ? d.delta_x : d.delta_y)) {
            d.dragging = false;
            graph_message("Graph Move", "Unable to perform requested move. |Offset / scale| would be too large.");
            restore_axis(true);
            restore_axis(false);
            repaint_full();
            return;
        }
    }
    repaint_full();
}

void drag_release(double px, double py, int key_state) {
    DragState& d = graph.drag;
    if (d.dragging) {
        d.dragging = false;
        const bool locked = graph.settings.lockscreen != 0;
        if (locked || px == d.press_x) restore_axis(true);
        if (locked || py == d.press_y) restore_axis(false);
    }
    record_click(px, py, key_state);
    repaint_full();
}

void home_view() {
    if (graph.settings.lockscreen != 0) return;
    GraphSettings& s = graph.settings;
    s.hscale = s.vscale = s.hoffset = s.voffset = 0.0;
    repaint_full();
}

int zoom_to_rectangle(double x0, double y0, double x1, double y1) {
    if (graph.settings.lockscreen != 0) return 0;
    if (std::fabs(x1 - x0) < 3.0 || std::fabs(y1 - y0) < 3.0) return 0;
    const GraphSurface& f = graph.surface;
    // Values on the axes' own scales (logarithms on a log axis).
    const auto hv = [&](double px) { return (px - f.area_left - 0.5) / f.ppdu_x - graph.settings.hoffset_calculated; };
    const auto vv = [&](double py) {
        return (f.area_top + f.area_height - 1.0 - py - 0.5) / f.ppdu_y - graph.settings.voffset_calculated;
    };
    const Axis h = axis(true);
    const Axis v = axis(false);
    const double left = std::fmin(hv(x0), hv(x1));
    const double bottom = std::fmin(vv(y0), vv(y1));
    const double hs = std::fabs(hv(x1) - hv(x0)) / h.area_inches;
    const double vs = std::fabs(vv(y1) - vv(y0)) / v.area_inches;
    if (!(hs >= min_scale && vs >= min_scale)) {
        graph_message("Graph Zoom", "Unable to perform requested zoom. Scale factor would be too small.");
        return -1;
    }
    if (std::fabs(left / hs) > ratio_limit(h) || std::fabs(bottom / vs) > ratio_limit(v)) {
        graph_message("Graph Zoom", "Unable to perform requested zoom. |Offset / scale| would be too large.");
        return -1;
    }
    fix(h, hs, -left);
    fix(v, vs, -bottom);
    repaint_full();
    return 0;
}

void keep_axis_range(double left, double right, double bottom, double top) {
    const Axis h = axis(true);
    const Axis v = axis(false);
    if (!(h.area_inches > 0.0 && v.area_inches > 0.0 && right > left && top > bottom)) return;
    fix(h, (right - left) / h.area_inches, -left);
    fix(v, (top - bottom) / v.area_inches, -bottom);
    repaint_full();
}

int move_view(double dx, double dy) {
    if (graph.settings.lockscreen != 0) return 0;
    const GraphSurface& f = graph.surface;
    const double px = f.area_left + f.area_width / 2.0;
    const double py = f.area_top + f.area_height / 2.0;
    drag_press(px, py, 0);
    drag_move(px + dx, py + dy);
    if (!graph.drag.dragging) return -1;
    graph.drag.dragging = false;
    return 0;
}

void record_click(double px, double py, int key_state) {
    LastClick& c = graph.last_click;
    c.x = map_to_data_x(px);
    c.y = map_to_data_y(py);
    c.key_state = key_state & (key_shift | key_ctrl);
    c.pending = true;
    lang.predefined[pre_mousexcoord].number = c.x;
    lang.predefined[pre_mouseycoord].number = c.y;
    lang.predefined[pre_keystate].number = c.key_state;
}

int take_mouse_click() {
    const int r = graph.last_click.pending ? 1 : 0;
    graph.last_click.pending = false;
    return r;
}

}  // namespace tl
