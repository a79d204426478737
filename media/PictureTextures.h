// The textures of a window's small pictures. One that moves from tile to tile, as all on a page do when a file comes in
// before them, or that shows in several places, is brought to the graphics processor once.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSGTexture>

#include <memory>
#include <vector>

class QQuickWindow;

namespace lumbra {

class PictureTextures : public QObject {
    Q_OBJECT

public:
    // The window's own; it lives as long as the window. Main thread.
    static PictureTextures& of(QQuickWindow& window);

    // The rest belongs to the thread that renders: to be called only while the nodes of items are updated.
    std::shared_ptr<QSGTexture> texture(const QImage& image);

    // For one that is no longer shown here: until all nodes are up to date, another may still want it.
    void release(std::shared_ptr<QSGTexture> texture) { m_released.push_back(std::move(texture)); }

private:
    explicit PictureTextures(QQuickWindow& window);

    void forget();

    QQuickWindow& m_window;
    QHash<qint64, std::weak_ptr<QSGTexture>> m_textures; // by the keys of their images
    std::vector<std::shared_ptr<QSGTexture>> m_released;
};

} // namespace lumbra
