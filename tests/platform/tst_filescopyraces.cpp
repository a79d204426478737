// Copies of what changes, goes or is renamed while it is copied.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Copying.h"
#include "support/FileTrees.h"

#include <QTest>

#include <cerrno>

using namespace lumbra;

class FilesCopyRacesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileReplacedByAPipeMeanwhileDoesNotHoldUpTheCopy() {
        TestHome home;
        const Location source = home.file("source/a.png").parent();
        bool isReplaced = false;
        const auto arrivals = copy(home, source, home.folder("to").child("source"), [&](const Files::Progress&) {
            if (std::exchange(isReplaced, true))
                return;
            const std::string path = pathOf(source) + "/a.png";
            ::unlink(path.c_str());
            ::mkfifo(path.c_str(), 0600);
        });
        QVERIFY(isReplaced);
        QVERIFY(arrivals[0].error && !arrivals[0].target);
        QCOMPARE(namesIn(home.folder("to")), QByteArrayList());
    }

    void aFileThatChangesOnceIsCopiedAnew() {
        TestHome home;
        const Location source = home.file("a.mp4", QByteArray(600'000, 'o'));
        const QByteArray changed(500'000, 'n');
        bool isChanged = false;
        Files::Progress last;
        const auto arrivals =
            copy(home, source, home.folder("to").child("a.mp4"), atEveryStep([&](const auto& progress) {
                     last = progress;
                     if (progress.bytes > 0 && !std::exchange(isChanged, true))
                         home.file("a.mp4", changed);
                 }));
        QVERIFY(isChanged);
        QVERIFY(!arrivals[0].error);
        QVERIFY(fileBytes(*arrivals[0].target) == changed);
        QCOMPARE(last.bytes, changed.size());
    }

    void aFileThatKeepsChangingDoesNotArrive() {
        TestHome home;
        const Location source = home.file("growing/a.mp4", QByteArray(600'000, 'o'));
        const auto arrivals =
            copy(home, source.parent(), home.folder("to").child("growing"), atEveryStep([&](const auto& progress) {
                     if (progress.bytes > 0)
                         std::ofstream(pathOf(source), std::ios::app) << "more";
                 }));
        QVERIFY(!arrivals[0].target);
        QCOMPARE(arrivals[0].error->code, EAGAIN);
        QCOMPARE(arrivals[0].error->description,
                 QStringLiteral("Couldn't copy a.mp4: it was being changed all the while."));
        QCOMPARE(namesIn(home.folder("to")), QByteArrayList());
    }

    void aStarSetMeanwhileArrives() {
        TestHome home;
        const Location source = home.file("a.mp4", QByteArray(600'000, 'o'));
        bool isSet = false;
        const auto arrivals =
            copy(home, source, home.folder("to").child("a.mp4"), atEveryStep([&](const auto& progress) {
                     if (progress.bytes > 0 && !std::exchange(isSet, true))
                         setAttribute(source, "user.com.lumbra.starred", "1");
                 }));
        QVERIFY(isSet);
        QCOMPARE(attributesOf(*arrivals[0].target), attributesOf(source));
    }

    void filesThatGoMeanwhileAreNotMissed() {
        TestHome home;
        const Location source = home.folder("source");
        for (const char* name : {"a", "b", "c", "d"})
            home.file(std::string("source/") + name);
        bool isRemoved = false;
        const auto arrivals =
            copy(home, source, home.folder("to").child("source"), [&](const Files::Progress& progress) {
                if (std::exchange(isRemoved, true))
                    return;
                for (const QByteArray& name : namesIn(source)) {
                    if (QString::fromUtf8(name) != progress.name)
                        ::unlink((pathOf(source) + '/' + name.toStdString()).c_str());
                }
            });
        QVERIFY(!arrivals[0].error);
        QCOMPARE(namesIn(*arrivals[0].target).size(), 1);
    }

    void theTargetFolderMayBeRenamedMeanwhile() {
        TestHome home;
        const Location source = home.file("a.png", "picture");
        const Location before = home.folder("before");
        const Location after = home.path().child("after");
        bool isRenamed = false;
        const auto arrivals = copy(home, source, before.child("a.png"), [&](const Files::Progress&) {
            if (!std::exchange(isRenamed, true))
                QVERIFY(!Files::rename(before, after));
        });
        QCOMPARE(arrivals[0].target, after.child("a.png"));
        QCOMPARE(fileBytes(after.child("a.png")), "picture");
        QCOMPARE(namesIn(after), QByteArrayList{"a.png"});
    }
};

QTEST_GUILESS_MAIN(FilesCopyRacesTest)
#include "tst_filescopyraces.moc"
