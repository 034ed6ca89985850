// customize_dialog.cpp — the Customize dialog and the check of its values.
#include "gui/customize_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace tl::gui {

std::optional<SizingValues> parse_sizing(const std::array<QString, sizing_count>& texts, QString& message, int& bad) {
    SizingValues values;
    for (int i = 0; i < sizing_count; ++i) {
        const SizingRecord& r = sizing_records[static_cast<std::size_t>(i)];
        bool ok = false;
        const qulonglong v = texts[static_cast<std::size_t>(i)].trimmed().toULongLong(&ok);
        if (!ok || v < r.minimum || v > r.maximum) {
            message = QString::asprintf("%s must be between %u and %u", r.label, r.minimum, r.maximum);
            bad = i;
            return std::nullopt;
        }
        values.value[static_cast<std::size_t>(i)] = static_cast<std::uint32_t>(v);
    }
    return values;
}

CustomizeDialog::CustomizeDialog(const SizingValues& current, QWidget* parent) : QDialog(parent), values_(current) {
    setWindowTitle(QString::fromLatin1(customize_title));
    auto* form = new QFormLayout;
    for (int i = 0; i < sizing_count; ++i) {
        const SizingRecord& r = sizing_records[static_cast<std::size_t>(i)];
        auto* edit = new QLineEdit(QString::number(current.value[static_cast<std::size_t>(i)]), this);
        edit->setToolTip(QString::asprintf("%u to %u (default %u)", r.minimum, r.maximum, r.default_value));
        fields_[static_cast<std::size_t>(i)] = edit;
        form->addRow(QString::fromLatin1(r.label), edit);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, [this] {
        if (on_help) on_help();
    });
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

void CustomizeDialog::done(int result) {
    if (result == QDialog::Accepted) {
        std::array<QString, sizing_count> texts;
        for (int i = 0; i < sizing_count; ++i) texts[static_cast<std::size_t>(i)] = fields_[static_cast<std::size_t>(i)]->text();
        QString message;
        int bad = 0;
        const auto parsed = parse_sizing(texts, message, bad);
        if (!parsed) {
            QMessageBox::warning(this, QString::fromLatin1(customize_title), message);
            fields_[static_cast<std::size_t>(bad)]->setFocus();
            fields_[static_cast<std::size_t>(bad)]->selectAll();
            return;
        }
        values_ = *parsed;
    }
    QDialog::done(result);
}

}  // namespace tl::gui
