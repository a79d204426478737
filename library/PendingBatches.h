// The batches of events that are being resolved, in the order in which they came. They are resolved side by side and
// overtake each other, a single file that was deleted the walk through a large folder that it lay in; yet the index
// must end as if they had been resolved one after the other.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"

#include <deque>
#include <optional>

namespace lumbra {

class PendingBatches {
public:
    bool isEmpty() const { return m_batches.empty(); }

    // A batch that comes after all others; yields its number.
    quint64 begin();

    // The index with the changes that the batch came to. Where several batches speak of one path, the last that came
    // counts: whatever happened to the path later made another one come.
    AssetIndex finish(quint64 number, AssetIndex::Changes changes, const AssetIndex& index);

private:
    struct Batch {
        quint64 number;
        std::optional<AssetIndex::Changes> changes; // once it is resolved
    };

    std::deque<Batch> m_batches; // from the first that is not resolved
    quint64 m_last = 0;
};

} // namespace lumbra
