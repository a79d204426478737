// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileFacts.h"
#include "support/TestHome.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumbra;

class FileFactsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileIsToldWithItsSizeAndTime() {
        TestHome home;
        const Location file = home.file("sub/a.png", "12345");
        TestHome::touch(file, 1'650'000'000.25);
        const int folder = ::open(file.parent().path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const auto ofEntry = FileFacts::ofEntry(folder, "a.png");
        ::close(folder);
        for (const auto& facts : {FileFacts::of(file), ofEntry}) {
            QVERIFY(facts);
            QVERIFY(facts->isRegularFile && !facts->isFolder);
            QCOMPARE(facts->size, 5);
            QCOMPARE(facts->modified, Date{1'650'000'000.25});
        }
    }

    void aTimeBefore1970IsKept() {
        TestHome home;
        const Location file = home.file("a.png");
        TestHome::touch(file, -1000.5);
        QCOMPARE(FileFacts::of(file)->modified, Date{-1000.5});
    }

    void foldersLinksAndPipesAreNoFiles() {
        TestHome home;
        const auto folder = FileFacts::of(home.folder("folder"));
        QVERIFY(folder && folder->isFolder && !folder->isRegularFile);
        home.file("a.png");
        const Location link = home.path().child("link");
        QCOMPARE(::symlink("a.png", link.path().constData()), 0);
        const Location pipe = home.path().child("pipe");
        QCOMPARE(::mkfifo(pipe.path().constData(), 0600), 0);
        for (const Location& other : {link, pipe}) {
            const auto facts = FileFacts::of(other);
            QVERIFY(facts && !facts->isFolder && !facts->isRegularFile);
        }
    }

    void whatIsNotThereIsAbsent() {
        TestHome home;
        QVERIFY(!FileFacts::of(home.path().child("gone")));
        QVERIFY(!FileFacts::of(Location()));
        QVERIFY(!FileFacts::ofEntry(-1, "a.png"));
    }
};

QTEST_GUILESS_MAIN(FileFactsTest)
#include "tst_filefacts.moc"
