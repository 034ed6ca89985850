// graph_layout.h — the layout step: the plotting area and the automatic scales and offsets.
//
// The graph is width x height inches; on a surface of ppi_x by ppi_y pixels
// per inch it covers width * ppi_x by height * ppi_y pixels. The plotting
// area lies inside it, leaving the margins: a margin of 0 or more is kept as
// given on its side (left for hmargin, top for vmargin) and the other side
// gets the room its numbers and labels need; a negative margin centres the
// plotting area, giving both sides the larger room.
//
// An automatic scale spreads the data range, less the clearance at each end,
// over the plotting area; the range takes in 0 when the include-axis setting
// asks for it (includexaxis: the vertical range takes in y = 0, so that the
// x axis shows; includeyaxis likewise for x = 0). With equal scales both
// automatic scales become the larger one and the data are centred.
#pragma once

namespace tl {

/// Room needed around the plotting area for numbers and labels, in pixels.
struct LayoutRoom {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
};

/// Lays the graph out on a surface with the given pixels per inch: fills
/// graph.surface and the calculated scales and offsets of graph.settings.
/// Returns 0, or -1 when a scale leaves no pixels per data unit (0 or
/// infinite: "Horizontal or Vertical Scale is too small"; nothing can be drawn).
[[nodiscard]] int layout_graph(double ppi_x, double ppi_y, const LayoutRoom& room);

/// The range of the data on an axis's own scale (logarithms on a log axis):
/// false when there is none.
[[nodiscard]] bool data_range(bool horizontal, double& lo, double& hi);

}  // namespace tl
