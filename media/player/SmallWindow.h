// A small window without a frame for a film, above the others where the desktop lets programs decide that. It is moved
// by any point of it and resized by its corners, always in the film's shape; while the pointer is over it, buttons
// stand on it. Space plays and pauses; Escape, a double click and the desktop's close end it. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickWindow>

namespace lumbra {

class SmallWindowButtons;

class SmallWindow : public QQuickWindow {
    Q_OBJECT

public:
    // Points: of its longer side at first, the least that may become of it, and its distance from the corner of the
    // screen where it appears.
    static constexpr int side = 400;
    static constexpr int shortestSide = 160;
    static constexpr int margin = 24;
    static constexpr int belowTop = 72; // over a film, what stands over its upper edge stays free

    SmallWindow();

    // Fills the window from now on, below the buttons. It becomes the window's.
    void setContent(QQuickItem* content);

    // In the lower right corner of that screen.
    void placeOn(const QScreen* screen, QSizeF shape);

    // Over the place on the screen where the film was shown, in its upper right corner: the controls around it and
    // below it stay free, and the film is not there now.
    void placeOver(const QRect& film, QSizeF shape);

    // Another film: its longer side stays, and its right corner that is nearer to the screen's edge.
    void setShape(QSizeF shape);

    // What the middle button offers.
    void setPlaying(bool isPlaying);

    // Whether they are seen, and where they are.
    bool showsButtons() const;
    QPointF playButton() const;
    QPointF endButton() const;

    // The rectangle after one of its corners was pulled so far: in the shape given, with the opposite corner where it
    // was and the longer side between the two bounds.
    static QRect pulled(const QRect& from, Qt::Edges corner, QPoint by, QSizeF shape, int least, int most);

Q_SIGNALS:
    void playWanted(); // or to pause
    void endWanted();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    enum class Part { film, corner, play, end };

    Part partAt(QPointF point) const;
    Qt::Edges cornerAt(QPointF point) const;
    void fill();

    QQuickItem* m_content = nullptr;
    SmallWindowButtons* m_buttons; // of the window's root item
    QSizeF m_shape;

    // Since the button went down.
    Part m_pressed = Part::film;
    bool m_isMoved = false; // the desktop has been asked to move it
    Qt::Edges m_corner;
    QPointF m_from;         // on the screen
    QRect m_geometryBefore; // of the window
};

} // namespace lumbra
