// SPDX-License-Identifier: GPL-3.0-or-later
#include "OpenLibrary.h"
#include "platform/Tasks.h"
#include "support/FileSystems.h"
#include "support/Strings.h"

#include <QDirIterator>
#include <QProcess>
#include <QSignalSpy>

#include <cstring>
#include <iostream>

using namespace lumbra;

namespace {

// Of a folder that takes long enough to be met half-way: its files cost system calls, which no machine makes fast.
constexpr int shots = 6000;
constexpr qsizetype shotBytes = 100;

Location shot(const Location& folder, int number) {
    return folder.child("shot-" + std::to_string(number) + ".png");
}

Location filled(const Location& folder) {
    QDir().mkpath(folder.toString());
    const QByteArray bytes(shotBytes, 's');
    for (int number = 0; number < shots; ++number) {
        QFile file(shot(folder, number).toString());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot fill %s", folder.path().constData());
    }
    marked(shot(folder, 0));
    marked(shot(folder, shots - 1));
    return folder;
}

bool isWhole(const Location& folder) {
    return entriesOf(folder).size() == shots && Stars::read(shot(folder, 0)) && Stars::read(shot(folder, shots - 1))
           && bytesOf(shot(folder, shots / 2)).size() == shotBytes;
}

QStringList leftoversBelow(const Location& folder) {
    QStringList found;
    QDirIterator entries(folder.toString(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        if (entries.fileName().startsWith(QLatin1String(".lumbra-part-")))
            found.append(entries.filePath());
    }
    return found;
}

} // namespace

// Copies and moves between the disk of the home and one in memory.
class TransfersTest : public QObject {
    Q_OBJECT

private:
    TestHome m_home;
    std::unique_ptr<OpenLibrary> m_library;
    std::unique_ptr<SecondDisk> m_memory;

    // In memory, on another file system.
    Location far() const { return m_memory->path(); }
    Location farFile(const char* relative, const QByteArray& bytes = "x") const {
        const Location file = far().child(std::string_view(relative));
        QDir().mkpath(file.parent().toString());
        QFile opened(file.toString());
        if (!opened.open(QIODevice::WriteOnly) || opened.write(bytes) != bytes.size())
            qFatal("cannot write %s", file.path().constData());
        return file;
    }

    // A project whose folder is in memory: what is brought there from another project crosses file systems.
    Location farProject() const {
        const Location folder = far().child("project");
        QDir().mkpath(folder.toString());
        if (::symlink(folder.path().constData(), m_library->at("far").path().constData()) != 0)
            qFatal("cannot link");
        return folder;
    }

