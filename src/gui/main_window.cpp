// main_window.cpp — the main window: layout, run states, the front end, menus.
#include "gui/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdio>

#include "exec/everyday_statements.h"
#include "exec/exec_state.h"
#include "exec/file_table.h"
#include "graph/graph_state.h"
#include "gui/console_view.h"
#include "gui/customize_dialog.h"
#include "gui/graph_window_widget.h"
#include "gui/log_file_dialog.h"
#include "gui/port_chooser_dialog.h"
#include "gui/window_settings.h"
#include "lang/error_reporter.h"
#include "shell/console_session.h"
#include "shell/log_file.h"
#include "shell/recent_lists.h"
#include "shell/settings.h"
#include "shell/shell_state.h"

namespace tl::gui {
namespace {

using shell::shell_state;

constexpr const char* label_command = "Command:";
constexpr const char* label_stepping = "Stepping -- Command:";
constexpr const char* label_input = "Input:";
constexpr const char* label_key = "Awaiting Keystroke:";

QString from_utf8(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

/// A program's text for a message box: a run of more than `longest`
/// characters without a blank gets places where the line may break (zero-width
/// spaces), so that the box wraps it instead of cutting it off at its edge.
QString breakable(QString text) {
    constexpr int longest = 40;
    int run = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isSpace()) {
            run = 0;
        } else if (++run > longest) {
            text.insert(i, QChar(0x200B));
            run = 0;
        }
    }
    return text;
}

/// The addresses the Help menu offers besides the documents.
struct WebPage {
    const char* title;
    const char* url;
};
constexpr WebPage web_pages[] = {
    {"PDF Reader Download", "https://www.pdfreaders.org/"},
    {"Tessaline Home Page", "https://ostraval-software.example/tessaline/"},
    {"Tessaline Samples", "https://ostraval-software.example/tessaline/samples/"},
    {"Contribute to Tessaline", "https://ostraval-software.example/tessaline/contribute/"},
};

/// The key code a BASIC program sees for a key press, or -1 for none.
int key_code(const QKeyEvent* e) {
    switch (e->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab: return 9;
    case Qt::Key_Delete: return 127;
    default: break;
    }
    const QByteArray text = e->text().toLatin1();
    if (text.size() == 1 && text[0] != 0) return static_cast<unsigned char>(text[0]);
    return -1;
}

}  // namespace

MainWindow::MainWindow(std::function<void()> save_settings, QWidget* parent)
    : QMainWindow(parent), save_settings_(std::move(save_settings)), graph_window_(std::make_unique<QtGraphWindow>(true)) {
    const int screen_size = static_cast<int>(shell_state.settings.sizes[size_screen_size]);
    build_layout(screen_size);
    build_menus();
    console_->set_capacity(static_cast<int>(shell_state.settings.sizes[size_console_buffer_size]));

    // The history: the recent commands, oldest first, then this session's lines.
    const auto& recent = shell_state.settings.recent_commands.entries;
    for (auto it = recent.rbegin(); it != recent.rend(); ++it)
        if (!it->empty()) history_.append(QString::fromStdString(*it));
    history_index_ = static_cast<int>(history_.size());

    if (!restore_window_geometry(this)) resize(screen_size == 2 ? QSize(1100, 800) : QSize(820, 580));
    update_controls();
    update_title_and_status();
    field_->setFocus();
}

MainWindow::~MainWindow() {
    withdraw_services();
    if (host.graph_window == graph_window_.get()) {
        if (graph.open) end_graph(true);
        host.graph_window = nullptr;
    }
}

void MainWindow::install() { install_services(graph_window_.get()); }

// ---- layout ---------------------------------------------------------------

