// export_emf_device.cpp — QPainter's paths, polygons and text as libEMF's GDI calls.
#include "gui/export_emf_device.h"

#include <QFont>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPolygonF>
#include <QTextItem>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <type_traits>
#include <vector>

#include "exec/open_without_waiting.h"

// The GDI declarations come last: they define macros Qt's headers do not expect.
#include <libEMF/emf.h>
#undef min
#undef max

static_assert(std::is_same_v<HDC, unsigned int>, "EmfPaintDevice keeps the context as an unsigned int");

namespace tl::gui {
namespace {

/// Logical units per surface pixel. Readers differ in how they scale pen
/// widths by the mapping (some not at all), so logical units stay pixels.
constexpr double sub = 1.0;

COLORREF colour_ref(QColor c, QColor backdrop) {
    // No transparency in the records: mix with what lies behind.
    const double a = c.alphaF();
    const auto mix = [a](int fg, int bg) { return static_cast<int>(std::lround(fg * a + bg * (1.0 - a))); };
    const int r = mix(c.red(), backdrop.red()), g = mix(c.green(), backdrop.green()), b = mix(c.blue(), backdrop.blue());
    return static_cast<COLORREF>(r | g << 8 | b << 16);
}

/// A size or position in the metafile's units, held within what its records
/// take (a graph's size in inches has no bound).
LONG device_units(double v) { return static_cast<LONG>(std::lround(std::clamp(v, -1e9, 1e9))); }

POINT device_point(QPointF p) { return POINT{device_units(p.x() * sub), device_units(p.y() * sub)}; }

/// Cuts segment a-b to `clip` (Liang-Barsky); false when nothing is left.
bool clip_segment(QPointF& a, QPointF& b, const QRectF& clip) {
    double t0 = 0.0, t1 = 1.0;
    const double dx = b.x() - a.x(), dy = b.y() - a.y();
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x() - clip.left(), clip.right() - a.x(), a.y() - clip.top(), clip.bottom() - a.y()};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0) return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0.0) {
            if (t > t1) return false;
            t0 = std::max(t0, t);
        } else {
            if (t < t0) return false;
            t1 = std::min(t1, t);
        }
    }
    const QPointF start = a;
    a = start + QPointF(dx * t0, dy * t0);
    b = start + QPointF(dx * t1, dy * t1);
    return true;
}

}  // namespace

class EmfPaintEngine final : public QPaintEngine {
public:
    explicit EmfPaintEngine(EmfPaintDevice& device) : QPaintEngine(AllFeatures), device_(device) {}

    bool begin(QPaintDevice*) override {
        if (dc() == 0) return false;
        SetBkMode(dc(), TRANSPARENT);
        SetTextAlign(dc(), TA_BASELINE | TA_LEFT);
        return true;
    }
    bool end() override {
        release_pen();
        release_brush();
        return true;
    }
    Type type() const override { return QPaintEngine::User; }

    void updateState(const QPaintEngineState& state) override {
        const DirtyFlags f = state.state();
        if (f & DirtyPen) pen_ = state.pen(), release_pen();
        if (f & DirtyBrush) brush_ = state.brush(), release_brush();
        if (f & DirtyTransform) transform_ = state.transform(), release_pen();
        if (f & DirtyFont) font_ = state.font();
        if (f & DirtyClipEnabled) clip_on_ = state.isClipEnabled();
        if (f & (DirtyClipRegion | DirtyClipPath)) {
            // Rectangles only: the painter clips to the plotting area and
            // the graph's rectangle. Anything else is taken by its bounds.
            const QRectF r = f & DirtyClipPath ? state.clipPath().boundingRect()
                                               : QRectF(state.clipRegion().boundingRect());
            const QRectF mapped = transform_.mapRect(r);
            switch (state.clipOperation()) {
                case Qt::NoClip: clip_on_ = false; break;
                case Qt::ReplaceClip: clip_ = mapped, clip_on_ = true; break;
                case Qt::IntersectClip: clip_ = clip_on_ ? clip_.intersected(mapped) : mapped, clip_on_ = true; break;
            }
        }
    }

