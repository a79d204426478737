// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentText.h"

#include <QMetaEnum>

#include <algorithm>

namespace lumbra {

void DocumentText::setRows(const DocumentRows& rows) {
    const auto shorter = std::min(m_rows.size(), rows.size());
    const auto first = std::mismatch(m_rows.begin(), m_rows.begin() + shorter, rows.begin()).first - m_rows.begin();
    const auto last =
        std::mismatch(m_rows.rbegin(), m_rows.rbegin() + (shorter - first), rows.rbegin()).first - m_rows.rbegin();
    const auto oldCount = m_rows.size() - first - last;
    const auto newCount = rows.size() - first - last;
    const auto changed = std::min(oldCount, newCount);

    const auto firstRow = int(first), behindChanged = int(first + changed);
    if (oldCount > newCount) {
        beginRemoveRows({}, behindChanged, int(first + oldCount) - 1);
        m_rows.remove(behindChanged, oldCount - newCount);
        endRemoveRows();
    }
    if (changed > 0) {
        std::copy_n(rows.begin() + first, changed, m_rows.begin() + first);
        Q_EMIT dataChanged(index(firstRow), index(behindChanged - 1));
    }
    if (newCount > oldCount) {
        beginInsertRows({}, behindChanged, int(first + newCount) - 1);
        m_rows = rows;
        endInsertRows();
    }
}

int DocumentText::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant DocumentText::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const DocumentRow& row = m_rows[index.row()];
    switch (role) {
    case style:
        return QString::fromLatin1(QMetaEnum::fromType<DocumentRow::Style>().valueToKey(int(row.style)));
    case text:
        return row.text;
    case isRich:
        return row.isRich;
    case indent:
        return row.indent;
    case mark:
        return row.mark;
    case isTight:
        return row.isTight;
    case cells:
        return row.cells;
    case alignments:
        return QVariant::fromValue(row.alignments);
    case picture:
        return QVariant::fromValue(row.picture);
    default:
        return {};
    }
}

QHash<int, QByteArray> DocumentText::roleNames() const {
    return {{style, "rowStyle"},  {text, "rowText"}, {isRich, "isRich"},         {indent, "indent"},  {mark, "mark"},
            {isTight, "isTight"}, {cells, "cells"},  {alignments, "alignments"}, {picture, "picture"}};
}

} // namespace lumbra
