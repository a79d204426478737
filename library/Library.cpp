// SPDX-License-Identifier: GPL-3.0-or-later
#include "Library.h"

#include "Resolver.h"
#include "Scanner.h"
#include "core/ProjectLinks.h"
#include "core/Stars.h"
#include "platform/NaturalOrder.h"
#include "platform/Preferences.h"
#include "platform/Tasks.h"
#include "state/StateStore.h"

#include <QDir>
#include <QThread>

#include <algorithm>

namespace lumbra {

namespace {

constexpr int derivedDelay = 200;      // ms after the last change of content
constexpr double watcherLatency = 0.4; // s between two batches of a burst
constexpr int walkers = 2;             // more gain nothing: the disk and the kernel's locks are the limit

QList<Location> locationsOf(const QList<Project>& projects) {
    QList<Location> locations;
    locations.reserve(projects.size());
    for (const Project& project : projects)
        locations.append(project.url);
    return locations;
}

// Of the projects that hold the path, the one with the longest path; among equals the first.
std::optional<Project> longestHolding(const QList<Project>& projects, const Location& location) {
    const Project* best = nullptr;
    for (const Project& project : projects)
        if (location.isAtOrBelow(project.url) && (!best || project.url.view().size() > best->url.view().size()))
            best = &project;
    return best ? std::optional(*best) : std::nullopt;
}

} // namespace

Library::Library(const Location& root, bool configured, QObject* parent)
    : QObject(parent), m_root(root), m_derived(std::make_shared<const DerivedIndex>()) {
    m_onboarding = !configured;
    m_derivedDelay.setSingleShot(true);
    m_derivedDelay.setInterval(derivedDelay);
    connect(&m_derivedDelay, &QTimer::timeout, this, &Library::computeDerived);
    if (configured)
        QDir().mkpath(m_root.toString());
    readState();
    reloadProjects();
    buildIndex();
}

Library::~Library() {
    m_stop.request_stop();
}

void Library::readState() {
    if (const auto state = StateStore::load(m_root)) {
        setState(*state);
        return;
    }
    // Where older versions kept the hidden projects.
    LibraryState state;
    state.hidden = Preferences::shared().value(QStringLiteral("hiddenProjects")).toStringList();
    setState(state);
}

void Library::setState(const LibraryState& state) {
    if (m_state == state)
        return;
    m_state = state;
    StateStore::save(m_state, m_root);
    Q_EMIT stateChanged();
    contentChanged();
}

void Library::contentChanged() {
    m_revision = m_revision + 1;
    scheduleDerived();
}

void Library::setLastErrorText(const QString& text) {
    setLastError(text.isEmpty() ? std::nullopt : std::optional(text));
}

void Library::reloadProjects() {
    QList<Project> found;
    const auto entries =
        QDir(m_root.toString()).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::NoSort);
    for (const QString& name : entries) {
        const Location url = m_root.child(name).canonical();
        if (!name.startsWith(u'.') && url.isFolder())
            found.append({name, url, ProjectLinks::repoOf(url)});
    }
    NaturalOrder::shared().sort(found, [](const Project& project) { return project.name; });
    m_projects = found;
    restartWatcherIfNeeded();
}

void Library::restartWatcherIfNeeded() {
    QList<Location> paths{m_root};
    for (const Project& project : m_projects.value())
        if (!project.url.isInside(m_root))
            paths.append(project.url);
    if (paths == m_watchedPaths)
        return;
    m_watchedPaths = paths;
    // The old watcher ends after the new one has started, so that nothing falls between them.
    m_watcher =
        std::make_unique<Watcher>(paths, watcherLatency, [this](const QList<FileEvent>& events) { handle(events); });
}

void Library::buildIndex() {
    m_indexing = true;
    Tasks::run(Tasks::Pool::utility, [roots = locationsOf(m_projects), stop = m_stop.get_token()] {
        return Scanner::index(roots, walkers, stop);
    }).then(this, [this](AssetIndex index) { publishIndex(std::move(index)); });
}

