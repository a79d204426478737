// SPDX-License-Identifier: GPL-3.0-or-later
#include "CellSelection.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace lumbra {

void CellSelection::setTable(DocumentTable* table) {
    if (m_table == table)
        return;
    if (m_table)
        m_table->disconnect(this);
    m_table = table;
    clear();
    if (table)
        connect(table, &DocumentTable::headChanged, this, &CellSelection::clear); // with every change of a cell, too
    Q_EMIT tableChanged();
}

void CellSelection::begin(int column, int row, int clicks) {
    m_first = {column, row};
    if (clicks > 1)
        extend(column, row);
    else
        clear();
}

void CellSelection::extend(int column, int row) {
    if (!m_table)
        return;
    // Not by turning a rectangle around, which loses a row and a column of cells.
    const QRect cells(QPoint(std::min(m_first.x(), column), std::min(m_first.y(), row)),
                      QPoint(std::max(m_first.x(), column), std::max(m_first.y(), row)));
    mark(cells & QRect(0, 0, m_table->columnCount(), m_table->rowCount()), false);
}

void CellSelection::selectAll() {
    if (m_table)
        mark(QRect(0, 0, m_table->columnCount(), m_table->rowCount()), !m_table->head().isEmpty());
}

void CellSelection::clear() {
    mark({}, false);
}

void CellSelection::mark(const QRect& cells, bool hasHead) {
    if (m_cells == cells && m_hasHead == hasHead)
        return;
    m_cells = cells;
    m_hasHead = hasHead;
    Q_EMIT changed();
}

QString CellSelection::words() const {
    if (!m_table || isEmpty())
        return {};
    QStringList lines;
    if (m_hasHead)
        lines.append(m_table->head().join(u'\t'));
    for (int row = m_cells.top(); row <= m_cells.bottom(); ++row) {
        QStringList cells;
        for (int column = m_cells.left(); column <= m_cells.right(); ++column)
            cells.append(m_table->cellAt(column, row));
        lines.append(cells.join(u'\t'));
    }
    return lines.join(u'\n');
}

void CellSelection::copy() const {
    if (!isEmpty())
        QGuiApplication::clipboard()->setText(words());
}

} // namespace lumbra
