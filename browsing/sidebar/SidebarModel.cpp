// SPDX-License-Identifier: GPL-3.0-or-later
#include "SidebarModel.h"

#include "RowDifference.h"

#include <algorithm>

namespace lumbra {

namespace {

QStringList idsOf(const QList<SidebarRow>& rows) {
    QStringList ids;
    ids.reserve(rows.size());
    for (const SidebarRow& row : rows)
        ids.append(row.id);
    return ids;
}

} // namespace

void SidebarModel::setRows(const QList<SidebarRow>& rows) {
    const QList<RowDifference::Step> steps = RowDifference::between(idsOf(m_rows), idsOf(rows));
    for (const RowDifference::Step& step : steps) {
        const int first = int(step.first);
        const int last = int(step.first + step.count) - 1;
        switch (step.kind) {
        case RowDifference::Kind::remove:
            beginRemoveRows({}, first, last);
            m_rows.remove(step.first, step.count);
            endRemoveRows();
            break;
        case RowDifference::Kind::move:
            // The model's own count of a move down is from before the row was taken out.
            beginMoveRows({}, first, last, {}, int(step.to > step.first ? step.to + 1 : step.to));
            m_rows.move(step.first, step.to);
            endMoveRows();
            break;
        case RowDifference::Kind::insert:
            beginInsertRows({}, first, last);
            m_rows.insert(step.first, step.count, SidebarRow());
            std::copy_n(rows.cbegin() + step.first, step.count, m_rows.begin() + step.first);
            endInsertRows();
            break;
        }
    }

    for (qsizetype first = 0; first < rows.size();) {
        qsizetype end = first;
        for (; end < rows.size() && m_rows[end] != rows[end]; ++end)
            m_rows[end] = rows[end];
        if (first < end)
            Q_EMIT dataChanged(index(int(first)), index(int(end) - 1));
        first = end + 1;
    }
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const SidebarRow& row = m_rows[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return row.title;
    case rowRole:
        return QVariant::fromValue(row);
    default:
        return {};
    }
}

QHash<int, QByteArray> SidebarModel::roleNames() const {
    return {{rowRole, "row"}};
}

} // namespace lumbra
