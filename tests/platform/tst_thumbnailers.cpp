// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Thumbnailers.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace lumbra;

class tst_Thumbnailers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        // What names stand for, without the programs that this machine has. It is looked for once in a process.
        QVERIFY(QFile::link(QStringLiteral("/usr/share/mime"), m_types.filePath(QStringLiteral("mime"))));
    }

    void init() {
        m_home = std::make_unique<TestHome>();
        m_home->folder("system/thumbnailers");
        qputenv("XDG_DATA_DIRS", m_home->path().child("system").path() + ':' + m_types.path().toUtf8());
    }

    void aRegisteredProgramMakesThePicture() {
        add("system", "a", "cp %i %o");
        QCOMPARE(made(m_home->file("one.txt", "picture")), QByteArray("picture"));
    }

    void theProgramIsToldAddressPathAndSize() {
        add("system", "a", "sh -c 'echo \"$0\" \"$1\" \"$2\" > \"$3\"' %u %i %s %o");
        const Location file = m_home->file("two words.txt");
        QCOMPARE(made(file).trimmed(), "file://" + m_home->path().path() + "/two%20words.txt " + file.path() + " 240");
    }

    void aNameIsNoCommand() {
        add("system", "a", "cp %i %o");
        QCOMPARE(made(m_home->file("; touch $HOME/touched #.txt", "picture")), QByteArray("picture"));
        QCOMPARE(made(m_home->file("%o %s.txt", "another")), QByteArray("another"));
        QVERIFY(!m_home->path().child("touched").exists());
    }

    void theUsersOwnHidesTheSystems() {
        add("system", "a", "sh -c 'echo system > \"$0\"' %o");
        add(".local/share", "a", "sh -c 'echo own > \"$0\"' %o");
        QCOMPARE(made(m_home->file("one.txt")), QByteArray("own\n"));
    }

    void wordsAreWrittenOfDocumentsThatNoLibraryReads_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("a letter") << QByteArray("catdoc") << QByteArray("letter.DOC");
        QTest::newRow("a table") << QByteArray("xls2csv") << QByteArray("table.xls");
    }
    void wordsAreWrittenOfDocumentsThatNoLibraryReads() {
        QFETCH(QByteArray, program);
        QFETCH(QByteArray, file);
        const QByteArray before = qgetenv("PATH");
        const auto restore = qScopeGuard([&before] { qputenv("PATH", before); });
        const Location tool =
            m_home->file(("tools/" + program).toStdString(), "#!/bin/sh\necho \"$1 $2\"; cat \"$3\"\n");
        QCOMPARE(::chmod(tool.path().constData(), 0700), 0);
        qputenv("PATH", tool.parent().path() + ':' + before);
        const Location document = m_home->file(file.toStdString(), "words");
        QCOMPARE(made(document), QByteArray("-d utf-8\nwords"));
        m_home->file(file.toStdString(), QByteArray(1'000'000, 'w'));
        QCOMPARE(made(document).size(), 256 * 1024);
        add("system", "a", "cp %i %o", "application/msword;application/vnd.ms-excel;");
        QCOMPARE(made(document).size(), 1'000'000);
    }

    void otherTypesAreNotItsBusiness() {
        add("system", "a", "cp %i %o", "image/png;image/gif;");
        const Location text = m_home->file("one.txt"), picture = m_home->file("one.png");
        const Thumbnailers thumbnailers;
        QVERIFY(!thumbnailers.knows(text));
        QVERIFY(thumbnailers.knows(picture));
        QVERIFY(made(text).isNull());
    }

    void whatIsNotInstalledIsNotAsked() {
        add("system", "a", "cp %i %o", "text/plain;", "TryExec=/no/such/program\n");
        QVERIFY(!Thumbnailers().knows(m_home->file("one.txt")));
    }

    void damagedEntriesAreNone_data() {
        QTest::addColumn<QByteArray>("entry");
        QTest::newRow("nothing") << QByteArray("");
        QTest::newRow("no text") << QByteArray("\xff\xfe\0\0", 4);
        QTest::newRow("no group") << QByteArray("Exec=cp %i %o\nMimeType=text/plain;\n");
        QTest::newRow("another group") << QByteArray("[Desktop Entry]\nExec=cp %i %o\nMimeType=text/plain;\n");
        QTest::newRow("no program") << QByteArray("[Thumbnailer Entry]\nMimeType=text/plain;\n");
        QTest::newRow("an open quote") << QByteArray("[Thumbnailer Entry]\nExec=cp '%i %o\nMimeType=text/plain;\n");
    }

    void damagedEntriesAreNone() {
        QFETCH(QByteArray, entry);
        m_home->file("system/thumbnailers/a.thumbnailer", entry);
        QVERIFY(made(m_home->file("one.txt")).isNull());
    }

    void aProgramThatFailsMakesNothing() {
        add("system", "a", "sh -c 'echo half > \"$0\"; exit 1' %o");
        QVERIFY(made(m_home->file("one.txt")).isNull());
    }

    void aProgramThatWritesNothingMakesNothing() {
        add("system", "a", "true");
        QVERIFY(made(m_home->file("one.txt")).isNull());
    }

    void aProgramThatStallsIsEnded() {
        add("system", "a", "sleep 60");
        QElapsedTimer timer;
        timer.start();
        QVERIFY(made(m_home->file("one.txt")).isNull());
        QVERIFY(timer.elapsed() >= 4500 && timer.elapsed() < 20'000);
    }

    void aProgramThatWritesWithoutEndIsEnded() {
        add("system", "a", "dd if=/dev/zero bs=1M count=100 of=%o");
        QVERIFY(made(m_home->file("one.txt")).isNull());
    }

    void theFolderIsPrivateAndGoesAtOnce() {
        add("system", "a", "cp %i %o");
        Location folder;
        Thumbnailers().make(m_home->file("one.txt", "picture"), 240, [&folder](const Location& picture) {
            folder = picture.parent();
            struct stat status;
            QCOMPARE(::stat(folder.path().constData(), &status), 0);
            QCOMPARE(status.st_mode & 0777, 0700U);
        });
        QVERIFY(!folder.isEmpty());
        QVERIFY(!folder.exists());
    }

    void theProgramStandsInThatFolder() {
        add("system", "a", "sh -c 'pwd > \"$0\"; touch beside' %o");
        const QByteArray folder = made(m_home->file("one.txt")).trimmed();
        QVERIFY(!folder.isEmpty());
        QVERIFY(!QFile::exists(QString::fromUtf8(folder)));
    }

private:
    void add(const QByteArray& data, const QByteArray& name, const QByteArray& command,
             const QByteArray& types = "text/plain;", const QByteArray& more = {}) const {
        m_home->file((data + "/thumbnailers/" + name + ".thumbnailer").toStdString(),
                     "[Thumbnailer Entry]\n" + more + "Exec=" + command + "\nMimeType=" + types + "\n");
    }

    static QByteArray made(const Location& file) {
        QByteArray bytes;
        Thumbnailers().make(file, 240, [&bytes](const Location& picture) {
            QFile written(picture.toString());
            if (written.open(QIODevice::ReadOnly))
                bytes = written.readAll();
        });
        return bytes;
    }

    QTemporaryDir m_types;
    std::unique_ptr<TestHome> m_home;
};

QTEST_GUILESS_MAIN(tst_Thumbnailers)
#include "tst_thumbnailers.moc"
