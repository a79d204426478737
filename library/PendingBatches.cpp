// SPDX-License-Identifier: GPL-3.0-or-later
#include "PendingBatches.h"

#include "platform/Tasks.h"

#include <algorithm>

namespace lumbra {

quint64 PendingBatches::begin() {
    m_batches.push_back({++m_last, std::nullopt});
    return m_last;
}

AssetIndex PendingBatches::finish(quint64 number, AssetIndex::Changes changes, const AssetIndex& index) {
    const auto batch = std::ranges::find(m_batches, number, &Batch::number);
    batch->changes = std::move(changes);
    // Those that came later and are through already are applied once more, on top.
    AssetIndex result = index;
    for (auto next = batch; next != m_batches.end(); ++next)
        if (next->changes)
            result = result.applying(*next->changes);
    while (!m_batches.empty() && m_batches.front().changes) {
        Tasks::dropLater(*std::move(m_batches.front().changes));
        m_batches.pop_front();
    }
    return result;
}

} // namespace lumbra
