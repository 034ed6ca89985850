// graph_state.h — the graph's process-wide record: settings, series, texts, surface, drag.
//
// Units: lengths in inches, line weights in points, scales in data units per
// inch, offsets in data units. Colours are 24-bit values packed red in the low
// byte, green in the middle byte, blue in the high byte. On a logarithmic axis
// scales, offsets and limits are in decimal logarithms of the data.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "lang/scan_state.h"

namespace tl {

using Rgb = std::uint32_t;

enum ScaleType : int {
    scale_linear = 0,
    scale_log = 1,
    scale_datetime = 2,
};

/// The range of values an axis of each scale type can take.
inline constexpr double linear_axis_min = -1.7976931348623157e308;
inline constexpr double linear_axis_max = 1.7976931348623157e308;
inline constexpr double log_axis_min = -323.30621534311587;  // log10 of the smallest denormal
inline constexpr double log_axis_max = 308.25471555991675;   // log10 of the largest double
inline constexpr double datetime_axis_min = -1.593625448111377e17;
inline constexpr double datetime_axis_max = 1.593625448111377e17;

/// |offset / scale| allowed on a datetime axis, and on the others.
inline constexpr double datetime_offset_ratio_limit = 1.2e15;
inline constexpr double offset_ratio_limit = 100000010.0;
inline constexpr double min_scale = 1e-306;
inline constexpr double max_scale = 1e307;

inline constexpr int max_graph_elements = 100;
inline constexpr int series_growth = 50;
inline constexpr int text_table_growth = 50;
inline constexpr int max_text_entries = 20000;
inline constexpr int initial_shape_room = 50;
inline constexpr int max_shapes = 20000;

/// The user's settings of the graph (GRAPH); the painter fills the calculated values.
struct GraphSettings {
    double width = 7.5;
    double height = 10.0;
    int border = 1;
    int grid = 1;
    int axes = 1;
    double hscale = 0.0;  ///< 0 = automatic
    double vscale = 0.0;
    double hscale_calculated = 0.0;
    double vscale_calculated = 0.0;
    double hoffset = 0.0;  ///< minus the data value at the plotting area's left edge; 0 = automatic
    double voffset = 0.0;  ///< minus the data value at its bottom edge; 0 = automatic
    double hoffset_calculated = 0.0;
    double voffset_calculated = 0.0;
    double hmargin = -1.0;  ///< left margin; negative = centred
    double vmargin = -1.0;  ///< top margin; negative = centred
    double axisweight = 1.5;
    double clearance = 0.1;
    int includexaxis = 1;  ///< the automatic vertical range takes in y = 0
    int includeyaxis = 1;  ///< the automatic horizontal range takes in x = 0
    int numberxaxis = 1;
    int numberyaxis = 1;
    int lockscreen = 0;
    Rgb bgcolor = 0xFFFFFF;
    Rgb gridcolor = 0x808080;
    Rgb axiscolor = 0x000000;
    int hlog = 0;
    int vlog = 0;
    int hdatetime = 0;
    int vdatetime = 0;
    int equalscales = 0;
    double hmin = linear_axis_min;
    double hmax = linear_axis_max;
    double vmin = linear_axis_min;
    double vmax = linear_axis_max;
};

/// Sort modes of a plot series.
enum SortMode : int {
    sort_unsorted = 0,
    sort_by_x = 1,
    sort_by_y = 2,
};

struct PlotPoint {
    double x = 0.0;
    double y = 0.0;
    double log_x = 0.0;  ///< log10(x), filled while the horizontal axis is logarithmic
    double log_y = 0.0;
};

/// One PLOT series. `points` may hold more entries than `point_count` (a
/// refused point on a log axis leaves the former last point behind the count).
struct PlotSeries {
    double lineweight = 3.0;
    int sort_mode = sort_by_x;
    Rgb color = 0;
    double smooth = 0.0;
    double average = 0.0;
    int drawn_count = 0;
    int capacity = series_growth;  ///< room in points, grown by 50 at a time
    int point_count = 0;
    std::vector<PlotPoint> points;
};

enum GraphElementKind : int {
    element_plot_series = 1,
};

enum Justify : int {
    justify_left = 0,
    justify_center = 1,
    justify_right = 2,
};

enum PositionMode : int {
    position_percent = 1,
    position_data = 2,
};

inline constexpr int font_name_size = 32;  // 31 characters and the NUL

/// One free text entry of the graph (TEXT).
struct TextEntry {
    int hmode = position_percent;
    int vmode = position_percent;
    double hpos = 50.0;
    double vpos = 85.0;
    double x2 = 0.0;
    double y2 = 0.0;
    int x2_given = 0;
    int y2_given = 0;
    ValueReference text_variable;  ///< the string variable whose value is shown
    double size = 0.0;      ///< points, 6..100; 0 when not given
    double datasize = 0.0;  ///< data units; 0 when not given
    Rgb color = 0;
    int boxed = 0;
    int bold = 0;
    int italic = 0;
    double angle = 0.0;  ///< radians, 0 <= angle < 2 pi
    int justify = justify_center;
    char font_name[font_name_size] = {};
    int state[2] = {0, 0};  ///< the painter's own
};

/// The label of one axis (TEXT XAXIS / YAXIS).
struct AxisLabel {
    int set = 0;
    double size = 0.0;  ///< points; 0 = the painter's default
    ValueReference text_variable;
    Rgb color = 0;
    double position = 50.0;  ///< along the axis, percent
    int bold = 0;
    int italic = 0;
    char font_name[font_name_size] = {};
};

/// Data extents over every series, in data units (raw values, also on log axes).
struct DataExtents {
    double xmin = std::numeric_limits<double>::infinity();
    double xmax = -std::numeric_limits<double>::infinity();
    double ymin = std::numeric_limits<double>::infinity();
    double ymax = -std::numeric_limits<double>::infinity();
};

/// The surface being drawn on and where the plotting area lies on it: the
/// mapping between data and pixels reads only this and the calculated
/// scales and offsets.
struct GraphSurface {
    double ppi_x = 96.0;  ///< pixels per inch
    double ppi_y = 96.0;
    double width_px = 0.0;  ///< the whole graph
    double height_px = 0.0;
    double area_left = 0.0;  ///< the plotting area, in pixels
    double area_top = 0.0;
    double area_width = 0.0;
    double area_height = 0.0;
    double ppdu_x = 0.0;  ///< pixels per data unit
    double ppdu_y = 0.0;
    bool valid = false;  ///< a layout has been made
};

/// The left-button drag in progress.
struct DragState {
    bool dragging = false;
    double press_x = 0.0;  ///< pixels
    double press_y = 0.0;
    double saved_hscale = 0.0, saved_vscale = 0.0, saved_hoffset = 0.0, saved_voffset = 0.0;
    double saved_hscale_calculated = 0.0, saved_vscale_calculated = 0.0;
    double saved_hoffset_calculated = 0.0, saved_voffset_calculated = 0.0;
    double low_hoffset = 0.0, high_hoffset = 0.0;  ///< allowed offsets
    double low_voffset = 0.0, high_voffset = 0.0;
    double delta_x = 0.0;  ///< last deltas, data units
    double delta_y = 0.0;
};

/// The last click on the graph window, for "checkmouseclick".
struct LastClick {
    bool pending = false;  ///< not yet reported by checkmouseclick
    double x = 0.0;
    double y = 0.0;
    int key_state = 0;  ///< 1 Shift + 2 Ctrl
};

struct GraphState {
    bool open = false;
    GraphSettings settings;
    /// The graph elements table (kind 1: plot series).
    int element_kinds[max_graph_elements] = {};
    std::vector<PlotSeries> series;  ///< element i's series is series[i]
    int element_count = 0;
    int current_series = -1;
    DataExtents extents;
    bool data_changed = false;
    /// Text entries (room grows by 50 up to 20000), the axis labels, the defaults.
    std::vector<TextEntry> texts;
    int text_room = 0;
    AxisLabel xaxis_label;
    AxisLabel yaxis_label;
    char default_font[font_name_size] = {};
    int default_bold = 1;
    int default_italic = 0;
    /// Room for shapes (the SHAPE family uses it).
    int shape_room = 0;
    /// Numbers of the hidden "_textstr%d$" variables made so far.
    int text_constant_counter = 0;
    /// Column of the last parameter value read (for the range check's caret).
    int value_column = 0;
    /// A repaint has been asked for and not yet done.
    bool repaint_pending = false;
    GraphSurface surface;
    DragState drag;
    LastClick last_click;
};

extern GraphState graph;

/// Puts every setting back to its default, releases the series, texts and
/// labels, sets the scale types to linear and marks the graph closed. Run at
/// start-up and whenever the graph ends.
void reset_graph();

/// Ends an open graph: closes the window (when `close_window`) and resets.
void end_graph(bool close_window);

/// Asks the window for a repaint unless one is pending already.
void request_graph_repaint();

/// Repaints the graph if it is open (END, the end of a run, trace).
void repaint_graph_if_open();

/// Shows a message box on the graph window (nothing without a window).
void graph_message(const char* caption, const char* text);

}  // namespace tl