void MainWindow::build_layout(int screen_size) {
    auto* central = new QWidget(this);
    console_ = new ConsoleView(central);
    console_->setObjectName("console");
    label_ = new QLabel(QString::fromLatin1(label_command), central);
    label_->setObjectName("commandLabel");
    field_ = new QLineEdit(central);
    field_->setObjectName("commandField");
    field_->setFont(console_->font());
    field_->installEventFilter(this);
    label_->setBuddy(field_);
    run_ = new QPushButton(tr("Run"), central);
    run_->setObjectName("runButton");
    step_ = new QPushButton(tr("Step"), central);
    step_->setObjectName("stepButton");
    stop_ = new QPushButton(tr("Stop"), central);
    stop_->setObjectName("stopButton");
    for (QPushButton* b : {run_, step_, stop_}) b->setFocusPolicy(Qt::NoFocus);
    run_->setToolTip(tr("Run the loaded program, or continue a paused one (F5)"));
    step_->setToolTip(tr("Run one statement, or pause a running program (F10)"));
    stop_->setToolTip(tr("Stop the program (Esc)"));
    connect(run_, &QPushButton::clicked, this, &MainWindow::run_or_continue);
    connect(step_, &QPushButton::clicked, this, &MainWindow::step);
    connect(stop_, &QPushButton::clicked, this, &MainWindow::stop);
    connect(field_, &QLineEdit::returnPressed, this, &MainWindow::on_enter);

    if (screen_size == 2) {
        // The large layout: a larger console font, the buttons in a column beside the console.
        QFont f = console_->font();
        f.setPointSizeF(f.pointSizeF() + 2);
        console_->setFont(f);
        field_->setFont(f);
        auto* grid = new QGridLayout(central);
        auto* buttons = new QVBoxLayout;
        for (QPushButton* b : {run_, step_, stop_}) {
            b->setMinimumWidth(110);
            buttons->addWidget(b);
        }
        buttons->addStretch(1);
        grid->addWidget(console_, 0, 0, 1, 2);
        grid->addLayout(buttons, 0, 2);
        grid->addWidget(label_, 1, 0);
        grid->addWidget(field_, 1, 1, 1, 2);
        grid->setColumnStretch(1, 1);
    } else {
        auto* box = new QVBoxLayout(central);
        auto* row = new QHBoxLayout;
        row->addWidget(label_);
        row->addWidget(field_, 1);
        for (QPushButton* b : {run_, step_, stop_}) row->addWidget(b);
        box->addWidget(console_, 1);
        box->addLayout(row);
    }
    setCentralWidget(central);

    status_program_ = new QLabel(this);
    status_folder_ = new QLabel(this);
    status_state_ = new QLabel(this);
    statusBar()->addWidget(status_program_);
    statusBar()->addWidget(status_folder_, 1);
    statusBar()->addPermanentWidget(status_state_);

    // Keys: F5 runs, F10 steps, Esc and Ctrl+Break stop; Ctrl+C copies a
    // selection, and stops when nothing is selected.
    auto shortcut = [this](const QKeySequence& keys, auto slot) {
        auto* s = new QShortcut(keys, this);
        s->setContext(Qt::WindowShortcut);
        connect(s, &QShortcut::activated, this, slot);
    };
    shortcut(QKeySequence(Qt::Key_F5), [this] { run_or_continue(); });
    shortcut(QKeySequence(Qt::Key_F10), [this] { step(); });
    shortcut(QKeySequence(Qt::Key_Escape), [this] { stop(); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_Pause), [this] { stop(); });
    shortcut(QKeySequence(Qt::Key_Cancel), [this] { stop(); });
    shortcut(QKeySequence::Copy, [this] {
        if (console_->textCursor().hasSelection())
            console_->copy();
        else if (field_->hasSelectedText())
            field_->copy();
        else
            stop();
    });
}

