// Moves and copies where the file system knows only the oldest calls, as this process sees it: a filter refuses the
// newer ones.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Files.h"
#include "support/FileSystems.h"
#include "support/FileTrees.h"
#include "support/TestHome.h"

#include <QTest>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstddef>
#include <span>

using namespace lumbra;
using Files::Transfer;

namespace {

bool filter(std::span<sock_filter> program) {
    sock_fprog whole{static_cast<unsigned short>(program.size()), program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &whole) == 0;
}

bool refuse(long call, int code) {
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, quint32(call), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | quint32(code)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    return filter(program);
}

// Renaming without flags stays possible.
bool refuseFlagsOfRename() {
    constexpr quint32 flags = offsetof(seccomp_data, args) + 4 * sizeof(quint64);
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, flags), // its lower half
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, 0, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    return filter(program);
}

} // namespace

class FilesOlderSystemTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(refuseFlagsOfRename());
        QVERIFY(refuse(SYS_copy_file_range, ENOSYS));
        QVERIFY(::renameat2(AT_FDCWD, "/none", AT_FDCWD, "/none", RENAME_NOREPLACE) != 0 && errno == EINVAL);
    }

    void filesAndFoldersAreRenamed() {
        TestHome home;
        const EmptiedAtEnd homeEmptied(home.path());
        const Location source = home.path().child("source");
        makeMixedTree(source);
        const QByteArrayList before = everythingIn(source);
        QVERIFY(!Files::rename(source, home.path().child("target")));
        QCOMPARE(everythingIn(home.path().child("target")), before);
        QVERIFY(!Files::rename(home.path().child("target").child("a.png"), home.path().child("b.png")));
        QCOMPARE(fileBytes(home.path().child("b.png")), "a picture");
        QCOMPARE(attributesOf(home.path().child("b.png")).size(), 2U);
        QVERIFY(!Files::isTaken(home.path().child("target").child("a.png")));
        QVERIFY(!Files::rename(home.path().child("target").child("broken"), home.path().child("broken")));
        QVERIFY(Files::isTaken(home.path().child("broken")));
    }

    void nothingIsReplaced() {
        TestHome home;
        home.file("file", "file");
        home.file("other", "other");
        home.folder("folder");
        home.folder("empty");
        const QByteArrayList before = everythingIn(home.path());
        for (const char* from : {"file", "folder"}) {
            for (const char* to : {"other", "empty", "file", "folder"})
                QCOMPARE(Files::rename(home.path().child(from), home.path().child(to))->code, EEXIST);
        }
        QCOMPARE(Files::rename(home.path().child("none"), home.path().child("new"))->code, ENOENT);
        QCOMPARE(Files::rename(home.path().child("folder"), home.path().child("folder").child("new"))->code, EINVAL);
        QCOMPARE(everythingIn(home.path()), before);
    }

    void copiesTakeFreeNames() {
        TestHome home;
        SecondDisk disk;
        const EmptiedAtEnd homeEmptied(home.path());
        const EmptiedAtEnd diskEmptied(disk.path());
        const Location source = home.path().child("source");
        makeMixedTree(source);
        for (const Location& folder : {home.folder("to"), disk.isThere() ? disk.path() : home.folder("to2")}) {
            for (const char* name : {"source", "source 2"}) {
                const auto arrivals = Files::carryOut({{source, folder.child("source"), Transfer::Kind::copy}},
                                                      home.path().child("journal"));
                QVERIFY(!arrivals[0].error);
                QCOMPARE(arrivals[0].target, folder.child(name));
                QCOMPARE(everythingIn(*arrivals[0].target).size(), everythingIn(source).size());
            }
        }
    }

    void largeFilesAreCopied() {
        TestHome home;
        const Location source = home.file("large", QByteArray(9'000'001, 'l'));
        const auto arrivals =
            Files::carryOut({{source, home.path().child("copy"), Transfer::Kind::copy}}, home.path().child("journal"));
        QVERIFY(fileBytes(*arrivals[0].target) == fileBytes(source));
    }

    void whatIsThereIsReplacedWhereThatIsWanted_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("a file") << QByteArray("file");
        QTest::newRow("a folder") << QByteArray("folder");
    }
    void whatIsThereIsReplacedWhereThatIsWanted() {
        QFETCH(QByteArray, name);
        TestHome home;
        home.file("to/file", "old");
        home.file("to/folder/old");
        for (const auto kind : {Transfer::Kind::copy, Transfer::Kind::move}) {
            const Location source = home.file("source/inner").parent();
            const Location target = home.path().child("to").child(name.toStdString());
            const auto arrivals =
                Files::carryOut({{source, target, kind, Transfer::IfTaken::replace}}, home.path().child("journal"));
            QVERIFY(!arrivals[0].error);
            QCOMPARE(namesIn(target), QByteArrayList{"inner"});
            QCOMPARE(namesIn(target.parent()), (QByteArrayList{"file", "folder"}));
        }
    }
};

QTEST_GUILESS_MAIN(FilesOlderSystemTest)
#include "tst_filesoldersystem.moc"
