// The rows of a text, as a list for views. What is set anew changes it by the part between an equal beginning and an
// equal end, so that a view keeps its place in a text that is written on.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DocumentRow.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class DocumentText : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A document has one.")

public:
    enum Role { style = Qt::UserRole + 1, text, isRich, indent, mark, isTight, cells, alignments, picture };

    using QAbstractListModel::QAbstractListModel;

    const DocumentRows& rows() const { return m_rows; }
    void setRows(const DocumentRows& rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    DocumentRows m_rows;
};

} // namespace lumbra
