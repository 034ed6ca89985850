// graph_painter.cpp — layout, grid, series, axes, ticks, numbers, labels and text over QPainter.
#include "gui/graph_painter.h"

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPaintDevice>
#include <QPolygonF>
#include <QString>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "graph/axis_ticks.h"
#include "graph/graph_layout.h"
#include "graph/graph_mapping.h"
#include "graph/graph_state.h"
#include "graph/graph_statements.h"

namespace tl {
namespace {

constexpr double number_points = 9.0;
constexpr double label_points = 11.0;
constexpr double text_points = 12.0;
constexpr double title_percent = 90.0;  ///< texts at this height or higher are titles
constexpr double tick_points = 4.0;
constexpr double minor_tick_points = 2.0;
constexpr double gap_points = 3.0;
constexpr double pad_inches = 0.12;

QColor colour_of(Rgb c) { return QColor(static_cast<int>(c & 0xFF), static_cast<int>(c >> 8 & 0xFF), static_cast<int>(c >> 16 & 0xFF)); }

/// What one paint works with: the surface's resolution and the fonts.
struct Frame {
    QPainter& p;
    double ppi_x;
    double ppi_y;
    double device_dpi;
    QFont number_font;
    AxisTicks hticks;
    AxisTicks vticks;

    double px(double points) const { return points * ppi_y / 72.0; }
    /// A font of `pixels` height in the painter's units.
    QFont font(const char* family, double pixels, bool bold, bool italic) const {
        QFont f;
        if (family != nullptr && family[0] != 0) {
            f.setFamily(QString::fromUtf8(family));
        } else {
            f.setStyleHint(QFont::SansSerif);
            f.setFamily(QStringLiteral("DejaVu Sans"));
        }
        f.setPointSizeF(std::max(0.5, pixels * 72.0 / device_dpi));
        f.setBold(bold);
        f.setItalic(italic);
        f.setHintingPreference(QFont::PreferNoHinting);
        return f;
    }
    QFontMetricsF metrics(const QFont& f) const { return QFontMetricsF(f, p.device()); }
};

/// The width of a label of one or more lines: its widest line.
double text_width(const QFontMetricsF& m, const char* label) {
    double w = 0.0;
    for (const QString& line : QString::fromUtf8(label).split(QLatin1Char('\n'))) w = std::max(w, m.horizontalAdvance(line));
    return w;
}

/// The most lines any label of an axis has.
int label_lines(const AxisTicks& t) {
    int lines = 1;
    for (int i = 0; i < t.count; ++i)
        if (std::strchr(t.label[i], '\n') != nullptr) lines = 2;
    return lines;
}

/// The visible range of an axis on its own scale.
void visible_range(bool horizontal, double& lo, double& hi) {
    const GraphSettings& s = graph.settings;
    const GraphSurface& f = graph.surface;
    if (horizontal) {
        lo = -s.hoffset_calculated;
        hi = lo + f.area_width / f.ppdu_x;
    } else {
        lo = -s.voffset_calculated;
        hi = lo + f.area_height / f.ppdu_y;
    }
}

void make_ticks(Frame& fr) {
    const GraphSettings& s = graph.settings;
    const GraphSurface& f = graph.surface;
    double lo = 0.0, hi = 0.0;
    visible_range(true, lo, hi);
    const double hspace = 0.6 * fr.ppi_x;
    if (s.hlog != 0) {
        log_ticks(lo, hi, f.area_width, hspace, fr.hticks);
    } else if (s.hdatetime != 0) {
        // Dates are wide: room for the widest kind of label.
        const double wide = fr.metrics(fr.number_font).horizontalAdvance(QStringLiteral("2026-11-24 09:15:30")) * 1.25;
        datetime_ticks(lo, hi, f.area_width, std::max(hspace, wide), fr.hticks);
        const QFontMetricsF m = fr.metrics(fr.number_font);
        double widest = 0.0;
        for (int i = 0; i < fr.hticks.count; ++i)
            widest = std::max(widest, text_width(m, fr.hticks.label[i]));
        if (fr.hticks.count > 0) datetime_ticks(lo, hi, f.area_width, std::max(hspace, widest * 1.3), fr.hticks);
    } else {
        // About one number every 0.6 inch, never closer than its labels
        // allow: a wider step gets other labels, so measure again.
        const QFontMetricsF m = fr.metrics(fr.number_font);
        double least = 0.45 * fr.ppi_x;
        for (int pass = 0; pass < 3; ++pass) {
            linear_ticks(lo, hi, f.area_width, hspace, fr.hticks, least);
            double widest = 0.0;
            for (int i = 0; i < fr.hticks.count; ++i)
                widest = std::max(widest, text_width(m, fr.hticks.label[i]));
            const double room = widest + 0.15 * fr.ppi_x;
            if (fr.hticks.count < 2 || fr.hticks.value[1] - fr.hticks.value[0] >=
                                           room * (hi - lo) / f.area_width) break;
            least = std::max(least, room);
        }
    }
    visible_range(false, lo, hi);
    const double vspace = 0.5 * fr.ppi_y;
    if (s.vlog != 0) {
        log_ticks(lo, hi, f.area_height, vspace, fr.vticks);
    } else if (s.vdatetime != 0) {
        datetime_ticks(lo, hi, f.area_height, vspace, fr.vticks);
    } else {
        // A short axis (an inch or so) still gets three numbers, with the
        // height of a digit between them at the least.
        const double line = fr.metrics(fr.number_font).height();
        linear_ticks(lo, hi, f.area_height, vspace, fr.vticks, std::max(0.35 * fr.ppi_y, 2.0 * line), 3, 1.25 * line);
    }
}

/// Width of a tick label as drawn (a power of ten is "10" and a raised exponent).
double label_width(const Frame& fr, const AxisTicks& t, int i) {
    const QFontMetricsF m = fr.metrics(fr.number_font);
    const QString text = QString::fromUtf8(t.label[i]);
    if (!t.power_labels) return text_width(m, t.label[i]);
    QFont small = fr.number_font;
    small.setPointSizeF(fr.number_font.pointSizeF() * 0.75);
    return m.horizontalAdvance(QStringLiteral("10")) + fr.metrics(small).horizontalAdvance(text);
}

double label_height(const Frame& fr, const AxisLabel& label) {
    if (label.set == 0) return 0.0;
    const double pts = label.size > 0 ? label.size : label_points;
    return fr.metrics(fr.font(label.font_name, fr.px(pts), label.bold != 0, label.italic != 0)).height();
}

/// The room around the plotting area for numbers and labels.
LayoutRoom room_for(const Frame& fr, double widest_vertical_number, int horizontal_lines) {
    const GraphSettings& s = graph.settings;
    const QFontMetricsF number_metrics = fr.metrics(fr.number_font);
    const double number_height = number_metrics.height();
    const double pad = pad_inches * fr.ppi_y;
    LayoutRoom r;
    r.bottom = pad + fr.px(tick_points + gap_points);
    if (s.numberxaxis != 0) r.bottom += number_height + (horizontal_lines - 1) * number_metrics.lineSpacing();
    if (graph.xaxis_label.set != 0) r.bottom += fr.px(gap_points * 2) + label_height(fr, graph.xaxis_label);
    r.left = pad_inches * fr.ppi_x + fr.px(tick_points + gap_points);
    if (s.numberyaxis != 0) r.left += widest_vertical_number;
    if (graph.yaxis_label.set != 0) r.left += fr.px(gap_points * 2) + label_height(fr, graph.yaxis_label);
    r.top = pad + number_height / 2;
    // A title: a level text placed by percent in the top tenth of the graph
    // gets room above the plotting area, so that the two do not overlap.
    for (const TextEntry& e : graph.texts) {
        if (e.vmode != position_percent || e.vpos < title_percent || e.angle != 0.0 || e.datasize > 0 || e.y2_given)
            continue;
        if (graph_text(e.text_variable)[0] == 0) continue;
        const double pixels = (e.size > 0 ? e.size : text_points) * fr.ppi_y / 72.0;
        const double height = fr.metrics(fr.font(e.font_name, pixels, e.bold != 0, e.italic != 0)).height();
        const double bottom = s.height * fr.ppi_y * (1.0 - e.vpos / 100.0) + height / 2;
        r.top = std::max(r.top, bottom + pad);
    }
    r.right = pad_inches * fr.ppi_x + (s.numberxaxis != 0 ? fr.metrics(fr.number_font).horizontalAdvance("00000") / 2 : 0);
    return r;
}

QRectF area_rect() {
    const GraphSurface& f = graph.surface;
    return QRectF(f.area_left, f.area_top, f.area_width, f.area_height);
}

QPen pen(const QColor& c, double width) {
    QPen q(c, width);
    q.setCapStyle(Qt::FlatCap);
    q.setJoinStyle(Qt::MiterJoin);
    return q;
}

void draw_grid(Frame& fr) {
    const GraphSettings& s = graph.settings;
    const QRectF area = area_rect();
    QColor major = colour_of(s.gridcolor);
    major.setAlpha(110);
    QColor minor = colour_of(s.gridcolor);
    minor.setAlpha(45);
    fr.p.save();
    fr.p.setClipRect(area);
    const auto vertical_lines = [&](const double* v, int n, const QColor& c) {
        fr.p.setPen(pen(c, fr.px(0.5)));
        for (int i = 0; i < n; ++i) {
            const double x = pixel_x_of(v[i]);
            fr.p.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
        }
    };
    const auto horizontal_lines = [&](const double* v, int n, const QColor& c) {
        fr.p.setPen(pen(c, fr.px(0.5)));
        for (int i = 0; i < n; ++i) {
            const double y = pixel_y_of(v[i]);
            fr.p.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
        }
    };
    vertical_lines(fr.hticks.minor, fr.hticks.minor_count, minor);
    horizontal_lines(fr.vticks.minor, fr.vticks.minor_count, minor);
    vertical_lines(fr.hticks.value, fr.hticks.count, major);
    horizontal_lines(fr.vticks.value, fr.vticks.count, major);
    fr.p.restore();
}

/// A series as a curve through its points: Catmull-Rom segments whose
/// bends grow with `amount` (0..1).
QPainterPath smooth_path(const std::vector<PathPoint>& pts, double amount) {
    QPainterPath path(QPointF(pts[0].x, pts[0].y));
    const std::size_t n = pts.size();
    const double t = amount / 6.0;
    for (std::size_t i = 0; i + 1 < n; ++i) {
        const PathPoint& p0 = pts[i == 0 ? 0 : i - 1];
        const PathPoint& p1 = pts[i];
        const PathPoint& p2 = pts[i + 1];
        const PathPoint& p3 = pts[i + 2 < n ? i + 2 : n - 1];
        path.cubicTo(QPointF(p1.x + (p2.x - p0.x) * t, p1.y + (p2.y - p0.y) * t),
                     QPointF(p2.x - (p3.x - p1.x) * t, p2.y - (p3.y - p1.y) * t), QPointF(p2.x, p2.y));
    }
    return path;
}

void draw_series(Frame& fr, int target, GraphPaintState& state) {
    fr.p.save();
    fr.p.setClipRect(area_rect());
    for (int e = 0; e < graph.element_count; ++e) {
        if (graph.element_kinds[e] != element_plot_series) continue;
        const PlotSeries& s = graph.series[static_cast<std::size_t>(e)];
        series_pixels(s, target == target_screen, state.path, state.scratch);
        if (state.path.empty()) continue;
        double width = s.lineweight > 0 ? fr.px(s.lineweight) : 0.0;  // 0: the thinnest line
        // A reduced series needs lines of a pixel at least to fill its columns.
        if (target == target_screen && state.path.size() < static_cast<std::size_t>(s.point_count) && width > 0)
            width = std::max(width, 1.0);
        QPen q(colour_of(s.color), width);
        q.setCapStyle(Qt::RoundCap);
        q.setJoinStyle(Qt::RoundJoin);
        if (state.path.size() == 1) {
            // One point: a dot as wide as the line.
            const double d = std::max(width, fr.px(2.0));
            fr.p.setPen(Qt::NoPen);
            fr.p.setBrush(colour_of(s.color));
            fr.p.drawEllipse(QPointF(state.path[0].x, state.path[0].y), d / 2, d / 2);
            fr.p.setBrush(Qt::NoBrush);
            continue;
        }
        fr.p.setPen(q);
        if (s.smooth > 0.0 && state.path.size() > 2) {
            fr.p.drawPath(smooth_path(state.path, s.smooth / 10.0));
        } else {
            // In short pieces: one long self-crossing outline costs the
            // rasteriser far more than many short ones, and round caps join
            // the pieces without a seam.
            static_assert(sizeof(PathPoint) == sizeof(QPointF));
            const auto* points = reinterpret_cast<const QPointF*>(state.path.data());
            const std::size_t n = state.path.size();
            constexpr std::size_t piece = 8;
            for (std::size_t i = 0; i + 1 < n; i += piece)
                fr.p.drawPolyline(points + i, static_cast<int>(std::min(piece + 1, n - i)));
        }
    }
    fr.p.restore();
}

/// The lines through the origin, where it is in view on a linear axis.
void draw_axes(Frame& fr) {
    const GraphSettings& s = graph.settings;
    const QRectF area = area_rect();
    fr.p.save();
    fr.p.setClipRect(area.adjusted(-fr.px(s.axisweight), -fr.px(s.axisweight), fr.px(s.axisweight), fr.px(s.axisweight)));
    fr.p.setPen(pen(colour_of(s.axiscolor), fr.px(s.axisweight)));
    double lo = 0.0, hi = 0.0;
    visible_range(false, lo, hi);
    if (s.vlog == 0 && lo <= 0.0 && hi >= 0.0) {
        const double y = pixel_y_of(0.0);
        fr.p.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
    visible_range(true, lo, hi);
    if (s.hlog == 0 && lo <= 0.0 && hi >= 0.0) {
        const double x = pixel_x_of(0.0);
        fr.p.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    }
    fr.p.restore();
}

/// Draws a tick label with its reference point at (x, y): `align` as Qt's
/// (left/right/centre, top/vcentre).
void draw_number(Frame& fr, const AxisTicks& t, int i, double x, double y, int align) {
    const QFontMetricsF m = fr.metrics(fr.number_font);
    const double w = label_width(fr, t, i);
    double left = x - w / 2;
    if (align & Qt::AlignRight) left = x - w;
    if (align & Qt::AlignLeft) left = x;
    double top = y - m.height() / 2;
    if (align & Qt::AlignTop) top = y;
    const double baseline = top + m.ascent();
    fr.p.setFont(fr.number_font);
    if (!t.power_labels) {
        // Each line aligned on its own; a second line (a date) goes below,
        // and a two-line label centred on its reference point is centred whole.
        const QStringList lines = QString::fromUtf8(t.label[i]).split(QLatin1Char('\n'));
        double line_top = top;
        if ((align & Qt::AlignVCenter) && lines.size() > 1) line_top -= (lines.size() - 1) * m.lineSpacing() / 2;
        for (const QString& line : lines) {
            const double lw = m.horizontalAdvance(line);
            double line_left = x - lw / 2;
            if (align & Qt::AlignRight) line_left = x - lw;
            if (align & Qt::AlignLeft) line_left = x;
            fr.p.drawText(QPointF(line_left, line_top + m.ascent()), line);
            line_top += m.lineSpacing();
        }
        return;
    }
    fr.p.drawText(QPointF(left, baseline), QStringLiteral("10"));
    QFont small = fr.number_font;
    small.setPointSizeF(fr.number_font.pointSizeF() * 0.75);
    fr.p.setFont(small);
    fr.p.drawText(QPointF(left + m.horizontalAdvance(QStringLiteral("10")), baseline - m.ascent() * 0.45),
                  QString::fromUtf8(t.label[i]));
    fr.p.setFont(fr.number_font);
}

void draw_ticks_and_numbers(Frame& fr) {
    const GraphSettings& s = graph.settings;
    const QRectF area = area_rect();
    const QColor c = colour_of(s.axiscolor);
    const double tick = fr.px(tick_points);
    const double minor = fr.px(minor_tick_points);
    fr.p.setPen(pen(c, fr.px(0.75)));
    for (int i = 0; i < fr.hticks.count; ++i) {
        const double x = pixel_x_of(fr.hticks.value[i]);
        fr.p.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + tick));
    }
    for (int i = 0; i < fr.hticks.minor_count; ++i) {
        const double x = pixel_x_of(fr.hticks.minor[i]);
        fr.p.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + minor));
    }
    for (int i = 0; i < fr.vticks.count; ++i) {
        const double y = pixel_y_of(fr.vticks.value[i]);
        fr.p.drawLine(QPointF(area.left() - tick, y), QPointF(area.left(), y));
    }
    for (int i = 0; i < fr.vticks.minor_count; ++i) {
        const double y = pixel_y_of(fr.vticks.minor[i]);
        fr.p.drawLine(QPointF(area.left() - minor, y), QPointF(area.left(), y));
    }
    const double gap = fr.px(gap_points);
    if (s.numberxaxis != 0)
        for (int i = 0; i < fr.hticks.count; ++i)
            draw_number(fr, fr.hticks, i, pixel_x_of(fr.hticks.value[i]), area.bottom() + tick + gap,
                        Qt::AlignHCenter | Qt::AlignTop);
    if (s.numberyaxis != 0)
        for (int i = 0; i < fr.vticks.count; ++i)
            draw_number(fr, fr.vticks, i, area.left() - tick - gap, pixel_y_of(fr.vticks.value[i]),
                        Qt::AlignRight | Qt::AlignVCenter);
}

