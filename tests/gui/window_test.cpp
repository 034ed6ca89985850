// window_test.cpp — the main window driven as a user would, offscreen (Qt Test).
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QStyle>
#include <QDBusVariant>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QDialogButtonBox>
#include <QRegularExpression>
#include <QTextCursor>
#include <QTextDocument>
#include <QListWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <functional>
#include <memory>

#include "exec/exec_state.h"
#include "exec/front_end.h"
#include "exec/memory_areas.h"
#include "graph/graph_state.h"
#include "gui/batch_host.h"
#include "gui/color_scheme.h"
#include "gui/console_view.h"
#include "gui/customize_dialog.h"
#include "gui/graph_window_widget.h"
#include "gui/log_file_dialog.h"
#include "gui/main_window.h"
#include "gui/port_chooser_dialog.h"
#include "lang/language_init.h"
#include "shell/log_file.h"
#include "shell/shell_state.h"

using tl::gui::MainWindow;

namespace {

/// Calls `act` on the first visible top-level widget of type T (a dialog or
/// box), polling every 20 ms until one appears; stops after 5 seconds.
template <class T>
void when_shown(std::function<void(T*)> act) {
    auto* timer = new QTimer;
    auto started = std::make_shared<QElapsedTimer>();
    started->start();
    QObject::connect(timer, &QTimer::timeout, [timer, act, started] {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (auto* t = qobject_cast<T*>(w); t != nullptr && t->isVisible()) {
                timer->stop();
                timer->deleteLater();
                act(t);
                return;
            }
        }
        if (started->elapsed() > 5000) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start(20);
}

/// when_shown for the port chooser (a dialog without a meta-object of its own).
void when_port_chooser(std::function<void(tl::gui::PortChooserDialog*)> act) {
    when_shown<QDialog>([act](QDialog* d) {
        auto* chooser = dynamic_cast<tl::gui::PortChooserDialog*>(d);
        QVERIFY(chooser != nullptr);
        act(chooser);
    });
}

/// Calls `act` once `ready` holds, polling every 10 ms (at most 5 seconds).
void when(std::function<bool()> ready, std::function<void()> act) {
    auto* timer = new QTimer;
    auto started = std::make_shared<QElapsedTimer>();
    started->start();
    QObject::connect(timer, &QTimer::timeout, [timer, ready, act, started] {
        if (ready() || started->elapsed() > 5000) {
            timer->stop();
            timer->deleteLater();
            if (started->elapsed() <= 5000) act();
        }
    });
    timer->start(10);
}

/// A stand-in for the desktop portal's Settings interface, answering
/// color-scheme with `value`.
class FakePortalSettings : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortalSettings(uint value) : value_(value) {}

public slots:
    QDBusVariant Read(const QString& name_space, const QString& key) {
        if (name_space == QLatin1String("org.freedesktop.appearance") && key == QLatin1String("color-scheme"))
            return QDBusVariant(QVariant::fromValue(QDBusVariant(value_)));
        return QDBusVariant(QString());
    }

private:
    uint value_;
};

}  // namespace

class WindowTest : public QObject {
    Q_OBJECT

    std::unique_ptr<MainWindow> window;
    QTemporaryDir folder;
    int saves = 0;

    QString text() { return window->console()->all_text(); }
    QString write_program(const char* name, const char* body) {
        const QString path = folder.filePath(QString::fromLatin1(name));
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly)) return {};
        f.write(body);
        return path;
    }
    void load(const QString& path) { window->submit(QStringLiteral("load \"%1\"").arg(path)); }

