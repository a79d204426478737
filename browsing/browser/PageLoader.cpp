// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageLoader.h"

#include "library/Scanner.h"
#include "platform/Tasks.h"

namespace lumbra {

namespace {

constexpr auto pool = Tasks::Pool::userInitiated;

constexpr double day = 86400;

QList<Location> urlsOf(const QList<Project>& projects) {
    QList<Location> urls;
    for (const Project& project : projects)
        urls.append(project.url);
    return urls;
}

} // namespace

PageLoader::PageLoader(Library* library, QObject* parent) : QObject(parent), m_library(library) {}

void PageLoader::unload() {
    m_loaded = false;
    m_asIndexed = {};
}

void PageLoader::load(const LoadKey& key) {
    const PageFilter filter(assetKindFromRaw(key.kind), key.search);
    if (!filter.hasQuery() || !m_contentSearch)
        return loadPlace(key, filter);
    const auto find = [search = m_contentSearch, key, filter] {
        std::optional<QString> prefix;
        if (const auto folder = key.place.folderUrl())
            prefix = folder->toString() + u'/';
        QSet<Location> hits;
        for (const QString& path : search(filter.query(), prefix, hitLimit))
            hits.insert(Location(QStringView(path)));
        return PageFilter(assetKindFromRaw(key.kind), key.search, std::move(hits));
    };
    Tasks::run(pool, find).then(this, [this, key](const PageFilter& withHits) { loadPlace(key, withHits); });
}

void PageLoader::loadPlace(const LoadKey& key, const PageFilter& filter) {
    switch (key.place.which()) {
    case Place::Case::group:
    case Place::Case::tidy:
        Q_EMIT arriving(key.place);
        Q_EMIT listsWritten();
        return finish(key);
    case Place::Case::starred:
        return loadStarred(key, filter);
    case Place::Case::folder:
        return loadFolder(*key.place.folderUrl(), key, filter);
    case Place::Case::recent:
        return loadRecent(key, filter);
    }
}

void PageLoader::loadStarred(const LoadKey& key, const PageFilter& filter) {
    m_starred = m_library->derived().starred;
    Tasks::run(pool, [starred = m_starred, filter, shown = assets()] {
        return PageLoad::starred(starred, filter, shown);
    }).then(this, [this, key](const ListPage& page) { writeList(key, page); });
}

void PageLoader::loadFolder(const Location& url, const LoadKey& key, const PageFilter& filter) {
    if (key.recursive) {
        Tasks::run(pool, [url, sort = key.sort, filter, index = m_library->index(), shown = assets()] {
            return PageLoad::recursive(index, url, filter, sort, shown);
        }).then(this, [this, key](const ListPage& page) { writeList(key, page); });
        return;
    }
    struct Listed {
        ListPage page;
        bool isAsIndexed = false;
    };
    // A folder's direct contents come from disk, so that the page also shows what the index does not hold. Where the
    // two were found to agree, the index tells the facts from then on: what one more file costs does not grow with
    // those that were there.
    const auto compute = [url, sort = key.sort, filter, indexed = m_library->index().folder(url.view()),
                          agreed = m_asIndexed == url, shown = assets()] {
        const Scanner::Listing listing = Scanner::list(url, agreed ? indexed.get() : nullptr);
        return Listed{PageLoad::folder(listing, filter, sort, shown),
                      agreed || PageLoad::isAsIndexed(listing.assets, indexed.get())};
    };
    // A disk that is asleep takes its time, and a share that has gone never answers: other pages do not wait behind it.
    Tasks::run(Tasks::Pool::lasting, compute).then(this, [this, url, key](const Listed& listed) {
        if (listed.isAsIndexed)
            m_asIndexed = url;
        writeList(key, listed.page);
    });
}

void PageLoader::writeList(const LoadKey& key, const ListPage& page) {
    Q_EMIT arriving(key.place);
    m_kindCounts = page.kindCounts;
    m_folders = page.folders;
    m_assets = page.assets;
    Q_EMIT listsWritten();
    finish(key);
}

void PageLoader::loadRecent(const LoadKey& key, const PageFilter& filter) {
    m_starred = m_library->derived().starred;
    // The feed is that of this moment, however long the shelf takes.
    const auto computeFeed = [cutoff = Date::now() - key.days * day, hidden = urlsOf(m_library->hiddenProjects()),
                              index = m_library->index(), filter,
                              shown = sections()] { return PageLoad::recent(index, hidden, cutoff, filter, shown); };
    // The shelf needs no look at the library and is there at once.
    const auto computeShelf = [starred = m_starred, filter] { return PageLoad::shelf(starred, filter); };
    Tasks::run(pool, computeShelf).then(this, [this, key, computeFeed](const Assets& shelf) {
        Q_EMIT arriving(key.place);
        m_shelf = shelf;
        Q_EMIT listsWritten();
        Tasks::run(pool, computeFeed).then(this, [this, key](const RecentPage& page) {
            Q_EMIT arriving(key.place);
            m_kindCounts = page.kindCounts;
            Tasks::dropLater(sections()); // and with it perhaps an older index
            m_sections = page.sections;
            Q_EMIT listsWritten();
            finish(key);
        });
    });
}

void PageLoader::finish(const LoadKey& key) {
    m_loaded = true;
    Q_EMIT finished(key);
}

} // namespace lumbra
