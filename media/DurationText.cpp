// SPDX-License-Identifier: GPL-3.0-or-later
#include "DurationText.h"

#include "AssetKey.h"
#include "Durations.h"

namespace lumbra {

void DurationText::setAsset(const Asset& asset) {
    if (m_asset == asset)
        return;
    const bool isSame = assetKey(m_asset) == assetKey(asset); // but for its star
    m_asset = asset;
    if (!isSame) {
        setText({});
        load();
    }
    Q_EMIT assetChanged();
}

void DurationText::setWanted(bool wanted) {
    if (std::exchange(m_isWanted, wanted) == wanted)
        return;
    load();
    Q_EMIT wantedChanged();
}

void DurationText::componentComplete() {
    m_isComplete = true;
    load();
}

void DurationText::load() {
    m_request = {};
    const bool takesTime = m_asset.kind == AssetKind::video || m_asset.kind == AssetKind::audio;
    if (!m_isComplete || !m_isWanted || !takesTime || m_asset.url.isEmpty())
        return;
    m_request = Durations::shared().duration(
        m_asset, this, [this](const std::optional<QString>& label) { setText(label.value_or(QString())); });
}

void DurationText::setText(const QString& text) {
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();
}

} // namespace lumbra
