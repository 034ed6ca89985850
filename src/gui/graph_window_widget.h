// graph_window_widget.h — the window "Tessaline Graph": the graph on screen,
// its menu, the wheel zoom, the drag-move and the coordinate read-out.
//
// QtGraphWindow is the graph-window interface (exec/graph_window.h) of the
// window program and of batch mode; it makes the window when GRAPH opens the
// graph and closes it at GRAPH END. Closing the window ends the graph. In
// batch mode the window is made but never shown.
//
// On screen the graph keeps its shape: it is drawn as large as the window
// allows, centred, at one scale both ways, and the window's margins take the
// graph's background.
#pragma once

#include <QMainWindow>
#include <functional>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QWidget>

#include "exec/graph_window.h"
#include "gui/graph_painter.h"

class QAction;
class QPrinter;
class QLabel;
class QRubberBand;
class QTimer;

namespace tl::gui {

class GraphSaveDialog;

/// The drawing area: paints the graph and turns mouse and keys into zoom and move.
class GraphCanvas final : public QWidget {
public:
    explicit GraphCanvas(QWidget* parent);
    /// Pixels per graph inch and the graph's top-left corner in the widget.
    double ppi() const;
    QPointF origin() const;
    /// Called with the data coordinates under the pointer (or none: false).
    std::function<void(bool, double, double)> on_pointer;

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QPointF surface_point(QPointF widget_point) const;
    void keep_rectangle();
    GraphPaintState state_;
    int wheel_rest_ = 0;
    QRubberBand* band_ = nullptr;
    QPoint band_start_;
    bool scale_warned_ = false;
};

/// The top-level window around the canvas.
class GraphFrame final : public QMainWindow {
public:
    explicit GraphFrame(QWidget* parent = nullptr);
    GraphCanvas* canvas() const { return canvas_; }
    /// Brings the Grid/Axes/Border marks in line with the settings.
    void update_marks();
    /// The client size that shows the graph at the screen's resolution,
    /// within most of the screen.
    QSize preferred_client_size() const;
    /// Set by the owner: the window is closing because the graph ended.
    bool closing_by_program = false;
    /// The File menu's Print and Save as (set by the owner).
    std::function<void()> on_print;
    std::function<void()> on_save;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void show_pointer(bool inside, double x, double y);
    void copy_image();
    GraphCanvas* canvas_;
    QAction* grid_on_ = nullptr;
    QAction* grid_off_ = nullptr;
    QAction* axes_on_ = nullptr;
    QAction* axes_off_ = nullptr;
    QAction* border_on_ = nullptr;
    QAction* border_off_ = nullptr;
    QAction* coordinates_ = nullptr;
    QLabel* x_field_ = nullptr;
    QLabel* y_field_ = nullptr;
};

/// The graph-window interface over GraphFrame.
class QtGraphWindow final : public GraphWindow {
public:
    /// `visible` false: batch mode (the window is made, never shown).
    explicit QtGraphWindow(bool visible);
    ~QtGraphWindow() override;

    bool create() override;
    void destroy() override;
    void resize_to_graph() override;
    void repaint(bool full) override;
    void repaint_now() override;
    void maximise() override;
    void update_menu_marks() override;
    void draw_text_entry(int index) override;
    void message_box(std::string_view caption, std::string_view text) override;
    // The graph's outputs (export_window.cpp). In batch mode every dialog
    // takes what it proposes.
    int export_jpeg() override;
    int export_metafile() override;
    int print_graph() override;
    /// The File menu's Save as: PNG, SVG, PDF, EMF or JPEG at a chosen resolution.
    int save_graph_as();

    /// The save-file dialog of the outputs: returns the name chosen, or an
    /// empty text after a cancel. Tests replace it.
    std::function<QString(QWidget* parent, const QString& title, const QString& start, const QString& filter,
                          const QString& suffix)>
        choose_save_file;
    /// Runs the Save as dialog: false after a cancel. Tests replace it.
    std::function<bool(GraphSaveDialog& dialog)> run_save_dialog;
    /// The print dialog on `printer`: false after a cancel. Tests replace it.
    std::function<bool(QPrinter& printer)> choose_printer;
    /// What the outputs tell the user (caption, text, failure); by default
    /// a message box on the window, in batch mode a line. Tests replace it.
    std::function<void(std::string_view caption, std::string_view text, bool failure)> tell_user;

    GraphFrame* frame() const { return frame_; }
    bool visible() const { return visible_; }

private:
    bool visible_;
    QPointer<GraphFrame> frame_;
    GraphPaintState hidden_state_;  ///< for paints of a window that is not shown
    QString last_metafile_;  // proposed by the next metafile dialog
    QString last_saved_;     // and by the next Save as, with its resolution
    int last_saved_ppi_ = 150;
    QTimer* repaint_timer_ = nullptr;
};

}  // namespace tl::gui
