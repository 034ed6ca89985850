// The painter drawing offscreen: pixels probed where the mapping says things are.
//
// TESSALINE_RENDER_DIR=folder keeps every image drawn, as NAME.png.
#include <QApplication>
#include <algorithm>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QStatusBar>
#include <QMenuBar>
#include <QWheelEvent>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdlib>
#include <cstdio>
#include <random>

#include "graph/graph_mapping.h"
#include "graph/graph_statements.h"
#include "graph_test_support.h"
#include "lang/lang_state.h"
#include "gui/graph_painter.h"
#include "gui/graph_window_widget.h"

namespace tl::test {
namespace {

class GraphRender : public GraphTest {
protected:
    GraphPaintState state;
    QImage image;

    /// Renders at `ppi` and keeps the image when asked to.
    int render(const char* name, double ppi = 100, int target = target_image) {
        const int rc = render_graph_image(image, ppi, target, state);
        if (const char* dir = std::getenv("TESSALINE_RENDER_DIR"); dir != nullptr)
            image.save(QString::fromUtf8(dir) + "/" + name + ".png");
        return rc;
    }
    void program(std::initializer_list<const char*> lines) {
        for (const char* l : lines) ASSERT_EQ(type(l), 0) << l << "\n" << fe.output;
    }
    QColor at(int x, int y) const { return image.pixelColor(x, y); }
    /// True when some pixel within `r` of (x, y) has colour `c` (within 40 per component).
    bool near_colour(int x, int y, int r, QColor c) const {
        for (int dy = -r; dy <= r; ++dy)
            for (int dx = -r; dx <= r; ++dx) {
                const QColor p = image.pixelColor(x + dx, y + dy);
                if (std::abs(p.red() - c.red()) < 40 && std::abs(p.green() - c.green()) < 40 &&
                    std::abs(p.blue() - c.blue()) < 40)
                    return true;
            }
        return false;
    }
    /// Pixels of colour `c` (within 40 per component) in a rectangle.
    int count_colour(QRect r, QColor c) const {
        r = r.intersected(image.rect());
        int n = 0;
        for (int y = r.top(); y <= r.bottom(); ++y)
            for (int x = r.left(); x <= r.right(); ++x) {
                const QColor p = image.pixelColor(x, y);
                n += std::abs(p.red() - c.red()) < 40 && std::abs(p.green() - c.green()) < 40 &&
                     std::abs(p.blue() - c.blue()) < 40;
            }
        return n;
    }
};

TEST_F(GraphRender, BackgroundSeriesAndAxesWhereTheMappingSays) {
    program({"graph width = 6, height = 4, bgcolor = (250, 245, 220), axiscolor = (0, 0, 90)",
             "plot color = (220, 30, 30), lineweight = 3", "plot x = -5, y = -2", "plot x = 5, y = 8"});
    ASSERT_EQ(render("series_axes"), 0);
    EXPECT_EQ(image.width(), 600);
    EXPECT_EQ(image.height(), 400);
    const QColor bg(250, 245, 220);
    EXPECT_EQ(at(0, 0), bg);
    EXPECT_EQ(at(599, 399), bg);
    EXPECT_EQ(at(599, 0), bg);
    // The line passes through (0, 3): red there, background well away from it.
    EXPECT_TRUE(near_colour(map_to_pixel_x(0), map_to_pixel_y(3), 1, QColor(220, 30, 30)));
    EXPECT_TRUE(near_colour(map_to_pixel_x(-4), map_to_pixel_y(-1), 1, QColor(220, 30, 30)));
    EXPECT_FALSE(near_colour(map_to_pixel_x(3), map_to_pixel_y(0.5), 2, QColor(220, 30, 30)));
    // The x axis at y = 0 and the y axis at x = 0, in the axis colour.
    EXPECT_TRUE(near_colour(map_to_pixel_x(3.3), map_to_pixel_y(0), 1, QColor(0, 0, 90)));
    EXPECT_TRUE(near_colour(map_to_pixel_x(0), map_to_pixel_y(6.5), 1, QColor(0, 0, 90)));
    // Numbers under the plotting area and left of it.
    const GraphSurface& f = graph.surface;
    const int below = static_cast<int>(f.area_top + f.area_height) + 8;
    EXPECT_GT(count_colour(QRect(static_cast<int>(f.area_left), below, static_cast<int>(f.area_width), 20),
                           QColor(0, 0, 90)),
              20);
    EXPECT_GT(count_colour(QRect(0, static_cast<int>(f.area_top), static_cast<int>(f.area_left) - 6,
                                 static_cast<int>(f.area_height)),
                           QColor(0, 0, 90)),
              20);
}

// A plotting area an inch or so tall still shows three numbers or more on
// its vertical axis, each clear of the next: the rows of the numbers left of
// the area are counted as separate bands of ink.
TEST_F(GraphRender, AShortVerticalAxisShowsThreeNumbersApart) {
    const char* heights[] = {"1.84", "2", "2.3"};  // plotting areas of 1.1, 1.26 and 1.56 inches
    const char* tops[] = {"7", "77", "8.6", "0.45", "1.9", "13", "9.6e6"};
    for (const char* h : heights) {
        for (const char* top : tops) {
            const std::string graph_line = std::string("graph width = 5, height = ") + h;
            const std::string plot_line = std::string("plot x = 10, y = ") + top;
            program({graph_line.c_str(), "plot x = 0, y = 0", plot_line.c_str()});
            const std::string name = std::string("short_axis_") + h + "_" + top;
            ASSERT_EQ(render(name.c_str()), 0);
            const GraphSurface& f = graph.surface;
            ASSERT_GE(f.area_height, 106) << name;
            // Rows with ink left of the tick marks, from the top of the image
            // to the bottom of the area (the horizontal axis's numbers lie below).
            const int right = static_cast<int>(f.area_left) - 8;
            const int bottom = static_cast<int>(f.area_top + f.area_height) + 2;
            std::vector<std::pair<int, int>> bands;  // first and last row of each
            for (int y = 0; y <= bottom; ++y) {
                bool ink = false;
                for (int x = 0; x < right && !ink; ++x) ink = qGray(image.pixel(x, y)) < 140;
                if (!ink) continue;
                if (!bands.empty() && bands.back().second == y - 1)
                    bands.back().second = y;
                else
                    bands.emplace_back(y, y);
            }
            EXPECT_GE(bands.size(), 3u) << name;
            for (std::size_t i = 1; i < bands.size(); ++i) {
                const int digit = bands[i].second - bands[i].first + 1;
                EXPECT_GE(bands[i].first - bands[i - 1].second - 1, digit * 3 / 4) << name << " between numbers " << i;
            }
            ASSERT_EQ(type("graph end"), 0);
        }
    }
}

TEST_F(GraphRender, SwitchedOffPartsAreNotDrawn) {
    program({"graph width = 4, height = 3, noaxes, nogrid, noborder, numberxaxis = 0, numberyaxis = 0",
             "plot x = 1, y = 1", "plot x = 2, y = 2"});
    ASSERT_EQ(render("bare"), 0);
    const GraphSurface& f = graph.surface;
    // Only the series is dark; the frame's corner and the axis places are white.
    EXPECT_EQ(at(static_cast<int>(f.area_left), static_cast<int>(f.area_top)), QColor(Qt::white));
    EXPECT_EQ(count_colour(QRect(0, 0, 400, static_cast<int>(f.area_top) - 2), QColor(0, 0, 0)), 0);
    EXPECT_EQ(count_colour(QRect(0, static_cast<int>(f.area_top + f.area_height) + 6, 400, 30), QColor(0, 0, 0)), 0);
    EXPECT_TRUE(near_colour(map_to_pixel_x(1.5), map_to_pixel_y(1.5), 1, QColor(0, 0, 0)));
}

TEST_F(GraphRender, GridInItsColour) {
    program({"graph width = 4, height = 3, gridcolor = (0, 160, 0), noaxes", "plot x = 0, y = 0",
             "plot x = 10, y = 0"});
    ASSERT_EQ(render("grid"), 0);
    const GraphSurface& f = graph.surface;
    const int y = static_cast<int>(f.area_top + f.area_height / 4);  // clear of the series
    int greenish = 0;
    for (int x = static_cast<int>(f.area_left) + 2; x < f.area_left + f.area_width - 2; ++x) {
        const QColor c = at(x, y);
        greenish += c.green() > c.red() + 20;
    }
    EXPECT_GE(greenish, 3);  // vertical grid lines cross the middle row
}

TEST_F(GraphRender, TextBoxAndLabels) {
    program({"graph width = 5, height = 4", "plot x = 0, y = 0", "plot x = 10, y = 10",
             "text string = \"Boxed\", x = 5, y = 5, boxed, color = (0, 0, 255), size = 14",
             "text string = \"Across\", xaxis, color = (200, 0, 200)",
             "text string = \"Up\", yaxis, color = (0, 150, 150)", "text string = \"Title\", v = 95, size = 16"});
    ASSERT_EQ(render("text"), 0);
    const int cx = map_to_pixel_x(5);
    const int cy = map_to_pixel_y(5);
    EXPECT_GT(count_colour(QRect(cx - 40, cy - 15, 80, 30), QColor(0, 0, 255)), 40);
    // The box is wider than the text: blue on a row above and below the letters.
    int top_row = 0;
    for (int y = cy - 30; y < cy; ++y) {
        int blue = 0;
        for (int x = cx - 30; x < cx + 30; ++x) blue += at(x, y).blue() > at(x, y).red() + 60;
        top_row = std::max(top_row, blue);
    }
    EXPECT_GE(top_row, 55);
    const GraphSurface& f = graph.surface;
    EXPECT_GT(count_colour(QRect(0, static_cast<int>(f.area_top + f.area_height), 500,
                                 static_cast<int>(400 - f.area_top - f.area_height)),
                           QColor(200, 0, 200)),
              10);
    EXPECT_GT(count_colour(QRect(0, 0, static_cast<int>(f.area_left), 400), QColor(0, 150, 150)), 10);
    EXPECT_GT(count_colour(QRect(0, 0, 500, 40), QColor(0, 0, 0)), 10);  // the title near the top
}

TEST_F(GraphRender, ATitleAtTheTopGetsRoomAboveThePlottingArea) {
    program({"graph width = 5, height = 4, noaxes", "plot x = 0, y = 0", "plot x = 10, y = 10",
             "text string = \"Title\", v = 93, size = 40, color = (255, 0, 0)"});
    ASSERT_EQ(render("title"), 0);
    // No red inside the plotting area, and all of the title above it.
    const GraphSurface& f = graph.surface;
    const QRect area(static_cast<int>(f.area_left), static_cast<int>(f.area_top), static_cast<int>(f.area_width),
                     static_cast<int>(f.area_height));
    EXPECT_EQ(count_colour(area, QColor(255, 0, 0)), 0);
    EXPECT_GT(count_colour(QRect(0, 0, 500, area.top()), QColor(255, 0, 0)), 50);
    // A text lower down is drawn over the plotting area, where it was put.
    program({"text string = \"Note\", v = 50, size = 20, color = (0, 160, 0)"});
    ASSERT_EQ(render("note"), 0);
    EXPECT_EQ(graph.surface.area_top, f.area_top);
    EXPECT_GT(count_colour(area, QColor(0, 160, 0)), 50);
}

TEST_F(GraphRender, LogAxesAndRotatedText) {
    program({"graph width = 5, height = 4, hscaletype = log, vscaletype = log", "plot color = (0, 90, 200)"});
    for (int i = 0; i <= 40; ++i) {
        const std::string line = "plot x = " + std::to_string(std::pow(10.0, i / 10.0)) +
                                 ", y = " + std::to_string(std::pow(10.0, i / 20.0) + 1);
        ASSERT_EQ(type(line.c_str()), 0) << fe.output;
    }
    program({"degrees", "text string = \"rising\", x = 100, y = 5, angle = 45, color = (200, 0, 0)"});
    ASSERT_EQ(render("log"), 0);
    EXPECT_TRUE(near_colour(map_to_pixel_x(1000), map_to_pixel_y(std::pow(10.0, 1.5) + 1), 2, QColor(0, 90, 200)));
    EXPECT_GT(count_colour(QRect(map_to_pixel_x(100) - 40, map_to_pixel_y(5) - 40, 80, 80), QColor(200, 0, 0)), 20);
}

TEST_F(GraphRender, DatetimeAxisWithDateLabels) {
    program({"settimezone \"UTC\"", "graph width = 6, height = 3, hscaletype = datetime, includexaxis = 0",
             "plot color = (30, 120, 60), lineweight = 2", "t0 = makedatetime(2026, 11, 1)"});
    for (int h = 0; h <= 24 * 20; h += 3) {
        const std::string line = "plot x = t0 + " + std::to_string(h * 3600) + ", y = 12 + 6 * sin(" +
                                 std::to_string(h) + " / 24 * 6.283) + " + std::to_string(h / 100.0);
        ASSERT_EQ(type(line.c_str()), 0) << fe.output;
    }
    ASSERT_EQ(render("datetime"), 0);
    // Day ticks: a date label under the area, and the series where it belongs.
    const GraphSurface& f = graph.surface;
    EXPECT_GT(count_colour(QRect(0, static_cast<int>(f.area_top + f.area_height) + 6, 600, 20), QColor(0, 0, 0)), 30);
    const double t = 1793491200.0 + 5 * 86400;  // 2026-11-06 00:00 UTC
    EXPECT_TRUE(near_colour(map_to_pixel_x(t), map_to_pixel_y(12 + 6 * std::sin(5 * 6.283) + 1.2), 2, QColor(30, 120, 60)));
}

TEST_F(GraphRender, TheExampleGraphsRunAndDraw) {
    const QDir dir(QStringLiteral(TESSALINE_SOURCE_DIR "/examples/graphs"));
    const QStringList programs = dir.entryList({QStringLiteral("*.bas")});
    EXPECT_GE(programs.size(), 6);
    for (const QString& name : programs) {
        QFile file(dir.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        fe.take();
        ASSERT_EQ(run(file.readAll().toStdString()), 0) << name.toStdString() << "\n" << fe.output;
        EXPECT_EQ(fe.output.find("ERROR"), std::string::npos) << fe.output;
        ASSERT_EQ(render(name.chopped(4).toUtf8().constData()), 0) << name.toStdString();
        EXPECT_GT(graph.element_count, 0);
        ASSERT_EQ(type("graph end"), 0);
    }
}

TEST_F(GraphRender, ScaleTooSmallDrawsOnlyTheBackground) {
    program({"graph width = 4, height = 3, hscale = 1e307", "plot x = 1, y = 1"});
    ASSERT_EQ(render("too_small", 1e-300), -1);
    EXPECT_EQ(render("fine"), 0);
}

TEST_F(GraphRender, ScreenReductionDrawsTheSamePicture) {
    program({"graph width = 4, height = 3", "plot color = (0, 0, 0), lineweight = 0.5"});
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0.0, 1.0);
    ASSERT_EQ(graph.current_series, 0);
    for (int i = 0; i < 100000; ++i) ASSERT_EQ(add_plot_point(i * 0.001, std::sin(i * 0.0001) * 5 + noise(random)), 0);
    ASSERT_EQ(render("full", 100, target_image), 0);
    const QImage full = image;
    ASSERT_EQ(render("reduced", 100, target_screen), 0);

    // Each pixel column keeps the lowest and highest point of the data in it,
    // and its first and last (the lines to the neighbouring columns).
    std::vector<PathPoint> all;
    series_pixels(graph.series[0], false, all, state.scratch);
    series_pixels(graph.series[0], true, state.path, state.scratch);
    EXPECT_LE(state.path.size(), 4 * 401u);
    struct Column {
        double top = 1e9, bottom = -1e9, first = 0, last = 0;
        bool seen = false;
    };
    std::vector<Column> want(420), got(420);
    const auto fill = [](std::vector<Column>& cols, const std::vector<PathPoint>& pts) {
        for (const PathPoint& q : pts) {
            const int x = static_cast<int>(std::floor(q.x));
            if (x < 0 || x >= static_cast<int>(cols.size())) continue;
            Column& c = cols[static_cast<std::size_t>(x)];
            if (!c.seen) c.first = q.y;
            c.seen = true;
            c.last = q.y;
            c.top = std::min(c.top, q.y);
            c.bottom = std::max(c.bottom, q.y);
        }
    };
    fill(want, all);
    fill(got, state.path);
    for (std::size_t x = 0; x < want.size(); ++x) {
        ASSERT_EQ(want[x].seen, got[x].seen) << x;
        EXPECT_EQ(want[x].top, got[x].top) << x;
        EXPECT_EQ(want[x].bottom, got[x].bottom) << x;
        EXPECT_EQ(want[x].first, got[x].first) << x;
        EXPECT_EQ(want[x].last, got[x].last) << x;
    }
    // The two pictures differ only at the thin tips of the spikes.
    int differing = 0;
    for (int y = 0; y < full.height(); ++y)
        for (int x = 0; x < full.width(); ++x)
            differing += std::abs(full.pixelColor(x, y).red() - image.pixelColor(x, y).red()) > 60;
    EXPECT_LT(differing, full.width() * full.height() * 3 / 100);
}

/// The window itself, offscreen: opened and closed by GRAPH, menu marks,
/// wheel, drag and closing by the user.
class GraphWindowTest : public GraphTest {
protected:
    gui::QtGraphWindow qt_window{true};
    void SetUp() override {
        GraphTest::SetUp();
        host.graph_window = &qt_window;
    }
    void TearDown() override {
        host.graph_window = nullptr;
        GraphTest::TearDown();
    }
    static void settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }
};

TEST_F(GraphWindowTest, OpensDrawsZoomsMovesAndCloses) {
    ASSERT_EQ(type("graph width = 4, height = 3, nogrid"), 0) << fe.output;
    gui::GraphFrame* frame = qt_window.frame();
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->windowTitle(), "Tessaline Graph");
    EXPECT_TRUE(frame->isVisible());
    ASSERT_EQ(type("plot color = (200, 0, 0), lineweight = 4"), 0);
    ASSERT_EQ(type("plot x = 0, y = 0"), 0);
    ASSERT_EQ(type("plot x = 10, y = 10"), 0);
    settle();
    gui::GraphCanvas* canvas = frame->canvas();
    const QImage shot = canvas->grab().toImage();
    ASSERT_TRUE(graph.surface.valid);
    const QPointF o = canvas->origin();
    const double r = shot.devicePixelRatio();
    const QColor c = shot.pixelColor(static_cast<int>((o.x() + map_to_pixel_x(5)) * r),
                                     static_cast<int>((o.y() + map_to_pixel_y(5)) * r));
    EXPECT_GT(c.red(), 150);
    EXPECT_LT(c.green(), 80);

