// Tells a test or a script what the window shows, when LUMBRA_STATE_SOCKET names a local socket to listen on: each line
// "dump" is answered by one line of JSON. Nothing listens without the variable, and nothing can be changed through it.
//
// What is on screen is read from the scene by its items' names and properties:
//   "assetTile"   path, hasPicture, settled (the picture is there, or there is none to be had)
//   "folderTile", "stackTile"   path
//   "sidebarRow"  title, rowType, selected
//   any other object name       a control, with its text
// Only items that can be seen count, with the part of them that no ancestor clips away, in pixels of the window.
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

    // Make it before the window shows its first frame, whose time is counted from `started`. All must outlive it.
    StateDump(const Library& library, const Browser& browser, QQuickWindow& window, const QElapsedTimer& started,
              QObject* parent = nullptr);

    // Takes the place of whatever stands at the path; false when it can't be listened on.
    bool listen(const QString& path);

    // "complete" is true when the walk is over, the page is loaded, and each visible tile has settled.
    QJsonObject dump() const;

private:
    void serve();

    const Library& m_library;
    const Browser& m_browser;
    QQuickWindow& m_window;
    QLocalServer m_server;
    std::atomic<double> m_firstFrame = -1; // ms; below 0 until there was one; set by the thread that renders
};

} // namespace lumbra
