// What assistive technology is told of an item.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>
#include <QQuickItem>

namespace lumbra {

inline QAccessibleInterface* access(const QQuickItem* item) {
    return QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(item));
}

inline QString name(const QQuickItem* item) {
    auto* const interface = access(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

inline QString description(const QQuickItem* item) {
    return access(item)->text(QAccessible::Description);
}

inline QAccessible::Role role(const QQuickItem* item) {
    auto* const interface = access(item);
    return interface ? interface->role() : QAccessible::NoRole;
}

inline QAccessible::State state(const QQuickItem* item) {
    return access(item)->state();
}

} // namespace lumbra