void draw_border(Frame& fr) {
    fr.p.setPen(pen(colour_of(graph.settings.axiscolor), fr.px(0.8)));
    fr.p.setBrush(Qt::NoBrush);
    fr.p.drawRect(area_rect());
}

double widest_vertical_number(const Frame& fr) {
    double w = 0.0;
    for (int i = 0; i < fr.vticks.count; ++i) w = std::max(w, label_width(fr, fr.vticks, i));
    return w;
}

void draw_axis_labels(Frame& fr) {
    const GraphSettings& s = graph.settings;
    const QRectF area = area_rect();
    const double number_height = fr.metrics(fr.number_font).height();
    const double gap = fr.px(gap_points);
    if (graph.xaxis_label.set != 0) {
        const AxisLabel& l = graph.xaxis_label;
        const QFont f = fr.font(l.font_name, fr.px(l.size > 0 ? l.size : label_points), l.bold != 0, l.italic != 0);
        const QFontMetricsF m = fr.metrics(f);
        const QString text = QString::fromUtf8(graph_text(l.text_variable));
        const double x = area.left() + area.width() * l.position / 100.0 - m.horizontalAdvance(text) / 2;
        const double top = area.bottom() + fr.px(tick_points) + gap + (s.numberxaxis != 0 ? number_height : 0) + gap;
        fr.p.setFont(f);
        fr.p.setPen(colour_of(l.color));
        fr.p.drawText(QPointF(x, top + m.ascent()), text);
    }
    if (graph.yaxis_label.set != 0) {
        const AxisLabel& l = graph.yaxis_label;
        const QFont f = fr.font(l.font_name, fr.px(l.size > 0 ? l.size : label_points), l.bold != 0, l.italic != 0);
        const QFontMetricsF m = fr.metrics(f);
        const QString text = QString::fromUtf8(graph_text(l.text_variable));
        const double right = area.left() - fr.px(tick_points) - gap - (s.numberyaxis != 0 ? widest_vertical_number(fr) : 0) - gap;
        const double y = area.top() + area.height() * (1.0 - l.position / 100.0);
        fr.p.save();
        fr.p.translate(right - m.descent(), y);
        fr.p.rotate(-90);
        fr.p.setFont(f);
        fr.p.setPen(colour_of(l.color));
        fr.p.drawText(QPointF(-m.horizontalAdvance(text) / 2, 0), text);
        fr.p.restore();
    }
}