    // The View menu's marks follow GRAPH.
    QAction* no_grid = nullptr;
    for (QAction* a : frame->menuBar()->actions()[2]->menu()->actions())
        if (a->text() == "No g&rid") no_grid = a;
    ASSERT_NE(no_grid, nullptr);
    EXPECT_TRUE(no_grid->isChecked());
    ASSERT_EQ(type("graph grid"), 0);
    EXPECT_FALSE(no_grid->isChecked());

    // The wheel zooms in about the centre; a drag moves.
    const double scale = graph.settings.hscale_calculated;
    const QPointF centre(canvas->width() / 2.0, canvas->height() / 2.0);
    QWheelEvent wheel(centre, canvas->mapToGlobal(centre), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(canvas, &wheel);
    EXPECT_NEAR(graph.settings.hscale, scale / 1.1, scale * 1e-12);
    settle();
    const double offset = graph.settings.hoffset_calculated;
    QMouseEvent press(QEvent::MouseButtonPress, centre, canvas->mapToGlobal(centre), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(canvas, &press);
    const QPointF to = centre + QPointF(30, 0);
    QMouseEvent move(QEvent::MouseMove, to, canvas->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(canvas, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, to, canvas->mapToGlobal(to), Qt::LeftButton, Qt::NoButton,
                        Qt::ShiftModifier);
    QApplication::sendEvent(canvas, &release);
    EXPECT_NEAR(graph.settings.hoffset, offset + 30 / graph.surface.ppdu_x, 1e-9);
    EXPECT_EQ(lang.predefined[pre_keystate].number, 1.0);

    // Closing the window ends the graph.
    frame->close();
    settle();
    EXPECT_FALSE(graph.open);
    EXPECT_EQ(graph.settings.hscale, 0.0);
    ASSERT_EQ(type("graph"), 0);
    ASSERT_EQ(type("graph end"), 0);
    settle();
    EXPECT_EQ(qt_window.frame(), nullptr);
}

TEST_F(GraphWindowTest, KeysRectangleReadoutAndResize) {
    ASSERT_EQ(type("graph width = 4, height = 3"), 0) << fe.output;
    ASSERT_EQ(type("plot x = 0, y = 0"), 0);
    ASSERT_EQ(type("plot x = 10, y = 5"), 0);
    gui::GraphFrame* frame = qt_window.frame();
    ASSERT_NE(frame, nullptr);
    gui::GraphCanvas* canvas = frame->canvas();
    settle();
    ASSERT_TRUE(graph.surface.valid);
    const GraphSettings& s = graph.settings;
    const auto key = [canvas](int k) {
        QKeyEvent press(QEvent::KeyPress, k, Qt::NoModifier);
        QApplication::sendEvent(canvas, &press);
        settle();
    };

    // + zooms in and - back out about the centre; an arrow moves by a tenth
    // of the plotting area; Home goes back to the automatic view.
    const double scale = s.hscale_calculated;
    key(Qt::Key_Plus);
    EXPECT_NEAR(s.hscale, scale / 1.1, scale * 1e-12);
    key(Qt::Key_Minus);
    EXPECT_NEAR(s.hscale, scale, scale * 1e-12);
    const double offset = s.hoffset_calculated;
    key(Qt::Key_Left);
    EXPECT_NEAR(s.hoffset, offset + graph.surface.area_width / 10 / graph.surface.ppdu_x, 1e-9);
    key(Qt::Key_Home);
    EXPECT_EQ(s.hscale, 0.0);
    EXPECT_EQ(s.hoffset, 0.0);

    // A rectangle dragged with the right button becomes the view.
    const QPointF o = canvas->origin();
    const double pixel = 1 / graph.surface.ppdu_x;  // on the view the corners were chosen on
    const double vpixel = 1 / graph.surface.ppdu_y;
    const QPointF a = o + QPointF(map_to_pixel_x(2), map_to_pixel_y(4));
    const QPointF b = o + QPointF(map_to_pixel_x(6), map_to_pixel_y(1));
    QMouseEvent press(QEvent::MouseButtonPress, a, canvas->mapToGlobal(a), Qt::RightButton, Qt::RightButton,
                      Qt::NoModifier);
    QApplication::sendEvent(canvas, &press);
    QMouseEvent move(QEvent::MouseMove, b, canvas->mapToGlobal(b), Qt::NoButton, Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(canvas, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, b, canvas->mapToGlobal(b), Qt::RightButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(canvas, &release);
    settle();
    EXPECT_NEAR(-s.hoffset, 2.0, 1.5 * pixel);
    EXPECT_NEAR(-s.hoffset + graph.surface.area_width / graph.surface.ppdu_x, 6.0, 1.5 * pixel);
    EXPECT_NEAR(-s.voffset, 1.0, 1.5 * vpixel);

    // With the screen locked, keys and the right button change nothing.
    ASSERT_EQ(type("graph lockscreen = 1"), 0);
    const double locked = s.hscale;
    key(Qt::Key_Plus);
    key(Qt::Key_Right);
    key(Qt::Key_Home);
    EXPECT_EQ(s.hscale, locked);
    ASSERT_EQ(type("graph lockscreen = 0"), 0);

    // The read-out shows the data under the pointer, "%23.18g" without its blanks.
    const QPointF p = o + QPointF(map_to_pixel_x(3), map_to_pixel_y(2));
    QMouseEvent hover(QEvent::MouseMove, p, canvas->mapToGlobal(p), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(canvas, &hover);
    QStringList texts;
    for (QLabel* l : frame->statusBar()->findChildren<QLabel*>()) texts << l->text();
    char want[64];
    std::snprintf(want, sizeof want, "x: %.18g", map_to_data_x(p.x() - o.x()));
    EXPECT_TRUE(texts.contains(QString::fromLatin1(want))) << texts.join(" | ").toStdString() << " / " << want;

    // Edit > Copy puts the graph on the clipboard as an image of the graph's shape.
    QAction* copy = nullptr;
    for (QAction* a : frame->menuBar()->actions()[1]->menu()->actions())
        if (a->text() == "&Copy") copy = a;
    ASSERT_NE(copy, nullptr);
    QGuiApplication::clipboard()->clear();
    copy->trigger();
    const QImage copied = QGuiApplication::clipboard()->image();
    ASSERT_FALSE(copied.isNull());
    EXPECT_NEAR(static_cast<double>(copied.width()) / copied.height(), 4.0 / 3.0, 0.02);
    EXPECT_GT(copied.width(), 100);

    // WIDTH and HEIGHT on an open graph resize the window, keeping its corner.
    const QSize before = frame->size();
    const QPoint corner = frame->pos();
    ASSERT_EQ(type("graph width = 2, height = 1.5"), 0) << fe.output;
    settle();
    EXPECT_LT(frame->width(), before.width());
    EXPECT_LT(frame->height(), before.height());
    EXPECT_EQ(frame->pos(), corner);
}

TEST_F(GraphWindowTest, ANewWindowOpensAtTheDefaultSizeWhateverTheGraphsSize) {
    ASSERT_EQ(type("graph width = 2, height = 1.5"), 0) << fe.output;
    ASSERT_NE(qt_window.frame(), nullptr);
    const QSize small = qt_window.frame()->size();
    ASSERT_EQ(type("graph end"), 0);
    settle();
    ASSERT_EQ(type("graph width = 9, height = 6.5"), 0) << fe.output;
    ASSERT_NE(qt_window.frame(), nullptr);
    EXPECT_EQ(qt_window.frame()->size(), small);
    // The graph is fitted into the window with its proportions.
    settle();
    const gui::GraphCanvas* canvas = qt_window.frame()->canvas();
    EXPECT_NEAR(canvas->ppi(), std::min(canvas->width() / 9.0, canvas->height() / 6.5), 1e-9);
}

}  // namespace
}  // namespace tl::test

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
