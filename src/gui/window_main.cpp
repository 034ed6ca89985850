// window_main.cpp — the entry of the window program: the main window, or batch mode.
//
// `tessaline` hands every start that is not Console mode over to this
// program (see shell/window_launch.h), with the same command line.
#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "gui/batch_host.h"
#include "gui/color_scheme.h"
#include "gui/main_window.h"
#include "shell/command_line.h"
#include "shell/log_file.h"
#include "shell/session.h"
#include "shell/shell_state.h"
#include "shell/termination_signals.h"
#include "shell/window_launch.h"

namespace {

using namespace tl;

/// SIGTERM, SIGHUP and SIGQUIT close the window as its close button does: a
/// running program is stopped first, files are closed and the settings and
/// the log written. The handler wakes the event loop through a pipe.
class TerminationWatch {
public:
    TerminationWatch() {
        if (::pipe2(fds_, O_CLOEXEC | O_NONBLOCK) != 0) {
            fds_[0] = fds_[1] = -1;
        } else {
            notifier_ = std::make_unique<QSocketNotifier>(fds_[0], QSocketNotifier::Read);
            QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
                char bytes[16];
                while (::read(fds_[0], bytes, sizeof bytes) > 0) {
                }
                QApplication::closeAllWindows();
            });
            shell::set_termination_wake_fd(fds_[1]);
        }
        shell::install_termination_handlers();
    }
    ~TerminationWatch() {
        shell::set_termination_wake_fd(-1);
        notifier_.reset();
        for (const int fd : fds_)
            if (fd >= 0) ::close(fd);
    }
    TerminationWatch(const TerminationWatch&) = delete;
    TerminationWatch& operator=(const TerminationWatch&) = delete;

private:
    int fds_[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> notifier_;
};

int run_window(int argc, char** argv, const std::string& program_file) {
    shell::XDisplayHold display = shell::hold_x_display(2000);
    QApplication app(argc, argv);
    shell::release_x_display(display);
    QApplication::setOrganizationName(QString::fromLatin1(shell::settings_organisation));
    QApplication::setApplicationName(QString::fromLatin1(shell::settings_application));
    gui::follow_desktop_color_scheme(app);

    shell::SessionStart start;
    if (!shell::begin_session(start, shell::shell_state.terminal)) return 1;
    int status = 0;
    {
        gui::MainWindow window([] { (void)shell::save_settings_now(); });
        window.install();
        window.show();
        shell::start_log_file(shell::shell_state.settings);
        const TerminationWatch watch;
        if (!program_file.empty())
            QTimer::singleShot(0, &window, [&window, &program_file] { window.run_file(QString::fromStdString(program_file)); });
        // A signal that came before the loop ran is answered at its start.
        if (shell::termination_signal() != 0) QTimer::singleShot(0, [] { QApplication::closeAllWindows(); });
        status = QApplication::exec();
    }
    shell::end_session(start);
    shell::end_by_termination_signal();
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tl::shell;
    const std::string program_path = argc > 0 && argv[0] != nullptr ? argv[0] : "";
    const std::vector<std::string> parameters(argv + (argc > 0 ? 1 : 0), argv + argc);
    ignore_file_size_signal();
    const CommandLineCheck check = check_command_line(program_path, parameters);
    if (int status = 0; answer_without_running(check, status)) return status;
    shell_state.program_folder = folder_of(executable_path(argc > 0 ? argv[0] : nullptr));
    shell_state.console_mode = false;
    const std::string program_file = absolute_program_file(check.program_file);
    if (check.batch) {
        // Nothing is shown: no display is needed.
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        QApplication app(argc, argv);
        QApplication::setOrganizationName(QString::fromLatin1(settings_organisation));
        QApplication::setApplicationName(QString::fromLatin1(settings_application));
        return tl::gui::run_batch(program_file);
    }
    return run_window(argc, argv, program_file);
}
