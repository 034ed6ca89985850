// main_window.h — the main window: console, "Command:" field, Run/Step/Stop, menus.
//
// The interpreter runs on the window's thread. A typed line is executed from
// the command field's handler; while it runs, the run loop calls
// pump_events() before every statement, which (throttled) flushes the
// console and processes the window's events, so that the buttons, the keys
// and the menus stay live. The buttons and keys only set the run flags of
// host.flags; the waits for a step, a line or a key process events until the
// user answers or stops the program.
//
// The window is the interpreter's front end and its console effects, message
// dialog, document viewer and serial-port chooser, and owns the graph window
// (install() puts them in `host`). Closing the main window ends an open graph.
#pragma once

#include <QMainWindow>
#include <QStringList>
#include <functional>
#include <memory>
#include <string>

#include "gui/pump_ticker.h"
#include "gui/window_services.h"

class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QProcess;
class QAction;
class QTimer;

namespace tl::gui {

class ConsoleView;
class QtGraphWindow;

class MainWindow final : public QMainWindow, public WindowServices {
public:
    /// `save_settings` writes the shell's settings (called as soon as the
    /// window changes one, and when it closes).
    explicit MainWindow(std::function<void()> save_settings, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Makes this window the interpreter's front end and services.
    void install();

    // FrontEnd
    void write(std::string_view text) override;
    bool read_line(std::string_view prompt, std::string& line) override;
    int read_key() override;
    void pump_events() override;
    bool console_mode() const override { return false; }
    int wait_for_step(std::string& command) override;
    void message_box(std::string_view title, std::string_view text) override;
    // ConsoleEffects
    void clear_console() override;
    void set_console_color(int attribute) override;
    void beep() override;
    // MessageDialog
    int ask(std::string_view title, std::string_view text, int buttons, int icon) override;
    // DocumentViewer
    bool open_document(std::string_view path) override;
    // PortChooser
    bool choose_port(std::string_view title, const std::vector<std::string>& ports, std::string& chosen) override;

    /// Runs a line as if typed into the command field and Enter pressed.
    void submit(const QString& line);
    /// Loads and runs `file` as the command run "file" does; false after an error.
    bool run_file(const QString& file);
    /// The buttons' actions (also F5, F10, Esc).
    void run_or_continue();
    void step();
    void stop();

    /// True while a command runs (a program, or a typed line).
    bool busy() const { return depth_ > 0; }
    ConsoleView* console() const { return console_; }
    QLineEdit* command_field() const { return field_; }
    QLabel* command_label() const { return label_; }
    QPushButton* run_button() const { return run_; }
    QPushButton* step_button() const { return step_; }
    QPushButton* stop_button() const { return stop_; }
    QtGraphWindow* graph_window() const { return graph_window_.get(); }

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Mode { idle, running, paused, input, key, dialog };

    void build_layout(int screen_size);
    void build_menus();
    void update_controls();
    void update_title_and_status();
    void rebuild_recent_menus();
    void settings_changed();
    void execute(const std::string& line, bool echo);
    bool run_command(const std::function<bool()>& command);
    void on_enter();
    void history_move(int direction);
    void wait_until(const std::function<bool()>& done);
    void load_program_dialog();
    void choose_working_folder();
    void use_working_folder(const QString& folder);
    void open_help(int number);
    void open_named_document(const QString& file);
    void log_file_dialog();
    void open_log_in_editor();
    void customize();

    std::function<void()> save_settings_;
    ConsoleView* console_ = nullptr;
    QLineEdit* field_ = nullptr;
    QLabel* label_ = nullptr;
    QPushButton* run_ = nullptr;
    QPushButton* step_ = nullptr;
    QPushButton* stop_ = nullptr;
    QLabel* status_program_ = nullptr;
    QLabel* status_folder_ = nullptr;
    QLabel* status_state_ = nullptr;
    QMenu* recent_programs_ = nullptr;
    QMenu* recent_folders_ = nullptr;
    QList<QAction*> idle_only_;  ///< menu actions offered only while no command runs
    QProcess* sound_ = nullptr;
    std::unique_ptr<QtGraphWindow> graph_window_;  ///< the graph window GRAPH opens

    Mode mode_ = Mode::idle;
    int depth_ = 0;              ///< nesting of execute(): commands typed while stepping run inside
    bool close_pending_ = false; ///< the window was closed while a program ran
    bool line_ready_ = false;    ///< a line was entered while waiting for one
    QString entered_;            ///< that line
    int key_ = -1;               ///< a key pressed while waiting for one
    QStringList history_;        ///< oldest first: the recent commands, then this session's lines
    int history_index_ = 0;
    PumpTicker ticker_;
};

}  // namespace tl::gui
