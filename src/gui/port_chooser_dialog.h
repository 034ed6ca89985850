// port_chooser_dialog.h — the dialog of browsecommports$: pick a serial port or type one.
//
// It lists the ports found (the first one chosen) and has a field for a
// device the list cannot know, such as a pseudo-terminal (/dev/pts/3).
// OK is offered once the field names something.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

class QDialogButtonBox;
class QLineEdit;
class QListWidget;

namespace tl::gui {

/// The title shown when the program gives an empty one.
inline constexpr const char* port_chooser_default_title = "Select COM Port";

class PortChooserDialog final : public QDialog {
public:
    PortChooserDialog(const QString& title, const std::vector<std::string>& ports, QWidget* parent);

    /// The device named in the field.
    QString chosen() const;
    QListWidget* list() const { return list_; }
    QLineEdit* field() const { return field_; }
    QDialogButtonBox* buttons() const { return buttons_; }

private:
    QListWidget* list_ = nullptr;
    QLineEdit* field_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
};

/// The answer a dialog given `ports` proposes without a user: the first port,
/// or none (false: the dialog could only be cancelled).
[[nodiscard]] bool proposed_port(const std::vector<std::string>& ports, std::string& chosen);

}  // namespace tl::gui