private slots:
    void init() {
        tl::reset_interpreter_state();
        tl::shell::shell_state.settings = tl::shell::AppSettings{};
        QVERIFY(tl::init_language_tables(tl::default_sizing()) == 0);
        saves = 0;
        window = std::make_unique<MainWindow>([this] { ++saves; });
        window->install();
        window->show();
    }
    void cleanup() {
        window.reset();
        tl::reset_interpreter_state();
    }

    void typed_command_shows_its_output() {
        QVERIFY(window->command_field()->hasFocus() || !window->isActiveWindow());
        window->submit(QStringLiteral("print 6*7"));
        QVERIFY(text().contains(QStringLiteral("Command: print 6*7\n")));
        QVERIFY(text().contains(QStringLiteral(" 42")));
        QCOMPARE(window->command_field()->text(), QString());
        // The line is remembered: Up brings it back.
        QTest::keyClick(window->command_field(), Qt::Key_Up);
        QCOMPARE(window->command_field()->text(), QStringLiteral("print 6*7"));
        QCOMPARE(QString::fromStdString(tl::shell::shell_state.settings.recent_commands.entries[0]), QStringLiteral("print 6*7"));
    }

    void a_program_is_loaded_and_run() {
        const QString path = write_program("count.bas", "10 for i = 1 to 3\n20 print \"n\"; i\n30 next i\n");
        load(path);
        QVERIFY(text().contains(QStringLiteral("Program successfully loaded")));
        QVERIFY(window->windowTitle().startsWith(QStringLiteral("count.bas")));
        window->run_button()->click();
        QVERIFY(text().contains(QStringLiteral("n 1\nn 2\nn 3\n")) || text().contains(QStringLiteral("n            3")));
        QVERIFY(!window->busy());
        QCOMPARE(window->command_label()->text(), QStringLiteral("Command:"));
    }

    void stop_interrupts_an_endless_loop_and_the_prompt_works_after() {
        load(write_program("loop.bas", "10 goto 10\n"));
        when([this] { return window->busy() && window->stop_button()->isEnabled(); },
             [this] { window->stop_button()->click(); });
        window->submit(QStringLiteral("run"));
        QVERIFY(text().contains(QStringLiteral("User interrupted program")));
        QVERIFY(!window->busy());
        QVERIFY(!window->stop_button()->isEnabled());
        window->submit(QStringLiteral("print 1+1"));
        QVERIFY(text().endsWith(QStringLiteral(" 2\n")));
    }

    void stepping_runs_one_statement_per_step() {
        load(write_program("steps.bas", "10 print \"first\"\n20 print \"second\"\n30 print \"third\"\n"));
        QStringList seen;  // the console at each stepping wait
        auto* timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [&] {
            if (window->command_label()->text() != QStringLiteral("Stepping -- Command:") ||
                !window->step_button()->isEnabled() || !window->command_field()->isEnabled())
                return;
            seen << text();
            QCOMPARE(window->run_button()->text(), QStringLiteral("Continue"));
            window->step_button()->click();
        });
        timer->start(15);
        window->step_button()->click();  // from idle: run the program in step mode
        timer->stop();
        QVERIFY(seen.size() >= 3);
        QVERIFY(seen[0].contains(QStringLiteral("Stepping...(click STEP or CONTINUE)")));
        QVERIFY(!seen[0].contains(QStringLiteral("\nfirst")));
        QVERIFY(seen[1].contains(QStringLiteral("\nfirst")) && !seen[1].contains(QStringLiteral("\nsecond")));
        QVERIFY(seen[2].contains(QStringLiteral("\nsecond")) && !seen[2].contains(QStringLiteral("\nthird")));
        QVERIFY(text().contains(QStringLiteral("\nthird")));
        QCOMPARE(window->run_button()->text(), QStringLiteral("Run"));
    }

    void a_line_typed_while_stepping_inside_a_loop_runs_on_its_own() {
        // Paused inside a FOR body (and a GOSUB within it), lines typed into
        // the field run at once; the loop goes on and is not reported open.
        load(write_program("loop.bas", "10 for i = 1 to 3\n20 gosub 100\n30 next i\n40 print \"done\"; x\n50 end\n"
                                       "100 x = x + i\n110 return\n"));
        int pauses = 0;
        auto* timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [&] {
            if (window->command_label()->text() != QStringLiteral("Stepping -- Command:") ||
                !window->command_field()->isEnabled())
                return;
            ++pauses;
            if (pauses == 3) window->submit(QStringLiteral("print \"at\"; i"));         // in the loop body
            if (pauses == 5) window->submit(QStringLiteral("for k = 1 to 2: print k: next k"));  // in the subroutine
            if (pauses == 7) window->run_button()->click();                         // Continue
            else window->step_button()->click();
        });
        timer->start(15);
        window->step_button()->click();
        timer->stop();
        const QString all = text();
        QVERIFY2(!all.contains(QStringLiteral("without")), qPrintable(all));
        QVERIFY(all.contains(QStringLiteral("Stepping -- Command: print \"at\"; i\nat")));
        QVERIFY(all.contains(QRegularExpression(QStringLiteral("done +6\n"))));
        QVERIFY(!window->busy());
    }

    void input_takes_the_command_fields_line() {
        load(write_program("ask.bas", "10 input \"Name\"; a$\n20 print \"Hello \"; a$\n"));
        when([this] { return window->command_label()->text() == QStringLiteral("Input:"); },
             [this] {
                 window->command_field()->setText(QStringLiteral("World"));
                 QTest::keyClick(window->command_field(), Qt::Key_Return);
             });
        window->submit(QStringLiteral("run"));
        QVERIFY(text().contains(QStringLiteral("Name? World\n")));
        QVERIFY(text().contains(QStringLiteral("Hello World")));
    }

    void messagebox_answers_and_stays_interruptible() {
        when_shown<QMessageBox>([](QMessageBox* box) { box->button(QMessageBox::No)->click(); });
        window->submit(QStringLiteral("print messagebox(\"Go on?\", \"Ask\", \"yesno\")"));
        QVERIFY(text().contains(QStringLiteral(" 7\n")));
        // Stop while the box waits: error 106.
        when_shown<QMessageBox>([this](QMessageBox*) { window->stop_button()->click(); });
        window->submit(QStringLiteral("print messagebox(\"Wait\")"));
        QVERIFY(text().contains(QStringLiteral("User interrupted program")));
        // A program's text is shown as it is, markup-like parts too, and a
        // long run without blanks is wrapped, not cut off at the box's edge.
        QString shown;
        int lines = 0;
        when_shown<QMessageBox>([&](QMessageBox* box) {
            QCOMPARE(box->textFormat(), Qt::PlainText);
            shown = box->text();
            auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
            // Wrapped: the 200 letters take lines of their own below "<b>x</b>".
            lines = label != nullptr ? label->height() / label->fontMetrics().lineSpacing() : 0;
            box->button(QMessageBox::Ok)->click();
        });
        window->submit(QStringLiteral("print messagebox(\"<b>x</b> \" + string$(200, \"y\"))"));
        QCOMPARE(shown.remove(QChar(0x200B)), QStringLiteral("<b>x</b> ") + QString(200, QLatin1Char('y')));
        QVERIFY2(lines >= 3, qPrintable(QString::number(lines)));
    }

    void browsecommports_offers_the_ports_and_a_typed_device() {
        // A device typed into the field (a pseudo-terminal the list cannot know).
        when_port_chooser([this](tl::gui::PortChooserDialog* d) {
            QCOMPARE(d->windowTitle(), QStringLiteral("Pick one"));
            // While it waits the field is off and Stop is on.
            QCOMPARE(window->command_label()->text(), QStringLiteral("Command:"));
            QVERIFY(!window->command_field()->isEnabled() && window->stop_button()->isEnabled());
            d->field()->setText(QStringLiteral("/dev/pts/77"));
            d->buttons()->button(QDialogButtonBox::Ok)->click();
        });
        window->submit(QStringLiteral("print browsecommports$(\"Pick one\")"));
        QVERIFY(text().endsWith(QStringLiteral("/dev/pts/77\n")));
        // Cancel is error 325; the window takes commands again.
        when_port_chooser([](tl::gui::PortChooserDialog* d) { d->reject(); });
        window->submit(QStringLiteral("a$ = browsecommports$(\"\")"));
        QVERIFY(text().contains(QStringLiteral("User cancelled from comm port selection dialog.")));
        QVERIFY(!window->busy() && window->command_field()->isEnabled());
        // Stop while the dialog waits ends the program.
        when_port_chooser([this](tl::gui::PortChooserDialog*) { window->stop_button()->click(); });
        window->submit(QStringLiteral("a$ = browsecommports$(\"x\")"));
        QVERIFY(!window->busy());
        QTRY_VERIFY(window->findChildren<QDialog*>(QStringLiteral("portChooser")).isEmpty());

        // The list: the first port is proposed, another can be picked; OK needs a name.
        const std::vector<std::string> ports{"/dev/ttyACM0", "/dev/ttyUSB1"};
        tl::gui::PortChooserDialog dialog(QString(), ports, window.get());
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Select COM Port"));
        QCOMPARE(dialog.chosen(), QStringLiteral("/dev/ttyACM0"));
        dialog.list()->setCurrentRow(1);
        QCOMPARE(dialog.chosen(), QStringLiteral("/dev/ttyUSB1"));
        dialog.field()->setText(QStringLiteral("  "));
        QVERIFY(!dialog.buttons()->button(QDialogButtonBox::Ok)->isEnabled());
        tl::gui::PortChooserDialog none(QStringLiteral("t"), {}, window.get());
        QVERIFY(!none.buttons()->button(QDialogButtonBox::Ok)->isEnabled());

        // Batch mode takes what the dialog proposes: the first port, or a cancel.
        tl::gui::BatchHost batch;
        std::string chosen;
        QVERIFY(batch.choose_port("t", ports, chosen));
        QCOMPARE(chosen, std::string("/dev/ttyACM0"));
        QVERIFY(!batch.choose_port("t", {}, chosen));
    }

    void the_colours_follow_the_desktop_and_stay_readable() {
        using tl::gui::ColorScheme;
        // The user's choice first, then the first source that knows, then the palette.
        tl::gui::SchemeSources s;
        s.palette_window = QColor(240, 240, 240);
        QCOMPARE(tl::gui::choose_color_scheme(s), ColorScheme::light);
        s.palette_window = QColor(40, 40, 40);
        QCOMPARE(tl::gui::choose_color_scheme(s), ColorScheme::dark);
        s.gtk_theme = tl::gui::scheme_of_gtk_theme(QStringLiteral("Adwaita"));
        QCOMPARE(tl::gui::choose_color_scheme(s), ColorScheme::light);
        s.portal = tl::gui::scheme_of_portal_value(1);
        QCOMPARE(tl::gui::choose_color_scheme(s), ColorScheme::dark);
        s.user = ColorScheme::light;
        QCOMPARE(tl::gui::choose_color_scheme(s), ColorScheme::light);
        QCOMPARE(tl::gui::scheme_of_portal_value(0), ColorScheme::unknown);
        QCOMPARE(tl::gui::scheme_of_portal_value(2), ColorScheme::light);
        QCOMPARE(tl::gui::scheme_of_gtk_theme(QStringLiteral("Adwaita:dark")), ColorScheme::dark);
        QCOMPARE(tl::gui::scheme_of_gtk_theme(QStringLiteral("Yaru-Dark")), ColorScheme::dark);
        QCOMPARE(tl::gui::scheme_of_gtk_theme(QString()), ColorScheme::unknown);

        // Every console colour can be read on a light and on a dark background;
        // one that can already be read is kept as it is.
        const QColor light(255, 255, 255), dark = tl::gui::dark_palette().color(QPalette::Base);
        static constexpr unsigned rgb[] = {0x0000AA, 0x00AA00, 0xAA0000, 0xAAAAAA, 0x555555, 0xFFFF55, 0xFFFFFF, 0x000000};
        for (const unsigned c : rgb) {
            for (const QColor& bg : {light, dark}) {
                const QColor shown = tl::gui::readable_color(QColor::fromRgb(c), bg);
                QVERIFY2(tl::gui::contrast_ratio(shown, bg) >= 3.0, qPrintable(QString::number(c, 16)));
                if (tl::gui::contrast_ratio(QColor::fromRgb(c), bg) >= 3.0) QCOMPARE(shown, QColor::fromRgb(c));
                else if (QColor::fromRgb(c).hslSaturation() > 0) QCOMPARE(shown.hslHue(), QColor::fromRgb(c).hslHue());
            }
        }

        // Text already shown takes the new colours when the palette turns dark and back.
        window->submit(QStringLiteral("color 1: print \"deep blue\": color 30: print \"boxed\": color 7"));
        tl::gui::ConsoleView* view = window->console();
        auto colour_of = [view](const QString& word) {
            view->flush();
            const QTextCursor at = view->document()->find(QRegularExpression(QStringLiteral("^") + word + QStringLiteral("$")));
            QTextCursor c(view->document());
            c.setPosition(at.selectionStart() + 1);
            return c.charFormat();
        };
        QCOMPARE(colour_of(QStringLiteral("deep blue")).foreground().color(), QColor::fromRgb(0x0000AA));
        view->setPalette(tl::gui::dark_palette());
        const QColor on_dark = colour_of(QStringLiteral("deep blue")).foreground().color();
        QVERIFY(tl::gui::contrast_ratio(on_dark, dark) >= 3.0);
        QVERIFY(on_dark != QColor::fromRgb(0x0000AA));
        // A background of its own keeps both colours exactly.
        QCOMPARE(colour_of(QStringLiteral("boxed")).foreground().color(), QColor::fromRgb(0xFFFF55));
        QCOMPARE(colour_of(QStringLiteral("boxed")).background().color(), QColor::fromRgb(0x0000AA));
        view->setPalette(QPalette(light));
        view->setPalette(QApplication::palette());
        QCOMPARE(colour_of(QStringLiteral("deep blue")).foreground().color(), QColor::fromRgb(0x0000AA));
    }

    void the_desktop_portal_is_asked_for_the_colour_scheme() {
        if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty())
            QSKIP("dbus-daemon is needed (scripts/install-deps test)");
        // A private session bus with a portal that prefers dark colours. The
        // portal answers from a thread of its own while the window's thread
        // waits for the answer.
        QProcess daemon;
        daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                     QStringLiteral("--print-address")});
        QVERIFY(daemon.waitForReadyRead(5000));
        const QString address = QString::fromLatin1(daemon.readLine()).trimmed();
        QVERIFY(!address.isEmpty());
        QThread portal_thread;
        portal_thread.start();
        auto* portal = new FakePortalSettings(1);
        portal->moveToThread(&portal_thread);
        connect(&portal_thread, &QThread::finished, portal, &QObject::deleteLater);
        {
            QDBusConnection service = QDBusConnection::connectToBus(address, QStringLiteral("fake-portal"));
            QVERIFY(service.isConnected());
            QVERIFY(service.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), portal,
                                           QDBusConnection::ExportAllSlots));
            QVERIFY(service.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
        }
        const QByteArray saved_address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        const QByteArray saved_gtk = qgetenv("GTK_THEME");
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toLatin1());
        qputenv("GTK_THEME", "Adwaita");  // the portal comes first
        const tl::gui::SchemeSources sources = tl::gui::read_scheme_sources();

        // Following it: the palette turns dark, then light when the portal
        // announces the change.
        const QPalette saved_palette = QApplication::palette();
        const QString saved_style = QApplication::style()->name();
        QApplication::setPalette(QApplication::style()->standardPalette());
        tl::gui::follow_desktop_color_scheme(*qApp);
        const bool turned_dark = tl::gui::is_dark(QApplication::palette().color(QPalette::Window));
        QDBusMessage changed = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                          QStringLiteral("org.freedesktop.portal.Settings"),
                                                          QStringLiteral("SettingChanged"));
        changed << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme")
                << QVariant::fromValue(QDBusVariant(QVariant::fromValue(2u)));
        QDBusConnection(QStringLiteral("fake-portal")).send(changed);
        QElapsedTimer waited;
        waited.start();
        while (tl::gui::is_dark(QApplication::palette().color(QPalette::Window)) && waited.elapsed() < 5000)
            QTest::qWait(20);
        const bool turned_light = !tl::gui::is_dark(QApplication::palette().color(QPalette::Window));
        QApplication::setStyle(saved_style);
        QApplication::setPalette(saved_palette);

        qputenv("DBUS_SESSION_BUS_ADDRESS", saved_address);
        if (saved_gtk.isEmpty()) qunsetenv("GTK_THEME"); else qputenv("GTK_THEME", saved_gtk);
        QDBusConnection::disconnectFromBus(QStringLiteral("fake-portal"));
        portal_thread.quit();
        portal_thread.wait();
        daemon.terminate();
        daemon.waitForFinished(3000);
        QCOMPARE(sources.portal, tl::gui::ColorScheme::dark);
        QCOMPARE(sources.gtk_theme, tl::gui::ColorScheme::light);
        QCOMPARE(tl::gui::choose_color_scheme(sources), tl::gui::ColorScheme::dark);
        QVERIFY(turned_dark);
        QVERIFY(turned_light);
    }

    void customize_refuses_a_value_out_of_range() {
        std::array<QString, tl::sizing_count> texts;
        for (int i = 0; i < tl::sizing_count; ++i) texts[static_cast<std::size_t>(i)] = QString::number(tl::sizing_records[static_cast<std::size_t>(i)].default_value);
        texts[tl::size_string_space] = QStringLiteral("5000000");
        QString message;
        int bad = -1;
        QVERIFY(!tl::gui::parse_sizing(texts, message, bad));
        QCOMPARE(message, QStringLiteral("String Space must be between 1000 and 4000000"));
        QCOMPARE(bad, static_cast<int>(tl::size_string_space));
        texts[tl::size_string_space] = QStringLiteral("x");
        QVERIFY(!tl::gui::parse_sizing(texts, message, bad));
        texts[tl::size_string_space] = QStringLiteral("1000");
        const auto ok = tl::gui::parse_sizing(texts, message, bad);
        QVERIFY(ok && (*ok)[tl::size_string_space] == 1000);

        // The dialog shows the message in a box titled "Customize" and stays open.
        tl::gui::CustomizeDialog dialog(tl::default_sizing(), window.get());
        dialog.field(tl::size_screen_size)->setText(QStringLiteral("3"));
        QString title, shown;
        bool still_open = false;
        QTimer::singleShot(0, [&] {
            when_shown<QMessageBox>([&](QMessageBox* box) {
                title = box->windowTitle();
                shown = box->text();
                box->accept();
                QTimer::singleShot(0, [&] {
                    still_open = dialog.isVisible();
                    dialog.reject();
                });
            });
            dialog.accept();  // OK: the check refuses and the dialog stays
        });
        QCOMPARE(dialog.exec(), static_cast<int>(QDialog::Rejected));
        QVERIFY(still_open);
        QCOMPARE(title, QStringLiteral("Customize"));
        QCOMPARE(shown, QStringLiteral("Screen Size must be between 1 and 2"));
    }

    void file_name_dialog_refuses_empty_names() {
        tl::gui::FileNames names{true, {}, QStringLiteral(" "), {}, QStringLiteral("p.txt")};
        QCOMPARE(tl::gui::file_names_refusal(names), QString::fromLatin1(tl::gui::empty_log_name_message));
        names.create_log_file = false;
        QCOMPARE(tl::gui::file_names_refusal(names), QString());
        names.program_name.clear();
        QCOMPARE(tl::gui::file_names_refusal(names), QString::fromLatin1(tl::gui::empty_program_name_message));
        tl::gui::LogFileDialog dialog(tl::gui::FileNames{}, window.get());
        QCOMPARE(dialog.log_name_field()->text(), QStringLiteral("logfile.log"));
        QCOMPARE(dialog.program_name_field()->text(), QStringLiteral("program.txt"));
    }

    void the_log_file_failure_box_shows_once() {
        tl::shell::AppSettings s;
        s.create_log_file = true;
        s.log_file_path = folder.filePath(QStringLiteral("no/such/folder")).toStdString();
        int boxes = 0;
        QString title, shown;
        when_shown<QMessageBox>([&](QMessageBox* box) {
            ++boxes;
            title = box->windowTitle();
            shown = box->text();
            box->accept();
        });
        QVERIFY(!tl::shell::start_log_file(s));
        QCOMPARE(boxes, 1);
        QCOMPARE(title, QStringLiteral("Error"));
        QCOMPARE(shown, QStringLiteral("Cant open LOG file."));
        QVERIFY(text().contains(QStringLiteral("Cant open LOG file.\n")));
        window->submit(QStringLiteral("print 3"));
        QVERIFY(text().endsWith(QStringLiteral("print 3\n3\n")));
    }

    void a_setting_chosen_in_the_window_is_saved_at_once() {
        // A folder from the recent list, then the log file's names: each is
        // saved before the menu command returns, not later and not only at exit.
        const QString before = QDir::currentPath();
        tl::shell::shell_state.settings.recent_working_dirs.entries[0] = folder.path().toStdString();
        window->submit(QStringLiteral("print 1"));  // the menus are made again when idle
        QAction* recent = nullptr;
        QAction* log_names = nullptr;
        for (QMenu* menu : window->findChildren<QMenu*>()) {
            if (menu->title() == QStringLiteral("Recent Working &Folders") && !menu->actions().isEmpty())
                recent = menu->actions().first();
            for (QAction* a : menu->actions())
                if (a->text() == QStringLiteral("&File Names...")) log_names = a;
        }
        QVERIFY(recent != nullptr && log_names != nullptr);
        saves = 0;
        recent->trigger();
        QCOMPARE(saves, 1);
        QCOMPARE(QString::fromStdString(tl::shell::shell_state.settings.work_path), folder.path());
        when_shown<QDialog>([](QDialog* d) { d->accept(); });
        log_names->trigger();
        QCOMPARE(saves, 2);
        QDir::setCurrent(before);
    }

    void closing_while_a_program_runs_stops_it_and_closes() {
        // The program writes a file without end; what it wrote is there, and
        // the file closed, once the window has gone.
        const QString data = folder.filePath(QStringLiteral("forever.txt"));
        const QByteArray body = "10 open \"o\", 1, \"" + data.toUtf8() +
                                "\"\n20 x = x + 1\n30 print #1, \"n\"; x\n40 goto 20\n";
        load(write_program("forever.bas", body.constData()));
        when([this, data] { return window->busy() && QFileInfo(data).size() > 4096; }, [this] { window->close(); });
        window->submit(QStringLiteral("run"));
        QVERIFY(text().contains(QStringLiteral("User interrupted program")));
        QTRY_VERIFY(!window->isVisible());
        QVERIFY(saves >= 1);
        QVERIFY(tl::areas.files.size() > 1 && tl::areas.files[1].open == 0);
        QFile f(data);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = f.readAll().split('\n');
        QVERIFY(lines.size() > 2);
        QCOMPARE(lines.last(), QByteArray());  // ends with a whole line
        for (qsizetype i = 0; i + 1 < lines.size(); ++i)
            QCOMPARE(lines[i].simplified(), QByteArray("n ") + QByteArray::number(i + 1));
    }

    void graph_typed_at_the_command_field_shows_the_graph_window() {
        tl::gui::QtGraphWindow* graphs = window->graph_window();
        QVERIFY(graphs != nullptr);
        QVERIFY(tl::host.graph_window == graphs);
        window->submit(QStringLiteral("graph width = 6, height = 4, nogrid"));
        QVERIFY(!text().contains(QStringLiteral("ERROR")));
        QVERIFY(tl::graph.open);
        QVERIFY(graphs->frame() != nullptr);
        QTRY_VERIFY(graphs->frame()->isVisible());
        QCOMPARE(graphs->frame()->windowTitle(), QStringLiteral("Tessaline Graph"));
        // The Command field keeps the keys; the graph window is shown without
        // taking activation, and its canvas takes the keys when clicked.
        QVERIFY(graphs->frame()->testAttribute(Qt::WA_ShowWithoutActivating));
        QVERIFY(window->command_field()->hasFocus() || !window->isActiveWindow());
        QVERIFY(!graphs->frame()->isActiveWindow());
        QCOMPARE(graphs->frame()->canvas()->focusPolicy(), Qt::StrongFocus);
        window->submit(QStringLiteral("for i = 1 to 20: plot x = i, y = i * i: next i"));
        QVERIFY(!text().contains(QStringLiteral("ERROR")));
        QCOMPARE(tl::graph.series.at(0).point_count, 20);
        // The painted graph has laid itself out for its data.
        QTRY_VERIFY(tl::graph.surface.valid);
        QVERIFY(tl::graph.settings.hscale_calculated > 0);
        // The View menu follows the settings; GRAPH END closes the window.
        window->submit(QStringLiteral("graph end"));
        QVERIFY(!tl::graph.open);
        QTRY_VERIFY(graphs->frame() == nullptr || !graphs->frame()->isVisible());
        // Console mode's refusal is not the window's: a new graph opens again.
        window->submit(QStringLiteral("graph"));
        QVERIFY(tl::graph.open);
        QTRY_VERIFY(graphs->frame() != nullptr && graphs->frame()->isVisible());
        // Closing the main window takes the graph window with it.
        QPointer<tl::gui::GraphFrame> frame = graphs->frame();
        window->close();
        QVERIFY(!tl::graph.open);
        QTRY_VERIFY(frame.isNull() || !frame->isVisible());
    }

    void closing_the_graph_window_while_a_program_runs_ends_the_graph() {
        load(write_program("plotting.bas",
                           "10 graph\n20 i = 0\n30 i = i + 1\n40 plot x = i, y = sin(i)\n50 if i < 100 then goto 30\n"
                           "60 plot x = i, y = 0\n70 goto 60\n"));
        tl::gui::QtGraphWindow* graphs = window->graph_window();
        when([graphs] { return tl::graph.open && graphs->frame() != nullptr && graphs->frame()->isVisible() &&
                               !tl::graph.series.empty() && tl::graph.series[0].point_count >= 100; },
             [graphs] { graphs->frame()->close(); });
        window->submit(QStringLiteral("run"));
        // The program's next PLOT finds no graph and stops with its message.
        QVERIFY(text().contains(QStringLiteral("Graph is not active - use GRAPH statement.")));
        QVERIFY(!tl::graph.open);
        QVERIFY(!window->busy());
        // A new graph opens afresh, from the defaults.
        window->submit(QStringLiteral("graph"));
        QVERIFY(tl::graph.open);
        QCOMPARE(tl::graph.element_count, 0);
        QTRY_VERIFY(graphs->frame() != nullptr && graphs->frame()->isVisible());
    }

    void the_console_keeps_its_newest_lines_within_its_size() {
        tl::gui::ConsoleView* view = window->console();
        view->set_capacity(4096);
        window->submit(QStringLiteral("for i = 1 to 5000: print \"line\"; i: next i"));
        const QString all = text();
        QVERIFY(all.size() <= 4096);
        QVERIFY(all.endsWith(QStringLiteral("line         5000\n")) || all.endsWith(QStringLiteral("line 5000\n")));
        QVERIFY(all.startsWith(QStringLiteral("line")));  // whole lines were dropped
        window->submit(QStringLiteral("cls"));
        QCOMPARE(text(), QString());
        // Text in UTF-8 arrives in pieces and shows whole.
        view->append_text("\xc3");
        view->flush();
        view->append_text("\xa9\n");
        QCOMPARE(text(), QString::fromUtf8("\xc3\xa9\n"));
    }
};

int main(int argc, char** argv) {
    // Qt's runtime folder is a private one of this run (it is made 0700 and
    // removed at the end), not one left behind in the temporary folder.
    const QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
    QApplication app(argc, argv);
    WindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "window_test.moc"
