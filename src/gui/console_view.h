// console_view.h — the window's console: read-only text, coloured runs, capped scroll-back.
//
// Text arrives in pieces (parts of lines, many lines at once) and is kept in
// a pending buffer until flush(), which the window calls between statements
// at most every few milliseconds and whenever it waits for the user: a
// program printing thousands of lines costs one update of the view, not one
// per line. The view keeps at most `capacity` characters; the oldest whole
// lines are dropped first.
#pragma once

#include <QPlainTextEdit>
#include <string>
#include <string_view>
#include <vector>

namespace tl::gui {

class ConsoleView : public QPlainTextEdit {
public:
    explicit ConsoleView(QWidget* parent = nullptr);

    /// Appends text (UTF-8) after what is there; shown at the next flush().
    void append_text(std::string_view text);
    /// Moves the pending text into the view and scrolls to its end.
    void flush();
    /// Empties the view and the pending text.
    void clear_all();
    /// Colours the text that follows (a console attribute 0..255; 7 is the normal colour).
    void set_attribute(int attribute);
    /// The most characters kept (the "ConsoleBufferSize" setting).
    void set_capacity(int characters);
    int capacity() const { return capacity_; }
    /// The whole text shown, pending text included (for tests).
    QString all_text();

    /// The format of text of a console attribute on this view's palette.
    QTextCharFormat format_of(int attribute) const;

protected:
    /// A new palette (the desktop turned dark or light) colours the text anew.
    void changeEvent(QEvent* event) override;

private:
    void recolor();
    struct ColorMark {
        std::size_t offset;  ///< where in pending_ the attribute starts
        int attribute;
    };
    void trim_to_capacity();

    std::string pending_;
    std::vector<ColorMark> marks_;
    int attribute_ = 7;          ///< the attribute of the text appended next
    int pending_attribute_ = 7;  ///< the attribute at the start of pending_
    int capacity_ = 32768;
};

}  // namespace tl::gui
