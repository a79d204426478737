// What lies along the scrubber: the frames of a film side by side, or how loud a sound is, as bars. Drawn once for each
// change and shown as one picture, so that the playhead moves over it at no cost.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Scrubber.h"

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Track : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Scrubber* scrubber READ scrubber WRITE setScrubber NOTIFY scrubberChanged)
    Q_PROPERTY(QColor bed MEMBER m_bed NOTIFY lookChanged) // behind the frames or the bars
    Q_PROPERTY(QColor barColor MEMBER m_barColor NOTIFY lookChanged)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY lookChanged) // of the corners

public:
    explicit Track(QQuickItem* parent = nullptr);

    Scrubber* scrubber() const { return m_scrubber; }
    void setScrubber(Scrubber* scrubber);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void scrubberChanged();
    void lookChanged();

private:
    void paintFrames(QPainter* painter) const;
    void paintBars(QPainter* painter) const;

    QPointer<Scrubber> m_scrubber;
    QColor m_bed = Qt::transparent;
    QColor m_barColor = Qt::white;
    double m_radius = 0;
};

} // namespace lumbra
