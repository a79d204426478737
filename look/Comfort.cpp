// SPDX-License-Identifier: GPL-3.0-or-later
#include "Comfort.h"

#include <QJSEngine>

namespace lumbra {

Comfort& Comfort::shared() {
    static Comfort comfort;
    return comfort;
}

Comfort* Comfort::create(QQmlEngine*, QJSEngine*) {
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
}

} // namespace lumbra
