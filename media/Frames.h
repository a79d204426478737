// Strips of frames from all along a film, each from the middle of its slice, for skimming tiles and the scrubber's
// track.
//
// Main thread. The strips made last are kept in memory.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MediaRequest.h"
#include "library/Model.h"
#include "platform/Reader.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>

#include <functional>

namespace lumbra {

class Frames : public QObject {
    Q_OBJECT

public:
    using Ready = std::function<void(const QList<QImage>&)>;

    // The most strips kept.
    static constexpr qsizetype limit = 60;

    explicit Frames(Reader& reader, QObject* parent = nullptr);

    // The process-wide one, over Reader::lasting().
    static Frames& shared();

    // Hands `count` frames to `ready`, upright, in order and at most `maxSide` pixels a side, unless the request or the
    // context has gone by then; at once if they are there, whatever size they were asked in before. There are fewer
    // where some can't be decoded, or where the time for them was over; the latter, and none for a file that does not
    // tell how long it is, are not remembered.
    [[nodiscard]] MediaRequest stripFor(const Asset& asset, int count, int maxSide, QObject* context, Ready ready,
                                        Reader::Urgency urgency = Reader::Urgency::visible);

private:
    void keep(const QString& key, const QList<QImage>& strip);

    Reader& m_reader;
    QHash<QString, QList<QImage>> m_strips;
    QList<QString> m_arrival; // keys, the oldest first
};

} // namespace lumbra
