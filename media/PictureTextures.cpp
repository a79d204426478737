// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureTextures.h"

#include <QQuickWindow>

#include <utility>

namespace lumbra {

PictureTextures& PictureTextures::of(QQuickWindow& window) {
    auto* const known = window.findChild<PictureTextures*>(QString(), Qt::FindDirectChildrenOnly);
    return known ? *known : *new PictureTextures(window);
}

PictureTextures::PictureTextures(QQuickWindow& window) : QObject(&window), m_window(window) {
    connect(&window, &QQuickWindow::afterSynchronizing, this, &PictureTextures::forget, Qt::DirectConnection);
}

std::shared_ptr<QSGTexture> PictureTextures::texture(const QImage& image) {
    std::weak_ptr<QSGTexture>& known = m_textures[image.cacheKey()];
    if (auto texture = known.lock())
        return texture;
    std::shared_ptr<QSGTexture> made(m_window.createTextureFromImage(image));
    known = made;
    return made;
}

void PictureTextures::forget() {
    if (m_released.empty())
        return;
    m_released.clear();
    m_textures.removeIf([](const auto& entry) { return entry.value().expired(); });
}

} // namespace lumbra
