// SPDX-License-Identifier: GPL-3.0-or-later
#include "ColumnSlots.h"

namespace lumbra {

void ColumnSlots::grow(int count) {
    if (count <= m_count)
        return;
    beginInsertRows({}, m_count, count - 1);
    m_count = count;
    endInsertRows();
}

} // namespace lumbra
