// The picture of an asset as an item: shows at once what is cached, asks for the rest, and takes the request back when
// it goes out of sight. The picture stands whole in the item, over its own blurred backdrop if wanted, inside rounded
// corners. ThumbnailView.qml adds the symbol that stands for a file without a picture.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ArrivalPace.h"
#include "Thumbnails.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

class QSGImageNode;

namespace lumbra {

class PictureTextures;

class ThumbnailPicture : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Asset asset READ asset WRITE setAsset RESET resetAsset NOTIFY assetChanged)
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(bool backdrop READ backdrop WRITE setBackdrop NOTIFY backdropChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)
    Q_PROPERTY(bool held READ isHeld WRITE setHeld NOTIFY heldChanged)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY imageChanged)
    Q_PROPERTY(bool covering READ isCovering NOTIFY coveringChanged)
    Q_PROPERTY(bool failed READ failed NOTIFY failedChanged)
    Q_PROPERTY(QString kindSymbol READ kindSymbol NOTIFY assetChanged)

public:
    explicit ThumbnailPicture(QQuickItem* parent = nullptr);
    ~ThumbnailPicture() override;

    Asset asset() const { return m_asset; }
    void setAsset(const Asset& asset);
    void resetAsset() { setAsset({}); }

    // Points: the size that the caller wants, from which the bucket follows.
    double size() const { return m_size; }
    void setSize(double size);

    bool backdrop() const { return m_backdrop; }
    void setBackdrop(bool wanted);

    // Points, of the item's own corners.
    double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);

    // Only what is at hand is shown and nothing asked for: the machine is needed for something else first.
    bool isHeld() const { return m_isHeld; }
    void setHeld(bool held);

    bool hasImage() const { return !m_image.isNull(); }
    QImage image() const { return m_image; }
    QImage glow() const { return m_glow; }

    // The picture is opaque and fills the item, but for a part of a pixel, to which it is stretched: nothing behind it
    // is seen, and no glow is made.
    bool isCovering() const { return m_isCovering; }

    // The file yielded no picture; the next load tries again.
    bool failed() const { return m_failed; }

    // "photo", "film", "waveform" or "doc": what stands for the file while it has no picture.
    QString kindSymbol() const;

Q_SIGNALS:
    void assetChanged();
    void sizeChanged();
    void backdropChanged();
    void cornerRadiusChanged();
    void heldChanged();
    void imageChanged();
    void coveringChanged();
    void failedChanged();

protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;

private:
    void load();
    void stop();
    void follow();
    std::optional<Reader::Urgency> urgencyWhereItStands() const;
    void ask(Reader::Urgency urgency);
    void receive(const QImage& image);
    void takeImage(const QImage& image);
    void makeGlow(const QImage& image);
    void whenDue(std::function<void()> show);
    void setImage(const QImage& image);
    void setGlow(const QImage& glow);
    bool covers(const QImage& image) const;
    void lookWhatIsCovered();
    void setFailed(bool failed);
    QSGNode* composed(QSGImageNode* node);

    Asset m_asset;
    double m_size = 0;
    bool m_backdrop = false;
    double m_cornerRadius = 0;
    bool m_isHeld = false;
    PictureTextures* m_textures = nullptr; // of its window
    QImage m_image;
    QImage m_glow;
    bool m_isCovering = false;
    bool m_failed = false;
    bool m_imageDirty = false; // not in the scene graph yet
    bool m_glowDirty = false;

    int m_turn = 0; // what is shown later belongs to one: they end whenever something else is wanted

    // While a picture is missing: whether it was asked for, and as how urgent.
    bool m_isMissing = false;
    std::optional<Reader::Urgency> m_asked;
    Thumbnails::Request m_request;
    ArrivalPace::Awaited m_awaited;   // while it is, or its glow, for somebody who looks there
    QMetaObject::Connection m_frames; // of the window, each a reason to look where the item stands
};

} // namespace lumbra
