// The operations of Library that bring, export, rename, make and trash files and folders.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/Library.h"
#include "platform/Tasks.h"

#include <QPromise>

#include <cerrno>
#include <memory>

namespace lumbra {

namespace {

using Transfer = Files::Transfer;

QFuture<QList<Location>> finished(const QList<Location>& locations) {
    QPromise<QList<Location>> promise;
    promise.start();
    promise.addResult(locations);
    promise.finish();
    return promise.future();
}

QList<Location> targetsOf(const QList<Files::Arrival>& arrivals) {
    QList<Location> targets;
    for (const Files::Arrival& arrival : arrivals)
        if (arrival.target)
            targets.append(*arrival.target);
    return targets;
}

} // namespace

QFuture<QList<Location>> Library::carryOut(const QList<Transfer>& transfers, Finish finish) {
    if (transfers.isEmpty())
        return finished(finish({}));
    const auto promise = std::make_shared<QPromise<QList<Location>>>();
    promise->start();
    m_transfers.start(transfers, [this, promise, finish = std::move(finish)](const QList<Files::Arrival>& arrivals) {
        for (const Files::Arrival& arrival : arrivals)
            if (arrival.error)
                setLastError(arrival.error->description);
        promise->addResult(finish(arrivals));
        promise->finish();
    });
    return promise->future();
}

QFuture<QList<Location>> Library::bring(const QList<Location>& urls, const Location& folder) {
    const Location root = m_root.canonical();
    const Location there = folder.canonical();
    QList<Files::Arrival> all;   // in the order given
    QList<Transfer> remaining;   // what must carry bytes
    QList<qsizetype> unanswered; // their positions in `all`
    for (const Location& url : urls) {
        const Location real = url.canonical();
        const bool internal = real.isAtOrBelow(root) || projectContaining(url);
        const bool isThere = internal && url.parent().canonical() == there;
        if (isThere || there.isAtOrBelow(real))
            continue;
        const Location target = freeNameFor(url.name(), folder);
        const auto failure = internal ? Files::rename(url, target) : std::nullopt;
        const bool carries = !internal || (failure && failure->code == EXDEV);
        if (carries) {
            m_transfers.promise(target);
            unanswered.append(all.size());
            remaining.append({url, target, internal ? Transfer::Kind::move : Transfer::Kind::copy});
        } else if (failure) {
            setLastError(failure->description);
        }
        all.append({url, carries || failure ? std::nullopt : std::optional(target), {}});
    }
    return carryOut(remaining, [this, all, unanswered](const QList<Files::Arrival>& arrivals) {
        QList<Files::Arrival> answered = all;
        for (qsizetype i = 0; i < unanswered.size(); ++i)
            answered[unanswered[i]] = arrivals[i];
        contentChanged();
        return targetsOf(answered);
    });
}

QFuture<QList<Location>> Library::exportTo(const QList<Location>& urls, const Location& folder) {
    QList<Transfer> transfers;
    for (const Location& url : urls) {
        const Location target = freeNameFor(url.name(), folder);
        m_transfers.promise(target);
        transfers.append({url, target});
    }
    return carryOut(transfers, targetsOf);
}

QFuture<QList<Location>> Library::exportAs(const Location& url, const Location& target) {
    return carryOut({{url, target, Transfer::Kind::copy, Transfer::IfTaken::replace}}, targetsOf);
}

std::optional<Location> Library::rename(const Location& url, const QString& name) {
    const Location target = url.parent().child(name);
    if (const auto failure = Files::rename(url, target)) {
        setLastError(failure->description);
        return std::nullopt;
    }
    contentChanged();
    return target;
}

std::optional<Location> Library::newFolderIn(const Location& folder, const QString& name) {
    const Location made = folder.child(name.trimmed());
    if (const auto failure = Files::makeFolder(made)) {
        setLastError(failure->description);
        return std::nullopt;
    }
    contentChanged();
    return made;
}

void Library::trash(const QList<Location>& urls) {
    Tasks::run(Tasks::Pool::lasting, [urls] {
        std::optional<QString> lastFailure;
        for (const Location& url : urls)
            if (const auto failure = Files::trash(url))
                lastFailure = failure->description;
        return lastFailure;
    }).then(this, [this](const std::optional<QString>& failure) {
        if (failure)
            setLastError(failure);
        contentChanged();
    });
}

Location Library::freeNameFor(const QString& name, const Location& folder) const {
    return Files::freeName(name, folder, [this](const Location& candidate) {
        return Files::isTaken(candidate) || m_transfers.isPromised(candidate);
    });
}

} // namespace lumbra
