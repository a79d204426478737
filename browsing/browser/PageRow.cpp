// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageRow.h"

namespace lumbra {

namespace {

QString nameOf(AssetKind kind) {
    switch (kind) {
    case AssetKind::image:
        return QStringLiteral("Image");
    case AssetKind::video:
        return QStringLiteral("Video");
    case AssetKind::audio:
        return QStringLiteral("Audio");
    case AssetKind::document:
        break;
    }
    return QStringLiteral("Document");
}

} // namespace

QString PageCell::facts() const {
    QString facts = nameOf(asset.kind);
    if (!caption.isEmpty())
        facts += QStringLiteral(", ") + caption;
    return isStarred() ? facts + QStringLiteral(", Starred") : facts;
}

} // namespace lumbra
