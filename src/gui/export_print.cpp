// export_print.cpp — the page's geometry, the graph's place on it, and the one page printed.
#include "gui/export_print.h"

#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <algorithm>
#include <cmath>

#include "graph/graph_state.h"
#include "gui/graph_painter.h"

namespace tl::gui {
namespace {

/// One axis: the graph's start on the printable area (all in device pixels,
/// as whole numbers kept in doubles: a graph's size or margin may be far
/// beyond what an int holds).
double start_on_page(double margin, double ppi, int paper, double graph_pixels, int offset) {
    if (margin < 0) return std::trunc((paper - graph_pixels) / 2) - offset;  // centred on the sheet
    return std::trunc(margin * ppi) - offset;
}

/// A placement number as an int: those of a graph that fits are exact.
int device_pixels(double v) { return static_cast<int>(std::clamp(v, -1e9, 1e9)); }

}  // namespace

PagePlacement place_graph(const PageGeometry& page, double width, double height, double hmargin, double vmargin) {
    const double w = std::trunc(width * page.ppi_x) + 1;
    const double h = std::trunc(height * page.ppi_y) + 1;
    const double left = start_on_page(hmargin, page.ppi_x, page.paper_width, w, page.offset_x);
    const double top = start_on_page(vmargin, page.ppi_y, page.paper_height, h, page.offset_y);
    PagePlacement p;
    p.width = device_pixels(w);
    p.height = device_pixels(h);
    p.left = device_pixels(left);
    p.top = device_pixels(top);
    p.fits = left >= 0 && top >= 0 && left + w <= page.printable_width && top + h <= page.printable_height;
    return p;
}

PageGeometry page_geometry(const QPrinter& printer) {
    PageGeometry g;
    const QRectF paper = printer.paperRect(QPrinter::DevicePixel);
    const QRectF printable = printer.pageRect(QPrinter::DevicePixel);
    g.paper_width = static_cast<int>(paper.width());
    g.paper_height = static_cast<int>(paper.height());
    g.printable_width = static_cast<int>(printable.width());
    g.printable_height = static_cast<int>(printable.height());
    g.offset_x = static_cast<int>(printable.left() - paper.left());
    g.offset_y = static_cast<int>(printable.top() - paper.top());
    g.ppi_x = printer.logicalDpiX();
    g.ppi_y = printer.logicalDpiY();
    return g;
}

int print_graph_on(QPrinter& printer, const ExportMessage& tell) {
    const GraphSettings& s = graph.settings;
    PageGeometry page = page_geometry(printer);
    PagePlacement place = place_graph(page, s.width, s.height, s.hmargin, s.vmargin);
    if (!place.fits) {
        // A second try with the sheet turned.
        const bool portrait = printer.pageLayout().orientation() == QPageLayout::Portrait;
        printer.setPageOrientation(portrait ? QPageLayout::Landscape : QPageLayout::Portrait);
        page = page_geometry(printer);
        place = place_graph(page, s.width, s.height, s.hmargin, s.vmargin);
        if (!place.fits) {
            tell("Graph Print", "Graph does not fit on the page. Check printer mode.", true);
            return -1;
        }
    }
    printer.setDocName(QStringLiteral("Tessaline Graph"));
    QPainter painter;
    if (!painter.begin(&printer)) {
        tell("Tessaline Graph", "Unable to print.", true);
        return -1;
    }
    // Nothing is drawn outside the graph's rectangle.
    painter.setClipRect(QRect(place.left, place.top, place.width, place.height));
    painter.translate(place.left, place.top);
    GraphPaintState state;
    const int rc = paint_graph(painter, page.ppi_x, page.ppi_y, target_printer, state);
    painter.end();
    if (rc < 0) {
        tell("Tessaline Graph", "Horizontal or Vertical Scale is too small", true);
        return -1;
    }
    return 0;
}

}  // namespace tl::gui
