// Fills a page's lists. A load takes copies of the library's published data to the background and writes its results
// here, on the main thread, one after the other; `loaded` is its last write, and no field that a page does not use is
// touched.
//
// Loads are neither cancelled nor numbered: each runs to its end, and results are written in completion order.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PageLoad.h"
#include "library/Library.h"

#include <QObject>
#include <QProperty>

namespace lumbra {

class PageLoader : public QObject {
    Q_OBJECT

public:
    // Finds files whose content holds the text, at most `limit`, below the prefix if there is one. Called off the main
    // thread.
    using ContentSearch =
        std::function<QStringList(const QString& query, const std::optional<QString>& prefix, int limit)>;

    static constexpr int hitLimit = 2000;

    // The library must outlive it.
    explicit PageLoader(Library* library, QObject* parent = nullptr);

    // As long as there is none, there are no hits and no load waits for them.
    void setContentSearch(ContentSearch search) { m_contentSearch = std::move(search); }

    void load(const LoadKey& key);

    // Forgets that a load has finished; the lists stay until the next one writes over them.
    void unload();

    QList<Location> folders() const { return m_folders; }
    PageList assets() const { return m_assets; }
    Assets shelf() const { return m_shelf; }
    QList<RecentSection> sections() const { return m_sections; }
    KindCounts kindCounts() const { return m_kindCounts; }
    bool loaded() const { return m_loaded; }

    // The starred files as the last load of a page that shows them found them.
    const Assets& starred() const { return m_starred; }

Q_SIGNALS:
    // Lists of the place are about to be written.
    void arriving(const lumbra::Place& place);

    // All lists of the place that were ready at once are written.
    void listsWritten();

    void foldersChanged();
    void assetsChanged();
    void shelfChanged();
    void sectionsChanged();
    void kindCountsChanged();
    void loadedChanged();

    // The end of each load, also where nothing differs from what was there.
    void finished(const lumbra::LoadKey& key);

private:
    void loadPlace(const LoadKey& key, const PageFilter& filter);
    void loadFolder(const Location& url, const LoadKey& key, const PageFilter& filter);
    void loadStarred(const LoadKey& key, const PageFilter& filter);
    void loadRecent(const LoadKey& key, const PageFilter& filter);
    void writeList(const LoadKey& key, const ListPage& page);
    void finish(const LoadKey& key);

    Library* const m_library;
    ContentSearch m_contentSearch;
    Assets m_starred;
    Location m_asIndexed; // the folder of the page, once its files were found on disk as the index has them

    Q_OBJECT_BINDABLE_PROPERTY(PageLoader, QList<Location>, m_folders, &PageLoader::foldersChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PageLoader, PageList, m_assets, &PageLoader::assetsChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PageLoader, Assets, m_shelf, &PageLoader::shelfChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PageLoader, QList<RecentSection>, m_sections, &PageLoader::sectionsChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PageLoader, KindCounts, m_kindCounts, &PageLoader::kindCountsChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PageLoader, bool, m_loaded, false, &PageLoader::loadedChanged)
};

} // namespace lumbra
