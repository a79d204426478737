// A display of a test's own: Xvfb on a free number with a window manager in it, real key and mouse events, and pictures
// of what stands on it. Nothing of the user's session is touched. Ends with the object.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QMargins>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTemporaryFile>

#include <optional>

namespace lumbra {

class AppDisplay {
public:
    static constexpr QSize usualSize{1440, 900};

    // What the window manager makes of windows: as large as the display and without a frame, or as they ask to be.
    enum class Windows { maximized, free };

    // Fatal when no display can be had: nothing can be tested then.
    explicit AppDisplay(Windows windows = Windows::maximized, QSize size = usualSize);
    ~AppDisplay();

    const QString& name() const { return m_name; }

    // The largest visible window of a process, or 0 while there is none.
    quint64 windowOf(qint64 process) const;

    // Raises a window and gives it the keys.
    void focus(quint64 window) const;

    // Where a window stands on the display, without its frame.
    QRect placeOf(quint64 window) const;
    QMargins frameOf(quint64 window) const; // that the window manager draws around it
    void place(quint64 window, const QRect& place) const;
    void minimize(quint64 window) const;

    // Pixels of the window.
    void move(quint64 window, QPoint to) const;
    void click(quint64 window, QPoint at, int button = 1, int times = 1) const;
    void drag(quint64 window, QPoint from, QPoint to) const;

    // The left button goes down where the pointer is, and up again.
    void hold() const { events({QStringLiteral("mousedown"), QStringLiteral("1")}); }
    void release() const { events({QStringLiteral("mouseup"), QStringLiteral("1")}); }

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
