// SPDX-License-Identifier: GPL-3.0-or-later
#include "Transport.h"

#include "media/player/Timecode.h"

#include <cmath>

namespace lumbra {

QString Transport::speedText(double speed) {
    return QString::number(speed, 'g', 6) + u'×';
}

QString Transport::shuttleText(bool isPlaying, double shuttle) {
    if (!isPlaying || shuttle == 1)
        return {};
    const QString rate = QString::number(qint64(std::abs(shuttle))) + u'×';
    // Each arrow is followed by the selector that keeps it from being drawn as a coloured picture.
    return shuttle > 0 ? rate + QStringLiteral(" \u25B6\uFE0E") : QStringLiteral("\u25C0\uFE0E ") + rate;
}

QString Transport::volumeSymbol(double volume, bool muted) {
    return muted || volume == 0 ? QStringLiteral("speaker.slash.fill") : QStringLiteral("speaker.wave.2.fill");
}

QString Transport::timecode(double seconds, bool fraction) {
    return lumbra::timecode(seconds, fraction);
}

} // namespace lumbra
