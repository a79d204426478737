// Everything that is summed over the whole index, computed at once off the main thread: when each project last saw
// activity, how many files are new, which are starred, and for each folder how many assets it holds and which are the
// newest that can stand as its thumbnails.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"
#include "FolderStats.h"
#include "Model.h"

#include <QHash>
#include <QSet>

namespace lumbra {

struct DerivedIndex {
    QHash<Location, Date> activity; // project path to the newest `modified` in it; hidden projects included
    qsizetype newToday = 0;         // assets of visible projects modified in the 24 hours before `now`
    Assets starred;                 // of visible projects, most recently starred first
    FolderStatsMap stats;           // every folder from an asset's own up to its project; hidden included

    // A pure function, for any thread; it takes a second one to help with a large index.
    static DerivedIndex compute(const AssetIndex& index, const QList<Project>& projects, const QSet<QString>& hidden,
                                const Location& root, Date now);

    friend bool operator==(const DerivedIndex&, const DerivedIndex&) = default;
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::DerivedIndex)
