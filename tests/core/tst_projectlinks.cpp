// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ProjectLinks.h"
#include "platform/Processes.h"
#include "support/TestHome.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sys/stat.h>

#include <optional>

using namespace lumbra;

namespace {

QByteArray bytesOf(const Location& location) {
    QFile file(location.toString());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject objectOf(const Location& location) {
    return QJsonDocument::fromJson(bytesOf(location)).object();
}

// What git prints in a repository; empty when it fails.
QByteArray git(const Location& repo, const QList<QByteArray>& arguments) {
    return Processes::run("/usr/bin/git", QList<QByteArray>{"-C", repo.path()} + arguments).output.trimmed();
}

QByteArray key(const Location& repo, const QByteArray& name) {
    return git(repo, {"config", "--local", "--get", name});
}

} // namespace

class ProjectLinksTest : public QObject {
    Q_OBJECT

    std::optional<TestHome> m_home;

    Location library() const { return m_home->folder("Lumbra"); }

    Location repository(std::string_view name) const {
        const Location repo = m_home->folder(name);
        git(repo, {"init", "-q", "-b", "main"});
        return repo;
    }

private Q_SLOTS:
    void init() {
        m_home.emplace();
        qputenv("GIT_CONFIG_NOSYSTEM", "1");
    }
    void cleanup() { m_home.reset(); }

    void linkingWritesBothRecords() {
        const Location repo = repository("code/site");
        git(repo, {"remote", "add", "origin", "https://example.org/site.git"});
        const Location folder = library().child("site");
        const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
        ProjectLinks::link(folder, repo);
        const QJsonObject manifest = objectOf(folder.child(".lumbra.json"));
        QCOMPARE(manifest.keys(),
                 (QStringList{QStringLiteral("linked"), QStringLiteral("remote"), QStringLiteral("repo")}));
        QCOMPARE(manifest[u"repo"].toString(), repo.toString());
        QCOMPARE(manifest[u"remote"].toString(), QStringLiteral("https://example.org/site.git"));
        const auto linked = QDateTime::fromString(manifest[u"linked"].toString(), Qt::ISODate);
        QVERIFY(linked.isValid() && linked >= before && linked <= QDateTime::currentDateTimeUtc());
        QVERIFY(bytesOf(folder.child(".lumbra.json")).contains("https://example.org/site.git"));
        QCOMPARE(key(repo, "lumbra.folder"), folder.path());
        QCOMPARE(ProjectLinks::repoOf(folder), repo);
    }

    void aRepositoryWithoutAnOriginGetsAnEmptyRemote() {
        const Location folder = library().child("site");
        ProjectLinks::link(folder, repository("site"));
        const QJsonObject manifest = objectOf(folder.child(".lumbra.json"));
        QVERIFY(manifest[u"remote"].isString());
        QCOMPARE(manifest[u"remote"].toString(), QString());
    }

    void linkingTwiceKeepsTheFirstDateAndOtherKeys() {
        const Location repo = repository("site");
        m_home->file("Lumbra/site/.lumbra.json", R"({"linked": "2020-01-02T03:04:05Z", "colour": 7, "repo": "/old"})");
        ProjectLinks::link(library().child("site"), repo);
        ProjectLinks::link(library().child("site"), repo);
        const QJsonObject manifest = objectOf(library().child("site").child(".lumbra.json"));
        QCOMPARE(manifest[u"linked"].toString(), QStringLiteral("2020-01-02T03:04:05Z"));
        QCOMPARE(manifest[u"colour"].toInt(), 7);
        QCOMPARE(manifest[u"repo"].toString(), repo.toString());
    }

