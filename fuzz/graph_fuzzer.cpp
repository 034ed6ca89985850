// graph_fuzzer.cpp — a graph program and what a user then does to its window.
//
// The input up to a line "#WINDOW#" is the program file (see program_fuzzer);
// the bytes behind it are window operations, carried out one per event pump
// while the program runs (as the window's event loop would deliver them) and
// the rest after it ends. The window is batch mode's graph window, shown on
// the offscreen platform once the right button is pressed (the zoom
// rectangle's band needs that); the operations are Qt events sent to its canvas, so the canvas's own
// wheel, drag, rubber-band and key handling drives the model, and a repaint
// renders the canvas through the painter. Each operation is one byte and its
// arguments:
//   0 x y d     wheel of d (signed) eighths of a notch at (x, y)
//   1 x y m     left button pressed at (x, y) with Shift (m&1) and Ctrl (m&2)
//   2 x y       pointer moved to (x, y), the left button held
//   3 x y m     left button released
//   4 x y       right button pressed (the zoom rectangle starts)
//   5 x y       pointer moved with the right button held
//   6 x y       right button released (the zoom to the rectangle)
//   7 k         a key: + = - Left Right Up Down Home, or an ordinary letter
//   8 w h       the canvas (or a shown window) resized to 2w x 2h pixels (Qt keeps the minimum)
//   9           LOCKSCREEN toggled
//   10          the canvas repainted
//   11 p t      the graph painted for target t at 0.01 * 10^(p/50) pixels per inch
//   12          the window's immediate repaint (what LISTPARMS asks for)
//   13 n        the next n event pumps pass without an operation
// Positions x and y are bytes spread over the canvas and a quarter beyond each side.
#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "exec/commands.h"
#include "exec/run_loop.h"
#include "fuzz_host.h"
#include "graph/graph_state.h"
#include "gui/export_jpeg.h"
#include "gui/graph_painter.h"
#include "gui/graph_window_widget.h"
#include "shell/shell_state.h"

namespace {

constexpr std::string_view window_marker = "\n#WINDOW#\n";
/// Repaints one input may ask for (each lays out and draws the whole graph).
constexpr int paints_per_input = 24;
/// The size a new window starts with: small, so that paints are quick.
constexpr int start_width = 280;
constexpr int start_height = 240;

/// Batch mode's graph window as the interpreter sees it, but for JPEG
/// pictures too large for one input's time: GRAPH JPEG of a graph hundreds
/// of inches wide is a picture of up to 2 GB, painted and compressed for
/// many seconds. Those are passed over as if the dialog had been cancelled.
class BoundedGraphWindow final : public tl::GraphWindow {
public:
    static constexpr double most_jpeg_pixels = 4e6;
    tl::gui::QtGraphWindow window{false};

    bool create() override { return window.create(); }
    void destroy() override { window.destroy(); }
    void resize_to_graph() override { window.resize_to_graph(); }
    void repaint(bool full) override { window.repaint(full); }
    void repaint_now() override { window.repaint_now(); }
    void maximise() override { window.maximise(); }
    void update_menu_marks() override { window.update_menu_marks(); }
    void draw_text_entry(int index) override { window.draw_text_entry(index); }
    void message_box(std::string_view caption, std::string_view text) override { window.message_box(caption, text); }
    int print_graph() override { return window.print_graph(); }
    int export_metafile() override { return window.export_metafile(); }
    int export_jpeg() override {
        const std::uint32_t asked = tl::shell::shell_state.settings.jpeg_resolution;
        const int resolution = std::clamp(static_cast<int>(std::min<std::uint32_t>(asked, 1000)),
                                          tl::gui::jpeg_resolution_lowest, tl::gui::jpeg_resolution_highest);
        const QSize size = tl::gui::jpeg_image_size(tl::graph.settings.width, tl::graph.settings.height, resolution);
        if (static_cast<double>(size.width()) * size.height() > most_jpeg_pixels) return -1;
        return window.export_jpeg();
    }
};

/// A front end that is a window (graphs allowed) and carries out one window
/// operation at each event pump.
class GraphFuzzFrontEnd final : public tl::fuzz::FuzzFrontEnd {
public:
    BoundedGraphWindow bounded;
    tl::gui::QtGraphWindow& window = bounded.window;
    std::string_view operations;
    int paints = 0;
    int idle_pumps = 0;
    tl::gui::GraphFrame* sized_frame = nullptr;  ///< the window whose canvas was given its start size

