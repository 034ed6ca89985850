// export_window.cpp — GRAPH PRINT, METAFILE and JPEG on the graph window: dialogs, settings, then the exporters.
//
// Each output hides the window while it works and shows and repaints it
// afterwards (the export lays the graph out for its own surface). In batch
// mode nothing is shown: each dialog takes what it would propose.
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPointer>
#include <QPrinterInfo>
#include <algorithm>

#include "exec/front_end.h"
#include "graph/graph_state.h"
#include "gui/export_jpeg.h"
#include "gui/export_jpeg_dialog.h"
#include "gui/export_metafile.h"
#include "gui/export_images.h"
#include "gui/export_print.h"
#include "gui/export_save_dialog.h"
#include "gui/graph_window_widget.h"
#include "shell/session.h"
#include "shell/shell_state.h"

namespace tl::gui {
namespace {

QString qt_text(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<int>(s.size())); }

/// The folder a file name without one is put in.
QString working_folder() {
    const std::string& w = shell::shell_state.working_folder;
    return QString::fromStdString(w.empty() ? QDir::currentPath().toStdString() : w);
}

/// The window a dialog of the outputs is centred on: the one in front
/// once the graph window is hidden (the main window), if any.
QWidget* dialog_parent() { return QApplication::activeWindow(); }

/// What the JPEG dialog proposes: "JpegPath" and "JpegFile" from the
/// settings (at first "graph.jpg" in the working folder), and the stored
/// quality and resolution, clamped.
JpegChoice jpeg_proposal() {
    const shell::AppSettings& s = shell::shell_state.settings;
    const QString folder = s.jpeg_path.empty() ? working_folder() : QString::fromStdString(s.jpeg_path);
    const QString name = s.jpeg_file.empty() ? QStringLiteral("graph.jpg") : QString::fromStdString(s.jpeg_file);
    JpegChoice c;
    c.file = QDir::cleanPath(QDir(folder).filePath(name)).toStdString();
    c.quality = std::clamp(static_cast<int>(std::min<std::uint32_t>(s.jpeg_quality, 1000)), jpeg_quality_lowest,
                           jpeg_quality_highest);
    c.resolution = std::clamp(static_cast<int>(std::min<std::uint32_t>(s.jpeg_resolution, 1000)),
                              jpeg_resolution_lowest, jpeg_resolution_highest);
    return c;
}

/// Keeps the choice for the next export and the next session (written at once).
void remember_jpeg_choice(const JpegChoice& c) {
    shell::AppSettings& s = shell::shell_state.settings;
    const QFileInfo file(QString::fromStdString(c.file));
    s.jpeg_path = QDir::toNativeSeparators(file.absolutePath()).toStdString();
    s.jpeg_file = file.fileName().toStdString();
    s.jpeg_quality = static_cast<std::uint32_t>(c.quality);
    s.jpeg_resolution = static_cast<std::uint32_t>(c.resolution);
    (void)shell::save_settings_now();
}

}  // namespace

/// Hides the graph window for an export and shows and repaints it after.
class ExportScope {
public:
    explicit ExportScope(GraphFrame* frame, bool visible) : frame_(frame), visible_(visible) {
        if (visible_ && !frame_.isNull()) frame_->hide();
    }
    ~ExportScope() {
        if (frame_.isNull()) return;
        if (visible_) {
            frame_->show();
            frame_->raise();
        }
        graph.repaint_pending = false;
        frame_->canvas()->update();
    }
    ExportScope(const ExportScope&) = delete;
    ExportScope& operator=(const ExportScope&) = delete;

private:
    QPointer<GraphFrame> frame_;  // gone when the graph ended meanwhile
    bool visible_;
};

namespace {

ExportMessage teller(QtGraphWindow& window) {
    if (window.tell_user) return window.tell_user;
    return [&window](std::string_view caption, std::string_view text, bool failure) {
        if (!window.visible() || window.frame() == nullptr) {
            if (host.front_end != nullptr) host.front_end->message_box(caption, text);
            return;
        }
        if (failure)
            QMessageBox::warning(window.frame(), qt_text(caption), qt_text(text));
        else
            QMessageBox::information(window.frame(), qt_text(caption), qt_text(text));
    };
}

}  // namespace

