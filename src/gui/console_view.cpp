// console_view.cpp — the window's console view.
#include "gui/console_view.h"

#include <QEvent>
#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>

#include "gui/color_scheme.h"

namespace tl::gui {
namespace {

/// The sixteen console colours by attribute bits (1 blue, 2 green, 4 red, 8 bright).
QColor console_color(int bits) {
    static constexpr unsigned rgb[16] = {0x000000, 0x0000AA, 0x00AA00, 0x00AAAA, 0xAA0000, 0xAA00AA,
                                         0xAA5500, 0xAAAAAA, 0x555555, 0x5555FF, 0x55FF55, 0x55FFFF,
                                         0xFF5555, 0xFF55FF, 0xFFFF55, 0xFFFFFF};
    return QColor::fromRgb(rgb[bits & 15]);
}

/// The property of a character format that keeps its console attribute, so
/// that the colours can be made again for another palette.
constexpr int attribute_property = QTextFormat::UserProperty + 1;

}  // namespace

/// The character format of an attribute: 7 (and 0) are the palette's own
/// colours. On the palette's background (background bits 0) a colour is
/// shifted just enough to stay readable there (dark blue on a dark
/// background, yellow on white); a background of its own keeps both colours
/// exactly.
QTextCharFormat ConsoleView::format_of(int attribute) const {
    QTextCharFormat f;
    f.setProperty(attribute_property, attribute);
    const int fg = attribute & 15;
    const int bg = (attribute >> 4) & 15;
    if (bg != 0) {
        f.setBackground(console_color(bg));
        if (attribute != 7) f.setForeground(console_color(fg));
    } else if (attribute != 7 && attribute != 0) {
        f.setForeground(readable_color(console_color(fg), palette().color(QPalette::Base)));
    }
    return f;
}

void ConsoleView::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) recolor();
}

void ConsoleView::recolor() {
    // The coloured runs first (changing formats would merge the fragments
    // being walked), then each made again.
    struct Run {
        int position, length, attribute;
    };
    std::vector<Run> runs;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QVariant attribute = fragment.charFormat().property(attribute_property);
            if (attribute.isValid() && attribute.toInt() != 7)
                runs.push_back({fragment.position(), fragment.length(), attribute.toInt()});
        }
    }
    if (runs.empty()) return;
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (const Run& run : runs) {
        cursor.setPosition(run.position);
        cursor.setPosition(run.position + run.length, QTextCursor::KeepAnchor);
        cursor.setCharFormat(format_of(run.attribute));
    }
    cursor.endEditBlock();
}

namespace {

/// Length of `text` without an unfinished UTF-8 sequence at its end.
std::size_t complete_utf8(std::string_view text) {
    std::size_t n = text.size();
    for (std::size_t back = 1; back <= 3 && back <= n; ++back) {
        const auto c = static_cast<unsigned char>(text[n - back]);
        if ((c & 0xC0) == 0x80) continue;  // continuation byte: look further back
        const std::size_t need = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        return need > back ? n - back : n;
    }
    return n;
}

}  // namespace

ConsoleView::ConsoleView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFocusPolicy(Qt::ClickFocus);
}

void ConsoleView::append_text(std::string_view text) {
    if (text.empty()) return;
    if (pending_.empty()) pending_attribute_ = attribute_;
    pending_.append(text);
}

void ConsoleView::set_attribute(int attribute) {
    if (attribute == attribute_) return;
    attribute_ = attribute;
    if (pending_.empty())
        pending_attribute_ = attribute;
    else
        marks_.push_back({pending_.size(), attribute});
}

void ConsoleView::set_capacity(int characters) {
    capacity_ = characters > 0 ? characters : 1;
    trim_to_capacity();
}

void ConsoleView::flush() {
    const std::size_t usable = complete_utf8(pending_);
    if (usable == 0) return;
    std::size_t from = 0;
    int attribute = pending_attribute_;
    // Text that would be dropped at once is never put into the view.
    const auto cap = static_cast<std::size_t>(capacity_);
    if (usable > cap) {
        const std::size_t line_start = pending_.find('\n', usable - cap);
        from = line_start == std::string::npos || line_start + 1 >= usable ? usable - cap : line_start + 1;
        while (from < usable && (static_cast<unsigned char>(pending_[from]) & 0xC0) == 0x80) ++from;
        document()->clear();
    }
    QScrollBar* bar = verticalScrollBar();
    const bool at_end = bar->value() >= bar->maximum() - 2;
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    std::size_t mark = 0;
    while (from < usable) {
        while (mark < marks_.size() && marks_[mark].offset <= from) attribute = marks_[mark++].attribute;
        std::size_t to = mark < marks_.size() ? std::min(marks_[mark].offset, usable) : usable;
        cursor.insertText(QString::fromUtf8(pending_.data() + from, static_cast<qsizetype>(to - from)),
                          format_of(attribute));
        from = to;
    }
    cursor.endEditBlock();
    while (mark < marks_.size() && marks_[mark].offset <= usable) attribute = marks_[mark++].attribute;
    // What is left: an unfinished character, and the marks that lie in it.
    pending_.erase(0, usable);
    std::vector<ColorMark> rest;
    for (std::size_t i = mark; i < marks_.size(); ++i) rest.push_back({marks_[i].offset - usable, marks_[i].attribute});
    marks_ = std::move(rest);
    pending_attribute_ = attribute;
    trim_to_capacity();
    if (at_end) bar->setValue(bar->maximum());
}

void ConsoleView::trim_to_capacity() {
    QTextDocument* doc = document();
    const int excess = doc->characterCount() - 1 - capacity_;
    if (excess <= 0) return;
    QTextCursor cursor(doc);
    cursor.movePosition(QTextCursor::Start);
    cursor.setPosition(excess, QTextCursor::KeepAnchor);
    // Whole lines go: up to the end of the line the cut falls in.
    if (!cursor.atBlockStart()) {
        cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    }
    cursor.removeSelectedText();
}

void ConsoleView::clear_all() {
    pending_.clear();
    marks_.clear();
    pending_attribute_ = attribute_;
    document()->clear();
}

QString ConsoleView::all_text() {
    flush();
    return toPlainText();
}

}  // namespace tl::gui
