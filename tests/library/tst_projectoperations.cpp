// SPDX-License-Identifier: GPL-3.0-or-later
#include "LibraryOfProjects.h"
#include "core/ProjectLinks.h"
#include "support/Strings.h"

using namespace lumbra;

class ProjectOperationsTest : public QObject, protected LibraryOfProjects {
    Q_OBJECT

private:
    void link(const Location& target, const Location& at) const {
        QVERIFY(::symlink(target.path().constData(), at.path().constData()) == 0);
    }

    static Location entryInTrash(const TestHome& home, const char* name) {
        return home.path().child(".local/share/Trash/files").child(std::string_view(name));
    }

private Q_SLOTS:
    void init() { m_library = std::make_unique<OpenLibrary>(m_home); }
    void cleanup() { m_library.reset(); }

    // Making.

    void aNewProjectHasItsThreeFoldersAndIsShown() {
        OpenLibrary& library = *m_library;
        library.open();
        library->newProjectNamed(QStringLiteral("site"), std::nullopt);
        QCOMPARE(entriesOf(library.at("site")), strings({"files", "images", "videos"}));
        QCOMPARE(names(), strings({"site"}));
        QVERIFY(library->place() == Place::folder(library.at("site")));
        QVERIFY(!library->lastError());
    }

    void aNewProjectIsLinkedToItsRepository() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        library.open();
        library->newProjectNamed(QStringLiteral("Media of site"), repo);
        QTRY_VERIFY(library->place() == Place::folder(library.at("Media of site")));
        QCOMPARE(repoOf("Media of site"), std::optional(repo));
        QCOMPARE(linkedFolder(repo), library.at("Media of site").path());
        QVERIFY(!library->toast());
    }

    void aNewProjectWithATakenNameIsRefused() {
        OpenLibrary& library = *m_library;
        library.file("site", "a file, and no folder");
        link(library.at("gone"), library.at("dangling"));
        library.open();
        for (const char* name : {"site", "dangling"}) {
            library->newProjectNamed(QString::fromLatin1(name), std::nullopt);
            QCOMPARE(library.error(), QStringLiteral("There is already a project called %1.").arg(QLatin1String(name)));
            QVERIFY(library->place() == Place::recent());
        }
        QVERIFY(!library.at("gone").exists());
    }

    void aNewProjectThatCannotBeMadeSaysWhyAndIsShownAllTheSame() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        library.open();
        library->newProjectNamed(QString(300, u'n'), repo);
        QVERIFY(library->lastError());
        QVERIFY(library->place() == Place::folder(library.root().child(QString(300, u'n'))));
        QVERIFY(linkedFolder(repo).isEmpty());
    }

    void aNewProjectWhoseLinkFailsStands() {
        OpenLibrary& library = *m_library;
        const Location plain = library.outsideFolder("plain");
        library.open();
        library->newProjectNamed(QStringLiteral("site"), plain);
        QTRY_COMPARE(library.error(), QStringLiteral("Couldn't write lumbra.folder into plain's git config."));
        QVERIFY(library->place() == Place::folder(library.at("site")));
        QCOMPARE(repoOf("site"), std::optional(plain)); // the manifest stays written
    }

    // Renaming.

    void renamingAProjectToItsOwnNameReportsThatItExists() {
        OpenLibrary& library = *m_library;
        library.folder("site");
        library.open();
        library->renameProject(library.project("site"), QStringLiteral("site"));
        QCOMPARE(library.error(), QStringLiteral("There is already a project called site."));
    }

    void aRenamedProjectKeepsItsPinsGroupColourAndPlace() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("old/sub/a.png"));
        const Carried carried = Carried::of(file);
        library.folder("other");
        library.open();
        library->setHue(7, QStringLiteral("old"));
        library->togglePin(file.parent());
        const auto group = library->newGroup(QStringLiteral("G"), {QStringLiteral("old")});
        library->setPlace(Place::folder(file.parent()));
        const int revision = library->revision();
        library->renameProject(library.project("old"), QStringLiteral("new"));
        QCOMPARE(names(), strings({"new", "other"}));
        QCOMPARE(library->state().pins, strings({"new/sub"}));
        QCOMPARE(library->groupWithId(group.id)->projects, strings({"new"}));
        QCOMPARE(library->state().colors.value(QStringLiteral("new")), 7);
        QVERIFY(library->place() == Place::folder(library.at("new")));
        QVERIFY(library->revision() > revision);
        QVERIFY(Carried::of(library.at("new/sub/a.png")) == carried);
        QVERIFY(!library->lastError());
        QTRY_VERIFY(library->index().contains(library.at("new/sub/a.png")));
    }

    void aPlaceOutsideTheRenamedProjectStays() {
        OpenLibrary& library = *m_library;
        library.folder("old");
        const Location other = library.folder("older");
        library.open();
        library->setPlace(Place::folder(other));
        library->renameProject(library.project("old"), QStringLiteral("new"));
        QVERIFY(library->place() == Place::folder(other));
    }

    void theRepositoryFollowsARenamedProject() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        ProjectLinks::link(library.folder("old"), repo);
        library.open();
        library->renameProject(library.project("old"), QStringLiteral("new"));
        QTRY_COMPARE(names(), strings({"new"}));
        QCOMPARE(linkedFolder(repo), library.at("new").path());
        QCOMPARE(repoOf("new"), std::optional(repo));
    }

    void ofAProjectThatIsALinkTheLinkIsRenamed() {
        OpenLibrary& library = *m_library;
        const Location target = library.outside("elsewhere/sub/a.png").parent().parent();
        link(target, library.at("old"));
        library.open();
        library->setPlace(Place::folder(target.child("sub")));
        library->renameProject(library.project("old"), QStringLiteral("new"));
        QCOMPARE(names(), strings({"new"}));
        QVERIFY(target.child("sub/a.png").exists());
        QCOMPARE(library.at("new").canonical(), target);
        QVERIFY(library->place() == Place::folder(target));
    }

    void aProjectThatHasGoneIsNotRenamed() {
        OpenLibrary& library = *m_library;
        library.folder("old");
        library.open();
        const Project project = library.project("old");
        QVERIFY(QDir().rmdir(project.url.toString()));
        library->renameProject(project, QStringLiteral("new"));
        QVERIFY2(library.error().contains(QStringLiteral("old")), qPrintable(library.error()));
        QVERIFY(!library.at("new").exists());
    }

    // Linking.

    void aProjectIsLinked() {
        OpenLibrary& library = *m_library;
        library.folder("media");
        const Location repo = repository("site");
        library.open();
        library->linkProject(library.project("media"), repo);
        QTRY_COMPARE(repoOf("media"), std::optional(repo));
        QCOMPARE(library->toast()->text, QStringLiteral("media is linked to site"));
        QVERIFY(!library->toast()->starred && !library->toast()->symbol && !library->toast()->undo);
        QCOMPARE(linkedFolder(repo), library.at("media").path());
    }

    void whatIsNoRepositoryIsNotLinked() {
        OpenLibrary& library = *m_library;
        library.folder("media");
        library.open();
        library->linkProject(library.project("media"), library.outsideFolder("plain"));
        QTRY_COMPARE(library.error(), QStringLiteral("plain isn't a git repository."));
        QVERIFY(!library->toast());
        QVERIFY(!library.at("media/.lumbra.json").exists());
    }

    void aRepositoryWhoseKeyCannotBeWrittenIsAnError() {
        OpenLibrary& library = *m_library;
        library.folder("media");
        library.outside("code/broken/.git", "no git file");
        library.open();
        library->linkProject(library.project("media"), library.root().parent().child("code/broken"));
        QTRY_COMPARE(library.error(), QStringLiteral("Couldn't write lumbra.folder into broken's git config."));
        QVERIFY(!library->toast());
        QCOMPARE(repoOf("media")->name(), QStringLiteral("broken"));
    }

    void linkingToAnotherRepositoryUnlinksTheFormer() {
        OpenLibrary& library = *m_library;
        const Location first = repository("first");
        const Location second = repository("second");
        ProjectLinks::link(library.folder("media"), first);
        library.open();
        library->linkProject(library.project("media"), second);
        QTRY_COMPARE(repoOf("media"), std::optional(second));
        QVERIFY(linkedFolder(first).isEmpty());
        QCOMPARE(linkedFolder(second), library.at("media").path());
    }

    void linkingAgainToTheSameRepositoryKeepsTheDate() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        library.file("media/.lumbra.json", "{\"linked\": \"2020-01-02T03:04:05Z\", \"repo\": \"" + repo.path() + "\"}");
        library.open();
        library->linkProject(library.project("media"), repo);
        QTRY_VERIFY(library->toast());
        QVERIFY(bytesOf(library.at("media/.lumbra.json")).contains("2020-01-02T03:04:05Z"));
    }

    void anUnlinkedProjectHasNoRepository() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        ProjectLinks::link(library.folder("media"), repo);
        library.open();
        library->unlinkProject(library.project("media"));
        QTRY_VERIFY(!repoOf("media"));
        QVERIFY(linkedFolder(repo).isEmpty());
    }

    // Trashing.

    void aTrashedProjectIsUnlinkedAndForgotten() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        const Location sub = library.folder("trashed one/sub");
        ProjectLinks::link(sub.parent(), repo);
        library.folder("other");
        library.open();
        library->togglePin(sub);
        library->setHue(7, QStringLiteral("trashed one"));
        library->setPlace(Place::folder(sub));
        library->trashProject(library.project("trashed one"));
        QTRY_COMPARE(names(), strings({"other"}));
        QTRY_VERIFY(library->state().pins.isEmpty());
        QVERIFY(library->state().colors.isEmpty());
        QVERIFY(library->place() == Place::recent());
        QVERIFY(linkedFolder(repo).isEmpty());
        QVERIFY(entryInTrash(m_home, "trashed one").child("sub").isFolder());
        QVERIFY(!library->lastError());
    }

    void aPlaceElsewhereStaysWhenAProjectIsTrashed() {
        OpenLibrary& library = *m_library;
        library.folder("one");
        library.folder("one more");
        library.open();
        library->setPlace(Place::folder(library.at("one more")));
        library->trashProject(library.project("one"));
        QTRY_COMPARE(names(), strings({"one more"}));
        QVERIFY(library->place() == Place::folder(library.at("one more")));
    }

    void ofAProjectThatIsALinkTheLinkIsTrashed() {
        OpenLibrary& library = *m_library;
        const Location target = library.outside("elsewhere/a.png").parent();
        link(target, library.at("linked"));
        library.open();
        library->trashProject(library.project("linked"));
        QTRY_VERIFY(names().isEmpty());
        QVERIFY(target.child("a.png").exists());
    }

    void aProjectWhoseTrashingFailsLosesItsPinsAllTheSame() {
        OpenLibrary& library = *m_library;
        const Location sub = library.folder("gone/sub");
        library.open();
        library->togglePin(sub);
        const Project project = library.project("gone");
        QVERIFY(QDir(project.url.toString()).removeRecursively());
        library->trashProject(project);
        QTRY_VERIFY(library->state().pins.isEmpty());
        QVERIFY2(library.error().contains(QStringLiteral("gone")), qPrintable(library.error()));
    }
};

QTEST_GUILESS_MAIN(ProjectOperationsTest)
#include "tst_projectoperations.moc"
