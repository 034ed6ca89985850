// export_jpeg_dialog.cpp — the JPEG dialog's controls, their links and its two layouts.
#include "gui/export_jpeg_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

namespace tl::gui {
namespace {

constexpr int preset_resolutions[4] = {50, 100, 200, 300};

/// A number field and its scroll bar, kept in step both ways.
void link(QLineEdit* edit, QScrollBar* bar, int lowest, int highest, int page) {
    bar->setRange(lowest, highest);
    bar->setSingleStep(1);
    bar->setPageStep(page);
    bar->setTracking(true);  // the value follows the thumb as it is dragged
    edit->setValidator(new QIntValidator(0, 99999, edit));
    edit->setMaxLength(5);
    QObject::connect(bar, &QScrollBar::valueChanged, edit, [edit](int v) { edit->setText(QString::number(v)); });
    QObject::connect(edit, &QLineEdit::textEdited, bar, [bar, lowest, highest](const QString& text) {
        bool ok = false;
        const int v = text.toInt(&ok);
        if (!ok) return;
        const QSignalBlocker quiet(bar);
        bar->setValue(std::clamp(v, lowest, highest));
    });
}

/// The number in `edit`, or the bar's value when the field holds none; clamped.
int value_of(const QLineEdit* edit, const QScrollBar* bar) {
    bool ok = false;
    const int v = edit->text().trimmed().toInt(&ok);
    return std::clamp(ok ? v : bar->value(), bar->minimum(), bar->maximum());
}

}  // namespace

bool has_jpeg_suffix(const QString& name) {
    return name.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive) ||
           name.endsWith(QLatin1String(".jpeg"), Qt::CaseInsensitive);
}

JpegDialog::JpegDialog(QWidget* parent, int layout, const JpegChoice& proposal, QString working_folder)
    : QDialog(parent),
      working_folder_(std::move(working_folder)),
      choice_(proposal),
      file_edit_(new QLineEdit(this)),
      quality_edit_(new QLineEdit(this)),
      resolution_edit_(new QLineEdit(this)),
      quality_bar_(new QScrollBar(Qt::Horizontal, this)),
      resolution_bar_(new QScrollBar(Qt::Horizontal, this)) {
    setWindowTitle("Save Graph as JPEG File");
    choose_file = [](QWidget* p, const QString& start) {
        return QFileDialog::getSaveFileName(p, "Specify Location and File Name for JPEG File", start,
                                            "JPEG files (*.jpg *.jpeg);;All files (*)");
    };
    warn = [](QWidget* p, const QString& caption, const QString& text) { QMessageBox::warning(p, caption, text); };

    file_edit_->setMaxLength(jpeg_file_name_longest);
    file_edit_->setText(QString::fromStdString(proposal.file));
    file_edit_->setMinimumWidth(360);
    auto* browse_button = new QPushButton("&Browse...", this);
    connect(browse_button, &QPushButton::clicked, this, [this] { browse(); });

    link(quality_edit_, quality_bar_, jpeg_quality_lowest, jpeg_quality_highest, 10);
    link(resolution_edit_, resolution_bar_, jpeg_resolution_lowest, jpeg_resolution_highest, 20);
    const int quality = std::clamp(proposal.quality, jpeg_quality_lowest, jpeg_quality_highest);
    const int resolution = std::clamp(proposal.resolution, jpeg_resolution_lowest, jpeg_resolution_highest);
    quality_bar_->setValue(quality);
    quality_edit_->setText(QString::number(quality));
    resolution_bar_->setValue(resolution);
    resolution_edit_->setText(QString::number(resolution));
    for (int i = 0; i < 4; ++i) {
        presets_[i] = new QPushButton(QString::number(preset_resolutions[i]), this);
        connect(presets_[i], &QPushButton::clicked, this,
                [this, r = preset_resolutions[i]] { resolution_bar_->setValue(r); });
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &JpegDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &JpegDialog::reject);

    auto* file_row = new QHBoxLayout;
    auto* file_label = new QLabel("&File name:", this);
    file_label->setBuddy(file_edit_);
    file_row->addWidget(file_label);
    file_row->addWidget(file_edit_, 1);
    file_row->addWidget(browse_button);
    auto* preset_row = new QHBoxLayout;
    preset_row->addWidget(new QLabel("Presets:", this));
    for (QPushButton* b : presets_) preset_row->addWidget(b);
    preset_row->addStretch(1);
    const auto number_row = [this](QGridLayout* grid, int row, const char* label, QLineEdit* edit, QScrollBar* bar,
                                   const char* unit) {
        edit->setMaximumWidth(60);
        bar->setMinimumWidth(160);
        auto* caption = new QLabel(label, this);
        caption->setBuddy(edit);
        grid->addWidget(caption, row, 0);
        grid->addWidget(edit, row, 1);
        grid->addWidget(bar, row, 2);
        grid->addWidget(new QLabel(unit, this), row, 3);
    };

    auto* top = new QVBoxLayout(this);
    top->addLayout(file_row);
    if (layout == 2) {
        // Wide: quality and resolution side by side, each in its own box.
        auto* boxes = new QHBoxLayout;
        auto* quality_box = new QGroupBox("Quality", this);
        auto* quality_grid = new QGridLayout(quality_box);
        number_row(quality_grid, 0, "&Quality:", quality_edit_, quality_bar_, "(25 to 100)");
        auto* resolution_box = new QGroupBox("Resolution", this);
        auto* resolution_grid = new QGridLayout(resolution_box);
        number_row(resolution_grid, 0, "&Resolution:", resolution_edit_, resolution_bar_, "pixels/in. (25 to 600)");
        resolution_grid->addLayout(preset_row, 1, 0, 1, 4);
        boxes->addWidget(quality_box);
        boxes->addWidget(resolution_box);
        top->addLayout(boxes);
    } else {
        // Compact: one row each.
        auto* grid = new QGridLayout;
        number_row(grid, 0, "&Quality:", quality_edit_, quality_bar_, "(25 to 100)");
        number_row(grid, 1, "&Resolution:", resolution_edit_, resolution_bar_, "pixels/in. (25 to 600)");
        top->addLayout(grid);
        top->addLayout(preset_row);
    }
    top->addWidget(buttons);
}

QPushButton* JpegDialog::preset(int resolution) const {
    for (int i = 0; i < 4; ++i)
        if (preset_resolutions[i] == resolution) return presets_[i];
    return nullptr;
}

void JpegDialog::browse() {
    const QString name = choose_file(this, file_edit_->text());
    if (name.isEmpty()) return;
    if (!has_jpeg_suffix(name))
        warn(this, "JPEG File Name", "Warning -- JPEG file name should have .JPG or .JPEG suffix");
    file_edit_->setText(name.left(jpeg_file_name_longest));  // kept, suffix or not
}

void JpegDialog::accept() {
    const QString name = file_edit_->text().trimmed().left(jpeg_file_name_longest);
    if (name.isEmpty()) {
        warn(this, "JPEG File Name", "Please give a name for the JPEG file.");
        return;
    }
    // A name without a folder of its own is in the working folder.
    const QString full = QFileInfo(name).isAbsolute() ? name : QDir(working_folder_).filePath(name);
    choice_.file = QDir::cleanPath(full).toStdString();
    choice_.quality = value_of(quality_edit_, quality_bar_);
    choice_.resolution = value_of(resolution_edit_, resolution_bar_);
    QDialog::accept();
}

}  // namespace tl::gui
