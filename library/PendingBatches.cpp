// SPDX-License-Identifier: GPL-3.0-or-later
#include "PendingBatches.h"

#include "platform/Tasks.h"

#include <algorithm>

namespace lumbra {

quint64 PendingBatches::begin() {
    m_batches.push_back({++m_last, {}});
    return m_last;
}

void PendingBatches::resolve(quint64 number, AssetIndex::Changes changes) {
    std::ranges::find(m_batches, number, &Batch::number)->changes = std::move(changes);
}

std::vector<AssetIndex::Changes> PendingBatches::due(quint64 number) const {
    const auto batch = std::ranges::find(m_batches, number, &Batch::number);
    std::vector<AssetIndex::Changes> due{batch->changes};
    for (auto later = batch + 1; later != m_batches.end(); ++later)
        if (later->isApplied)
            due.push_back(later->changes);
    return due;
}

void PendingBatches::finish(quint64 number) {
    std::ranges::find(m_batches, number, &Batch::number)->isApplied = true;
    while (!m_batches.empty() && m_batches.front().isApplied) {
        Tasks::dropLater(std::move(m_batches.front().changes));
        m_batches.pop_front();
    }
}

} // namespace lumbra
