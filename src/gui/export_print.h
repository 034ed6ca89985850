// export_print.h — the graph printed on one page: placed by its margins or centred, turned when it does not fit.
#pragma once

#include "gui/export_jpeg.h"

class QPrinter;

namespace tl::gui {

/// A page as the printer sees it, in device pixels.
struct PageGeometry {
    int printable_width = 0;  ///< the area the printer can mark
    int printable_height = 0;
    int paper_width = 0;  ///< the whole sheet
    int paper_height = 0;
    int offset_x = 0;  ///< where the printable area starts on the sheet
    int offset_y = 0;
    double ppi_x = 0.0;
    double ppi_y = 0.0;
};

/// Where the graph goes, relative to the printable area's corner.
struct PagePlacement {
    int left = 0;
    int top = 0;
    int width = 0;  ///< the graph in pixels: truncated inches times pixels per inch, plus 1
    int height = 0;
    bool fits = false;
};

/// Places a graph of `width` by `height` inches: at `hmargin` and `vmargin`
/// inches from the sheet's edges, or centred on the sheet where a margin is
/// negative. It fits when it lies wholly inside the printable area.
[[nodiscard]] PagePlacement place_graph(const PageGeometry& page, double width, double height, double hmargin,
                                        double vmargin);

/// The page of `printer` as it is set up now.
[[nodiscard]] PageGeometry page_geometry(const QPrinter& printer);

/// Prints the open graph on one page of `printer` (already chosen). When it
/// does not fit, the page is turned (portrait to landscape or back) and
/// tried again; when it fits neither way, "Graph does not fit on the page.
/// Check printer mode." is told and -1 returned. "Unable to print." when the
/// document cannot be started. The document is named "Tessaline Graph"; the
/// drawing is clipped to the graph's rectangle. Returns 0 when printed.
[[nodiscard]] int print_graph_on(QPrinter& printer, const ExportMessage& tell);

}  // namespace tl::gui
