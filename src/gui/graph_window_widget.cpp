// graph_window_widget.cpp — the graph window, its canvas and its menu.
#include "gui/graph_window_widget.h"

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QRubberBand>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <cstdio>

#include "exec/front_end.h"
#include "graph/graph_mapping.h"
#include "graph/graph_state.h"
#include "lang/datetime_text.h"

namespace tl::gui {
namespace {

QColor background() {
    const Rgb c = graph.settings.bgcolor;
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>(c >> 8 & 0xFF), static_cast<int>(c >> 16 & 0xFF));
}

int key_state_of(Qt::KeyboardModifiers m) {
    return (m & Qt::ShiftModifier ? key_shift : 0) | (m & Qt::ControlModifier ? key_ctrl : 0);
}

/// A coordinate for the read-out: "%23.18g", or date and time on a datetime axis.
QString coordinate_text(double v, bool datetime) {
    char text[64];
    if (datetime) {
        datetime_axis_text(v, 0.0, text, sizeof text);
    } else {
        std::snprintf(text, sizeof text, "%23.18g", v);
    }
    return QString::fromUtf8(text).trimmed();
}

}  // namespace

// ---------------------------------------------------------------------------
// The canvas

GraphCanvas::GraphCanvas(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::ArrowCursor);
    setMinimumSize(120, 90);
}

double GraphCanvas::ppi() const {
    const GraphSettings& s = graph.settings;
    if (!(s.width > 0 && s.height > 0)) return 96.0;
    return std::max(1.0, std::min(width() / s.width, height() / s.height));
}

QPointF GraphCanvas::origin() const {
    const GraphSettings& s = graph.settings;
    const double p = ppi();
    return QPointF(std::max(0.0, (width() - s.width * p) / 2), std::max(0.0, (height() - s.height * p) / 2));
}

QPointF GraphCanvas::surface_point(QPointF widget_point) const { return widget_point - origin(); }

void GraphCanvas::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), background());
    graph.repaint_pending = false;
    if (!graph.open) return;
    painter.translate(origin());
    const int rc = paint_graph(painter, ppi(), ppi(), target_screen, state_);
    if (rc < 0 && !scale_warned_) {
        scale_warned_ = true;
        // Not from inside the paint: the box runs an event loop of its own.
        QTimer::singleShot(0, this, [this] {
            QMessageBox::warning(window(), "Tessaline Graph", "Horizontal or Vertical Scale is too small");
        });
    }
    if (rc == 0) scale_warned_ = false;
}

void GraphCanvas::wheelEvent(QWheelEvent* event) {
    if (!graph.open || !graph.surface.valid) return;
    wheel_rest_ += event->angleDelta().y();
    while (wheel_rest_ >= 120 || wheel_rest_ <= -120) {
        const bool forward = wheel_rest_ > 0;
        wheel_rest_ += forward ? -120 : 120;
        if (wheel_zoom(forward) < 0) {
            wheel_rest_ = 0;
            break;
        }
    }
    event->accept();
}

void GraphCanvas::mousePressEvent(QMouseEvent* event) {
    if (!graph.open || !graph.surface.valid) return;
    const QPointF p = surface_point(event->position());
    if (event->button() == Qt::LeftButton) {
        drag_press(p.x(), p.y(), key_state_of(event->modifiers()));
    } else if (event->button() == Qt::RightButton && graph.settings.lockscreen == 0) {
        band_start_ = event->position().toPoint();
        if (band_ == nullptr) band_ = new QRubberBand(QRubberBand::Rectangle, this);
        band_->setGeometry(QRect(band_start_, QSize()));
        band_->show();
    }
}

void GraphCanvas::mouseMoveEvent(QMouseEvent* event) {
    if (!graph.open || !graph.surface.valid) return;
    const QPointF p = surface_point(event->position());
    if (graph.drag.dragging && (event->buttons() & Qt::LeftButton)) {
        drag_move(p.x(), p.y());
    } else if (band_ != nullptr && band_->isVisible()) {
        band_->setGeometry(QRect(band_start_, event->position().toPoint()).normalized());
    } else if (on_pointer) {
        on_pointer(true, map_to_data_x(p.x()), map_to_data_y(p.y()));
    }
}

void GraphCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (!graph.open || !graph.surface.valid) return;
    const QPointF p = surface_point(event->position());
    if (event->button() == Qt::LeftButton) {
        drag_release(p.x(), p.y(), key_state_of(event->modifiers()));
    } else if (event->button() == Qt::RightButton && band_ != nullptr && band_->isVisible()) {
        band_->hide();
        const QPointF a = surface_point(QPointF(band_start_));
        if (zoom_to_rectangle(a.x(), a.y(), p.x(), p.y()) == 0) keep_rectangle();
    }
}

