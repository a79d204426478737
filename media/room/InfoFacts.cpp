// SPDX-License-Identifier: GPL-3.0-or-later
#include "InfoFacts.h"

#include "RoomText.h"
#include "media/player/Timecode.h"
#include "platform/Phrases.h"

namespace lumbra::InfoFacts {

QList<InfoFact> of(const Asset& asset, const std::optional<Playback>& playback, const QSize& pixels) {
    QList<InfoFact> facts;
    const auto tell = [&facts](const char* label, const QString& value) {
        facts.append({QString::fromLatin1(label), value});
    };
    const QSize size = asset.kind == AssetKind::image ? pixels : playback ? playback->videoSize : QSize();
    if (!size.isEmpty())
        tell("Dimensions", RoomText::dimensions(size));
    if (playback && playback->duration > 0)
        tell("Length", timecode(playback->duration, false));
    tell("Size", Phrases::bytes(asset.size));
    if (playback && !playback->codec.isEmpty())
        tell("Codec", playback->codec);
    if (asset.modified > Date::distantPast())
        tell("Saved", Phrases::dateAndTime(asset.modified));
    if (asset.starred)
        tell("Starred", Phrases::dateAndTime(*asset.starred));
    facts.append({QStringLiteral("Path"), asset.url.toString(), true});
    return facts;
}

} // namespace lumbra::InfoFacts
