// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/state/StateStore.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QtTest>

#include <sys/stat.h>

using namespace lumbra;

class LibraryStateTest : public QObject {
    Q_OBJECT

private:
    static LibraryState sample() {
        return {{QStringLiteral("a"), QStringLiteral("a/x"), QStringLiteral("ab/x")},
                {{QUuid::createUuid(), QStringLiteral("Group"), {QStringLiteral("a"), QStringLiteral("c")}, 3, true},
                 {QUuid::createUuid(), QStringLiteral("Lone"), {QStringLiteral("a")}, std::nullopt, false}},
                {QStringLiteral("a")},
                {{QStringLiteral("a"), 2}, {QStringLiteral("Group"), 5}},
                {QStringLiteral("acme")},
                QStringList{QStringLiteral("tidy:a")}};
    }

    static Location stateFile(const TestHome& home) { return home.path().child("root/.lumbra/library.json"); }

    static QByteArray read(const Location& location) {
        QFile file(location.toString());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private Q_SLOTS:
    void survivesTheDisk() {
        const TestHome home;
        const Location root = home.folder("root");
        const LibraryState state = sample();
        StateStore::save(state, root);
        QVERIFY(StateStore::load(root) == state);
    }

    void theFileIsPrettySortedAndUnescaped() {
        const TestHome home;
        const Location root = home.folder("root");
        StateStore::save(sample(), root);
        const QByteArray text = read(stateFile(home));
        QVERIFY(text.contains("\n"));
        QVERIFY(text.contains("\"a/x\""));
        const QByteArrayList keys{"\"colors\"", "\"dismissed\"", "\"groups\"",
                                  "\"hidden\"", "\"pins\"",      "\"tidyDismissed\""};
        qsizetype last = -1;
        for (const QByteArray& key : keys) {
            QVERIFY(text.indexOf(key) > last);
            last = text.indexOf(key);
        }
    }

    void whatIsAbsentIsLeftOut() {
        const TestHome home;
        const Location root = home.folder("root");
        LibraryState state;
        state.groups.append({QUuid::createUuid(), QStringLiteral("G"), {QStringLiteral("p")}, std::nullopt, false});
        StateStore::save(state, root);
        const QByteArray text = read(stateFile(home));
        QVERIFY(!text.contains("tidyDismissed"));
        QVERIFY(!text.contains("\"color\""));
        QVERIFY(StateStore::load(root) == state);
    }

    void brokenFilesFailAsAWhole_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("loads");
        const QByteArray whole = R"({"pins":[],"groups":[],"hidden":["p"],"colors":{},"dismissed":[])";
        QTest::newRow("whole") << whole + "}" << true;
        QTest::newRow("unknown keys are ignored") << whole + R"(,"more":1})" << true;
        QTest::newRow("half-written") << whole << false;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("an array") << QByteArray("[]") << false;
        QTest::newRow("without dismissed") << QByteArray(R"({"pins":[],"groups":[],"hidden":[],"colors":{}})") << false;
        QTest::newRow("a number among the pins")
            << QByteArray(R"({"pins":[1],"groups":[],"hidden":[],"colors":{},"dismissed":[]})") << false;
        QTest::newRow("a colour that is no number")
            << QByteArray(R"({"pins":[],"groups":[],"hidden":[],"colors":{"a":"b"},"dismissed":[]})") << false;
        QTest::newRow("a fractional colour")
            << QByteArray(R"({"pins":[],"groups":[],"hidden":[],"colors":{"a":1.5},"dismissed":[]})") << false;
        QTest::newRow("tidyDismissed of the wrong type") << whole + R"(,"tidyDismissed":{}})" << false;
        QTest::newRow("a group without collapsed") << QByteArray(
            R"({"pins":[],"groups":[{"id":"7D444840-9DC0-11D1-B245-5FFDCE74FAD2","name":"n","projects":[]}],)"
            R"("hidden":[],"colors":{},"dismissed":[]})")
                                                   << false;
        QTest::newRow("a group whose id is none")
            << QByteArray(R"({"pins":[],"groups":[{"id":"x","name":"n","projects":[],"collapsed":false}],)"
                          R"("hidden":[],"colors":{},"dismissed":[]})")
            << false;
        QTest::newRow("a group without colour") << QByteArray(
            R"({"pins":[],"groups":[{"id":"7d444840-9dc0-11d1-b245-5ffdce74fad2","name":"n","projects":[],)"
            R"("collapsed":false}],"hidden":[],"colors":{},"dismissed":[]})")
                                                << true;
    }
    void brokenFilesFailAsAWhole() {
        QFETCH(QByteArray, text);
        QFETCH(bool, loads);
        const TestHome home;
        home.file("root/.lumbra/library.json", text);
        QCOMPARE(StateStore::load(home.path().child("root")).has_value(), loads);
    }

    void aSaveThatFailsLeavesTheOldFile() {
        const TestHome home;
        const Location root = home.folder("root");
        StateStore::save(sample(), root);
        const QByteArray before = read(stateFile(home));
        // A folder stands where the file should go: not even root may replace it by a file.
        const Location other = home.folder("other/.lumbra/library.json/x").parent();
        StateStore::save(sample(), home.path().child("other"));
        QVERIFY(other.isFolder());
        QCOMPARE(read(stateFile(home)), before);
        QVERIFY(!StateStore::load(Location(QByteArray("/nonexistent"))));
    }

    void aRenamedProjectTakesItsPinsAlong() {
        const LibraryState next = sample().renaming(QStringLiteral("a"), QStringLiteral("b"));
        QCOMPARE(next.pins, (QStringList{QStringLiteral("b"), QStringLiteral("b/x"), QStringLiteral("ab/x")}));
        QCOMPARE(next.groups[0].projects, (QStringList{QStringLiteral("b"), QStringLiteral("c")}));
        QCOMPARE(next.hidden, QStringList{QStringLiteral("b")});
        QCOMPARE(next.colors, (QMap<QString, int>{{QStringLiteral("b"), 2}, {QStringLiteral("Group"), 5}}));
        QCOMPARE(next.dismissed, sample().dismissed);
        QCOMPARE(next.tidyDismissed, sample().tidyDismissed);
    }

    void aForgottenProjectLeavesNothingButItsDismissals() {
        const LibraryState next = sample().forgetting(QStringLiteral("a"));
        QCOMPARE(next.pins, QStringList{QStringLiteral("ab/x")});
        QCOMPARE(next.groups.size(), 1); // the group that held only this project went with it
        QCOMPARE(next.groups[0].projects, QStringList{QStringLiteral("c")});
        QVERIFY(next.hidden.isEmpty());
        QCOMPARE(next.colors, (QMap<QString, int>{{QStringLiteral("Group"), 5}}));
        QCOMPARE(next.dismissed, sample().dismissed);
    }
};

QTEST_GUILESS_MAIN(LibraryStateTest)
#include "tst_librarystate.moc"