int QtGraphWindow::export_jpeg() {
    if (frame_.isNull()) return -1;
    ExportScope scope(frame_, visible_);
    JpegChoice choice = jpeg_proposal();
    if (visible_) {
        const int layout = static_cast<int>(shell::shell_state.settings.sizes[size_screen_size]);
        JpegDialog dialog(dialog_parent(), layout, choice, working_folder());
        if (dialog.exec() != QDialog::Accepted) return -1;
        choice = dialog.choice();
    }
    remember_jpeg_choice(choice);
    return write_graph_jpeg(choice, teller(*this));
}

namespace {

/// The save-file dialog: the folder must exist; the working folder does not change.
QString default_save_file(QWidget* parent, const QString& title, const QString& start, const QString& filter,
                          const QString& suffix) {
    QFileDialog dialog(parent, title, start, filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);  // the folder must exist
    dialog.setDefaultSuffix(suffix);
    dialog.selectFile(start);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return dialog.selectedFiles().first();
}

}  // namespace

int QtGraphWindow::export_metafile() {
    if (frame_.isNull()) return -1;
    ExportScope scope(frame_, visible_);
    QString file = last_metafile_.isEmpty() ? QDir(working_folder()).filePath("graph.emf") : last_metafile_;
    if (visible_) {
        const QString title = "Select the Output MetaFile (.emf)", filter = "Windows Enhanced Metafile (*.emf)";
        file = choose_save_file ? choose_save_file(dialog_parent(), title, file, filter, "emf")
                                : default_save_file(dialog_parent(), title, file, filter, "emf");
        if (file.isEmpty()) return -1;
    }
    last_metafile_ = file;
    return write_graph_metafile(file.toStdString(), teller(*this));
}

int QtGraphWindow::save_graph_as() {
    if (frame_.isNull() || !graph.open) return -1;
    const GraphSettings& s = graph.settings;
    QString file = last_saved_.isEmpty() ? QDir(working_folder()).filePath("graph.png") : last_saved_;
    int ppi = last_saved_ppi_;
    if (visible_) {
        GraphSaveDialog dialog(frame_, s.width, s.height, file, ppi);
        const bool accepted = run_save_dialog ? run_save_dialog(dialog) : dialog.exec() == QDialog::Accepted;
        if (!accepted) return -1;
        file = dialog.file();
        ppi = dialog.ppi();
    }
    if (QFileInfo(file).isRelative()) file = QDir(working_folder()).filePath(file);
    last_saved_ = file;
    last_saved_ppi_ = ppi;
    const int quality = std::clamp(static_cast<int>(std::min<std::uint32_t>(shell::shell_state.settings.jpeg_quality, 1000)),
                                   jpeg_quality_lowest, jpeg_quality_highest);
    const int rc = save_graph_file(file, ppi, quality, teller(*this));
    // The file was laid out for its own surface: the screen's layout again.
    graph.repaint_pending = false;
    frame_->canvas()->update();
    return rc;
}

int QtGraphWindow::print_graph() {
    if (frame_.isNull()) return -1;
    ExportScope scope(frame_, visible_);
    // The default printer; without one a PDF file, graph.pdf in the working folder.
    QPrinter printer(QPrinter::HighResolution);
    const QPrinterInfo preferred = QPrinterInfo::defaultPrinter();
    if (preferred.isNull()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QDir(working_folder()).filePath("graph.pdf"));
    } else {
        printer.setPrinterName(preferred.printerName());
    }
    if (visible_) {
        if (choose_printer) {
            if (!choose_printer(printer)) return -1;
        } else {
            QPrintDialog dialog(&printer, dialog_parent());
            dialog.setWindowTitle("Print Graph");
            if (dialog.exec() != QDialog::Accepted) return -1;
        }
    }
    return print_graph_on(printer, teller(*this));
}

}  // namespace tl::gui
