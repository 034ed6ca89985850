// window_console_bench.cpp — 100,000 PRINT lines through the window's console view, offscreen.
//
// Prints the milliseconds the run took; bench/window_console.sh compares it
// with the same program in Console mode writing to a file.
// usage: window_console_bench PROGRAM.bas
#include <QApplication>
#include <QElapsedTimer>
#include <cstdio>
#include <cstdlib>

#include "gui/console_view.h"
#include "gui/main_window.h"
#include "lang/language_init.h"
#include "shell/shell_state.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: window_console_bench PROGRAM.bas\n");
        return 2;
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    tl::reset_interpreter_state();
    if (tl::init_language_tables(tl::default_sizing()) < 0) return 1;
    tl::gui::MainWindow window([] {});
    window.install();
    window.show();
    QElapsedTimer timer;
    timer.start();
    const bool ok = window.run_file(QString::fromLocal8Bit(argv[1]));
    window.console()->flush();
    const qint64 ms = timer.elapsed();
    std::printf("%lld\n", static_cast<long long>(ms));
    return ok ? 0 : 1;
}
