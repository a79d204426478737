// One page of a document as an item: white paper, then the page as the readers draw it. Of a page that is enlarged
// beyond what one picture may hold, the part that is seen is drawn once more, sharply, over the rest.
//
// A picture that no longer fits the item's size stays, stretched, until the new one is there; so does one from when the
// page was last shown, and failing that a small picture of it may stand for the page.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/MediaRequest.h"
#include "platform/Reader.h"

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace lumbra {

class DocumentPage : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::Location file READ file WRITE setFile NOTIFY fileChanged)
    Q_PROPERTY(int page READ page WRITE setPage NOTIFY pageChanged)
    Q_PROPERTY(QString edition READ edition WRITE setEdition NOTIFY editionChanged)
    Q_PROPERTY(QImage poster READ poster WRITE setPoster NOTIFY posterChanged)
    Q_PROPERTY(QRectF seen READ seen WRITE setSeen NOTIFY seenChanged)
    Q_PROPERTY(bool drawn READ isDrawn NOTIFY drawnChanged)

public:
    explicit DocumentPage(QQuickItem* parent = nullptr);

    const Location& file() const { return m_file; }
    void setFile(const Location& file);

    // From 0.
    int page() const { return m_page; }
    void setPage(int page);

    // Of the file's content: another one draws the page anew.
    const QString& edition() const { return m_edition; }
    void setEdition(const QString& edition);

    // Stands for the page until it is drawn; may be null.
    const QImage& poster() const { return m_poster; }
    void setPoster(const QImage& poster);

    // The part of the item that the view shows; empty while it is only near.
    QRectF seen() const { return m_seen; }
    void setSeen(const QRectF& seen);

    // The page is on its paper, at whatever sharpness.
    bool isDrawn() const { return !m_whole.image.isNull(); }

Q_SIGNALS:
    void fileChanged();
    void pageChanged();
    void editionChanged();
    void posterChanged();
    void seenChanged();
    void drawnChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;

private:
    // What is wanted of the page: so many pixels in all, of which a part.
    struct Wish {
        QSize whole;
        QRect part;

        friend bool operator==(const Wish&, const Wish&) = default;
    };

    struct Picture {
        QImage image;
        QRectF place; // in parts of the item's sides
        std::optional<Wish> made;
        std::optional<Wish> asked;
        MediaRequest request;
        bool isCurrent = false; // of this edition
        bool isFresh = false;   // not in the scene graph yet
    };

    void reload();
    QString memory() const;
    void remember() const;
    void recall();
    std::optional<Wish> wishForWhole() const;
    std::optional<Wish> wishForDetail() const;
    void ask(Picture& picture, const std::optional<Wish>& wish);
    void take(Picture& picture, const Wish& wish, const QImage& image);
    void put(Picture& picture, const Wish& wish, const QImage& image);

    Location m_file;
    int m_page = 0;
    QString m_edition;
    QImage m_poster;
    QRectF m_seen;
    Picture m_whole;
    Picture m_detail;
};

} // namespace lumbra
