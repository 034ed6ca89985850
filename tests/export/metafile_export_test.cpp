// The enhanced metafile: read by another program (emf2svg), rendered (rsvg-convert) and set beside the screen.
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include "export_support.h"
#include "gui/export_metafile.h"

namespace tl::test {
namespace {

class MetafileExport : public ExportTest {
protected:
    /// The metafile as SVG text, made by emf2svg.
    QString as_svg(const std::string& emf) {
        const QString svg = QString::fromStdString(emf) + ".svg";
        if (!run_tool("emf2svg-conv", {"-i", QString::fromStdString(emf), "-o", svg})) return {};
        QFile f(svg);
        if (!f.open(QIODevice::ReadOnly)) return {};
        return QString::fromUtf8(f.readAll());
    }
};

TEST_F(MetafileExport, AnotherProgramReadsTheLinesAndTextsAndSeesTheScreensPicture) {
    draw_sample("width = 6, height = 4");
    const std::string file = path("graph.emf");
    ASSERT_EQ(gui::write_graph_metafile(file, tell), 0);
    EXPECT_EQ(told, std::vector<std::string>{"Tessaline Graph: MetaFile was successfully created."});
    const QString svg = as_svg(file);
    ASSERT_FALSE(svg.isEmpty());
    // Text as text, and the tick numbers with it.
    EXPECT_TRUE(svg.contains("<![CDATA[Export]]>")) << svg.left(2000).toStdString();
    EXPECT_TRUE(svg.contains("<![CDATA[5]]>") || svg.contains("<![CDATA[4]]>"));
    // Both series as stroked lines in their colours; the background filled.
    EXPECT_TRUE(svg.contains("stroke=\"#DC1E1E\"", Qt::CaseInsensitive));
    EXPECT_TRUE(svg.contains("stroke=\"#1E1EC8\"", Qt::CaseInsensitive));
    EXPECT_TRUE(svg.contains("fill=\"#FAF5DC\"", Qt::CaseInsensitive));

    // Rendered at the screen's size, it is the screen's picture.
    const QString png = QString::fromStdString(file) + ".png";
    ASSERT_TRUE(run_tool("rsvg-convert", {"-w", "600", "-h", "400", "-o", png, QString::fromStdString(file) + ".svg"}));
    QImage rendered(png);
    ASSERT_FALSE(rendered.isNull());
    rendered = rendered.convertToFormat(QImage::Format_RGB32);
    const QImage screen = screen_image(100);
    ASSERT_EQ(rendered.size(), screen.size());
    if (const char* dir = std::getenv("TESSALINE_RENDER_DIR"); dir != nullptr) {
        rendered.save(QString::fromUtf8(dir) + "/metafile.png");
        screen.save(QString::fromUtf8(dir) + "/screen.png");
    }
    EXPECT_LT(mean_difference(rendered, screen), 6.0);
    // The red line where the screen has it.
    const int red_screen = count_colour(screen, QColor(220, 30, 30));
    const int red_rendered = count_colour(rendered, QColor(220, 30, 30));
    EXPECT_GT(red_rendered, red_screen * 7 / 10);
    EXPECT_LT(red_rendered, red_screen * 13 / 10);
}

TEST_F(MetafileExport, LinesAreCutAtThePlottingAreaAndOutsideTextsLeftOut) {
    // Zoomed so that both lines run far beyond the plotting area's left edge.
    draw_sample("width = 6, height = 4");
    program({"graph hscale = 1, hoffset = -2", "text string = \"Far\", x = -4, y = 3, color = (220, 30, 30)"});
    const std::string file = path("cut.emf");
    ASSERT_EQ(gui::write_graph_metafile(file, tell), 0);
    const QString svg = as_svg(file);
    EXPECT_FALSE(svg.contains("<![CDATA[Far]]>"));
    EXPECT_TRUE(svg.contains("<![CDATA[Export]]>"));
    const QString png = QString::fromStdString(file) + ".png";
    ASSERT_TRUE(run_tool("rsvg-convert", {"-w", "600", "-h", "400", "-o", png, QString::fromStdString(file) + ".svg"}));
    const QImage rendered = QImage(png).convertToFormat(QImage::Format_RGB32);
    const QImage screen = screen_image(100);  // lays the graph out at 100 pixels per inch
    const int area_left = static_cast<int>(graph.surface.area_left);
    ASSERT_GT(area_left, 10);
    const QRect margin(0, 0, area_left - 3, rendered.height());
    int red = 0, blue = 0;
    for (int y = margin.top(); y <= margin.bottom(); ++y)
        for (int x = margin.left(); x <= margin.right(); ++x) {
            const QColor c = rendered.pixelColor(x, y);
            red += c.red() > 180 && c.green() < 90;
            blue += c.blue() > 160 && c.red() < 90;
        }
    EXPECT_EQ(red, 0);
    EXPECT_EQ(blue, 0);
    EXPECT_GT(count_colour(rendered, QColor(220, 30, 30)), 300);  // the lines are there, inside
    EXPECT_LT(mean_difference(rendered, screen), 6.0);
}

TEST_F(MetafileExport, StretchedTextIsAsWideAsOnTheScreen) {
    // The same word once at its own width and once stretched over x = -4 .. 4.
    program({"graph width = 6, height = 4, nogrid, noaxes, noborder", "plot color = (255, 255, 255)",
             "plot x = -5, y = 0", "plot x = 5, y = 10",
             "text string = \"WIDE\", x = -4, x2 = 4, y = 6, color = (220, 30, 30)",
             "text string = \"WIDE\", x = 0, y = 2, color = (30, 30, 200)"});
    const std::string file = path("stretched.emf");
    ASSERT_EQ(gui::write_graph_metafile(file, tell), 0);
    const QString svg = as_svg(file);
    ASSERT_FALSE(svg.isEmpty());
    const QString png = QString::fromStdString(file) + ".png";
    ASSERT_TRUE(run_tool("rsvg-convert", {"-w", "600", "-h", "400", "-o", png, QString::fromStdString(file) + ".svg"}));
    const QImage rendered = QImage(png).convertToFormat(QImage::Format_RGB32);
    const QImage screen = screen_image(100);
    ASSERT_EQ(rendered.size(), screen.size());
    // The horizontal extent of a colour's pixels.
    const auto extent = [](const QImage& image, bool red) {
        int lo = image.width(), hi = -1;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                const bool hit = red ? c.red() > 150 && c.blue() < 120 : c.blue() > 150 && c.red() < 120;
                if (hit) lo = std::min(lo, x), hi = std::max(hi, x);
            }
        return hi - lo + 1;
    };
    const int stretched_screen = extent(screen, true);
    const int plain_screen = extent(screen, false);
    ASSERT_GT(stretched_screen, 2 * plain_screen);
    EXPECT_NEAR(extent(rendered, true), stretched_screen, stretched_screen / 10) << "plain " << extent(rendered, false);
    EXPECT_NEAR(extent(rendered, false), plain_screen, plain_screen / 5 + 2);
}

TEST_F(MetafileExport, AFileThatCannotBeMadeIsTold) {
    draw_sample();
    EXPECT_EQ(gui::write_graph_metafile(path("missing/graph.emf"), tell), -1);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].rfind("Tessaline Graph: Unable to create the metafile", 0), 0u) << told[0];
}

