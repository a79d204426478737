// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CoreError.h"
#include "core/JsonFile.h"
#include "support/AsNobody.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace lumbra;

namespace {

QByteArray bytesOf(const Location& location) {
    QFile file(location.toString());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class JsonFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyAnObjectIsRead_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("an object") << QByteArray(R"({"a": 1})") << true;
        QTest::newRow("an empty object") << QByteArray("{}") << true;
        QTest::newRow("a list") << QByteArray("[1]") << false;
        QTest::newRow("a text") << QByteArray(R"("a")") << false;
        QTest::newRow("two objects") << QByteArray("{} {}") << false;
        QTest::newRow("half-written") << QByteArray(R"({"a": )") << false;
        QTest::newRow("nothing") << QByteArray() << false;
        QTest::newRow("bytes") << QByteArray("\0\xff\x01", 3) << false;
    }

    void onlyAnObjectIsRead() {
        QFETCH(QByteArray, text);
        QFETCH(bool, isRead);
        TestHome home;
        QCOMPARE(JsonFile::read(home.file("a.json", text)).has_value(), isRead);
    }

    void aFileIsReadUpToItsBound() {
        TestHome home;
        const Location file = home.file("a.json", QByteArray(R"({"a": 1})") + QByteArray(92, ' '));
        QVERIFY(JsonFile::read(file, 100));
        QVERIFY(!JsonFile::read(file, 99));
    }

    void whatIsNoFileIsAbsentAtOnce() {
        TestHome home;
        QVERIFY(!JsonFile::read(home.path().child("gone")));
        QVERIFY(!JsonFile::read(home.folder("folder")));
        const Location pipe = home.path().child("pipe");
        QCOMPARE(::mkfifo(pipe.path().constData(), 0600), 0);
        QVERIFY(!JsonFile::read(pipe));
        const Location endless = home.path().child("endless");
        QCOMPARE(::symlink("/dev/zero", endless.path().constData()), 0);
        QVERIFY(!JsonFile::read(endless));
    }

    void aFileThatMayNotBeReadIsAbsent() {
        TestHome home;
        const Location file = home.file("a.json", "{}");
        ::chmod(home.path().path().constData(), 0755);
        ::chmod(file.path().constData(), 0);
        const AsNobody nobody;
        QVERIFY(!JsonFile::read(file));
    }

    void keysAreSortedAndSlashesStay() {
        TestHome home;
        const Location file = home.path().child("a.json");
        JsonFile::write(file, {{QStringLiteral("b"), QStringLiteral("/x/y")}, {QStringLiteral("a"), QJsonArray{1}}});
        QCOMPARE(bytesOf(file), QByteArray("{\n"
                                           "    \"a\": [\n"
                                           "        1\n"
                                           "    ],\n"
                                           "    \"b\": \"/x/y\"\n"
                                           "}\n"));
        QVERIFY(JsonFile::read(file));
        QCOMPARE(QDir(home.path().toString()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("a.json")});
    }

    void aWriteThatFailsIsThrownAndChangesNothing() {
        TestHome home;
        const Location file = home.file("closed/a.json", R"({"old": true})");
        ::chmod(home.path().path().constData(), 0755);
        ::chmod(file.parent().path().constData(), 0555);
        ::chmod(file.path().constData(), 0444);
        {
            const AsNobody nobody;
            QVERIFY_EXCEPTION_THROWN(JsonFile::write(file, {}), CoreError);
        }
        QCOMPARE(bytesOf(file), QByteArray(R"({"old": true})"));
        QVERIFY_EXCEPTION_THROWN(JsonFile::write(home.folder("folder"), {}), CoreError);
        QVERIFY_EXCEPTION_THROWN(JsonFile::write(Location(), {}), CoreError);
    }

    void foldersAreMadeWithThoseAbove() {
        TestHome home;
        const Location deep = home.path().child("a/b/c");
        JsonFile::makeFolder(deep);
        QVERIFY(deep.isFolder());
        JsonFile::makeFolder(deep);
        home.file("occupied");
        QVERIFY_EXCEPTION_THROWN(JsonFile::makeFolder(home.path().child("occupied")), CoreError);
        QVERIFY_EXCEPTION_THROWN(JsonFile::makeFolder(home.path().child("occupied/below")), CoreError);
        QVERIFY_EXCEPTION_THROWN(JsonFile::makeFolder(Location()), CoreError);
    }
};

QTEST_GUILESS_MAIN(JsonFileTest)
#include "tst_jsonfile.moc"
