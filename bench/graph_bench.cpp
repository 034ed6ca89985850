// graph_bench.cpp — times PLOT and the graph's screen repaint; renders programs' graphs to PNG.
//
//   graph_bench                      1,000,000 PLOT statements, then one screen
//                                    repaint at 10,000, 100,000 and 1,000,000 points
//   graph_bench --snapshot P.bas O.png [ppi]
//                                    runs program P and saves its graph as O.png
//
// Runs offscreen (QT_QPA_PLATFORM=offscreen unless set).
#include <QApplication>
#include <QImage>
#include <QPainter>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>

#include "exec/commands.h"
#include "exec/front_end.h"
#include "exec/graph_window.h"
#include "exec/program_store.h"
#include "exec/run_loop.h"
#include "exec/sizing_settings.h"
#include "graph/graph_state.h"
#include "graph/graph_statements.h"
#include "gui/graph_painter.h"
#include "lang/language_init.h"

namespace {

class PrintingFrontEnd : public tl::FrontEnd {
public:
    void write(std::string_view text) override { std::fwrite(text.data(), 1, text.size(), stdout); }
    bool read_line(std::string_view, std::string&) override { return false; }
    bool console_mode() const override { return false; }
};

/// A window that is never shown: repaints are counted, not done.
class HiddenWindow : public tl::GraphWindow {
public:
    bool create() override { return true; }
    void destroy() override {}
    void resize_to_graph() override {}
    void repaint(bool) override { tl::graph.repaint_pending = false; }
    void maximise() override {}
    void message_box(std::string_view caption, std::string_view text) override {
        std::printf("%.*s: %.*s\n", static_cast<int>(caption.size()), caption.data(), static_cast<int>(text.size()),
                    text.data());
    }
};

double seconds_since(std::chrono::steady_clock::time_point t) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t).count();
}

int run_program(const std::string& text) {
    if (!tl::replace_program_text(text)) return -1;
    if (const int rc = tl::check_program(); rc < 0) return rc;
    return tl::start_program(false);
}

/// One screen repaint of an 8 x 6 inch graph at 100 pixels per inch.
double repaint_seconds(int points) {
    (void)run_program("graph end\ngraph width = 8, height = 6\nplot color = (0, 80, 200), lineweight = 1\n");
    for (int i = 0; i < points; ++i) (void)tl::add_plot_point(i, std::sin(i * 1e-4) + 0.1 * std::sin(i * 0.37));
    QImage image(800, 600, QImage::Format_ARGB32_Premultiplied);
    tl::GraphPaintState state;
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        QPainter painter(&image);
        // Processor time: the machine may be shared.
        const std::clock_t start = std::clock();
        (void)tl::paint_graph(painter, 100, 100, tl::target_screen, state);
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    PrintingFrontEnd front_end;
    HiddenWindow window;
    tl::host.front_end = &front_end;
    tl::host.graph_window = &window;
    if (tl::init_language_tables(tl::default_sizing()) != 0) return 1;

    if (argc >= 4 && std::string(argv[1]) == "--snapshot") {
        std::ifstream in(argv[2]);
        std::stringstream text;
        text << in.rdbuf();
        if (run_program(text.str()) < 0) return 1;
        QImage image;
        tl::GraphPaintState state;
        const double ppi = argc >= 5 ? std::atof(argv[4]) : 96.0;
        if (tl::render_graph_image(image, ppi, tl::target_image, state) < 0 || !image.save(argv[3])) return 1;
        return 0;
    }

    const auto start = std::chrono::steady_clock::now();
    const std::clock_t cpu = std::clock();
    const int rc = run_program("graph\nfor i = 1 to 1000000\nplot x = i, y = sin(i / 1000)\nnext i\n");
    std::printf("1,000,000 PLOT statements: %.2f s (processor %.2f s) (%s)\n", seconds_since(start),
                static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC, rc < 0 ? "failed" : "ok");
    for (int n : {0, 1000, 10000, 100000, 1000000, 10000})
        std::printf("screen repaint, %7d points: %7.2f ms\n", n, repaint_seconds(n) * 1000);
    return 0;
}
