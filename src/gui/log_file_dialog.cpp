// log_file_dialog.cpp — the file-name dialog and its checks.
#include "gui/log_file_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace tl::gui {
namespace {

/// A path field with a "Browse..." button that chooses a folder.
QWidget* path_row(QLineEdit* edit, QWidget* parent) {
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* browse = new QPushButton(QObject::tr("Browse..."), row);
    layout->addWidget(edit, 1);
    layout->addWidget(browse);
    QObject::connect(browse, &QPushButton::clicked, row, [edit, row] {
        const QString folder = QFileDialog::getExistingDirectory(row, QObject::tr("Choose a folder"), edit->text());
        if (!folder.isEmpty()) edit->setText(folder);
    });
    return row;
}

}  // namespace

QString file_names_refusal(const FileNames& names) {
    if (names.create_log_file && names.log_name.trimmed().isEmpty()) return QString::fromLatin1(empty_log_name_message);
    if (names.program_name.trimmed().isEmpty()) return QString::fromLatin1(empty_program_name_message);
    return {};
}

LogFileDialog::LogFileDialog(const FileNames& names, QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("File Names"));
    create_ = new QCheckBox(QStringLiteral("Create Log File"), this);
    create_->setChecked(names.create_log_file);
    log_path_ = new QLineEdit(names.log_path, this);
    log_name_ = new QLineEdit(names.log_name.isEmpty() ? QString::fromLatin1(default_log_name) : names.log_name, this);
    program_path_ = new QLineEdit(names.program_path, this);
    program_name_ = new QLineEdit(
        names.program_name.isEmpty() ? QString::fromLatin1(default_program_name) : names.program_name, this);
    auto* form = new QFormLayout;
    form->addRow(create_);
    form->addRow(tr("Log file path:"), path_row(log_path_, this));
    form->addRow(tr("Log file name:"), log_name_);
    form->addRow(tr("Program file path:"), path_row(program_path_, this));
    form->addRow(tr("Program file name:"), program_name_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    resize(560, sizeHint().height());
}

FileNames LogFileDialog::names() const {
    return {create_->isChecked(), log_path_->text().trimmed(), log_name_->text().trimmed(),
            program_path_->text().trimmed(), program_name_->text().trimmed()};
}

void LogFileDialog::done(int result) {
    if (result == QDialog::Accepted) {
        const QString refusal = file_names_refusal(names());
        if (!refusal.isEmpty()) {
            QMessageBox::warning(this, windowTitle(), refusal);
            return;
        }
    }
    QDialog::done(result);
}

}  // namespace tl::gui
