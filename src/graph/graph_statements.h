// graph_statements.h — GRAPH, PLOT and TEXT, and the model operations behind them.
//
// Each handler is called by do_keyword_statement with the scan position
// behind its keyword and returns 0 or a negated error number (reported).
#pragma once

#include "graph/graph_state.h"

namespace tl {

[[nodiscard]] int do_graph();
[[nodiscard]] int do_plot();
[[nodiscard]] int do_text();

/// Writes the GRAPH LISTPARMS lines to the console.
void list_graph_parameters();

/// Switches an axis to a scale type: sets its limits (and its flags), and
/// clears its scale and offset when the type changes. `horizontal` picks the
/// axis. Returns true when the type changed.
bool set_axis_scale_type(bool horizontal, int type);

/// Appends a plot series with these attributes and makes it current.
/// Returns 0, or reports "Graph elements table is full.".
[[nodiscard]] int new_plot_series(double lineweight, int sort_mode, Rgb color, double average, double smooth);

/// Inserts a point into the current series (see plot_series.cpp for the
/// order of the steps). Returns 0 or a negated error (reported).
[[nodiscard]] int add_plot_point(double x, double y);

/// The log-scale data check: every logarithmic axis's data minimum and every
/// point plotted must be above 0; fills the points' logarithms. Returns 0 or
/// reports "Can't plot negative number or zero on log scale.".
[[nodiscard]] int log_scale_data_check();

/// The text a text entry or axis label shows now: the value of its string
/// variable or element, or "" when that is gone (CLEAR, ERASE).
[[nodiscard]] const char* graph_text(const ValueReference& ref);

/// Turns an angle just read (degrees or radians by the interpreter's angle
/// unit) into radians in [0, 2 pi). Returns 0, or reports the range error at
/// the value's column.
[[nodiscard]] int read_angle(double value, double& radians);

}  // namespace tl
