// export_jpeg_dialog.h — the JPEG dialog: file name with Browse, quality and resolution with scroll bars and presets.
//
// It comes in two layouts, as the main window does ("ScreenSize" 1 or 2):
// a compact one with the controls in rows, and a wide one with quality and
// resolution side by side. Quality (25..100) and resolution (25..600) are
// clamped on opening and on OK; their scroll bars step by 1 and by pages of
// 10 and 20 and follow the thumb as it is dragged.
#pragma once

#include <QDialog>
#include <QString>
#include <functional>

#include "gui/export_jpeg.h"

class QLineEdit;
class QScrollBar;
class QPushButton;

namespace tl::gui {

class JpegDialog final : public QDialog {
public:
    /// `proposal` fills the fields; `working_folder` completes a file name
    /// given without a folder.
    JpegDialog(QWidget* parent, int layout, const JpegChoice& proposal, QString working_folder);

    /// The choice after OK: a full path, quality and resolution in range.
    JpegChoice choice() const { return choice_; }

    /// The file chooser behind Browse (a save-file dialog); returns the
    /// name chosen, or an empty text after a cancel. Tests replace it.
    std::function<QString(QWidget* parent, const QString& start)> choose_file;
    /// A warning box (caption, text). Tests replace it.
    std::function<void(QWidget* parent, const QString& caption, const QString& text)> warn;

    void browse();
    void accept() override;

    QLineEdit* file_edit() const { return file_edit_; }
    QLineEdit* quality_edit() const { return quality_edit_; }
    QLineEdit* resolution_edit() const { return resolution_edit_; }
    QScrollBar* quality_bar() const { return quality_bar_; }
    QScrollBar* resolution_bar() const { return resolution_bar_; }
    /// The preset button for `resolution` (50, 100, 200 or 300), or null.
    QPushButton* preset(int resolution) const;

private:
    QString working_folder_;
    JpegChoice choice_;
    QLineEdit* file_edit_;
    QLineEdit* quality_edit_;
    QLineEdit* resolution_edit_;
    QScrollBar* quality_bar_;
    QScrollBar* resolution_bar_;
    QPushButton* presets_[4] = {};
};

/// True when `name` ends in ".jpg" or ".jpeg", letters in any case.
[[nodiscard]] bool has_jpeg_suffix(const QString& name);

}  // namespace tl::gui
