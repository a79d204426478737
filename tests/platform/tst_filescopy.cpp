// Copies carry all that there is to a file and a folder.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Copying.h"
#include "platform/files/Removal.h"
#include "support/FileSystems.h"
#include "support/FileTrees.h"

#include <QTest>

#include <sys/sysmacros.h>

#include <cerrno>
#include <filesystem>

using namespace lumbra;
using Files::Transfer;

namespace {

// What no path leads to, or is read-only, temporary folders can't remove.
int removeTree(const Location& location) {
    const int folder = ::open(location.parent().path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int code = files::removeTree(folder, std::string(location.lastComponent()).c_str());
    ::close(folder);
    return code;
}

} // namespace

class FilesCopyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFolderIsCopiedWithAllThatItCarries_data() {
        QTest::addColumn<bool>("across");
        QTest::newRow("on one file system") << false;
        QTest::newRow("into another file system") << true;
    }
    void aFolderIsCopiedWithAllThatItCarries() {
        QFETCH(bool, across);
        TestHome home;
        const EmptiedAtEnd homeEmptied(home.path());
        SecondDisk disk;
        const EmptiedAtEnd diskEmptied(disk.path());
        if (across && !disk.isThere())
            QSKIP("there is no second file system here");
        const Location source = home.path().child("source");
        makeMixedTree(source);
        const QByteArrayList before = everythingIn(source);
        const Location target = (across ? disk.path() : home.folder("target")).child("copy");

        const auto arrivals = copy(home, source, target);
        QCOMPARE(arrivals.size(), 1);
        QCOMPARE(arrivals[0].source, source);
        QVERIFY(!arrivals[0].error);
        QCOMPARE(arrivals[0].target, target);
        if (!attributesOf(target).empty())
            QCOMPARE(everythingIn(target), before);
        QCOMPARE(everythingIn(source), before);
        QVERIFY(!home.path().child("journal").exists());
        QCOMPARE(namesIn(target.parent()), QByteArrayList{"copy"});
    }

    void aFileGoesUnderTheNextFreeName() {
        TestHome home;
        const Location source = home.file("from/a.png", "new");
        home.file("to/a.png", "old");
        home.file("to/a 2.png", "old");
        const auto arrivals = copy(home, source, home.path().child("to").child("a.png"));
        QCOMPARE(arrivals[0].target, home.path().child("to").child("a 3.png"));
        QCOMPARE(fileBytes(*arrivals[0].target), "new");
        QCOMPARE(fileBytes(home.path().child("to").child("a.png")), "old");
    }

    void severalOfOneNameArriveBesideEachOther() {
        TestHome home;
        const Location target = home.folder("to").child("a.png");
        const QList<Transfer> transfers = {{home.file("1/a.png", "1"), target, Transfer::Kind::copy},
                                           {home.file("2/a.png", "2"), target, Transfer::Kind::copy}};
        const auto arrivals = Files::carryOut(transfers, home.path().child("journal"));
        QCOMPARE(fileBytes(*arrivals[0].target), "1");
        QCOMPARE(arrivals[1].target, home.path().child("to").child("a 2.png"));
        QCOMPARE(fileBytes(*arrivals[1].target), "2");
    }

    void whatFailsDoesNotStopTheOthers() {
        TestHome home;
        const Location to = home.folder("to");
        const QList<Transfer> transfers = {{home.path().child("gone.png"), to.child("gone.png"), Transfer::Kind::copy},
                                           {home.file("a.png"), to.child("a.png"), Transfer::Kind::copy}};
        const auto arrivals = Files::carryOut(transfers, home.path().child("journal"));
        QVERIFY(!arrivals[0].target);
        QCOMPARE(arrivals[0].error->code, ENOENT);
        QCOMPARE(arrivals[0].error->description, QStringLiteral("Couldn't copy gone.png: it isn't there any more."));
        QCOMPARE(arrivals[1].target, to.child("a.png"));
    }

    void aLinkIsCopiedAsALink() {
        TestHome home;
        const Location target = home.file("pictures/a.png");
        std::filesystem::create_symlink(pathOf(target), pathOf(home.path().child("link.png")));
        const auto arrivals = copy(home, home.path().child("link.png"), home.folder("to").child("link.png"));
        QCOMPARE(std::filesystem::read_symlink(pathOf(*arrivals[0].target)).native(), pathOf(target));
    }

