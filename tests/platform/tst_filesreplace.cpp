// Replacing what is there: only by what is complete, and never by itself.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Files.h"
#include "support/FileSystems.h"
#include "support/FileTrees.h"
#include "support/TestHome.h"

#include <QTest>

#include <cerrno>
#include <filesystem>

using namespace lumbra;
using Files::Transfer;

namespace {

Files::Arrival replace(const TestHome& home, const Location& source, const Location& target, Transfer::Kind kind,
                       std::stop_token stop = {}, const std::function<void(const Files::Progress&)>& report = {}) {
    return Files::carryOut({{source, target, kind, Transfer::IfTaken::replace}}, home.path().child("journal"), stop,
                           report)
        .first();
}

} // namespace

class FilesReplaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsThereIsReplaced_data() {
        QTest::addColumn<bool>("isMove");
        QTest::addColumn<bool>("across");
        QTest::addColumn<QByteArray>("sourceName");
        QTest::addColumn<QByteArray>("targetName");
        for (const bool isMove : {false, true}) {
            for (const bool across : {false, true}) {
                for (const char* source : {"file", "folder", "link"}) {
                    for (const char* target : {"file", "folder", "link", "nothing"})
                        QTest::addRow("%s %s by %s %s", target, across ? "there" : "here",
                                      isMove ? "moving" : "copying", source)
                            << isMove << across << QByteArray(source) << QByteArray(target);
                }
            }
        }
    }
    void whatIsThereIsReplaced() {
        QFETCH(bool, isMove);
        QFETCH(bool, across);
        QFETCH(QByteArray, sourceName);
        QFETCH(QByteArray, targetName);
        TestHome home;
        SecondDisk disk;
        if (across && !disk.isThere())
            QSKIP("there is no second file system here");
        const Location sources = home.folder("sources");
        const Location targets = across ? disk.path() : home.folder("targets");
        const EmptiedAtEnd homeEmptied(home.path());
        const EmptiedAtEnd diskEmptied(disk.path());
        for (const Location& top : {sources, targets}) {
            const std::string path = pathOf(top);
            writeFile(path + "/file", QByteArray::fromStdString("file in " + path));
            std::filesystem::create_directory(path + "/folder");
            writeFile(path + "/folder/inner", QByteArray::fromStdString("inner in " + path));
            std::filesystem::create_symlink("file in " + path, path + "/link");
            setAttribute(path + "/file", "user.of", QByteArray::fromStdString(path));
        }
        ::chmod((pathOf(targets) + "/folder").c_str(), 0555);
        const Location source = sources.child(sourceName.toStdString());
        const Location target = targets.child(targetName.toStdString());
        const QByteArrayList before = everythingIn(source);
        const QByteArrayList names = namesIn(targets);
        const auto arrival = replace(home, source, target, isMove ? Transfer::Kind::move : Transfer::Kind::copy);
        QVERIFY(!arrival.error);
        QCOMPARE(arrival.target, target);
        QCOMPARE(everythingIn(target), before);
        QCOMPARE(Files::isTaken(source), !isMove);
        QCOMPARE(namesIn(targets).size(), names.size() + (targetName == "nothing"));
        QVERIFY(!home.path().child("journal").exists());
    }

    void nothingTakesItsOwnPlace_data() {
        QTest::addColumn<bool>("isMove");
        QTest::newRow("copied") << false;
        QTest::newRow("moved") << true;
    }
    void nothingTakesItsOwnPlace() {
        QFETCH(bool, isMove);
        const auto kind = isMove ? Transfer::Kind::move : Transfer::Kind::copy;
        TestHome home;
        const Location file = home.file("folder/a.png", "picture");
        std::filesystem::create_directory_symlink("folder", pathOf(home.path()) + "/alias");
        std::filesystem::create_hard_link(pathOf(file), pathOf(home.path()) + "/other name");
        for (const Location& same :
             {file, home.path().child("alias").child("a.png"), home.path().child("other name")}) {
            const auto arrival = replace(home, file, same, kind);
            QVERIFY(!arrival.target);
            QCOMPARE(arrival.error->code, EINVAL);
            QVERIFY(arrival.error->description.endsWith(QStringLiteral(" a.png: it can't take its own place.")));
            QCOMPARE(fileBytes(file), "picture");
        }
        QCOMPARE(namesIn(home.path()), (QByteArrayList{"alias", "folder", "other name", "run"}));
    }

    void nothingReplacesAFolderThatItIsIn() {
        TestHome home;
        const Location file = home.file("folder/inner/a.png", "picture");
        for (const auto kind : {Transfer::Kind::copy, Transfer::Kind::move}) {
            const auto arrival = replace(home, file, home.path().child("folder"), kind);
            QVERIFY(!arrival.target);
            QCOMPARE(arrival.error->code, EINVAL);
            QCOMPARE(fileBytes(file), "picture");
        }
    }

    void whatFailsLeavesWhatIsThere() {
        TestHome home;
        home.file("source/a.png");
        QCOMPARE(::mkfifo((pathOf(home.path()) + "/source/pipe").c_str(), 0600), 0);
        const Location target = home.file("to/source", "old").parent().child("source");
        const auto arrival = replace(home, home.path().child("source"), target, Transfer::Kind::copy);
        QVERIFY(arrival.error);
        QCOMPARE(fileBytes(target), "old");
        QCOMPARE(namesIn(target.parent()), QByteArrayList{"source"});
    }

    void cancelledLeavesWhatIsThere() {
        TestHome home;
        const Location source = home.file("a.png", "new");
        const Location target = home.file("to/a.png", "old");
        std::stop_source stop;
        const auto arrival = replace(home, source, target, Transfer::Kind::copy, stop.get_token(),
                                     [&](const auto&) { stop.request_stop(); });
        QVERIFY(!arrival.target && !arrival.error);
        QCOMPARE(fileBytes(target), "old");
        QCOMPARE(namesIn(target.parent()), QByteArrayList{"a.png"});
    }

    void theOldOneStandsUntilTheNewOneIsComplete() {
        TestHome home;
        const Location source = home.file("a.png", "new");
        const Location target = home.file("to/a.png", "old");
        bool isOld = false;
        replace(home, source, target, Transfer::Kind::copy, {}, [&](const Files::Progress& progress) {
            isOld = isOld || (progress.files == 0 && fileBytes(target) == "old");
        });
        QVERIFY(isOld);
        QCOMPARE(fileBytes(target), "new");
    }
};

QTEST_GUILESS_MAIN(FilesReplaceTest)
#include "tst_filesreplace.moc"
