// SPDX-License-Identifier: GPL-3.0-or-later
#include "IndexContent.h"
#include "core/Stars.h"
#include "library/Resolver.h"
#include "library/Scanner.h"
#include "library/Watcher.h"
#include "support/EventMirror.h"
#include "support/TestHome.h"

#include <QTest>
#include <QThread>

#include <filesystem>

using namespace lumbra;
namespace fs = std::filesystem;

namespace {

// A library that is kept by its events alone.
class Kept {
public:
    explicit Kept(const Location& library, const QList<Location>& projects)
        : m_library(library),
          m_projects(projects),
          m_watcher(
              {library}, 0.02, [this](const QList<FileEvent>& events) { take(events); },
              [this] {
                  index = Scanner::index(m_projects, 1);
                  isStarted = true;
              }) {}

    bool isTrue() const { return content(index) == content(Scanner::index(m_projects, 1)); }
    const FileEvents& events() const { return m_watcher.events(); }

    AssetIndex index;
    bool isStarted = false;

private:
    void take(const QList<FileEvent>& events) {
        QCOMPARE(QThread::currentThread(), QCoreApplication::instance()->thread());
        index = index.applying(Resolver::resolve(events, m_projects, m_library, index));
    }

    const KnownFolder m_library;
    const QList<Location> m_projects;
    Watcher m_watcher;
};

} // namespace

class tst_Watcher : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void batchesArriveOnTheThreadThatMadeIt();
    void aReleasedWatcherCallsNobody();
    void aWatcherMayBeReleasedInItsOwnCallback();
    void whatChangesAfterTheStartIsNotMissed();
    void invisibleFoldersGetNoWatch();
    void theIndexFollows_data();
    void theIndexFollows();
    void aFolderOfAThousandFilesComesAndGoes();
};

void tst_Watcher::batchesArriveOnTheThreadThatMadeIt() {
    TestHome home;
    const Location root = home.folder("root");
    QList<FileEvent> seen;
    bool isStarted = false;
    const Watcher watcher(
        {root}, 0.05,
        [&](const QList<FileEvent>& events) {
            QCOMPARE(QThread::currentThread(), thread());
            seen += events;
        },
        [&] {
            QCOMPARE(QThread::currentThread(), thread());
            isStarted = true;
        });
    QTRY_VERIFY(isStarted);
    const Location file = home.file("root/a.png");
    QTRY_VERIFY(std::ranges::any_of(seen, [&](const FileEvent& event) { return event.path == file; }));
    QVERIFY(seen.front().flags & FileEvent::created);
}

