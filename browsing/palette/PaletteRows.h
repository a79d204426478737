// The rows of the palette as the view draws them. A new list changes only the rows that differ, so that nothing flashes
// while somebody types.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PaletteResult.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class PaletteRows : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The palette holds its rows.")

public:
    enum Role {
        rowRole = Qt::UserRole + 1, // the PaletteResult itself
    };

    explicit PaletteRows(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    void setResults(const QList<PaletteResult>& results);
    const QList<PaletteResult>& results() const { return m_results; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<PaletteResult> m_results;
};

} // namespace lumbra
