// batch_host.h — batch mode: a program run in window mode without a user.
//
// Console lines go to standard output, INPUT reads standard input, message
// boxes take the answer they propose (OK, or Yes), the port chooser its
// first port, documents are named instead of opened, and nothing is shown. Graph and dialog statements are
// allowed as in the window: the graph window is made but never shown.
#pragma once

#include <string>

#include "gui/graph_window_widget.h"
#include "gui/pump_ticker.h"
#include "gui/window_services.h"

namespace tl::gui {

class BatchHost final : public WindowServices {
public:
    /// Makes this the interpreter's front end and services.
    void install() { install_services(&graph_window_); }
    /// Withdraws them.
    void withdraw();

    void write(std::string_view text) override;
    bool read_line(std::string_view prompt, std::string& line) override;
    int read_key() override;
    void pump_events() override;
    bool console_mode() const override { return false; }
    void message_box(std::string_view title, std::string_view text) override;

    void clear_console() override {}
    void set_console_color(int) override {}
    void beep() override {}

    int ask(std::string_view title, std::string_view text, int buttons, int icon) override;
    bool open_document(std::string_view path) override;
    /// The port the dialog proposes: the first one found; none found is a cancel.
    bool choose_port(std::string_view title, const std::vector<std::string>& ports, std::string& chosen) override;

    PumpTicker& ticker() { return ticker_; }

private:
    PumpTicker ticker_;
    QtGraphWindow graph_window_{false};
};

/// Runs `program_file` in batch mode from start to end (the QApplication
/// must exist); returns the exit status: 0, or 1 when the program ended
/// with an error or could not be run.
int run_batch(const std::string& program_file);

}  // namespace tl::gui
