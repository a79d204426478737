// SPDX-License-Identifier: GPL-3.0-or-later
#include "TileDuration.h"

#include "media/Durations.h"

namespace lumbra {

void TileDuration::setAsset(const Asset& asset) {
    if (m_asset == asset)
        return;
    const bool isSame = m_asset.url == asset.url && m_asset.modified == asset.modified;
    const bool isSameFile = m_asset.url == asset.url;
    m_asset = asset;
    Q_EMIT assetChanged();
    if (isSame)
        return;
    if (!isSameFile)
        setText({});
    // A film that is written anew keeps its old length until the new one is known.
    m_request = Durations::shared().duration(
        asset, this, [this](const std::optional<QString>& text) { setText(text.value_or(QString())); });
}

void TileDuration::setText(const QString& text) {
    if (std::exchange(m_text, text) != text)
        Q_EMIT textChanged();
}

} // namespace lumbra
