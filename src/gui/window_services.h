// window_services.h — the interpreter services that the window and batch mode
// both give: the front end, console effects, message boxes, documents and the
// port chooser, installed and withdrawn together.
#pragma once

#include "exec/console_effects.h"
#include "exec/document_viewer.h"
#include "exec/front_end.h"
#include "exec/message_dialog.h"
#include "exec/port_chooser.h"

namespace tl::gui {

class WindowServices : public FrontEnd,
                       public ConsoleEffects,
                       public MessageDialog,
                       public DocumentViewer,
                       public PortChooser {
protected:
    /// Makes this object the interpreter's front end and services, with
    /// `graph` as its graph window.
    void install_services(GraphWindow* graph) {
        host.front_end = this;
        host.effects = this;
        host.message_dialog = this;
        host.documents = this;
        host.graph_window = graph;
        host.port_chooser = this;
    }

    /// Withdraws those of the services (all but the graph window) that are
    /// still this object's.
    void withdraw_services() {
        if (host.front_end == this) host.front_end = nullptr;
        if (host.effects == this) host.effects = nullptr;
        if (host.message_dialog == this) host.message_dialog = nullptr;
        if (host.documents == this) host.documents = nullptr;
        if (host.port_chooser == this) host.port_chooser = nullptr;
    }
};

}  // namespace tl::gui
