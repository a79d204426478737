// SPDX-License-Identifier: GPL-3.0-or-later
#include "ResolvedLibrary.h"
#include "core/Stars.h"
#include "support/EventMirror.h"

#include <sys/mount.h>

#include <filesystem>

using namespace lumbra;
namespace fs = std::filesystem;

namespace {

std::optional<QByteArray> whyNothingCanBeMounted;

} // namespace

// Whole trees whose events were lost, and trees that are away for a while.
class tst_ResolverScans : public QObject, ResolvedLibrary {
    Q_OBJECT

private Q_SLOTS:
    void init() { makeLibrary(); }
    void cleanup() { removeLibrary(); }

    void nothingIsForgottenWhileTheLibraryIsAway();
    void nothingIsForgottenWhileAnOutsideProjectIsAway();
    void aScanReportsTheDifference();
    void aScanForgetsProjectsThatAreNoLongerThere();
    void aScanKeepsAnOutsideProjectThatIsAway();
    void aScanInsideAProjectStaysInside();
    void aScanOfAnUnmountedLibraryForgetsNothing();
};

void tst_ResolverScans::nothingIsForgottenWhileTheLibraryIsAway() {
    fs::rename(text(m_library), text(m_home->path().child("away")));
    const auto changes = resolve({{m_one.child("a.png"), 0},
                                  {m_one.child("deep"), FileEvent::renamed},
                                  {m_one, FileEvent::renamed},
                                  {m_outside.child("gone.png"), 0},
                                  {m_library, FileEvent::mustScan}});
    QCOMPARE(changes.gone, QList{m_outside.child("gone.png")}); // which is not in it
    QVERIFY(changes.assets.isEmpty());
}

void tst_ResolverScans::nothingIsForgottenWhileAnOutsideProjectIsAway() {
    fs::rename(text(m_outside), text(m_home->path().child("away")));
    fs::remove(text(m_one.child("a.png")));
    const auto changes = resolve({{m_outside.child("e.png"), 0}, {m_outside, 0}, {m_one.child("a.png"), 0}});
    QCOMPARE(changes.gone, QList{m_one.child("a.png")});
}

void tst_ResolverScans::aScanReportsTheDifference() {
    fs::remove(text(m_one.child("a.png")));
    fs::remove_all(text(m_one.child("deep/er")));
    m_home->file("library/one/deep/b.mp4", "other bytes");
    QVERIFY(Stars::write(m_library.child("two/d.png"), true));
    m_home->file("library/two/deep/new.png");
    m_home->file("library/two/node_modules/unseen.png");
    m_home->file("elsewhere/unseen.png"); // not below the scanned folder
    const auto changes = resolve({{m_library, FileEvent::mustScan}});
    QCOMPARE(inOrder(changes.gone), (QList{m_one.child("a.png"), m_one.child("deep/er/c.wav")}));
    QCOMPARE(pathsOf(changes.assets),
             (QList{m_one.child("deep/b.mp4"), m_library.child("two/d.png"), m_library.child("two/deep/new.png")}));

    const auto all = resolve({{m_library, FileEvent::mustScan}, {m_outside, FileEvent::mustScan}});
    QCOMPARE(content(m_index.applying(all)), content(walked()));
    QVERIFY(resolve({{m_library, FileEvent::mustScan}}, walked()).assets.isEmpty());
    QVERIFY(resolve({{m_library, FileEvent::mustScan}}, walked()).gone.isEmpty());
}

void tst_ResolverScans::aScanForgetsProjectsThatAreNoLongerThere() {
    fs::remove_all(text(m_one));
    fs::rename(text(m_library.child("two")), text(m_library.child("three")));
    m_roots = {m_outside, m_library.child("three")};
    const auto changes = resolve({{m_library, FileEvent::mustScan}});
    QCOMPARE(content(m_index.applying(changes)), content(walked()));
    QCOMPARE(m_index.applying(changes).count(), 2);
}

void tst_ResolverScans::aScanKeepsAnOutsideProjectThatIsAway() {
    fs::rename(text(m_outside), text(m_home->path().child("away")));
    fs::remove(text(m_one.child("a.png")));
    const auto changes = resolve({{m_home->path(), FileEvent::mustScan}, {m_outside, FileEvent::mustScan}});
    QCOMPARE(changes.gone, QList{m_one.child("a.png")});
}

void tst_ResolverScans::aScanInsideAProjectStaysInside() {
    fs::remove(text(m_one.child("a.png")));
    fs::remove(text(m_one.child("deep/b.mp4")));
    m_home->file("library/one/deep/build/unseen.png");
    const auto changes =
        resolve({{m_one.child("deep"), FileEvent::mustScan}, {m_one.child("deep/build"), FileEvent::mustScan}});
    QCOMPARE(changes.gone, QList{m_one.child("deep/b.mp4")});
    QVERIFY(changes.assets.isEmpty());
}

void tst_ResolverScans::aScanOfAnUnmountedLibraryForgetsNothing() {
    QVERIFY2(!whyNothingCanBeMounted, whyNothingCanBeMounted.value_or(QByteArray()).constData());
    const Location library = m_home->folder("mounted");
    QCOMPARE(::mount(m_library.path().constData(), library.path().constData(), nullptr, MS_BIND, nullptr), 0);
    const KnownFolder known(library);
    const QList<Location> roots{library.child("one")};
    const AssetIndex index = Scanner::index(roots, 1);
    QCOMPARE(index.count(), 3);
    QCOMPARE(::umount2(library.path().constData(), MNT_DETACH), 0);
    QVERIFY(library.isFolder()); // the bare mount point
    const auto changes =
        Resolver::resolve({{library.child("one/a.png"), 0}, {library, FileEvent::mustScan}, {library.child("one"), 0}},
                          roots, known, index);
    QVERIFY(changes.gone.isEmpty());
}

int main(int argc, char* argv[]) {
    whyNothingCanBeMounted = enterPrivateMounts(); // before there is a second thread
    tst_ResolverScans test;
    QCoreApplication application(argc, argv);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_resolverscans.moc"
