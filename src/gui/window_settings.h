// window_settings.h — the window's own settings: its geometry and state.
#pragma once

class QWidget;

namespace tl::gui {

/// Restores the geometry saved for `window`; false when none was saved.
bool restore_window_geometry(QWidget* window);
/// Saves the geometry of `window` in the user's settings (group "Window").
void save_window_geometry(const QWidget* window);

}  // namespace tl::gui
