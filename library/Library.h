// The central store. One instance lives for the whole process, on the main thread; views read its fields and call its
// operations, and background work reports back into it.
//
// Every field is observable and notifies only when its value differs. `revision` counts changes of content: whoever
// shows content compares it and loads again when it moved. All navigation is one assignment of `place`.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AssetIndex.h"
#include "DerivedIndex.h"
#include "KnownFolder.h"
#include "Model.h"
#include "PendingBatches.h"
#include "ProjectGroups.h"
#include "Watcher.h"
#include "operations/OperationQueue.h"
#include "operations/Transfers.h"
#include "state/LibraryState.h"

#include <QBindable>
#include <QFuture>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <memory>
#include <stop_token>

namespace lumbra {

class Library : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<lumbra::Project> projects READ projects NOTIFY projectsChanged BINDABLE bindableProjects)
    Q_PROPERTY(lumbra::LibraryState state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(lumbra::AssetIndex index READ index NOTIFY indexChanged BINDABLE bindableIndex)
    Q_PROPERTY(bool indexing READ indexing NOTIFY indexingChanged BINDABLE bindableIndexing)
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged BINDABLE bindableRevision)
    Q_PROPERTY(lumbra::DerivedIndex derived READ derived NOTIFY derivedChanged)
    Q_PROPERTY(lumbra::Place place READ place WRITE setPlace NOTIFY placeChanged BINDABLE bindablePlace)
    Q_PROPERTY(QString lastError READ lastErrorText WRITE setLastErrorText NOTIFY lastErrorChanged)
    Q_PROPERTY(
        bool paletteOpen READ paletteOpen WRITE setPaletteOpen NOTIFY paletteOpenChanged BINDABLE bindablePaletteOpen)
    Q_PROPERTY(bool onboarding READ onboarding WRITE setOnboarding NOTIFY onboardingChanged BINDABLE bindableOnboarding)

