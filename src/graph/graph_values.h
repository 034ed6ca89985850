// graph_values.h — reading the parameters of GRAPH, PLOT, TEXT and SHAPE: names,
// "=", numbers, colours and the shared range check.
#pragma once

#include "graph/graph_state.h"
#include "lang/keyword_tables.h"

namespace tl {

/// True while statements are parsed but not carried out (skip mode, the
/// check pass): values are read for their syntax only.
[[nodiscard]] bool graph_passing_over();

/// Moves past blanks, one optional comma and blanks. Returns true when a
/// parameter follows, false at the end of the statement.
[[nodiscard]] bool next_graph_parameter();

/// Reads the parameter name at the scan position and finds it in `table`.
/// Returns its slot with its column in `column`, or reports `unknown_error`
/// (the text there is no name, or an unknown one) and returns the negation.
[[nodiscard]] int read_graph_parameter(Table table, int unknown_error, int& column);

/// Reads a word (a scale type, a justification) at the scan position and
/// finds it among `words` (lower case, `count` of them). Returns its index,
/// or -1 (unreported) when the text there is no such word; `column` is
/// where it starts.
[[nodiscard]] int read_graph_word(const char* const* words, int count, int& column);

/// Consumes "=" after blanks, or reports "Missing = sign." at the character found.
[[nodiscard]] int expect_equal_sign();

/// Evaluates a numeric value (up to a separator or the statement's end) into
/// `out`. A value that is no number is reported as `invalid_error`. Returns 0
/// or a negated error. The value's column is kept for check_graph_range.
[[nodiscard]] int read_graph_number(double& out, int invalid_error);

/// The shared range check: 0 when lo <= value <= hi, otherwise reports
/// "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter." at the column
/// of the last value read. Passes everything while passing over.
[[nodiscard]] int check_graph_range(double value, double lo, double hi);

/// Reads a colour: "(" red "," green "," blue ")" with components 0..255, or a
/// number 0..16777215 (truncated). Stores it packed red in the low byte.
/// Returns 0 or a negated error.
[[nodiscard]] int read_graph_colour(Rgb& out);

/// Packs three components 0..255.
[[nodiscard]] constexpr Rgb pack_rgb(int red, int green, int blue) {
    return static_cast<Rgb>(red) | static_cast<Rgb>(green) << 8 | static_cast<Rgb>(blue) << 16;
}

}  // namespace tl
