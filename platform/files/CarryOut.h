// Looks after one list of transfers from the first to the last step: what is a rename is done at once; for the rest
// everything is copied under hidden names, put on disk, given its final name, and only then removed where it was.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Journal.h"
#include "Load.h"
#include "ProgressMeter.h"
#include "TreeCopy.h"

#include <list>
#include <span>
#include <vector>

namespace lumbra::files {

class CarryOut {
public:
    CarryOut(const QList<Files::Transfer>& transfers, const Location& journal, ProgressMeter& meter);

    QList<Files::Arrival> run();

private:
    using Loads = std::span<Load>;

    void begin(const Files::Transfer& transfer, Files::Arrival& arrival);
    void survey(Load& load);
    void carry(Loads loads);
    void findFolder(Load& load);
    void copy(Load& load);
    void sync(Loads loads);
    void giveName(Load& load);
    void tellPlaces(Loads loads);
    void syncNames(Loads loads);
    void removeSource(Load& load);
    void discard(Load& load);
    int sourceFolder(const Location& source);

    // Does a step for each load that is still under way; one that fails or is cancelled ends, and leaves nothing.
    void forEach(Loads loads, void (CarryOut::*step)(Load&));

    const QList<Files::Transfer>& m_transfers;
    Journal m_journal;
    ProgressMeter& m_meter;
    TreeCopy m_copy;
    QList<Files::Arrival> m_arrivals;
    std::vector<Load> m_loads;
    std::list<TargetFolder> m_folders; // of the loads under way
    Location m_sourceFolderName;
    Descriptor m_sourceFolder;
};

} // namespace lumbra::files