public:
    // The root is fixed for the life of the object; `configured` tells whether the user has ever chosen one. Creates
    // the root if configured, reads the state, lists the projects, starts the watcher and begins the first walk; then
    // returns at once. Never fails: an unreadable root yields no projects.
    Library(const Location& root, bool configured, QObject* parent = nullptr);
    ~Library() override;

    const Location& root() const { return m_root; }

    // All top-level folders, sorted by name, hidden ones included.
    QList<Project> projects() const { return m_projects; }
    QBindable<QList<Project>> bindableProjects() { return &m_projects; }

    // Every change is saved at once and raises `revision`; an equal value does neither.
    LibraryState state() const { return m_state; }
    void setState(const LibraryState& state);

    AssetIndex index() const { return m_index; }
    QBindable<AssetIndex> bindableIndex() { return &m_index; }

    // True while the first walk runs.
    bool indexing() const { return m_indexing; }
    QBindable<bool> bindableIndexing() { return &m_indexing; }

    int revision() const { return m_revision; }
    QBindable<int> bindableRevision() { return &m_revision; }

    // Lags behind `index` by the delay and one computation, but is never replaced by an older result.
    const DerivedIndex& derived() const { return *m_derived.value(); }

    Place place() const { return m_place; }
    void setPlace(const Place& place) { m_place = place; }
    QBindable<Place> bindablePlace() { return &m_place; }

    // A file that the browser is to scroll to and select; the browser clears it.
    std::optional<Location> pendingReveal() const { return m_pendingReveal; }
    void setPendingReveal(const std::optional<Location>& location) { m_pendingReveal = location; }
    QBindable<std::optional<Location>> bindablePendingReveal() { return &m_pendingReveal; }

    // A message for the alert; the view clears it. Empty text reads as none through the property.
    std::optional<QString> lastError() const { return m_lastError; }
    void setLastError(const std::optional<QString>& message) { m_lastError = message; }
    QBindable<std::optional<QString>> bindableLastError() { return &m_lastError; }

    std::optional<Toast> toast() const { return m_toast; }
    void setToast(const std::optional<Toast>& toast) { m_toast = toast; }
    QBindable<std::optional<Toast>> bindableToast() { return &m_toast; }

    // Present means that the screening room is open.
    std::optional<PlayRequest> playing() const { return m_playing; }
    void setPlaying(const std::optional<PlayRequest>& request) { m_playing = request; }
    QBindable<std::optional<PlayRequest>> bindablePlaying() { return &m_playing; }

    bool paletteOpen() const { return m_paletteOpen; }
    void setPaletteOpen(bool open) { m_paletteOpen = open; }
    QBindable<bool> bindablePaletteOpen() { return &m_paletteOpen; }

    bool onboarding() const { return m_onboarding; }
    void setOnboarding(bool shown) { m_onboarding = shown; }
    QBindable<bool> bindableOnboarding() { return &m_onboarding; }

    // Read side.

    QList<Project> visibleProjects() const;
    QList<Project> hiddenProjects() const;
    Assets assetsUnder(const Location& location) const { return index().assetsUnder(location); }

    // Looks with the location as given, then with its canonical form; of several the longest path wins.
    std::optional<Project> projectContaining(const Location& location) const;
    bool isStarred(const Location& location) const;
    std::optional<Date> lastActivity(const Project& project) const;
    FolderStats statsFor(const Location& location) const;

    // The way in from outside: goes to the folder, or to the file's folder and reveals the file there.
    void reveal(const Location& location);

    // State: pins, hidden projects, colours.

    // A pin's key: the path below the root, or the project's name and the rest. Absent for the root and for anything
    // outside the library.
    std::optional<QString> relativePath(const Location& location) const;
    Location urlForRelative(const QString& path) const;
    QList<Location> pinnedURLs() const; // those that exist, in the order of pinning
    void togglePin(const Location& location);
    void hide(const Project& project);
    void unhide(const Project& project);
    void setHue(int index, const QString& name); // the group's colour, if the project stands in one
    int hueFor(const QString& name) const;
    int groupHue(const ProjectGroup& group) const;
    void renameInState(const QString& old, const QString& name);
    void forgetInState(const QString& name);

    // Groups.

    ProjectGroup newGroup(const QString& name, const QStringList& projects);
    void add(const QString& name, const QUuid& groupId);
    void removeFromGroup(const QString& name);
    void renameGroup(const QUuid& id, const QString& name);
    void setGroupHue(const QUuid& id, int index);
    void ungroup(const QUuid& id);
    void toggleCollapsed(const QUuid& id);
    std::optional<ProjectGroup> groupContaining(const QString& name) const;
    std::optional<ProjectGroup> groupWithId(const QUuid& id) const;
    std::optional<GroupSuggestion> groupSuggestion() const;
    void dismiss(const GroupSuggestion& suggestion);

    // Files and folders. These change the disk and report; the watcher brings what changed into `index`. One that fails
    // sets `lastError` and does not stop the others.

    // Moves into the folder what is in the library, and copies what is not; what is there already stays. What stays on
    // its file system has arrived when the call returns, and the future is finished if nothing else is to be done; the
    // rest goes on as `transfer`. `revision` rises once, at the end. Yields where things arrived, in the order given.
    QFuture<QList<Location>> bring(const QList<Location>& urls, const Location& folder);

    // Copies into the folder, as `transfer`; yields where the copies are.
    QFuture<QList<Location>> exportTo(const QList<Location>& urls, const Location& folder);

    // Copies to this very path, as `transfer`; what is there goes once the copy is complete.
    QFuture<QList<Location>> exportAs(const Location& url, const Location& target);

    // The new location, or absent on failure. The name is taken as given.
    std::optional<Location> rename(const Location& url, const QString& name);

    // The new folder, or absent on failure. Blanks around the name are dropped.
    std::optional<Location> newFolderIn(const Location& folder, const QString& name);

    // Asks nothing; goes on in the background, and raises `revision` at its end.
    void trash(const QList<Location>& urls);

    // Where a file of this name can go without taking the place of another, present or on its way.
    Location freeNameFor(const QString& name, const Location& folder) const;

    // The copies under way in the background, summed up; absent while there are none.
    std::optional<Files::Progress> transfer() const { return m_transfer; }
    QBindable<std::optional<Files::Progress>> bindableTransfer() { return &m_transfer; }

    // Ends all of them: each is either wholly at its target or not at all, and its source as it was. Says nothing.
    void cancelTransfer() { m_transfers.cancel(); }

    // Stars all of the files unless all are starred, else takes their stars away, and offers to undo it. Here alone
    // `index` changes at once; for very many files a moment later.
    void toggleStar(const QList<Location>& urls);

    // Projects. Each of these is one step to all others on the same project, though git and the trash are asked in the
    // background.

    void newProjectNamed(const QString& name, const std::optional<Location>& repository);
    void renameProject(const Project& project, const QString& name);
    void linkProject(const Project& project, const Location& repository);
    void unlinkProject(const Project& project);
    void trashProject(const Project& project);

    // Follows a link from another program: "tidy" as host shows that page, "play" plays the file that the query item
    // "path" names, any other host reveals it.
    void handleLink(const QUrl& url);

    // Lists the top-level folders anew, on the spot, and watches those outside the root. Does not touch `revision`.
    void reloadProjects();

    // Raises `revision` by one, which schedules the derived index.
    void contentChanged();

    // Takes a batch of file events; the watcher's way in.
    void handle(const QList<FileEvent>& events);

    // The running watcher: the root, and each project outside it.
    const Watcher& watcher() const { return *m_watcher; }
    const QList<Location>& watchedPaths() const { return m_watchedPaths; }

