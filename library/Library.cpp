// SPDX-License-Identifier: GPL-3.0-or-later
#include "Library.h"

#include "Resolver.h"
#include "Scanner.h"
#include "core/PreferenceKeys.h"
#include "core/ProjectLinks.h"
#include "core/Stars.h"
#include "platform/NaturalOrder.h"
#include "platform/Preferences.h"
#include "platform/Tasks.h"
#include "state/StateStore.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <numeric>

namespace lumbra {

namespace {

constexpr int derivedDelay = 200;            // ms after the last change of content
constexpr double watcherLatency = 0.4;       // s between two batches of a burst
constexpr qsizetype mostAppliedAtOnce = 500; // changes, of which each may rebuild a folder, some 10 microseconds
constexpr int walkers = 2;                   // more gain nothing: the disk and the kernel's locks are the limit

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

// True of a link that leads to the folder, whether the folder is there or not.
bool leadsTo(const Location& link, const Location& folder) {
    const QString target = QFile::symLinkTarget(link.toString());
    return !target.isEmpty() && Location(QStringView(target)).canonical() == folder;
}

bool isWholeTree(const FileEvent& event) {
    return event.flags & FileEvent::mustScan;
}

qsizetype sizeOf(const std::vector<AssetIndex::Changes>& changes) {
    return std::accumulate(changes.begin(), changes.end(), qsizetype(0),
                           [](qsizetype sum, const auto& each) { return sum + each.gone.size() + each.assets.size(); });
}

AssetIndex applying(const std::vector<AssetIndex::Changes>& changes, const AssetIndex& index) {
    return std::accumulate(changes.begin(), changes.end(), index,
                           [](const AssetIndex& before, const auto& each) { return before.applying(each); });
}

} // namespace

Library::Library(const Location& root, bool configured, QObject* parent)
    : QObject(parent), m_root(root), m_derived(std::make_shared<const DerivedIndex>()), m_rootFolder(root) {
    m_onboarding = !configured;
    m_derivedDelay.setSingleShot(true);
    m_derivedDelay.setInterval(derivedDelay);
    connect(&m_derivedDelay, &QTimer::timeout, this, &Library::computeDerived);
    connect(&m_transfers, &Transfers::progressChanged, this, [this] { m_transfer = m_transfers.progress(); });
    if (configured)
        QDir().mkpath(m_root.toString());
    m_rootFolder = KnownFolder(m_root);
    readState();
    reloadProjects(); // and with it the watcher, which begins the first walk
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
    state.hidden = Preferences::shared().value(QString(PreferenceKeys::hiddenProjects)).toStringList();
    setState(state);
}

void Library::setState(const LibraryState& state) {
    if (m_state == state)
        return;
    m_state = state;
    saveState();
    Q_EMIT stateChanged();
    contentChanged();
}

void Library::saveState() {
    // A save makes the folders that it needs. In the place of a root that was moved away, that would be a library whose
    // files are all deleted; so it waits until the root is back.
    m_isStateSaved = !m_rootFolder.isKnown() || m_rootFolder.isStillThere();
    if (m_isStateSaved)
        StateStore::save(m_state, m_root);
}

void Library::contentChanged() {
    m_revision = m_revision + 1;
    scheduleDerived();
}

void Library::setLastErrorText(const QString& text) {
    setLastError(text.isEmpty() ? std::nullopt : std::optional(text));
}

void Library::reloadProjects() {
    const QList<Project> known = m_projects;
    QList<Project> found;
    const auto entries =
        QDir(m_root.toString()).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::NoSort);
    for (const QString& name : entries) {
        if (name.startsWith(u'.'))
            continue;
        const Location entry = m_root.child(name);
        const Location url = entry.canonical();
        if (url.isFolder()) {
            found.append({name, url, ProjectLinks::repoOf(url)});
            continue;
        }
        // A disk that was unplugged takes nothing with it.
        const auto before = std::ranges::find(known, name, &Project::name);
        if (before != known.end() && leadsTo(entry, before->url))
            found.append(*before);
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
    const QSet<Location> before(m_watchedPaths.begin(), m_watchedPaths.end());
    const QSet<Location> now(paths.begin(), paths.end());
    m_unseenPaths += (before - now) + (now - before);
    m_watchedPaths = paths;
    // The old one goes on until the new one sees everything, but not one that did not come so far itself.
    if (m_watcher && m_watcher->hasStarted())
        m_formerWatchers.push_back(std::move(m_watcher));
    m_watcher = std::make_unique<Watcher>(
        paths, watcherLatency, [this](const QList<FileEvent>& events) { handle(events); },
        [this] { watcherStarted(); });
}

// From here on nothing is missed, so what the index knows can be brought in step with the disk.
void Library::watcherStarted() {
    for (const auto& former : m_formerWatchers)
        former->deliverNow([this, ended = former.get()] {
            std::erase_if(m_formerWatchers, [ended](const auto& watcher) { return watcher.get() == ended; });
        });
    const auto unseen = std::exchange(m_unseenPaths, {});
    if (!std::exchange(m_isWalkBegun, true))
        return buildIndex();
    QList<FileEvent> comparisons;
    for (const Location& path : unseen)
        comparisons.append({path, FileEvent::mustScan});
    if (!comparisons.isEmpty())
        handle(comparisons);
}

void Library::buildIndex() {
    Tasks::run(Tasks::Pool::utility, [roots = locationsOf(m_projects), stop = m_stop.get_token()] {
        return Scanner::index(roots, walkers, stop);
    }).then(this, [this](AssetIndex index) { publishIndex(std::move(index)); });
}

void Library::publishIndex(AssetIndex index) {
    m_index = std::move(index);
    m_indexing = false;
    contentChanged();
    // This is no burst of changes, and until it is summed there are no sums at all.
    m_derivedDelay.stop();
    computeDerived();
    handleQueuedEvents();
}

void Library::handle(const QList<FileEvent>& events) {
    Q_ASSERT(QThread::currentThread() == thread());
    // A comparison finds out what has gone from what is known, and so must know what the batches before it found.
    if (m_indexing || m_eventHolders > 0 || (!m_batches.isEmpty() && std::ranges::any_of(events, isWholeTree))) {
        m_queuedEvents += events;
        return;
    }
    const auto isRoot = [this](const FileEvent& event) { return event.path == m_root && isWholeTree(event); };
    const auto isInRoot = [this](const FileEvent& event) { return event.path.parent() == m_root; };
    const bool isRootBack = std::ranges::any_of(events, isRoot);
    if (isRootBack)
        takeUpRoot();
    // A root that was unmounted or moved away takes no project with it; it may come back.
    if ((isRootBack || std::ranges::any_of(events, isInRoot)) && m_rootFolder.isStillThere())
        reloadProjects();
    resolve(events);
}

void Library::handleQueuedEvents() {
    const auto queued = std::exchange(m_queuedEvents, {});
    if (!queued.isEmpty())
        handle(Resolver::merged(queued));
}

// The root is there for the first time, or again, and may be another folder than before.
void Library::takeUpRoot() {
    m_rootFolder = KnownFolder(m_root);
    if (!m_isStateSaved)
        saveState();
}

void Library::resolve(const QList<FileEvent>& events) {
    const quint64 number = m_batches.begin();
    Tasks::run(Tasks::Pool::userInitiated, [events, roots = locationsOf(m_projects), root = m_rootFolder,
                                            index = index()] {
        return Resolver::resolve(events, roots, root, index);
    }).then(this, [this, number](AssetIndex::Changes changes) { apply(number, std::move(changes)); });
}

void Library::apply(quint64 batch, AssetIndex::Changes changes, const std::function<void()>& applied) {
    m_batches.resolve(batch, std::move(changes));
    applyDue(batch, applied);
}

void Library::applyDue(quint64 batch, const std::function<void()>& applied) {
    const auto due = m_batches.due(batch);
    if (sizeOf(due) <= mostAppliedAtOnce) {
        publishBatch(batch, applying(due, index()));
        applied();
        return;
    }
    Tasks::run(Tasks::Pool::userInitiated, [due, before = index()] {
        return applying(due, before);
    }).then(this, [this, batch, applied, before = index()](AssetIndex after) {
        // Other batches were applied meanwhile, whose changes it lacks.
        if (before != index())
            return applyDue(batch, applied);
        publishBatch(batch, std::move(after));
        applied();
    });
}

void Library::publishBatch(quint64 batch, AssetIndex after) {
    m_batches.finish(batch);
    AssetIndex before = m_index;
    m_index = std::move(after);
    Tasks::dropLater(std::move(before));
    contentChanged();
    if (m_batches.isEmpty())
        handleQueuedEvents();
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
    if (const auto found = stats.find(location))
        return *found;
    return stats[Location(QDir::cleanPath(location.toString()))];
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
