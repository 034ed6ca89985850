// graph_window.h — the one interface through which the graph model reaches its window.
//
// The graph statements, the zoom and the drag-move live in the core (src/graph)
// and never touch a widget: a host that can show graphs implements this
// interface (the Qt window, batch mode, the test hosts) and installs it in
// host.graph_window. Without one, GRAPH cannot open a window.
#pragma once

#include <string_view>

namespace tl {

class GraphWindow {
public:
    virtual ~GraphWindow() = default;

    /// Opens the graph window at the system's default place and size.
    /// Returns false when it cannot be made.
    virtual bool create() = 0;
    /// Closes the window for good (GRAPH END); the model resets itself.
    virtual void destroy() = 0;
    /// Resizes the open window to the graph's width and height in inches,
    /// keeping its top-left corner.
    virtual void resize_to_graph() = 0;
    /// Asks for a repaint; `full` recomputes the layout and erases first.
    virtual void repaint(bool full) = 0;
    /// Carries out an asked-for repaint at once, so that the calculated
    /// scales and offsets are those of the graph as it is now (LISTPARMS).
    virtual void repaint_now() {}
    /// Shows the window normally, then maximised.
    virtual void maximise() = 0;
    /// Brings the Grid/Axes/Border menu marks in line with the settings.
    virtual void update_menu_marks() {}
    /// Draws text entry `index` of the text table at once.
    virtual void draw_text_entry(int index) { (void)index; }
    /// A message box on the graph window.
    virtual void message_box(std::string_view caption, std::string_view text) = 0;

    /// GRAPH PRINT, METAFILE and JPEG. Each returns 0, or -1 after a cancel or
    /// a failure it has shown itself. A window without these outputs refuses.
    virtual int print_graph() { return -1; }
    virtual int export_metafile() { return -1; }
    virtual int export_jpeg() { return -1; }
};

}  // namespace tl
