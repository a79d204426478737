// SPDX-License-Identifier: GPL-3.0-or-later
#include "Chips.h"

#include "library/Model.h"

namespace lumbra {

namespace {

QVariant choice(const QVariant& value, const QString& label) {
    return QVariant::fromValue(Choice{value, label});
}

QString label(SortOrder order) {
    switch (order) {
    case SortOrder::newest:
        return QStringLiteral("Newest first");
    case SortOrder::oldest:
        return QStringLiteral("Oldest first");
    case SortOrder::name:
        return QStringLiteral("Name");
    case SortOrder::size:
        break;
    }
    return QStringLiteral("Largest first");
}

} // namespace

QVariantList Chips::periods() {
    return {
        choice(1, QStringLiteral("24 hours")),
        choice(3, QStringLiteral("3 days")),
        choice(7, QStringLiteral("7 days")),
        choice(30, QStringLiteral("30 days")),
    };
}

QString Chips::periodText(int days) {
    for (const QVariant& period : periods())
        if (const auto choice = period.value<Choice>(); choice.value == days)
            return choice.label;
    return QStringLiteral("%1 days").arg(days);
}

QVariantList Chips::kinds() {
    QVariantList kinds;
    for (const AssetKind kind : allAssetKinds)
        kinds.append(choice(rawValue(kind), pluralLabel(kind)));
    return kinds;
}

QVariantList Chips::sortOrders() {
    QVariantList orders;
    for (const SortOrder order : allSortOrders)
        orders.append(choice(rawValue(order), label(order)));
    return orders;
}

QString Chips::countText(qint64 count) {
    if (count < 1)
        return {};
    return count < 1000 ? QString::number(count) : QString::number(double(count) / 1000, 'f', 1) + u'k';
}

} // namespace lumbra