    void linkingCarriesALegacyManifestOver() {
        const Location repo = repository("site");
        git(repo, {"config", "--local", "folia.folder", "/somewhere"});
        m_home->file("Lumbra/site/.folia.json", R"({"linked": "2020-01-02T03:04:05Z", "mine": "kept"})");
        const Location folder = library().child("site");
        ProjectLinks::link(folder, repo);
        const QJsonObject manifest = objectOf(folder.child(".lumbra.json"));
        QCOMPARE(manifest[u"linked"].toString(), QStringLiteral("2020-01-02T03:04:05Z"));
        QCOMPARE(manifest[u"mine"].toString(), QStringLiteral("kept"));
        QVERIFY(!folder.child(".folia.json").exists());
        QCOMPARE(key(repo, "folia.folder"), QByteArray());
    }

    void aMalformedManifestIsPassedOverWhenLinking() {
        m_home->file("Lumbra/site/.lumbra.json", "{broken");
        m_home->file("Lumbra/site/.folia.json", R"({"mine": "kept"})");
        const Location folder = library().child("site");
        ProjectLinks::link(folder, repository("site"));
        QCOMPARE(objectOf(folder.child(".lumbra.json"))[u"mine"].toString(), QStringLiteral("kept"));
    }

    void linkingToWhatIsNoRepositoryThrowsButLeavesTheManifest() {
        const Location folder = library().child("site");
        const Location plain = m_home->folder("plain");
        try {
            ProjectLinks::link(folder, plain);
            QFAIL("nothing was thrown");
        } catch (const ProjectLinks::LinkError& error) {
            QCOMPARE(error.message, QStringLiteral("Couldn't write lumbra.folder into plain's git config."));
        }
        QCOMPARE(ProjectLinks::repoOf(folder), plain);
    }

    // To git an empty path is the working directory.
    void aRepositoryThatIsNowhereIsNotTheOneThatWeWorkIn() {
        const Location bystander = repository("bystander");
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(bystander.toString()));
        QVERIFY_EXCEPTION_THROWN(ProjectLinks::link(library().child("site"), Location()), ProjectLinks::LinkError);
        ProjectLinks::repoint(Location(), library().child("site"));
        const auto found = ProjectLinks::mainRepositoryContaining(Location());
        QDir::setCurrent(before);
        QVERIFY(!found);
        QCOMPARE(key(bystander, "lumbra.folder"), QByteArray());
    }

    void aFolderThatCannotBeMadeIsThrown() {
        m_home->file("occupied");
        const Location repo = repository("site");
        QVERIFY_EXCEPTION_THROWN(ProjectLinks::link(m_home->path().child("occupied/site"), repo), CoreError);
        QCOMPARE(key(repo, "lumbra.folder"), QByteArray());
    }

    void aManifestThatCannotBeWrittenIsThrown() {
        m_home->folder("Lumbra/site/.lumbra.json");
        const Location repo = repository("site");
        QVERIFY_EXCEPTION_THROWN(ProjectLinks::link(library().child("site"), repo), CoreError);
        QCOMPARE(key(repo, "lumbra.folder"), QByteArray());
    }

    void theManifestIsRead_data() {
        QTest::addColumn<QByteArray>("current");
        QTest::addColumn<QByteArray>("legacy");
        QTest::addColumn<QByteArray>("repo");
        const QByteArray none;
        const QByteArray a = R"({"repo": "/a"})";
        const QByteArray b = R"({"repo": "/b"})";
        QTest::newRow("no manifest") << none << none << none;
        QTest::newRow("the new one") << a << none << QByteArray("/a");
        QTest::newRow("the old one") << none << b << QByteArray("/b");
        QTest::newRow("both: the new one") << a << b << QByteArray("/a");
        QTest::newRow("the new one malformed: the old one") << QByteArray("{") << b << QByteArray("/b");
        QTest::newRow("the new one no object: the old one") << QByteArray("[1]") << b << QByteArray("/b");
        QTest::newRow("the new one empty: the old one") << QByteArray(R"({"repo": ""})") << b << QByteArray("/b");
        QTest::newRow("the new one no text: the old one") << QByteArray(R"({"repo": 1})") << b << QByteArray("/b");
        QTest::newRow("the new one without: the old one") << QByteArray("{}") << b << QByteArray("/b");
        QTest::newRow("the new one nowhere: the old one")
            << QByteArray(R"({"repo": "/a\u0000b"})") << b << QByteArray("/b");
        QTest::newRow("both malformed") << QByteArray("{") << QByteArray("{") << none;
        QTest::newRow("too large") << QByteArray(R"({"repo": "/a"})") + QByteArray(5 << 20, ' ') << none << none;
    }

