// SPDX-License-Identifier: GPL-3.0-or-later
#include "TwoDisks.h"
#include "platform/Tasks.h"
#include "support/Strings.h"

#include <QProcess>

#include <cstring>
#include <iostream>

using namespace lumbra;

// Transfers that are cancelled, that fail, or whose process is killed.
class TransferTroubleTest : public QObject, TwoDisks {
    Q_OBJECT

    struct Move {
        Location source, project;
        QFuture<QList<Location>> future;
    };
    // A folder of the library is on its way to a project on the other disk.
    Move moveShots() {
        Move move{filled(m_library->at("one/shots")), farProject(), {}};
        m_library->open();
        move.future = (*m_library)->bring({move.source}, move.project);
        return move;
    }

private Q_SLOTS:
    void init() {
        if (!openDisks())
            QSKIP("there is no second file system");
    }
    void cleanup() { closeDisks(); }

    void aCancelledCopyLeavesNothing() {
        OpenLibrary& library = *m_library;
        const Location small = farFile("small.png");
        const Location source = filled(far().child("shots"));
        const Location folder = library.folder("one/.aside"); // which nobody watches
        library.open();
        const int revision = library->revision();
        const auto future = library->bring({small, source}, folder);
        QVERIFY(meetHalfWay());
        library->cancelTransfer();
        const QList<Location> arrived = resultOf(future);
        QVERIFY(!arrived.contains(folder.child("shots")));
        QCOMPARE(entriesOf(folder).size(), arrived.size());
        QVERIFY(isWhole(source));
        QVERIFY(!library->transfer());
        QVERIFY(!library->lastError());
        QCOMPARE(library->revision(), revision + 1);
        QVERIFY(leftoversBelow(library.root()).isEmpty());
    }

    void aCancelledMoveLeavesTheSourceAsItWas() {
        OpenLibrary& library = *m_library;
        const auto [source, project, future] = moveShots();
        QVERIFY(meetHalfWay());
        library->cancelTransfer();
        QVERIFY(resultOf(future).isEmpty());
        QCOMPARE(entriesOf(project), QStringList());
        QVERIFY(isWhole(source));
    }

    void aLibraryThatEndsCancelsAndCleans() {
        OpenLibrary& library = *m_library;
        const auto [source, project, future] = moveShots();
        QVERIFY(meetHalfWay());
        library.close();
        Tasks::pool(Tasks::Pool::lasting).waitForDone(); // as the application does at its end
        QTRY_VERIFY(future.isCanceled());
        QCOMPARE(entriesOf(project), QStringList());
        QVERIFY(isWhole(source));
    }

    void wordsAddedToASourceMeanwhileAreNotLost() {
        OpenLibrary& library = *m_library;
        const auto [source, project, future] = moveShots();
        QVERIFY(meetHalfWay());
        for (const int number : {0, shots / 2, shots - 1}) {
            QFile file(shot(source, number).toString());
            QVERIFY(file.open(QIODevice::Append) && file.write("more") == 4);
        }
        const Location late = library.file("one/shots/late.png", "landed late");
        resultOf(future);
        for (const int number : {0, shots / 2, shots - 1}) {
            QVERIFY(bytesOf(shot(source, number)).endsWith("more")
                    || bytesOf(shot(project.child("shots"), number)).endsWith("more"));
        }
        QVERIFY(late.exists() || project.child("shots/late.png").exists());
        QVERIFY(leftoversBelow(far()).isEmpty());
    }

    void aTargetThatVanishesLeavesTheSource() {
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location source = library.folder("one/clips");
        // One that takes long to copy, while it takes nothing to remove what there is of it.
        const Location large = library.file("one/clips/large.mp4", QByteArray(256 << 20, 'l'));
        library.open();
        const auto future = library->bring({source}, project);
        QVERIFY(meetHalfWay());
        while (project.exists())
            QDir(project.toString()).removeRecursively();
        QVERIFY(resultOf(future).isEmpty());
        QVERIFY(library->lastError());
        QCOMPARE(bytesOf(large).size(), 256 << 20);
    }

