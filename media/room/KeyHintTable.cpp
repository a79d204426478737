// SPDX-License-Identifier: GPL-3.0-or-later
#include "KeyHintTable.h"

namespace lumbra {

QList<KeyHint> keyHintsFor(AssetKind kind) {
    const KeyHint play{QStringLiteral("Space"), QStringLiteral("Play")};
    const KeyHint shuttle{QStringLiteral("J K L"), QStringLiteral("Shuttle")};
    const KeyHint frame{QStringLiteral(", ."), QStringLiteral("Frame")};
    const KeyHint seconds{QStringLiteral("← →"), QStringLiteral("5 seconds")};
    const KeyHint neighbours{QStringLiteral("← →"), QStringLiteral("Previous or next")};
    const KeyHint nextFile{QStringLiteral("↑ ↓"), QStringLiteral("Next file")};
    const KeyHint star{QStringLiteral("S"), QStringLiteral("Star")};
    const KeyHint info{QStringLiteral("I"), QStringLiteral("Info")};
    const KeyHint fullScreen{QStringLiteral("F"), QStringLiteral("Full screen")};
    const KeyHint back{QStringLiteral("Esc"), QStringLiteral("Back")};
    switch (kind) {
    case AssetKind::video:
        return {play, shuttle, frame, star, nextFile, info, fullScreen, back};
    case AssetKind::audio:
        return {play, seconds, star, nextFile, info, back};
    case AssetKind::image:
    case AssetKind::document:
        break;
    }
    return {neighbours, star, info, back};
}

QVariantList KeyHintTable::hintsFor(const QString& stage) {
    QVariantList hints;
    const QList<KeyHint> rows = keyHintsFor(assetKindFromRaw(stage).value_or(AssetKind::document));
    for (const KeyHint& hint : rows)
        hints.append(QVariant::fromValue(hint));
    return hints;
}

} // namespace lumbra
