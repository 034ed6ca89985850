// color_scheme.h — following the desktop's light or dark colours.
//
// The window is drawn with the platform's palette. Where the desktop prefers
// dark colours but the palette Qt was given is light (a desktop whose theme
// Qt does not read), the window takes a dark palette of its own; the user's
// own choice (TESSALINE_DARK=1 or 0) comes before everything.
#pragma once

#include <QColor>
#include <QPalette>

class QApplication;

namespace tl::gui {

enum class ColorScheme { unknown, light, dark };

/// What is known about the desktop's preference, each source on its own.
struct SchemeSources {
    ColorScheme user = ColorScheme::unknown;    ///< TESSALINE_DARK: "1" dark, "0" light
    ColorScheme qt_hint = ColorScheme::unknown; ///< Qt's own style hint, where Qt has one
    ColorScheme portal = ColorScheme::unknown;  ///< the desktop portal's "color-scheme"
    ColorScheme gtk_theme = ColorScheme::unknown; ///< GTK_THEME naming a dark variant
    QColor palette_window;                      ///< the window colour of the palette Qt was given
};

/// The scheme to show: the user's choice, else the first source that knows,
/// else what the given palette looks like.
[[nodiscard]] ColorScheme choose_color_scheme(const SchemeSources& sources);

/// The portal's value of "color-scheme" (0 no preference, 1 dark, 2 light).
[[nodiscard]] ColorScheme scheme_of_portal_value(unsigned value);
/// A GTK_THEME value such as "Adwaita:dark" or "Yaru-dark".
[[nodiscard]] ColorScheme scheme_of_gtk_theme(const QString& theme);

/// Reads every source (the portal over the session bus, briefly).
[[nodiscard]] SchemeSources read_scheme_sources();

/// The dark palette used where the platform gives none.
[[nodiscard]] QPalette dark_palette();
[[nodiscard]] bool is_dark(const QColor& window);

/// Makes the application's palette follow the desktop; on Qt versions that
/// report changes of the scheme, it follows them while running.
void follow_desktop_color_scheme(QApplication& app);

/// The colour to draw text of `wanted` colour on `background` with: the same
/// hue, lighter or darker until it stands out (contrast ratio at least 3).
[[nodiscard]] QColor readable_color(const QColor& wanted, const QColor& background);
/// The contrast ratio of two colours (1 to 21).
[[nodiscard]] double contrast_ratio(const QColor& a, const QColor& b);

}  // namespace tl::gui
