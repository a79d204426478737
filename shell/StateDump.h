// Tells a test or a script what the window shows, when LUMBRA_STATE_SOCKET names a local socket to listen on: each line
// "dump" is answered by one line of JSON. Nothing listens without the variable, and nothing can be changed through it.
//
// What is on screen is read from the scene: tiles and rows of the sidebar by the types of their views, any other item
// that has an object name as a control, with its text. Only items that can be seen count, with the part of them that no
// ancestor clips away, in pixels of the window.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QLocalServer>
#include <QObject>

#include <atomic>

class QQuickWindow;

namespace lumbra {

class Browser;
class Library;

class StateDump : public QObject {
    Q_OBJECT

public:
    static constexpr const char* variable = "LUMBRA_STATE_SOCKET";

    // Make it once the window holds its contents; the time of their first frame is counted from `started`. All must
    // outlive it.
    StateDump(const Library& library, const Browser& browser, QQuickWindow& window, const QElapsedTimer& started,
              QObject* parent = nullptr);

    // Takes the place of whatever stands at the path; false when it can't be listened on.
    bool listen(const QString& path);

    // "complete" is true when the walk is over, the derived index is of the present files, the page is loaded, and each
    // visible thumbnail has its picture or is known to have none.
    QJsonObject dump() const;

private:
    void serve();

    const Library& m_library;
    const Browser& m_browser;
    QQuickWindow& m_window;
    QLocalServer m_server;
    bool m_summed = false;                 // the derived index is that of the present revision
    std::atomic<bool> m_isDrawn = false;   // what the window held when this was made
    std::atomic<double> m_firstFrame = -1; // ms; below 0 until there was one; set by the thread that renders
};

} // namespace lumbra
