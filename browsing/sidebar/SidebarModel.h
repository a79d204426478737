// The rows of the sidebar as the view draws them.
//
// A new list changes the model by the smallest difference, so that a reload moves nothing and flashes nothing: rows
// come and go, one that changed its place moves, and only rows that differ are drawn anew.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SidebarRows.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class SidebarModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The sidebar holds its rows.")

public:
    enum Role {
        rowRole = Qt::UserRole + 1, // the SidebarRow itself
    };

    explicit SidebarModel(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    void setRows(const QList<SidebarRow>& rows);
    const QList<SidebarRow>& rows() const { return m_rows; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<SidebarRow> m_rows;
};

} // namespace lumbra
