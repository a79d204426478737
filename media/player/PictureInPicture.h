// The picture of a player in a small window of its own, above the others where the desktop lets programs decide that
// (X11; on Wayland it is an ordinary small window). While it is open the room's surface shows nothing; when it closes,
// the picture comes back there. It is dragged by any point of it, and a double click, Escape or the desktop's close
// ends it. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QQuickWindow>

#include <memory>

namespace lumbra {

class PlayerEngine;
class VideoSurface;

class PictureInPicture : public QObject {
    Q_OBJECT

    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)

public:
    // Of the window's longer side, and its distance from the corner of the screen; points.
    static constexpr int side = 400;
    static constexpr int margin = 24;

    // Windows are drawn with OpenGL and there is a screen to put one on.
    static bool isSupported();

    explicit PictureInPicture(PlayerEngine& player);
    ~PictureInPicture() override;

    bool isActive() const { return m_isActive; }
    Q_INVOKABLE void start();
    Q_INVOKABLE void stop();
    Q_INVOKABLE void toggle() { isActive() ? stop() : start(); }

    // Null while not active.
    QQuickWindow* window() const { return m_isActive ? m_window.get() : nullptr; }

Q_SIGNALS:
    void activeChanged();

private:
    void place();
    void close();

    PlayerEngine& m_player;
    bool m_isActive = false;
    // Both stay until the surface has freed what it drew with, which takes its window.
    std::unique_ptr<QQuickWindow> m_window;
    VideoSurface* m_surface = nullptr;
};

} // namespace lumbra
