// What the user has marked of a table: a rectangle of its cells, or all of it with its head.
//
// It goes when the table changes. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentTable.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class CellSelection : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(lumbra::DocumentTable* table READ table WRITE setTable NOTIFY tableChanged)
    Q_PROPERTY(QRect cells READ cells NOTIFY changed)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    Q_PROPERTY(bool hasHead READ hasHead NOTIFY changed)

public:
    using QObject::QObject;

    DocumentTable* table() const { return m_table; }
    void setTable(DocumentTable* table);

    // Columns by rows.
    QRect cells() const { return m_cells; }
    bool isEmpty() const { return m_cells.isEmpty() && !m_hasHead; }
    bool hasHead() const { return m_hasHead; }

    // The button goes down on a cell: with the second click the cell is marked.
    Q_INVOKABLE void begin(int column, int row, int clicks = 1);

    // The pointer is on a cell with the button still down: all from the first to this one.
    Q_INVOKABLE void extend(int column, int row);

    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clear();

    // A line for each row, its cells parted by tabs: what programs of tables take.
    QString words() const;
    Q_INVOKABLE void copy() const;

Q_SIGNALS:
    void tableChanged();
    void changed();

private:
    void mark(const QRect& cells, bool hasHead);

    QPointer<DocumentTable> m_table;
    QPoint m_first;
    QRect m_cells;
    bool m_hasHead = false;
};

} // namespace lumbra
