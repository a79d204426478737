// The projects of the group on view as cards: who they are, what they hold, and the pictures that stand for them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Library.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class GroupCards : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The browser holds the cards of its group page.")

public:
    enum Role { urlRole = Qt::UserRole, nameRole, hueRole, subtitleRole, newestRole };

    // The library must outlive it.
    explicit GroupCards(Library* library, QObject* parent = nullptr);

    // "12 items · linked to ~/code/site".
    static QString subtitle(const FolderStats& stats, const std::optional<Location>& repo);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Card {
        Location url;
        QString name;
        int hue = 0;
        QString subtitle;
        Assets newest;
        friend bool operator==(const Card&, const Card&) = default;
    };

    QList<Card> cards() const;
    void refresh();

    Library* const m_library;
    QList<Card> m_cards;
};

} // namespace lumbra
