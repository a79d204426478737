// SPDX-License-Identifier: GPL-3.0-or-later
#include "KindSymbol.h"

namespace lumbra {

QString kindSymbol(AssetKind kind) {
    switch (kind) {
    case AssetKind::image:
        return QStringLiteral("photo");
    case AssetKind::video:
        return QStringLiteral("film");
    case AssetKind::audio:
        return QStringLiteral("waveform");
    case AssetKind::document:
        break;
    }
    return QStringLiteral("doc");
}

} // namespace lumbra