void draw_text(QPainter& p, double ppi_y, double device_dpi, const TextEntry& e) {
    const GraphSurface& f = graph.surface;
    const QString text = QString::fromUtf8(graph_text(e.text_variable));
    if (text.isEmpty()) return;
    const bool hdata = e.hmode == position_data;
    const bool vdata = e.vmode == position_data;
    const double x = hdata ? pixel_x_of(axis_value_x(e.hpos)) : f.width_px * e.hpos / 100.0;
    const double y = vdata ? pixel_y_of(axis_value_y(e.vpos)) : f.height_px * (1.0 - e.vpos / 100.0);
    double pixels = (e.size > 0 ? e.size : text_points) * ppi_y / 72.0;
    if (e.datasize > 0) pixels = e.datasize * f.ppdu_y;
    if (e.y2_given) pixels = std::fabs(pixel_y_of(axis_value_y(e.y2)) - y);
    if (!(pixels > 0.5) || !std::isfinite(pixels) || pixels > 20000) return;
    Frame fr{p, 0, ppi_y, device_dpi, {}, {}, {}};
    QFont font = fr.font(e.font_name, pixels, e.bold != 0, e.italic != 0);
    QFontMetricsF m = fr.metrics(font);
    if (e.y2_given) {
        // The text's height from y to y2: the font is sized to fill it.
        font.setPointSizeF(font.pointSizeF() * pixels / m.height());
        m = fr.metrics(font);
    }
    const double width = m.horizontalAdvance(text);
    double stretch = 1.0;
    double left = e.justify == justify_left ? 0.0 : e.justify == justify_right ? -width : -width / 2;
    if (e.x2_given) {
        stretch = (pixel_x_of(axis_value_x(e.x2)) - x) / std::max(width, 1.0);
        left = 0.0;
    }
    const double top = e.y2_given ? -m.height() : -m.height() / 2;
    p.save();
    if (hdata || vdata) p.setClipRect(area_rect());
    p.translate(x, y);
    p.rotate(-e.angle * 180.0 / 3.141592653589793);
    p.scale(stretch, 1.0);
    p.setFont(font);
    const QColor c = colour_of(e.color);
    p.setPen(c);
    p.drawText(QPointF(left, top + m.ascent()), text);
    if (e.boxed != 0) {
        const double pad = m.height() * 0.2;
        p.setPen(pen(c, std::max(ppi_y / 96.0, 1.0)));
        p.setBrush(Qt::NoBrush);
        p.drawRect(QRectF(left - pad, top - pad * 0.5, width + 2 * pad, m.height() + pad));
    }
    p.restore();
}

}  // namespace