    void drawPath(const QPainterPath& path) override { emit_path(transform_.map(path), true, true); }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        if (count < 2) return;
        QPainterPath path;
        path.moveTo(points[0]);
        for (int i = 1; i < count; ++i) path.lineTo(points[i]);
        if (mode != PolylineMode) path.closeSubpath();
        path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
        emit_path(transform_.map(path), mode != PolylineMode, true);
    }

    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}  // the graph draws no images

    void drawTextItem(const QPointF& p, const QTextItem& item) override {
        const QString text = item.text();
        if (text.isEmpty() || pen_.style() == Qt::NoPen) return;
        const QPointF origin = transform_.map(p);
        if (clip_on_ && !clip_.contains(origin)) return;
        const QFont f = item.font();
        const double dpi = device_.ppi_;
        const double pixels = f.pixelSize() > 0 ? f.pixelSize() : f.pointSizeF() * dpi / 72.0;
        const double yscale = std::hypot(transform_.m21(), transform_.m22());
        const double angle = std::atan2(transform_.m12(), transform_.m11()) * 180.0 / 3.141592653589793;

        LOGFONTW lf{};
        lf.lfHeight = -static_cast<LONG>(std::lround(std::clamp(pixels * yscale * sub, 1.0, 1e7)));
        lf.lfEscapement = lf.lfOrientation = static_cast<LONG>(std::lround(-angle * 10.0));
        lf.lfWeight = f.bold() ? 700 : 400;
        lf.lfItalic = f.italic() ? 1 : 0;
        lf.lfCharSet = 1;  // the default character set
        lf.lfQuality = 4;  // antialiased
        const QString family = f.family().left(LF_FACESIZE - 1);
        for (int i = 0; i < family.size(); ++i) lf.lfFaceName[i] = family.at(i).unicode();
        HFONT font = CreateFontIndirectW(&lf);
        HGDIOBJ old = SelectObject(dc(), font);
        SetTextColor(dc(), colour_ref(pen_.color(), device_.backdrop_));
        const POINT at = device_point(origin);
        std::vector<WCHAR> wide(text.utf16(), text.utf16() + text.size());
        // Text stretched sideways (spanning x..x2) is written through a
        // world transform that widens it about its starting point.
        const double xscale = std::hypot(transform_.m11(), transform_.m12());
        const bool stretched = yscale > 0.0 && std::fabs(xscale / yscale - 1.0) > 1e-3;
        if (stretched) {
            const double ratio = xscale / yscale;
            XFORM widen{};
            widen.eM11 = static_cast<FLOAT>(ratio);
            widen.eM22 = 1.0F;
            widen.eDx = static_cast<FLOAT>(at.x * (1.0 - ratio));
            SetWorldTransform(dc(), &widen);
        }
        ExtTextOutW(dc(), at.x, at.y, 0, nullptr, wide.data(), static_cast<UINT>(wide.size()), nullptr);
        if (stretched) {
            XFORM identity{};
            identity.eM11 = identity.eM22 = 1.0F;
            SetWorldTransform(dc(), &identity);
        }
        SelectObject(dc(), old);
        DeleteObject(font);
    }

