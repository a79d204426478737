// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentTable.h"

#include <QRegularExpression>

#include <algorithm>

namespace lumbra {

namespace {

constexpr int narrowest = 4;
constexpr int widest = 48;
constexpr qsizetype rowsMeasured = 200;

bool isNumber(const QString& cell) {
    static const QRegularExpression number(QStringLiteral("^[+-]?[$€£]? ?\\d[\\d.,' ]* ?[%$€£]?$"));
    return number.match(cell).hasMatch();
}

} // namespace

void DocumentTable::setRows(const QList<QStringList>& rows) {
    const QStringList head = rows.value(0);
    const QList<QStringList> body = rows.mid(1);
    if (head == m_head && body == m_rows)
        return;
    // Cells that only change are drawn anew where they stand.
    const bool keepsShape = head.size() == m_head.size() && body.size() == m_rows.size() && !body.isEmpty();
    if (!keepsShape)
        beginResetModel();
    m_head = head;
    m_rows = body;
    measure();
    if (!keepsShape)
        endResetModel();
    else
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    Q_EMIT headChanged();
}

void DocumentTable::measure() {
    m_widths.clear();
    m_numeric.clear();
    qsizetype columns = m_head.size();
    const auto measured = m_rows.first(std::min(rowsMeasured, m_rows.size()));
    for (const QStringList& row : m_rows)
        columns = std::max(columns, row.size());
    for (qsizetype column = 0; column < columns; ++column) {
        qsizetype width = m_head.value(column).size();
        bool isNumeric = false, isOther = false;
        for (const QStringList& row : measured) {
            const QString cell = row.value(column);
            width = std::max(width, cell.size());
            isNumeric |= isNumber(cell);
            isOther |= !cell.isEmpty() && !isNumber(cell);
        }
        m_widths.append(int(std::clamp(width, qsizetype(narrowest), qsizetype(widest))));
        m_numeric.append(isNumeric && !isOther);
    }
}

int DocumentTable::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

int DocumentTable::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_widths.size());
}

QVariant DocumentTable::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return m_rows[index.row()].value(index.column());
}

} // namespace lumbra
