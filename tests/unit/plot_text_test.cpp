// PLOT and TEXT: series, point insertion, extents, text entries, labels and defaults.
#include <chrono>
#include <cmath>
#include <limits>

#include "exec/string_space.h"
#include "exec/variables.h"
#include "graph/graph_statements.h"
#include "graph_test_support.h"

namespace tl::test {
namespace {

class PlotText : public GraphTest {
protected:
    void SetUp() override {
        GraphTest::SetUp();
        ASSERT_EQ(type("graph"), 0) << fe.output;
        fe.take();
    }
    const PlotSeries& series(int i) const { return graph.series[static_cast<std::size_t>(i)]; }
    /// The x values of the counted points of series i.
    std::vector<double> xs(int i) const {
        std::vector<double> v;
        for (int k = 0; k < series(i).point_count; ++k) v.push_back(series(i).points[static_cast<std::size_t>(k)].x);
        return v;
    }
    static std::string text_of(const ValueReference& r) {
        return string_at(variable_at(static_cast<int>(r.word) - 1).value.word);
    }
};

const char* const invalid = "Invalid value for GRAPH, PLOT, TEXT or SHAPE parameter.";

TEST_F(PlotText, FirstPointStartsADefaultSeries) {
    ASSERT_EQ(type("plot x = 1, y = 2"), 0) << fe.output;
    ASSERT_EQ(graph.element_count, 1);
    EXPECT_EQ(graph.element_kinds[0], element_plot_series);
    EXPECT_EQ(graph.current_series, 0);
    const PlotSeries& s = series(0);
    EXPECT_EQ(s.lineweight, 3.0);
    EXPECT_EQ(s.sort_mode, sort_by_x);
    EXPECT_EQ(s.color, 0u);
    EXPECT_EQ(s.point_count, 1);
    EXPECT_EQ(s.drawn_count, 1);
    EXPECT_EQ(s.points[0].y, 2.0);
    ASSERT_EQ(type("plot x = -3, y = 7"), 0);
    EXPECT_EQ(graph.element_count, 1);
    EXPECT_EQ(graph.extents.xmin, -3.0);
    EXPECT_EQ(graph.extents.xmax, 1.0);
    EXPECT_EQ(graph.extents.ymin, 2.0);
    EXPECT_EQ(graph.extents.ymax, 7.0);
    EXPECT_TRUE(graph.data_changed);
}

TEST_F(PlotText, AttributesStartNewSeries) {
    ASSERT_EQ(type("plot color = (255, 0, 0), lineweight = 0.5, unsorted, average = 2, smooth = 10"), 0) << fe.output;
    ASSERT_EQ(graph.element_count, 1);
    EXPECT_EQ(series(0).point_count, 0);
    EXPECT_EQ(series(0).color, 0x0000FFu);
    EXPECT_EQ(series(0).sort_mode, sort_unsorted);
    EXPECT_EQ(series(0).average, 2.0);
    EXPECT_EQ(series(0).smooth, 10.0);
    ASSERT_EQ(type("plot x = 3, y = 0"), 0);
    ASSERT_EQ(type("plot x = 1, y = 0"), 0);
    EXPECT_EQ(xs(0), (std::vector<double>{3, 1}));  // unsorted: arrival order
    // TYPE is read, counted and dropped; LINETYPE is read and not counted.
    ASSERT_EQ(type("plot linetype = 2, x = 5, y = 0"), 0);
    EXPECT_EQ(graph.element_count, 1);
    ASSERT_EQ(type("plot type = 5, x = 5, y = 0"), 0);
    EXPECT_EQ(graph.element_count, 2);
    ASSERT_EQ(type("plot sortedy"), 0);
    EXPECT_EQ(graph.element_count, 3);
    EXPECT_EQ(series(2).sort_mode, sort_by_y);
    // Exactly one coordinate: the new series stays, the point is refused.
    EXPECT_TRUE(fails_with("plot color = 255, x = 1", "PLOT requires both X and Y values."));
    EXPECT_EQ(graph.element_count, 4);
    EXPECT_TRUE(fails_with("plot y = 1", "PLOT requires both X and Y values."));
    EXPECT_EQ(graph.element_count, 4);
}

TEST_F(PlotText, ParameterErrors) {
    EXPECT_TRUE(fails_with("plot z = 1", "Invalid PLOT function."));
    EXPECT_TRUE(fails_with("plot \"x\"", "Invalid PLOT function."));
    EXPECT_TRUE(fails_with("plot x 1", "Missing = sign."));
    EXPECT_TRUE(fails_with("plot x = \"a\", y = 1", "Invalid value for PLOT parameter."));
    EXPECT_TRUE(fails_with("plot type = \"a\"", "Invalid value for PLOT parameter."));
    EXPECT_TRUE(fails_with("plot lineweight = 11", invalid));
    EXPECT_TRUE(fails_with("plot average = -1", invalid));
    EXPECT_TRUE(fails_with("plot smooth = 10.1", invalid));
    EXPECT_TRUE(fails_with("plot color = (0, 0, 300)", invalid));
    EXPECT_EQ(graph.element_count, 0);
    ASSERT_EQ(type("graph end"), 0);
    EXPECT_TRUE(fails_with("plot x = 1, y = 1", "Graph is not active - use GRAPH statement."));
}

TEST_F(PlotText, SortedInsertionKeepsArrivalOrderOfEqualKeys) {
    ASSERT_EQ(type("plot x = 3, y = 30"), 0);
    ASSERT_EQ(type("plot x = 1, y = 10"), 0);
    ASSERT_EQ(type("plot x = 2, y = 20"), 0);
    ASSERT_EQ(type("plot x = 2, y = 21"), 0);
    ASSERT_EQ(type("plot x = 2, y = 22"), 0);
    EXPECT_EQ(xs(0), (std::vector<double>{1, 2, 2, 2, 3}));
    EXPECT_EQ(series(0).points[1].y, 20.0);
    EXPECT_EQ(series(0).points[2].y, 21.0);
    EXPECT_EQ(series(0).points[3].y, 22.0);
    ASSERT_EQ(type("plot sortedy"), 0);
    for (const char* p : {"plot x = 1, y = 5", "plot x = 2, y = -5", "plot x = 3, y = 5", "plot x = 4, y = 0"})
        ASSERT_EQ(type(p), 0);
    EXPECT_EQ(xs(1), (std::vector<double>{2, 4, 1, 3}));
}

TEST_F(PlotText, InfinitiesAndNaNAreHeldAsNumbers) {
    ASSERT_EQ(new_plot_series(1, sort_unsorted, 0, 0, 0), 0);
    const double inf = std::numeric_limits<double>::infinity();
    ASSERT_EQ(add_plot_point(inf, -inf), 0);
    ASSERT_EQ(add_plot_point(std::nan(""), std::nan("")), 0);
    EXPECT_EQ(series(0).points[0].x, 21474000.0);
    EXPECT_EQ(series(0).points[0].y, -21474000.0);
    EXPECT_EQ(series(0).points[1].x, 0.0);
    EXPECT_EQ(series(0).points[1].y, 0.0);
    EXPECT_EQ(graph.extents.xmax, 21474000.0);
}

TEST_F(PlotText, PointRoomGrowsByFiftyAndElementsStopAtAHundred) {
    ASSERT_EQ(new_plot_series(3, sort_by_x, 0, 0, 0), 0);
    for (int i = 0; i < 50; ++i) ASSERT_EQ(add_plot_point(i, i), 0);
    EXPECT_EQ(series(0).capacity, 50);
    ASSERT_EQ(add_plot_point(50, 50), 0);
    EXPECT_EQ(series(0).capacity, 100);
    EXPECT_EQ(series(0).point_count, 51);
    for (int i = 1; i < max_graph_elements; ++i) ASSERT_EQ(type("plot color = 1"), 0);
    EXPECT_EQ(graph.element_count, 100);
    EXPECT_TRUE(fails_with("plot color = 2", "Graph elements table is full."));
    EXPECT_EQ(graph.current_series, -1);
    EXPECT_TRUE(fails_with("plot x = 1, y = 1", "Graph elements table is full."));
}

TEST_F(PlotText, RefusedLogPointStaysAtItsPlaceAndTheLastFallsOut) {
    ASSERT_EQ(type("plot x = 1, y = 1"), 0);
    ASSERT_EQ(type("plot x = 2, y = 2"), 0);
    ASSERT_EQ(type("plot x = 3, y = 3"), 0);
    ASSERT_EQ(type("graph vscaletype = log"), 0) << fe.output;
    EXPECT_TRUE(fails_with("plot x = 1.5, y = 0", "Can't plot negative number or zero on log scale."));
    EXPECT_EQ(series(0).point_count, 3);
    EXPECT_EQ(xs(0), (std::vector<double>{1, 1.5, 2}));  // 3 fell out of the counted range
    EXPECT_EQ(series(0).points[3].x, 3.0);
    EXPECT_EQ(graph.extents.ymin, 1.0);  // the refused point is not in the extents
    ASSERT_EQ(type("plot x = 5, y = 100"), 0);
    EXPECT_EQ(series(0).points[3].log_y, 2.0);
    EXPECT_EQ(xs(0), (std::vector<double>{1, 1.5, 2, 5}));
}

TEST_F(PlotText, IncreasingInsertionStaysFast) {
    ASSERT_EQ(new_plot_series(1, sort_by_x, 0, 0, 0), 0);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 300000; ++i) ASSERT_EQ(add_plot_point(i, 0), 0);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_EQ(series(0).point_count, 300000);
    EXPECT_EQ(series(0).capacity, 300000);
    EXPECT_LT(seconds, 2.0);  // quadratic copying would take minutes
    ASSERT_EQ(add_plot_point(-1, 0), 0);  // the front still takes a point
    EXPECT_EQ(series(0).points[0].x, -1.0);
    EXPECT_EQ(series(0).points[300000].x, 299999.0);
}

TEST_F(PlotText, TextEntryDefaultsAndHiddenVariables) {
    ASSERT_EQ(type("text string = \"A\""), 0) << fe.output;
    ASSERT_EQ(type("text string = \"B\", x = 2, y = 3, size = 8, color = (0, 0, 255), boxed, justify = right"), 0)
        << fe.output;
    ASSERT_EQ(graph.texts.size(), 2u);
    const TextEntry& a = graph.texts[0];
    EXPECT_EQ(a.hmode, position_percent);
    EXPECT_EQ(a.hpos, 50.0);
    EXPECT_EQ(a.vpos, 85.0);
    EXPECT_EQ(a.justify, justify_center);
    EXPECT_EQ(a.bold, 1);
    EXPECT_EQ(a.italic, 0);
    EXPECT_EQ(a.size, 0.0);
    const TextEntry& b = graph.texts[1];
    EXPECT_EQ(b.hmode, position_data);
    EXPECT_EQ(b.hpos, 2.0);
    EXPECT_EQ(b.vpos, 3.0);
    EXPECT_EQ(b.size, 8.0);
    EXPECT_EQ(b.color, 0xFF0000u);
    EXPECT_EQ(b.boxed, 1);
    EXPECT_EQ(b.justify, justify_right);
    const int first = find_variable("_textstr1$");
    const int second = find_variable("_textstr2$");
    ASSERT_GE(first, 0);
    ASSERT_EQ(second, first + 1);
    EXPECT_EQ(a.text_variable.word, static_cast<std::uint32_t>(first + 1));
    EXPECT_EQ(text_of(a.text_variable), "A");
    EXPECT_EQ(text_of(b.text_variable), "B");
    EXPECT_EQ(window.drawn_texts, (std::vector<int>{0, 1}));
}

TEST_F(PlotText, TextShowsItsVariable) {
    ASSERT_EQ(type("t$ = \"first\""), 0);
    ASSERT_EQ(type("text string = t$, h = 10.9, v = 99"), 0) << fe.output;
    ASSERT_EQ(type("t$ = \"second\""), 0);
    EXPECT_EQ(text_of(graph.texts[0].text_variable), "second");
    EXPECT_EQ(graph.texts[0].hpos, 10.0);  // percent truncated
    EXPECT_EQ(graph.texts[0].vpos, 99.0);
    EXPECT_TRUE(fails_with("text string = t$ + \"x\"", "Must be string variable or string constant."));
    EXPECT_TRUE(fails_with("text string = 5", "Must be string variable or string constant."));
    EXPECT_EQ(graph.texts.size(), 1u);
}

TEST_F(PlotText, DefaultsChangeWithoutAString) {
    ASSERT_EQ(type("text normal"), 0);
    EXPECT_EQ(graph.default_bold, 0);
    ASSERT_EQ(type("text bold"), 0);
    EXPECT_EQ(graph.default_bold, 1);
    ASSERT_EQ(type("text italic, font = \"Serif with a name longer than thirty-one\""), 0);
    EXPECT_EQ(graph.default_italic, 1);
    EXPECT_STREQ(graph.default_font, "Serif with a name longer than t");
    EXPECT_TRUE(graph.texts.empty());
    EXPECT_TRUE(window.drawn_texts.empty());
    ASSERT_EQ(type("text string = \"x\", normal"), 0);
    EXPECT_EQ(graph.texts[0].bold, 0);
    EXPECT_STREQ(graph.texts[0].font_name, "Serif with a name longer than t");
    EXPECT_EQ(graph.default_italic, 1);  // NORMAL with a string is the entry's own
    EXPECT_TRUE(fails_with("text color = 5", "TEXT statement - missing STRING parameter."));
    EXPECT_TRUE(fails_with("text font = 5", "Invalid type - expecting a string."));
}

TEST_F(PlotText, RangesAndAngles) {
    EXPECT_EQ(type("text string = \"a\", h = 100"), 0);
    EXPECT_TRUE(fails_with("text string = \"a\", v = 100", invalid));
    EXPECT_TRUE(fails_with("text string = \"a\", h = -1", invalid));
    EXPECT_TRUE(fails_with("text string = \"a\", size = 5.9", invalid));
    EXPECT_TRUE(fails_with("text string = \"a\", datasize = -1", invalid));
    EXPECT_TRUE(fails_with("text string = \"a\", h = \"1\"", "Invalid value for TEXT parameter."));
    EXPECT_TRUE(fails_with("text string = \"a\", justify = middle", "Invalid value for TEXT parameter."));
    EXPECT_TRUE(fails_with("text strung = \"a\"", "Invalid TEXT function."));
    EXPECT_TRUE(fails_with("text string \"a\"", "Missing = sign."));

    const double pi = 3.141592653589793;
    ASSERT_EQ(type("degrees"), 0);
    ASSERT_EQ(type("text string = \"a\", angle = -90"), 0);
    EXPECT_EQ(graph.texts.back().angle, 3 * pi / 2);
    ASSERT_EQ(type("text string = \"a\", angle = 3600"), 0);
    EXPECT_EQ(graph.texts.back().angle, 0.0);
    EXPECT_TRUE(fails_with("text string = \"a\", angle = 3601", invalid));
    ASSERT_EQ(type("radians"), 0);
    ASSERT_EQ(type("text string = \"a\", angle = -1"), 0);
    EXPECT_DOUBLE_EQ(graph.texts.back().angle, 2 * pi - 1);
    EXPECT_TRUE(fails_with("text string = \"a\", angle = 63", invalid));
    for (const TextEntry& e : graph.texts) {
        EXPECT_GE(e.angle, 0.0);
        EXPECT_LT(e.angle, 2 * pi);
    }
}

TEST_F(PlotText, IncompatibleParameters) {
    const char* clash = "TEXT statement - Incompatible parameters.";
    for (const char* line :
         {"text string = \"a\", xaxis, yaxis", "text string = \"a\", xaxis, v = 3", "text string = \"a\", xaxis, boxed",
          "text string = \"a\", xaxis, angle = 1", "text string = \"a\", yaxis, h = 3",
          "text string = \"a\", yaxis, justify = left", "text string = \"a\", h = 3, x = 1",
          "text string = \"a\", v = 3, y2 = 1, y = 0", "text string = \"a\", x2 = 3",
          "text string = \"a\", x = 1, x2 = 3, size = 10", "text string = \"a\", size = 10, datasize = 2"})
        EXPECT_TRUE(fails_with(line, clash));
    EXPECT_TRUE(fails_with("text string = \"a\", x = 2, x2 = 1", invalid));
    EXPECT_TRUE(fails_with("text string = \"a\", y = 2, y2 = 1", invalid));
    EXPECT_TRUE(graph.texts.empty());
    // The caret is at the parameter that clashes.
    fe.take();
    (void)type("text string = \"a\", x = 1, h = 4");
    EXPECT_NE(fe.output.find("text string = \"a\", x = 1, h = 4\n                   *\n"), std::string::npos) << fe.output;
    ASSERT_EQ(type("text string = \"a\", x = 1, x2 = 4, y = 0, y2 = 2, datasize = 0.5"), 0) << fe.output;
    EXPECT_EQ(graph.texts[0].x2_given, 1);
    EXPECT_EQ(graph.texts[0].y2, 2.0);
}

TEST_F(PlotText, AxisLabels) {
    EXPECT_TRUE(fails_with("text string = \"a\", xaxis, size = 8", invalid));
    ASSERT_EQ(type("text string = \"Time (s)\", xaxis, size = 12, h = 40, italic"), 0) << fe.output;
    ASSERT_EQ(type("text string = \"Volts\", yaxis"), 0) << fe.output;
    EXPECT_TRUE(graph.texts.empty());
    EXPECT_EQ(graph.xaxis_label.set, 1);
    EXPECT_EQ(graph.xaxis_label.size, 12.0);
    EXPECT_EQ(graph.xaxis_label.position, 40.0);
    EXPECT_EQ(graph.xaxis_label.italic, 1);
    EXPECT_EQ(text_of(graph.xaxis_label.text_variable), "Time (s)");
    EXPECT_EQ(graph.yaxis_label.position, 50.0);
    EXPECT_EQ(text_of(graph.yaxis_label.text_variable), "Volts");
}

TEST_F(PlotText, TextTableStopsAtTwentyThousand) {
    ASSERT_EQ(type("t$ = \"x\""), 0);
    for (int i = 0; i < max_text_entries; ++i) ASSERT_EQ(type("text string = t$"), 0);
    EXPECT_EQ(graph.text_room, max_text_entries);
    EXPECT_TRUE(fails_with("text string = t$", "Text table is full."));
    EXPECT_EQ(graph.texts.size(), static_cast<std::size_t>(max_text_entries));
}

TEST_F(PlotText, NothingWithoutAGraphOrWhenPassedOver) {
    ASSERT_EQ(type("graph end"), 0);
    EXPECT_TRUE(fails_with("text string = \"a\"", "Graph is not active - use GRAPH statement."));
    EXPECT_TRUE(fails_with("text bold", "Graph is not active - use GRAPH statement."));
    ASSERT_EQ(type("if 0 then text string = 5, size = 1000"), 0) << fe.output;
    EXPECT_LT(find_variable("_textstr1$"), 0);
}

}  // namespace
}  // namespace tl::test
