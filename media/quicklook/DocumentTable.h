// The cells of a table for views; the first row of the text is its head, which stands apart.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class DocumentTable : public QAbstractTableModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A document has one.")
    Q_PROPERTY(QStringList head READ head NOTIFY headChanged)

public:
    using QAbstractTableModel::QAbstractTableModel;

    QStringList head() const { return m_head; }
    QString cellAt(int column, int row) const { return m_rows.value(row).value(column); }
    void setRows(const QList<QStringList>& rows);

    // How many characters a column should have room for: what most of its first cells need, within bounds.
    Q_INVOKABLE int charactersOf(int column) const { return m_widths.value(column); }

    // The column holds numbers, which stand at its right.
    Q_INVOKABLE bool isNumeric(int column) const { return m_numeric.value(column); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override { return {{Qt::DisplayRole, "cell"}}; }

Q_SIGNALS:
    void headChanged();

private:
    void measure();

    QStringList m_head;
    QList<QStringList> m_rows;
    QList<int> m_widths;
    QList<bool> m_numeric;
};

} // namespace lumbra
