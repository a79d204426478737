// The picture of an asset as an item: shows at once what is cached, asks for the rest, and takes the request back when
// it goes out of sight. The picture stands whole in the item, over its own blurred backdrop if wanted, inside rounded
// corners. ThumbnailView.qml adds the symbol that stands for a file without a picture.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Thumbnails.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class ThumbnailPicture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Asset asset READ asset WRITE setAsset NOTIFY assetChanged)
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(bool backdrop READ backdrop WRITE setBackdrop NOTIFY backdropChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY imageChanged)
    Q_PROPERTY(bool failed READ failed NOTIFY failedChanged)
    Q_PROPERTY(QString kindSymbol READ kindSymbol NOTIFY assetChanged)

public:
    explicit ThumbnailPicture(QQuickItem* parent = nullptr);

    Asset asset() const { return m_asset; }
    void setAsset(const Asset& asset);

    // Points: the size that the caller wants, from which the bucket follows.
    double size() const { return m_size; }
    void setSize(double size);

    bool backdrop() const { return m_backdrop; }
    void setBackdrop(bool wanted);

    double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);

    bool hasImage() const { return !m_image.isNull(); }
    bool failed() const { return m_failed; }
    QString kindSymbol() const;

Q_SIGNALS:
    void assetChanged();
    void sizeChanged();
    void backdropChanged();
    void cornerRadiusChanged();
    void imageChanged();
    void failedChanged();

protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;

private:
    void load();
    void takeImage(const QImage& image);
    void setImage(const QImage& image);
    void setGlow(const QImage& glow);
    void setFailed(bool failed);
    bool isInSight() const;
    QRectF fitted() const;

    Asset m_asset;
    double m_size = 0;
    bool m_backdrop = false;
    double m_cornerRadius = 0;
    QImage m_image;
    QImage m_glow;
    bool m_failed = false;
    bool m_imageDirty = false; // not in the scene graph yet
    bool m_glowDirty = false;
    Thumbnails::Request m_request;
};

} // namespace lumbra