    void theManifestIsRead() {
        QFETCH(QByteArray, current);
        QFETCH(QByteArray, legacy);
        QFETCH(QByteArray, repo);
        const Location folder = m_home->folder("Lumbra/site");
        if (!current.isEmpty())
            m_home->file("Lumbra/site/.lumbra.json", current);
        if (!legacy.isEmpty())
            m_home->file("Lumbra/site/.folia.json", legacy);
        const auto found = ProjectLinks::repoOf(folder);
        QCOMPARE(found ? found->path() : QByteArray(), repo);
    }

    void aTildeInTheManifestIsTheHomeFolder() {
        m_home->file("Lumbra/site/.lumbra.json", R"({"repo": "~/code/site"})");
        QCOMPARE(ProjectLinks::repoOf(library().child("site")), m_home->path().child("code/site"));
    }

    void aRepositoryIsToldByItsGitEntry() {
        QVERIFY(ProjectLinks::isRepository(repository("site")));
        QVERIFY(!ProjectLinks::isRepository(m_home->folder("plain")));
        m_home->file("worktree/.git", "gitdir: /elsewhere");
        QVERIFY(ProjectLinks::isRepository(m_home->path().child("worktree")));
    }

    void repointingMovesTheKeyAndEndsTheLegacyOne() {
        const Location repo = repository("site");
        const Location folder = library().child("site");
        ProjectLinks::link(folder, repo);
        git(repo, {"config", "--local", "folia.folder", folder.path()});
        const QByteArray manifest = bytesOf(folder.child(".lumbra.json"));
        ProjectLinks::repoint(repo, library().child("renamed"));
        QCOMPARE(key(repo, "lumbra.folder"), library().child("renamed").path());
        QCOMPARE(key(repo, "folia.folder"), QByteArray());
        QCOMPARE(bytesOf(folder.child(".lumbra.json")), manifest);
    }

    void unlinkingRemovesBothRecords() {
        const Location repo = repository("site");
        const Location folder = library().child("site");
        ProjectLinks::link(folder, repo);
        git(repo, {"config", "--local", "folia.folder", folder.path()});
        m_home->file("Lumbra/site/.folia.json", "{}");
        ProjectLinks::unlink(folder);
        QCOMPARE(key(repo, "lumbra.folder"), QByteArray());
        QCOMPARE(key(repo, "folia.folder"), QByteArray());
        QVERIFY(!folder.child(".lumbra.json").exists());
        QVERIFY(!folder.child(".folia.json").exists());
        QVERIFY(folder.isFolder());
    }

    void unlinkingLeavesTheKeyOfARepositoryThatPointsElsewhere() {
        const Location repo = repository("site");
        const Location folder = library().child("site");
        ProjectLinks::link(folder, repo);
        ProjectLinks::repoint(repo, library().child("other"));
        ProjectLinks::unlink(folder);
        QCOMPARE(key(repo, "lumbra.folder"), library().child("other").path());
        QVERIFY(!folder.child(".lumbra.json").exists());
    }

    void unlinkingComparesFoldersAndNotTheirSpelling() {
        const Location repo = repository("site");
        const Location folder = library().child("site");
        ProjectLinks::link(folder, repo);
        QVERIFY(QFile::link(folder.toString(), m_home->path().child("alias").toString()));
        git(repo, {"config", "--local", "lumbra.folder", m_home->path().child("alias").path() + "/./"});
        ProjectLinks::unlink(folder);
        QCOMPARE(key(repo, "lumbra.folder"), QByteArray());
    }

