// console_effects.h — what a window does to its console beyond text: CLS, COLOR and BEEP.
//
// A host with a console of its own installs this as host.effects. Without it
// (Console mode, tests) CLS writes line feeds, COLOR sends a terminal escape
// and BEEP rings the terminal's bell.
#pragma once

namespace tl {

class ConsoleEffects {
public:
    virtual ~ConsoleEffects() = default;
    /// Empties the console.
    virtual void clear_console() = 0;
    /// Colours the text that follows: `attribute` 0..255, the foreground in the
    /// low four bits and the background in the high four (bit values 1 blue,
    /// 2 green, 4 red, 8 bright).
    virtual void set_console_color(int attribute) = 0;
    /// Stops any sound and plays the beep without waiting for it.
    virtual void beep() = 0;
};

}  // namespace tl
