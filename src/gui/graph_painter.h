// graph_painter.h — draws the graph on any QPainter: screen, printer, metafile, image.
//
// The painter lays the graph out for the surface (graph_layout.h), then draws,
// in this order: the background, the grid, the series, the axes, the border,
// the ticks and their numbers, the axis labels and the text entries. All
// sizes given in points or inches become pixels through the pixels per inch
// of the surface, so every surface shows the same picture at its own
// resolution. Only the screen reduces long series (series_path.h).
#pragma once

#include <vector>

#include "graph/series_path.h"

class QPainter;
class QImage;

namespace tl {

/// Output targets: what the painter draws on.
enum OutputTarget : int {
    target_screen = 1,
    target_printer = 2,
    target_metafile = 3,
    target_image = 4,
};

/// Storage the painter reuses from paint to paint.
struct GraphPaintState {
    std::vector<PathPoint> path;
    std::vector<double> scratch;
};

/// Paints the whole graph with its top-left corner at the painter's origin,
/// at `ppi_x` by `ppi_y` of the painter's units per inch. Returns 0, or -1
/// when the scales leave no pixels per data unit; the surface then shows
/// only the background, and the caller tells the user "Horizontal or
/// Vertical Scale is too small".
[[nodiscard]] int paint_graph(QPainter& painter, double ppi_x, double ppi_y, int target, GraphPaintState& state);

/// Draws text entry `index` alone, on the layout of the last paint.
void paint_text_entry(QPainter& painter, int index);

/// Lays the graph out for a surface of `ppi` pixels per inch, as a paint
/// there would (the calculated scales and offsets, the plotting area), on a
/// surface of one pixel: nothing of the graph's size is allocated. Returns 0
/// or -1 as paint_graph.
[[nodiscard]] int lay_out_graph(double ppi, int target, GraphPaintState& state);

/// Renders the graph into a new image of its size at `ppi` pixels per inch
/// (white where nothing is drawn). Returns 0 or -1 as paint_graph.
[[nodiscard]] int render_graph_image(QImage& image, double ppi, int target, GraphPaintState& state);

}  // namespace tl
