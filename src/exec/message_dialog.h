// message_dialog.h — the dialog of the "messagebox" function, in a host that has windows.
//
// Installed as host.message_dialog. Without it (Console mode) the message is
// printed and the answer read as a line.
#pragma once

#include <string_view>

namespace tl {

// ORDER: the button words of "messagebox" ("ok", "okcancel", "yesno", "yesnocancel").
enum MessageButtons : int { buttons_ok = 0, buttons_ok_cancel, buttons_yes_no, buttons_yes_no_cancel };
// ORDER: the icon words ("none", "information", "warning", "error", "question").
enum MessageIcon : int { icon_none = 0, icon_information, icon_warning, icon_error, icon_question };
// The answers, as "messagebox" returns them.
enum MessageAnswer : int { answer_interrupted = 0, answer_ok = 1, answer_cancel = 2, answer_yes = 6, answer_no = 7 };

class MessageDialog {
public:
    virtual ~MessageDialog() = default;
    /// Shows `text` and waits for the user while the rest of the program stays
    /// live. Returns the button chosen, or answer_interrupted when the user
    /// stopped the program meanwhile.
    virtual int ask(std::string_view title, std::string_view text, int buttons, int icon) = 0;
};

}  // namespace tl