void GraphCanvas::keep_rectangle() {
    // The new view's numbers may need more or less room beside the area:
    // lay it out once and fit the chosen rectangle to the area it leaves.
    const GraphSettings& s = graph.settings;
    const GraphSurface& f = graph.surface;
    if (!(f.ppi_x > 0 && f.ppi_y > 0)) return;
    const double left = -s.hoffset_calculated;
    const double bottom = -s.voffset_calculated;
    const double right = left + s.hscale_calculated * f.area_width / f.ppi_x;
    const double top = bottom + s.vscale_calculated * f.area_height / f.ppi_y;
    GraphPaintState state;
    if (lay_out_graph(ppi(), target_image, state) == 0) keep_axis_range(left, right, bottom, top);
}

void GraphCanvas::keyPressEvent(QKeyEvent* event) {
    if (!graph.open || !graph.surface.valid) return;
    const GraphSurface& f = graph.surface;
    switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            if (graph.settings.lockscreen == 0) (void)zoom_graph(1, 1.1, false);
            break;
        case Qt::Key_Minus:
            if (graph.settings.lockscreen == 0) (void)zoom_graph(0, 1.1, false);
            break;
        case Qt::Key_Left: (void)move_view(f.area_width / 10, 0); break;
        case Qt::Key_Right: (void)move_view(-f.area_width / 10, 0); break;
        case Qt::Key_Up: (void)move_view(0, f.area_height / 10); break;
        case Qt::Key_Down: (void)move_view(0, -f.area_height / 10); break;
        case Qt::Key_Home: home_view(); break;
        default: QWidget::keyPressEvent(event); return;
    }
    event->accept();
}

void GraphCanvas::leaveEvent(QEvent*) {
    if (on_pointer) on_pointer(false, 0, 0);
}

// ---------------------------------------------------------------------------
// The window

GraphFrame::GraphFrame(QWidget* parent) : QMainWindow(parent), canvas_(new GraphCanvas(this)) {
    setWindowTitle("Tessaline Graph");
    setAttribute(Qt::WA_DeleteOnClose, false);
    setCentralWidget(canvas_);

    QMenu* file = menuBar()->addMenu("&File");
    file->addAction("&Print...", QKeySequence::Print, this, [this] {
        if (on_print) on_print();
    });
    file->addAction("Save &as...", QKeySequence::SaveAs, this, [this] {
        if (on_save) on_save();
    });
    file->addSeparator();
    file->addAction("&Close", QKeySequence::Close, this, [this] { close(); });

    QMenu* edit = menuBar()->addMenu("&Edit");
    edit->addAction("&Copy", QKeySequence::Copy, this, [this] { copy_image(); });

    QMenu* view = menuBar()->addMenu("&View");
    const auto pair = [&](const char* on_text, const char* off_text, int GraphSettings::*field, QAction*& on,
                          QAction*& off) {
        auto* group = new QActionGroup(this);
        on = view->addAction(on_text);
        off = view->addAction(off_text);
        for (QAction* a : {on, off}) {
            a->setCheckable(true);
            group->addAction(a);
        }
        connect(on, &QAction::triggered, this, [field] {
            graph.settings.*field = 1;
            request_graph_repaint();
        });
        connect(off, &QAction::triggered, this, [field] {
            graph.settings.*field = 0;
            request_graph_repaint();
        });
        view->addSeparator();
    };
    pair("&Grid", "No g&rid", &GraphSettings::grid, grid_on_, grid_off_);
    pair("&Axes", "No a&xes", &GraphSettings::axes, axes_on_, axes_off_);
    pair("&Border", "No b&order", &GraphSettings::border, border_on_, border_off_);
    coordinates_ = view->addAction("&Coordinates");
    coordinates_->setCheckable(true);
    coordinates_->setChecked(true);
    view->addAction("&Home", QKeySequence(Qt::Key_Home), this, [] { home_view(); });

    x_field_ = new QLabel(this);
    y_field_ = new QLabel(this);
    for (QLabel* l : {x_field_, y_field_}) {
        l->setMinimumWidth(180);
        l->setTextInteractionFlags(Qt::TextSelectableByMouse);
        statusBar()->addPermanentWidget(l);
    }
    connect(coordinates_, &QAction::toggled, this, [this](bool on) {
        statusBar()->setVisible(on);
        if (!on) show_pointer(false, 0, 0);
    });
    canvas_->on_pointer = [this](bool inside, double x, double y) { show_pointer(inside, x, y); };
    update_marks();
}

void GraphFrame::update_marks() {
    const GraphSettings& s = graph.settings;
    (s.grid != 0 ? grid_on_ : grid_off_)->setChecked(true);
    (s.axes != 0 ? axes_on_ : axes_off_)->setChecked(true);
    (s.border != 0 ? border_on_ : border_off_)->setChecked(true);
}

QSize GraphFrame::preferred_client_size() const {
    const GraphSettings& s = graph.settings;
    const QScreen* screen = this->screen() != nullptr ? this->screen() : QGuiApplication::primaryScreen();
    const double dpi = screen != nullptr ? screen->logicalDotsPerInch() : 96.0;
    const QSize room = screen != nullptr ? screen->availableGeometry().size() * 0.85 : QSize(1200, 900);
    double w = std::max(1.0, s.width) * dpi;
    double h = std::max(1.0, s.height) * dpi;
    const double fit = std::min({1.0, room.width() / w, (room.height() - 60) / h});
    return QSize(static_cast<int>(w * fit), static_cast<int>(h * fit));
}

