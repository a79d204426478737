// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ProjectLinks.h"
#include "core/Stars.h"
#include "library/Library.h"
#include "library/state/StateStore.h"
#include "platform/Preferences.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include <unistd.h>

using namespace lumbra;

class LibraryTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    Location m_root;

    static QStringList namesOf(const QList<Project>& projects) {
        QStringList names;
        for (const Project& project : projects)
            names.append(project.name);
        return names;
    }

    std::unique_ptr<Library> open(bool configured = true) const {
        auto library = std::make_unique<Library>(m_root, configured);
        if (!QTest::qWaitFor([&] { return !library->indexing(); }, patience))
            qFatal("the first walk does not end");
        return library;
    }

    Project project(const Library& library, const char* name) const {
        const auto all = library.projects();
        for (const Project& candidate : all)
            if (candidate.name == QLatin1String(name))
                return candidate;
        qFatal("no project %s", name);
    }

    void link(const Location& target, std::string_view name) const {
        QVERIFY(::symlink(target.path().constData(), m_root.child(name).path().constData()) == 0);
    }

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_root = m_home->folder("Library");
    }

    void startsOnARealFolder() {
        m_home->file("Library/one/a.png");
        m_home->file("Library/one/sub/b.mp4");
        m_home->file("Library/two/c.txt");
        m_home->file("Library/loose.png");
        m_home->file("Library/.lumbra/hidden.png");
        Library library(m_root, true);
        QVERIFY(library.indexing());
        QVERIFY(library.index().isEmpty());
        QCOMPARE(namesOf(library.projects()), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
        QVERIFY(library.place() == Place::recent());
        QVERIFY(!library.onboarding());
        QTRY_VERIFY(!library.indexing());
        QCOMPARE(library.index().count(), 3); // a plain file directly under the root never enters
        QCOMPARE(library.revision(), 1);
        QCOMPARE(library.assetsUnder(project(library, "one").url).size(), 2);
        QTRY_COMPARE(library.statsFor(project(library, "one").url).count, 2);
        QCOMPARE(library.statsFor(m_root.child("none")).count, 0);
        QVERIFY(library.lastActivity(project(library, "two")));
    }

    void aMachineWithoutAConfigurationShowsOnboardingAndCreatesNothing() {
        m_root = m_home->path().child("NotYet");
        Library library(m_root, false);
        QVERIFY(library.onboarding());
        QVERIFY(!m_root.exists());
    }

    void aConfiguredRootIsCreated() {
        m_root = m_home->path().child("deep/er/Library");
        Library library(m_root, true);
        QVERIFY(m_root.isFolder());
        QVERIFY(library.projects().isEmpty());
    }

    void aRootThatIsAFileOrUnreadableYieldsNoProjects() {
        m_root = m_home->file("a-file");
        const auto library = open();
        QVERIFY(library->projects().isEmpty());
        QVERIFY(library->index().isEmpty());
        library->togglePin(m_root.child("x")); // a save that can't succeed is silent
        QVERIFY(!library->lastError());
    }

    void aLinkUnderTheRootIsAProject() {
        const Location target = m_home->folder("elsewhere/target");
        m_home->file("elsewhere/target/deep/a.png");
        link(target, "linked");
        const auto library = open();
        QCOMPARE(namesOf(library->projects()), QStringList{QStringLiteral("linked")});
        QCOMPARE(library->projects().first().url, target);
        QVERIFY(library->index().contains(target.child("deep/a.png")));
    }

    void aLinkThatLeadsNowhereOrToAFileIsNoProject() {
        link(m_home->path().child("gone"), "dead");
        link(m_home->file("file.png"), "file");
        QVERIFY(open()->projects().isEmpty());
    }

    void projectsKnowTheirRepository() {
        m_home->file("Library/one/.lumbra.json", R"({"repo":"~/code/one"})");
        const auto library = open();
        QCOMPARE(library->projects().first().repo, std::optional(m_home->path().child("code/one")));
    }

    void theLongestProjectContainsAPath() {
        // A link under the root that points into another project: two projects hold the file.
        m_home->file("Library/outer/inner/a.png");
        link(m_root.child("outer/inner"), "inner-link");
        const auto library = open();
        QCOMPARE(library->projectContaining(m_root.child("outer/inner/a.png"))->name, QStringLiteral("inner-link"));
        QCOMPARE(library->projectContaining(m_root.child("outer/b.png"))->name, QStringLiteral("outer"));
        QCOMPARE(library->projectContaining(m_root.child("inner-link/a.png"))->name, QStringLiteral("inner-link"));
        QVERIFY(!library->projectContaining(m_root.child("outer-2/a.png")));
        QVERIFY(!library->projectContaining(m_root));
    }

    void revealGoesToTheFilesFolder() {
        const Location file = m_home->file("Library/one/sub/a.png");
        const auto library = open();
        library->reveal(file);
        QVERIFY(library->place() == Place::folder(file.parent()));
        QCOMPARE(library->pendingReveal(), std::optional(file));
        library->setPendingReveal(std::nullopt);
        library->reveal(file.parent().parent());
        QVERIFY(library->place() == Place::folder(m_root.child("one")));
        QVERIFY(!library->pendingReveal());
    }

    void revealOfALinkedProjectWorks() {
        const Location file = m_home->file("elsewhere/a.png");
        link(file.parent(), "linked");
        const auto library = open();
        library->reveal(m_root.child("linked/a.png"));
        QVERIFY(library->place() == Place::folder(file.parent()));
    }

    void revealOutsideTheLibraryIsAnError() {
        const auto library = open();
        library->reveal(Location(QByteArray("/usr/share/x.png")));
        QCOMPARE(*library->lastError(), QStringLiteral("/usr/share/x.png is outside the library (~/Library)."));
        QVERIFY(library->place() == Place::recent());
    }

    void anEqualStateNeitherSavesNorMoves() {
        m_home->folder("Library/one");
        const auto library = open();
        library->togglePin(m_root.child("one"));
        const int revision = library->revision();
        QVERIFY(QFile::remove(m_root.child(".lumbra/library.json").toString()));
        QSignalSpy changed(library.get(), &Library::stateChanged);
        library->setState(library->state());
        QCOMPARE(changed.count(), 0);
        QCOMPARE(library->revision(), revision);
        QVERIFY(!m_root.child(".lumbra/library.json").exists());
    }

    void theStateSurvivesARestart() {
        m_home->folder("Library/one/x");
        open()->togglePin(m_root.child("one/x"));
        const auto library = open();
        QCOMPARE(library->state().pins, QStringList{QStringLiteral("one/x")});
        QCOMPARE(library->pinnedURLs(), QList<Location>{m_root.child("one/x")});
        library->togglePin(m_root.child("one/x"));
        QVERIFY(library->pinnedURLs().isEmpty());
    }

    void aBrokenStateFileYieldsTheDefaultsAndIsReplacedByTheNextChange() {
        m_home->folder("Library/one");
        m_home->file("Library/.lumbra/library.json", R"({"pins": )");
        const auto library = open();
        QVERIFY(library->state() == LibraryState());
        library->togglePin(m_root.child("one"));
        QVERIFY(StateStore::load(m_root) == library->state());
    }

    void hiddenProjectsOfOlderVersionsAreTaken() {
        m_home->folder("Library/one");
        Preferences::shared().setValue(QStringLiteral("hiddenProjects"), QStringList{QStringLiteral("one")});
        const auto library = open();
        Preferences::shared().remove(QStringLiteral("hiddenProjects"));
        QCOMPARE(namesOf(library->hiddenProjects()), QStringList{QStringLiteral("one")});
        QVERIFY(StateStore::load(m_root) == library->state());
    }

    void theRootHasNoRelativePath() {
        const auto library = open();
        library->togglePin(m_root);
        QVERIFY(library->state().pins.isEmpty());
        QVERIFY(!library->relativePath(Location(QByteArray("/usr"))));
    }

    void aPinOutsideTheRootIsKeptByTheProjectsName() {
        const Location target = m_home->folder("elsewhere/x/y");
        link(m_home->path().child("elsewhere"), "far");
        const auto library = open();
        QCOMPARE(library->relativePath(target), std::optional(QStringLiteral("far/x/y")));
        QCOMPARE(library->relativePath(target.parent().parent()), std::optional(QStringLiteral("far")));
        QCOMPARE(library->urlForRelative(QStringLiteral("far/x/y")), target);
        QCOMPARE(library->urlForRelative(QStringLiteral("unknown/x")), m_root.child("unknown/x"));
    }

    void aPinOutsideTheRootSurvivesAMoveOfItsProjectsTarget() {
        m_home->folder("elsewhere/x/y");
        link(m_home->path().child("elsewhere"), "far");
        const auto library = open();
        library->togglePin(m_home->path().child("elsewhere/x/y"));
        QVERIFY(QDir().rename(m_home->path().child("elsewhere").toString(), m_home->path().child("moved").toString()));
        QVERIFY(QFile::remove(m_root.child("far").toString()));
        link(m_home->path().child("moved"), "far");
        library->reloadProjects();
        QCOMPARE(library->state().pins, QStringList{QStringLiteral("far/x/y")});
        QCOMPARE(library->pinnedURLs(), QList<Location>{m_home->path().child("moved/x/y")});
    }

    void aPinThatHasGoneStaysAndIsNotShown() {
        m_home->folder("Library/one/x");
        const auto library = open();
        library->togglePin(m_root.child("one/x"));
        QVERIFY(QDir(m_root.child("one/x").toString()).removeRecursively());
        QVERIFY(library->pinnedURLs().isEmpty());
        QCOMPARE(library->state().pins.size(), 1);
    }

    void hidingTheProjectOnViewReturnsToRecent() {
        m_home->folder("Library/one/sub");
        const auto library = open();
        library->setPlace(Place::folder(m_root.child("one/sub")));
        library->hide(project(*library, "one"));
        QVERIFY(library->place() == Place::recent());
        QVERIFY(library->visibleProjects().isEmpty());
        library->hide(project(*library, "one"));
        QCOMPARE(library->state().hidden.size(), 1);
        library->unhide(project(*library, "one"));
        QCOMPARE(library->visibleProjects().size(), 1);
    }

    void membersShowTheGroupsColour() {
        m_home->folder("Library/a");
        m_home->folder("Library/b");
        const auto library = open();
        library->setHue(7, QStringLiteral("a"));
        QCOMPARE(library->hueFor(QStringLiteral("a")), 7);
        const auto group = library->newGroup(QStringLiteral("G"), {QStringLiteral("a"), QStringLiteral("b")});
        QCOMPARE(library->hueFor(QStringLiteral("a")), Hue::indexFor(QStringLiteral("G")));
        library->setHue(4, QStringLiteral("G")); // no project of this name: the colour of the name
        QCOMPARE(library->hueFor(QStringLiteral("b")), 4);
        library->setHue(2, QStringLiteral("a"));
        QCOMPARE(library->groupWithId(group.id)->color, std::optional(2));
        QCOMPARE(library->hueFor(QStringLiteral("b")), 2);
        library->setGroupHue(group.id, 9);
        QCOMPARE(library->groupHue(*library->groupWithId(group.id)), 9);
        library->removeFromGroup(QStringLiteral("a"));
        QCOMPARE(library->hueFor(QStringLiteral("a")), 7);
    }

    void groupsAreMadeRenamedClosedAndUndone() {
        for (const char* name : {"acme-web", "acme-api", "other", "acme-hidden"})
            m_home->folder("Library/" + std::string(name));
        const auto library = open();
        library->hide(project(*library, "acme-hidden"));
        const auto suggestion = library->groupSuggestion();
        QVERIFY(suggestion);
        QCOMPARE(suggestion->projects, (QStringList{QStringLiteral("acme-api"), QStringLiteral("acme-web")}));
        const auto group = library->newGroup(QStringLiteral("Acme"), suggestion->projects);
        QVERIFY(!library->groupSuggestion());
        library->renameGroup(group.id, QStringLiteral("Best"));
        library->toggleCollapsed(group.id);
        QCOMPARE(library->groupContaining(QStringLiteral("acme-web"))->name, QStringLiteral("Best"));
        QVERIFY(library->groupWithId(group.id)->collapsed);
        library->renameInState(QStringLiteral("acme-web"), QStringLiteral("new-web"));
        QVERIFY(library->groupContaining(QStringLiteral("new-web")));
        library->ungroup(group.id);
        QVERIFY(library->state().groups.isEmpty());
        library->renameGroup(QUuid::createUuid(), QStringLiteral("x"));
        library->toggleCollapsed(QUuid::createUuid());
        QVERIFY(!library->groupSuggestion()); // its word was dismissed with the group
    }

    void aDismissedSuggestionGivesWayToTheNext() {
        for (const char* name : {"acme-web", "acme-api", "beta-a", "beta-b"})
            m_home->folder("Library/" + std::string(name));
        const auto library = open();
        library->dismiss(*library->groupSuggestion());
        QCOMPARE(library->groupSuggestion()->prefix, QStringLiteral("beta"));
        library->dismiss(*library->groupSuggestion());
        QVERIFY(!library->groupSuggestion());
    }

    void aBurstOfChangesIsComputedOnce() {
        m_home->file("Library/one/a.png");
        const auto library = open();
        QSignalSpy published(library.get(), &Library::derivedPublished);
        QTRY_COMPARE(published.count(), 1);
        for (int i = 0; i < 10; ++i)
            library->contentChanged();
        QTRY_COMPARE(published.count(), 2);
        // The next one comes only from a new change: had the ten been computed apart, they would be there by now.
        library->contentChanged();
        QTRY_COMPARE(published.count(), 3);
    }

    void anEqualDerivedIndexNotifiesNobody() {
        m_home->file("Library/one/a.png");
        const auto library = open();
        QSignalSpy published(library.get(), &Library::derivedPublished);
        QTRY_COMPARE(published.count(), 1);
        QSignalSpy changed(library.get(), &Library::derivedChanged);
        library->contentChanged();
        QTRY_COMPARE(published.count(), 2);
        QCOMPARE(changed.count(), 0);
    }

    void starsAreReadFromTheIndexFirst() {
        const Location file = m_home->file("Library/one/a.png");
        const Location loose = m_home->file("Library/loose.bin");
        QVERIFY(Stars::write(file, true));
        QVERIFY(Stars::write(loose, true));
        const auto library = open();
        QVERIFY(library->isStarred(file));
        QVERIFY(library->isStarred(loose)); // not an asset: the file itself is asked
        QVERIFY(!library->isStarred(m_root.child("one/none.png")));
    }
};

QTEST_GUILESS_MAIN(LibraryTest)
#include "tst_library.moc"
