// SPDX-License-Identifier: GPL-3.0-or-later
#include "ResolvedLibrary.h"
#include "core/Stars.h"
#include "support/EventMirror.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

using namespace lumbra;
namespace fs = std::filesystem;

class tst_Resolver : public QObject, ResolvedLibrary {
    Q_OBJECT

private Q_SLOTS:
    void init() { makeLibrary(); }
    void cleanup() { removeLibrary(); }

    void aFileThatIsThereIsReadAfresh();
    void aFileWithoutAKindBringsNothing();
    void aPathThatHasGoneIsGone();
    void onlyTheFirstEventOfAPathCounts();
    void mergedBatchesLoseNoFlag();
    void aFileCreatedAndDeletedInOneBatchIsGone();
    void whatLiesInNoProjectIsPassedOver();
    void hiddenAndPrunedPlacesCostNothing_data();
    void hiddenAndPrunedPlacesCostNothing();
    void aFileCalledLikeAPackageIsAnAsset();
    void aFolderIsWalkedOnlyWhenItAppearedOrMoved_data();
    void aFolderIsWalkedOnlyWhenItAppearedOrMoved();
    void aFolderThatTookAnothersPlaceForgetsTheOthersFiles();
    void aDeletedFolderIsOneGonePath();
    void aFileInTheFoldersPlaceEndsTheFolder();
    void aFolderInTheFilesPlaceEndsTheFile();
    void aLinkOrPipeInTheFilesPlaceEndsTheFile();
    void linksAreNotFollowed();
    void aPathThroughALinkIsItsCanonicalPath();
    void aDeletedProjectIsGone();
    void aProjectThatBecameALinkIsGoneFromItsOldPath();
    void aFolderThatMayNotBeEnteredProvesNothing();
    void whatTheLibraryComesToIsWhatAWalkFinds();
};

void tst_Resolver::aFileThatIsThereIsReadAfresh() {
    const Location file = m_home->file("library/one/a.png", "longer than before");
    TestHome::touch(file, 1'000'000);
    QVERIFY(Stars::write(file, true));
    const auto changes = resolve({{file, 0}, {m_outside.child("e.png"), 0}});
    QVERIFY(changes.gone.isEmpty());
    QCOMPARE(changes.assets.size(), 2);
    QCOMPARE(changes.assets[0].url, file);
    QCOMPARE(changes.assets[0].size, 18);
    QCOMPARE(changes.assets[0].modified.seconds, 1'000'000.0);
    QVERIFY(changes.assets[0].isStarred());
}

void tst_Resolver::aFileWithoutAKindBringsNothing() {
    const auto changes = resolve({{m_home->file("library/one/program.cpp"), FileEvent::created}});
    QVERIFY(changes.gone.isEmpty());
    QVERIFY(changes.assets.isEmpty());
}

void tst_Resolver::aPathThatHasGoneIsGone() {
    const Location unknown = m_one.child("never/was/there.png"); // not even its folder
    fs::remove(text(m_one.child("a.png")));
    const auto changes = resolve({{m_one.child("a.png"), FileEvent::renamed}, {unknown, 0}});
    QCOMPARE(changes.gone, (QList{m_one.child("a.png"), unknown}));
    QVERIFY(changes.assets.isEmpty());
}

void tst_Resolver::onlyTheFirstEventOfAPathCounts() {
    const Location folder = m_one.child("deep");
    QVERIFY(resolve({{folder, 0}, {folder, FileEvent::created}}).assets.isEmpty());
    QCOMPARE(resolve({{folder, FileEvent::created}, {folder, 0}}).assets.size(), 2);
    QCOMPARE(resolve({{m_one.child("a.png"), 0}, {m_one.child("a.png"), FileEvent::created}}).assets.size(), 1);
}

void tst_Resolver::mergedBatchesLoseNoFlag() {
    const Location folder = m_one.child("deep");
    const Location file = m_one.child("a.png");
    const auto merged = Resolver::merged({{folder, 0}, {file, 0}, {folder, FileEvent::created}, {folder, 0}});
    QCOMPARE(merged, (QList<FileEvent>{{folder, FileEvent::created}, {file, 0}}));
    QCOMPARE(resolve(merged).assets.size(), 3);
}

void tst_Resolver::aFileCreatedAndDeletedInOneBatchIsGone() {
    const Location file = m_one.child("brief.png");
    const auto changes = resolve({{file, FileEvent::created}, {file, 0}});
    QCOMPARE(changes.gone, QList{file});
    QVERIFY(changes.assets.isEmpty());
}

