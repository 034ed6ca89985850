// series_path.cpp — drawing positions of a plot series: averaging and per-column reduction.
#include "graph/series_path.h"

#include <algorithm>
#include <cmath>

#include "graph/graph_mapping.h"

namespace tl {
namespace {

/// Pixel positions far outside the surface are held at a bound that drawing
/// code takes safely; lines to them keep their direction closely enough.
double bounded(double v) { return v < -1e7 ? -1e7 : v > 1e7 ? 1e7 : std::isnan(v) ? 0.0 : v; }

double x_of(const PlotPoint& p, bool log) { return log ? p.log_x : p.x; }
double y_of(const PlotPoint& p, bool log) { return log ? p.log_y : p.y; }

}  // namespace

void series_pixels(const PlotSeries& s, bool reduce, std::vector<PathPoint>& out, std::vector<double>& scratch) {
    out.clear();
    const int n = s.point_count;
    if (n <= 0) return;
    const bool hlog = graph.settings.hlog != 0;
    const bool vlog = graph.settings.vlog != 0;
    const PlotPoint* p = s.points.data();

    // The y values, averaged when asked.
    const int window = static_cast<int>(s.average);
    scratch.resize(static_cast<std::size_t>(n));
    if (window > 0) {
        double sum = 0.0;
        int lo = 0, hi = -1;  // the points summed: [lo, hi]
        for (int i = 0; i < n; ++i) {
            const int want_lo = std::max(0, i - window);
            const int want_hi = std::min(n - 1, i + window);
            while (hi < want_hi) sum += y_of(p[++hi], vlog);
            while (lo < want_lo) sum -= y_of(p[lo++], vlog);
            scratch[static_cast<std::size_t>(i)] = sum / (hi - lo + 1);
        }
    } else {
        for (int i = 0; i < n; ++i) scratch[static_cast<std::size_t>(i)] = y_of(p[i], vlog);
    }

    const GraphSurface& f = graph.surface;
    int first = 0, last = n - 1;
    const bool by_x = s.sort_mode == sort_by_x;
    if (reduce && by_x && static_cast<double>(n) > 4.0 * f.area_width) {
        // Only the points over the area, and one beyond each side for the
        // lines that leave it.
        const double left = (-0.5 / f.ppdu_x) - graph.settings.hoffset_calculated;
        const double right = left + (f.area_width + 1.0) / f.ppdu_x;
        const auto before = [&](const PlotPoint& q, double v) { return x_of(q, hlog) < v; };
        first = static_cast<int>(std::lower_bound(p, p + n, left, before) - p);
        last = static_cast<int>(std::lower_bound(p, p + n, right, before) - p);
        first = std::max(0, first - 1);
        last = std::min(n - 1, last);
        int column_start = first;
        while (column_start <= last) {
            const double cx = std::floor(pixel_x_of(x_of(p[column_start], hlog)));
            int i = column_start;
            int lowest = i, highest = i;
            while (i + 1 <= last && std::floor(pixel_x_of(x_of(p[i + 1], hlog))) == cx) {
                ++i;
                if (scratch[static_cast<std::size_t>(i)] < scratch[static_cast<std::size_t>(lowest)]) lowest = i;
                if (scratch[static_cast<std::size_t>(i)] > scratch[static_cast<std::size_t>(highest)]) highest = i;
            }
            const int keep[4] = {column_start, std::min(lowest, highest), std::max(lowest, highest), i};
            for (int k = 0; k < 4; ++k) {
                if (k > 0 && keep[k] == keep[k - 1]) continue;
                const PlotPoint& q = p[keep[k]];
                out.push_back({bounded(pixel_x_of(x_of(q, hlog))),
                               bounded(pixel_y_of(scratch[static_cast<std::size_t>(keep[k])]))});
            }
            column_start = i + 1;
        }
        return;
    }
    out.reserve(static_cast<std::size_t>(n));
    for (int i = first; i <= last; ++i)
        out.push_back({bounded(pixel_x_of(x_of(p[i], hlog))), bounded(pixel_y_of(scratch[static_cast<std::size_t>(i)]))});
}

}  // namespace tl
