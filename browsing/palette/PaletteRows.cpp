// SPDX-License-Identifier: GPL-3.0-or-later
#include "PaletteRows.h"

#include <algorithm>

namespace lumbra {

void PaletteRows::setResults(const QList<PaletteResult>& results) {
    const qsizetype common = std::min(m_results.size(), results.size());
    for (qsizetype row = 0; row < common; ++row) {
        const bool differs = m_results[row] != results[row];
        m_results[row] = results[row]; // also what is not to be seen of it
        if (differs)
            Q_EMIT dataChanged(index(int(row)), index(int(row)));
    }
    if (m_results.size() > common) {
        beginRemoveRows({}, int(common), int(m_results.size()) - 1);
        m_results.resize(common);
        endRemoveRows();
    } else if (results.size() > common) {
        beginInsertRows({}, int(common), int(results.size()) - 1);
        m_results = results;
        endInsertRows();
    }
}

int PaletteRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_results.size());
}

QVariant PaletteRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const PaletteResult& result = m_results[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return result.title;
    case rowRole:
        return QVariant::fromValue(result);
    default:
        return {};
    }
}

QHash<int, QByteArray> PaletteRows::roleNames() const {
    return {{rowRole, "row"}};
}

} // namespace lumbra
