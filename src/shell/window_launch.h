// window_launch.h — handing a start over to the window program.
//
// The window and batch mode live in their own executable, tessaline-window,
// beside this one: it links Qt's widgets and the shared C++ library, which a
// Console-mode start never loads. A start that wants the window replaces
// this process with it (same process id, arguments and environment).
#pragma once

#include <string>

namespace tl::shell {

inline constexpr const char* window_program_name = "tessaline-window";

/// The line printed on standard error when no display can be opened.
inline constexpr const char* no_display_message =
    "tessaline: no display could be opened; starting Console mode (use /c for Console mode, "
    "or --batch FILE.bas to run a program without a window)\n";

/// True when a window can be shown: QT_QPA_PLATFORM names a platform other
/// than xcb, or a Wayland display is set, or the X display in DISPLAY
/// accepts a connection (tried through libxcb, loaded for the test only).
[[nodiscard]] bool display_available();

/// An open connection to the X display, held while the window program's own
/// connection is made.
struct XDisplayHold {
    void* library = nullptr;
    void* connection = nullptr;
};

/// Connects to the X display in DISPLAY (when the window will use X), trying
/// again for up to `patience_ms`: an X server without other clients resets
/// itself when its last client leaves (such as the display test before the
/// hand-over) and refuses connections for that moment. Held open, the
/// connection keeps the server from resetting again until release_x_display().
[[nodiscard]] XDisplayHold hold_x_display(int patience_ms);
void release_x_display(XDisplayHold& hold);

/// Replaces the process with the window program found beside `executable`,
/// passing `argv` on. Returns only when that failed (after a message on
/// standard error).
void exec_window_program(const std::string& executable, char** argv);

}  // namespace tl::shell
