// SPDX-License-Identifier: GPL-3.0-or-later
//
// The insight store on databases that can't be opened, are locked, full or read-only, or whose process dies: operations
// return, and work again as soon as the trouble is over.
#include "InsightTrouble.h"
#include "support/EventMirror.h"
#include "support/Strings.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QTest>

#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <thread>

using namespace lumbra;

namespace {

std::optional<QByteArray> whyNothingCanBeMounted;

} // namespace

class InsightStoreTroubleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_home = std::make_unique<TestHome>();
        m_file = m_home->folder("library/.lumbra").child("insights.sqlite");
    }

    // Not opening.

    void whatCannotBeOpenedSaysSo_data() {
        QTest::addColumn<QByteArray>("library");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("a file for the folder") << QByteArray("taken") << QByteArray("Not a directory");
        QTest::newRow("a folder for the file") << QByteArray("folder") << QByteArray("couldn't open ");
        QTest::newRow("no database") << QByteArray("text") << QByteArray("file is not a database");
        QTest::newRow("a table of the name that is no such table")
            << QByteArray("other") << QByteArray("no such column: name");
    }
    void whatCannotBeOpenedSaysSo() {
        QFETCH(QByteArray, library);
        QFETCH(QByteArray, message);
        m_home->file("taken/.lumbra");
        m_home->folder("folder/.lumbra/insights.sqlite");
        m_home->file("text/.lumbra/insights.sqlite", QByteArray(5000, 'x'));
        const Location other = m_home->folder("other/.lumbra").child("insights.sqlite");
        QVERIFY(sqliteRuns(other, "CREATE TABLE insights(a);"));
        const Location root = m_home->path().child(library.constData());
        try {
            InsightStore::atLibrary(root);
            QFAIL("it opened");
        } catch (const CoreError& error) {
            if (message.endsWith(' '))
                message += root.path() + "/.lumbra/insights.sqlite";
            QVERIFY2(error.message.contains(QString::fromUtf8(message)), qPrintable(error.message));
            QCOMPARE(QByteArray(error.what()), error.message.toUtf8());
            const bool isFolder = library == "taken";
            QCOMPARE(dynamic_cast<const InsightStore::StoreError*>(&error) == nullptr, isFolder);
        }
    }

    void missingFoldersAreMade() {
        const Location file = m_home->path().child("new/library/.lumbra/insights.sqlite");
        QCOMPARE(errorOfOpening(file), QString());
        QVERIFY(file.exists());
    }

    void anEmptyFileBecomesADatabase() {
        m_home->file("library/.lumbra/insights.sqlite", "");
        InsightStore store(m_file);
        store.save(fox);
        QVERIFY(isWhole(store, fox));
    }

    // Locked.

    void aWriteThatCollidesIsLostAtOnce() {
        InsightStore store(m_file);
        store.save(fox);
        OtherConnection other(m_file);
        QVERIFY(other.execute("BEGIN IMMEDIATE; INSERT INTO insights(path) VALUES('/p/theirs.png')"));
        QElapsedTimer timer;
        timer.start();
        store.save(goose);
        store.forget(fox.path);
        QVERIFY2(timer.elapsed() < 1000, "it waited for the lock");
        QVERIFY(isWhole(store, fox));
        QVERIFY(isAbsent(store, goose));
        QVERIFY(other.execute("COMMIT"));
        store.save(goose);
        QVERIFY(isWhole(store, goose));
        QCOMPARE(store.count(), 3);
    }

    void aMoveThatCollidesIsAnsweredAndRecordedLater() {
        InsightStore store(m_file);
        store.save(fox);
        OtherConnection other(m_file);
        QVERIFY(other.execute("BEGIN IMMEDIATE"));
        Insight moved = fox;
        moved.path = QStringLiteral("/q/fox.png");
        QCOMPARE(kept(store, moved), moved);
        QCOMPARE(found(store, "fox"), strings({"/p/fox.png"}));
        QVERIFY(other.execute("ROLLBACK"));
        QCOMPARE(kept(store, moved), moved);
        QVERIFY(isWhole(store, moved));
        QCOMPARE(store.count(), 1);
    }

    void aDatabaseLockedForGoodYieldsNothing() {
        QVERIFY(sqliteRuns(m_file, insightScript));
        OtherConnection other(m_file);
        QVERIFY(other.execute("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; INSERT INTO insights(path) VALUES('x'); "
                              "COMMIT"));
        QCOMPARE(errorOfOpening(m_file), QStringLiteral("database is locked"));
    }

    void openingWaitsForALockThatIsSoonGone() {
        // As when another process makes the same database just now.
        auto other = std::make_unique<OtherConnection>(m_file);
        QVERIFY(other->execute("BEGIN EXCLUSIVE; CREATE TABLE t(a)"));
        std::jthread opening([&] {
            QTest::qSleep(200);
            other->execute("COMMIT");
            other.reset();
        });
        QCOMPARE(errorOfOpening(m_file), QString());
    }

    void aProcessThatDiesWhileSavingLeavesTheRowWithItsWordsOrNeither() {
        fill(m_file);
        for (int death = 0; death < 40; ++death) {
            int ends[2];
            QCOMPARE(::pipe(ends), 0);
            const pid_t child = ::fork();
            if (child == 0) {
                InsightStore store(m_file);
                for (int i = 0;; ++i) {
                    const std::string text = "life" + std::to_string(death) + " save" + std::to_string(i);
                    if (::write(ends[1], "x", 1) != 1)
                        ::_exit(1);
                    store.save(insightWith(("/p/" + std::to_string(i % 3) + ".png").c_str(), text.c_str(), i));
                }
            }
            ::close(ends[1]);
            char begun[3];
            for (char& one : begun)
                QCOMPARE(::read(ends[0], &one, 1), 1);
            // Somewhere in the third save, each time a little later.
            for (const auto until = std::chrono::steady_clock::now() + death * std::chrono::microseconds(40);
                 std::chrono::steady_clock::now() < until;) {
            }
            ::kill(child, SIGKILL);
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            QVERIFY(WIFSIGNALED(status));
            ::close(ends[0]);

            OtherConnection left(m_file);
            QVERIFY(
                left.holds("SELECT count(*) = 0 FROM insights AS i JOIN insights_fts AS f USING (path) WHERE i.text "
                           "<> f.text"));
            QVERIFY(left.holds("SELECT (SELECT count(*) FROM insights) = (SELECT count(*) FROM insights_fts)"));
        }
        QCOMPARE(soundness(m_file), QByteArray("ok"));
        InsightStore store(m_file);
        store.save(fox);
        QVERIFY(isWhole(store, fox));
    }

    // No space, no right.

    void aFullDiskLosesWhatDoesNotFit() {
        QVERIFY2(!whyNothingCanBeMounted, whyNothingCanBeMounted.value_or(QByteArray()).constData());
        const Location small = m_home->folder("small");
        QCOMPARE(::mount("none", small.path().constData(), "tmpfs", 0, "size=1m"), 0);
        {
            InsightStore store(small.child("insights.sqlite"));
            store.save(fox);
            int saved = 0;
            // Each with its own words, until nothing more fits for a while.
            Insight large = insightWith("/p/large.png");
            for (int i = 0; i < 60; ++i) {
                large.path = QStringLiteral("/p/large%1.png").arg(i);
                QString words;
                for (int word = 0; word < 2000; ++word)
                    words += QStringLiteral(" w%1x%2").arg(i).arg(word);
                large.text = words;
                store.save(large);
                const bool isThere = kept(store, large).has_value();
                saved += isThere;
                QCOMPARE(store.search(QStringLiteral("w%1x0").arg(i), std::nullopt, 5).size(), isThere ? 1 : 0);
            }
            QVERIFY2(saved < 60, "the disk did not fill");
            QVERIFY(isWhole(store, fox));

            // The disk grows.
            QCOMPARE(::mount("none", small.path().constData(), "tmpfs", MS_REMOUNT, "size=32m"), 0);
            store.save(large);
            store.save(goose);
            QVERIFY(isWhole(store, goose));
            QVERIFY(isWhole(store, fox));
            QVERIFY(kept(store, large).has_value());
            QCOMPARE(found(store, "w59x0").size(), 1);
        }
        QCOMPARE(soundness(small.child("insights.sqlite")), QByteArray("ok"));
        QCOMPARE(::umount(small.path().constData()), 0);
    }

    void aReadOnlyFileSystemHasNoStore() {
        QVERIFY2(!whyNothingCanBeMounted, whyNothingCanBeMounted.value_or(QByteArray()).constData());
        InsightStore(m_file).save(fox);
        const Location folder = m_file.parent();
        QCOMPARE(::mount(folder.path().constData(), folder.path().constData(), nullptr, MS_BIND, nullptr), 0);
        QCOMPARE(::mount(nullptr, folder.path().constData(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr), 0);
        QVERIFY(!errorOfOpening(m_file).isEmpty());
        QCOMPARE(::umount(folder.path().constData()), 0);
        InsightStore store(m_file);
        QVERIFY(isWhole(store, fox));
    }

    void whatMayOnlyBeReadIsReadAndNotWritten() {
        if (::geteuid() != 0)
            QSKIP("only root can become somebody else");
        // A process that may write keeps the log there; the other one may read all of it.
        InsightStore owner(m_file);
        owner.save(fox);
        for (const char* suffix : {"", "-wal", "-shm"})
            QCOMPARE(::chmod((m_file.path() + suffix).constData(), 0644), 0);
        for (Location folder = m_file.parent(); folder.isAtOrBelow(m_home->path()); folder = folder.parent())
            QCOMPARE(::chmod(folder.path().constData(), 0755), 0);
        ::setfsuid(65534);
        {
            InsightStore reader(m_file);
            QVERIFY(isWhole(reader, fox));
            reader.save(goose);
            QVERIFY(isAbsent(reader, goose));
            // A file that was moved is known though that can't be written down.
            QVERIFY(kept(reader, insightWith("/q/fox.png", "fox")).has_value());
            QCOMPARE(found(reader, "fox"), QStringList{fox.path});
            useAll(reader);
        }
        ::setfsuid(0);
        QVERIFY(isWhole(owner, fox));
        QVERIFY(isAbsent(owner, goose));
    }

private:
    std::unique_ptr<TestHome> m_home;
    Location m_file;
};

int main(int argc, char* argv[]) {
    whyNothingCanBeMounted = enterPrivateMounts(); // before there is a second thread
    QCoreApplication application(argc, argv);
    InsightStoreTroubleTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_insightstoretrouble.moc"
