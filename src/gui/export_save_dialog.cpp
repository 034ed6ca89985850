// export_save_dialog.cpp — the Save as dialog's fields and the links between resolution and pixels.
#include "gui/export_save_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "gui/export_images.h"

namespace tl::gui {
namespace {

struct FormatEntry {
    const char* label;
    const char* suffix;
    bool has_resolution;
};
// ORDER GraphFileFormat: png, svg, pdf, emf, jpeg.
constexpr FormatEntry formats[] = {
    {"PNG image (*.png)", "png", true},
    {"SVG drawing (*.svg)", "svg", false},
    {"PDF document (*.pdf)", "pdf", false},
    {"Windows Enhanced Metafile (*.emf)", "emf", false},
    {"JPEG image (*.jpg *.jpeg)", "jpg", true},
};

constexpr int lowest_ppi = 10;
constexpr int highest_ppi = 2400;

}  // namespace

GraphSaveDialog::GraphSaveDialog(QWidget* parent, double width, double height, const QString& file, int ppi)
    : QDialog(parent),
      width_(std::max(width, 0.01)),
      height_(std::max(height, 0.01)),
      file_edit_(new QLineEdit(file, this)),
      format_(new QComboBox(this)),
      ppi_(new QSpinBox(this)),
      width_px_(new QSpinBox(this)),
      height_px_(new QSpinBox(this)) {
    setWindowTitle("Save Graph As");
    choose_file = [](QWidget* p, const QString& start, const QString& filters) {
        return QFileDialog::getSaveFileName(p, "Save Graph As", start, filters);
    };
    for (const FormatEntry& f : formats) format_->addItem(QString::fromLatin1(f.label));
    ppi_->setRange(lowest_ppi, highest_ppi);
    ppi_->setSuffix(" pixels/in.");
    const auto pixels = [](QSpinBox* box, double inches) {
        box->setRange(std::max(1, static_cast<int>(std::lround(inches * lowest_ppi))),
                      static_cast<int>(std::lround(inches * highest_ppi)));
        box->setSuffix(" pixels");
    };
    pixels(width_px_, width_);
    pixels(height_px_, height_);

    // Any one of the three sets the others: pixels are inches times pixels per inch.
    connect(ppi_, &QSpinBox::valueChanged, this, [this](int v) { set_ppi(v); });
    connect(width_px_, &QSpinBox::valueChanged, this, [this](int v) {
        if (!linking_) set_ppi(static_cast<int>(std::lround(v / width_)));
    });
    connect(height_px_, &QSpinBox::valueChanged, this, [this](int v) {
        if (!linking_) set_ppi(static_cast<int>(std::lround(v / height_)));
    });
    connect(format_, &QComboBox::activated, this, [this](int index) {
        // The chosen format's suffix replaces the name's.
        const QString text = file_edit_->text().trimmed();
        const QFileInfo info(text);
        const QString base = text.contains('/') ? info.path() + "/" + info.completeBaseName() : info.completeBaseName();
        file_edit_->setText(base + "." + QString::fromLatin1(formats[index].suffix));
    });
    connect(file_edit_, &QLineEdit::textChanged, this, [this] { follow_file_name(); });

    auto* browse_button = new QPushButton("&Browse...", this);
    connect(browse_button, &QPushButton::clicked, this, [this] { browse(); });
    auto* file_row = new QHBoxLayout;
    file_edit_->setMinimumWidth(320);
    file_row->addWidget(file_edit_, 1);
    file_row->addWidget(browse_button);
    auto* form = new QFormLayout;
    auto* file_label = new QLabel("&File:", this);
    file_label->setBuddy(file_edit_);
    form->addRow(file_label, file_row);
    form->addRow("F&ormat:", format_);
    form->addRow("&Resolution:", ppi_);
    form->addRow("&Width:", width_px_);
    form->addRow("&Height:", height_px_);
    form->addRow(new QLabel(QString("The graph is %1 by %2 inches.").arg(width_).arg(height_), this));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    save_button_ = buttons->button(QDialogButtonBox::Save);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* top = new QVBoxLayout(this);
    top->addLayout(form);
    top->addWidget(buttons);

    set_ppi(ppi);
    follow_file_name();
}

QString GraphSaveDialog::file() const { return file_edit_->text().trimmed(); }

int GraphSaveDialog::ppi() const { return ppi_->value(); }

void GraphSaveDialog::set_ppi(int ppi) {
    if (linking_) return;
    linking_ = true;
    ppi = std::clamp(ppi, lowest_ppi, highest_ppi);
    ppi_->setValue(ppi);
    width_px_->setValue(static_cast<int>(std::lround(width_ * ppi)));
    height_px_->setValue(static_cast<int>(std::lround(height_ * ppi)));
    linking_ = false;
}

void GraphSaveDialog::follow_file_name() {
    const GraphFileFormat f = format_of(file_edit_->text());
    if (f != GraphFileFormat::unknown) format_->setCurrentIndex(static_cast<int>(f));
    const bool image = formats[format_->currentIndex()].has_resolution;
    for (QSpinBox* box : {ppi_, width_px_, height_px_}) box->setEnabled(image);
    if (save_button_ != nullptr) save_button_->setEnabled(f != GraphFileFormat::unknown);
}

void GraphSaveDialog::browse() {
    QStringList filters;
    for (const FormatEntry& f : formats) filters << QString::fromLatin1(f.label);
    const QString name = choose_file(this, file_edit_->text(), filters.join(";;"));
    if (!name.isEmpty()) file_edit_->setText(name);
}

}  // namespace tl::gui