void tst_Resolver::whatLiesInNoProjectIsPassedOver() {
    const Location loose = m_home->file("library/loose.png");
    const Location foreign = m_home->file("foreign/f.png");
    const auto changes = resolve({{loose, FileEvent::created},
                                  {foreign, FileEvent::created},
                                  {m_home->path().child("gone.png"), 0},
                                  {m_home->path().child("library-2/x.png"), 0},
                                  {m_library, 0}});
    QVERIFY(changes.assets.isEmpty());
    QVERIFY(changes.gone.isEmpty());
}

void tst_Resolver::hiddenAndPrunedPlacesCostNothing_data() {
    QTest::addColumn<QByteArray>("path");
    for (const char* path : {"one/.git/a.png", "one/node_modules/x/a.png", "one/deep/build/a.png", "one/.hidden.png",
                             "one/build", "one/Thing.app/Contents/a.png", "one/deep/Doc.rtfd/a.png"})
        QTest::newRow(path) << QByteArray(path);
}

void tst_Resolver::hiddenAndPrunedPlacesCostNothing() {
    QFETCH(QByteArray, path);
    const Location file = m_home->file(("library/" + path).toStdString());
    auto changes = resolve({{file, FileEvent::created}, {file.parent(), 0}});
    QVERIFY(changes.assets.isEmpty());
    QVERIFY(changes.gone.isEmpty());
    // Nor do such folders themselves, when they appear.
    for (Location folder = file.parent(); folder != m_one; folder = folder.parent())
        if (folder != m_one.child("deep"))
            QVERIFY(resolve({{folder, FileEvent::created}}).assets.isEmpty());
    fs::remove(text(file));
    QVERIFY(resolve({{file, 0}}).gone.isEmpty());
}

void tst_Resolver::aFileCalledLikeAPackageIsAnAsset() {
    const Location file = m_home->file("library/one/talk.key");
    QCOMPARE(pathsOf(resolve({{file, FileEvent::created}}).assets), QList{file});
}

void tst_Resolver::aFolderIsWalkedOnlyWhenItAppearedOrMoved_data() {
    QTest::addColumn<quint32>("flags");
    QTest::addColumn<int>("found");
    QTest::newRow("created") << quint32(FileEvent::created) << 2;
    QTest::newRow("renamed") << quint32(FileEvent::renamed) << 2;
    QTest::newRow("both, and others") << quint32(FileEvent::created | FileEvent::renamed | 0x10000) << 2;
    QTest::newRow("touched") << quint32(0) << 0;
    QTest::newRow("others") << quint32(0x10000) << 0;
}

void tst_Resolver::aFolderIsWalkedOnlyWhenItAppearedOrMoved() {
    QFETCH(quint32, flags);
    QFETCH(int, found);
    const auto changes = resolve({{m_one.child("deep"), flags}}, AssetIndex());
    QCOMPARE(changes.assets.size(), found);
    QCOMPARE(AssetIndex().applying(changes).count(), found);
}

void tst_Resolver::aFolderThatTookAnothersPlaceForgetsTheOthersFiles() {
    m_home->file("new/fresh.png");
    m_home->file("new/er/c.wav");
    fs::rename(text(m_one.child("deep")), text(m_home->path().child("old")));
    fs::rename(text(m_home->path().child("new")), text(m_one.child("deep")));
    const auto changes = resolve({{m_one.child("deep"), FileEvent::renamed}});
    QCOMPARE(pathsOf(changes.assets), (QList{m_one.child("deep/er/c.wav"), m_one.child("deep/fresh.png")}));
    QCOMPARE(content(m_index.applying(changes)), content(walked()));
    // Nor do those stay that a batch on its way is about to make known.
    QCOMPARE(content(m_index.applying(resolve({{m_one.child("deep"), FileEvent::renamed}}, AssetIndex()))),
             content(walked()));
}

void tst_Resolver::aDeletedFolderIsOneGonePath() {
    for (int i = 0; i < 1000; ++i)
        m_home->file("library/one/many/file" + std::to_string(i) + ".png");
    const AssetIndex index = walked();
    QCOMPARE(index.count(), 1005);
    fs::remove_all(text(m_one.child("many")));
    const auto changes = resolve({{m_one.child("many"), 0}}, index);
    QCOMPARE(changes.gone, QList{m_one.child("many")});
    QCOMPARE(content(index.applying(changes)), content(m_index));
}

