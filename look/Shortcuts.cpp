// SPDX-License-Identifier: GPL-3.0-or-later
#include "Shortcuts.h"

#include <QKeySequence>
#include <QVariant>

namespace lumbra {

QString Shortcuts::text(const QVariant& shortcut) {
    if (shortcut.metaType() == QMetaType::fromType<int>())
        return QKeySequence(QKeySequence::StandardKey(shortcut.toInt())).toString(QKeySequence::NativeText);
    return shortcut.value<QKeySequence>().toString(QKeySequence::NativeText);
}

} // namespace lumbra
