// graph_layout.cpp — plotting area, automatic scales and offsets.
#include "graph/graph_layout.h"

#include <algorithm>
#include <cmath>

#include "graph/graph_state.h"

namespace tl {
namespace {

struct AxisLayout {
    double lo = 0.0, hi = 1.0;  ///< data range to show, on the axis's own scale
    double scale = 0.0;
    double offset = 0.0;
};

/// The range an automatic axis shows: the data, 0 when asked for, never empty.
void range_to_show(bool horizontal, bool include_zero, int type, AxisLayout& a) {
    const bool log = type == scale_log;
    if (!data_range(horizontal, a.lo, a.hi)) {
        a.lo = 0.0;
        a.hi = type == scale_datetime ? 86400.0 : 1.0;  // a datetime axis: the first day of 1970
    }
    // Zero is no axis of logarithms, nor of dates.
    if (include_zero && type == scale_linear) {
        a.lo = std::min(a.lo, 0.0);
        a.hi = std::max(a.hi, 0.0);
    }
    if (!(a.hi > a.lo)) {
        const double d = log ? 0.5 : type == scale_datetime ? 3600.0 : (a.lo == 0.0 ? 1.0 : std::fabs(a.lo) * 0.05);
        a.lo -= d;
        a.hi += d;
    }
}

/// The scale and offset of one axis over `inches` of plotting area.
void fit_axis(AxisLayout& a, double given_scale, double given_offset, double inches, double clearance) {
    const double usable = std::max(inches - 2.0 * clearance, inches * 0.2);
    if (given_scale != 0.0) {
        a.scale = given_scale;
    } else if (given_offset != 0.0 && a.hi + given_offset > 0.0) {
        // Starts at -offset: the scale fits the data's top end.
        a.scale = (a.hi + given_offset) / std::max(inches - clearance, inches * 0.2);
    } else {
        a.scale = (a.hi - a.lo) / usable;
    }
    if (given_offset != 0.0) {
        a.offset = given_offset;
    } else if (given_scale != 0.0) {
        a.offset = -((a.lo + a.hi) / 2.0 - inches / 2.0 * a.scale);  // the data centred
    } else {
        a.offset = -(a.lo - clearance * a.scale);
    }
}

bool usable_ppdu(double v) { return v > 0.0 && std::isfinite(v); }

}  // namespace

bool data_range(bool horizontal, double& lo, double& hi) {
    const DataExtents& e = graph.extents;
    lo = horizontal ? e.xmin : e.ymin;
    hi = horizontal ? e.xmax : e.ymax;
    if (!(lo <= hi)) return false;
    const bool log = (horizontal ? graph.settings.hlog : graph.settings.vlog) != 0;
    if (log) {
        if (!(lo > 0.0)) return false;
        lo = std::log10(lo);
        hi = std::log10(hi);
    }
    return true;
}

int layout_graph(double ppi_x, double ppi_y, const LayoutRoom& room) {
    GraphSettings& s = graph.settings;
    GraphSurface& f = graph.surface;
    f.valid = false;
    f.ppi_x = ppi_x;
    f.ppi_y = ppi_y;
    f.width_px = s.width * ppi_x;
    f.height_px = s.height * ppi_y;
    if (!(f.width_px > 0.0 && f.height_px > 0.0 && std::isfinite(f.width_px) && std::isfinite(f.height_px)))
        return -1;

    double left = 0.0, right = 0.0, top = 0.0, bottom = 0.0;
    if (s.hmargin >= 0.0) {
        left = s.hmargin * ppi_x;
        right = room.right;
    } else {
        left = right = std::max(room.left, room.right);
    }
    if (s.vmargin >= 0.0) {
        top = s.vmargin * ppi_y;
        bottom = room.bottom;
    } else {
        top = bottom = std::max(room.top, room.bottom);
    }
    f.area_left = std::round(left);
    f.area_top = std::round(top);
    f.area_width = std::max(1.0, std::round(f.width_px - left - right));
    f.area_height = std::max(1.0, std::round(f.height_px - top - bottom));

    const double w_in = f.area_width / ppi_x;
    const double h_in = f.area_height / ppi_y;
    AxisLayout h, v;
    const auto type = [](int log, int datetime) { return log != 0 ? scale_log : datetime != 0 ? scale_datetime : scale_linear; };
    range_to_show(true, s.includeyaxis != 0, type(s.hlog, s.hdatetime), h);
    range_to_show(false, s.includexaxis != 0, type(s.vlog, s.vdatetime), v);
    fit_axis(h, s.hscale, s.hoffset, w_in, s.clearance);
    fit_axis(v, s.vscale, s.voffset, h_in, s.clearance);
    if (s.equalscales != 0 && s.hlog == 0 && s.vlog == 0) {
        // The vertical scale follows the horizontal one; when both are
        // automatic the larger wins, so all the data show, centred.
        const double common = s.hscale != 0.0 ? h.scale : std::max(h.scale, v.scale);
        if (s.hscale == 0.0) {
            h.scale = common;
            if (s.hoffset == 0.0) h.offset = -((h.lo + h.hi) / 2.0 - w_in / 2.0 * common);
        }
        v.scale = common;
        if (s.voffset == 0.0) v.offset = -((v.lo + v.hi) / 2.0 - h_in / 2.0 * common);
    }
    s.hscale_calculated = h.scale;
    s.vscale_calculated = v.scale;
    // (+ 0.0: an offset of minus a zero data value is listed as 0, not -0)
    s.hoffset_calculated = h.offset + 0.0;
    s.voffset_calculated = v.offset + 0.0;
    f.ppdu_x = ppi_x / h.scale;
    f.ppdu_y = ppi_y / v.scale;
    if (!usable_ppdu(f.ppdu_x) || !usable_ppdu(f.ppdu_y)) return -1;
    f.valid = true;
    return 0;
}

}  // namespace tl
