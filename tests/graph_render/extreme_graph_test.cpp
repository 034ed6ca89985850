// Graphs of sizes no screen shows (GRAPH WIDTH and HEIGHT take any number):
// drawn, laid out and zoomed without undefined arithmetic or a picture of
// the graph's whole size.
#include <sys/resource.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "graph/graph_mapping.h"
#include "graph_test_support.h"
#include "gui/graph_painter.h"
#include "gui/graph_window_widget.h"

namespace tl::test {
namespace {

/// The most memory the process has held so far, in megabytes.
long peak_megabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

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

TEST_F(ExtremeGraph, LayingOutForTheNumbersAllocatesNoPictureOfTheGraph) {
    // Batch mode lays a graph out at the screen's resolution when LISTPARMS
    // needs the calculated values; a zoom to a rectangle lays out once more.
    // A graph of 100000 inches each way would be a picture of 20000 x 20000
    // pixels (1.6 GB, the most a picture is made) if either drew it whole.
    gui::QtGraphWindow hidden(false);
    host.graph_window = &hidden;
    program({"graph width = 1e5, height = 1e5", "plot x = 0, y = 0", "plot x = 10, y = 5"});
    const long before = peak_megabytes();
    fe.take();
    program({"graph listparms"});
    EXPECT_NE(fe.output.find("HScale       ="), std::string::npos) << fe.output;
    ASSERT_TRUE(graph.surface.valid);
    EXPECT_GT(graph.surface.width_px, 9e6);
    EXPECT_GT(graph.settings.hscale_calculated, 0.0);

    // The right-button rectangle (its band needs the window on the screen).
    hidden.frame()->show();
    gui::GraphCanvas* canvas = hidden.frame()->canvas();
    QImage shot(canvas->size(), QImage::Format_ARGB32_Premultiplied);
    canvas->render(&shot);
    const QPointF a(canvas->width() * 0.3, canvas->height() * 0.3), b(canvas->width() * 0.6, canvas->height() * 0.7);
    QMouseEvent press(QEvent::MouseButtonPress, a, canvas->mapToGlobal(a), Qt::RightButton, Qt::RightButton,
                      Qt::NoModifier);
    QApplication::sendEvent(canvas, &press);
    QMouseEvent move(QEvent::MouseMove, b, canvas->mapToGlobal(b), Qt::NoButton, Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(canvas, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, b, canvas->mapToGlobal(b), Qt::RightButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(canvas, &release);
    EXPECT_NE(graph.settings.hscale, 0.0) << fe.output;  // the rectangle became the view
    EXPECT_LT(peak_megabytes() - before, 400);
    ASSERT_EQ(type("graph end"), 0);
    host.graph_window = &window;
}

TEST_F(ExtremeGraph, LayingOutIsWhatAPaintAtTheSameResolutionCalculates) {
    program({"graph width = 5, height = 4, hmargin = 0.7", "plot x = -3, y = 2", "plot x = 8, y = -1",
             "text xaxis, string = \"x\""});
    GraphPaintState state;
    ASSERT_EQ(lay_out_graph(120, target_screen, state), 0);
    const GraphSurface laid = graph.surface;
    const GraphSettings numbers = graph.settings;
    QImage image;
    ASSERT_EQ(render_graph_image(image, 120, target_screen, state), 0);
    EXPECT_EQ(laid.area_left, graph.surface.area_left);
    EXPECT_EQ(laid.area_top, graph.surface.area_top);
    EXPECT_EQ(laid.area_width, graph.surface.area_width);
    EXPECT_EQ(laid.area_height, graph.surface.area_height);
    EXPECT_EQ(numbers.hscale_calculated, graph.settings.hscale_calculated);
    EXPECT_EQ(numbers.voffset_calculated, graph.settings.voffset_calculated);
}

}  // namespace
}  // namespace tl::test