void tst_Resolver::aFileInTheFoldersPlaceEndsTheFolder() {
    m_home->file("library/one/set.png/inside.png");
    const AssetIndex index = walked();
    fs::remove_all(text(m_one.child("set.png")));
    m_home->file("library/one/set.png");
    const auto after = index.applying(resolve({{m_one.child("set.png"), FileEvent::created}}, index));
    QCOMPARE(content(after), content(walked()));
}

void tst_Resolver::aFolderInTheFilesPlaceEndsTheFile() {
    fs::remove(text(m_one.child("a.png")));
    m_home->file("library/one/a.png/inside.png");
    const auto after = m_index.applying(resolve({{m_one.child("a.png"), FileEvent::created}}));
    QCOMPARE(content(after), content(walked()));
}

void tst_Resolver::aLinkOrPipeInTheFilesPlaceEndsTheFile() {
    fs::remove(text(m_one.child("a.png")));
    fs::create_symlink("deep/b.mp4", text(m_one.child("a.png")));
    QCOMPARE(resolve({{m_one.child("a.png"), FileEvent::created}}).gone, QList{m_one.child("a.png")});
    fs::remove(text(m_one.child("a.png")));
    QCOMPARE(::mkfifo(m_one.child("a.png").path().constData(), 0600), 0);
    QCOMPARE(resolve({{m_one.child("a.png"), FileEvent::created}}).gone, QList{m_one.child("a.png")});
}

void tst_Resolver::linksAreNotFollowed() {
    fs::create_directory_symlink(text(m_outside), text(m_one.child("link")));
    fs::create_symlink(text(m_outside.child("e.png")), text(m_one.child("link.png")));
    const auto changes =
        resolve({{m_one.child("link"), FileEvent::created}, {m_one.child("link.png"), FileEvent::created}});
    QVERIFY(changes.assets.isEmpty());
    QVERIFY(changes.gone.isEmpty());
}

void tst_Resolver::aPathThroughALinkIsItsCanonicalPath() {
    const auto changes = resolve({{m_library.child("linked/e.png"), 0}, {m_library.child("linked/gone.png"), 0}});
    QCOMPARE(pathsOf(changes.assets), QList{m_outside.child("e.png")});
    QCOMPARE(changes.gone, QList{m_outside.child("gone.png")});
}

void tst_Resolver::aDeletedProjectIsGone() {
    fs::remove_all(text(m_one));
    m_roots.removeOne(m_one); // the projects were listed anew before
    const auto changes = resolve({{m_one, 0}});
    QCOMPARE(changes.gone, QList{m_one});
    QCOMPARE(content(m_index.applying(changes)), content(walked()));
}

void tst_Resolver::aProjectThatBecameALinkIsGoneFromItsOldPath() {
    const Location moved = m_home->path().child("moved");
    fs::rename(text(m_one), text(moved));
    fs::create_directory_symlink(text(moved), text(m_one));
    m_roots.replace(m_roots.indexOf(m_one), moved);
    QCOMPARE(resolve({{m_one, FileEvent::renamed}}).gone, QList{m_one});
}

void tst_Resolver::aFolderThatMayNotBeEnteredProvesNothing() {
    // Being root is no hindrance to others, so a name that no file can have stands for what cannot be asked.
    const Location impossible = m_one.child(QString(300, u'n'));
    QVERIFY(resolve({{impossible, 0}}).gone.isEmpty());
}

void tst_Resolver::whatTheLibraryComesToIsWhatAWalkFinds() {
    QVERIFY(runScript(m_library,
                      "mkdir -p one/new/deep; echo x > one/new/deep/x.png; mv one/deep two/moved;"
                      "rm one/a.png; echo more >> two/d.png; mkdir one/Pack.app; echo x > one/Pack.app/x.png"));
    const auto changes = resolve({{m_one.child("new"), FileEvent::created},
                                  {m_one.child("new/deep/x.png"), FileEvent::created},
                                  {m_one.child("deep"), FileEvent::renamed},
                                  {m_library.child("two/moved"), FileEvent::renamed},
                                  {m_one.child("a.png"), 0},
                                  {m_library.child("two/d.png"), 0},
                                  {m_one.child("Pack.app"), FileEvent::created}});
    QCOMPARE(content(m_index.applying(changes)), content(walked()));
}

QTEST_GUILESS_MAIN(tst_Resolver)
#include "tst_resolver.moc"
