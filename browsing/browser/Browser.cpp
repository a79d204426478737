// SPDX-License-Identifier: GPL-3.0-or-later
#include "Browser.h"

namespace lumbra {

namespace {

constexpr qsizetype comparedSelected = 200;

QString pageName(Place::Case which) {
    switch (which) {
    case Place::Case::group:
        return QStringLiteral("group");
    case Place::Case::folder:
        return QStringLiteral("folder");
    case Place::Case::starred:
        return QStringLiteral("starred");
    case Place::Case::tidy:
        return QStringLiteral("tidy");
    case Place::Case::recent:
        break;
    }
    return QStringLiteral("recent");
}

PageRows::Facts factsOf(Library* library) {
    return {
        .projectName =
            [library](const Location& file) {
                const auto project = library->projectContaining(file);
                return project ? project->name : QString();
            },
        .displayPath =
            [library](const Location& folder) {
                return PageText::displayPath(folder, library->projectContaining(folder));
            },
        .stats = [library](const Location& folder) { return library->statsFor(folder); },
    };
}

} // namespace

Browser::Browser(Library* library, QObject* parent, Preferences& preferences)
    : QObject(parent),
      m_library(library),
      m_settings(new BrowserSettings(preferences, this)),
      m_loader(new PageLoader(library, this)),
      m_rows(new PageRows(factsOf(library), this)),
      m_cards(new GroupCards(library, this)),
      m_path(new PathBar(library, this)),
      m_drawnPlace(library->place()) {
    followLibrary();
    followSettings();
    followLoader();
    reorder();
}

void Browser::followLibrary() {
    connect(m_library, &Library::placeChanged, this, &Browser::placeChanged);
    connect(m_library, &Library::revisionChanged, this, &Browser::scheduleLoad);
    connect(m_library, &Library::derivedChanged, this, &Browser::derivedChanged);
    connect(m_library, &Library::pendingRevealChanged, this, &Browser::pendingRevealChanged);
    connect(m_library, &Library::playingChanged, this, &Browser::playingChanged);
    connect(m_library, &Library::stateChanged, this, &Browser::describe);
    connect(m_library, &Library::projectsChanged, this, &Browser::describe);
    connect(m_library, &Library::indexingChanged, this, &Browser::describe);
}

void Browser::followSettings() {
    m_rows->setZoom(m_settings->zoom());
    connect(m_settings, &BrowserSettings::zoomChanged, this, [this] { m_rows->setZoom(m_settings->zoom()); });
    connect(m_settings, &BrowserSettings::sortChanged, this, &Browser::scheduleLoad);
    for (const auto changed :
         {&BrowserSettings::recursiveChanged, &BrowserSettings::kindRawChanged, &BrowserSettings::recentDaysChanged}) {
        connect(m_settings, changed, this, &Browser::scheduleLoad);
        connect(m_settings, changed, this, &Browser::describe);
    }
    connect(this, &Browser::searchChanged, this, &Browser::scheduleLoad);
    connect(this, &Browser::searchChanged, this, &Browser::describe);
}

void Browser::followLoader() {
    connect(m_loader, &PageLoader::loadedChanged, this, &Browser::describe);
    connect(m_loader, &PageLoader::loadedChanged, this, &Browser::loadedChanged);
    connect(m_loader, &PageLoader::kindCountsChanged, this, &Browser::kindCountsChanged);
    connect(m_loader, &PageLoader::finished, this, &Browser::loadFinished);
    connect(m_loader, &PageLoader::arriving, this, &Browser::turnTo);
    connect(m_loader, &PageLoader::listsWritten, this, [this] {
        drawRows();
        reorder();
        revealIfPending();
    });
    connect(this, &Browser::selectionChanged, this, [this] {
        m_rows->setSelection(m_selection);
        reselect();
    });
}

void Browser::prepare() {
    if (std::exchange(m_prepared, true))
        return;
    if (m_library->pendingReveal())
        showEverything();
    scheduleLoad();
}

void Browser::appear() {
    prepare();
    if (std::exchange(m_appeared, true))
        return;
    // A turn later, when the window has given its own first focus away.
    QMetaObject::invokeMethod(
        this, [this] { m_gridFocused = true; }, Qt::QueuedConnection);
}

LoadKey Browser::loadKey() const {
    return {
        .place = m_library->place(),
        .revision = m_library->revision(),
        .recursive = m_settings->recursive(),
        .kind = m_settings->kindRaw(),
        .sort = m_settings->sort(),
        .search = m_search,
        .days = m_settings->recentDays(),
    };
}

void Browser::scheduleLoad() {
    if (!m_prepared || m_loadScheduled)
        return;
    // What changes in one turn is loaded once.
    m_loadScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_loadScheduled = false;
            const LoadKey key = loadKey();
            if (key == m_lastKey)
                return;
            m_lastKey = key;
            ++m_loads;
            m_loader->load(key);
        },
        Qt::QueuedConnection);
}