    bool console_mode() const override { return false; }
    void pump_events() override {
        FuzzFrontEnd::pump_events();
        if (idle_pumps > 0) {
            --idle_pumps;
            return;
        }
        if (!operations.empty() && !in_operation_) run_operation();
    }
    /// Carries out the next operation (any pumps it causes carry out none);
    /// none while no window is open.
    void run_operation();

private:
    unsigned byte() {
        if (operations.empty()) return 0;
        const unsigned b = static_cast<unsigned char>(operations.front());
        operations.remove_prefix(1);
        return b;
    }
    QPointF position(const QWidget& canvas) {
        const double x = byte() / 255.0 * 1.5 - 0.25;
        const double y = byte() / 255.0 * 1.5 - 0.25;
        return QPointF(x * canvas.width(), y * canvas.height());
    }
    void paint(tl::gui::GraphCanvas& canvas) {
        if (paints++ >= paints_per_input || canvas.width() <= 0 || canvas.height() <= 0) return;
        QImage image(canvas.size(), QImage::Format_ARGB32_Premultiplied);
        canvas.render(&image);
    }
    bool in_operation_ = false;
    tl::GraphPaintState paint_state_;
};

void send(QWidget& to, QEvent& event) { QApplication::sendEvent(&to, &event); }

void mouse(QWidget& canvas, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held,
           unsigned keys) {
    const Qt::KeyboardModifiers modifiers((keys & 1 ? Qt::ShiftModifier : Qt::NoModifier) |
                                          (keys & 2 ? Qt::ControlModifier : Qt::NoModifier));
    QMouseEvent event(type, at, canvas.mapToGlobal(at), button, held, modifiers);
    send(canvas, event);
}

void GraphFuzzFrontEnd::run_operation() {
    if (std::chrono::steady_clock::now() > deadline) {
        operations = {};
        return;
    }
    tl::gui::GraphFrame* frame = window.frame();
    if (frame == nullptr) return;  // the operations wait for the window
    const unsigned op = byte() % 14;
    in_operation_ = true;
    tl::gui::GraphCanvas& canvas = *frame->canvas();
    if (sized_frame != frame) {
        sized_frame = frame;
        canvas.resize(start_width, start_height);
    }
    // The window paints before it takes the user's first event.
    if (!tl::graph.surface.valid && op != 13) paint(canvas);
    switch (op) {
        case 0: {
            const QPointF at = position(canvas);
            const int delta = static_cast<int>(static_cast<std::int8_t>(byte())) * 15;
            QWheelEvent event(at, canvas.mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            send(canvas, event);
            break;
        }
        case 1: {
            const QPointF at = position(canvas);
            mouse(canvas, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, byte());
            break;
        }
        case 2:
            mouse(canvas, QEvent::MouseMove, position(canvas), Qt::NoButton, Qt::LeftButton, 0);
            break;
        case 3: {
            const QPointF at = position(canvas);
            mouse(canvas, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, byte());
            break;
        }
        case 4:
            // The zoom rectangle's band needs the window on the (offscreen)
            // screen; showing it costs time, so only windows that zoom so are shown.
            if (!frame->isVisible()) {
                frame->resize(canvas.width(), canvas.height() + frame->height() - frame->centralWidget()->height());
                frame->show();
            }
            mouse(canvas, QEvent::MouseButtonPress, position(canvas), Qt::RightButton, Qt::RightButton, 0);
            break;
        case 5:
            mouse(canvas, QEvent::MouseMove, position(canvas), Qt::NoButton, Qt::RightButton, 0);
            break;
        case 6:
            mouse(canvas, QEvent::MouseButtonRelease, position(canvas), Qt::RightButton, Qt::NoButton, 0);
            break;
        case 7: {
            constexpr int keys[] = {Qt::Key_Plus, Qt::Key_Equal, Qt::Key_Minus, Qt::Key_Left, Qt::Key_Right,
                                    Qt::Key_Up,   Qt::Key_Down,  Qt::Key_Home,  Qt::Key_A};
            QKeyEvent event(QEvent::KeyPress, keys[byte() % std::size(keys)], Qt::NoModifier);
            send(canvas, event);
            break;
        }
        case 8: {
            // A shown window is resized whole (its layout sizes the canvas).
            const int w = static_cast<int>(byte()) * 2;
            const int h = static_cast<int>(byte()) * 2;
            if (frame->isVisible()) {
                frame->resize(w, h);
            } else {
                canvas.resize(w, h);
            }
            break;
        }
        case 9:
            tl::graph.settings.lockscreen ^= 1;
            break;
        case 10:
            paint(canvas);
            break;
        case 11: {
            const double ppi = 0.01 * std::pow(10.0, byte() / 50.0);
            const int target = static_cast<int>(byte() % 4) + 1;
            if (paints++ < paints_per_input) {
                QImage image(64, 48, QImage::Format_ARGB32_Premultiplied);
                QPainter painter(&image);
                (void)tl::paint_graph(painter, ppi, ppi, target, paint_state_);
            }
            break;
        }
        case 12:
            window.repaint_now();
            break;
        case 13:
            idle_pumps = static_cast<int>(byte());
            break;
        default:
            break;
    }
    in_operation_ = false;
}

struct Harness {
    GraphFuzzFrontEnd front_end;
    tl::fuzz::FolderKeeper folder;
    tl::fuzz::ProgramFile file;
};

Harness* harness = nullptr;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    new QApplication(*argc, *argv);
    harness = new Harness;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    if (tl::fuzz::mentions_spawn(all)) return -1;
    const std::size_t marker = all.find(window_marker);
    const std::string_view program = all.substr(0, marker);
    GraphFuzzFrontEnd& fe = harness->front_end;

    harness->file.write(program);
    tl::fuzz::start_interpreter(fe, {});
    tl::host.graph_window = &fe.bounded;
    fe.operations = marker == std::string_view::npos ? std::string_view() : all.substr(marker + window_marker.size());
    fe.paints = 0;
    fe.idle_pumps = 0;
    fe.sized_frame = nullptr;
    (void)tl::load_and_run(harness->file.path(), false, false);
    // What the program left for the user: the remaining operations, then
    // the settings listed and the graph drawn once more.
    fe.deadline = std::chrono::steady_clock::now() + tl::fuzz::time_per_input;
    fe.idle_pumps = 0;
    while (!fe.operations.empty() && fe.window.frame() != nullptr) fe.run_operation();
    fe.operations = {};
    tl::exec.statement_budget = tl::fuzz::statements_per_input;
    fe.pumps = 0;
    (void)tl::run_command_line("graph listparms");
    fe.window.repaint_now();
    tl::end_graph(true);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    tl::host.graph_window = nullptr;
    harness->folder.restore();
    return 0;
}
