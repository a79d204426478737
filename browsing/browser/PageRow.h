// What one row of a page hands to its delegate: up to as many cells as there are columns, or the button that reveals
// more of a section. Values for QML, made when a row comes into view.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <QObject>
#include <QVariantList>

namespace lumbra {

class PageCell {
    Q_GADGET
    Q_PROPERTY(bool isFolder READ isFolder)
    Q_PROPERTY(bool isAsset READ isAsset)
    Q_PROPERTY(bool isStack READ isStack)
    Q_PROPERTY(bool isVideo READ isVideo)
    Q_PROPERTY(bool hasLength READ hasLength)
    Q_PROPERTY(lumbra::Location url MEMBER url)
    Q_PROPERTY(lumbra::Asset asset MEMBER asset)
    Q_PROPERTY(QVariantList newest MEMBER newest)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString caption MEMBER caption)
    Q_PROPERTY(qint64 count MEMBER count)
    Q_PROPERTY(bool selected MEMBER selected)
    Q_PROPERTY(bool starred READ isStarred)
    Q_PROPERTY(bool onShelf MEMBER onShelf)
    Q_PROPERTY(QString facts READ facts)

public:
    // `none` fills up the last row of a block.
    enum class Kind { none, folder, asset, stack };

    Kind kind = Kind::none;
    Location url;        // the file; the folder of a folder or stack
    Asset asset;         // the file; a stack's cover
    QVariantList newest; // of a folder: its newest assets
    QString name;        // the last component of the url
    QString caption;     // a second line, or empty
    qint64 count = 0;    // files in a folder or stack
    bool selected = false;
    bool onShelf = false;

    bool isFolder() const { return kind == Kind::folder; }
    bool isAsset() const { return kind == Kind::asset; }
    bool isStack() const { return kind == Kind::stack; }
    bool isVideo() const { return isAsset() && asset.kind == AssetKind::video; }
    bool hasLength() const { return isAsset() && (asset.kind == AssetKind::video || asset.kind == AssetKind::audio); }
    bool isStarred() const { return isAsset() && asset.isStarred(); }

    // Of a file, for whoever does not see the tile: "Video, site, Starred".
    QString facts() const;

    friend bool operator==(const PageCell&, const PageCell&) = default;
};

class PageRow {
    Q_GADGET
    Q_PROPERTY(QString section MEMBER section)
    Q_PROPERTY(QString more MEMBER more)
    Q_PROPERTY(bool captioned MEMBER captioned)
    Q_PROPERTY(int gap MEMBER gap)

public:
    QString section;        // whose header stands above the block; empty for none
    QString more;           // the label of the button, in a row without cells
    bool captioned = false; // the tiles have a second line
    int gap = 0;            // points below the row
    QList<PageCell> cells;

    // An empty cell beyond the last.
    Q_INVOKABLE lumbra::PageCell cell(int position) const { return cells.value(position); }

    friend bool operator==(const PageRow&, const PageRow&) = default;
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::PageCell)
Q_DECLARE_METATYPE(lumbra::PageRow)
