// Save as PNG, SVG and PDF read back by other readers; the Save as dialog's linked sizes; Copy.
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPrinter>
#include <QMenuBar>
#include <QProcess>
#include <QRegularExpression>
#include <QSpinBox>
#include <QStandardPaths>

#include "export_support.h"
#include "gui/export_images.h"
#include "gui/export_save_dialog.h"

namespace tl::test {
namespace {

class ImageExport : public ExportTest {
protected:
    void keep(const QImage& image, const char* name) {
        if (const char* dir = std::getenv("TESSALINE_RENDER_DIR"); dir != nullptr)
            image.save(QString::fromUtf8(dir) + "/" + name + ".png");
    }
};

TEST_F(ImageExport, PngAtTheChosenResolutionIsTheScreensPicture) {
    draw_sample("width = 6, height = 4");
    const QString file = scratch.filePath("graph.PNG");
    ASSERT_EQ(gui::save_graph_file(file, 150, 75, tell), 0);
    EXPECT_EQ(told, std::vector<std::string>{"Tessaline Graph: PNG file was successfully created."});
    const QImage png(file, "PNG");
    ASSERT_EQ(png.size(), QSize(900, 600));
    EXPECT_LT(mean_difference(png, screen_image(150)), 1.0);
}

TEST_F(ImageExport, SvgKeepsTextsAsTextAndRendersAsTheScreen) {
    draw_sample("width = 6, height = 4");
    const QString file = scratch.filePath("graph.svg");
    ASSERT_EQ(gui::save_graph_file(file, 0, 75, tell), 0);
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QString svg = QString::fromUtf8(f.readAll());
    EXPECT_TRUE(svg.contains(QRegularExpression(">\\s*Export\\s*</text>"))) << svg.left(1500).toStdString();
    // The graph's size in inches, as millimetres.
    EXPECT_TRUE(svg.contains("width=\"152.4mm\" height=\"101.6mm\"")) << svg.left(600).toStdString();
    const QString png = file + ".png";
    (void)tool_output("rsvg-convert", {"-w", "600", "-h", "400", "-b", "white", "-o", png, file});
    const QImage rendered = QImage(png).convertToFormat(QImage::Format_RGB32);
    keep(rendered, "svg");
    ASSERT_EQ(rendered.size(), QSize(600, 400));
    EXPECT_LT(mean_difference(rendered, screen_image(100)), 6.0);
}

TEST_F(ImageExport, PdfIsOnePageOfTheGraphsSizeAndRendersAsTheScreen) {
    draw_sample("width = 6, height = 4");
    const QString file = scratch.filePath("graph.pdf");
    ASSERT_EQ(gui::save_graph_file(file, 0, 75, tell), 0);
    EXPECT_EQ(told, std::vector<std::string>{"Tessaline Graph: PDF file was successfully created."});
    const QString info = tool_output("pdfinfo", {file});
    EXPECT_TRUE(info.contains(QRegularExpression("Pages:\\s+1\\n"))) << info.toStdString();
    EXPECT_TRUE(info.contains(QRegularExpression("Page size:\\s+432 x 288 pts"))) << info.toStdString();
    (void)tool_output("pdftoppm", {"-png", "-r", "100", "-singlefile", file, file + ".page"});
    const QImage page = QImage(file + ".page.png").convertToFormat(QImage::Format_RGB32);
    keep(page, "pdf");
    ASSERT_EQ(page.size(), QSize(600, 400));
    EXPECT_LT(mean_difference(page, screen_image(100)), 6.0);
    // Text is text: another program finds it.
    EXPECT_TRUE(tool_output("pdftotext", {file, "-"}).contains("Export"));
}

TEST_F(ImageExport, FormatsFollowTheSuffixAndUnknownOnesAreRefused) {
    draw_sample();
    EXPECT_EQ(gui::format_of("a.Jpeg"), gui::GraphFileFormat::jpeg);
    EXPECT_EQ(gui::format_of("/x.y/a.EMF"), gui::GraphFileFormat::emf);
    EXPECT_EQ(gui::save_graph_file(scratch.filePath("graph.jpg"), 50, 80, tell), 0);
    EXPECT_EQ(QImage(scratch.filePath("graph.jpg")).size(), QSize(300, 200));
    EXPECT_EQ(gui::save_graph_file(scratch.filePath("graph.emf"), 50, 80, tell), 0);
    told.clear();
    EXPECT_EQ(gui::save_graph_file(scratch.filePath("graph.bmp"), 50, 80, tell), -1);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_FALSE(QFile::exists(scratch.filePath("graph.bmp")));
    told.clear();
    EXPECT_EQ(gui::save_graph_file(scratch.filePath("none/graph.png"), 50, 80, tell), -1);
    EXPECT_EQ(told, std::vector<std::string>{"Tessaline Graph: Unable to write " +
                                             scratch.filePath("none/graph.png").toStdString()});
}

TEST_F(ImageExport, TheSaveDialogLinksResolutionAndPixelsAndFollowsTheFormat) {
    gui::GraphSaveDialog d(nullptr, 7.5, 10, scratch.filePath("graph.png"), 100);
    if (const char* dir = std::getenv("TESSALINE_RENDER_DIR"); dir != nullptr)
        d.grab().save(QString::fromUtf8(dir) + "/save_dialog.png");
    EXPECT_EQ(d.width_box()->value(), 750);
    EXPECT_EQ(d.height_box()->value(), 1000);
    d.ppi_box()->setValue(300);
    EXPECT_EQ(d.width_box()->value(), 2250);
    EXPECT_EQ(d.height_box()->value(), 3000);
    d.width_box()->setValue(1500);  // 200 pixels per inch
    EXPECT_EQ(d.ppi(), 200);
    EXPECT_EQ(d.height_box()->value(), 2000);
    // Drawings have no resolution; choosing a format changes the suffix.
    d.file_edit()->setText(scratch.filePath("graph.svg"));
    EXPECT_EQ(d.format_box()->currentIndex(), static_cast<int>(gui::GraphFileFormat::svg));
    EXPECT_FALSE(d.ppi_box()->isEnabled());
    d.format_box()->setCurrentIndex(static_cast<int>(gui::GraphFileFormat::pdf));
    Q_EMIT d.format_box()->activated(static_cast<int>(gui::GraphFileFormat::pdf));
    EXPECT_EQ(d.file(), scratch.filePath("graph.pdf"));
    d.choose_file = [](QWidget*, const QString&, const QString& filters) {
        EXPECT_TRUE(filters.contains("*.emf"));
        return QString("/tmp/other.jpg");
    };
    d.browse();
    EXPECT_EQ(d.file(), "/tmp/other.jpg");
    EXPECT_TRUE(d.ppi_box()->isEnabled());
}

TEST_F(ExportTest, TheWindowsMenuSavesAndPrintsAndCopyPutsTheImageOnTheClipboard) {
    gui::QtGraphWindow qt_window{true};
    host.graph_window = &qt_window;
    std::vector<std::string> told;
    qt_window.tell_user = [&told](std::string_view, std::string_view text, bool) { told.emplace_back(text); };
    qt_window.run_save_dialog = [](gui::GraphSaveDialog& d) {
        d.file_edit()->setText("menu.png");  // in the working folder
        d.ppi_box()->setValue(40);
        return true;
    };
    int printed = 0;
    qt_window.choose_printer = [&printed](QPrinter&) { return ++printed, false; };
    draw_sample("width = 5, height = 2.5");
    settle();
    QMenu* file_menu = qt_window.frame()->menuBar()->actions()[0]->menu();
    for (QAction* a : file_menu->actions()) {
        if (a->text() == "Save &as...") a->trigger();
        if (a->text() == "&Print...") a->trigger();
    }
    EXPECT_EQ(QImage(scratch.filePath("menu.png")).size(), QSize(200, 100));
    EXPECT_EQ(told, std::vector<std::string>{"PNG file was successfully created."});
    EXPECT_EQ(printed, 1);

    QGuiApplication::clipboard()->clear();
    for (QAction* a : qt_window.frame()->menuBar()->actions()[1]->menu()->actions())
        if (a->text() == "&Copy") a->trigger();
    const QImage copied = QGuiApplication::clipboard()->image();
    ASSERT_FALSE(copied.isNull());
    const double ppi = qt_window.frame()->canvas()->ppi() * qt_window.frame()->devicePixelRatioF();
    EXPECT_NEAR(copied.width(), 5 * ppi, 1.0);
    EXPECT_NEAR(copied.height(), 2.5 * ppi, 1.0);
    host.graph_window = &window;
}

}  // namespace
}  // namespace tl::test