private:
    HDC dc() const { return device_.dc_; }

    /// A path already in device pixels: filled with the brush, then stroked with the pen.
    void emit_path(const QPainterPath& path, bool fill, bool stroke) {
        if (fill && brush_.style() != Qt::NoBrush && brush_.color().alpha() > 0) {
            QPainterPath area = path;
            if (clip_on_) {
                QPainterPath c;
                c.addRect(clip_);
                area = path.intersected(c);
            }
            fill_polygons(area);
        }
        if (stroke && pen_.style() != Qt::NoPen && pen_.color().alpha() > 0) stroke_polylines(path);
    }

    void fill_polygons(const QPainterPath& area) {
        const QList<QPolygonF> polygons = area.toFillPolygons();
        if (polygons.isEmpty()) return;
        select_brush();
        HGDIOBJ old_pen = SelectObject(dc(), GetStockObject(NULL_PEN));
        SetPolyFillMode(dc(), area.fillRule() == Qt::WindingFill ? WINDING : ALTERNATE);
        for (const QPolygonF& poly : polygons) {
            points_.clear();
            for (const QPointF& q : poly) points_.push_back(device_point(q));
            if (points_.size() >= 3) Polygon(dc(), points_.data(), static_cast<INT>(points_.size()));
        }
        SelectObject(dc(), old_pen);
    }

    void stroke_polylines(const QPainterPath& path) {
        select_pen();
        const QList<QPolygonF> lines = path.toSubpathPolygons();
        for (const QPolygonF& line : lines) {
            points_.clear();
            for (int i = 0; i + 1 < line.size(); ++i) {
                QPointF a = line[i], b = line[i + 1];
                if (clip_on_ && !clip_segment(a, b, clip_)) {
                    flush_polyline();
                    continue;
                }
                const POINT pa = device_point(a), pb = device_point(b);
                if (points_.empty() || points_.back().x != pa.x || points_.back().y != pa.y) {
                    flush_polyline();
                    points_.push_back(pa);
                }
                points_.push_back(pb);
                // Cut at a clip edge: the next piece starts anew.
                if (clip_on_ && b != line[i + 1]) flush_polyline();
            }
            flush_polyline();
        }
    }

    void flush_polyline() {
        if (points_.size() >= 2) Polyline(dc(), points_.data(), static_cast<INT>(points_.size()));
        points_.clear();
    }

    void select_pen() {
        if (pen_handle_ != 0) return;
        const double scale = std::sqrt(std::fabs(transform_.determinant()));
        const double width = pen_.widthF() * scale * sub;
        const COLORREF colour = colour_ref(pen_.color(), device_.backdrop_);
        if (pen_.isCosmetic() || width < 1.0) {
            pen_handle_ = CreatePen(PS_SOLID, 0, colour);
        } else {
            LOGBRUSH lb{BS_SOLID, colour, 0};
            const DWORD cap = pen_.capStyle() == Qt::FlatCap     ? PS_ENDCAP_FLAT
                              : pen_.capStyle() == Qt::SquareCap ? PS_ENDCAP_SQUARE
                                                                 : PS_ENDCAP_ROUND;
            const DWORD join = pen_.joinStyle() == Qt::MiterJoin   ? PS_JOIN_MITER
                               : pen_.joinStyle() == Qt::BevelJoin ? PS_JOIN_BEVEL
                                                                   : PS_JOIN_ROUND;
            pen_handle_ = ExtCreatePen(PS_GEOMETRIC | PS_SOLID | cap | join,
                                       static_cast<DWORD>(std::lround(std::min(width, 1e6))), &lb, 0, nullptr);
        }
        SelectObject(dc(), pen_handle_);
        SelectObject(dc(), GetStockObject(NULL_BRUSH));
        brush_selected_ = false;
    }
    void select_brush() {
        if (brush_handle_ == 0) brush_handle_ = CreateSolidBrush(colour_ref(brush_.color(), device_.backdrop_));
        SelectObject(dc(), brush_handle_);
        brush_selected_ = true;
    }
    void release_pen() {
        if (pen_handle_ == 0) return;
        SelectObject(dc(), GetStockObject(BLACK_PEN));
        DeleteObject(pen_handle_);
        pen_handle_ = 0;
    }
    void release_brush() {
        if (brush_handle_ == 0) return;
        SelectObject(dc(), GetStockObject(NULL_BRUSH));
        DeleteObject(brush_handle_);
        brush_handle_ = 0;
        brush_selected_ = false;
    }

    EmfPaintDevice& device_;
    QPen pen_;
    QBrush brush_;
    QTransform transform_;
    QFont font_;
    bool clip_on_ = false;
    QRectF clip_;
    HPEN pen_handle_ = 0;
    HBRUSH brush_handle_ = 0;
    bool brush_selected_ = false;
    std::vector<POINT> points_;
};

