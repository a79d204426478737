// The columns of a page as a model, so that a row of tiles keeps those that stay when a column comes or goes; a mere
// number would make every tile anew.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>

namespace lumbra {

class ColumnSlots : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void setCount(int count);

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : m_count; }
    QVariant data(const QModelIndex&, int) const override { return {}; }

private:
    int m_count = 0;
};

} // namespace lumbra
