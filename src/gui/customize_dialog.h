// customize_dialog.h — the Customize dialog: the fourteen sizing settings.
#pragma once

#include <QDialog>
#include <QString>
#include <array>
#include <functional>
#include <optional>

#include "exec/sizing_settings.h"

class QLineEdit;

namespace tl::gui {

inline constexpr const char* customize_title = "Customize";
inline constexpr const char* customize_done_message =
    "Changed Values will take effect the next time you start Tessaline.";

/// Reads the fourteen texts as sizing values. On a value that is no whole
/// number or lies outside its range, returns nothing and sets `message` to
/// "%s must be between %u and %u" (label, minimum, maximum) and `bad` to its index.
[[nodiscard]] std::optional<SizingValues> parse_sizing(const std::array<QString, sizing_count>& texts,
                                                       QString& message, int& bad);

class CustomizeDialog final : public QDialog {
public:
    CustomizeDialog(const SizingValues& current, QWidget* parent);
    /// The accepted values (valid after the dialog was accepted).
    const SizingValues& values() const { return values_; }
    QLineEdit* field(int index) const { return fields_[static_cast<std::size_t>(index)]; }

    /// Called by the dialog's Help button.
    std::function<void()> on_help;

    /// Checks the fields; refuses a bad value with a box titled "Customize".
    void done(int result) override;

private:
    std::array<QLineEdit*, sizing_count> fields_{};
    SizingValues values_;
};

}  // namespace tl::gui