void GraphFrame::show_pointer(bool inside, double x, double y) {
    if (!coordinates_->isChecked() || !inside) {
        x_field_->clear();
        y_field_->clear();
        return;
    }
    x_field_->setText("x: " + coordinate_text(x, graph.settings.hdatetime != 0));
    y_field_->setText("y: " + coordinate_text(y, graph.settings.vdatetime != 0));
}

void GraphFrame::copy_image() {
    QImage image;
    GraphPaintState state;
    const double ratio = devicePixelRatioF();
    if (render_graph_image(image, canvas_->ppi() * ratio, target_image, state) == 0)
        QGuiApplication::clipboard()->setImage(image);
    canvas_->update();  // the copy laid the graph out for itself
}

void GraphFrame::closeEvent(QCloseEvent* event) {
    // Closed by the user: the graph ends, as GRAPH END would end it.
    if (!closing_by_program && graph.open) end_graph(false);
    event->accept();
}

// ---------------------------------------------------------------------------
// The interface

// Three quarters of the screen's free area in each direction, as desktops size a new document window.
static QSize default_frame_size(const QScreen* screen) {
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) return QSize(960, 720);
    return screen->availableGeometry().size() * 0.75;
}


QtGraphWindow::QtGraphWindow(bool visible) : visible_(visible) {}

QtGraphWindow::~QtGraphWindow() { delete frame_.data(); }

bool QtGraphWindow::create() {
    delete frame_.data();
    frame_ = new GraphFrame();
    if (frame_.isNull()) return false;
    // Repaints asked for while a program adds points come at most every 50 ms.
    repaint_timer_ = new QTimer(frame_);
    repaint_timer_->setSingleShot(true);
    repaint_timer_->setInterval(50);
    QObject::connect(repaint_timer_, &QTimer::timeout, frame_, [f = frame_.data()] { f->canvas()->update(); });
    // A new window opens at the desktop's usual size for a new window, not at the graph's: the graph is
    // fitted into it keeping its proportions. WIDTH and HEIGHT on an open graph size the window to them.
    frame_->resize(default_frame_size(frame_->screen()));
    frame_->on_print = [this] { (void)print_graph(); };
    frame_->on_save = [this] { (void)save_graph_as(); };
    // Opened by a program or a command, the window comes up beside the main
    // window without taking the keyboard from the Command field; a click on
    // it gives it the keys (zoom, move, Home).
    frame_->setAttribute(Qt::WA_ShowWithoutActivating);
    if (visible_) {
        frame_->showNormal();
        frame_->raise();
    }
    return true;
}

void QtGraphWindow::destroy() {
    if (frame_.isNull()) return;
    frame_->closing_by_program = true;
    frame_->close();
    frame_->deleteLater();
    frame_ = nullptr;
    repaint_timer_ = nullptr;
}

void QtGraphWindow::resize_to_graph() {
    if (frame_.isNull()) return;
    const QPoint corner = frame_->pos();
    const QSize client = frame_->preferred_client_size();
    frame_->resize(client + QSize(frame_->width() - frame_->canvas()->width(),
                                  frame_->height() - frame_->canvas()->height()));
    frame_->move(corner);
}

void QtGraphWindow::repaint(bool full) {
    if (frame_.isNull()) return;
    if (full) {
        frame_->canvas()->update();
    } else if (repaint_timer_ != nullptr && !repaint_timer_->isActive()) {
        repaint_timer_->start();
    }
}

void QtGraphWindow::repaint_now() {
    if (frame_.isNull()) return;
    if (frame_->isVisible()) frame_->canvas()->repaint();
    if (!graph.repaint_pending) return;
    // Not shown (batch mode, or minimised): the graph is laid out on an
    // image at the screen's resolution instead.
    const QScreen* screen = QGuiApplication::primaryScreen();
    const int rc = lay_out_graph(screen != nullptr ? screen->logicalDotsPerInch() : 96.0, target_screen, hidden_state_);
    graph.repaint_pending = false;
    if (rc < 0) message_box("Tessaline Graph", "Horizontal or Vertical Scale is too small");
}

void QtGraphWindow::maximise() {
    if (frame_.isNull() || !visible_) return;
    frame_->showNormal();
    frame_->showMaximized();
}

void QtGraphWindow::update_menu_marks() {
    if (!frame_.isNull()) frame_->update_marks();
}

void QtGraphWindow::draw_text_entry(int) { repaint(false); }

void QtGraphWindow::message_box(std::string_view caption, std::string_view text) {
    if (!visible_ || frame_.isNull()) {
        if (host.front_end != nullptr) host.front_end->message_box(caption, text);
        return;
    }
    QMessageBox::warning(frame_, QString::fromUtf8(caption.data(), static_cast<int>(caption.size())),
                         QString::fromUtf8(text.data(), static_cast<int>(text.size())));
}

}  // namespace tl::gui