void MainWindow::build_menus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* load = file->addAction(tr("&Load Program..."), this, &MainWindow::load_program_dialog);
    load->setShortcut(QKeySequence::Open);
    QAction* run = file->addAction(tr("&Run"), this, &MainWindow::run_or_continue);
    run->setShortcut(QKeySequence(Qt::Key_F5));
    run->setShortcutContext(Qt::WidgetShortcut);  // F5 itself is the window's shortcut
    recent_programs_ = file->addMenu(tr("Recent &Programs"));
    file->addSeparator();
    QAction* folder = file->addAction(tr("&Working Folder..."), this, &MainWindow::choose_working_folder);
    recent_folders_ = file->addMenu(tr("Recent Working &Folders"));
    file->addSeparator();
    QAction* quit = file->addAction(tr("E&xit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    idle_only_ = {load, folder, recent_programs_->menuAction(), recent_folders_->menuAction()};

    QMenu* log = menuBar()->addMenu(tr("&Log"));
    log->addAction(tr("&File Names..."), this, &MainWindow::log_file_dialog);
    log->addAction(tr("&Open Log File"), this, &MainWindow::open_log_in_editor);

    QMenu* options = menuBar()->addMenu(tr("&Options"));
    options->addAction(tr("&Customize..."), this, &MainWindow::customize);

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    for (int i = 1; i <= help_document_count; ++i) {
        QAction* a = help->addAction(QString::fromLatin1(help_document_title(i)), this, [this, i] { open_help(i); });
        if (i == 3) a->setShortcut(QKeySequence::HelpContents);
    }
    help->addAction(tr("Printing Instructions"), this,
                    [this] { open_named_document(QStringLiteral("Printing Instructions.txt")); });
    help->addSeparator();
    for (const WebPage& page : web_pages) {
        const QString url = QString::fromLatin1(page.url);
        help->addAction(QString::fromLatin1(page.title), this, [url] { QDesktopServices::openUrl(QUrl(url)); });
    }
    rebuild_recent_menus();
}

void MainWindow::rebuild_recent_menus() {
    recent_programs_->clear();
    for (const std::string& e : shell::existing_entries(shell_state.settings.recent_source_programs, false)) {
        const QString file = QString::fromStdString(e);
        recent_programs_->addAction(file, this, [this, file] { run_file(file); });
    }
    recent_programs_->setEnabled(!recent_programs_->isEmpty() && !busy());
    recent_folders_->clear();
    for (const std::string& e : shell::existing_entries(shell_state.settings.recent_working_dirs, true)) {
        const QString folder = QString::fromStdString(e);
        recent_folders_->addAction(folder, this, [this, folder] { use_working_folder(folder); });
    }
    recent_folders_->setEnabled(!recent_folders_->isEmpty() && !busy());
}

void MainWindow::update_controls() {
    const bool paused = mode_ == Mode::paused;
    const bool waiting = mode_ == Mode::input || mode_ == Mode::key;
    switch (mode_) {
    case Mode::idle: label_->setText(QString::fromLatin1(label_command)); break;
    case Mode::running: label_->setText(QString::fromLatin1(label_command)); break;
    case Mode::paused: label_->setText(QString::fromLatin1(label_stepping)); break;
    case Mode::input: label_->setText(QString::fromLatin1(label_input)); break;
    case Mode::key: label_->setText(QString::fromLatin1(label_key)); break;
    case Mode::dialog: label_->setText(QString::fromLatin1(label_command)); break;
    }
    run_->setText(paused ? tr("Continue") : tr("Run"));
    run_->setEnabled(mode_ == Mode::idle || paused);
    step_->setText(tr("Step"));
    step_->setEnabled(mode_ == Mode::idle || paused || mode_ == Mode::running);
    stop_->setEnabled(mode_ != Mode::idle);
    const bool typing = mode_ == Mode::idle || paused || waiting;
    field_->setEnabled(typing);
    if (typing && isActiveWindow()) field_->setFocus();
    for (QAction* a : idle_only_) a->setEnabled(mode_ == Mode::idle);
    if (mode_ == Mode::idle) rebuild_recent_menus();
    static const char* const names[] = {"Idle",           "Running", "Stepping", "Waiting for input", "Awaiting a keystroke",
                                        "Waiting for a dialog"};
    status_state_->setText(tr(names[static_cast<int>(mode_)]));
}

void MainWindow::update_title_and_status() {
    const QString program = QString::fromLocal8Bit(exec.program_file);
    const QString name = program.isEmpty() ? QString() : QFileInfo(program).fileName();
    setWindowTitle(name.isEmpty() ? QStringLiteral("Tessaline") : name + QStringLiteral(" - Tessaline"));
    status_program_->setText(name.isEmpty() ? tr("No program loaded") : tr("Program: %1").arg(program));
    status_folder_->setText(tr("Folder: %1").arg(QDir::currentPath()));
}

void MainWindow::settings_changed() {
    if (save_settings_) save_settings_();
}

// ---- running --------------------------------------------------------------

bool MainWindow::run_command(const std::function<bool()>& command) {
    const Mode outer = mode_;
    if (++depth_ == 1) ticker_.start();
    mode_ = Mode::running;
    update_controls();
    const bool ok = command();
    console_->flush();
    if (--depth_ == 0) {
        ticker_.stop();
        mode_ = Mode::idle;
        if (shell::remember_recent(shell_state.settings.recent_source_programs, exec.program_file)) settings_changed();
        update_title_and_status();
    } else {
        mode_ = outer;
    }
    update_controls();
    if (depth_ == 0 && close_pending_) QTimer::singleShot(0, this, &QWidget::close);
    return ok;
}

void MainWindow::execute(const std::string& line, bool echo) {
    if (echo) console_write(std::string(shell::command_prompt) + line + "\n");
    run_command([&line] { return shell::execute_typed_line(line) >= 0; });
}

void MainWindow::submit(const QString& line) {
    field_->setText(line);
    on_enter();
}

void MainWindow::on_enter() {
    const QString text = field_->text();
    const std::string line = text.toStdString();
    if (mode_ == Mode::input || mode_ == Mode::paused) {
        // A line for INPUT, or a command typed while stepping.
        field_->clear();
        entered_ = text;
        line_ready_ = true;
        if (mode_ == Mode::paused && !line.empty()) {
            history_.append(text);
            history_index_ = static_cast<int>(history_.size());
        }
        return;
    }
    if (mode_ != Mode::idle || line.empty()) return;
    field_->clear();
    if (history_.isEmpty() || history_.last() != text) history_.append(text);
    history_index_ = static_cast<int>(history_.size());
    if (shell::remember_recent(shell_state.settings.recent_commands, line)) settings_changed();
    execute(line, true);
}

bool MainWindow::run_file(const QString& file) {
    if (busy()) return false;
    const std::string name = QFileInfo(file).absoluteFilePath().toStdString();
    return run_command([&name] { return shell::run_program_file(name); });
}

void MainWindow::run_or_continue() {
    if (mode_ == Mode::paused) {
        host.flags.step_mode = false;  // Continue: the wait ends and the program runs on
        return;
    }
    if (mode_ == Mode::idle) execute("run", true);
}

void MainWindow::step() {
    switch (mode_) {
    case Mode::paused: host.flags.step_requested = true; break;
    case Mode::running:
        if (!host.flags.step_mode) {
            host.flags.step_mode = true;
            exec.announce = true;
        }
        break;
    case Mode::idle:
        // The loaded program from its first statement, in step mode.
        host.flags.step_mode = true;
        run_command([] { return shell::run_loaded_program(); });
        host.flags.step_mode = false;
        break;
    default: break;
    }
}

void MainWindow::stop() {
    if (busy()) host.flags.interrupt_requested = true;
}

void MainWindow::wait_until(const std::function<bool()>& done) {
    console_->flush();
    std::fflush(host.log);
    while (!done() && !host.flags.interrupt_requested.load())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

// ---- FrontEnd -------------------------------------------------------------

void MainWindow::write(std::string_view text) { console_->append_text(text); }

void MainWindow::pump_events() {
    if (!ticker_.due()) return;
    console_->flush();
    QCoreApplication::processEvents();
}

bool MainWindow::read_line(std::string_view prompt, std::string& line) {
    console_->append_text(prompt);
    const Mode outer = mode_;
    mode_ = Mode::input;
    line_ready_ = false;
    update_controls();
    wait_until([this] { return line_ready_; });
    line = line_ready_ ? entered_.toStdString() : std::string();
    if (line_ready_) console_->append_text(line + "\n");
    line_ready_ = false;
    mode_ = outer;
    update_controls();
    return true;
}

int MainWindow::read_key() {
    const Mode outer = mode_;
    mode_ = Mode::key;
    key_ = -1;
    update_controls();
    wait_until([this] { return key_ >= 0; });
    const int key = key_;
    key_ = -1;
    mode_ = outer;
    update_controls();
    return key;
}

int MainWindow::wait_for_step(std::string& command) {
    mode_ = Mode::paused;
    line_ready_ = false;
    host.flags.step_requested = false;
    update_controls();
    wait_until([this] { return line_ready_ || host.flags.step_requested.load() || !host.flags.step_mode.load(); });
    int answer = step_run_statement;
    if (host.flags.interrupt_requested.load()) {
        answer = step_end;
    } else if (line_ready_ && !entered_.isEmpty()) {
        command = entered_.toStdString();
        console_write(std::string(label_stepping) + " " + command + "\n");
        answer = step_command;
    }
    line_ready_ = false;
    host.flags.step_requested = false;
    // While the one statement runs the controls stay as they are; they change
    // when the program runs on or ends.
    if (!host.flags.step_mode.load()) {
        mode_ = Mode::running;
        update_controls();
    } else {
        field_->setEnabled(false);
        mode_ = Mode::running;
        stop_->setEnabled(true);
    }
    return answer;
}

void MainWindow::message_box(std::string_view title, std::string_view text) {
    console_->flush();
    QMessageBox::critical(isVisible() ? this : nullptr, from_utf8(title), from_utf8(text));
}

// ---- ConsoleEffects -------------------------------------------------------

void MainWindow::clear_console() { console_->clear_all(); }

void MainWindow::set_console_color(int attribute) { console_->set_attribute(attribute); }

void MainWindow::beep() {
    const QString wav = QCoreApplication::applicationDirPath() + QStringLiteral("/beep.wav");
    const QString player = QStandardPaths::findExecutable(QStringLiteral("aplay"));
    if (player.isEmpty() || !QFileInfo::exists(wav)) {
        QApplication::beep();
        return;
    }
    if (sound_ == nullptr) sound_ = new QProcess(this);
    if (sound_->state() != QProcess::NotRunning) {
        sound_->kill();
        sound_->waitForFinished(200);
    }
    sound_->start(player, {QStringLiteral("-q"), wav});
}

// ---- MessageDialog --------------------------------------------------------

int MainWindow::ask(std::string_view title, std::string_view text, int buttons, int icon) {
    static constexpr QMessageBox::Icon icons[] = {QMessageBox::NoIcon, QMessageBox::Information, QMessageBox::Warning,
                                                  QMessageBox::Critical, QMessageBox::Question};
    QMessageBox::StandardButtons set = QMessageBox::Ok;
    switch (buttons) {
    case buttons_ok_cancel: set = QMessageBox::Ok | QMessageBox::Cancel; break;
    case buttons_yes_no: set = QMessageBox::Yes | QMessageBox::No; break;
    case buttons_yes_no_cancel: set = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel; break;
    default: break;
    }
    auto* box = new QMessageBox(icons[icon >= 0 && icon < 5 ? icon : 0], from_utf8(title), QString(), set, this);
    box->setObjectName("messageBox");
    // The text is shown as it is: "<b>" in it is not markup.
    box->setTextFormat(Qt::PlainText);
    box->setText(breakable(from_utf8(text)));
    // Not modal: the Stop button and the keys of the window stay live.
    box->setWindowModality(Qt::NonModal);
    int answer = answer_interrupted;
    bool answered = false;
    connect(box, &QMessageBox::finished, this, [&answered] { answered = true; });
    const Mode outer = mode_;
    mode_ = Mode::dialog;  // the field is off while the box waits; Stop stays on
    update_controls();
    box->open();
    wait_until([&answered] { return answered; });
    if (answered) {
        switch (box->standardButton(box->clickedButton())) {
        case QMessageBox::Cancel: answer = answer_cancel; break;
        case QMessageBox::Yes: answer = answer_yes; break;
        case QMessageBox::No: answer = answer_no; break;
        default: answer = buttons >= buttons_yes_no ? (buttons == buttons_yes_no ? answer_no : answer_cancel) : answer_ok;
        }
        if (box->clickedButton() == box->button(QMessageBox::Ok)) answer = answer_ok;
    }
    box->disconnect(this);
    box->close();
    box->deleteLater();
    mode_ = outer;
    update_controls();
    return answer;
}

// ---- PortChooser ----------------------------------------------------------

bool MainWindow::choose_port(std::string_view title, const std::vector<std::string>& ports, std::string& chosen) {
    auto* dialog = new PortChooserDialog(from_utf8(title), ports, this);
    // Not modal, as the message box: Stop and the window's keys stay live.
    dialog->setWindowModality(Qt::NonModal);
    bool answered = false;
    connect(dialog, &QDialog::finished, this, [&answered] { answered = true; });
    const Mode outer = mode_;
    mode_ = Mode::dialog;
    update_controls();
    dialog->open();
    wait_until([&answered] { return answered; });
    const bool ok = answered && dialog->result() == QDialog::Accepted && !dialog->chosen().isEmpty();
    if (ok) chosen = dialog->chosen().toStdString();
    dialog->disconnect(this);
    dialog->close();
    dialog->deleteLater();
    mode_ = outer;
    update_controls();
    return ok;
}

// ---- DocumentViewer -------------------------------------------------------

bool MainWindow::open_document(std::string_view path) {
    const QString file = from_utf8(path);
    if (file.contains(QStringLiteral("://"))) return QDesktopServices::openUrl(QUrl(file));
    if (!QFileInfo::exists(file)) {
        QMessageBox::information(this, tr("Help"),
                                 tr("The document \"%1\" was not found.\nIt is looked for as %2")
                                     .arg(QFileInfo(file).fileName(), QDir::toNativeSeparators(file)));
        return true;
    }
    return QDesktopServices::openUrl(QUrl::fromLocalFile(file));
}

void MainWindow::open_help(int number) {
    char folder[4096];
    help_folder(folder);
    open_named_document(QString::fromLocal8Bit(folder) + QString::fromLatin1(help_document_file(number)));
}

void MainWindow::open_named_document(const QString& file) {
    QString path = file;
    if (QFileInfo(file).isRelative()) {
        char folder[4096];
        help_folder(folder);
        path = QString::fromLocal8Bit(folder) + file;
    }
    if (!open_document(path.toStdString()))
        QMessageBox::warning(this, tr("Help"), tr("The document %1 could not be opened.").arg(path));
}

// ---- menus ----------------------------------------------------------------

void MainWindow::load_program_dialog() {
    if (busy()) return;
    const auto& s = shell_state.settings;
    QString start = QString::fromStdString(s.src_pgm_path);
    if (start.isEmpty()) start = QDir::currentPath();
    const QString file = QFileDialog::getOpenFileName(this, tr("Load Program"), start,
                                                      tr("BASIC programs (*.bas *.txt);;All files (*)"));
    if (file.isEmpty()) return;
    QString quoted = file;
    quoted.replace(QStringLiteral("\""), QStringLiteral("\"\""));
    execute("load \"" + quoted.toStdString() + "\"", true);
}

void MainWindow::choose_working_folder() {
    if (busy()) return;
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Working Folder"), QDir::currentPath());
    if (!folder.isEmpty()) use_working_folder(folder);
}

void MainWindow::use_working_folder(const QString& folder) {
    if (busy()) return;
    if (!QDir::setCurrent(folder)) {
        QMessageBox::warning(this, tr("Working Folder"), tr("The folder %1 cannot be entered.").arg(folder));
        return;
    }
    auto& s = shell_state.settings;
    shell_state.working_folder = folder.toStdString();
    s.work_path = shell_state.working_folder;
    shell::remember_recent(s.recent_working_dirs, s.work_path);
    settings_changed();
    console_write("Working folder is " + s.work_path + "\n");
    console_->flush();
    update_title_and_status();
    rebuild_recent_menus();
}

void MainWindow::log_file_dialog() {
    auto& s = shell_state.settings;
    FileNames names{s.create_log_file, QString::fromStdString(s.log_file_path), QString::fromStdString(s.log_file_name),
                    QString::fromStdString(s.src_pgm_path), QString::fromStdString(s.src_pgm_name)};
    LogFileDialog dialog(names, this);
    if (dialog.exec() != QDialog::Accepted) return;
    names = dialog.names();
    const std::string old_log = shell::log_file_full_name(s);
    const bool was_on = s.create_log_file;
    s.create_log_file = names.create_log_file;
    s.log_file_path = names.log_path.toStdString();
    s.log_file_name = names.log_name.toStdString();
    s.src_pgm_path = names.program_path.toStdString();
    s.src_pgm_name = names.program_name.toStdString();
    // The log follows the choice at once: started, ended or moved to the new name.
    if (!s.create_log_file || old_log != shell::log_file_full_name(s) || !was_on) shell::close_log_file();
    if (s.create_log_file && host.log == nullptr) {
        if (shell::start_log_file(s)) shell::remember_recent(s.recent_log_files, shell::log_file_full_name(s));
    }
    console_->flush();
    settings_changed();
}

void MainWindow::open_log_in_editor() {
    const QString file = QFileInfo(QString::fromStdString(shell::log_file_full_name(shell_state.settings))).absoluteFilePath();
    if (!QFileInfo::exists(file)) {
        QMessageBox::information(this, tr("Log"), tr("There is no log file %1 yet.").arg(file));
        return;
    }
    if (host.log != nullptr) std::fflush(host.log);
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        QMessageBox::warning(this, tr("Log"), tr("No text editor could be started for %1.").arg(file));
}

void MainWindow::customize() {
    CustomizeDialog dialog(shell_state.settings.sizes, this);
    dialog.on_help = [this] { open_named_document(QStringLiteral("customize.pdf")); };
    if (dialog.exec() != QDialog::Accepted) return;
    if (!shell::save_sizing(dialog.values())) {
        QMessageBox::warning(this, QString::fromLatin1(customize_title), tr("The settings could not be written."));
        return;
    }
    QMessageBox::information(this, QString::fromLatin1(customize_title), QString::fromLatin1(customize_done_message));
}

// ---- keys, history, closing -----------------------------------------------

void MainWindow::history_move(int direction) {
    if (history_.isEmpty()) return;
    history_index_ = std::clamp(history_index_ + direction, 0, static_cast<int>(history_.size()));
    field_->setText(history_index_ < history_.size() ? history_[history_index_] : QString());
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == field_ && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (mode_ == Mode::key) {
            if (key->key() == Qt::Key_Escape) return false;  // Esc still stops
            const int code = key_code(key);
            if (code >= 0) key_ = code;
            return true;
        }
        if (key->key() == Qt::Key_Up) {
            history_move(-1);
            return true;
        }
        if (key->key() == Qt::Key_Down) {
            history_move(1);
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (busy()) {
        // Stop the program first; the window closes when the command has ended.
        close_pending_ = true;
        host.flags.interrupt_requested = true;
        event->ignore();
        return;
    }
    // The graph window goes with the main window.
    if (graph.open && host.graph_window == graph_window_.get()) end_graph(true);
    // Nothing written is lost: every file is written out and closed now,
    // not only when the process ends.
    close_all_files();
    if (host.log != nullptr) std::fflush(host.log);
    save_window_geometry(this);
    if (save_settings_) save_settings_();
    event->accept();
}

}  // namespace tl::gui
