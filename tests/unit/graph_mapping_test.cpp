// The mapping between data and pixels, the layout step, zoom, drag-move, clicks.
#include <cmath>

#include "graph/graph_layout.h"
#include "graph/graph_mapping.h"
#include "graph/graph_statements.h"
#include "graph_test_support.h"
#include "exec/variables.h"
#include "lang/lang_state.h"

namespace tl::test {
namespace {

class GraphMapping : public GraphTest {
protected:
    void SetUp() override {
        GraphTest::SetUp();
        ASSERT_EQ(type("graph"), 0) << fe.output;
        // A 500 x 400 pixel plotting area at (50, 20), 100 pixels per inch;
        // 1 data unit per inch both ways; x = 0 at the left edge, y = 0 at the bottom.
        set_surface(100, 50, 20, 500, 400, 1, 1, 0, 0);
    }
    /// The data value at the graph's centre (what a zoom keeps).
    static double centre_x() {
        const GraphSettings& s = graph.settings;
        return s.width / 2 * s.hscale_calculated - s.hoffset_calculated;
    }
    /// The value of a numeric expression typed at the prompt.
    double value_of(const std::string& expression) {
        EXPECT_EQ(type(("value = " + expression).c_str()), 0) << fe.output;
        return variable_at(find_variable("value")).value.number;
    }
    static double centre_y() {
        const GraphSettings& s = graph.settings;
        return s.height / 2 * s.vscale_calculated - s.voffset_calculated;
    }
};

TEST_F(GraphMapping, PixelsAndBack) {
    EXPECT_EQ(map_to_pixel_x(0), 50);
    EXPECT_EQ(map_to_pixel_x(1), 150);
    EXPECT_EQ(map_to_pixel_x(0.004), 50);
    EXPECT_EQ(map_to_pixel_x(0.005), 51);
    EXPECT_EQ(map_to_pixel_y(0), 419);  // the bottom row of the area
    EXPECT_EQ(map_to_pixel_y(2), 219);
    graph.settings.hoffset_calculated = -10;  // x = 10 at the left edge
    graph.settings.voffset_calculated = 3;
    EXPECT_EQ(map_to_pixel_x(10), 50);
    EXPECT_EQ(map_to_pixel_y(-3), 419);
    for (double px : {50.0, 123.0, 549.0}) EXPECT_NEAR(map_to_pixel_x(map_to_data_x(px)), px, 1);
    EXPECT_DOUBLE_EQ(map_to_data_x(150.5), 11.0);
    EXPECT_DOUBLE_EQ(map_to_data_y(418.5), -3.0);
    // Drawing coordinates sit in the pixels that the mapping names.
    EXPECT_EQ(static_cast<int>(pixel_x_of(axis_value_x(12.34))), map_to_pixel_x(12.34));
    EXPECT_EQ(static_cast<int>(std::floor(pixel_y_of(axis_value_y(1.5)))), map_to_pixel_y(1.5));
    // Far outside the surface the pixel numbers stop at a bound instead of overflowing.
    EXPECT_EQ(map_to_pixel_x(1e300), 1000000000);
    EXPECT_EQ(map_to_pixel_x(-1e300), -1000000000);
}

TEST_F(GraphMapping, LogAxesMapDecades) {
    graph.settings.hlog = 1;
    graph.settings.vlog = 1;
    EXPECT_EQ(map_to_pixel_x(1), 50);
    EXPECT_EQ(map_to_pixel_x(1000), 350);
    EXPECT_EQ(map_to_pixel_y(10), 319);
    EXPECT_NEAR(map_to_data_x(250.5), 100.0, 1e-9);
    EXPECT_NEAR(map_to_data_y(318.5), 10.0, 1e-9);
}

TEST_F(GraphMapping, WheelZoomKeepsTheCentre) {
    const double cx = centre_x();
    const double cy = centre_y();
    ASSERT_EQ(wheel_zoom(true), 0);
    EXPECT_DOUBLE_EQ(graph.settings.hscale, 1 / 1.1);
    EXPECT_DOUBLE_EQ(graph.settings.vscale, 1 / 1.1);
    EXPECT_DOUBLE_EQ(graph.settings.hscale_calculated, 1 / 1.1);
    EXPECT_NEAR(centre_x(), cx, 1e-12);
    EXPECT_NEAR(centre_y(), cy, 1e-12);
    ASSERT_EQ(wheel_zoom(false), 0);
    EXPECT_NEAR(graph.settings.hscale, 1.0, 1e-15);
    EXPECT_NEAR(centre_x(), cx, 1e-12);
    EXPECT_EQ(window.full_repaints, 2);
    ASSERT_EQ(zoom_graph(1, 2, true), 0);
    EXPECT_NEAR(graph.settings.hscale, 0.5, 1e-15);
    EXPECT_NEAR(graph.settings.vscale, 1.0, 1e-15);
    EXPECT_TRUE(window.messages.empty());
}

TEST_F(GraphMapping, ZoomRefusals) {
    set_surface(100, 50, 20, 500, 400, 1.05e-306, 1, 0, 0);
    EXPECT_EQ(zoom_graph(1, 1.1, false), -1);
    ASSERT_EQ(window.messages.size(), 1u);
    EXPECT_EQ(window.messages[0], "Graph Zoom: Unable to perform requested zoom. Scale factor would be too small.");
    EXPECT_EQ(graph.settings.hscale, 0.0);  // nothing changed

    set_surface(100, 50, 20, 500, 400, 1, 9.5e306, 0, 0);
    EXPECT_EQ(zoom_graph(0, 1.1, false), -1);
    EXPECT_EQ(window.messages.back(), "Graph Zoom: Unable to perform requested zoom. Scale factor would be too large.");
    EXPECT_EQ(zoom_graph(0, 1.1, true), 0);  // the vertical scale is left alone

    set_surface(100, 50, 20, 500, 400, 1, 1, -1e8, 0);
    EXPECT_EQ(zoom_graph(1, 1.1, false), -1);
    EXPECT_EQ(window.messages.back(),
              "Graph Zoom: Unable to perform requested zoom. |Offset / scale| would be too large.");
}

TEST_F(GraphMapping, ZoomOutStaysInsideTheAxisLimits) {
    // A log axis can show decades -323.3 to 308.25: 631.6 decades in all.
    ASSERT_EQ(type("graph hscaletype = log"), 0);
    set_surface(100, 50, 20, 500, 400, 100, 1, 300, 0);  // 5 inches of 100 decades
    ASSERT_EQ(zoom_graph(0, 1.2, false), 0) << window.messages.size();
    // The visible range was pushed back inside: it starts at the lowest decade.
    EXPECT_NEAR(graph.settings.hoffset, -log_axis_min, 1e-9);
    EXPECT_EQ(zoom_graph(0, 1.1, false), -1);  // 660 decades do not fit
    EXPECT_EQ(window.messages.back(), "Graph Zoom: Unable to perform requested zoom. Scale factor would be too large.");
    EXPECT_DOUBLE_EQ(graph.settings.hscale, 120);
}

TEST_F(GraphMapping, DragMovesWithinLimits) {
    graph.settings.hscale = 0;  // automatic before the press
    drag_press(300, 200, 0);
    EXPECT_TRUE(graph.drag.dragging);
    EXPECT_EQ(graph.settings.hscale, 1.0);  // fixed at the calculated value
    drag_move(350, 200);                     // half an inch to the right, straight across
    EXPECT_DOUBLE_EQ(graph.settings.hoffset, 0.5);
    EXPECT_EQ(graph.settings.voffset, 0.0);
    EXPECT_EQ(graph.settings.voffset_calculated, 0.0);  // exactly its saved value
    drag_move(350, 150);
    EXPECT_DOUBLE_EQ(graph.settings.voffset, 0.5);  // up is positive
    drag_release(350, 200, 0);
    EXPECT_FALSE(graph.drag.dragging);
    EXPECT_DOUBLE_EQ(graph.settings.hoffset, 0.5);
    EXPECT_EQ(graph.settings.voffset, 0.0);  // released at the press row: back
    EXPECT_EQ(graph.settings.hscale, 1.0);

    // Clamped at the axis limits (a log axis: decades -323.3 to 308.25).
    graph.settings.hmin = log_axis_min;
    graph.settings.hmax = log_axis_max;
    set_surface(100, 50, 20, 500, 400, 1, 1, 323, 0);
    drag_press(300, 200, 0);
    drag_move(400, 200);  // one decade right: the left edge would pass the lowest value
    EXPECT_EQ(graph.settings.hoffset, -log_axis_min);
    drag_release(400, 200, 0);
    set_surface(100, 50, 20, 500, 400, 1, 1, -303, 0);
    drag_press(300, 200, 0);
    drag_move(200, 200);  // one decade left: the right edge would pass the highest value
    EXPECT_EQ(graph.settings.hoffset, 5 - log_axis_max);
    drag_release(200, 200, 0);
}

TEST_F(GraphMapping, DragRefusedWhenTheOffsetGrowsTooLarge) {
    set_surface(100, 50, 20, 500, 400, 1, 1, 100000009.99, 0);
    graph.settings.hscale = 0;
    drag_press(300, 200, 0);
    drag_move(301, 200);  // 100000010 is still allowed
    EXPECT_TRUE(graph.drag.dragging);
    drag_move(302, 200);
    EXPECT_FALSE(graph.drag.dragging);
    EXPECT_EQ(window.messages.back(), "Graph Move: Unable to perform requested move. |Offset / scale| would be too large.");
    EXPECT_EQ(graph.settings.hscale, 0.0);  // as at the press
    EXPECT_EQ(graph.settings.hoffset, 0.0);
}

TEST_F(GraphMapping, LockscreenStopsWheelAndDrag) {
    ASSERT_EQ(type("graph lockscreen = 1"), 0);
    set_surface(100, 50, 20, 500, 400, 1, 1, 0, 0);
    ASSERT_EQ(wheel_zoom(true), 0);
    EXPECT_EQ(graph.settings.hscale_calculated, 1.0);
    drag_press(300, 200, 0);
    drag_move(400, 100);
    EXPECT_EQ(graph.settings.hoffset_calculated, 0.0);
    drag_release(400, 100, 0);
    EXPECT_EQ(graph.settings.hscale, 0.0);
    EXPECT_EQ(graph.settings.hoffset, 0.0);
    home_view();
    EXPECT_EQ(zoom_to_rectangle(60, 30, 300, 300), 0);
    EXPECT_EQ(graph.settings.hscale_calculated, 1.0);
}

TEST_F(GraphMapping, ReleaseRecordsTheLastClick) {
    EXPECT_EQ(value_of("checkmouseclick"), 0.0);
    drag_press(150, 419, key_shift | key_ctrl);  // no drag with a key held
    EXPECT_FALSE(graph.drag.dragging);
    drag_release(150.5, 418.5, key_shift | key_ctrl);
    EXPECT_DOUBLE_EQ(lang.predefined[pre_mousexcoord].number, 1.0);
    EXPECT_DOUBLE_EQ(lang.predefined[pre_mouseycoord].number, 0.0);
    EXPECT_EQ(lang.predefined[pre_keystate].number, 3.0);
    EXPECT_EQ(value_of("checkmouseclick"), 1.0);
    EXPECT_EQ(value_of("mousexcoord + 10 * keystate"), 31.0);
    EXPECT_EQ(value_of("checkmouseclick"), 0.0);
    drag_press(150, 200, 0);
    drag_move(250, 200);
    drag_release(250, 200, key_ctrl);
    EXPECT_NEAR(lang.predefined[pre_mousexcoord].number, 0.995, 1e-12);  // where the data now are
    EXPECT_EQ(lang.predefined[pre_keystate].number, 2.0);
}

TEST_F(GraphMapping, RectangleZoomKeysAndHome) {
    ASSERT_EQ(zoom_to_rectangle(150.5, 218.5, 350.5, 18.5), 0);  // x 1..3, y 2..4
    EXPECT_DOUBLE_EQ(graph.settings.hscale, 2.0 / 5.0);
    EXPECT_DOUBLE_EQ(graph.settings.vscale, 2.0 / 4.0);
    EXPECT_DOUBLE_EQ(graph.settings.hoffset, -1.0);
    EXPECT_DOUBLE_EQ(graph.settings.voffset, -2.0);
    EXPECT_EQ(zoom_to_rectangle(10, 10, 11, 200), 0);  // too thin: ignored
    EXPECT_DOUBLE_EQ(graph.settings.hscale, 2.0 / 5.0);
    graph.surface.ppdu_x = 100 / graph.settings.hscale_calculated;
    graph.surface.ppdu_y = 100 / graph.settings.vscale_calculated;
    ASSERT_EQ(move_view(-50, 0), 0);
    EXPECT_DOUBLE_EQ(graph.settings.hoffset, -1.2);
    EXPECT_DOUBLE_EQ(graph.settings.voffset, -2.0);
    home_view();
    EXPECT_EQ(graph.settings.hscale, 0.0);
    EXPECT_EQ(graph.settings.voffset, 0.0);
}

TEST_F(GraphMapping, LayoutFitsTheDataWithClearance) {
    ASSERT_EQ(type("graph width = 6, height = 4, clearance = 0.25"), 0);
    ASSERT_EQ(type("plot x = 2, y = 10"), 0);
    ASSERT_EQ(type("plot x = 12, y = 30"), 0);
    const LayoutRoom room{50, 10, 20, 40};
    ASSERT_EQ(layout_graph(100, 100, room), 0);
    const GraphSurface& f = graph.surface;
    EXPECT_EQ(f.area_left, 50);  // centred: both sides take the larger room
    EXPECT_EQ(f.area_width, 500);
    EXPECT_EQ(f.area_top, 40);
    EXPECT_EQ(f.area_height, 320);
    // x takes in 0 (includeyaxis) and spreads 0..12 over 5 - 0.5 inches.
    EXPECT_DOUBLE_EQ(graph.settings.hscale_calculated, 12 / 4.5);
    EXPECT_EQ(map_to_pixel_x(0), 50 + 25);
    EXPECT_EQ(map_to_pixel_x(12), 50 + 475);
    EXPECT_EQ(map_to_pixel_y(30), 40 + 24);  // rows count up from the bottom row, 319
    EXPECT_EQ(map_to_pixel_y(0), 40 + 319 - 25);

    ASSERT_EQ(type("graph includexaxis = 0, includeyaxis = 0, hmargin = 1, vmargin = 0"), 0);
    ASSERT_EQ(layout_graph(100, 100, room), 0);
    EXPECT_EQ(f.area_left, 100);
    EXPECT_EQ(f.area_width, 490);
    EXPECT_EQ(f.area_top, 0);
    EXPECT_EQ(map_to_pixel_x(2), 125);
    EXPECT_EQ(map_to_pixel_y(10), 359 - 25);

    ASSERT_EQ(type("graph equalscales"), 0);
    ASSERT_EQ(layout_graph(100, 100, room), 0);
    EXPECT_EQ(graph.settings.hscale_calculated, graph.settings.vscale_calculated);
    EXPECT_NEAR(map_to_data_x(f.area_left + f.area_width / 2), 7, 0.1);  // both centred
    EXPECT_NEAR(map_to_data_y(f.area_top + f.area_height / 2), 20, 0.1);

    ASSERT_EQ(type("graph hscale = 1e-300"), 0);
    EXPECT_EQ(layout_graph(100, 100, room), 0);
    ASSERT_EQ(type("graph vscale = 1e307"), 0);
    EXPECT_EQ(layout_graph(1e-300, 1e-300, room), -1);  // no pixels per data unit
    ASSERT_EQ(type("graph width = -1"), 0);
    EXPECT_EQ(layout_graph(100, 100, room), -1);
}

TEST_F(GraphMapping, LayoutOfLogAxesAndNoData) {
    ASSERT_EQ(layout_graph(100, 100, LayoutRoom{}), 0);  // no data: 0..1 both ways
    EXPECT_NEAR(map_to_data_x(graph.surface.area_left + 0.5 + 10), 0, 1);
    ASSERT_EQ(type("graph hscaletype = log"), 0);
    ASSERT_EQ(type("plot x = 10, y = 1"), 0);
    ASSERT_EQ(type("plot x = 1e5, y = 2"), 0);
    ASSERT_EQ(layout_graph(100, 100, LayoutRoom{}), 0);
    EXPECT_EQ(map_to_pixel_x(10), 10);  // 0.1 inch of clearance
    EXPECT_EQ(map_to_pixel_x(1e5), 600 - 10);  // the fixture's graph is 6 inches wide
}

}  // namespace
}  // namespace tl::test