    void holesStayHoles_data() {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<QList<qint64>>("written");
        constexpr qint64 million = 1 << 20;
        QTest::newRow("nothing but a hole") << 32 * million << QList<qint64>{};
        QTest::newRow("at its start") << 32 * million << QList<qint64>{28 * million};
        QTest::newRow("at its end") << 32 * million << QList<qint64>{0};
        QTest::newRow("between") << 32 * million + 5 << QList<qint64>{0, 20 * million, 32 * million};
    }
    void holesStayHoles() {
        QFETCH(qint64, size);
        QFETCH(QList<qint64>, written);
        TestHome home;
        SecondDisk disk;
        const Location source = home.file("sparse", {});
        QFile file(source.toString());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.resize(size));
        for (const qint64 at : written) {
            QVERIFY(file.seek(at));
            QVERIFY(file.write("data!") > 0);
        }
        file.close();
        QList<Location> targets = {home.folder("to").child("sparse")};
        if (disk.isThere())
            targets.append(disk.path().child("sparse"));
        for (const Location& target : targets) {
            Files::Progress last;
            const auto arrivals = copy(home, source, target, [&](const Files::Progress& progress) { last = progress; });
            QCOMPARE(arrivals[0].target, target);
            QVERIFY(fileBytes(target) == fileBytes(source));
            struct stat facts;
            QCOMPARE(::stat(target.path().constData(), &facts), 0);
            QVERIFY(facts.st_blocks * 512 < 4 << 20);
            QCOMPARE(last.bytes, last.byteCount);
        }
    }

    void filesOfAnySizeArriveWhole_data() {
        QTest::addColumn<int>("size");
        for (const int size : {0, 1, 131071, 131072, 131073, 262144, 262145, 9'000'001})
            QTest::addRow("%d bytes", size) << size;
    }
    void filesOfAnySizeArriveWhole() {
        QFETCH(int, size);
        TestHome home;
        SecondDisk disk;
        QByteArray bytes(size, '\0');
        for (qsizetype i = 0; i < bytes.size(); ++i)
            bytes[i] = char(i * 31 + i / 4096);
        const Location source = home.file("source", bytes);
        for (const Location& folder : {home.folder("to"), disk.isThere() ? disk.path() : home.folder("to")})
            QVERIFY(fileBytes(*copy(home, source, folder.child("copy")).first().target) == bytes);
    }

    void hardLinksArriveAsCopies() {
        TestHome home;
        home.file("source/a", "same");
        std::filesystem::create_hard_link(pathOf(home.path()) + "/source/a", pathOf(home.path()) + "/source/b");
        const Location target = home.folder("to").child("source");
        QVERIFY(!copy(home, home.path().child("source"), target)[0].error);
        QCOMPARE(fileBytes(target.child("a")), "same");
        QCOMPARE(fileBytes(target.child("b")), "same");
    }

    void foldersFiveHundredDeepAreCopied() {
        TestHome home;
        SecondDisk disk;
        // Longer than any path may be.
        const std::string name(200, 'd');
        int folder = ::open(home.path().path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const int top = folder;
        for (int depth = 0; depth < 500; ++depth) {
            QCOMPARE(::mkdirat(folder, name.c_str(), 0755), 0);
            const int below = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            QVERIFY(below >= 0);
            if (folder != top)
                ::close(folder);
            folder = below;
        }
        QVERIFY(::close(::openat(folder, "deepest", O_WRONLY | O_CREAT | O_CLOEXEC, 0600)) == 0);
        ::close(folder);

        const Location target = (disk.isThere() ? disk.path() : home.folder("to")).child("copy");
        const auto arrivals = copy(home, home.path().child(name), target);
        QVERIFY(!arrivals[0].error);
        folder = ::open(target.path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        for (int depth = 1; depth < 500; ++depth) {
            const int below = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            QVERIFY(below >= 0);
            ::close(folder);
            folder = below;
        }
        QCOMPARE(::faccessat(folder, "deepest", F_OK, 0), 0);
        ::close(folder);

        QCOMPARE(removeTree(home.path().child(name)), 0);
        QCOMPARE(removeTree(target), 0);
        ::close(top);
    }

    void readOnlyFoldersAreFilledAndReadOnlyAgain() {
        TestHome home;
        home.file("source/locked/inner/a");
        for (const char* folder : {"/source/locked/inner", "/source/locked", "/source"})
            QCOMPARE(::chmod((pathOf(home.path()) + folder).c_str(), 0555), 0);
        home.folder("to");
        const int failedStep = inChild([&] {
            if (!losePrivileges())
                return 1;
            const Location target = home.path().child("to").child("source");
            if (copy(home, home.path().child("source"), target)[0].error)
                return 2;
            if (everythingIn(target) != everythingIn(home.path().child("source")))
                return 3;
            return removeTree(target) == 0 && !target.exists() ? 0 : 4;
        });
        for (const char* folder : {"/source", "/source/locked", "/source/locked/inner"})
            ::chmod((pathOf(home.path()) + folder).c_str(), 0755);
        QCOMPARE(failedStep, 0);
    }

    void rightsToActAsAnotherUserAreNotCopied() {
        TestHome home;
        const Location source = home.file("tool");
        QCOMPARE(::chmod(source.path().constData(), 06755), 0);
        const auto arrivals = copy(home, source, home.folder("to").child("tool"));
        struct stat facts;
        QCOMPARE(::stat(arrivals[0].target->path().constData(), &facts), 0);
        QCOMPARE(facts.st_mode & 07777, mode_t(0755));
    }

    void aFolderWithWhatIsNoFileDoesNotArrive_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("pipe") << "pipe";
        QTest::newRow("socket") << "socket";
        QTest::newRow("device") << "device";
    }
    void aFolderWithWhatIsNoFileDoesNotArrive() {
        QFETCH(QString, kind);
        TestHome home;
        home.file("source/a.png");
        const std::string special = pathOf(home.path()) + "/source/special";
        if (kind == QStringLiteral("pipe")) {
            QCOMPARE(::mkfifo(special.c_str(), 0600), 0);
        } else if (kind == QStringLiteral("socket")) {
            QCOMPARE(::mknod(special.c_str(), S_IFSOCK | 0600, 0), 0);
        } else if (::mknod(special.c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) {
            QSKIP("no devices may be made here");
        }
        const Location source = home.path().child("source");
        for (const Location& one : {source, source.child("special")}) {
            const auto arrivals = copy(home, one, home.folder("to").child("copy"));
            QVERIFY(!arrivals[0].target);
            QCOMPARE(arrivals[0].error->description,
                     QStringLiteral("Couldn't copy special: it is neither a file nor a folder."));
            QCOMPARE(namesIn(home.folder("to")), QByteArrayList());
        }
    }

    void aFolderDoesNotGoIntoItself() {
        TestHome home;
        const Location source = home.folder("source/inner").parent();
        std::filesystem::create_directory_symlink(pathOf(source), pathOf(home.path()) + "/alias");
        for (const auto kind : {Transfer::Kind::copy, Transfer::Kind::move}) {
            for (const Location& folder : {source, source.child("inner"), home.path().child("alias").child("inner")}) {
                const auto arrivals =
                    Files::carryOut({{source, folder.child("source"), kind}}, home.path().child("journal"));
                QVERIFY(!arrivals[0].target);
                QCOMPARE(arrivals[0].error->code, EINVAL);
                QVERIFY(arrivals[0].error->description.endsWith(QStringLiteral("a folder can't go into itself.")));
            }
        }
        QCOMPARE(everythingIn(source).size(), 2);
    }

    void aFolderMayBeCopiedBesideItself() {
        TestHome home;
        const Location source = home.file("Renders/a.png").parent();
        QCOMPARE(copy(home, source, source)[0].target, home.path().child("Renders 2"));
        QCOMPARE(namesIn(home.path().child("Renders 2")), QByteArrayList{"a.png"});
    }

    void whatTheSystemGeneratesIsCopiedToItsEnd() {
        TestHome home;
        const auto arrivals =
            copy(home, Location(QByteArrayLiteral("/proc/version")), home.folder("to").child("version"));
        QVERIFY(!arrivals[0].error);
        QVERIFY(fileBytes(*arrivals[0].target).startsWith("Linux"));
    }

    void progressNamesTheFileAndCountsFilesAndBytes() {
        TestHome home;
        home.file("source/a", QByteArray(1000, 'a'));
        home.file("source/b", QByteArray(500'000, 'b'));
        QList<Files::Progress> told;
        copy(home, home.path().child("source"), home.folder("to").child("source"),
             atEveryStep([&](const auto& progress) { told.append(progress); }));
        QVERIFY(told.size() > 3);
        for (qsizetype i = 0; i < told.size(); ++i) {
            QCOMPARE(told[i].fileCount, 2);
            QCOMPARE(told[i].byteCount, 501'000);
            QVERIFY(told[i].name == QStringLiteral("a") || told[i].name == QStringLiteral("b"));
            QVERIFY(i == 0 || (told[i].bytes >= told[i - 1].bytes && told[i].files >= told[i - 1].files));
        }
        QCOMPARE(told.first().files, 0);
        QCOMPARE(told.last().files, 2);
        QCOMPARE(told.last().bytes, 501'000);
    }

    void aFolderReachedThroughALinkIsNamedAsItWasGiven() {
        TestHome home;
        home.folder("real");
        std::filesystem::create_directory_symlink(pathOf(home.path()) + "/real", pathOf(home.path()) + "/alias");
        const Location target = home.path().child("alias").child("a.png");
        QCOMPARE(copy(home, home.file("a.png"), target)[0].target, target);
    }
};

QTEST_GUILESS_MAIN(FilesCopyTest)
#include "tst_filescopy.moc"
