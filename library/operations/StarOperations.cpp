// The operations of Library that star files and take stars away.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Stars.h"
#include "library/Library.h"
#include "platform/Tasks.h"

#include <QPointer>

#include <algorithm>
#include <memory>

namespace lumbra {

namespace {

// Files that are written at once, some 10 microseconds each. More would hold up the window.
constexpr qsizetype mostAtOnce = 500;

struct Starring {
    QList<std::pair<Location, std::optional<Date>>> written; // with the star that each has now
    std::optional<QString> lastFailed;                       // a file's name
};

Starring writeStars(const QList<Location>& urls, bool starred) {
    Starring result;
    for (const Location& url : urls) {
        if (Stars::write(url, starred))
            result.written.append({url, starred ? Stars::read(url) : std::nullopt});
        else
            result.lastFailed = url.name();
    }
    return result;
}

AssetIndex::Changes starChanges(const Starring& result, const AssetIndex& index) {
    AssetIndex::Changes changes;
    for (const auto& [url, date] : result.written) {
        if (auto asset = index.find(url)) {
            asset->starred = date;
            changes.assets.append(*std::move(asset));
        }
    }
    return changes;
}

QString starredText(qsizetype count, bool starred) {
    const QString verb = starred ? QStringLiteral("Added") : QStringLiteral("Removed");
    const QString items = count > 1 ? QStringLiteral(" %1 items").arg(count) : QString();
    return verb + items + (starred ? QStringLiteral(" to Starred") : QStringLiteral(" from Starred"));
}

} // namespace

void Library::toggleStar(const QList<Location>& urls) {
    if (urls.isEmpty())
        return;
    m_starring.add({m_root}, [this, urls](const OperationQueue::Done& done) {
        const auto set = [this, urls, done](bool starred) {
            setStar(urls, starred, [this, urls, starred, done] {
                const auto undo = [library = QPointer(this), urls, starred] {
                    if (library)
                        library->undoStar(urls, starred);
                };
                // Since QPointer looks whether it is given null, the analyzer thinks that this might be.
                // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage)
                setToast(Toast{.text = starredText(urls.size(), starred), .starred = starred, .undo = undo});
                done();
            });
        };
        const auto lacksStar = [urls, index = index()] {
            return !std::ranges::all_of(urls, [&index](const Location& url) {
                const auto asset = index.find(url);
                return asset ? asset->isStarred() : Stars::read(url).has_value();
            });
        };
        if (urls.size() <= mostAtOnce)
            set(lacksStar());
        else
            Tasks::run(Tasks::Pool::userInitiated, lacksStar).then(this, set);
    });
}

void Library::undoStar(const QList<Location>& urls, bool starred) {
    m_starring.add({m_root}, [this, urls, starred](const OperationQueue::Done& done) {
        setStar(urls, !starred, [this, done] {
            setToast(std::nullopt);
            done();
        });
    });
}

void Library::setStar(const QList<Location>& urls, bool starred, const OperationQueue::Done& done) {
    const auto take = [this, done](AssetIndex::Changes changes, const std::optional<QString>& lastFailed) {
        if (lastFailed)
            setLastError(QStringLiteral("Couldn't change the star on ") + *lastFailed + u'.');
        // A batch of its own, so that those before it, which may have read the stars of before, do not win.
        apply(m_batches.begin(), std::move(changes), done);
    };
    if (urls.size() <= mostAtOnce) {
        const Starring result = writeStars(urls, starred);
        return take(starChanges(result, index()), result.lastFailed);
    }
    const auto write = [urls, starred] { return std::make_shared<const Starring>(writeStars(urls, starred)); };
    Tasks::run(Tasks::Pool::lasting, write).then(this, [this, take](const std::shared_ptr<const Starring>& result) {
        // The files may have changed otherwise while their stars were written.
        const AssetIndex before = index();
        Tasks::run(Tasks::Pool::userInitiated, [result, before] {
            return starChanges(*result, before);
        }).then(this, [this, take, result, before](const AssetIndex::Changes& changes) {
            take(before == index() ? changes : starChanges(*result, index()), result->lastFailed);
        });
    });
}

} // namespace lumbra
