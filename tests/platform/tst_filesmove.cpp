// Moves between file systems: the source goes only when, and only as far as, all of it has arrived.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Files.h"
#include "support/FileSystems.h"
#include "support/FileTrees.h"
#include "support/TestHome.h"

#include <QTest>
#include <QThread>

#include <cerrno>
#include <filesystem>

using namespace lumbra;
using Files::Transfer;

namespace {

using Report = std::function<void(const Files::Progress&)>;

Files::Arrival move(const TestHome& home, const Location& source, const Location& target, const Report& report = {}) {
    return Files::carryOut({{source, target, Transfer::Kind::move}}, home.path().child("journal"), {}, report).first();
}

// Acts once, when the first file is under way: all the names of its folder are read by then, but no bytes.
Report whenBegun(const std::function<void(const Files::Progress&)>& act) {
    return [act, isDone = std::make_shared<bool>(false)](const Files::Progress& progress) {
        if (!std::exchange(*isDone, true))
            act(progress);
    };
}

// Acts once, as soon as a first file has been copied.
Report whenOneIsCopied(const std::function<void(const Files::Progress&)>& act) {
    return [act, isDone = std::make_shared<bool>(false)](const Files::Progress& progress) {
        if (progress.files > 0 && !std::exchange(*isDone, true))
            act(progress);
        QThread::msleep(51); // so that the next step is reported too
    };
}

} // namespace

class FilesMoveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        if (!SecondDisk().isThere())
            QSKIP("there is no second file system here");
    }

    void aFolderMovesWithAllThatItCarries_data() {
        QTest::addColumn<bool>("isBack");
        QTest::newRow("there") << false;
        QTest::newRow("and back") << true;
    }
    void aFolderMovesWithAllThatItCarries() {
        QFETCH(bool, isBack);
        TestHome home;
        const EmptiedAtEnd homeEmptied(home.path());
        SecondDisk disk;
        const EmptiedAtEnd diskEmptied(disk.path());
        const Location source = (isBack ? disk.path() : home.path()).child("source");
        const Location target = (isBack ? home.path() : disk.path()).child("target");
        makeMixedTree(source);
        const QByteArrayList before = everythingIn(source);
        const auto arrival = move(home, source, target);
        QVERIFY(!arrival.error);
        QCOMPARE(arrival.target, target);
        QCOMPARE(everythingIn(target), before);
        QVERIFY(!Files::isTaken(source));
        QVERIFY(!home.path().child("journal").exists());
    }

    void onOneFileSystemItIsARename() {
        TestHome home;
        const EmptiedAtEnd homeEmptied(home.path());
        const Location source = home.path().child("source");
        makeMixedTree(source);
        struct stat before;
        QCOMPARE(::stat((pathOf(source) + "/a.png").c_str(), &before), 0);
        home.file("to/source");
        Files::Progress last{{}, -1, -1, -1, -1};
        const auto arrival =
            move(home, source, home.path().child("to").child("source"), [&](const auto& progress) { last = progress; });
        QCOMPARE(arrival.target, home.path().child("to").child("source 2"));
        struct stat after;
        QCOMPARE(::stat((pathOf(*arrival.target) + "/a.png").c_str(), &after), 0);
        QCOMPARE(after.st_ino, before.st_ino);
        QCOMPARE(last, Files::Progress());
    }

    void ontoItselfAMoveDoesNothing() {
        TestHome home;
        const Location file = home.file("a.png");
        QCOMPARE(move(home, file, file).target, file);
        QCOMPARE(namesIn(home.path()), (QByteArrayList{"a.png", "run"}));
    }

    void aSingleFileAndALinkMove() {
        TestHome home;
        SecondDisk disk;
        const Location file = home.file("a.png", "picture");
        std::filesystem::create_symlink("a.png", pathOf(home.path()) + "/link");
        QVERIFY(!move(home, file, disk.path().child("a.png")).error);
        QVERIFY(!move(home, home.path().child("link"), disk.path().child("link")).error);
        QCOMPARE(fileBytes(disk.path().child("link")), "picture");
        QCOMPARE(namesIn(home.path()), QByteArrayList{"run"});
    }

    // As programs with a broken clock leave them; counted in nanoseconds since 1970, the first do not fit into 63 bits.
    void filesOfFarAwayYearsMove_data() {
        QTest::addColumn<double>("seconds");
        QTest::newRow("2400") << 13569465600.0;
        QTest::newRow("1901") << -2177452800.0;
    }
    void filesOfFarAwayYearsMove() {
        QFETCH(double, seconds);
        TestHome home;
        SecondDisk disk;
        const Location file = home.file("a.png", "picture");
        TestHome::touch(file, seconds);
        QVERIFY(!move(home, file, disk.path().child("a.png")).error);
        QCOMPARE(fileBytes(disk.path().child("a.png")), "picture");
        QVERIFY(!Files::isTaken(file));
    }

    void whatIsAddedMeanwhileStays() {
        TestHome home;
        SecondDisk disk;
        const Location source = home.file("source/inner/a.png").parent().parent();
        home.file("source/b.png");
        const auto arrival = move(home, source, disk.path().child("source"), whenBegun([&](const auto&) {
                                      home.file("source/new.png", "new");
                                      home.file("source/inner/new.png", "new");
                                  }));
        QCOMPARE(arrival.target, disk.path().child("source"));
        QVERIFY(arrival.error);
        QCOMPARE(arrival.error->description,
                 QStringLiteral("Couldn't move all of source: what was changed or added meanwhile stays."));
        QCOMPARE(fileBytes(source.child("new.png")), "new");
        QVERIFY(!Files::isTaken(source.child("b.png")));
        QVERIFY(disk.path().child("source").child("b.png").exists());
        // Added before its folder was read, it has moved; after, it stays. It is never lost.
        const bool hasMoved = disk.path().child("source").child("inner").child("new.png").exists();
        QCOMPARE(Files::isTaken(source.child("inner").child("new.png")), !hasMoved);
    }

    void whatIsChangedAfterItWasCopiedStays_data() {
        QTest::addColumn<QString>("change");
        for (const char* change : {"rewritten", "appended", "starred", "replaced", "same size and time"})
            QTest::newRow(change) << QString::fromUtf8(change);
    }
    void whatIsChangedAfterItWasCopiedStays() {
        QFETCH(QString, change);
        TestHome home;
        SecondDisk disk;
        const Location source = home.folder("source");
        for (const char* name : {"a.png", "b.png"}) {
            writeFile(pathOf(source) + '/' + name, "old bytes");
            TestHome::touch(source.child(name), 1'000'000'000);
        }
        QByteArray changed;
        const auto arrival =
            move(home, source, disk.path().child("source"), whenOneIsCopied([&](const Files::Progress& progress) {
                     // The one under way is the second.
                     changed = progress.name == QStringLiteral("a.png") ? "b.png" : "a.png";
                     const std::string path = pathOf(source) + '/' + changed.toStdString();
                     if (change == QStringLiteral("appended")) {
                         std::ofstream(path, std::ios::app) << "more";
                     } else if (change == QStringLiteral("starred")) {
                         setAttribute(path, "user.com.lumbra.starred", "1");
                     } else {
                         if (change == QStringLiteral("replaced"))
                             ::unlink(path.c_str());
                         writeFile(path, "new bytes");
                         if (change == QStringLiteral("same size and time"))
                             TestHome::touch(source.child(changed.toStdString()), 1'000'000'000);
                     }
                 }));
        QVERIFY(!changed.isEmpty());
        QVERIFY(arrival.error);
        QCOMPARE(arrival.target, disk.path().child("source"));
        QCOMPARE(namesIn(source), QByteArrayList{changed});
        QCOMPARE(namesIn(disk.path().child("source")), (QByteArrayList{"a.png", "b.png"}));
        if (change == QStringLiteral("starred"))
            QCOMPARE(attributesOf(source.child(changed.toStdString())).size(), 1U);
        else
            QVERIFY(fileBytes(source.child(changed.toStdString())) != "old bytes");
    }

    void aFolderStarredMeanwhileKeepsItsStar() {
        TestHome home;
        SecondDisk disk;
        const Location source = home.file("source/inner/a.png").parent().parent();
        home.file("source/b.png");
        const auto arrival =
            move(home, source, disk.path().child("source"),
                 whenOneIsCopied([&](const auto&) { setAttribute(source, "user.com.lumbra.starred", "1"); }));
        // Set before the folder was left, it has moved along as well.
        QVERIFY(arrival.target);
        QVERIFY(source.exists());
        QCOMPARE(attributesOf(source).size(), 1U);
    }

    void aFolderReplacedMeanwhileStays() {
        TestHome home;
        SecondDisk disk;
        const Location source = home.file("source/a.png").parent();
        const auto arrival = move(home, source, disk.path().child("source"), whenBegun([&](const auto&) {
                                      std::filesystem::rename(pathOf(source), pathOf(source) + " before");
                                      home.file("source/a.png", "another");
                                  }));
        QVERIFY(arrival.error || arrival.target);
        QCOMPARE(fileBytes(source.child("a.png")), "another");
        QVERIFY(home.path().child("source before").child("a.png").exists()
                || disk.path().child("source").child("a.png").exists());
    }

    void namesOfOneFileMoveAll() {
        TestHome home;
        SecondDisk disk;
        home.file("source/a", "same");
        for (const char* name : {"b", "c"})
            std::filesystem::create_hard_link(pathOf(home.path()) + "/source/a",
                                              pathOf(home.path()) + "/source/" + name);
        std::filesystem::create_hard_link(pathOf(home.path()) + "/source/a", pathOf(home.path()) + "/outside");
        const auto arrival = move(home, home.path().child("source"), disk.path().child("source"));
        QVERIFY(!arrival.error);
        QVERIFY(!Files::isTaken(home.path().child("source")));
        QCOMPARE(namesIn(disk.path().child("source")), (QByteArrayList{"a", "b", "c"}));
        QCOMPARE(fileBytes(home.path().child("outside")), "same");
    }

    void attributesTheTargetCannotHoldKeepTheSource() {
        TestHome home;
        const EmptiedAtEnd homeEmptied(home.path());
        const MountedDisk disk("ramfs", "");
        if (!disk.isThere())
            QSKIP("no file system without attributes may be mounted here");
        const Location source = home.path().child("source");
        makeMixedTree(source);
        const QByteArrayList before = everythingIn(source);
        if (attributesOf(source).empty())
            QSKIP("the temporary folder holds no attributes");
        const auto arrival = move(home, source, disk.path().child("source"));
        QCOMPARE(arrival.target, disk.path().child("source"));
        QCOMPARE(arrival.error->code, EOPNOTSUPP);
        QCOMPARE(
            arrival.error->description,
            QStringLiteral("Couldn't move source: the disk there can't hold its attributes. It was copied instead."));
        QCOMPARE(everythingIn(source), before);
        QCOMPARE(fileBytes(disk.path().child("source").child("a.png")), "a picture");

        // A copy takes nothing away, and so there is nothing to say.
        const auto copies =
            Files::carryOut({{source, disk.path().child("copy"), Transfer::Kind::copy}}, home.path().child("journal"));
        QVERIFY(!copies[0].error);
        QVERIFY(disk.path().child("copy").exists());
    }

    void withoutAttributesAMoveIsWhole() {
        TestHome home;
        const MountedDisk disk("ramfs", "");
        if (!disk.isThere())
            QSKIP("no file system without attributes may be mounted here");
        const auto arrival = move(home, home.file("a.png"), disk.path().child("a.png"));
        QVERIFY(!arrival.error);
        QVERIFY(!home.path().child("a.png").exists());
        const auto back = move(home, *arrival.target, home.path().child("b.png"));
        QVERIFY(!back.error);
        QCOMPARE(back.target, home.path().child("b.png"));
    }

    void aValueThatIsTooLongForTheTargetKeepsTheSource() {
        TestHome home;
        SecondDisk disk;
        const Location source = disk.path().child("a.png");
        writeFile(pathOf(source), "picture");
        const QByteArray note(30'000, 'n');
        if (!setAttribute(source, "user.com.lumbra.note", note))
            QSKIP("the second file system holds no long attributes");
        if (setAttribute(home.file("probe"), "user.com.lumbra.note", note))
            QSKIP("the temporary folder holds attributes of any length");
        const auto arrival = move(home, source, home.path().child("a.png"));
        QCOMPARE(arrival.error->code, EOPNOTSUPP);
        QCOMPARE(fileBytes(home.path().child("a.png")), "picture");
        QCOMPARE(attributesOf(source)["user.com.lumbra.note"], note);
    }

    void valuesAtTheLimitMove_data() {
        QTest::addColumn<int>("size");
        QTest::newRow("none") << 0;
        QTest::newRow("what ext4 holds in a block") << 4'000;
        QTest::newRow("the most that there can be") << 65'536;
    }
    void valuesAtTheLimitMove() {
        QFETCH(int, size);
        TestHome home;
        const MountedDisk other("tmpfs", "size=4m");
        SecondDisk disk;
        QByteArray value(size, '\0');
        for (qsizetype i = 0; i < value.size(); ++i)
            value[i] = char(i);
        const bool isLong = size > 4'000; // only from one tmpfs into another
        if (isLong && !other.isThere())
            QSKIP("nothing may be mounted here");
        const Location source = (isLong ? other.path() : home.path()).child("a.png");
        writeFile(pathOf(source), "picture");
        if (!setAttribute(source, "user.com.lumbra.note", value))
            QSKIP("the file system holds no such attributes");
        const auto arrival = move(home, source, disk.path().child("a.png"));
        QVERIFY(!arrival.error);
        QCOMPARE(attributesOf(*arrival.target)["user.com.lumbra.note"], value);
    }

    void whatCannotBeRemovedIsNotMoved() {
        TestHome home;
        SecondDisk disk;
        const Location source = home.file("locked/a.png");
        QCOMPARE(::chmod(source.parent().path().constData(), 0555), 0);
        const int failedStep = inChild([&] {
            if (!losePrivileges())
                return 1;
            const auto arrival = move(home, source, disk.path().child("a.png"));
            if (arrival.target || !arrival.error || arrival.error->code != EACCES)
                return 2;
            return arrival.error->description == QStringLiteral("Couldn't move a.png: you don't have permission.") ? 0
                                                                                                                   : 3;
        });
        QCOMPARE(failedStep, 0);
        QVERIFY(source.exists());
        QCOMPARE(namesIn(disk.path()), QByteArrayList());
    }

    void readOnlyFoldersMoveWithTheTree() {
        TestHome home;
        const EmptiedAtEnd homeEmptied(home.path());
        SecondDisk disk;
        const EmptiedAtEnd diskEmptied(disk.path());
        const Location parent = home.folder("parent");
        const int failedStep = inChild([&] {
            if (!losePrivileges())
                return 1;
            const Location source = parent.child("source");
            makeMixedTree(source);
            for (const char* folder : {"/deep/er", "/deep"})
                ::chmod((pathOf(source) + folder).c_str(), 0555);
            const QByteArrayList before = everythingIn(source);
            const auto arrival = move(home, source, disk.path().child("source"));
            if (arrival.error || !arrival.target || source.exists())
                return 2;
            const bool isSame = everythingIn(*arrival.target) == before;
            for (const char* folder : {"/deep", "/deep/er"})
                ::chmod((pathOf(*arrival.target) + folder).c_str(), 0755);
            return isSame ? 0 : 3;
        });
        QCOMPARE(failedStep, 0);
    }

    void manyFoldersAreServedAFewAtATime() {
        TestHome home;
        SecondDisk disk;
        QList<Transfer> transfers;
        for (int i = 0; i < 150; ++i) {
            const std::string name = std::to_string(i);
            QVERIFY(!Files::makeFolder(disk.path().child(name)));
            transfers.append({home.file("from/" + name), disk.path().child(name).child("a"), Transfer::Kind::move});
        }
        for (const Files::Arrival& arrival : Files::carryOut(transfers, home.path().child("journal")))
            QVERIFY(arrival.target && !arrival.error);
        for (const Transfer& transfer : transfers)
            QCOMPARE(namesIn(transfer.target.parent()), QByteArrayList{"a"});
        QCOMPARE(namesIn(home.path().child("from")), QByteArrayList());
        QVERIFY(!home.path().child("journal").exists());
    }
};

int main(int argc, char** argv) {
    enterOwnMounts();
    QCoreApplication application(argc, argv);
    FilesMoveTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_filesmove.moc"
