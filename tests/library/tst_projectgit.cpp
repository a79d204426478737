// SPDX-License-Identifier: GPL-3.0-or-later
#include "LibraryOfProjects.h"
#include "core/ProjectLinks.h"
#include "support/Strings.h"

using namespace lumbra;

// The operations on projects while git takes its time, or answers nonsense.
class ProjectGitTest : public QObject, protected LibraryOfProjects {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_library = std::make_unique<OpenLibrary>(m_home); }
    void cleanup() { m_library.reset(); }

    void theWindowLivesWhileGitHangsAndTheNextOnTheProjectWaits() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        ProjectLinks::link(library.folder("old"), repo);
        library.folder("other");
        library.open();
        library->setHue(7, QStringLiteral("old"));
        HangingGit gate(repo);
        library->renameProject(library.project("old"), QStringLiteral("new"));
        library->trashProject(library.project("old"));                              // one and the same project
        library->renameProject(library.project("other"), QStringLiteral("beside")); // which has nothing to wait for
        QVERIFY(library.at("beside").exists());
        QVERIFY(library.at("new").exists());
        QTRY_VERIFY(gate.isWaiting());
        // Nothing of the steps behind git has been done.
        QCOMPARE(library->state().colors.value(QStringLiteral("old")), 7);
        QVERIFY(library.at("new").exists());
        gate.release();
        QTRY_VERIFY(library.error().contains(QStringLiteral("old"))); // it was trashed by a name that has gone
        QCOMPARE(names(), strings({"beside", "new"}));
        QCOMPARE(library->state().colors.value(QStringLiteral("new")), 7);
        QCOMPARE(linkedFolder(repo), library.at("new").path());
    }

    void aSecondLinkStartsFromWhatTheFirstHasMade() {
        OpenLibrary& library = *m_library;
        const Location first = repository("first");
        const Location second = repository("second");
        library.folder("media");
        library.open();
        const Project project = library.project("media"); // which knows of no repository
        HangingGit gate(first);
        library->linkProject(project, first);
        library->linkProject(project, second);
        QTRY_VERIFY(gate.isWaiting());
        gate.release();
        QTRY_COMPARE(repoOf("media"), std::optional(second));
        QVERIFY(linkedFolder(first).isEmpty());
        QCOMPARE(linkedFolder(second), library.at("media").path());
    }

    void whatLandsWhileGitHangsIsSeenAfterwards() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        ProjectLinks::link(library.folder("old"), repo);
        library.open();
        HangingGit gate(repo);
        library->renameProject(library.project("old"), QStringLiteral("new"));
        QTRY_VERIFY(gate.isWaiting());
        const Location landed = library.file("new/landed.png");
        gate.release();
        QTRY_VERIFY(library->index().contains(landed));
    }

    void theLibraryMayEndWhileGitHangs() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        library.folder("media");
        library.open();
        HangingGit gate(repo);
        library->linkProject(library.project("media"), repo);
        library->trashProject(library.project("media"));
        QTRY_VERIFY(gate.isWaiting());
        library.close();
        gate.release();
        QTRY_COMPARE(linkedFolder(repo), library.at("media").path());
        QVERIFY(library.at("media").exists());
    }

    void aGitThatHangsForGoodEndsInTheErrorOfTheKey() {
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        library.folder("media");
        library.open();
        const HangingGit gate(repo);
        library->linkProject(library.project("media"), repo);
        QTRY_COMPARE(library.error(), QStringLiteral("Couldn't write lumbra.folder into site's git config."));
    }

    void rubbishFromGitIsNoRemote_data() {
        QTest::addColumn<QByteArray>("url");
        QTest::newRow("not UTF-8") << QByteArray("\xff\xfe\x80");
        QTest::newRow("two megabytes") << QByteArray(2 << 20, 'u');
    }

    void rubbishFromGitIsNoRemote() {
        QFETCH(QByteArray, url);
        OpenLibrary& library = *m_library;
        const Location repo = repository("site");
        QFile config(repo.child(".git/config").toString());
        QVERIFY(config.open(QIODevice::Append));
        QVERIFY(config.write("[remote \"origin\"]\n\turl = " + url + "\n") > 0);
        config.close();
        library.folder("media");
        library.open();
        library->linkProject(library.project("media"), repo);
        QTRY_COMPARE(repoOf("media"), std::optional(repo));
        QVERIFY(bytesOf(library.at("media/.lumbra.json")).contains("\"remote\": \"\""));
    }

    void aGitThatSomebodyPutIntoThePathIsNotAsked() {
        OpenLibrary& library = *m_library;
        const Location fake = library.outside("bin/git", "#!/bin/sh\necho /rubbish\nexit 0\n");
        QVERIFY(QFile::setPermissions(fake.toString(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const Location repo = repository("site");
        library.folder("media");
        library.open();
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", fake.parent().path() + ':' + path);
        library->linkProject(library.project("media"), repo);
        QTRY_VERIFY(library->toast());
        qputenv("PATH", path);
        QCOMPARE(linkedFolder(repo), library.at("media").path());
    }
};

QTEST_GUILESS_MAIN(ProjectGitTest)
#include "tst_projectgit.moc"
