// SPDX-License-Identifier: GPL-3.0-or-later
#include "IndexContent.h"
#include "library/Library.h"
#include "library/Scanner.h"
#include "library/state/StateStore.h"
#include "platform/Startup.h"
#include "support/EventMirror.h"
#include "support/TestHome.h"

#include <QScopeGuard>
#include <QTest>

#include <sys/mount.h>

#include <filesystem>
#include <thread>

using namespace lumbra;
namespace fs = std::filesystem;

namespace {

std::optional<QByteArray> whyNothingCanBeMounted;

// The library holds what a walk would find now.
bool isTrue(const Library& library) {
    QList<Location> roots;
    const auto projects = library.projects();
    for (const Project& project : projects)
        roots.append(project.url);
    return content(library.index()) == content(Scanner::index(roots, 1));
}

} // namespace

class tst_LibraryEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void eventsDuringTheFirstWalkAreHeldBackAndNotLost();
    void whatLandsBeforeTheFoldersAreWatchedIsNotMissed();
    void whatLandsDuringTheStartIsNotMissed();
    void everyBatchRaisesTheRevision_data();
    void everyBatchRaisesTheRevision();
    void aComparisonKnowsOfTheBatchesBeforeIt();

    void aNewProjectAppearsAtOnceAndItsFilesWithIt();
    void projectsFollowTheirFolders_data();
    void projectsFollowTheirFolders();
    void theSameProjectsKeepTheWatcher();
    void aLinkThatIsAddedBringsItsFilesAndIsWatched();
    void aLinkThatIsRemovedTakesItsFilesWithIt();
    void aLinkThatLeadsElsewhereBringsOtherFiles();
    void theWatcherIsReplacedWithoutAGap();

    void anUnpluggedProjectForgetsNothing();
    void theRootMovedAwayForgetsNothing();
    void theUnmountedRootForgetsNothing();
    void theStateIsSavedOnceTheRootIsBack();

private:
    std::unique_ptr<Library> open() const;
    void link(const Location& target, std::string_view name) const {
        fs::create_directory_symlink(text(target), text(m_root.child(name)));
    }
    static QStringList namesOf(const QList<Project>& projects) {
        QStringList names;
        for (const Project& project : projects)
            names.append(project.name);
        return names;
    }

    std::unique_ptr<TestHome> m_home;
    Location m_root;
};

void tst_LibraryEvents::init() {
    m_home = std::make_unique<TestHome>();
    m_root = m_home->folder("Library");
}

std::unique_ptr<Library> tst_LibraryEvents::open() const {
    auto library = std::make_unique<Library>(m_root, true);
    if (!QTest::qWaitFor([&] { return !library->indexing(); }, patience))
        qFatal("the first walk does not end");
    return library;
}

void tst_LibraryEvents::eventsDuringTheFirstWalkAreHeldBackAndNotLost() {
    const Location file = m_home->file("Library/one/a.png");
    Library library(m_root, true);
    const Location late = m_home->file("Library/one/late.png");
    library.handle({{late, FileEvent::created}});
    QVERIFY(library.indexing());
    QCOMPARE(library.revision(), 0);
    QTRY_VERIFY(library.index().contains(late) && library.index().contains(file));
    QTRY_VERIFY(library.revision() >= 2); // the walk, and the batch that was held back
}

void tst_LibraryEvents::whatLandsBeforeTheFoldersAreWatchedIsNotMissed() {
    m_home->file("Library/one/a.png");
    // Nothing is watched before the end of the start-up, so a walk may not pass either.
    Startup::begin();
    const Library library(m_root, true);
    const auto end = qScopeGuard(&Startup::end);
    QVERIFY(!QTest::qWaitFor([&] { return !library.indexing(); }, 200));
    const Location file = m_home->file("Library/one/b.png");
    Startup::end();
    QTRY_VERIFY(library.index().contains(file));
}

