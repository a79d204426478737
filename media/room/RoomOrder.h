// The files that the screening room walks through, as a list for views. The facts of a row are those that the library
// has of the file now; once it has none, those that the request came with.
//
// Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/AssetIndex.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class RoomOrder : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one belongs to each room")

    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    // As "asset" (Asset), "path" (Location), "name", "kind" (text), "starred" and "playing" (truth values).
    enum Role { assetRole = Qt::UserRole, pathRole, nameRole, kindRole, starredRole, playingRole };

    explicit RoomOrder(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    int count() const { return int(m_assets.size()); }

    void setAssets(const Assets& assets);
    void setIndex(const AssetIndex& index);

    // The row on show; -1 for none.
    void setCurrent(int row);

    // The first row with the path, or -1.
    int rowOf(const Location& path) const;
    Asset assetAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count(); }
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    Assets m_assets;
    AssetIndex m_index;
    int m_current = -1;
};

} // namespace lumbra
