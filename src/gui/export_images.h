// export_images.h — the graph as PNG, SVG or PDF, besides the metafile and JPEG: the window's Save as.
//
// Every format is drawn by the screen's painter at the graph's size in
// inches: PNG at a chosen number of pixels per inch, SVG in pixels of 1/96
// inch with the texts as text, PDF on one page of exactly the graph's size.
#pragma once

#include <QString>
#include <string>

#include "gui/export_jpeg.h"

namespace tl::gui {

enum class GraphFileFormat { png, svg, pdf, emf, jpeg, unknown };

/// The format a file name asks for by its suffix (letters in any case).
[[nodiscard]] GraphFileFormat format_of(const QString& file);

/// Writes the open graph to `file` in the format of its suffix: PNG and
/// JPEG at `ppi` pixels per inch (JPEG at `jpeg_quality`), SVG, PDF and EMF
/// as drawings. Says what was made (or why not) through `tell`; returns 0,
/// or -1 after a failure.
[[nodiscard]] int save_graph_file(const QString& file, int ppi, int jpeg_quality, const ExportMessage& tell);

}  // namespace tl::gui
