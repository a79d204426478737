// What a crash leaves is removed at the next start, and nothing else ever is, whatever the journal says.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Files.h"
#include "platform/files/Journal.h"
#include "platform/files/Owner.h"
#include "support/FileSystems.h"
#include "support/FileTrees.h"
#include "support/TestHome.h"

#include <QTest>

#include <sys/file.h>

#include <filesystem>

using namespace lumbra;
using files::Journal;
using files::Owner;

namespace {

Location partIn(const Location& folder) {
    return folder.child(files::partName().toStdString());
}

// As a process that has ended without clearing up notes it.
void noteByDeadProcess(const Location& journal, const QList<Location>& parts) {
    QCOMPARE(inChild([&] {
                 Journal(journal).note(parts);
                 return 0;
             }),
             0);
}

} // namespace

class FilesJournalTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatDeadProcessesLeftIsRemoved() {
        TestHome home;
        const EmptiedAtEnd homeEmptied(home.path());
        const Location journal = home.path().child("state/lumbra/transfers"); // its folder is missing
        const Location file = partIn(home.folder("to"));
        const Location folder = partIn(home.folder("to"));
        const Location link = partIn(home.folder("to"));
        const Location never = partIn(home.folder("to"));
        noteByDeadProcess(journal, {file, folder, link, never});
        writeFile(pathOf(file), "half");
        makeMixedTree(folder);
        const Location other = home.file("other/a.png");
        std::filesystem::create_directory_symlink(pathOf(other.parent()), pathOf(link));
        Files::cleanLeftovers(journal);
        QCOMPARE(namesIn(home.folder("to")), QByteArrayList());
        QVERIFY(other.exists());
        QVERIFY(!journal.exists());
    }

    void whatARunningProcessWorksOnStays() {
        TestHome home;
        const Location journal = home.path().child("journal");
        const Location ours = partIn(home.path());
        const Location theirs = partIn(home.path());
        Journal(journal).note({ours});
        noteByDeadProcess(journal, {theirs});
        for (const Location& part : {ours, theirs})
            writeFile(pathOf(part), "half");
        Files::cleanLeftovers(journal);
        QVERIFY(ours.exists());
        QVERIFY(!theirs.exists());
        QVERIFY(fileBytes(journal).contains(ours.path()));
        QVERIFY(!fileBytes(journal).contains(theirs.path()));
        Journal(journal).forget({ours});
        QVERIFY(!journal.exists());
    }

    void anotherProcessOfTheSameNumberIsAnother() {
        TestHome home;
        const Location journal = home.path().child("journal");
        const Location part = home.file(files::partName().toStdString());
        Owner before = Owner::self();
        QVERIFY(before.mayRun());
        ++before.started;
        QVERIFY(!before.mayRun());
        writeFile(pathOf(journal), before.toText() + ' ' + part.path() + '\n');
        Files::cleanLeftovers(journal);
        QVERIFY(!part.exists());
    }

    void afterARestartOfTheMachineNoneRuns() {
        Owner owner = Owner::self();
        owner.boot = "00000000-0000-0000-0000-000000000000";
        QVERIFY(!owner.mayRun());
    }

    void inAnotherContainerAProcessMayRun() {
        Owner owner = Owner::self();
        owner.process = 4'000'000;
        QVERIFY(!owner.mayRun());
        owner.numbering = "pid:[1]";
        QVERIFY(owner.mayRun());
    }

    void nothingButHiddenCopiesIsRemoved_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("a file") << QByteArray("a.png");
        QTest::newRow("only the prefix") << QByteArray(".lumbra-part-");
        QTest::newRow("another ending") << QByteArray(".lumbra-part-a.png");
        QTest::newRow("a longer ending") << QByteArray(".lumbra-part-01234567-89ab-cdef-0123-456789abcdef.png");
        QTest::newRow("without the dot") << QByteArray("lumbra-part-01234567-89ab-cdef-0123-456789abcdef");
        QTest::newRow("capital letters") << QByteArray(".lumbra-part-01234567-89AB-cdef-0123-456789abcdef");
        QTest::newRow("below a hidden copy") << QByteArray(".lumbra-part-01234567-89ab-cdef-0123-456789abcdef/a.png");
        QTest::newRow("above a hidden copy") << QByteArray(".lumbra-part-01234567-89ab-cdef-0123-456789abcdef/..");
    }
    void nothingButHiddenCopiesIsRemoved() {
        QFETCH(QByteArray, name);
        TestHome home;
        const Location journal = home.path().child("journal");
        const Location file = home.file("folder/" + name.toStdString() + (name.endsWith("..") ? "/x" : ""));
        Owner dead = Owner::self();
        ++dead.started;
        writeFile(pathOf(journal), dead.toText() + ' ' + pathOf(home.path()).c_str() + "/folder/" + name + '\n');
        const QByteArrayList before = everythingIn(home.path().child("folder"));
        Files::cleanLeftovers(journal);
        QVERIFY(file.exists());
        QCOMPARE(everythingIn(home.path().child("folder")), before);
        QVERIFY(!journal.exists()); // such a line is of no use
    }

    void rubbishIsNoHarm_data() {
        QTest::addColumn<QByteArray>("rubbish");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("one line") << QByteArray("rubbish\n");
        QTest::newRow("no line") << QByteArray("a b c d e f");
        QTest::newRow("bytes") << QByteArray("\0\xff\xfe \n \n\n\0", 9);
        QTest::newRow("numbers out of range") << QByteArray("a b 99999999999999999999 -1 /x\n");
        QTest::newRow("a relative path") << QByteArray("a b 1 1 .lumbra-part-01234567-89ab-cdef-0123-456789abcdef\n");
        QTest::newRow("half a line") << QByteArray("0 pid:[1] 12");
    }
    void rubbishIsNoHarm() {
        QFETCH(QByteArray, rubbish);
        TestHome home;
        const Location journal = home.file("journal", rubbish);
        const Location part = partIn(home.path());
        noteByDeadProcess(journal, {part});
        writeFile(pathOf(part), "half");
        Files::cleanLeftovers(journal);
        QVERIFY(!part.exists());
        QVERIFY(!journal.exists());
    }

    void whatIsNoJournalStopsNoTransfer_data() {
        QTest::addColumn<QString>("what");
        for (const char* what : {"a folder", "a pipe", "a link", "below a file", "in a read-only folder"})
            QTest::newRow(what) << QString::fromUtf8(what);
    }
    void whatIsNoJournalStopsNoTransfer() {
        QFETCH(QString, what);
        TestHome home;
        Location journal = home.path().child("journal");
        if (what == QStringLiteral("a folder"))
            home.folder("journal");
        else if (what == QStringLiteral("a pipe"))
            ::mkfifo(journal.path().constData(), 0600);
        else if (what == QStringLiteral("a link"))
            std::filesystem::create_symlink(pathOf(home.file("other", "precious")), pathOf(journal));
        else if (what == QStringLiteral("below a file"))
            journal = home.file("file").child("journal");
        else
            journal = Location(QByteArrayLiteral("/proc/journal"));
        const auto arrivals =
            Files::carryOut({{home.file("a.png"), home.path().child("b.png"), Files::Transfer::Kind::copy}}, journal);
        QCOMPARE(arrivals[0].target, home.path().child("b.png"));
        Files::cleanLeftovers(journal);
        if (what == QStringLiteral("a link"))
            QCOMPARE(fileBytes(home.path().child("other")), "precious");
    }

    void whoHoldsTheJournalHoldsUpNothingForLong() {
        TestHome home;
        const Location journal = home.file("journal", "");
        const int held = ::open(journal.path().constData(), O_RDWR | O_CLOEXEC);
        QCOMPARE(::flock(held, LOCK_EX), 0);
        const auto arrivals =
            Files::carryOut({{home.file("a.png"), home.path().child("b.png"), Files::Transfer::Kind::copy}}, journal);
        QCOMPARE(arrivals[0].target, home.path().child("b.png"));
        ::close(held);
    }

    void whatIsOnADiskThatIsAwayStaysNoted() {
        TestHome home;
        const Location journal = home.path().child("journal");
        const Location part = partIn(home.path().child("disk"));
        noteByDeadProcess(journal, {part});
        Files::cleanLeftovers(journal);
        QVERIFY(journal.exists());
        home.folder("disk");
        writeFile(pathOf(part), "half");
        Files::cleanLeftovers(journal);
        QVERIFY(!part.exists());
        QVERIFY(!journal.exists());
    }

    void unusualPathsAreNoted() {
        TestHome home;
        const Location journal = home.path().child("journal");
        const Location part = partIn(home.folder("a b\n%41 é"));
        noteByDeadProcess(journal, {part});
        writeFile(pathOf(part), "half");
        Files::cleanLeftovers(journal);
        QVERIFY(!part.exists());
    }

    void severalProcessesShareIt() {
        TestHome home;
        const Location journal = home.path().child("journal");
        const Location folder = home.folder("to");
        constexpr int processes = 6;
        QList<pid_t> children;
        for (int i = 0; i < processes; ++i) {
            const pid_t child = ::fork();
            if (child == 0) {
                for (int j = 0; j < 25; ++j) {
                    const Location part = partIn(folder);
                    Journal(journal).note({part});
                    Journal(journal).forget({part});
                }
                const Location left = partIn(folder);
                Journal(journal).note({left});
                writeFile(pathOf(left), "half");
                ::_exit(0);
            }
            children.append(child);
        }
        for (const pid_t child : children)
            QCOMPARE(::waitpid(child, nullptr, 0), child);
        QCOMPARE(fileBytes(journal).count('\n'), processes);
        QCOMPARE(namesIn(folder).size(), processes);
        Files::cleanLeftovers(journal);
        QCOMPARE(namesIn(folder), QByteArrayList());
        QVERIFY(!journal.exists());
    }
};

QTEST_GUILESS_MAIN(FilesJournalTest)
#include "tst_filesjournal.moc"
