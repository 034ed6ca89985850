// GRAPH: opening, changing, listing and ending the graph, through a recording window.
#include <cmath>

#include "graph/graph_statements.h"
#include "graph_test_support.h"

namespace tl::test {
namespace {

using GraphStatement = GraphTest;

TEST_F(GraphStatement, RefusedInConsoleModeEvenWhenPassedOver) {
    fe.console = true;
    EXPECT_TRUE(fails_with("graph", "GRAPH statement not valid in CONSOLE mode."));
    EXPECT_TRUE(fails_with("if 0 then graph", "GRAPH statement not valid in CONSOLE mode."));
    EXPECT_EQ(window.created, 0);
    EXPECT_FALSE(graph.open);
}

TEST_F(GraphStatement, OpensOnceThenNeedsSomethingToChange) {
    ASSERT_EQ(type("graph"), 0) << fe.output;
    EXPECT_TRUE(graph.open);
    EXPECT_EQ(window.created, 1);
    EXPECT_EQ(graph.text_room, 50);
    EXPECT_EQ(graph.shape_room, 50);
    EXPECT_TRUE(fails_with("graph", "Graph already active."));
    ASSERT_EQ(type("graph maximize"), 0) << fe.output;
    EXPECT_EQ(window.maximised, 1);
    EXPECT_EQ(window.created, 1);

    window.fail_create = true;
    ASSERT_EQ(type("graph end"), 0);
    EXPECT_TRUE(fails_with("graph", "Unable to create graph window."));
    EXPECT_FALSE(graph.open);
}

TEST_F(GraphStatement, PassedOverChangesNothing) {
    // An untaken branch reads the flags and switches without applying them.
    ASSERT_EQ(type("if 0 then graph noaxes, noborder, nogrid, equalscales, lockscreen = 1, hscaletype = log"), 0)
        << fe.output;
    EXPECT_EQ(window.created, 0);
    const GraphSettings d;
    EXPECT_EQ(graph.settings.axes, d.axes);
    EXPECT_EQ(graph.settings.border, d.border);
    EXPECT_EQ(graph.settings.grid, d.grid);
    EXPECT_EQ(graph.settings.equalscales, d.equalscales);
    EXPECT_EQ(graph.settings.lockscreen, d.lockscreen);
    ASSERT_EQ(type("graph equalscales"), 0);
    ASSERT_EQ(type("if 0 then graph hscaletype = log"), 0);
    EXPECT_EQ(graph.settings.equalscales, 1);
}

TEST_F(GraphStatement, EndResetsEverySetting) {
    ASSERT_EQ(type("graph nogrid, noaxes, noborder, hscale = 2, axisweight = 4, bgcolor = 255"), 0) << fe.output;
    EXPECT_EQ(graph.settings.grid, 0);
    EXPECT_EQ(graph.settings.hscale, 2.0);
    ASSERT_EQ(type("plot x = 1, y = 2"), 0) << fe.output;
    ASSERT_EQ(type("graph end"), 0) << fe.output;
    EXPECT_EQ(window.destroyed, 1);
    EXPECT_FALSE(graph.open);
    EXPECT_EQ(graph.element_count, 0);
    EXPECT_TRUE(graph.series.empty());
    EXPECT_EQ(graph.extents.xmin, HUGE_VAL);
    ASSERT_EQ(type("graph"), 0);
    const GraphSettings d;
    EXPECT_EQ(graph.settings.grid, 1);
    EXPECT_EQ(graph.settings.axes, 1);
    EXPECT_EQ(graph.settings.border, 1);
    EXPECT_EQ(graph.settings.hscale, 0.0);
    EXPECT_EQ(graph.settings.axisweight, d.axisweight);
    EXPECT_EQ(graph.settings.bgcolor, 0xFFFFFFu);
}

TEST_F(GraphStatement, ParameterErrors) {
    EXPECT_TRUE(fails_with("graph widht = 3", "Invalid GRAPH function."));
    EXPECT_TRUE(fails_with("graph 12", "Invalid GRAPH function."));
    EXPECT_TRUE(fails_with("graph width 3", "Missing = sign."));
    EXPECT_TRUE(fails_with("graph width = \"a\"", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_TRUE(fails_with("graph includexaxis = 0.5", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_TRUE(fails_with("graph lockscreen = 2", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_TRUE(fails_with("graph axisweight = 10.5", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_TRUE(fails_with("graph clearance = 0.3", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_TRUE(fails_with("graph hscale = -1", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_TRUE(fails_with("graph vscale = 1e308", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_TRUE(fails_with("graph hscaletype = cubic", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_TRUE(fails_with("graph hscaletype = 1", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_FALSE(graph.open);
    // Flags act the moment they are read: a later error leaves them changed.
    EXPECT_TRUE(fails_with("graph nogrid, lockscreen = 1, numberxaxis = 3", "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter."));
    EXPECT_EQ(graph.settings.grid, 0);
    EXPECT_EQ(graph.settings.lockscreen, 1);
    EXPECT_EQ(graph.settings.numberxaxis, 1);
    // The caret points at the value.
    fe.take();
    (void)type("graph axisweight = 11");
    EXPECT_NE(fe.output.find("graph axisweight = 11\n                   *\n"), std::string::npos) << fe.output;
}

TEST_F(GraphStatement, ExclusiveParameters) {
    EXPECT_TRUE(fails_with("graph end", "GRAPH: End, Print or Metafile not valid if graph not active."));
    EXPECT_TRUE(fails_with("graph jpeg", "GRAPH: End, Print or Metafile not valid if graph not active."));
    EXPECT_TRUE(fails_with("graph listparms", "Graph not active."));
    ASSERT_EQ(type("graph"), 0);
    const char* clash = "GRAPH: End, Print or Metafile may not be used with other parms.";
    EXPECT_TRUE(fails_with("graph end, print", clash));
    EXPECT_TRUE(fails_with("graph end, metafile", clash));
    EXPECT_TRUE(fails_with("graph print, metafile", clash));
    EXPECT_TRUE(fails_with("graph end, jpeg", clash));
    EXPECT_TRUE(fails_with("graph print, jpeg", clash));
    EXPECT_TRUE(fails_with("graph end, grid", clash));
    EXPECT_TRUE(fails_with("graph listparms, metafile", clash));
    EXPECT_TRUE(graph.open);
    EXPECT_EQ(window.prints + window.metafiles + window.jpegs, 0);
    // Metafile with JPEG is let through: the metafile wins.
    ASSERT_EQ(type("graph metafile, jpeg"), 0) << fe.output;
    EXPECT_EQ(window.metafiles, 1);
    EXPECT_EQ(window.jpegs, 0);
    ASSERT_EQ(type("graph jpeg"), 0);
    ASSERT_EQ(type("graph print"), 0);
    ASSERT_EQ(type("graph maximize, end"), 0);  // maximize is no other parameter
    EXPECT_EQ(window.jpegs, 1);
    EXPECT_EQ(window.prints, 1);
    EXPECT_FALSE(graph.open);
}

TEST_F(GraphStatement, ListparmsLinesAndListingOnly) {
    ASSERT_EQ(type("graph"), 0);
    const std::string listing = output_of("graph listparms, nogrid, includexaxis = 0, width = 3");
    EXPECT_NE(listing.find("GRAPH parameters currently in effect:\n"
                           "   GRID\n"
                           "   AXES\n"
                           "   BORDER\n"
                           "   IncludeXAxis =      1\n"
                           "   IncludeYAxis =      1\n"
                           "   NumberXAxis =      1\n"
                           "   NumberYAxis =      1\n"
                           "   Height       =         10 in.\n"
                           "   Width        =        7.5 in.\n"
                           "   HScaleType   =      Linear\n"
                           "   HScale       =          0 data units/in. (automatic)\n"
                           "                       0 data units/in. (calculated).\n"
                           "   VScaleType   =      Linear\n"
                           "   VScale       =          0 data units/in. (automatic)\n"
                           "                       0 data units/in. (calculated).\n"
                           "   HOffset      =          0 data units (automatic)\n"
                           "                         0 data units (calculated).\n"
                           "   VOffset      =          0 data units (automatic)\n"
                           "                         0 data units (calculated).\n"
                           "   HMargin      =         -1 in. (centered)\n"
                           "   VMargin      =         -1 in. (centered)\n"
                           "   AxisWeight   =       1.5 points.\n"
                           "   Clearance    =       0.1 in.\n"),
              std::string::npos)
        << listing;
    EXPECT_EQ(graph.settings.width, 7.5);  // parsed, not applied
    EXPECT_EQ(graph.settings.grid, 1);
    EXPECT_EQ(graph.settings.includexaxis, 1);
    EXPECT_EQ(window.resized, 0);

    ASSERT_EQ(type("graph nogrid, noaxes, noborder, equalscales, hscaletype = log, vscaletype = datetime, "
                   "hscale = 2.5, hoffset = -3, hmargin = 0.5, vmargin = 1, axisweight = 0.25, clearance = 0"),
              0)
        << fe.output;
    const std::string changed = output_of("graph listparms");
    EXPECT_NE(changed.find("   NOGRID\n   NOAXES\n   NOBORDER\n   IncludeXAxis"), std::string::npos) << changed;
    EXPECT_NE(changed.find("   HScaleType   =      Log\n"
                           "   HScale       =        2.5 data units/in. \n"
                           "   VScaleType   =      DateTime\n"),
              std::string::npos)
        << changed;
    EXPECT_NE(changed.find("   HOffset      =         -3 data units \n"), std::string::npos) << changed;
    EXPECT_NE(changed.find("   HMargin      =        0.5 in. \n   VMargin      =          1 in. \n"), std::string::npos)
        << changed;
    EXPECT_NE(changed.find("   AxisWeight   =      0.25 points.\n   Clearance    =         0 in.\n"), std::string::npos)
        << changed;
    // Log is read after equalscales and turns it off.
    EXPECT_EQ(changed.find("EQUALSCALES"), std::string::npos);
}

TEST_F(GraphStatement, ScalesOffsetsAndTheirValidity) {
    ASSERT_EQ(type("graph hoffset = 3, hscale = 2"), 0);
    EXPECT_EQ(graph.settings.hoffset, 3.0);  // offsets are applied after scales
    EXPECT_EQ(graph.settings.hscale, 2.0);
    ASSERT_EQ(type("graph hscale = 0"), 0);  // automatic again, with its offset
    EXPECT_EQ(graph.settings.hscale, 0.0);
    EXPECT_EQ(graph.settings.hoffset, 0.0);
    EXPECT_EQ(window.full_repaints, 1);

    ASSERT_EQ(type("graph hscale = 1, hoffset = 100000010"), 0) << fe.output;
    EXPECT_TRUE(fails_with("graph hoffset = 100000011, vscale = 2", "GRAPH: |offset / scale| is too large"));
    EXPECT_EQ(graph.settings.hoffset, 100000010.0);  // back to what it was
    EXPECT_EQ(graph.settings.vscale, 2.0);           // the other axis keeps its change

    ASSERT_EQ(type("graph vscaletype = datetime"), 0);
    EXPECT_EQ(graph.settings.vscale, 0.0);  // a new type makes the axis automatic
    EXPECT_EQ(graph.settings.vmin, datetime_axis_min);
    ASSERT_EQ(type("graph vscale = 1, voffset = 1.2e15"), 0) << fe.output;
    EXPECT_TRUE(fails_with("graph voffset = 1.3e15", "GRAPH: |offset / scale| too large."));
    EXPECT_EQ(graph.settings.voffset, 1.2e15);
    ASSERT_EQ(type("graph vscaletype = datetime, voffset = 7"), 0);  // the same type changes nothing
    EXPECT_EQ(graph.settings.vscale, 1.0);
    ASSERT_EQ(type("graph vscaletype = linear"), 0);
    EXPECT_EQ(graph.settings.vmax, linear_axis_max);
    EXPECT_EQ(graph.settings.vscale, 0.0);
    ASSERT_EQ(type("graph end"), 0);
    // The same test guards a new graph, which then does not open.
    EXPECT_TRUE(fails_with("graph hscale = 1e-300, hoffset = 1", "GRAPH: |offset / scale| is too large"));
    EXPECT_FALSE(graph.open);
}

TEST_F(GraphStatement, EqualScalesAndLogAxes) {
    ASSERT_EQ(type("graph hscale = 3"), 0);
    ASSERT_EQ(type("graph equalscales"), 0);
    EXPECT_EQ(graph.settings.equalscales, 1);
    EXPECT_EQ(graph.settings.vscale, 3.0);
    ASSERT_EQ(type("graph hscale = 5"), 0);
    EXPECT_EQ(graph.settings.vscale, 5.0);  // kept equal
    ASSERT_EQ(type("graph vscaletype = log"), 0);
    EXPECT_EQ(graph.settings.equalscales, 0);
    EXPECT_EQ(graph.settings.vlog, 1);
    EXPECT_EQ(graph.settings.vmin, log_axis_min);
    EXPECT_EQ(graph.settings.vmax, log_axis_max);
    ASSERT_EQ(type("graph equalscales"), 0);  // ignored while an axis is logarithmic
    EXPECT_EQ(graph.settings.equalscales, 0);
}

TEST_F(GraphStatement, LogAxisNeedsPositiveData) {
    ASSERT_EQ(type("graph"), 0);
    ASSERT_EQ(type("plot x = 10, y = 1"), 0);
    ASSERT_EQ(type("plot x = 100, y = 0"), 0);
    ASSERT_EQ(type("graph hscaletype = log"), 0) << fe.output;
    const PlotSeries& s = graph.series[0];
    EXPECT_EQ(s.points[0].log_x, 1.0);
    EXPECT_EQ(s.points[1].log_x, 2.0);
    EXPECT_TRUE(fails_with("graph vscaletype = log", "Can't plot negative number or zero on log scale."));
    EXPECT_EQ(graph.settings.vlog, 0);  // set back to linear
    EXPECT_EQ(graph.settings.vmin, linear_axis_min);
    EXPECT_EQ(graph.settings.hlog, 1);
}

TEST_F(GraphStatement, ColoursBothWays) {
    ASSERT_EQ(type("graph bgcolor = (255, 0, 0), gridcolor = (1, 2, 3), axiscolor = 65280.7"), 0) << fe.output;
    EXPECT_EQ(graph.settings.bgcolor, 0x0000FFu);
    EXPECT_EQ(graph.settings.gridcolor, 0x030201u);
    EXPECT_EQ(graph.settings.axiscolor, 0x00FF00u);
    const char* invalid = "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter.";
    EXPECT_TRUE(fails_with("graph bgcolor = 16777216", invalid));
    EXPECT_TRUE(fails_with("graph bgcolor = -1", invalid));
    EXPECT_TRUE(fails_with("graph bgcolor = (256, 0, 0)", invalid));
    EXPECT_TRUE(fails_with("graph bgcolor = (1, \"a\", 0)", invalid));
    EXPECT_TRUE(fails_with("graph bgcolor = (1, 2)", "Incorrect number of parameters."));
    EXPECT_TRUE(fails_with("graph bgcolor = ", "Missing parameter list for function or subscripts for array."));
    EXPECT_EQ(graph.settings.bgcolor, 0x0000FFu);
    ASSERT_EQ(type("graph bgcolor = 16777215"), 0);
    EXPECT_EQ(graph.settings.bgcolor, 0xFFFFFFu);
}

TEST_F(GraphStatement, SizeMarginsAndMenuMarks) {
    ASSERT_EQ(type("graph width = 4, height = 3"), 0);
    EXPECT_EQ(window.resized, 0);  // a new window is not sized by them
    EXPECT_EQ(graph.settings.width, 4.0);
    ASSERT_EQ(type("graph landscape"), 0);
    EXPECT_EQ(window.resized, 1);
    EXPECT_EQ(graph.settings.width, 10.0);
    EXPECT_EQ(graph.settings.height, 7.5);
    ASSERT_EQ(type("graph portrait, hmargin = 0, vmargin = 0.5, clearance = 0.25"), 0);
    EXPECT_EQ(graph.settings.width, 7.5);
    EXPECT_EQ(graph.settings.hmargin, 0.0);  // an explicit 0 is applied
    EXPECT_EQ(graph.settings.vmargin, 0.5);
    EXPECT_EQ(graph.settings.clearance, 0.25);
    EXPECT_EQ(window.menu_updates, 2);
}

TEST_F(GraphStatement, PassedOverInSkipModeAndTheCheckPass) {
    ASSERT_EQ(run("10 if 0 then graph width = 1/0, bgcolor = (999, 0, 0)\n"
                  "20 print \"ok\"\n"),
              0)
        << fe.output;
    EXPECT_FALSE(graph.open);
    EXPECT_EQ(window.created, 0);
    ASSERT_EQ(run("10 graph\n20 plot x = 1, y = 1\n30 end\n"), 0) << fe.output;
    EXPECT_TRUE(graph.open);
    EXPECT_EQ(graph.series.size(), 1u);  // the check pass added nothing
    EXPECT_GE(window.repaints, 1);       // END repaints
}

}  // namespace
}  // namespace tl::test
