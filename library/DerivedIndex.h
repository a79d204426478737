// Everything that is summed over the whole index, computed at once off the main thread: when each project last saw
// activity, how many files are new, which are starred, and for each folder how many assets it holds and which are the
// newest that can stand as its thumbnails.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"
#include "Model.h"

#include <QHash>
#include <QSet>

namespace lumbra {

struct FolderStats {
    qsizetype count = 0; // assets of any kind in this folder and below
    Assets newest;       // at most 3 images and videos in this folder and below, newest first

    // Keeps `newest` sorted and short; among equal dates the earlier arrival stays ahead.
    void insert(const Asset& asset);

    friend bool operator==(const FolderStats&, const FolderStats&) = default;
};

struct DerivedIndex {
    QHash<Location, Date> activity;     // project path to the newest `modified` in it; hidden projects included
    qsizetype newToday = 0;             // assets of visible projects modified in the 24 hours before `now`
    Assets starred;                     // of visible projects, most recently starred first
    QHash<Location, FolderStats> stats; // every folder from an asset's own up to its project; hidden included

    // A pure function, for any thread.
    static DerivedIndex compute(const AssetIndex& index, const QList<Project>& projects, const QSet<QString>& hidden,
                                const Location& root, Date now);

    friend bool operator==(const DerivedIndex&, const DerivedIndex&) = default;
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::DerivedIndex)