void tst_LibraryEvents::whatLandsDuringTheStartIsNotMissed() {
    for (int i = 0; i < 500; ++i)
        m_home->folder("Library/one/n" + std::to_string(i));
    for (int round = 0; round < 3; ++round) {
        // In every folder, in the order in which they are found and against it.
        std::jthread agent([&] {
            for (int i = 0; i < 500; ++i)
                m_home->file("Library/one/n" + std::to_string(round % 2 ? i : 499 - i) + "/r" + std::to_string(round)
                             + ".png");
        });
        const Library library(m_root, true);
        QTRY_VERIFY(!library.indexing());
        agent.join();
        QTRY_COMPARE(library.index().count(), 500 * (round + 1));
    }
}

void tst_LibraryEvents::everyBatchRaisesTheRevision_data() {
    QTest::addColumn<QByteArray>("path");
    for (const char* path : {"one/node_modules/a.png", "one/.git/a.png", ".lumbra/a.png", "one/nothing-there.png"})
        QTest::newRow(path) << QByteArray(path);
}

void tst_LibraryEvents::everyBatchRaisesTheRevision() {
    QFETCH(QByteArray, path);
    for (const char* present : {"Library/one/node_modules/a.png", "Library/one/.git/a.png", "Library/.lumbra/a.png"})
        m_home->file(present);
    const auto library = open();
    const int revision = library->revision();
    library->handle({{m_root.child(std::string_view(path.constData())), FileEvent::created}});
    QTRY_COMPARE(library->revision(), revision + 1);
    QVERIFY(library->index().isEmpty());
}

void tst_LibraryEvents::aComparisonKnowsOfTheBatchesBeforeIt() {
    m_home->file("Library/one/a.png");
    const auto library = open();
    const int revision = library->revision();
    const Location brief = m_home->file("Library/one/deep/brief.png");
    library->handle({{brief.parent(), FileEvent::created}});
    library->handle({{m_root, FileEvent::mustScan}});
    library->handle({{m_root, FileEvent::mustScan}}); // with the one before in one batch
    QTRY_VERIFY(library->revision() >= revision + 2);
    fs::remove(text(brief));
    QTRY_VERIFY(isTrue(*library));
    QCOMPARE(library->index().count(), 1);
}

void tst_LibraryEvents::aNewProjectAppearsAtOnceAndItsFilesWithIt() {
    const auto library = open();
    QVERIFY(library->projects().isEmpty());
    const Location file = m_home->file("Library/fresh/renders/a.png");
    QTRY_COMPARE(namesOf(library->projects()), QStringList{QStringLiteral("fresh")});
    QTRY_VERIFY(library->index().contains(file));
}

void tst_LibraryEvents::projectsFollowTheirFolders_data() {
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QStringList>("projects");
    const auto names = [](std::initializer_list<const char*> list) {
        QStringList result;
        for (const char* name : list)
            result.append(QString::fromUtf8(name));
        return result;
    };
    QTest::newRow("renamed") << QByteArray("mv one first; echo late > first/deep/late.png") << names({"first", "two"});
    QTest::newRow("removed") << QByteArray("rm -r one") << names({"two"});
    QTest::newRow("moved out") << QByteArray("mv one ..; echo unseen > ../one/unseen.png") << names({"two"});
    QTest::newRow("moved in") << QByteArray("mv ../aside three; echo late > three/deep/late.png")
                              << names({"one", "three", "two"});
    QTest::newRow("moved into another") << QByteArray("mv one two/; echo late > two/one/late.png") << names({"two"});
    QTest::newRow("made of a folder of another")
        << QByteArray("mv one/deep three; echo late > three/late.png") << names({"one", "three", "two"});
    QTest::newRow("exchanged") << QByteArray("mv one t; mv two one; mv t two; echo late > two/deep/late.png")
                               << names({"one", "two"});
    QTest::newRow("hidden") << QByteArray("mv one .one; echo unseen > .one/unseen.png") << names({"two"});
    QTest::newRow("removed and made anew")
        << QByteArray("rm -r one; mkdir -p one/deep; echo 1 > one/deep/1.png") << names({"one", "two"});
    QTest::newRow("replaced by a file") << QByteArray("rm -r one; echo x > one") << names({"two"});
    QTest::newRow("replaced by a link to where it went")
        << QByteArray("mv one ../went; ln -s ../went one; echo late > one/deep/late.png") << names({"one", "two"});
    QTest::newRow("a link replaced by what it led to")
        << QByteArray("ln -s ../aside three; sleep 0.3; rm three; mv ../aside three; echo late > three/late.png")
        << names({"one", "three", "two"});
}

