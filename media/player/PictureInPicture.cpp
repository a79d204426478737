// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureInPicture.h"

#include "PlayerEngine.h"
#include "SurfaceSwitch.h"
#include "VideoSurface.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QStyleHints>

namespace lumbra {

namespace {

class SmallWindow : public QQuickWindow {
public:
    explicit SmallWindow(PictureInPicture& owner) : m_owner(owner) {
        setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        setColor(Qt::black);
        setTitle(QStringLiteral("Lumbra"));
    }

protected:
    void mousePressEvent(QMouseEvent* event) override { m_pressed = event->position(); }

    // Only once the pointer has gone a way: a window that is being moved gets no double click.
    void mouseMoveEvent(QMouseEvent* event) override {
        const double way = (event->position() - m_pressed).manhattanLength();
        if (event->buttons().testFlag(Qt::LeftButton) && way >= QGuiApplication::styleHints()->startDragDistance())
            startSystemMove();
    }

    void mouseDoubleClickEvent(QMouseEvent*) override { m_owner.stop(); }

    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape)
            m_owner.stop();
    }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::Close)
            return QQuickWindow::event(event);
        // It is still needed for a moment.
        event->ignore();
        m_owner.stop();
        return true;
    }

private:
    PictureInPicture& m_owner;
    QPointF m_pressed;
};

} // namespace

bool PictureInPicture::isSupported() {
    return QQuickWindow::graphicsApi() == QSGRendererInterface::OpenGL && QGuiApplication::primaryScreen()
           && QGuiApplication::platformName() != u"offscreen";
}

PictureInPicture::PictureInPicture(PlayerEngine& player) : m_player(player) {
    connect(&player.surfaces(), &SurfaceSwitch::freed, this, [this](const void* surface) {
        if (!m_isActive && surface == m_surface)
            close();
    });
    connect(&player, &PlayerEngine::videoSizeChanged, this, &PictureInPicture::place);
}

PictureInPicture::~PictureInPicture() {
    close();
}

void PictureInPicture::start() {
    if (m_isActive)
        return;
    if (!m_window) {
        m_window = std::make_unique<SmallWindow>(*this);
        m_surface = new VideoSurface(m_window->contentItem());
    }
    m_isActive = true;
    m_surface->setPlayer(&m_player);
    place();
    m_window->show();
    Q_EMIT activeChanged();
}

void PictureInPicture::stop() {
    if (!m_isActive)
        return;
    m_isActive = false;
    const bool drew = m_player.surfaces().drawing() == m_surface;
    m_player.surfaces().remove(m_surface);
    if (!drew)
        close();
    Q_EMIT activeChanged();
}

// In the lower right corner of the screen where the room is, in the film's proportions.
void PictureInPicture::place() {
    if (!m_isActive)
        return;
    const QSizeF film = m_player.videoSize().isEmpty() ? QSizeF(16, 9) : QSizeF(m_player.videoSize());
    const QSize size = film.scaled(side, side, Qt::KeepAspectRatio).toSize().expandedTo(QSize(16, 16));
    QScreen* const screen = QGuiApplication::focusWindow() && QGuiApplication::focusWindow() != m_window.get()
                                ? QGuiApplication::focusWindow()->screen()
                                : m_window->screen();
    const QRect free = screen->availableGeometry().adjusted(margin, margin, -margin, -margin);
    m_window->setGeometry(QRect(free.bottomRight() - QPoint(size.width() - 1, size.height() - 1), size));
    m_surface->setSize(size);
}

void PictureInPicture::close() {
    m_isActive = false;
    if (!m_window)
        return;
    delete std::exchange(m_surface, nullptr);
    m_window->hide();
    // One of its own events may be under way.
    m_window.release()->deleteLater();
}

} // namespace lumbra