void Library::publishIndex(AssetIndex index) {
    m_index = std::move(index);
    m_indexing = false;
    contentChanged();
    const auto queued = std::exchange(m_queuedEvents, {});
    if (!queued.isEmpty())
        handle(queued);
}

void Library::handle(const QList<FileEvent>& events) {
    Q_ASSERT(QThread::currentThread() == thread());
    if (m_indexing) {
        m_queuedEvents += events;
        return;
    }
    const bool touchesRoot = std::ranges::any_of(events, [this](const FileEvent& event) {
        return event.path.parent() == m_root || (event.path == m_root && (event.flags & FileEvent::mustScan));
    });
    // A root that was unmounted or moved away takes no project with it; it may come back.
    if (touchesRoot && m_root.isFolder())
        reloadProjects();
    Tasks::run(Tasks::Pool::userInitiated, [events, roots = locationsOf(m_projects), root = m_root, index = index()] {
        return Resolver::resolve(events, roots, root, index);
    }).then(this, [this](const AssetIndex::Changes& changes) { apply(changes); });
}

void Library::apply(const AssetIndex::Changes& changes) {
    // Batches overtake each other, so a change is of paths and never of positions.
    AssetIndex before = m_index;
    m_index = before.applying(changes);
    Tasks::dropLater(std::move(before));
    contentChanged();
}

void Library::scheduleDerived() {
    ++m_derivedGeneration;
    m_derivedDelay.start();
}

void Library::computeDerived() {
    const QStringList hiddenNames = m_state.hidden;
    const QSet<QString> hidden(hiddenNames.begin(), hiddenNames.end());
    Tasks::run(Tasks::Pool::userInitiated,
               [index = index(), projects = projects(), hidden, root = m_root, known = m_derived.value()] {
                   auto made = std::make_shared<const DerivedIndex>(
                       DerivedIndex::compute(index, projects, hidden, root, Date::now()));
                   // Compared here and not by the property: at a million files it takes milliseconds.
                   return *made == *known ? known : made;
               })
        .then(this, [this, generation = m_derivedGeneration, index = index(),
                     hidden](std::shared_ptr<const DerivedIndex> made) {
            if (generation != m_derivedGeneration)
                return;
            auto before = m_derived.value();
            m_derived = std::move(made);
            Tasks::dropLater(std::move(before));
            Q_EMIT derivedPublished(index, hidden);
        });
}

QList<Project> Library::visibleProjects() const {
    QList<Project> visible = m_projects;
    visible.removeIf([this](const Project& project) { return m_state.hidden.contains(project.name); });
    return visible;
}

QList<Project> Library::hiddenProjects() const {
    QList<Project> hidden = m_projects;
    hidden.removeIf([this](const Project& project) { return !m_state.hidden.contains(project.name); });
    return hidden;
}

std::optional<Project> Library::projectContaining(const Location& location) const {
    if (auto found = longestHolding(m_projects, location))
        return found;
    return longestHolding(m_projects, location.canonical());
}

bool Library::isStarred(const Location& location) const {
    if (const auto asset = index().find(location))
        return asset->isStarred();
    return Stars::read(location).has_value();
}

std::optional<Date> Library::lastActivity(const Project& project) const {
    const auto found = derived().activity.constFind(project.url);
    return found == derived().activity.cend() ? std::nullopt : std::optional(*found);
}

FolderStats Library::statsFor(const Location& location) const {
    const auto& stats = derived().stats;
    if (const auto found = stats.constFind(location); found != stats.cend())
        return *found;
    return stats.value(Location(QDir::cleanPath(location.toString())));
}

void Library::reveal(const Location& given) {
    const Location location = given.canonical();
    if (!location.isAtOrBelow(m_root.canonical()) && !projectContaining(location)) {
        setLastError(given.toString() + QStringLiteral(" is outside the library (") + m_root.abbreviated()
                     + QStringLiteral(")."));
        return;
    }
    if (location.isFolder()) {
        setPlace(Place::folder(location));
        return;
    }
    setPlace(Place::folder(location.parent()));
    setPendingReveal(location);
}

} // namespace lumbra
