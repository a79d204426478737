// SPDX-License-Identifier: GPL-3.0-or-later
#include "SmallWindow.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QQuickPaintedItem>
#include <QScreen>
#include <QStyleHints>

#include <algorithm>
#include <cmath>

namespace lumbra {

namespace {

// Points.
constexpr double cornerReach = 16;
constexpr double playRadius = 26;
constexpr double endRadius = 13;
constexpr double endInset = 30;

bool isInside(QPointF point, QPointF middle, double radius) {
    return std::hypot(point.x() - middle.x(), point.y() - middle.y()) <= radius;
}

int longerSide(QSizeF size) {
    return int(std::lround(std::max(size.width(), size.height())));
}

QSize inShape(QSizeF shape, int side) {
    return shape.scaled(side, side, Qt::KeepAspectRatio).toSize().expandedTo({16, 16});
}

} // namespace

class SmallWindowButtons : public QQuickPaintedItem {
public:
    using QQuickPaintedItem::QQuickPaintedItem;

    void setPlaying(bool isPlaying) {
        m_isPlaying = isPlaying;
        update();
    }

    QPointF play() const { return {width() / 2, height() / 2}; }
    QPointF end() const { return {width() - endInset, endInset}; }

    void paint(QPainter* painter) override {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(QColor(0, 0, 0, 150));
        painter->drawEllipse(play(), playRadius, playRadius);
        painter->drawEllipse(end(), endRadius, endRadius);
        painter->setBrush(Qt::white);
        if (m_isPlaying) {
            painter->drawRoundedRect(QRectF(play() - QPointF(9, 10), QSizeF(6, 20)), 1, 1);
            painter->drawRoundedRect(QRectF(play() + QPointF(3, -10), QSizeF(6, 20)), 1, 1);
        } else {
            QPainterPath triangle(play() + QPointF(-7, -11));
            triangle.lineTo(play() + QPointF(12, 0));
            triangle.lineTo(play() + QPointF(-7, 11));
            painter->drawPath(triangle);
        }
        painter->setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap));
        painter->drawLine(end() - QPointF(4, 4), end() + QPointF(4, 4));
        painter->drawLine(end() + QPointF(-4, 4), end() + QPointF(4, -4));
    }

private:
    bool m_isPlaying = false;
};

SmallWindow::SmallWindow() : m_buttons(new SmallWindowButtons(contentItem())) {
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setColor(Qt::black);
    setTitle(QStringLiteral("Lumbra"));
    m_buttons->setZ(1);
    m_buttons->setVisible(false);
}

void SmallWindow::setContent(QQuickItem* content) {
    m_content = content;
    fill();
}

void SmallWindow::placeOn(const QScreen* screen, QSizeF shape) {
    m_shape = shape;
    const QSize size = inShape(shape, side);
    const QPoint corner = screen->availableGeometry().bottomRight() - QPoint(margin, margin);
    setGeometry(QRect(corner - QPoint(size.width() - 1, size.height() - 1), size));
    fill();
}

void SmallWindow::placeOver(const QRect& film, QSizeF shape) {
    m_shape = shape;
    QRect place(QPoint(), inShape(shape, side));
    place.moveTopRight(film.topRight() + QPoint(-margin, belowTop));
    setGeometry(place);
    fill();
}

void SmallWindow::setShape(QSizeF shape) {
    if (shape == m_shape)
        return;
    m_shape = shape;
    QRect made(QPoint(), inShape(shape, longerSide(geometry().size())));
    // It grows into the screen, not out of it.
    if (geometry().center().y() < screen()->availableGeometry().center().y())
        made.moveTopRight(geometry().topRight());
    else
        made.moveBottomRight(geometry().bottomRight());
    setGeometry(made);
}

void SmallWindow::setPlaying(bool isPlaying) {
    m_buttons->setPlaying(isPlaying);
}

bool SmallWindow::showsButtons() const {
    return m_buttons->isVisible();
}

QPointF SmallWindow::playButton() const {
    return m_buttons->play();
}

QPointF SmallWindow::endButton() const {
    return m_buttons->end();
}

