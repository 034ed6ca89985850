// line_editor.h — the line editor (libedit), loaded when a terminal needs it.
//
// Only an interactive terminal edits lines; a program run with its input
// from a file or a pipe never loads the library, which saves a good part of
// a short run's start-up.
#pragma once

namespace tl::shell {

/// The few functions of the editor's readline interface that the terminal uses.
struct LineEditor {
    char* (*readline)(const char* prompt);
    void (*using_history)();
    void (*stifle_history)(int length);
    int (*read_history)(const char* file);
    int (*write_history)(const char* file);
    int (*add_history)(const char* line);
    /// The editor's switch for catching signals itself.
    int* catch_signals;
};

/// The line editor, loaded on the first call; null when it cannot be loaded
/// (lines are then read without editing).
[[nodiscard]] const LineEditor* line_editor();

}  // namespace tl::shell