void tst_LibraryEvents::projectsFollowTheirFolders() {
    QFETCH(QByteArray, script);
    QFETCH(QStringList, projects);
    for (const char* file : {"Library/one/a.png", "Library/one/deep/b.png", "Library/two/c.png", "aside/deep/d.png"})
        m_home->file(file);
    const auto library = open();
    const auto before = content(library->index());
    QVERIFY(runScript(m_root, script));
    QTRY_COMPARE(namesOf(library->projects()), projects);
    QTRY_VERIFY(isTrue(*library));
    QVERIFY(content(library->index()) != before);
}

void tst_LibraryEvents::theSameProjectsKeepTheWatcher() {
    m_home->file("Library/one/a.png");
    m_home->file("aside/b.png");
    link(m_home->path().child("aside"), "linked");
    const auto library = open();
    const Watcher* const watcher = &library->watcher();
    library->reloadProjects();
    QCOMPARE(&library->watcher(), watcher);
    // Nor does a project that the root's own watches see.
    m_home->folder("Library/two");
    library->reloadProjects();
    QCOMPARE(library->projects().size(), 3);
    QCOMPARE(&library->watcher(), watcher);
    QCOMPARE(library->watchedPaths(), (QList{m_root, m_home->path().child("aside")}));
}

void tst_LibraryEvents::aLinkThatIsAddedBringsItsFilesAndIsWatched() {
    m_home->file("Library/one/a.png");
    const Location target = m_home->file("aside/deep/b.png").parent().parent();
    const auto library = open();
    QCOMPARE(library->watchedPaths(), QList{m_root});
    const Watcher* const watcher = &library->watcher();
    link(target, "linked");
    QTRY_COMPARE(library->watchedPaths(), (QList{m_root, target}));
    QVERIFY(&library->watcher() != watcher);
    QTRY_VERIFY(library->index().contains(target.child("deep/b.png")));
    const Location late = m_home->file("aside/deep/late.png");
    QTRY_VERIFY(library->index().contains(late));
    QVERIFY(isTrue(*library));
}

void tst_LibraryEvents::aLinkThatIsRemovedTakesItsFilesWithIt() {
    m_home->file("Library/one/a.png");
    m_home->file("aside/deep/b.png");
    link(m_home->path().child("aside"), "linked");
    const auto library = open();
    QCOMPARE(library->index().count(), 2);
    fs::remove(text(m_root.child("linked")));
    QTRY_COMPARE(library->watchedPaths(), QList{m_root});
    QTRY_COMPARE(library->index().count(), 1);
    QVERIFY(isTrue(*library));
}

void tst_LibraryEvents::aLinkThatLeadsElsewhereBringsOtherFiles() {
    m_home->file("aside/b.png");
    m_home->file("other/c.png");
    link(m_home->path().child("aside"), "linked");
    const auto library = open();
    QVERIFY(runScript(m_root, "ln -sfn ../other linked"));
    QTRY_COMPARE(library->watchedPaths(), (QList{m_root, m_home->path().child("other")}));
    QTRY_VERIFY(isTrue(*library));
    QVERIFY(library->index().contains(m_home->path().child("other/c.png")));
    QVERIFY(!library->index().contains(m_home->path().child("aside/b.png")));
}

void tst_LibraryEvents::theWatcherIsReplacedWithoutAGap() {
    for (int i = 0; i < 300; ++i)
        m_home->folder("Library/one/n" + std::to_string(i));
    const Location target = m_home->folder("aside");
    const auto library = open();
    for (int round = 0; round < 3; ++round) {
        const auto watched = library->watchedPaths();
        if (round % 2)
            fs::remove(text(m_root.child("linked")));
        else
            link(target, "linked");
        library->reloadProjects();
        QVERIFY(library->watchedPaths() != watched);
        for (int i = 299; i >= 0; --i)
            m_home->file("Library/one/n" + std::to_string(i) + "/r" + std::to_string(round) + ".png");
        QTRY_COMPARE(library->index().count(), 300 * (round + 1));
    }
}

