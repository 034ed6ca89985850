// graph_mapping.h — data to pixels and back, zoom, the drag-move and the last click.
//
// Everything here works on graph.settings (the calculated scales and offsets)
// and graph.surface (pixels per inch and the plotting area), which the layout
// step fills before a paint. Pixel coordinates are those of the surface.
#pragma once

namespace tl {

/// A data value on an axis's own scale: its decimal logarithm on a log axis.
[[nodiscard]] double axis_value_x(double x);
[[nodiscard]] double axis_value_y(double y);

/// Whole pixels of a data point (0.5 added before truncation; rows counted
/// upward from the plotting area's bottom row).
[[nodiscard]] int map_to_pixel_x(double x);
[[nodiscard]] int map_to_pixel_y(double y);

/// The same without rounding, for drawing: the centre of the pixel that
/// map_to_pixel_* names for a value that maps exactly onto one. The value
/// given is on the axis's own scale (see axis_value_*).
[[nodiscard]] double pixel_x_of(double axis_value);
[[nodiscard]] double pixel_y_of(double axis_value);

/// Data values of a pixel position (ten to the power on a log axis).
[[nodiscard]] double map_to_data_x(double px);
[[nodiscard]] double map_to_data_y(double py);

/// Zooms by `factor` about the graph's centre: direction 1 in, any other out;
/// `horizontal_only` keeps the vertical scale. Returns 0, or -1 after a refusal
/// shown in a "Graph Zoom" box (nothing changed).
[[nodiscard]] int zoom_graph(int direction, double factor, bool horizontal_only);

/// One step of the mouse wheel: forward (`forward`) zooms in by 1.1, backward
/// out; nothing while the screen is locked. Returns 0 or -1 as zoom_graph.
int wheel_zoom(bool forward);

// Key-state bits of a mouse event.
inline constexpr int key_shift = 1;
inline constexpr int key_ctrl = 2;

/// The left button pressed, moved and released at pixel positions.
void drag_press(double px, double py, int key_state);
void drag_move(double px, double py);
void drag_release(double px, double py, int key_state);

/// Back to the automatic view (all scales and offsets automatic).
void home_view();

/// Zooms to the rectangle between two pixel corners. Returns 0, or -1 after
/// a refusal shown in a "Graph Zoom" box; a rectangle under 3 pixels either
/// way is ignored (0).
int zoom_to_rectangle(double x0, double y0, double x1, double y1);

/// Sets the scales so that the plotting area as now laid out shows left..right
/// and bottom..top (values on the axes' own scales): a zoom to a rectangle
/// keeps its corners when the new numbers change the room of the area.
void keep_axis_range(double left, double right, double bottom, double top);

/// Moves the view by a number of pixels (the arrow keys), with the limits of
/// a drag. Returns 0 or -1 after a refusal shown in a "Graph Move" box.
int move_view(double dx, double dy);

/// Records a click at a pixel position as the last click ("mousexcoord",
/// "mouseycoord", "keystate", "checkmouseclick").
void record_click(double px, double py, int key_state);

/// 1 when a click came since the last call (then forgotten), else 0.
[[nodiscard]] int take_mouse_click();

}  // namespace tl