    void aFullDiskLeavesTheSourceAndNothingElse() {
        const MountedDisk disk("tmpfs", "size=1m");
        if (!disk.isThere())
            QSKIP("this system lets no program mount");
        OpenLibrary& library = *m_library;
        const Location full = disk.path();
        const Location file = marked(library.file("one/large.mp4", QByteArray(4 << 20, 'l')));
        const Location fits = library.file("one/fits.png");
        library.open();
        QCOMPARE(resultOf(library->bring({file, fits}, full)), QList{full.child("fits.png")});
        QVERIFY(library->lastError());
        QCOMPARE(entriesOf(full), strings({"fits.png"}));
        QCOMPARE(bytesOf(file).size(), 4 << 20);
        QVERIFY(Stars::read(file));
        QVERIFY(!fits.exists());
    }

    void aDiskThatLetsNobodyWriteLeavesTheSource() {
        const MountedDisk disk("tmpfs", "size=1m");
        const Location sealed = disk.path();
        if (!disk.isThere() || ::mount(nullptr, sealed.path().constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr))
            QSKIP("this system lets no program mount");
        OpenLibrary& library = *m_library;
        const Location file = library.file("one/a.png");
        const Location outside = library.outside("desk/b.png");
        library.open();
        QVERIFY(resultOf(library->bring({file, outside}, sealed)).isEmpty());
        QVERIFY(library->lastError());
        QVERIFY(file.exists() && outside.exists());
        library->setLastError(std::nullopt);
        QVERIFY(!library->newFolderIn(sealed, QStringLiteral("new")));
        QVERIFY(library->lastError());
    }

    void withoutAttributesAMoveKeepsItsSourceAndSaysSo() {
        const MountedDisk disk("ramfs", "mode=700");
        if (!disk.isThere())
            QSKIP("this system lets no program mount");
        OpenLibrary& library = *m_library;
        const Location bare = disk.path();
        const Location file = marked(library.file("one/a.png", "picture"));
        const Location plain = library.file("one/b.png");
        library.open();
        resultOf(library->bring({file, plain}, bare));
        QVERIFY(library->lastError());
        QVERIFY(Stars::read(file));
        QCOMPARE(bytesOf(file), QByteArray("picture"));
        QVERIFY(!plain.exists()); // it carried nothing that could be lost
        QVERIFY(bare.child("b.png").exists());
        library->toggleStar({bare.child("b.png")});
        QCOMPARE(library.error(), QStringLiteral("Couldn't change the star on b.png."));
    }

    // Runs this program once more, which moves a folder and is ended half-way; see main.
    void whatAKilledProcessLeftIsCleanedAtTheNextStart() {
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location source = filled(library.at("one/shots"));
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--move"), library.root().toString(), source.toString(), project.toString()});
        QVERIFY(process.waitForReadyRead());
        process.kill();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QVERIFY(!leftoversBelow(project).isEmpty());
        QVERIFY(isWhole(source));
        library.open();
        QTRY_COMPARE(entriesOf(project), QStringList());
        QVERIFY(isWhole(source));
    }
};

namespace {

// Moves a folder into another of a library and says so when it is half-way.
int moveUntilKilled(const QStringList& arguments) {
    Library library(Location(arguments[2]), true);
    const auto future = library.bring({Location(arguments[3])}, Location(arguments[4]));
    QObject::connect(&library, &Library::transferChanged, [&library] {
        const auto progress = library.transfer();
        if (progress && progress->bytes > 0)
            std::cout << "half-way" << std::endl;
    });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    const bool moves = argc > 1 && std::strcmp(argv[1], "--move") == 0;
    if (!moves)
        enterOwnMounts();
    const QCoreApplication application(argc, argv);
    if (moves)
        return moveUntilKilled(QCoreApplication::arguments());
    TransferTroubleTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_transfertrouble.moc"
