// export_metafile.h — the graph as an enhanced metafile (.emf), drawn by the screen's painter.
#pragma once

#include <string>

#include "gui/export_jpeg.h"

namespace tl::gui {

/// Writes the open graph to `file` as an enhanced metafile. Says
/// "MetaFile was successfully created." through `tell` and returns 0. When
/// the file cannot be made, says so and returns -1; when the painter fails
/// (scales too small) the file is left as far as it was drawn, the
/// painter's message is told and its -1 returned. The graph's surface is
/// left laid out for the metafile: the caller repaints the screen.
[[nodiscard]] int write_graph_metafile(const std::string& file, const ExportMessage& tell);

}  // namespace tl::gui
