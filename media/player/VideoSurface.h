// Shows a player's picture, whole and in its proportions, in the middle of the item; what it leaves free is
// transparent. It is drawn anew for each size within the same frame, so that nothing slides while a window is resized.
// Nothing is drawn when the player has no picture.
//
// Needs a window that draws with OpenGL. Of several surfaces of one player the one that came last shows the picture.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PlayerEngine.h"

#include <QPointer>
#include <QQuickFramebufferObject>

namespace lumbra {

class VideoSurface : public QQuickFramebufferObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::PlayerEngine* player READ player WRITE setPlayer NOTIFY playerChanged)
    Q_PROPERTY(bool holds READ holds WRITE setHolds NOTIFY holdsChanged)

public:
    explicit VideoSurface(QQuickItem* parent = nullptr);
    ~VideoSurface() override;

    PlayerEngine* player() const { return m_player; }
    void setPlayer(PlayerEngine* player);

    // What was drawn last stays when the player has nothing more to show: it is to fade, and not to go out first.
    bool holds() const { return m_holds; }
    void setHolds(bool holds);

    Renderer* createRenderer() const override;

    // For the switch: whether this one is to draw.
    void setDraws(bool draws);
    bool draws() const { return m_draws; }

    // For the renderer, on the main thread: looks again in so many milliseconds unless a small picture has been taken
    // by then; hands over a small picture of the film with the tag of the file.
    void lookAgain(int milliseconds);
    void takeGlow(const QImage& image, quint64 file);

    // How often the picture was drawn, and a small one taken of it; counted by the thread that draws.
    struct Counts {
        std::atomic<int> frames = 0;
        std::atomic<int> glows = 0;
    };
    const std::shared_ptr<Counts>& counts() const { return m_counts; }

Q_SIGNALS:
    void playerChanged();
    void holdsChanged();

private:
    QPointer<PlayerEngine> m_player;
    bool m_holds = false;
    bool m_draws = false;
    const std::shared_ptr<Counts> m_counts = std::make_shared<Counts>();
};

} // namespace lumbra
