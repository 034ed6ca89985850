// export_metafile.cpp — the graph painted on the metafile device at its reference pixels per inch.
#include "gui/export_metafile.h"

#include <QPainter>

#include "graph/graph_state.h"
#include "gui/export_emf_device.h"
#include "gui/graph_painter.h"

namespace tl::gui {

int write_graph_metafile(const std::string& file, const ExportMessage& tell) {
    const GraphSettings& s = graph.settings;
    const Rgb bg = s.bgcolor;
    const QColor backdrop(static_cast<int>(bg & 0xFF), static_cast<int>(bg >> 8 & 0xFF), static_cast<int>(bg >> 16 & 0xFF));
    EmfPaintDevice device(file, s.width, s.height, backdrop);
    if (!device.ok()) {
        tell("Tessaline Graph", "Unable to create the metafile " + file, true);
        return -1;
    }
    int rc = 0;
    {
        QPainter painter(&device);
        GraphPaintState state;
        rc = paint_graph(painter, device.ppi(), device.ppi(), target_metafile, state);
    }
    const bool written = device.close();
    if (rc < 0) {
        tell("Tessaline Graph", "Horizontal or Vertical Scale is too small", true);
        return rc;
    }
    if (!written) {
        tell("Tessaline Graph", "Unable to write the metafile " + file, true);
        return -1;
    }
    tell("Tessaline Graph", "MetaFile was successfully created.", false);
    return 0;
}

}  // namespace tl::gui