void tst_Watcher::aReleasedWatcherCallsNobody() {
    TestHome home;
    const Location root = home.folder("root");
    int calls = 0;
    int starts = 0;
    for (int i = 0; i < 20; ++i) {
        auto watcher = std::make_unique<Watcher>(
            QList{root}, 0.05, [&](const QList<FileEvent>&) { ++calls; }, [&] { ++starts; });
        QVERIFY(watcher->events().waitUntilWatching(20));
        home.file("root/a" + std::to_string(i) + ".png");
        QVERIFY(watcher->events().waitUntilWatching(20)); // the batch is on its way to this thread
        watcher.reset();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    QCOMPARE(calls, 0);
    QCOMPARE(starts, 0);
}

void tst_Watcher::aWatcherMayBeReleasedInItsOwnCallback() {
    TestHome home;
    const Location root = home.folder("root");
    std::unique_ptr<Watcher> watcher;
    int calls = 0;
    const auto text = std::make_shared<QByteArray>("what the callback holds");
    watcher = std::make_unique<Watcher>(QList{root}, 0.05, [&, text](const QList<FileEvent>&) {
        watcher.reset();
        QCOMPARE(*text, QByteArray("what the callback holds"));
        ++calls;
    });
    QVERIFY(watcher->events().waitUntilWatching(20));
    home.file("root/a.png");
    QTRY_COMPARE(calls, 1);
    QVERIFY(!watcher);

    watcher = std::make_unique<Watcher>(
        QList{root}, 0.05, [](const QList<FileEvent>&) {},
        [&, text] {
            watcher.reset();
            QCOMPARE(*text, QByteArray("what the callback holds"));
            ++calls;
        });
    QTRY_COMPARE(calls, 2);
}

void tst_Watcher::whatChangesAfterTheStartIsNotMissed() {
    TestHome home;
    const Location library = home.folder("library");
    const Location project = home.folder("library/p");
    for (int i = 0; i < 500; ++i)
        home.folder("library/p/n" + std::to_string(i));
    for (int round = 0; round < 5; ++round) {
        // Files land in every folder while the watcher makes its first round.
        std::jthread agent([&] {
            for (int i = 0; i < 500; ++i)
                home.file("library/p/n" + std::to_string(499 - i) + "/r" + std::to_string(round) + ".png");
        });
        const Kept kept(library, {project});
        QTRY_VERIFY(kept.isStarted);
        agent.join();
        QTRY_VERIFY(kept.isTrue());
        QCOMPARE(kept.index.count(), 500 * (round + 1));
    }
}

void tst_Watcher::invisibleFoldersGetNoWatch() {
    TestHome home;
    const Location root = home.folder("root");
    for (const char* path : {"root/.git/a", "root/node_modules/b", "root/p/build/c", "root/p/Thing.app/Contents",
                             "root/p/Build/d", "root/.lumbra"})
        home.folder(path);
    const Watcher watcher({root}, 0.05, [](const QList<FileEvent>&) {});
    QVERIFY(watcher.events().waitUntilWatching(20));
    QCOMPARE(watcher.events().status().watched, size_t(4)); // the root, p, Build and d
}

void tst_Watcher::theIndexFollows_data() {
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("a file lands") << QByteArray("echo x > deep/new.png");
    QTest::newRow("a file that is written for a while")
        << QByteArray("for i in 1 2 3 4 5; do echo $i >> deep/b.mp4; done");
    QTest::newRow("a star from another process")
        << QByteArray("setfattr -n user.com.lumbra.starred -v 1700000000 a.png");
    QTest::newRow("a star taken away") << QByteArray("setfattr -x user.com.lumbra.starred starred.png");
    QTest::newRow("a truncation") << QByteArray("truncate -s 1 starred.png");
    QTest::newRow("an old date") << QByteArray("touch -d 2001-01-01 a.png");
    QTest::newRow("a new folder that is found filled")
        << QByteArray("mkdir -p x/y/z; echo 1 > x/1.png; echo 2 > x/y/z/2.png");
    QTest::newRow("a new folder made empty and filled later")
        << QByteArray("mkdir later; sleep 0.1; echo 1 > later/1.png");
    QTest::newRow("a folder moved in with files") << QByteArray("mv ../../outside/filled .");
    QTest::newRow("a folder moved out") << QByteArray("mv deep ../../outside/");
    QTest::newRow("a folder moved out and back")
        << QByteArray("mv deep ../../outside/; echo away > ../../outside/deep/away.png; mv ../../outside/deep back;"
                      "echo late > back/er/late.png");
    QTest::newRow("a folder moved within") << QByteArray("mkdir n; mv deep n/");
    QTest::newRow("two folders swapped") << QByteArray("mv deep t; mv other deep; mv t other");
    QTest::newRow("a folder deleted and made anew") << QByteArray("rm -r deep; mkdir deep; echo n > deep/n.png");
    QTest::newRow("a folder hidden") << QByteArray("mv deep .deep");
    QTest::newRow("a pruned folder renamed") << QByteArray("mv build shown; mv other dist");
    QTest::newRow("a folder that becomes a package") << QByteArray("mv deep deep.app");
    QTest::newRow("a file that becomes a folder") << QByteArray("rm a.png; mkdir a.png; echo x > a.png/x.png");
    QTest::newRow("a folder that becomes a file") << QByteArray("rm -r other; mkdir b.png; echo x > b.png/y.png;"
                                                                "sleep 0.1; rm -r b.png; echo x > b.png");
    QTest::newRow("a file that becomes a link") << QByteArray("mv a.png c.png; ln -s c.png a.png");
    QTest::newRow("a folder that becomes a link")
        << QByteArray("mv deep ../../outside/; ln -s ../../outside/deep deep");
}

void tst_Watcher::theIndexFollows() {
    QFETCH(QByteArray, script);
    TestHome home;
    QVERIFY(runScript(home.path(), "mkdir -p library/p/deep/er library/p/other library/p/build outside/filled/in;"
                                   "cd library/p; for f in a.png deep/b.mp4 deep/er/c.wav other/d.png build/e.png "
                                   "starred.png ../../outside/filled/in/f.png; do echo first > $f; done;"
                                   "setfattr -n user.com.lumbra.starred -v 1700000000 starred.png"));
    const Location project = home.path().child("library/p");
    const Kept kept(home.path().child("library"), {project});
    QTRY_VERIFY(kept.isStarted);
    QCOMPARE(kept.index.count(), 5);
    const auto before = content(Scanner::index({project}, 1));
    QVERIFY(runScript(project, script));
    QVERIFY(content(Scanner::index({project}, 1)) != before);
    QTRY_VERIFY(kept.isTrue());
}

void tst_Watcher::aFolderOfAThousandFilesComesAndGoes() {
    TestHome home;
    const Location project = home.folder("library/p");
    for (int i = 0; i < 1000; ++i)
        home.file("outside/many/deep/file" + std::to_string(i) + ".png");
    const Kept kept(home.path().child("library"), {project});
    QTRY_VERIFY(kept.isStarted);
    fs::rename(text(home.path().child("outside/many")), text(project.child("many")));
    QTRY_COMPARE(kept.index.count(), 1000);
    fs::remove_all(text(project.child("many")));
    QTRY_COMPARE(kept.index.count(), 0);
}

QTEST_GUILESS_MAIN(tst_Watcher)
#include "tst_watcher.moc"