EmfPaintDevice::EmfPaintDevice(const std::string& file, double width, double height, QColor backdrop)
    : width_in_(width), height_in_(height), backdrop_(backdrop) {
    file_ = open_without_waiting(file.c_str(), "wb");
    if (file_ == nullptr) return;
    // The frame in hundredths of a millimetre: the graph's size.
    const RECT frame{0, 0, device_units(width * 2540.0), device_units(height * 2540.0)};
    // The description: the program and the picture's title, each ended by a
    // NUL, the whole by a second one.
    HDC dc = CreateEnhMetaFileWithFILEA(0, file_, &frame, "Tessaline\0Tessaline Graph\0");
    if (dc == 0) {
        std::fclose(file_);
        file_ = nullptr;
        return;
    }
    dc_ = dc;
    // The reference device: its size in pixels and millimetres, and its
    // logical pixels per inch, at which the graph is drawn.
    const double horz_res = GetDeviceCaps(dc, HORZRES), vert_res = GetDeviceCaps(dc, VERTRES);
    const double horz_mm = GetDeviceCaps(dc, HORZSIZE), vert_mm = GetDeviceCaps(dc, VERTSIZE);
    const double logical_x = GetDeviceCaps(dc, LOGPIXELSX), logical_y = GetDeviceCaps(dc, LOGPIXELSY);
    ppi_ = logical_y > 0 ? logical_y : 96.0;
    width_px_ = static_cast<int>(device_units(std::trunc(width * (logical_x > 0 ? logical_x : ppi_)))) + 1;
    height_px_ = static_cast<int>(device_units(std::trunc(height * ppi_))) + 1;
    // Logical units (sixteenths of a surface pixel) onto the device's own
    // pixels over the frame.
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowExtEx(dc, device_units(width * ppi_ * sub), device_units(height * ppi_ * sub), nullptr);
    const double device_x = horz_mm > 0 ? horz_res * 25.4 / horz_mm : ppi_;
    const double device_y = vert_mm > 0 ? vert_res * 25.4 / vert_mm : ppi_;
    SetViewportExtEx(dc, device_units(width * device_x), device_units(height * device_y), nullptr);
    engine_ = std::make_unique<EmfPaintEngine>(*this);
}

EmfPaintDevice::~EmfPaintDevice() { (void)close(); }

bool EmfPaintDevice::close() {
    bool written = true;
    if (dc_ != 0) {
        HENHMETAFILE metafile = CloseEnhMetaFileWithFILE(dc_);
        written = metafile != 0;
        if (metafile != 0) DeleteEnhMetaFile(metafile);
        dc_ = 0;
    }
    if (file_ != nullptr) {
        written = std::fflush(file_) == 0 && !std::ferror(file_) && written;
        written = std::fclose(file_) == 0 && written;
        file_ = nullptr;
    }
    return written;
}

QPaintEngine* EmfPaintDevice::paintEngine() const { return engine_.get(); }

int EmfPaintDevice::metric(PaintDeviceMetric metric) const {
    switch (metric) {
        case PdmWidth: return width_px_;
        case PdmHeight: return height_px_;
        case PdmWidthMM: return static_cast<int>(std::lround(width_in_ * 25.4));
        case PdmHeightMM: return static_cast<int>(std::lround(height_in_ * 25.4));
        case PdmNumColors: return 1 << 24;
        case PdmDepth: return 24;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY: return static_cast<int>(std::lround(ppi_));
        case PdmDevicePixelRatio: return 1;
        case PdmDevicePixelRatioScaled: return static_cast<int>(devicePixelRatioFScale());
        default: return 0;
    }
}

}  // namespace tl::gui
