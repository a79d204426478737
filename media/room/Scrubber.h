// The controller of the line along a film or a sound: what its track shows, the drag that moves the player, and the
// frame under the pointer.
//
// Positions are points from the track's left end. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"
#include "media/MediaRequest.h"
#include "media/PreviewFrames.h"
#include "media/player/PlayerEngine.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <memory>
#include <optional>

namespace lumbra {

class Scrubber : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Asset asset READ asset WRITE setAsset NOTIFY assetChanged)
    Q_PROPERTY(lumbra::PlayerEngine* engine READ engine WRITE setEngine NOTIFY engineChanged)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY widthChanged)
    Q_PROPERTY(bool isVideo READ isVideo NOTIFY assetChanged)
    Q_PROPERTY(bool dragging READ isDragging NOTIFY draggingChanged)
    Q_PROPERTY(double playhead READ playhead NOTIFY playheadChanged)
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoverChanged)
    Q_PROPERTY(double hoverX READ hoverPoint NOTIFY hoverChanged)
    Q_PROPERTY(double hoverTime READ hoverTime NOTIFY hoverChanged)
    Q_PROPERTY(QImage cardFrame READ cardFrame NOTIFY cardFrameChanged)
    Q_PROPERTY(double cardLeft READ cardLeft NOTIFY hoverChanged)
    Q_PROPERTY(double cardRise READ cardRise NOTIFY cardRiseChanged)
    Q_PROPERTY(double frameHeight READ frameHeight NOTIFY cardRiseChanged)
    Q_PROPERTY(double cardWidth READ cardWidth CONSTANT)

public:
    static constexpr int frames = 12;
    static constexpr int largestFrame = 320; // pixels a side
    static constexpr int barCount = 140;

    // How long the pointer must rest in a quarter of a second of the film before its frame is sought.
    static constexpr std::chrono::milliseconds rest{35};

    explicit Scrubber(QObject* parent = nullptr);

    // A file with another path, or written anew, clears the track and ends a drag.
    Asset asset() const { return m_asset; }
    void setAsset(const Asset& asset);
    bool isVideo() const { return m_asset.kind == AssetKind::video; }

    // The player of the file; may go at any time.
    PlayerEngine* engine() const { return m_engine; }
    void setEngine(PlayerEngine* engine);

    double width() const { return m_width; }
    void setWidth(double width);

    // What the track shows, once it is found: the frames of a film, or how loud a sound is along its length, each 0
    // to 1.
    const QList<QImage>& strip() const { return m_strip; }
    const QList<float>& bars() const { return m_bars; }

    // Where the player stands, or was sent by a drag: on its way it shows the nearest picture that is cheap, which may
    // be far from the pointer.
    double playhead() const;

    // The pointer is down. A drag begins with the first call, which pauses the player.
    bool isDragging() const { return m_dragging; }
    Q_INVOKABLE void drag(double x);

    // The pointer is let go; a player that ran before goes on. Does nothing without a drag.
    Q_INVOKABLE void release(double x);

    // The pointer is over the track, or no longer.
    Q_INVOKABLE void hover(double x);
    Q_INVOKABLE void leave();

    bool isHovered() const { return m_hoverX.has_value(); }
    std::optional<double> hoverX() const { return m_hoverX; }
    double hoverTime() const;

    // A frame of the film near the pointer's time; null until there is one.
    QImage preview() const { return m_preview; }

    // What the card shows: the preview, and until that is there the nearest frame of the strip.
    QImage cardFrame() const;

    double cardLeft() const;
    double cardRise() const;
    double frameHeight() const;
    static double cardWidth();

Q_SIGNALS:
    void assetChanged();
    void engineChanged();
    void widthChanged();
    void trackChanged(); // the strip or the bars
    void draggingChanged();
    void playheadChanged();
    void hoverChanged();
    void previewChanged();
    void cardFrameChanged();
    void cardRiseChanged();

    // A frame is sought for the hover preview, at that time.
    void previewAsked(double seconds);

private:
    double hoverPoint() const { return m_hoverX.value_or(0); }
    double timeAt(double x) const;
    void fillTrack();
    void askForTrack();
    void setDragging(bool dragging);
    void followPointer();
    void askForPreview();
    PreviewFrames& previews();
    void setPreview(const QImage& preview);

    Asset m_asset;
    QPointer<PlayerEngine> m_engine;
    double m_width = 0;
    QList<QImage> m_strip;
    QList<float> m_bars;
    MediaRequest m_request; // for one of the two
    bool m_dragging = false;
    bool m_isTrackDue = false; // is to be asked for yet
    double m_dragX = 0;
    std::optional<double> m_hoverX;
    std::optional<qint64> m_quarter; // of a second, that a frame was or is about to be sought for
    QTimer m_rest;
    std::unique_ptr<PreviewFrames> m_previews;
    QImage m_preview;
};

} // namespace lumbra
