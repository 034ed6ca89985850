// graph_state.cpp — the graph record, its reset, and the few calls on the graph window.
#include "graph/graph_state.h"

#include "exec/front_end.h"
#include "exec/graph_window.h"

namespace tl {

GraphState graph;

void reset_graph() {
    // Everything but the last click and the hidden-variable counter goes back
    // to its start; the series' and texts' storage is given back.
    const LastClick click = graph.last_click;
    const int counter = graph.text_constant_counter;
    graph = GraphState{};
    graph.last_click = click;
    graph.text_constant_counter = counter;
}

void end_graph(bool close_window) {
    if (close_window && graph.open && host.graph_window != nullptr) host.graph_window->destroy();
    reset_graph();
}

void request_graph_repaint() {
    if (graph.repaint_pending || !graph.open) return;
    graph.repaint_pending = true;
    if (host.graph_window != nullptr) host.graph_window->repaint(false);
}

void repaint_graph_if_open() {
    if (graph.open && host.graph_window != nullptr) host.graph_window->repaint(false);
}

void graph_message(const char* caption, const char* text) {
    if (host.graph_window != nullptr) host.graph_window->message_box(caption, text);
}

}  // namespace tl
