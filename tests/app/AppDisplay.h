// A display of a test's own: Xvfb on a free number with a window manager in it, real key and mouse events, and pictures
// of what stands on it. Nothing of the user's session is touched. Ends with the object.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryFile>

#include <optional>

namespace lumbra {

class AppDisplay {
public:
    static constexpr QSize size{1440, 900};

    // Fatal when no display can be had: nothing can be tested then.
    AppDisplay();
    ~AppDisplay();

    const QString& name() const { return m_name; }

    // The largest visible window of a process, or 0 while there is none.
    quint64 windowOf(qint64 process) const;

    // Raises a window and gives it the keys.
    void focus(quint64 window) const;

    // Pixels of the window.
    void move(quint64 window, QPoint to) const;
    void click(quint64 window, QPoint at, int button = 1, int times = 1) const;
    void drag(quint64 window, QPoint from, QPoint to) const;

    // To whatever has the focus. A key as X names it: "space", "ctrl+k", "shift+Down".
    void press(const QString& key) const;
    void type(const QString& text) const;

    // One window, or the whole display.
    QImage screenshot(std::optional<quint64> window = {}) const;

private:
    QByteArray run(const QString& program, const QStringList& arguments) const;
    void events(const QStringList& arguments) const { run(QStringLiteral("xdotool"), arguments); }

    QString m_name;
    QTemporaryFile m_settings; // of the window manager
    QProcess m_server;
    QProcess m_windowManager;
};

} // namespace lumbra
