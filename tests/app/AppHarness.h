// The whole application under test: a home and a library of its own, the real program on a display of its own, and its
// state as it tells it itself.
//
// A test waits for a state, never for a time:
//
//     AppHarness app(display);
//     AppFiles::picture(app.library().child("site/hero.png"), Qt::red);
//     app.start();
//     APP_WAIT(app, app.state().tile("site/hero.png").hasPicture);
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AppDisplay.h"
#include "support/TestHome.h"

#include <QJsonObject>
#include <QLocalSocket>
#include <QProcessEnvironment>
#include <QRectF>
#include <QTest>

#include <optional>

namespace lumbra {

// One answer of the application; see shell/StateDump.h for what it tells.
class AppState {
public:
    struct Item {
        QString type; // of a tile or sidebar row; a control's name
        QString path; // of a tile, below the library
        QString text; // a sidebar row's title, a control's text
        QRectF rect;  // pixels of the window; empty when the item is not on screen
        bool hasPicture = false;
        bool selected = false;
        bool enabled = false;

        bool isThere() const { return !rect.isEmpty(); }
    };

    AppState() = default;
    AppState(QJsonObject values, QString library) : m_values(std::move(values)), m_library(std::move(library)) {}

    // False when the application does not answer.
    bool isThere() const { return !m_values.isEmpty(); }
    bool complete() const { return flag("complete"); }
    bool flag(const char* name) const { return m_values.value(QLatin1String(name)).toBool(); }
    QString text(const char* name) const { return m_values.value(QLatin1String(name)).toString(); }
    double number(const char* name) const { return m_values.value(QLatin1String(name)).toDouble(); }

    // Tiles that can be seen, in the order of the scene. Of items not there the rest is empty.
    QList<Item> tiles() const { return items("items"); }
    Item tile(const QString& path) const;
    QList<Item> sidebar() const { return items("sidebar"); }
    Item sidebarRow(const QString& title) const;
    QList<Item> controls() const { return items("controls"); }
    Item control(const QString& name) const;

    // Paths below the library of all cells of the page, seen or not.
    QStringList pagePaths() const;

    QByteArray json() const;

private:
    QList<Item> items(const char* list) const;
    QString relative(const QString& path) const;

    QJsonObject m_values;
    QString m_library;
};

class AppHarness {
public:
    // Makes the home; the display must outlive it.
    explicit AppHarness(AppDisplay& display);
    ~AppHarness();

    TestHome& home() { return m_home; }

    // The folder that the application will open; not made by itself.
    Location library() const { return m_library; }

    // By default the library is given by LUMBRA_LIBRARY; without, the configuration file decides, or the first run.
    enum class Root { environment, configuration };
    void start(Root root = Root::environment, const QStringList& arguments = {});

    // The message bus that the application finds, instead of none. Before it starts.
    void setBus(const QString& address) { m_bus = address; }

    // Starts it once more as the first was started; true when that one then ends by itself with a clean status.
    bool startAnother(const QStringList& arguments = {});

    qint64 process() const { return m_process.processId(); }

    // Its window, once it shows one.
    quint64 window();

    // Closes its window as a user does; true when it then ends by itself with a clean status.
    bool close();

    // Ends it whatever it does.
    void stop();
    bool isRunning() const { return m_process.state() == QProcess::Running; }

    AppState state();

    // The state once it is complete and nothing on screen moves any more: what a click may rely on.
    AppState settled();

    // Real events, at the middle of the item.
    void click(const AppState::Item& item, int button = 1, int times = 1);
    void move(const AppState::Item& item);
    void moveTo(QPoint point); // pixels of the window
    void hold() { m_display.hold(); }
    void release() { m_display.release(); }
    // Presses at a point of the window and pulls to another until the condition holds, by small steps about it. False
    // if it never does. The button stays down.
    template <typename Condition>
    bool pull(QPoint from, QPoint to, Condition condition) {
        constexpr int steps = 6;
        moveTo(from);
        hold();
        int step = 0;
        return QTest::qWaitFor(
            [&] {
                ++step;
                moveTo(step < steps ? from + (to - from) * step / steps : to + QPoint(step % 2 * 3, 0));
                return step >= steps && condition();
            },
            patience);
    }
    void press(const char* key) { m_display.press(QLatin1String(key)); }
    void type(const QString& text) { m_display.type(text); }

    // The colour on screen at the middle of an item.
    QColor colourAt(const AppState::Item& item);

    // Keeps what is on the display now as screenshots/<name>.png in the build folder.
    void keepScreenshot(const QString& name);

    // For a failing test: the last state and what the application wrote.
    QByteArray report();

private:
    QProcessEnvironment environment(Root root) const;
    void adoptWindow();

    TestHome m_home;
    AppDisplay& m_display;
    Location m_library;
    Location m_socketPath;
    QString m_bus = QStringLiteral("unix:path=/nonexistent"); // none, rather than the user's
    QProcess m_process;
    QLocalSocket m_socket;
    QByteArray m_output;
    quint64 m_window = 0;
    AppState m_last;
};

} // namespace lumbra

// Waits until the condition holds; a failure shows the application's last state and keeps a screenshot.
#define APP_WAIT(app, condition)                                                                                       \
    do {                                                                                                               \
        if (!QTest::qWaitFor([&] { return bool(condition); }, patience)) {                                             \
            (app).keepScreenshot(QStringLiteral("failed-") + QLatin1String(QTest::currentTestFunction()));             \
            QFAIL(((#condition) + QByteArray("\n") + (app).report()).constData());                                     \
        }                                                                                                              \
    } while (false)