void tst_LibraryEvents::anUnpluggedProjectForgetsNothing() {
    m_home->file("Library/one/a.png");
    const Location target = m_home->file("disk/project/deep/b.png").parent().parent();
    link(target, "linked");
    const auto library = open();
    const auto before = content(library->index());
    fs::rename(text(target.parent()), text(m_home->path().child("unplugged")));
    const Location late = m_home->file("unplugged/project/late.png");
    // Something else makes the projects be listed anew meanwhile.
    m_home->folder("Library/two");
    QTRY_COMPARE(library->projects().size(), 3);
    QCOMPARE(namesOf(library->projects()),
             (QStringList{QStringLiteral("linked"), QStringLiteral("one"), QStringLiteral("two")}));
    QCOMPARE(library->watchedPaths(), (QList{m_root, target}));
    QVERIFY(content(library->index()) == before);

    fs::rename(text(m_home->path().child("unplugged")), text(target.parent()));
    QTRY_VERIFY(library->index().contains(target.child("late.png")));
    QVERIFY(isTrue(*library));
    QCOMPARE(library->index().count(), 3);
}

void tst_LibraryEvents::theRootMovedAwayForgetsNothing() {
    const Location file = m_home->file("Library/one/a.png");
    const auto library = open();
    const Location away = m_home->path().child("Away");
    fs::rename(text(m_root), text(away));
    const int revision = library->revision();
    library->handle({{file, 0}, {m_root.child("one"), FileEvent::renamed}});
    QTRY_VERIFY(library->revision() > revision);
    QVERIFY(library->index().contains(file));
    QCOMPARE(namesOf(library->projects()), QStringList{QStringLiteral("one")});
    fs::rename(text(away), text(m_root));
    const Location late = m_home->file("Library/one/late.png");
    QTRY_VERIFY(library->index().contains(late));
    QVERIFY(library->index().contains(file));
}

void tst_LibraryEvents::theUnmountedRootForgetsNothing() {
    QVERIFY2(!whyNothingCanBeMounted, whyNothingCanBeMounted.value_or(QByteArray()).constData());
    const Location source = m_home->folder("source");
    m_home->file("source/one/a.png");
    const auto mount = [&] {
        QCOMPARE(::mount(source.path().constData(), m_root.path().constData(), nullptr, MS_BIND, nullptr), 0);
    };
    const auto unmount = [&] { QCOMPARE(::umount2(m_root.path().constData(), MNT_DETACH), 0); };
    mount();
    {
        const auto library = open();
        const auto before = content(library->index());
        QCOMPARE(before.size(), size_t(1));
        unmount();
        // What was on its way when it happened; the bare mount point stands at the root's path now.
        const int revision = library->revision();
        library->handle({{m_root.child("one/a.png"), 0}, {m_root.child("one"), FileEvent::renamed}});
        QTRY_VERIFY(library->revision() > revision);
        QTRY_VERIFY(!library->watcher().events().status().rootsPresent);
        QVERIFY(content(library->index()) == before);
        QCOMPARE(namesOf(library->projects()), QStringList{QStringLiteral("one")});

        m_home->file("source/one/late.png");
        m_home->file("source/two/b.png");
        mount();
        QTRY_COMPARE(library->index().count(), 3);
        QVERIFY(isTrue(*library));
    }
    unmount();
}

void tst_LibraryEvents::theStateIsSavedOnceTheRootIsBack() {
    m_home->file("Library/one/a.png");
    const auto library = open();
    const Location away = m_home->path().child("Away");
    fs::rename(text(m_root), text(away));
    library->togglePin(m_root.child("one"));
    QVERIFY(!m_root.exists()); // which would be a library whose files are all deleted
    fs::rename(text(away), text(m_root));
    QTRY_VERIFY(StateStore::load(m_root) == library->state());
    QCOMPARE(library->state().pins, QStringList{QStringLiteral("one")});
    QCOMPARE(library->index().count(), 1);
}

int main(int argc, char* argv[]) {
    whyNothingCanBeMounted = enterPrivateMounts(); // before there is a second thread
    tst_LibraryEvents test;
    QCoreApplication application(argc, argv);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_libraryevents.moc"
