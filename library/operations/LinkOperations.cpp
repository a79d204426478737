// How Library follows links from other programs.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/Library.h"

#include <QUrlQuery>

#include <algorithm>

namespace lumbra {

namespace {

// The first query item of this name; absent without one, or without a value.
std::optional<QString> queryValue(const QUrl& url, QLatin1String name) {
    const auto items = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    const auto found = std::ranges::find(items, name, &std::pair<QString, QString>::first);
    return found == items.end() || found->second.isEmpty() ? std::nullopt : std::optional(found->second);
}

Assets assetsBeside(const AssetIndex& index, const Location& file) {
    Assets beside;
    const auto folders = index.foldersUnder(file.parent());
    for (const AssetIndex::FolderPointer& folder : folders)
        if (folder->path() == file.parent().view())
            for (size_t position = 0; position < folder->size(); ++position)
                beside.append(folder->assetAt(position));
    return beside;
}

} // namespace

void Library::handleLink(const QUrl& url) {
    if (url.host() == QLatin1String("tidy"))
        return setPlace(Place::tidy());
    const auto path = queryValue(url, QLatin1String("path"));
    if (!path)
        return;
    const Location location = Location::expandingTilde(*path);
    reveal(location);
    if (url.host() == QLatin1String("play"))
        play(location.canonical());
}

void Library::play(const Location& file) {
    const auto known = index().find(file);
    const auto asset = known ? known : Asset::read(file);
    if (!asset)
        return;
    setPlaying(PlayRequest{*asset, sorted(SortOrder::newest, assetsBeside(index(), file))});
    if (!indexing())
        return;
    // A link that starts the application comes before there is an index to find the others in.
    const auto complete = [this] {
        if (const auto early = playing(); early && early->order.isEmpty())
            setPlaying(PlayRequest{early->asset, sorted(SortOrder::newest, assetsBeside(index(), early->asset.url))});
    };
    connect(this, &Library::indexingChanged, this, complete, Qt::SingleShotConnection);
}

} // namespace lumbra