    bool meetHalfWay() const {
        QSignalSpy changed(&**m_library, &Library::transferChanged);
        const auto isHalfWay = [this] {
            const auto progress = (*m_library)->transfer();
            return progress && progress->bytes > 0 && progress->bytes < progress->byteCount;
        };
        while (!isHalfWay())
            if (!changed.wait(10'000))
                return false;
        return true;
    }

private Q_SLOTS:
    void init() {
        m_memory = std::make_unique<SecondDisk>();
        if (!m_memory->isThere())
            QSKIP("there is no second file system");
        m_library = std::make_unique<OpenLibrary>(m_home);
    }
    void cleanup() {
        m_library.reset();
        m_memory.reset();
    }

    void aMoveAcrossFileSystemsKeepsWhatFilesCarry() {
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location file = marked(library.file("one/a.png", "picture"));
        const Location deep = marked(library.file("one/shots/deep/b.png"), "a hen");
        const Carried ofFile = Carried::of(file);
        const Carried ofDeep = Carried::of(deep);
        library.open();
        const auto future = library->bring({file, library.at("one/shots")}, project);
        QVERIFY(!future.isFinished());
        QVERIFY(library->transfer());
        QCOMPARE(resultOf(future), (QList{project.child("a.png"), project.child("shots")}));
        QCOMPARE(bytesOf(project.child("a.png")), QByteArray("picture"));
        QVERIFY(Carried::of(project.child("a.png")) == ofFile);
        QVERIFY(Carried::of(project.child("shots/deep/b.png")) == ofDeep);
        QCOMPARE(entriesOf(library.at("one")), QStringList());
        QVERIFY(!library->transfer());
        QVERIFY(!library->lastError());
        QVERIFY(leftoversBelow(far()).isEmpty());
    }

    void aCopyFromAnotherFileSystemKeepsWhatFilesCarry() {
        OpenLibrary& library = *m_library;
        const Location file = marked(farFile("a.png", "picture"));
        const Location deep = marked(farFile("shots/deep/b.png"), "a hen");
        library.open();
        QCOMPARE(resultOf(library->bring({file, far().child("shots")}, library.folder("one"))),
                 (QList{library.at("one/a.png"), library.at("one/shots")}));
        QVERIFY(Carried::of(library.at("one/a.png")) == Carried::of(file));
        QVERIFY(Carried::of(library.at("one/shots/deep/b.png")) == Carried::of(deep));
        QVERIFY(Stars::read(file) && Stars::read(deep));
    }

    void anExportToAnotherFileSystemKeepsWhatFilesCarry() {
        OpenLibrary& library = *m_library;
        const Location file = marked(library.file("one/a.png"));
        const Location deep = marked(library.file("one/shots/deep/b.png"));
        library.open();
        resultOf(library->exportTo({file, library.at("one/shots")}, far()));
        resultOf(library->exportAs(file, far().child("c.png")));
        QVERIFY(Carried::of(far().child("a.png")) == Carried::of(file));
        QVERIFY(Carried::of(far().child("c.png")) == Carried::of(file));
        QVERIFY(Carried::of(far().child("shots/deep/b.png")) == Carried::of(deep));
        QVERIFY(Stars::read(file) && Stars::read(deep));
    }

    void undoingAStarLeavesTheNoteOfAMovedFile() {
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location file = marked(library.file("one/a.png"));
        const QByteArray note = Carried::of(file).note;
        library.open();
        const Location moved = resultOf(library->bring({file}, project)).first();
        library->toggleStar({moved});
        QVERIFY(!Stars::read(moved));
        library->toast()->undo();
        QVERIFY(Stars::read(moved));
        QCOMPARE(Carried::of(moved).note, note);
        const Location back = resultOf(library->bring({moved}, library.at("one"))).first();
        QVERIFY(Stars::read(back));
        QCOMPARE(Carried::of(back).note, note);
    }

    void strangeNamesCrossFileSystems_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("a newline") << QByteArray("a\nb.png");
        QTest::newRow("a percent sign") << QByteArray("100%20.png");
        QTest::newRow("a leading dash") << QByteArray("-rf.png");
        QTest::newRow("only dots") << QByteArray("...");
        QTest::newRow("255 bytes") << QByteArray(251, 'n') + ".png";
    }

    void strangeNamesCrossFileSystems() {
        QFETCH(QByteArray, name);
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location file = marked(library.file("one/" + name.toStdString()));
        const Carried carried = Carried::of(file);
        library.open();
        QCOMPARE(resultOf(library->bring({file}, project)), QList{project.child(std::string_view(name.data()))});
        QVERIFY(!file.exists());
        QVERIFY(Carried::of(project.child(std::string_view(name.data()))) == carried);
    }

    void twoOfOneNameOnTheirWayGetDifferentNames() {
        OpenLibrary& library = *m_library;
        const Location first = farFile("a/clip.mp4", "first");
        const Location second = farFile("b/clip.mp4", "second");
        const Location third = library.outside("c/clip.mp4", "third");
        const Location inside = library.file("two/clip.mp4", "inside");
        const Location folder = library.folder("one");
        library.open();
        const auto one = library->bring({first}, folder);
        QCOMPARE(library->freeNameFor(QStringLiteral("clip.mp4"), folder), folder.child("clip 2.mp4"));
        const auto two = library->bring({second, third}, folder);
        const auto three = library->bring({inside}, folder);
        QCOMPARE(resultOf(three), QList{folder.child("clip 4.mp4")});
        QCOMPARE(resultOf(one), QList{folder.child("clip.mp4")});
        QCOMPARE(resultOf(two), (QList{folder.child("clip 2.mp4"), folder.child("clip 3.mp4")}));
        QCOMPARE(bytesOf(folder.child("clip.mp4")), QByteArray("first"));
        QCOMPARE(bytesOf(folder.child("clip 2.mp4")), QByteArray("second"));
        QCOMPARE(bytesOf(folder.child("clip 3.mp4")), QByteArray("third"));
        QVERIFY(QFile::remove(folder.child("clip.mp4").toString()));
        QCOMPARE(library->freeNameFor(QStringLiteral("clip.mp4"), folder),
                 folder.child("clip.mp4")); // promised no more
    }

    void aNameThatIsTakenMeanwhileIsLeftToItsHolder() {
        OpenLibrary& library = *m_library;
        const Location source = filled(far().child("shots"));
        const Location folder = library.folder("one");
        library.open();
        const auto future = library->bring({source}, folder);
        QVERIFY(meetHalfWay());
        library.file("one/shots/mine.png", "an agent's");
        QCOMPARE(resultOf(future), QList{folder.child("shots 2")});
        QVERIFY(isWhole(folder.child("shots 2")));
        QCOMPARE(entriesOf(folder.child("shots")), strings({"mine.png"}));
    }

    void progressNamesTheFileAndCountsAllThatIsUnderWay() {
        OpenLibrary& library = *m_library;
        const Location one = filled(far().child("one"));
        const Location two = farFile("two.mp4", QByteArray(1000, '2'));
        library.open();
        QVERIFY(!library->transfer());
        const auto first = library->bring({one}, library.folder("p"));
        QCOMPARE(library->transfer()->name, QStringLiteral("one"));
        QVERIFY(meetHalfWay());
        QCOMPARE(library->transfer()->fileCount, shots);
        QCOMPARE(library->transfer()->byteCount, shots * shotBytes);
        QVERIFY2(library->transfer()->name.startsWith(QStringLiteral("shot-")), qPrintable(library->transfer()->name));
        const auto second = library->bring({two}, library.folder("p"));
        QCOMPARE(library->transfer()->fileCount, shots + 1);
        QCOMPARE(resultOf(second).size(), 1);
        if (!first.isFinished()) {
            // What has ended beside others still counts.
            QCOMPARE(library->transfer()->fileCount, shots + 1);
            QCOMPARE(library->transfer()->byteCount, shots * shotBytes + 1000);
        }
        QCOMPARE(resultOf(first).size(), 1);
        QVERIFY(!library->transfer());
    }

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
        const Location project = farProject();
        const Location source = filled(library.at("one/shots"));
        library.open();
        const auto future = library->bring({source}, project);
        QVERIFY(meetHalfWay());
        library->cancelTransfer();
        QVERIFY(resultOf(future).isEmpty());
        QCOMPARE(entriesOf(project), QStringList());
        QVERIFY(isWhole(source));
    }

    void aLibraryThatEndsCancelsAndCleans() {
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location source = filled(library.at("one/shots"));
        library.open();
        const auto future = library->bring({source}, project);
        QVERIFY(meetHalfWay());
        library.close();
        Tasks::pool(Tasks::Pool::lasting).waitForDone(); // as the application does at its end
        QTRY_VERIFY(future.isCanceled());
        QCOMPARE(entriesOf(project), QStringList());
        QVERIFY(isWhole(source));
    }

    void wordsAddedToASourceMeanwhileAreNotLost() {
        OpenLibrary& library = *m_library;
        const Location project = farProject();
        const Location source = filled(library.at("one/shots"));
        library.open();
        const auto future = library->bring({source}, project);
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
    TransfersTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_transfers.moc"
