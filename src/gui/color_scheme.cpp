// color_scheme.cpp — the desktop's light or dark colours.
#include "gui/color_scheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleHints>
#include <QtGlobal>
#include <cmath>

namespace tl::gui {
namespace {

ColorScheme user_choice() {
    const QByteArray value = qgetenv("TESSALINE_DARK");
    if (value == "1") return ColorScheme::dark;
    if (value == "0") return ColorScheme::light;
    return ColorScheme::unknown;
}

ColorScheme qt_style_hint() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    switch (QGuiApplication::styleHints()->colorScheme()) {
    case Qt::ColorScheme::Dark: return ColorScheme::dark;
    case Qt::ColorScheme::Light: return ColorScheme::light;
    default: break;
    }
#endif
    return ColorScheme::unknown;
}

/// org.freedesktop.appearance color-scheme through the desktop portal, when
/// a session bus is there; a desktop without a portal answers at once.
/// True when a session bus runs: asking for one would start one where none runs.
bool session_bus_running() {
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return true;
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(QString::fromLocal8Bit(runtime) + QStringLiteral("/bus"));
}

ColorScheme portal_scheme() {
    if (!session_bus_running()) return ColorScheme::unknown;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return ColorScheme::unknown;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    call << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
    const QDBusMessage reply = bus.call(call, QDBus::Block, 300);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return ColorScheme::unknown;
    // The value comes wrapped in one or two variants.
    QVariant v = reply.arguments().constFirst();
    for (int i = 0; i < 2 && v.canConvert<QDBusVariant>(); ++i) v = v.value<QDBusVariant>().variant();
    bool ok = false;
    const unsigned value = v.toUInt(&ok);
    return ok ? scheme_of_portal_value(value) : ColorScheme::unknown;
}

double luminance(const QColor& c) {
    auto channel = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
    const QColor rgb = c.toRgb();
    return 0.2126 * channel(rgb.redF()) + 0.7152 * channel(rgb.greenF()) + 0.0722 * channel(rgb.blueF());
}

void apply(QApplication& app, ColorScheme scheme) {
    const bool palette_dark = is_dark(QGuiApplication::palette().color(QPalette::Window));
    if (scheme == ColorScheme::dark && !palette_dark) {
        app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        app.setPalette(dark_palette());
    } else if (scheme == ColorScheme::light && palette_dark) {
        QStyle* fusion = QStyleFactory::create(QStringLiteral("Fusion"));
        app.setStyle(fusion);
        app.setPalette(fusion->standardPalette());
    }
}

/// Follows the portal's SettingChanged signal for the colour scheme.
class PortalWatcher : public QObject {
    Q_OBJECT

public:
    explicit PortalWatcher(QApplication& app) : QObject(&app), app_(app) {}

public slots:
    void setting_changed(const QString& name_space, const QString& key, const QDBusVariant& value) {
        if (name_space != QLatin1String("org.freedesktop.appearance") || key != QLatin1String("color-scheme")) return;
        if (user_choice() != ColorScheme::unknown) return;
        QVariant v = value.variant();
        for (int i = 0; i < 2 && v.canConvert<QDBusVariant>(); ++i) v = v.value<QDBusVariant>().variant();
        bool ok = false;
        const unsigned number = v.toUInt(&ok);
        if (!ok) return;
        // The portal's news is the newest; "no preference" falls back on
        // GTK_THEME, then on light colours.
        SchemeSources s;
        s.portal = scheme_of_portal_value(number);
        s.gtk_theme = scheme_of_gtk_theme(QString::fromLocal8Bit(qgetenv("GTK_THEME")));
        apply(app_, choose_color_scheme(s));
    }

private:
    QApplication& app_;
};

/// Where the desktop portal is there, follows its changes of the scheme.
void watch_portal(QApplication& app) {
    if (!session_bus_running()) return;
    auto* watcher = new PortalWatcher(app);
    QDBusConnection::sessionBus().connect(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"), watcher,
        SLOT(setting_changed(QString, QString, QDBusVariant)));
}

}  // namespace

ColorScheme scheme_of_portal_value(unsigned value) {
    switch (value) {
    case 1: return ColorScheme::dark;
    case 2: return ColorScheme::light;
    default: return ColorScheme::unknown;
    }
}

ColorScheme scheme_of_gtk_theme(const QString& theme) {
    if (theme.isEmpty()) return ColorScheme::unknown;
    const QString t = theme.toLower();
    return t.endsWith(QStringLiteral(":dark")) || t.endsWith(QStringLiteral("-dark")) ? ColorScheme::dark
                                                                                      : ColorScheme::light;
}

ColorScheme choose_color_scheme(const SchemeSources& s) {
    for (const ColorScheme c : {s.user, s.qt_hint, s.portal, s.gtk_theme})
        if (c != ColorScheme::unknown) return c;
    return s.palette_window.isValid() && is_dark(s.palette_window) ? ColorScheme::dark : ColorScheme::light;
}

SchemeSources read_scheme_sources() {
    SchemeSources s;
    s.user = user_choice();
    if (s.user != ColorScheme::unknown) return s;  // nothing else is asked
    s.qt_hint = qt_style_hint();
    if (s.qt_hint == ColorScheme::unknown) s.portal = portal_scheme();
    s.gtk_theme = scheme_of_gtk_theme(QString::fromLocal8Bit(qgetenv("GTK_THEME")));
    s.palette_window = QGuiApplication::palette().color(QPalette::Window);
    return s;
}

bool is_dark(const QColor& window) { return window.lightness() < 128; }

QPalette dark_palette() {
    QPalette p;
    const QColor window(45, 45, 48), base(30, 30, 30), text(220, 220, 220), disabled(128, 128, 128);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::ToolTipBase, window);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, disabled);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, window);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, Qt::white);
    p.setColor(QPalette::Highlight, QColor(38, 79, 120));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(90, 160, 255));
    p.setColor(QPalette::Light, QColor(70, 70, 74));
    p.setColor(QPalette::Midlight, QColor(58, 58, 62));
    p.setColor(QPalette::Mid, QColor(40, 40, 42));
    p.setColor(QPalette::Dark, QColor(25, 25, 27));
    p.setColor(QPalette::Shadow, Qt::black);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, disabled);
    p.setColor(QPalette::Disabled, QPalette::Base, window);
    return p;
}

void follow_desktop_color_scheme(QApplication& app) {
    apply(app, choose_color_scheme(read_scheme_sources()));
    watch_portal(app);
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    QObject::connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, &app, [&app] {
        if (user_choice() == ColorScheme::unknown) apply(app, choose_color_scheme(read_scheme_sources()));
    });
#endif
}

double contrast_ratio(const QColor& a, const QColor& b) {
    double la = luminance(a), lb = luminance(b);
    if (la < lb) std::swap(la, lb);
    return (la + 0.05) / (lb + 0.05);
}

QColor readable_color(const QColor& wanted, const QColor& background) {
    constexpr double enough = 3.0;
    if (contrast_ratio(wanted, background) >= enough) return wanted;
    const bool lighten = luminance(background) < 0.18;
    QColor c = wanted.toHsl();
    float h = 0, s = 0, l = 0, a = 0;
    c.getHslF(&h, &s, &l, &a);
    for (int step = 0; step < 50 && contrast_ratio(c, background) < enough; ++step) {
        l = lighten ? std::min(1.0f, l + 0.02f) : std::max(0.0f, l - 0.02f);
        c.setHslF(h, s, l, a);
    }
    return c.toRgb();
}

}  // namespace tl::gui

#include "color_scheme.moc"