Q_SIGNALS:
    void projectsChanged();
    void stateChanged();
    void indexChanged();
    void indexingChanged();
    void revisionChanged();
    void derivedChanged();
    void placeChanged();
    void pendingRevealChanged();
    void lastErrorChanged();
    void toastChanged();
    void transferChanged();
    void playingChanged();
    void paletteOpenChanged();
    void onboardingChanged();

    // After each assignment of `derived`, with what it was computed from: the understanding of the library plans its
    // work then.
    void derivedPublished(const lumbra::AssetIndex& index, const QSet<QString>& hidden);

private:
    QString lastErrorText() const { return lastError().value_or(QString()); }
    void setLastErrorText(const QString& text);
    void readState();
    void saveState();
    void buildIndex();
    void publishIndex(AssetIndex index);
    void takeUpRoot();
    void resolve(const QList<FileEvent>& events);
    // Within the call, or for very many changes a moment later.
    void apply(
        quint64 batch, AssetIndex::Changes changes, const std::function<void()>& applied = [] {});
    void applyDue(quint64 batch, const std::function<void()>& applied);
    void publishBatch(quint64 batch, AssetIndex after);
    void handleQueuedEvents();
    void restartWatcherIfNeeded();
    void watcherStarted();
    void scheduleDerived();
    void computeDerived();
    template <typename Change>
    void changeState(Change change);
    void holdEvents() { ++m_eventHolders; }
    void releaseEvents();
    using Finish = std::function<QList<Location>(const QList<Files::Arrival>&)>;
    QFuture<QList<Location>> carryOut(const QList<Files::Transfer>& transfers, Finish finish);
    void setStar(const QList<Location>& urls, bool starred, const OperationQueue::Done& done);
    void undoStar(const QList<Location>& urls, bool starred);
    Project upToDate(const Project& project) const;
    void play(const Location& file);

    const Location m_root;

    Q_OBJECT_BINDABLE_PROPERTY(Library, QList<Project>, m_projects, &Library::projectsChanged)
    LibraryState m_state;
    Q_OBJECT_BINDABLE_PROPERTY(Library, AssetIndex, m_index, &Library::indexChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(Library, bool, m_indexing, true, &Library::indexingChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(Library, int, m_revision, 0, &Library::revisionChanged)
    // Behind a pointer, which compares at once; whether the values differ is found out in the background.
    Q_OBJECT_BINDABLE_PROPERTY(Library, std::shared_ptr<const DerivedIndex>, m_derived, &Library::derivedChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Library, Place, m_place, &Library::placeChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Library, std::optional<Location>, m_pendingReveal, &Library::pendingRevealChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Library, std::optional<QString>, m_lastError, &Library::lastErrorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Library, std::optional<Toast>, m_toast, &Library::toastChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Library, std::optional<Files::Progress>, m_transfer, &Library::transferChanged)
    Q_OBJECT_BINDABLE_PROPERTY(Library, std::optional<PlayRequest>, m_playing, &Library::playingChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(Library, bool, m_paletteOpen, false, &Library::paletteOpenChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(Library, bool, m_onboarding, false, &Library::onboardingChanged)

    KnownFolder m_rootFolder;
    bool m_isStateSaved = true;
    std::unique_ptr<Watcher> m_watcher;
    std::vector<std::unique_ptr<Watcher>> m_formerWatchers; // each until the one after it misses nothing
    QList<Location> m_watchedPaths;
    QSet<Location> m_unseenPaths; // came to be watched, or ceased to, and are to be compared with the index
    bool m_isWalkBegun = false;
    PendingBatches m_batches;
    // Held back while `indexing`, while an operation holds them, and by a comparison while batches are on their way.
    QList<FileEvent> m_queuedEvents;
    int m_eventHolders = 0; // operations under way between whose steps no event may come
    Transfers m_transfers;
    OperationQueue m_projectWork;
    OperationQueue m_starring;
    QTimer m_derivedDelay;           // a burst of changes collapses into one computation
    quint64 m_derivedGeneration = 0; // a computation that finds itself outdated drops its result
    std::stop_source m_stop;
};

} // namespace lumbra
