// The batches of events that are being resolved and applied to the index, in the order in which they came. That goes on
// side by side, and they overtake each other, a single file that was deleted the walk through a large folder that it
// lay in; yet the index must end as if they had been taken one after the other.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"

#include <deque>
#include <vector>

namespace lumbra {

class PendingBatches {
public:
    bool isEmpty() const { return m_batches.empty(); }

    // A batch that comes after all others; yields its number.
    quint64 begin();

    // Keeps what the batch came to.
    void resolve(quint64 number, AssetIndex::Changes changes);

    // What the index must go through to have a resolved batch in it: its changes, and once more those that came later
    // and are applied already. Where several batches speak of one path, the last that came counts: whatever happened to
    // the path later made another one come.
    std::vector<AssetIndex::Changes> due(quint64 number) const;

    // The index has gone through all that was due.
    void finish(quint64 number);

private:
    struct Batch {
        quint64 number;
        AssetIndex::Changes changes; // once it is resolved
        bool isApplied = false;
    };
    std::deque<Batch> m_batches; // from the first that is not applied
    quint64 m_last = 0;
};

} // namespace lumbra