    void unlinkingWithoutARepositoryRemovesTheManifests() {
        m_home->file("Lumbra/site/.lumbra.json", "{}");
        m_home->file("Lumbra/site/.folia.json", "broken");
        ProjectLinks::unlink(library().child("site"));
        QVERIFY(!library().child("site").child(".lumbra.json").exists());
        QVERIFY(!library().child("site").child(".folia.json").exists());
    }

    void theMainRepositoryIsFoundFromInside() {
        const Location repo = repository("site");
        const Location deep = m_home->folder("site/src/deep");
        QCOMPARE(ProjectLinks::mainRepositoryContaining(deep), repo);
        QCOMPARE(ProjectLinks::mainRepositoryContaining(repo), repo);
        QVERIFY(!ProjectLinks::mainRepositoryContaining(m_home->folder("plain")));
        QVERIFY(!ProjectLinks::mainRepositoryContaining(m_home->path().child("gone")));
    }

    void insideALinkedWorktreeTheMainRepositoryIsFound() {
        const Location repo = repository("site");
        git(repo,
            {"-c", "user.name=A", "-c", "user.email=a@example.org", "commit", "-q", "--allow-empty", "-m", "first"});
        const Location worktree = m_home->path().child("worktree");
        git(repo, {"worktree", "add", "-q", worktree.path()});
        QVERIFY(worktree.isFolder());
        QCOMPARE(ProjectLinks::mainRepositoryContaining(worktree), repo);
    }

    void aRepositoryWhoseGitFolderHasAnotherNameIsItsTop() {
        const Location repo = m_home->folder("site");
        git(repo, {"init", "-q", "--separate-git-dir", m_home->path().child("elsewhere.store").path()});
        QCOMPARE(ProjectLinks::mainRepositoryContaining(repo), repo);
    }

    void variablesOfAGitHookDoNotMislead() {
        const Location repo = repository("site");
        const Location hooked = repository("hooked");
        qputenv("GIT_DIR", hooked.child(".git").path());
        qputenv("GIT_WORK_TREE", hooked.path());
        const auto found = ProjectLinks::mainRepositoryContaining(repo);
        ProjectLinks::link(library().child("site"), repo);
        qunsetenv("GIT_DIR");
        qunsetenv("GIT_WORK_TREE");
        QCOMPARE(found, repo);
        QCOMPARE(key(repo, "lumbra.folder"), library().child("site").path());
        QCOMPARE(key(hooked, "lumbra.folder"), QByteArray());
    }

    void theFirstOfTwoFoldersByNameWins() {
        const Location repo = repository("site");
        for (const char* name : {"b", "a2", "a10", "B", ".hidden"})
            m_home->file(std::string("Lumbra/") + name + "/.lumbra.json", "{\"repo\": \"" + repo.path() + "\"}");
        m_home->file("Lumbra/A/.lumbra.json", R"({"repo": "/another"})");
        m_home->file("Lumbra/loose.txt");
        QCOMPARE(ProjectLinks::findFolderForRepository(repo, library()), library().child("B"));
        QVERIFY(QFile::remove(library().child("B/.lumbra.json").toString()));
        QCOMPARE(ProjectLinks::findFolderForRepository(repo, library()), library().child("a10"));
    }

    void repositoriesAreComparedAsPlaces() {
        const Location repo = repository("site");
        QVERIFY(QFile::link(repo.toString(), m_home->path().child("alias").toString()));
        m_home->file("Lumbra/one/.lumbra.json", R"({"repo": "~/alias"})");
        QCOMPARE(ProjectLinks::findFolderForRepository(repo, library()), library().child("one"));
    }

