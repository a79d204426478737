// SPDX-License-Identifier: GPL-3.0-or-later
#include "CarryOut.h"

#include "Failure.h"
#include "Removal.h"
#include "Rename.h"
#include "Survey.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <set>

namespace lumbra::files {

namespace {

using Kind = Files::Transfer::Kind;
using IfTaken = Files::Transfer::IfTaken;

// Each folder that things go to is open until they have arrived.
constexpr size_t mostFolders = 64;

QString verb(const Files::Transfer& transfer) {
    return transfer.kind == Kind::move ? QStringLiteral("move") : QStringLiteral("copy");
}

int replaceInPlace(const Location& source, const Location& target) {
    const auto folderOf = [](const Location& location) {
        return Descriptor(::open(location.parent().path().constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    };
    const Descriptor from = folderOf(source);
    const Descriptor to = from ? folderOf(target) : Descriptor();
    if (!to)
        return errno;
    return renameReplacing(from.number(), std::string(source.lastComponent()).c_str(), to.number(),
                           std::string(target.lastComponent()).c_str());
}

// Of a move that is nothing but a rename. EXDEV when it is not.
int renameInPlace(const Files::Transfer& transfer, Location& target) {
    const char* const source = transfer.source.path().constData();
    if (transfer.source == transfer.target)
        return 0;
    if (transfer.ifTaken == IfTaken::replace)
        return replaceInPlace(transfer.source, target);
    const Location folder = target.parent();
    QString name = target.name();
    return takeFreeName(name, [&](const QString& tried) {
        target = folder.child(tried);
        return renameNoReplace(AT_FDCWD, source, AT_FDCWD, target.path().constData());
    });
}

// Refused before anything is copied rather than after.
void checkRemovable(const Location& source) {
    if (::faccessat(AT_FDCWD, source.parent().path().constData(), W_OK | X_OK, AT_EACCESS) != 0)
        throw Failure(errno, source.view());
}

} // namespace

CarryOut::CarryOut(const QList<Files::Transfer>& transfers, const Location& journal, ProgressMeter& meter)
    : m_transfers(transfers), m_journal(journal), m_meter(meter), m_copy(meter) {}

QList<Files::Arrival> CarryOut::run() {
    m_arrivals.reserve(m_transfers.size());
    for (const Files::Transfer& transfer : m_transfers)
        m_arrivals.append({transfer.source, {}, {}});
    for (qsizetype i = 0; i < m_transfers.size() && !m_meter.isStopped(); ++i)
        begin(m_transfers[i], m_arrivals[i]);
    forEach(m_loads, &CarryOut::survey);

    // As many at a time as their folders may be open at once.
    for (size_t first = 0; first < m_loads.size() && !m_meter.isStopped();) {
        std::set<Location> folders;
        size_t end = first;
        for (; end < m_loads.size(); ++end) {
            folders.insert(m_loads[end].transfer->target.parent());
            if (folders.size() > mostFolders)
                break;
        }
        carry(Loads(m_loads).subspan(first, end - first));
        m_folders.clear();
        first = end;
    }
    return std::move(m_arrivals);
}

void CarryOut::begin(const Files::Transfer& transfer, Files::Arrival& arrival) {
    try {
        refuseNonsense(transfer);
        if (transfer.kind == Kind::move) {
            Location target = transfer.target;
            const int code = renameInPlace(transfer, target);
            if (!code)
                arrival.target = target;
            else if (code != EXDEV)
                throw Failure(code, transfer.source.view());
        }
        if (!arrival.target)
            m_loads.push_back({&transfer, &arrival});
    } catch (const Failure& failure) {
        arrival.error = sentence(verb(transfer), failure);
    }
}

void CarryOut::forEach(Loads loads, void (CarryOut::*step)(Load&)) {
    for (Load& load : loads) {
        if (load.state == Load::State::ended)
            continue;
        try {
            (this->*step)(load);
            continue;
        } catch (const Failure& failure) {
            load.arrival->error = sentence(verb(*load.transfer), failure);
        } catch (const Cancelled&) {
            // Its arrival stays empty.
        }
        discard(load);
    }
}

void CarryOut::survey(Load& load) {
    m_meter.stopIfAsked();
    const Location& source = load.transfer->source;
    if (load.isMove())
        checkRemovable(source);
    const std::string name(source.lastComponent());
    const Survey found = files::survey(sourceFolder(source), name.c_str(), m_meter);
    load.type = found.type;
    m_meter.expect(found.files, found.bytes);
}

void CarryOut::carry(Loads loads) {
    forEach(loads, &CarryOut::findFolder);
    QList<Location> parts;
    for (const Load& load : loads) {
        if (load.state == Load::State::underWay)
            parts.append(load.partLocation());
    }
    if (parts.isEmpty())
        return;
    m_journal.note(parts);

    forEach(loads, &CarryOut::copy);
    sync(loads);
    forEach(loads, &CarryOut::giveName);
    tellPlaces(loads);
    syncNames(loads);
    for (Load& load : loads) {
        if (load.state == Load::State::arrived && load.isMove())
            removeSource(load);
    }

    parts.clear();
    for (const Load& load : loads) {
        if (load.folder && load.isPartGone)
            parts.append(load.partLocation());
    }
    m_journal.forget(parts);
}

void CarryOut::findFolder(Load& load) {
    const Location folder = load.transfer->target.parent();
    auto found = std::ranges::find(m_folders, folder, &TargetFolder::givenAs);
    if (found == m_folders.end())
        found = m_folders.emplace(m_folders.end(), folder);
    load.folder = &*found;
    load.part = partName();
}

void CarryOut::copy(Load& load) {
    m_meter.stopIfAsked();
    const Location& source = load.transfer->source;
    const Entry entry{std::string(source.lastComponent()), load.type};
    const auto record = load.isMove() ? TreeCopy::Record::manifest : TreeCopy::Record::no;
    load.copied = m_copy.copy(sourceFolder(source), entry, load.folder->number(), load.part.constData(), record);
}

// One call for each file system puts everything on disk: far cheaper than one for each file.
void CarryOut::sync(Loads loads) {
    std::map<dev_t, int> codes;
    for (Load& load : loads) {
        if (load.state != Load::State::underWay)
            continue;
        const auto [found, isNew] = codes.try_emplace(load.folder->device(), 0);
        if (isNew && ::syncfs(load.folder->number()) != 0)
            found->second = errno;
        if (!found->second)
            continue;
        load.arrival->error = sentence(verb(*load.transfer), Failure(found->second, load.transfer->source.view()));
        discard(load);
    }
}

void CarryOut::giveName(Load& load) {
    m_meter.stopIfAsked();
    const int folder = load.folder->number();
    const char* const part = load.part.constData();
    load.name = load.transfer->target.name();
    int code = 0;
    if (load.transfer->ifTaken == IfTaken::replace) {
        code = renameReplacing(folder, part, folder, load.name.toUtf8().constData());
        // An older folder that could not be wholly removed has taken the hidden name.
        load.isPartGone = ::faccessat(folder, part, F_OK, AT_SYMLINK_NOFOLLOW) != 0;
    } else {
        code = takeFreeName(load.name, [&](const QString& tried) {
            return renameNoReplace(folder, part, folder, tried.toUtf8().constData());
        });
        load.isPartGone = !code;
    }
    if (code)
        throw Failure(code, load.transfer->source.view());
    load.state = Load::State::arrived;
}

void CarryOut::tellPlaces(Loads loads) {
    std::map<const TargetFolder*, Location> places;
    for (Load& load : loads) {
        if (load.state != Load::State::arrived)
            continue;
        const auto [found, isNew] = places.try_emplace(load.folder);
        if (isNew)
            found->second = load.folder->location();
        load.arrival->target = found->second.child(load.name);
    }
}

// A source goes only when not even a power cut can take back its new name.
void CarryOut::syncNames(Loads loads) {
    std::map<const TargetFolder*, int> codes;
    for (Load& load : loads) {
        if (load.state != Load::State::arrived || !load.isMove())
            continue;
        const auto [found, isNew] = codes.try_emplace(load.folder, 0);
        if (isNew && ::fsync(load.folder->number()) != 0 && errno != EINVAL) // EINVAL: it has nothing to put on disk
            found->second = errno;
        if (!found->second)
            continue;
        load.state = Load::State::ended;
        load.arrival->error = sentence(verb(*load.transfer), Failure(found->second, load.transfer->source.view()));
    }
}

void CarryOut::removeSource(Load& load) {
    const Location& source = load.transfer->source;
    const QString shown = readable(source.view());
    if (!load.copied.hasAllAttributes) {
        load.arrival->error = {
            QStringLiteral("Couldn't move %1: the disk there can't hold its attributes. It was copied instead.")
                .arg(shown),
            EOPNOTSUPP};
        return;
    }
    const std::string name(source.lastComponent());
    Remains remains;
    try {
        remains = removeCopied(sourceFolder(source), name.c_str(), load.copied.manifest);
    } catch (const Failure& failure) {
        remains.code = failure.code;
    }
    load.copied.manifest = {};
    if (remains.code)
        load.arrival->error = sentence(QStringLiteral("remove"), Failure(remains.code, source.view()));
    else if (remains.hasOthers)
        load.arrival->error = {
            QStringLiteral("Couldn't move all of %1: what was changed or added meanwhile stays.").arg(shown),
            ENOTEMPTY};
}

void CarryOut::discard(Load& load) {
    load.state = Load::State::ended;
    load.copied = {};
    if (!load.part.isEmpty())
        load.isPartGone = removeTree(load.folder->number(), load.part.constData()) == 0;
}

int CarryOut::sourceFolder(const Location& source) {
    const Location folder = source.parent();
    if (!m_sourceFolder || folder != m_sourceFolderName) {
        m_sourceFolder = Descriptor(::open(folder.path().constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!m_sourceFolder)
            throw Failure(errno, source.view());
        m_sourceFolderName = folder;
    }
    return m_sourceFolder.number();
}

} // namespace lumbra::files