QRect SmallWindow::pulled(const QRect& from, Qt::Edges corner, QPoint by, QSizeF shape, int least, int most) {
    const bool isLeft = corner.testFlag(Qt::LeftEdge), isTop = corner.testFlag(Qt::TopEdge);
    const double wider = double(from.width() + (isLeft ? -by.x() : by.x())) / from.width();
    const double higher = double(from.height() + (isTop ? -by.y() : by.y())) / from.height();
    // The side that moved further leads.
    const double scale = std::abs(wider - 1) > std::abs(higher - 1) ? wider : higher;
    const int wanted = int(std::lround(longerSide(from.size()) * std::max(scale, 0.0)));
    QRect made(from.topLeft(), inShape(shape, std::clamp(wanted, least, std::max(least, most))));
    if (isLeft)
        made.moveRight(from.right());
    if (isTop)
        made.moveBottom(from.bottom());
    return made;
}

Qt::Edges SmallWindow::cornerAt(QPointF point) const {
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, point.x() < cornerReach);
    edges.setFlag(Qt::RightEdge, point.x() >= width() - cornerReach);
    edges.setFlag(Qt::TopEdge, point.y() < cornerReach);
    edges.setFlag(Qt::BottomEdge, point.y() >= height() - cornerReach);
    const bool isCorner = (edges & (Qt::LeftEdge | Qt::RightEdge)) && (edges & (Qt::TopEdge | Qt::BottomEdge));
    return isCorner ? edges : Qt::Edges();
}

SmallWindow::Part SmallWindow::partAt(QPointF point) const {
    if (cornerAt(point))
        return Part::corner;
    if (isInside(point, playButton(), playRadius))
        return Part::play;
    return isInside(point, endButton(), endRadius) ? Part::end : Part::film;
}

void SmallWindow::mousePressEvent(QMouseEvent* event) {
    m_pressed = partAt(event->position());
    m_corner = cornerAt(event->position());
    m_isMoved = false;
    m_from = event->globalPosition();
    m_geometryBefore = geometry();
}

void SmallWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::LeftButton)) {
        const Qt::Edges corner = cornerAt(event->position());
        const bool isRising = corner == (Qt::LeftEdge | Qt::BottomEdge) || corner == (Qt::RightEdge | Qt::TopEdge);
        setCursor(!corner ? Qt::ArrowCursor : isRising ? Qt::SizeBDiagCursor : Qt::SizeFDiagCursor);
        return;
    }
    const QPointF way = event->globalPosition() - m_from;
    if (m_pressed == Part::corner) {
        const QSize room = screen()->availableSize();
        const int most = longerSide(m_shape.scaled(room, Qt::KeepAspectRatio));
        setGeometry(pulled(m_geometryBefore, m_corner, way.toPoint(), m_shape, shortestSide, most));
        return;
    }
    // Only once the pointer has gone a way: a window that is being moved gets no click. And only once: asked again
    // after the button went up, the desktop would let the window follow the pointer until the next click.
    if (!m_isMoved && way.manhattanLength() >= QGuiApplication::styleHints()->startDragDistance()) {
        m_isMoved = true;
        m_pressed = Part::film;
        startSystemMove();
    }
}

void SmallWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (partAt(event->position()) != m_pressed)
        return;
    if (m_pressed == Part::play)
        Q_EMIT playWanted();
    else if (m_pressed == Part::end)
        Q_EMIT endWanted();
}

void SmallWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    m_pressed = partAt(event->position());
    if (m_pressed == Part::film)
        Q_EMIT endWanted();
}

void SmallWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        Q_EMIT endWanted();
    else if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
        Q_EMIT playWanted();
}

void SmallWindow::resizeEvent(QResizeEvent* event) {
    QQuickWindow::resizeEvent(event);
    fill();
}

bool SmallWindow::event(QEvent* event) {
    if (event->type() == QEvent::Close) {
        // It is still needed for a moment.
        event->ignore();
        Q_EMIT endWanted();
        return true;
    }
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave)
        m_buttons->setVisible(event->type() == QEvent::Enter);
    return QQuickWindow::event(event);
}

void SmallWindow::fill() {
    m_buttons->setSize(size());
    if (m_content)
        m_content->setSize(size());
}

} // namespace lumbra
