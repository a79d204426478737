// SPDX-License-Identifier: GPL-3.0-or-later
#include "Comfort.h"

namespace lumbra {

void Comfort::set(bool highContrast, bool reducedMotion) {
    if (m_highContrast == highContrast && m_reducedMotion == reducedMotion)
        return;
    m_highContrast = highContrast;
    m_reducedMotion = reducedMotion;
    Q_EMIT changed();
}

} // namespace lumbra