TEST_F(ExportTest, GraphMetafileAsksForTheNameProposesTheLastOneAndCanBeCancelled) {
    gui::QtGraphWindow qt_window{true};
    host.graph_window = &qt_window;
    std::vector<QString> asked;
    QString answer;
    qt_window.choose_save_file = [&](QWidget*, const QString& title, const QString& start, const QString& filter,
                                     const QString& suffix) {
        asked.push_back(title + "|" + start + "|" + filter + "|" + suffix);
        EXPECT_FALSE(qt_window.frame()->isVisible());  // hidden while asking
        return answer;
    };
    std::vector<std::string> told;
    qt_window.tell_user = [&told](std::string_view, std::string_view text, bool) { told.emplace_back(text); };
    draw_sample();
    fe.take();
    ASSERT_EQ(type("graph metafile"), 0);  // cancelled
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0], "Select the Output MetaFile (.emf)|" + scratch.filePath("graph.emf") +
                            "|Windows Enhanced Metafile (*.emf)|emf");
    EXPECT_TRUE(qt_window.frame()->isVisible());
    EXPECT_TRUE(QDir(scratch.path()).entryList(QDir::Files).isEmpty());
    EXPECT_TRUE(told.empty());
    answer = scratch.filePath("chosen.emf");
    ASSERT_EQ(type("graph metafile"), 0);
    EXPECT_TRUE(QFile::exists(answer));
    EXPECT_EQ(told, std::vector<std::string>{"MetaFile was successfully created."});
    ASSERT_EQ(type("graph metafile"), 0);
    EXPECT_EQ(asked.back().section('|', 1, 1), answer);
    host.graph_window = &window;
}

}  // namespace
}  // namespace tl::test