int paint_graph(QPainter& painter, double ppi_x, double ppi_y, int target, GraphPaintState& state) {
    const GraphSettings& s = graph.settings;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    const double device_dpi = painter.device() != nullptr ? painter.device()->logicalDpiY() : 96.0;
    Frame fr{painter, ppi_x, ppi_y, device_dpi, {}, {}, {}};
    fr.number_font = fr.font(nullptr, fr.px(number_points), false, false);

    painter.fillRect(QRectF(0, 0, s.width * ppi_x, s.height * ppi_y), colour_of(s.bgcolor));
    // The room of the numbers depends on the numbers, which depend on the
    // layout: lay out with a guess, then again with the numbers measured.
    const double guess = fr.metrics(fr.number_font).horizontalAdvance(QStringLiteral("\u22120.00"));
    if (layout_graph(ppi_x, ppi_y, room_for(fr, guess, 1)) < 0) {
        painter.restore();
        return -1;
    }
    make_ticks(fr);
    const double widest = widest_vertical_number(fr);
    const int lines = label_lines(fr.hticks);
    if (std::fabs(widest - guess) > 0.5 || lines != 1) {
        if (layout_graph(ppi_x, ppi_y, room_for(fr, widest, lines)) < 0) {
            painter.restore();
            return -1;
        }
        make_ticks(fr);
    }

    if (s.grid != 0) draw_grid(fr);
    if (s.axes != 0) draw_axes(fr);
    draw_series(fr, target, state);
    if (s.border != 0) draw_border(fr);
    draw_ticks_and_numbers(fr);
    draw_axis_labels(fr);
    for (const TextEntry& e : graph.texts) draw_text(painter, ppi_y, device_dpi, e);
    graph.data_changed = false;
    painter.restore();
    return 0;
}

void paint_text_entry(QPainter& painter, int index) {
    if (!graph.surface.valid || index < 0 || index >= static_cast<int>(graph.texts.size())) return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    const double device_dpi = painter.device() != nullptr ? painter.device()->logicalDpiY() : 96.0;
    draw_text(painter, graph.surface.ppi_y, device_dpi, graph.texts[static_cast<std::size_t>(index)]);
    painter.restore();
}

int lay_out_graph(double ppi, int target, GraphPaintState& state) {
    QImage pixel(1, 1, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&pixel);
    return paint_graph(painter, ppi, ppi, target, state);
}

int render_graph_image(QImage& image, double ppi, int target, GraphPaintState& state) {
    const GraphSettings& s = graph.settings;
    const int w = static_cast<int>(std::max(1.0, std::min(20000.0, s.width * ppi)));
    const int h = static_cast<int>(std::max(1.0, std::min(20000.0, s.height * ppi)));
    image = QImage(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    return paint_graph(painter, ppi, ppi, target, state);
}

}  // namespace tl
