// export_images.cpp — PNG through QImage, SVG through Qt SVG, PDF through QPdfWriter; EMF and JPEG handed on.
#include "gui/export_images.h"

#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <algorithm>
#include <cmath>

#include "graph/graph_state.h"
#include "gui/export_metafile.h"
#include "gui/graph_painter.h"

namespace tl::gui {
namespace {

constexpr const char* caption = "Tessaline Graph";
constexpr double svg_ppi = 96.0;  // SVG's own pixel: 1/96 inch
constexpr int pdf_ppi = 1200;

void tell_made(const ExportMessage& tell, const char* what, int rc, const QString& file) {
    if (rc == 0) {
        tell(caption, std::string(what) + " file was successfully created.", false);
    } else if (rc == -2) {
        tell(caption, "Unable to write " + file.toStdString(), true);
    } else {
        tell(caption, "Horizontal or Vertical Scale is too small", true);
    }
}

/// 0, -1 when the painter failed, -2 when the file could not be written.
int write_png(const QString& file, int ppi) {
    QImage image;
    GraphPaintState state;
    if (render_graph_image(image, ppi, target_image, state) < 0) return -1;
    if (image.isNull()) return -2;
    return image.save(file, "PNG") ? 0 : -2;
}

int write_svg(const QString& file) {
    const GraphSettings& s = graph.settings;
    QSvgGenerator svg;
    svg.setFileName(file);
    // (a graph's size has no bound; the picture's is held within what Qt takes)
    const auto side = [](double inches) { return static_cast<int>(std::clamp(std::ceil(inches * svg_ppi), 1.0, 1e7)); };
    const QSize size(side(s.width), side(s.height));
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    svg.setResolution(static_cast<int>(svg_ppi));
    svg.setTitle("Tessaline Graph");
    QPainter painter;
    if (!painter.begin(&svg)) return -2;
    GraphPaintState state;
    const int rc = paint_graph(painter, svg_ppi, svg_ppi, target_image, state);
    return painter.end() ? rc : -2;
}

int write_pdf(const QString& file) {
    const GraphSettings& s = graph.settings;
    QPdfWriter pdf(file);
    pdf.setTitle("Tessaline Graph");
    pdf.setCreator("Tessaline");
    pdf.setResolution(pdf_ppi);
    // One page of the graph's own size, no margins: a sheet given upright
    // and turned for a wide graph.
    const QSizeF upright(std::min(s.width, s.height), std::max(s.width, s.height));
    pdf.setPageLayout(QPageLayout(QPageSize(upright, QPageSize::Inch, QString(), QPageSize::ExactMatch),
                                  s.width > s.height ? QPageLayout::Landscape : QPageLayout::Portrait,
                                  QMarginsF(0, 0, 0, 0), QPageLayout::Inch));
    QPainter painter;
    if (!painter.begin(&pdf)) return -2;
    GraphPaintState state;
    const int rc = paint_graph(painter, pdf.resolution(), pdf.resolution(), target_printer, state);
    return painter.end() ? rc : -2;
}

}  // namespace

GraphFileFormat format_of(const QString& file) {
    const QString suffix = QFileInfo(file).suffix().toLower();
    if (suffix == "png") return GraphFileFormat::png;
    if (suffix == "svg") return GraphFileFormat::svg;
    if (suffix == "pdf") return GraphFileFormat::pdf;
    if (suffix == "emf") return GraphFileFormat::emf;
    if (suffix == "jpg" || suffix == "jpeg") return GraphFileFormat::jpeg;
    return GraphFileFormat::unknown;
}

int save_graph_file(const QString& file, int ppi, int jpeg_quality, const ExportMessage& tell) {
    int rc = -1;
    switch (format_of(file)) {
        case GraphFileFormat::png: tell_made(tell, "PNG", rc = write_png(file, std::clamp(ppi, 10, 2400)), file); break;
        case GraphFileFormat::svg: tell_made(tell, "SVG", rc = write_svg(file), file); break;
        case GraphFileFormat::pdf: tell_made(tell, "PDF", rc = write_pdf(file), file); break;
        case GraphFileFormat::emf: return write_graph_metafile(file.toStdString(), tell);
        case GraphFileFormat::jpeg: return write_graph_jpeg(JpegChoice{file.toStdString(), jpeg_quality, ppi}, tell);
        case GraphFileFormat::unknown:
            tell(caption, "Unknown file type: use .png, .svg, .pdf, .emf, .jpg or .jpeg", true);
            return -1;
    }
    return rc < 0 ? -1 : 0;
}

}  // namespace tl::gui
