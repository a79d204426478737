// SPDX-License-Identifier: GPL-3.0-or-later
#include "MenuEntry.h"

namespace lumbra {

void MenuEntry::fill(QObject* menu) const {
    if (later)
        later(menu, [menu](const QList<MenuEntry>& entries) { menu->setProperty("entries", toVariants(entries)); });
}

QVariantList MenuEntry::toVariants(const QList<MenuEntry>& entries) {
    QVariantList variants;
    variants.reserve(entries.size());
    for (const MenuEntry& entry : entries)
        variants.append(QVariant::fromValue(entry));
    return variants;
}

} // namespace lumbra
