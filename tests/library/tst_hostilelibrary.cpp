// Libraries as they should not be, on a real disk. Nobody in particular runs this, so that permissions hold.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/Library.h"
#include "library/state/StateStore.h"
#include "support/AsNobody.h"
#include "support/TestHome.h"

#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <map>

using namespace lumbra;

namespace {

namespace fs = std::filesystem;

using SetUp = std::function<void(const TestHome& home, const Location& root)>;

void setMode(const Location& location, mode_t mode) {
    QCOMPARE(::chmod(location.path().constData(), mode), 0);
}

void makeLink(const QByteArray& target, const Location& at) {
    QCOMPARE(::symlink(target.constData(), at.path().constData()), 0);
}

void makePipe(const Location& at) {
    QCOMPARE(::mkfifo(at.path().constData(), 0600), 0);
}

// A name as the system takes it, UTF-8 or not.
void makeNamed(const Location& folder, const char* name) {
    const QByteArray path = folder.path() + '/' + name;
    const int file = ::open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    QVERIFY(file >= 0);
    ::close(file);
}

// What lies below a folder, as far as it can be told: kind and mode, time and size by path.
std::map<std::string, std::string> pictureOf(const Location& root) {
    std::map<std::string, std::string> picture;
    std::error_code error;
    const auto add = [&](const fs::path& path) {
        struct stat status;
        if (::lstat(path.c_str(), &status) == 0)
            picture[path] = std::to_string(status.st_mode) + ' ' + std::to_string(status.st_mtim.tv_sec) + '.'
                            + std::to_string(status.st_mtim.tv_nsec) + ' ' + std::to_string(status.st_size);
    };
    add(root.view());
    for (fs::recursive_directory_iterator entry(root.view(), fs::directory_options::skip_permission_denied, error);
         entry != fs::recursive_directory_iterator(); entry.increment(error))
        add(entry->path());
    return picture;
}

} // namespace

class HostileLibraryTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    Location m_root;

    static void waitForTheWalk(const Library& library) { QTRY_VERIFY(!library.indexing()); }

    static bool hasProject(const Library& library, const QString& name) {
        const auto projects = library.projects();
        return std::ranges::find(projects, name, &Project::name) != projects.end();
    }

    Location state() const { return m_root.child(".lumbra/library.json"); }

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_root = m_home->path().child("Library");
    }

    void cleanup() {
        // What may not be entered could not be removed with the home.
        std::error_code error;
        for (const char* folder :
             {"Library", "Library/closed", "Library/site", "Library/site/closed", "Library/site/names"})
            fs::permissions(m_home->path().child(folder).view(), fs::perms::owner_all, error);
        m_home.reset();
    }

    void whatIsSoundIsThereBesideWhatIsNot_data() {
        QTest::addColumn<SetUp>("setUp");
        const auto row = [](const char* name, const SetUp& setUp) { QTest::newRow(name) << setUp; };
        row("nothing wrong", [](const TestHome&, const Location&) {});

        row("a folder that may not be read", [](const TestHome& home, const Location& root) {
            home.file("Library/site/closed/a.png");
            setMode(root.child("site/closed"), 0);
        });
        row("a folder whose files may not be examined", [](const TestHome& home, const Location& root) {
            home.file("Library/site/names/a.png");
            setMode(root.child("site/names"), 0444);
        });
        row("a project that may not be read", [](const TestHome& home, const Location& root) {
            home.file("Library/closed/a.png");
            setMode(root.child("closed"), 0);
        });

        const auto stateOf = [](const QByteArray& text) {
            return [text](const TestHome& home, const Location&) { home.file("Library/.lumbra/library.json", text); };
        };
        row("a half-written state file", stateOf(R"({"pins": ["site"], "groups": [)"));
        row("a state file of the wrong types", stateOf(R"({"pins": 7, "groups": "none", "hidden": {}, "colors": []})"));
        row("a state file that is no JSON", stateOf(QByteArray("\0\xff\x01", 3)));
        row("an enormous state file", stateOf(QByteArray(20 << 20, ' ')));
        row("a state file that may not be read", [stateOf](const TestHome& home, const Location& root) {
            stateOf("{}")(home, root);
            setMode(root.child(".lumbra/library.json"), 0);
        });
        row("a pipe in the state file's place", [](const TestHome& home, const Location& root) {
            home.folder("Library/.lumbra");
            makePipe(root.child(".lumbra/library.json"));
        });
        row("a folder in the state file's place",
            [](const TestHome& home, const Location&) { home.folder("Library/.lumbra/library.json"); });
        row("a file in the state folder's place",
            [](const TestHome& home, const Location&) { home.file("Library/.lumbra"); });

        row("a manifest that is a pipe",
            [](const TestHome&, const Location& root) { makePipe(root.child("site/.lumbra.json")); });
        row("a manifest of the wrong types", [](const TestHome& home, const Location&) {
            home.file("Library/site/.lumbra.json", R"({"repo": ["/a"]})");
        });
        row("an enormous manifest", [](const TestHome& home, const Location&) {
            home.file("Library/site/.lumbra.json", QByteArray(5 << 20, ' '));
        });

        row("links in circles", [](const TestHome& home, const Location& root) {
            home.folder("Library/site/deep/deeper");
            makeLink(root.path() + "/site", root.child("site/deep/deeper/round"));
            makeLink("self", root.child("site/self"));
            makeLink("two", root.child("one"));
            makeLink("one", root.child("two"));
        });
        row("links that lead nowhere", [](const TestHome&, const Location& root) {
            makeLink("/nonexistent/project", root.child("dead"));
            makeLink("/nonexistent/a.png", root.child("site/dead.png"));
        });
        row("pipes among the files", [](const TestHome&, const Location& root) {
            makePipe(root.child("site/pipe.png"));
            makePipe(root.child("pipe"));
        });
        row("names that are not UTF-8", [](const TestHome&, const Location& root) {
            makeNamed(root, "loose\xff.png");
            makeNamed(root.child("site"), "bad\xff.png");
            QCOMPARE(::mkdir((root.path() + "/project\xfe").constData(), 0755), 0);
            QCOMPARE(::mkdir((root.path() + "/site/folder\xfe").constData(), 0755), 0);
        });
        row("folders five hundred deep", [](const TestHome& home, const Location&) {
            std::string path = "Library/site";
            for (int depth = 0; depth < 500; ++depth)
                path += "/d";
            home.file(path + "/deepest.png");
        });
    }

    void whatIsSoundIsThereBesideWhatIsNot() {
        QFETCH(SetUp, setUp);
        const Location sound = m_home->file("Library/site/sound.png");
        setUp(*m_home, m_root);
        const auto before = pictureOf(m_root);
        Library library(m_root, true);
        waitForTheWalk(library);
        QVERIFY(hasProject(library, QStringLiteral("site")));
        QVERIFY(library.index().contains(sound));
        QVERIFY(library.state() == LibraryState());
        QVERIFY(!library.lastError());
        QCOMPARE(pictureOf(m_root), before);

        // And stays in step.
        const Location late = m_home->file("Library/site/late.png");
        QTRY_VERIFY(library.index().contains(late));
        QVERIFY(QFile::remove(sound.toString()));
        QTRY_VERIFY(!library.index().contains(sound));
    }

    void aRootThatIsNoneYieldsAnEmptyLibrary_data() {
        QTest::addColumn<SetUp>("setUp");
        const auto row = [](const char* name, const SetUp& setUp) { QTest::newRow(name) << setUp; };
        row("a file", [](const TestHome& home, const Location&) { home.file("Library"); });
        row("a pipe", [](const TestHome&, const Location& root) { makePipe(root); });
        row("a link that leads nowhere",
            [](const TestHome&, const Location& root) { makeLink("/nonexistent/library", root); });
        row("a link to itself", [](const TestHome&, const Location& root) { makeLink("Library", root); });
        row("a folder that may not be read", [](const TestHome& home, const Location& root) {
            home.file("Library/site/a.png");
            setMode(root, 0);
        });
    }

    void aRootThatIsNoneYieldsAnEmptyLibrary() {
        QFETCH(SetUp, setUp);
        setUp(*m_home, m_root);
        const auto before = pictureOf(m_root);
        Library library(m_root, true);
        waitForTheWalk(library);
        QVERIFY(library.projects().isEmpty());
        QVERIFY(library.index().isEmpty());
        LibraryState changed;
        changed.hidden.append(QStringLiteral("site"));
        library.setState(changed); // which can't be saved
        QVERIFY(library.state() == changed);
        library.reloadProjects();
        QVERIFY(!library.lastError());
        QCOMPARE(pictureOf(m_root), before);
    }

    void aRootThatCannotBeMadeYieldsAnEmptyLibrary() {
        Library library(Location(QByteArray("/proc/nonexistent/library")), true);
        waitForTheWalk(library);
        QVERIFY(library.projects().isEmpty());
        QVERIFY(!library.lastError());
    }

    void aNameWithANewlineIsANameLikeOthers() {
        const Location file = m_home->file("Library/two\nlines/three\nlines\n.png");
        Library library(m_root, true);
        waitForTheWalk(library);
        QVERIFY(hasProject(library, QStringLiteral("two\nlines")));
        QVERIFY(library.index().contains(file));
        library.togglePin(file.parent());
        QVERIFY(StateStore::load(m_root) == library.state());
        QCOMPARE(library.pinnedURLs(), QList<Location>{file.parent()});
    }

    // A project that holds itself: all of the library is in it, once.
    void aLinkToTheRootEndsTheWalk() {
        const Location file = m_home->file("Library/site/a.png");
        makeLink(".", m_root.child("around"));
        Library library(m_root, true);
        waitForTheWalk(library);
        QVERIFY(hasProject(library, QStringLiteral("around")));
        QCOMPARE(library.index().count(), 1);
        QVERIFY(library.index().contains(file));
        QCOMPARE(library.projectContaining(file)->name, QStringLiteral("site"));
    }

    void aPinThatNoPathCanBeIsNotShown() {
        m_home->folder("Library/site");
        m_home->file(
            "Library/.lumbra/library.json",
            R"({"pins":["site\u0000x","../..","/","site"],"groups":[],"hidden":[],"colors":{},"dismissed":[]})");
        const Library library(m_root, true);
        QVERIFY(library.pinnedURLs().contains(m_root.child("site")));
        QVERIFY(library.urlForRelative(QString(u"site"_qs + QChar(u'\0') + u'x')).isEmpty());
        QCOMPARE(library.state().pins.size(), 4);
        waitForTheWalk(library);
    }

    void aManifestThatNamesWhatNoPathCanBeNamesNoRepository() {
        m_home->file("Library/site/.lumbra.json", R"({"repo": "/tmp\u0000/x"})");
        const Library library(m_root, true);
        QVERIFY(hasProject(library, QStringLiteral("site")));
        QVERIFY(!library.projects().first().repo);
        waitForTheWalk(library);
    }
};

int main(int count, char** arguments) {
    const AsNobody nobody; // before there are other threads
    QCoreApplication::setSetuidAllowed(true);
    QCoreApplication application(count, arguments);
    HostileLibraryTest test;
    return QTest::qExec(&test, count, arguments);
}

#include "tst_hostilelibrary.moc"
