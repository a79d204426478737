// SPDX-License-Identifier: GPL-3.0-or-later
#include "ColumnSlots.h"

namespace lumbra {

void ColumnSlots::setCount(int count) {
    if (count > m_count) {
        beginInsertRows({}, m_count, count - 1);
        m_count = count;
        endInsertRows();
    } else if (count < m_count) {
        beginRemoveRows({}, count, m_count - 1);
        m_count = count;
        endRemoveRows();
    }
}

} // namespace lumbra
