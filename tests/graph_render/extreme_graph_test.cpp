// Graphs of sizes no screen shows (GRAPH WIDTH and HEIGHT take any number):
// drawn, laid out and zoomed without undefined arithmetic or a picture of
// the graph's whole size.
#include <QImage>
#include <QPainter>
#include <cmath>

#include "graph_test_support.h"
#include "gui/graph_painter.h"

namespace tl::test {
namespace {

class ExtremeGraph : public GraphTest {
protected:
    void program(std::initializer_list<const char*> lines) {
        for (const char* l : lines) ASSERT_EQ(type(l), 0) << l << "\n" << fe.output;
    }
};

TEST_F(ExtremeGraph, ASeriesOnAPlottingAreaBeyondAnyPixelCountIsDrawnWithinTheDrawingBounds) {
    // At one pixel per inch the plotting area is some 1e300 pixels wide: the
    // screen's reduction of long series must not count its columns in an int.
    program({"graph width = 1e300, height = 1e300"});
    for (int i = 0; i < 60; ++i) {
        const std::string line = "plot x = " + std::to_string(i) + ", y = " + std::to_string(i % 7);
        ASSERT_EQ(type(line.c_str()), 0);
    }
    QImage image(64, 48, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    GraphPaintState state;
    ASSERT_EQ(paint_graph(painter, 1.0, 1.0, target_screen, state), 0);
    EXPECT_GT(graph.surface.area_width, 1e299);
    ASSERT_EQ(state.path.size(), 60u);  // too few points per column to reduce
    for (const PathPoint& p : state.path) {
        EXPECT_LE(std::fabs(p.x), 1e7);
        EXPECT_LE(std::fabs(p.y), 1e7);
    }
}

}  // namespace
}  // namespace tl::test