void Browser::loadFinished(const LoadKey& key) {
    // Loads write in the order in which they end. Where that of an older key came last, the page is not what its key
    // says, and loads once more.
    if (--m_loads > 0 || key == m_lastKey)
        return;
    m_lastKey.reset();
    scheduleLoad();
}

void Browser::placeChanged() {
    m_sectionLimits = {};
    m_selection = PathSet();
    m_anchor.reset();
    m_loader->unload();
    // A place that was left and come back to within one turn has the same key, and still is to be loaded.
    m_lastKey.reset();
    scheduleLoad();
    reorder();
}

void Browser::derivedChanged() {
    m_rows->refreshFolders();
    describe();
    // The list of stars is computed a moment after the change that raised the revision, or the end of the first walk:
    // a page that shows it would keep the list of before.
    const bool showsStars = m_drawnPlace.is(Place::Case::starred) || m_drawnPlace.is(Place::Case::recent);
    if (!showsStars || m_library->derived().starred == m_loader->starred())
        return;
    m_lastKey.reset();
    scheduleLoad();
}

void Browser::pendingRevealChanged() {
    if (!m_library->pendingReveal())
        return;
    showEverything();
    // The page may show the file already, and nothing will load. A turn later, since the place may be about to change.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (loaded())
                revealIfPending();
        },
        Qt::QueuedConnection);
}

void Browser::revealIfPending() {
    if (!listsAssets(m_drawnPlace) || m_drawnPlace != m_library->place())
        return;
    const auto asset = revealed(m_library->pendingReveal(), m_loader->assets());
    if (!asset)
        return;
    m_library->setPendingReveal(std::nullopt);
    select(Selection::just(asset->url));
    Q_EMIT scrollRequested(m_rows->rowOf(asset->url), true);
}

void Browser::playingChanged() {
    if (const auto playing = m_library->playing())
        select(Selection::just(playing->asset.url));
    else
        m_gridFocused = true;
}

void Browser::turnTo(const Place& place) {
    // A load that was overtaken by a change of place writes its lists, which the page on view may not even draw.
    if (m_drawnPlace == place || place != m_library->place())
        return;
    m_drawnPlace = place;
    Q_EMIT pageTurned();
}

PageContent Browser::content() const {
    return {folders(), m_loader->assets(), shelf(), sections()};
}

void Browser::drawRows() {
    m_rows->setBlocks(pageBlocks(m_drawnPlace, content(), m_sectionLimits));
}

void Browser::reorder() {
    m_order = pageOrder(m_library->place(), content(), m_sectionLimits, m_order);
    reselect();
}

void Browser::reselect() {
    const PathSet selected = m_selection.value().on(m_order);
    // Marks upon the order on view say the same, and are at hand when the order changes again.
    if (selected.size() == m_selection.value().size())
        m_selection.setValueBypassingBindings(selected);
    const PathSet before = std::exchange(m_selected, selected);
    // To compare many files is dearer than to tell of them.
    if (before.size() != selected.size() || selected.size() > comparedSelected || before.assets() != selected.assets())
        Q_EMIT selectedChanged();
    describe();
}

void Browser::describe() {
    const Place place = m_library->place();
    const auto group = place.groupId() ? m_library->groupWithId(*place.groupId()) : std::nullopt;
    const auto project = place.folderUrl() ? m_library->projectContaining(*place.folderUrl()) : std::nullopt;
    const qsizetype starred = m_library->derived().starred.size();
    m_page = pageName(place.which());
    m_title = PageText::title(place, group, project);
    m_subtitle = PageText::subtitle(place, starred, project);
    m_status = PageText::status({
        .place = place,
        .groupProjects = group ? group->projects.size() : 0,
        .folders = folders().size(),
        .items = m_order.value().size(),
        .bytes = m_order.value().bytes(),
        .selection = m_selection.value().size(),
        .selectedBytes = m_selected.bytes(),
    });
    m_emptyState = PageText::emptyState({
        .place = place,
        .loaded = loaded(),
        .indexing = m_library->indexing(),
        .recursive = m_settings->recursive(),
        .hasFolders = !folders().isEmpty(),
        .hasAssets = !m_loader->assets().isEmpty(),
        .hasFeed = !sections().isEmpty() || !shelf().isEmpty(),
        .kind = m_settings->kind(),
        .search = m_search,
        .recentDays = m_settings->recentDays(),
    });
    QVariantMap headers{{shelfSection, QVariant::fromValue(PageText::shelfHeader(starred))}};
    for (const RecentSection& section : sections())
        headers[rawValue(section.kind)] = QVariant::fromValue(PageText::sectionHeader(section.kind, section.total));
    m_headers = headers;
}

void Browser::showEverything() {
    m_settings->setKindRaw(QStringLiteral("all"));
    setSearch({});
}

void Browser::showMore(const QString& section) {
    const auto kind = assetKindFromRaw(section);
    if (!kind)
        return;
    m_sectionLimits.reveal(*kind);
    drawRows();
    reorder();
}

QList<qint64> Browser::kindCountList() const {
    QList<qint64> counts;
    for (const AssetKind kind : allAssetKinds)
        counts.append(kindCounts()[kind]);
    return counts;
}

} // namespace lumbra
