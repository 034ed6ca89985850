// window_settings.cpp — the window's geometry in the user's settings file.
#include "gui/window_settings.h"

#include <QSettings>
#include <QWidget>

#include "shell/settings.h"

namespace tl::gui {
namespace {

const QString geometry_key = QStringLiteral("Window/Geometry");

}  // namespace

bool restore_window_geometry(QWidget* window) {
    const QSettings s(QString::fromLatin1(shell::settings_organisation), QString::fromLatin1(shell::settings_application));
    const QByteArray geometry = s.value(geometry_key).toByteArray();
    return !geometry.isEmpty() && window->restoreGeometry(geometry);
}

void save_window_geometry(const QWidget* window) {
    QSettings s(QString::fromLatin1(shell::settings_organisation), QString::fromLatin1(shell::settings_application));
    const QByteArray geometry = window->saveGeometry();
    if (s.value(geometry_key).toByteArray() != geometry) s.setValue(geometry_key, geometry);
}

}  // namespace tl::gui
