// export_support.h — a graph test with the real graph window (shown or batch) and a scratch folder.
#pragma once

#include <QApplication>
#include <QColor>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdlib>
#include <string>

#include "graph_test_support.h"
#include "gui/export_jpeg.h"
#include "gui/graph_painter.h"
#include "gui/graph_window_widget.h"
#include "shell/shell_state.h"

namespace tl::test {

class ExportTest : public GraphTest {
protected:
    QTemporaryDir scratch;
    /// What the exporters told the user: "caption: text".
    std::vector<std::string> told;
    gui::ExportMessage tell = [this](std::string_view caption, std::string_view text, bool) {
        told.push_back(std::string(caption) + ": " + std::string(text));
    };
    std::string saved_folder;
    shell::AppSettings saved_settings;

    void SetUp() override {
        GraphTest::SetUp();
        ASSERT_TRUE(scratch.isValid());
        saved_folder = shell::shell_state.working_folder;
        saved_settings = shell::shell_state.settings;
        shell::shell_state.working_folder = scratch.path().toStdString();
    }
    void TearDown() override {
        shell::shell_state.working_folder = saved_folder;
        shell::shell_state.settings = saved_settings;
        GraphTest::TearDown();
    }
    std::string path(const char* name) const { return scratch.filePath(name).toStdString(); }
    void program(std::initializer_list<const char*> lines) {
        for (const char* l : lines) ASSERT_EQ(type(l), 0) << l << "\n" << fe.output;
    }
    /// The test graph: a red line and a blue one with a text, on a pale background.
    void draw_sample(const char* size = "width = 6, height = 4") {
        const std::string open = std::string("graph ") + size + ", bgcolor = (250, 245, 220), nogrid";
        program({open.c_str(), "plot color = (220, 30, 30), lineweight = 3", "plot x = -5, y = -2",
                 "plot x = 5, y = 8", "plot color = (30, 30, 200), lineweight = 2", "plot x = -5, y = 6",
                 "plot x = 5, y = 0", "text string = \"Export\", v = 90, size = 14, color = (0, 120, 0)"});
    }
    /// The screen's picture of the graph at `ppi`.
    static QImage screen_image(double ppi) {
        QImage image;
        GraphPaintState state;
        EXPECT_EQ(render_graph_image(image, ppi, target_screen, state), 0);
        return image.convertToFormat(QImage::Format_RGB32);
    }
    /// Mean difference per colour component between two images of one size (255: none alike).
    static double mean_difference(const QImage& a, const QImage& b) {
        if (a.size() != b.size()) return 255;
        const QImage x = a.convertToFormat(QImage::Format_RGB32), y = b.convertToFormat(QImage::Format_RGB32);
        double sum = 0;
        for (int r = 0; r < x.height(); ++r)
            for (int c = 0; c < x.width(); ++c) {
                const QRgb p = x.pixel(c, r), q = y.pixel(c, r);
                sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q));
            }
        return sum / (3.0 * x.width() * x.height());
    }
    /// Pixels within 60 per component of `c`.
    static int count_colour(const QImage& image, QColor c) {
        int n = 0;
        for (int r = 0; r < image.height(); ++r)
            for (int x = 0; x < image.width(); ++x) {
                const QColor p = image.pixelColor(x, r);
                n += std::abs(p.red() - c.red()) < 60 && std::abs(p.green() - c.green()) < 60 &&
                     std::abs(p.blue() - c.blue()) < 60;
            }
        return n;
    }
    /// Runs another program (a reader of the files made); false, with a
    /// test failure, when it is missing or fails. Its output in `output`.
    static bool run_tool(const QString& program, const QStringList& arguments, QString* output = nullptr) {
        if (QStandardPaths::findExecutable(program).isEmpty()) {
            ADD_FAILURE() << program.toStdString() << " is missing (scripts/install-deps test)";
            return false;
        }
        QProcess p;
        p.start(program, arguments);
        if (!p.waitForFinished(60000) || p.exitCode() != 0) {
            ADD_FAILURE() << program.toStdString() << " failed: " << p.readAllStandardError().toStdString();
            return false;
        }
        if (output != nullptr) *output = QString::fromUtf8(p.readAllStandardOutput());
        return true;
    }
    static QString tool_output(const QString& program, const QStringList& arguments) {
        QString out;
        (void)run_tool(program, arguments, &out);
        return out;
    }
    static void settle() {
        for (int i = 0; i < 5; ++i) QApplication::processEvents();
    }
};

/// Answers the next modal dialog with `action` once it is open.
template <class Action>
void when_modal(Action action) {
    QTimer::singleShot(0, [action] {
        for (int tries = 0; tries < 200 && QApplication::activeModalWidget() == nullptr; ++tries)
            QApplication::processEvents(QEventLoop::AllEvents, 5);
        action(QApplication::activeModalWidget());
    });
}

}  // namespace tl::test
