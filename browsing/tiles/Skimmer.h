// What a film's tile shows while the pointer moves across it: the frame that stands for the pointer's place, and the
// time. The frames are fetched when the pointer has rested on the tile, once in the tile's life; a film that yields
// none is asked again the next time.
//
// One for each tile that has been hovered. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Skim.h"
#include "library/Model.h"
#include "media/Frames.h"

#include <QImage>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class Skimmer : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Asset asset READ asset WRITE setAsset NOTIFY assetChanged)
    Q_PROPERTY(bool hovering READ hovering WRITE setHovering NOTIFY hoveringChanged)
    Q_PROPERTY(double x READ x WRITE setX NOTIFY pointerChanged)
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY pointerChanged)
    Q_PROPERTY(bool running READ isRunning NOTIFY shownChanged)
    Q_PROPERTY(QImage frame READ frame NOTIFY shownChanged)
    Q_PROPERTY(QString time READ time NOTIFY shownChanged)

public:
    using Fetch = std::function<MediaRequest(const Asset& asset, QObject* context, Frames::Ready ready)>;
    using Seconds = std::function<std::optional<double>(const Asset& asset)>;

    // Over the process-wide frames and durations.
    explicit Skimmer(QObject* parent = nullptr);

    Skimmer(Fetch fetch, Seconds seconds, std::chrono::milliseconds rest = Skim::rest, QObject* parent = nullptr);

    Asset asset() const { return m_asset; }
    void setAsset(const Asset& asset); // another file's frames are forgotten

    // The pointer is over the tile.
    bool hovering() const { return m_hovering; }
    void setHovering(bool hovering);

    // The pointer's, in the tile's coordinates, and the width of the picture.
    double x() const { return m_x; }
    void setX(double x);
    double size() const { return m_size; }
    void setSize(double size);

    // From 0 to 1; absent while the pointer is elsewhere, and for all but films.
    std::optional<double> position() const;

    // A frame is shown in place of the picture.
    bool isRunning() const { return !m_frame.isNull(); }
    QImage frame() const { return m_frame; }

    // The pointer's place as a time code; empty while there are no frames, or where the film's length is not known.
    QString time() const { return m_time; }

Q_SIGNALS:
    void assetChanged();
    void hoveringChanged();
    void pointerChanged();
    void shownChanged();

private:
    void rest();
    void fetch();
    void show();

    const Fetch m_fetch;
    const Seconds m_seconds;
    Asset m_asset;
    bool m_hovering = false;
    double m_x = 0;
    double m_size = 0;
    QTimer m_rest;
    MediaRequest m_request;
    QList<QImage> m_frames;
    QImage m_frame;
    QString m_time;
};

} // namespace lumbra
