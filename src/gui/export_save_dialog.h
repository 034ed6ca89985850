// export_save_dialog.h — Save as: a file of any of the graph's formats, and for images a size that keeps the graph's shape.
//
// The resolution (pixels per inch) and the image's width and height in
// pixels are linked through the graph's size in inches: changing one
// changes the others. The format follows the file name's suffix; drawings
// (SVG, PDF, EMF) have no resolution to choose.
#pragma once

#include <QDialog>
#include <QString>
#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

namespace tl::gui {

class GraphSaveDialog final : public QDialog {
public:
    /// For a graph of `width` by `height` inches; `file` and `ppi` proposed.
    GraphSaveDialog(QWidget* parent, double width, double height, const QString& file, int ppi);

    QString file() const;
    int ppi() const;

    /// The file chooser behind Browse; returns the name, or an empty text
    /// after a cancel. Tests replace it.
    std::function<QString(QWidget* parent, const QString& start, const QString& filters)> choose_file;

    QLineEdit* file_edit() const { return file_edit_; }
    QSpinBox* ppi_box() const { return ppi_; }
    QSpinBox* width_box() const { return width_px_; }
    QSpinBox* height_box() const { return height_px_; }
    QComboBox* format_box() const { return format_; }
    void browse();

private:
    void set_ppi(int ppi);
    void follow_file_name();
    double width_;
    double height_;
    QLineEdit* file_edit_;
    QComboBox* format_;
    QSpinBox* ppi_;
    QSpinBox* width_px_;
    QSpinBox* height_px_;
    QPushButton* save_button_ = nullptr;
    bool linking_ = false;
};

}  // namespace tl::gui
