// log_file_dialog.h — the file-name dialog: the log file and the BASIC program file.
#pragma once

#include <QDialog>
#include <QString>

class QCheckBox;
class QLineEdit;

namespace tl::gui {

inline constexpr const char* empty_log_name_message =
    "Please specify a name for the Log File or uncheck the \"Create Log File\" box";
inline constexpr const char* empty_program_name_message = "Please specify a name for the BASIC Program File";
inline constexpr const char* default_log_name = "logfile.log";
inline constexpr const char* default_program_name = "program.txt";

struct FileNames {
    bool create_log_file = false;
    QString log_path;
    QString log_name;
    QString program_path;
    QString program_name;
};

/// The refusal message for `names`, or an empty text when they are acceptable.
[[nodiscard]] QString file_names_refusal(const FileNames& names);

class LogFileDialog final : public QDialog {
public:
    LogFileDialog(const FileNames& names, QWidget* parent);
    /// The names as accepted.
    FileNames names() const;
    /// Refuses an empty log name (when a log is wanted) or an empty program name.
    void done(int result) override;

    QCheckBox* create_box() const { return create_; }
    QLineEdit* log_name_field() const { return log_name_; }
    QLineEdit* program_name_field() const { return program_name_; }

private:
    QCheckBox* create_ = nullptr;
    QLineEdit* log_path_ = nullptr;
    QLineEdit* log_name_ = nullptr;
    QLineEdit* program_path_ = nullptr;
    QLineEdit* program_name_ = nullptr;
};

}  // namespace tl::gui
