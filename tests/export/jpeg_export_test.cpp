// The JPEG export and its dialog: sizes, clamps, libjpeg's output read back by a decoder, failures.
#include <QFile>
#include <QImageReader>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "export_support.h"
#include "gui/export_jpeg.h"
#include "gui/export_jpeg_dialog.h"

namespace tl::test {
namespace {

using gui::JpegChoice;

class JpegExport : public ExportTest {
protected:
    int write(const std::string& file, int quality, int resolution) {
        return gui::write_graph_jpeg(JpegChoice{file, quality, resolution}, tell);
    }
    static QImage read_back(const std::string& file) {
        QImageReader reader(QString::fromStdString(file), "jpeg");
        return reader.read();
    }
    /// The start-of-frame marker that follows the tables: C0 baseline, C2 progressive.
    static int frame_marker(const std::string& file) {
        QFile f(QString::fromStdString(file));
        if (!f.open(QIODevice::ReadOnly)) return -1;
        const QByteArray b = f.readAll();
        for (int i = 2; i + 1 < b.size(); ++i) {
            const auto m = static_cast<unsigned char>(b[i + 1]);
            if (static_cast<unsigned char>(b[i]) == 0xFF && (m == 0xC0 || m == 0xC1 || m == 0xC2)) return m;
        }
        return 0;
    }
};

TEST_F(JpegExport, ImageSizeIsResolutionTimesInchesRounded) {
    EXPECT_EQ(gui::jpeg_image_size(7.5, 10, 100), QSize(750, 1000));
    EXPECT_EQ(gui::jpeg_image_size(10, 7.5, 25), QSize(250, 188));  // 187.5 rounds up
    EXPECT_EQ(gui::jpeg_image_size(1.004, 2.006, 600), QSize(602, 1204));
}

TEST_F(JpegExport, PortraitGraphAtResolution100IsDecodedAsTheScreenShowsIt) {
    draw_sample("portrait");
    const std::string file = path("portrait.jpg");
    ASSERT_EQ(write(file, 100, 100), 0);
    ASSERT_EQ(told, std::vector<std::string>{"Tessaline Graph: JPEG file was successfully created."});
    const QImage decoded = read_back(file);
    ASSERT_FALSE(decoded.isNull());
    EXPECT_EQ(decoded.size(), QSize(750, 1000));
    EXPECT_EQ(frame_marker(file), 0xC0);  // baseline
    // What the decoder gives is the painter's picture, up to JPEG's losses.
    const QImage screen = screen_image(100);
    EXPECT_LT(mean_difference(decoded, screen), 2.0);
    EXPECT_GT(count_colour(decoded, QColor(220, 30, 30)), 500);
    EXPECT_GT(count_colour(decoded, QColor(30, 30, 200)), 300);
    // Colours keep their order: the pale background is not read as blue-green-red.
    EXPECT_NEAR(decoded.pixelColor(3, 3).red(), 250, 6);
    EXPECT_NEAR(decoded.pixelColor(3, 3).blue(), 220, 6);
}

TEST_F(JpegExport, QualityAndResolutionAreClampedAndQualityIsUsed) {
    draw_sample("width = 2, height = 1");
    ASSERT_EQ(write(path("q100.jpg"), 100, 700), 0);  // 700 is used as 600
    EXPECT_EQ(read_back(path("q100.jpg")).size(), QSize(1200, 600));
    ASSERT_EQ(write(path("q10.jpg"), 10, 10), 0);  // 10 is used as 25 both ways
    EXPECT_EQ(read_back(path("q10.jpg")).size(), QSize(50, 25));
    ASSERT_EQ(write(path("q25.jpg"), 25, 600), 0);
    EXPECT_LT(QFileInfo(QString::fromStdString(path("q25.jpg"))).size(),
              QFileInfo(QString::fromStdString(path("q100.jpg"))).size() / 2);
}

TEST_F(JpegExport, FilesThatCannotBeWrittenAreToldAndNothingIsLeft) {
    draw_sample();
    const std::string missing = path("no/such/folder/graph.jpg");
    EXPECT_EQ(write(missing, 75, 50), -1);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0], "Tessaline JPEG: can't open " + missing + "\n");
    EXPECT_FALSE(QFile::exists(QString::fromStdString(missing)));
    // A device that takes nothing: libjpeg's write error comes back as a message.
    if (QFile::exists("/dev/full")) {
        told.clear();
        EXPECT_EQ(write("/dev/full", 75, 300), -1);
        ASSERT_EQ(told.size(), 1u);
        EXPECT_EQ(told[0].rfind("Tessaline JPEG: ", 0), 0u) << told[0];
    }
    // The interpreter goes on.
    EXPECT_EQ(type("plot x = 1, y = 1"), 0);
    told.clear();
    EXPECT_EQ(write(path("after.jpg"), 75, 50), 0);
}

TEST_F(JpegExport, AnImageTooLargeForMemoryIsRefusedWithTheMemoryMessage) {
    draw_sample("width = 100, height = 100");
    EXPECT_EQ(write(path("huge.jpg"), 75, 600), -1);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0],
              "Tessaline Graph: Unable to create bitmap in memory\nCould be not enough memory.\n"
              "Try a smaller resolution or lower quality.");
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path("huge.jpg"))));
}

