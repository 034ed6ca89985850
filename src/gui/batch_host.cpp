// batch_host.cpp — batch mode's front end and its run.
#include "gui/batch_host.h"

#include <QCoreApplication>
#include <cstdio>
#include <iostream>

#include "graph/graph_state.h"
#include "gui/port_chooser_dialog.h"
#include "shell/console_session.h"
#include "shell/log_file.h"
#include "shell/session.h"
#include "shell/shell_state.h"
#include "shell/terminal_front_end.h"
#include "shell/termination_signals.h"

namespace tl::gui {

void BatchHost::withdraw() {
    if (host.graph_window == &graph_window_) host.graph_window = nullptr;
    withdraw_services();
}

void BatchHost::write(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

bool BatchHost::read_line(std::string_view prompt, std::string& line) {
    write(prompt);
    std::fflush(stdout);
    if (!std::getline(std::cin, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

int BatchHost::read_key() {
    std::fflush(stdout);
    const int c = std::cin.get();
    return std::cin ? c : key_end_of_input;
}

void BatchHost::pump_events() {
    if (!ticker_.due()) return;
    std::fflush(stdout);
    QCoreApplication::processEvents();
}

void BatchHost::message_box(std::string_view title, std::string_view text) {
    std::fflush(stdout);
    std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(title.size()), title.data(), static_cast<int>(text.size()),
                 text.data());
}

int BatchHost::ask(std::string_view title, std::string_view text, int buttons, int) {
    // The box is shown as a console line and answered with its first button.
    console_print("%.*s: %.*s\n", static_cast<int>(title.size()), title.data(), static_cast<int>(text.size()),
                  text.data());
    return buttons >= buttons_yes_no ? answer_yes : answer_ok;
}

bool BatchHost::open_document(std::string_view path) {
    console_print("Document: %.*s\n", static_cast<int>(path.size()), path.data());
    return true;
}

bool BatchHost::choose_port(std::string_view title, const std::vector<std::string>& ports, std::string& chosen) {
    const bool ok = proposed_port(ports, chosen);
    const std::string_view shown = title.empty() ? std::string_view(port_chooser_default_title) : title;
    console_print("%.*s: %s\n", static_cast<int>(shown.size()), shown.data(), ok ? chosen.c_str() : "(no port found)");
    return ok;
}

int run_batch(const std::string& program_file) {
    BatchHost batch;
    shell::SessionStart start;
    if (!shell::begin_session(start, batch)) return 1;
    batch.install();
    shell::start_log_file(shell::shell_state.settings);
    shell::install_interrupt_handler();
    shell::install_termination_handlers();
    batch.ticker().start();
    const bool ok = shell::run_program_file(program_file);
    batch.ticker().stop();
    std::fflush(stdout);
    if (graph.open) end_graph(true);
    shell::end_session(start);
    batch.withdraw();
    // SIGTERM, SIGHUP or SIGQUIT stopped the program: the files, the log and
    // the settings are written; the process now ends by that signal.
    shell::end_by_termination_signal();
    return ok ? 0 : 1;
}

}  // namespace tl::gui
