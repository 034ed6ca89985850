// series_path.h — the pixel points that draw a plot series.
//
// A series is drawn as a line through its points in their order (sorted by
// x, by y, or as they came). "average" n (0..10, whole points) replaces each
// y by the mean of the y values of the points up to n places before and
// after it (fewer at the ends). On a log axis the logarithms are used. For
// the screen, a series sorted by x with far more points than the plotting
// area has pixel columns keeps per column only its first, lowest, highest
// and last point, which draw the same picture; exports draw every point.
#pragma once

#include <vector>

#include "graph/graph_state.h"

namespace tl {

struct PathPoint {
    double x = 0.0;
    double y = 0.0;
};

/// Fills `out` with the drawing positions (see pixel_x_of / pixel_y_of) of
/// the counted points of `s`, reduced per pixel column when `reduce` is set.
/// `scratch` holds averaged values between calls (its storage is reused).
void series_pixels(const PlotSeries& s, bool reduce, std::vector<PathPoint>& out, std::vector<double>& scratch);

}  // namespace tl