class JpegDialogTest : public ExportTest {
protected:
    std::vector<QString> warnings;
    QString chosen;
    void hook(gui::JpegDialog& d) {
        d.choose_file = [this](QWidget*, const QString&) { return chosen; };
        d.warn = [this](QWidget*, const QString& caption, const QString& text) { warnings.push_back(caption + ": " + text); };
    }
};

TEST_F(JpegDialogTest, OpensWithClampedValuesAndStepsAsUsersExpect) {
    for (int layout : {1, 2}) {
        gui::JpegDialog d(nullptr, layout, JpegChoice{"/tmp/x.jpg", 10, 700}, scratch.path());
        if (const char* dir = std::getenv("TESSALINE_RENDER_DIR"); dir != nullptr)
            d.grab().save(QString::fromUtf8(dir) + "/jpeg_dialog_" + QString::number(layout) + ".png");
        EXPECT_EQ(d.quality_edit()->text(), "25");
        EXPECT_EQ(d.quality_bar()->value(), 25);
        EXPECT_EQ(d.resolution_edit()->text(), "600");
        EXPECT_EQ(d.resolution_bar()->value(), 600);
        EXPECT_EQ(d.quality_bar()->singleStep(), 1);
        EXPECT_EQ(d.quality_bar()->pageStep(), 10);
        EXPECT_EQ(d.resolution_bar()->singleStep(), 1);
        EXPECT_EQ(d.resolution_bar()->pageStep(), 20);
        EXPECT_TRUE(d.resolution_bar()->hasTracking());
        // A page up on the resolution bar and a preset.
        d.resolution_bar()->triggerAction(QScrollBar::SliderPageStepSub);
        EXPECT_EQ(d.resolution_edit()->text(), "580");
        d.preset(200)->click();
        EXPECT_EQ(d.resolution_edit()->text(), "200");
        for (int r : {50, 100, 300}) ASSERT_NE(d.preset(r), nullptr);
        // A typed number moves the bar.
        d.quality_edit()->clear();
        QTest::keyClicks(d.quality_edit(), "60");
        EXPECT_EQ(d.quality_bar()->value(), 60);
    }
}

TEST_F(JpegDialogTest, BrowseWarnsOfOtherSuffixesButKeepsTheName) {
    gui::JpegDialog d(nullptr, 1, JpegChoice{"", 75, 96}, scratch.path());
    hook(d);
    chosen = "/data/Plot.JPG";
    d.browse();
    EXPECT_TRUE(warnings.empty());
    EXPECT_EQ(d.file_edit()->text(), "/data/Plot.JPG");
    chosen = "/data/plot.jpeg";
    d.browse();
    EXPECT_TRUE(warnings.empty());
    chosen = "/data/plot.png";
    d.browse();
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0], "JPEG File Name: Warning -- JPEG file name should have .JPG or .JPEG suffix");
    EXPECT_EQ(d.file_edit()->text(), "/data/plot.png");
    chosen.clear();  // cancelled: the name stays
    d.browse();
    EXPECT_EQ(d.file_edit()->text(), "/data/plot.png");
}

TEST_F(JpegDialogTest, OkCompletesTheNameWithTheWorkingFolderAndClampsTypedValues) {
    gui::JpegDialog d(nullptr, 2, JpegChoice{"pic.jpg", 75, 96}, scratch.path());
    hook(d);
    d.quality_edit()->setText("150");
    d.resolution_edit()->setText("700");
    d.accept();
    EXPECT_EQ(d.result(), QDialog::Accepted);
    EXPECT_EQ(d.choice().file, path("pic.jpg"));
    EXPECT_EQ(d.choice().quality, 100);
    EXPECT_EQ(d.choice().resolution, 600);
    // An empty name is not taken.
    gui::JpegDialog e(nullptr, 1, JpegChoice{"", 75, 96}, scratch.path());
    hook(e);
    e.accept();
    EXPECT_NE(e.result(), QDialog::Accepted);
    EXPECT_EQ(warnings.size(), 1u);
}

TEST_F(ExportTest, GraphJpegInTheWindowCancelledLeavesTheGraphVisibleAndSaysNothing) {
    gui::QtGraphWindow qt_window{true};
    host.graph_window = &qt_window;
    draw_sample();
    settle();
    fe.take();
    when_modal([&qt_window](QWidget* dialog) {
        ASSERT_NE(dialog, nullptr);
        EXPECT_FALSE(qt_window.frame()->isVisible());  // hidden while the dialog is open
        static_cast<QDialog*>(dialog)->reject();
    });
    ASSERT_EQ(type("graph jpeg"), 0);
    EXPECT_TRUE(qt_window.frame()->isVisible());
    EXPECT_EQ(fe.take(), "");
    EXPECT_TRUE(QDir(scratch.path()).entryList(QDir::Files).isEmpty());
    host.graph_window = &window;
}

}  // namespace
}  // namespace tl::test
