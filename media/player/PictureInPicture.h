// The picture of a player in a small window of its own, above the others where the desktop lets programs decide that
// (X11; on Wayland it is an ordinary small window). While it is open the room's surface shows nothing; when it closes,
// the picture comes back there. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace lumbra {

class PlayerEngine;
class SmallWindow;
class VideoSurface;

class PictureInPicture : public QObject {
    Q_OBJECT
    QML_ANONYMOUS

    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)

public:
    // Windows are drawn with OpenGL and there is a screen to put one on.
    static bool isSupported();

    explicit PictureInPicture(PlayerEngine& player);
    ~PictureInPicture() override;

    bool isActive() const { return m_isActive; }
    Q_INVOKABLE void start();
    Q_INVOKABLE void stop();
    Q_INVOKABLE void toggle() { isActive() ? stop() : start(); }

    // Null while not active.
    QQuickWindow* window() const;

Q_SIGNALS:
    void activeChanged();

private:
    void close();

    PlayerEngine& m_player;
    bool m_isActive = false;
    // Both stay until the surface has freed what it drew with, which takes its window.
    std::unique_ptr<SmallWindow> m_window;
    VideoSurface* m_surface = nullptr;
};

} // namespace lumbra
