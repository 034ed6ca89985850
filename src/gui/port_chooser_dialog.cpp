// port_chooser_dialog.cpp — the dialog of browsecommports$.
#include "gui/port_chooser_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace tl::gui {

PortChooserDialog::PortChooserDialog(const QString& title, const std::vector<std::string>& ports, QWidget* parent)
    : QDialog(parent) {
    setObjectName("portChooser");
    setWindowTitle(title.trimmed().isEmpty() ? QString::fromLatin1(port_chooser_default_title) : title);
    auto* box = new QVBoxLayout(this);
    auto* found = new QLabel(ports.empty() ? tr("No serial port was found.") : tr("Serial ports found:"), this);
    box->addWidget(found);
    list_ = new QListWidget(this);
    for (const std::string& port : ports) list_->addItem(QString::fromStdString(port));
    list_->setVisible(!ports.empty());
    box->addWidget(list_);
    auto* label = new QLabel(tr("&Port (or another device, such as /dev/pts/3):"), this);
    field_ = new QLineEdit(this);
    field_->setObjectName("portField");
    label->setBuddy(field_);
    box->addWidget(label);
    box->addWidget(field_);
    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    box->addWidget(buttons_);

    connect(list_, &QListWidget::currentTextChanged, field_, &QLineEdit::setText);
    connect(list_, &QListWidget::itemActivated, this, &QDialog::accept);
    connect(field_, &QLineEdit::textChanged, this,
            [this](const QString& text) { buttons_->button(QDialogButtonBox::Ok)->setEnabled(!text.trimmed().isEmpty()); });
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(false);
    if (!ports.empty()) {
        list_->setCurrentRow(0);
        list_->setFocus();
    } else {
        field_->setFocus();
    }
}

QString PortChooserDialog::chosen() const { return field_->text().trimmed(); }

bool proposed_port(const std::vector<std::string>& ports, std::string& chosen) {
    if (ports.empty()) return false;
    chosen = ports.front();
    return true;
}

}  // namespace tl::gui
