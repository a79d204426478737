// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaletteResult.h"

#include <QMetaEnum>

namespace lumbra {

QString PaletteResult::id() const {
    const auto name = QLatin1String(QMetaEnum::fromType<Kind>().valueToKey(int(kind)));
    return QStringLiteral("%1|%2|%3|").arg(name, title, subtitle) + QString::number(index);
}

QString PaletteResult::hint() const {
    const bool plays = asset && (asset->kind == AssetKind::video || asset->kind == AssetKind::audio);
    return plays ? QStringLiteral("↩ open  ⌘↩ play") : QStringLiteral("↩");
}

QString PaletteResult::sectionTitle(Kind kind) {
    switch (kind) {
    case Kind::project:
        return QStringLiteral("Projects");
    case Kind::folder:
        return QStringLiteral("Folders");
    case Kind::file:
        return QStringLiteral("Files");
    case Kind::action:
        break;
    }
    return QStringLiteral("Actions");
}

} // namespace lumbra