    void aGitThatHangsSaysNothing() {
        const Location repo = repository("site");
        QVERIFY(QFile::remove(repo.child(".git/config").toString()));
        QCOMPARE(::mkfifo(repo.child(".git/config").path().constData(), 0600), 0);
        QVERIFY(!ProjectLinks::mainRepositoryContaining(repo));
    }

    void aMissingLibraryHoldsNoFolder() {
        QVERIFY(!ProjectLinks::findFolderForRepository(repository("site"), m_home->path().child("gone")));
    }

    void aLinkedFolderIsReturnedAsItIs() {
        const Location repo = repository("site");
        const Location folder = library().child("media of site");
        ProjectLinks::link(folder, repo);
        const QByteArray manifest = bytesOf(folder.child(".lumbra.json"));
        QCOMPARE(ProjectLinks::folderForRepository(repo, library()), folder);
        QCOMPARE(bytesOf(folder.child(".lumbra.json")), manifest);
    }

    void aKeyWithATildeIsExpanded() {
        const Location repo = repository("site");
        m_home->file("Lumbra/mine/.lumbra.json", R"({"repo": "/whatever"})");
        git(repo, {"config", "--local", "lumbra.folder", "~/Lumbra/mine"});
        QCOMPARE(ProjectLinks::folderForRepository(repo, library()), library().child("mine"));
        QCOMPARE(key(repo, "lumbra.folder"), QByteArray("~/Lumbra/mine"));
    }

    void aLegacyKeyIsMovedToTheCurrentName() {
        const Location repo = repository("site");
        m_home->file("Lumbra/mine/.folia.json", "{\"repo\": \"" + repo.path() + "\"}");
        git(repo, {"config", "--local", "folia.folder", library().child("mine").path()});
        QCOMPARE(ProjectLinks::folderForRepository(repo, library()), library().child("mine"));
        QCOMPARE(key(repo, "lumbra.folder"), library().child("mine").path());
        QCOMPARE(key(repo, "folia.folder"), QByteArray());
        QVERIFY(library().child("mine/.lumbra.json").exists());
        QVERIFY(!library().child("mine/.folia.json").exists());
    }

    void aFolderThatLostItsManifestIsLinkedAnew() {
        const Location repo = repository("site");
        const Location folder = library().child("mine");
        ProjectLinks::link(folder, repo);
        QVERIFY(QFile::remove(folder.child(".lumbra.json").toString()));
        QCOMPARE(ProjectLinks::folderForRepository(repo, library()), folder);
        QCOMPARE(ProjectLinks::repoOf(folder), repo);
    }

    void aKeyToAFolderThatIsGoneLeadsToAFreshLink() {
        const Location repo = repository("site");
        git(repo, {"config", "--local", "lumbra.folder", library().child("gone").path()});
        QCOMPARE(ProjectLinks::folderForRepository(repo, library()), library().child("site"));
        QCOMPARE(ProjectLinks::repoOf(library().child("site")), repo);
        QCOMPARE(key(repo, "lumbra.folder"), library().child("site").path());
        QVERIFY(!library().child("gone").exists());
    }

    void aFolderWhoseManifestNamesTheRepositoryIsPreferredToANewOne() {
        const Location repo = repository("site");
        m_home->file("Lumbra/older name/.lumbra.json", "{\"repo\": \"" + repo.path() + "\"}");
        QCOMPARE(ProjectLinks::folderForRepository(repo, library()), library().child("older name"));
        QCOMPARE(key(repo, "lumbra.folder"), library().child("older name").path());
        QVERIFY(!library().child("site").exists());
    }

    void aFolderForWhatIsNoRepositoryThrows() {
        QVERIFY_EXCEPTION_THROWN(ProjectLinks::folderForRepository(m_home->folder("plain"), library()),
                                 ProjectLinks::LinkError);
    }
};

QTEST_GUILESS_MAIN(ProjectLinksTest)
#include "tst_projectlinks.moc"
