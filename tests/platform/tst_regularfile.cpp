// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RegularFile.h"
#include "support/TestHome.h"

#include <QtTest>

using namespace lumbra;

class tst_RegularFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsNoFileIsAbsentAtOnce_data() {
        QTest::addColumn<Location>("location");
        const Location pipe = m_home.path().child("pipe.png");
        QCOMPARE(::mkfifo(pipe.path().constData(), 0600), 0);
        const Location link = m_home.path().child("link.png");
        QCOMPARE(::symlink(pipe.path().constData(), link.path().constData()), 0);
        QTest::newRow("a pipe that nobody writes into") << pipe;
        QTest::newRow("a link to it") << link;
        QTest::newRow("a device without an end") << Location(u"/dev/zero");
        QTest::newRow("a folder") << m_home.folder("folder.png");
        QTest::newRow("nothing") << m_home.path().child("gone.png");
        QTest::newRow("nowhere") << Location();
    }

    void whatIsNoFileIsAbsentAtOnce() {
        QFETCH(Location, location);
        QVERIFY(!RegularFile::open(location));
        QVERIFY(!RegularFile::bytes(location, 100));
    }

    void aFileIsReadAsAWholeUpToItsBound_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<qint64>("largest");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("no bytes") << QByteArray("") << qint64(0) << true;
        QTest::newRow("less") << QByteArray("ab\0c", 4) << qint64(5) << true;
        QTest::newRow("as many") << QByteArray("abcd") << qint64(4) << true;
        QTest::newRow("one more") << QByteArray("abcde") << qint64(4) << false;
    }

    void aFileIsReadAsAWholeUpToItsBound() {
        QFETCH(QByteArray, bytes);
        QFETCH(qint64, largest);
        const Location file = m_home.file("file", bytes);
        const auto read = RegularFile::bytes(file, largest);
        QTEST(read.has_value(), "isRead");
        if (read)
            QCOMPARE(*read, bytes);
    }

    void aLinkStandsForItsTarget() {
        const Location file = m_home.file("target", "abc");
        const Location link = m_home.path().child("link");
        QCOMPARE(::symlink(file.path().constData(), link.path().constData()), 0);
        QCOMPARE(RegularFile::bytes(link, 3), QByteArray("abc"));
    }

    void readingGoesOnWhereItStands() {
        const auto file = RegularFile::open(m_home.file("file", "abcde"));
        QVERIFY(file);
        QCOMPARE(file->size(), 5);
        QCOMPARE(file->read(2), QByteArray("ab"));
        QCOMPARE(file->read(2), QByteArray("cd"));
        QCOMPARE(file->read(2), QByteArray("e"));
        QCOMPARE(file->read(2), QByteArray(""));
    }

    // Those of the kernel say that they have none.
    void aFileThatTellsNoSizeIsBoundedAllTheSame() {
        const Location facts(u"/proc/self/status");
        QVERIFY(RegularFile::bytes(facts, 1 << 20).value_or(QByteArray()).contains("Pid:"));
        QVERIFY(!RegularFile::bytes(facts, 10));
    }

private:
    TestHome m_home;
};

QTEST_GUILESS_MAIN(tst_RegularFile)
#include "tst_regularfile.moc"
