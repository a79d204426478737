// Fills the room behind the stage with the glow of what is on show. A change eases in from whatever is to be seen at
// that moment, so that a film that changes faster than the glow does never makes it jump.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class AmbientGlow : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QImage picture READ picture WRITE setPicture NOTIFY sourceChanged)
    Q_PROPERTY(bool sound READ isSound WRITE setSound NOTIFY sourceChanged)
    Q_PROPERTY(QColor accent READ accent WRITE setAccent NOTIFY sourceChanged)
    Q_PROPERTY(double centre READ centre WRITE setCentre NOTIFY sourceChanged)
    Q_PROPERTY(double progress READ progress WRITE setProgress NOTIFY progressChanged)

public:
    explicit AmbientGlow(QQuickItem* parent = nullptr);

    // Whose glow it is; none for a null picture.
    QImage picture() const { return m_picture; }
    void setPicture(const QImage& picture);

    // That of a sound instead, in the accent.
    bool isSound() const { return m_isSound; }
    void setSound(bool sound);
    QColor accent() const { return m_accent; }
    void setAccent(const QColor& accent);

    // Where a sound is on show, as a part of the width.
    double centre() const { return m_centre; }
    void setCentre(double centre);

    // How far the last change has come, 0 to 1; the view animates it from 0 whenever `changed` says so.
    double progress() const { return m_progress; }
    void setProgress(double progress);

    // The canvas that is being eased to.
    QImage target() const { return m_to; }

Q_SIGNALS:
    void sourceChanged();
    void progressChanged();
    void changed();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;

private:
    void follow();

    QImage m_picture;
    bool m_isSound = false;
    QColor m_accent;
    double m_centre = 0.5;
    QImage m_from;
    QImage m_to;
    double m_progress = 1;
    bool m_isDirty = false; // the canvases are not in the scene graph yet
};

} // namespace lumbra
