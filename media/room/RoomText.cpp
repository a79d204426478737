// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomText.h"

#include "media/player/Timecode.h"
#include "media/quicklook/DocumentKind.h"
#include "platform/Phrases.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <string_view>

namespace lumbra {

namespace {
constexpr std::array<std::string_view, 3> webContainers{"webm", "mkv", "ogv"};
}

bool usesEngine(const Asset& asset) {
    if (asset.kind != AssetKind::video && asset.kind != AssetKind::audio)
        return false;
    const std::string_view given = asset.url.extension();
    const QString extension = QString::fromUtf8(given.data(), qsizetype(given.size())).toLower();
    const QByteArray lower = extension.toUtf8();
    return std::ranges::find(webContainers, std::string_view(lower.constData(), size_t(lower.size())))
           == webContainers.end();
}

QString stageOf(const Asset& asset) {
    if (asset.kind == AssetKind::video && !usesEngine(asset))
        return QStringLiteral("web");
    return rawValue(asset.kind);
}

bool usesWebView(const Asset& asset) {
    const bool isPage = asset.kind == AssetKind::document && documentKindOf(asset.url) == DocumentKind::webPage;
    return isPage || stageOf(asset) == QLatin1String("web");
}

namespace RoomText {

QString breadcrumb(const std::optional<Project>& project, const Location& file) {
    if (!project)
        return QStringLiteral("Library");
    QStringList names{project->name};
    const Location folder = file.parent();
    if (folder.isAtOrBelow(project->url)) {
        const QByteArray below = folder.path().mid(project->url.path().size());
        const QStringList folders = QString::fromUtf8(below).split(u'/', Qt::SkipEmptyParts);
        names += folders;
    }
    return names.join(QStringLiteral(" / "));
}

QString dimensions(const QSize& size) {
    if (size.isEmpty())
        return {};
    return QStringLiteral("%1 × %2").arg(size.width()).arg(size.height());
}

QString meta(const Facts& facts, Date now) {
    QStringList parts;
    if (!facts.size.isEmpty())
        parts += dimensions(facts.size);
    if (facts.duration > 0)
        parts += timecode(facts.duration, false);
    parts += Phrases::bytes(facts.bytes);
    if (facts.modified != Date::distantPast())
        parts += QStringLiteral("saved ") + Phrases::relativeTime(facts.modified, now);
    if (facts.index >= 0)
        parts += QStringLiteral("%1 of %2").arg(facts.index + 1).arg(facts.count);
    return parts.join(QStringLiteral(" · "));
}

} // namespace RoomText

} // namespace lumbra
