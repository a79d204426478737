// Films in the web view: what plays, what stands for it before, and what becomes of a crash.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomWindow.h"
#include "WebTest.h"
#include "media/quicklook/WebVideoPage.h"
#include "platform/TemporaryFolder.h"

#include <QtTest>

#include <signal.h>
#include <unistd.h>

using namespace lumbra;

namespace {

bool isNear(const QColor& a, const QColor& b, int tolerance = 40) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance;
}

QByteArray written() {
    QFile page(WebVideoPage::file().toString());
    return page.open(QIODevice::ReadOnly) ? page.readAll() : QByteArray();
}

constexpr char film[] = R"(
    property url file
    property var keys: []
    property bool isOpen: true
    Keys.onPressed: event => { keys = keys.concat([event.key]); event.accepted = true }
    Rectangle { anchors.fill: parent; color: "#00ff00" }
    Loader {
        objectName: "stage"
        anchors.fill: parent
        active: parent.isOpen
        sourceComponent: WebVideoView { objectName: "film"; path: parent.parent.file; autoplay: true }
    })";

constexpr char imports[] = "import Lumbra.Media\n";

} // namespace

class tst_WebVideo : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // First, since the engine never starts twice.
    void wherePrivilegesForbidTheEngineTheStageIsCalm() {
        if (::geteuid() != 0)
            QSKIP("the engine starts for everybody but the superuser");
        qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY(window.value("film", "failed").toBool());
        QVERIFY(window.find<QQuickItem>("webFailure")->isVisible());
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }

    void everyContainerPlaysByItself_data() {
        QTest::addColumn<Location>("file");
        QTest::newRow("webm with VP8") << Clips::clip("vp8.webm");
        QTest::newRow("webm with VP9") << Clips::clip("vp9.webm");
        QTest::newRow("ogv") << Clips::clip("theora.ogv");
        QTest::newRow("mkv") << copied("vp9.webm", "a film.mkv");
        QTest::newRow("a hostile name") << copied("vp9.webm", "\"><b>&copy #1?%20 Grüße.webm");
    }
    void everyContainerPlaysByItself() {
        QFETCH(Location, file);
        QmlWindow window(film, imports, {{QStringLiteral("file"), file.toUrl()}});
        QTRY_VERIFY(shows(window));
        QTRY_VERIFY(movesAt(window));
    }

    void aFilmIsShownOnceItHasAPicture() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY(shows(window));
        const QColor first = window->grabWindow().pixelColor(300, 200);
        QVERIFY2(!isNear(first, Qt::green), qPrintable(first.name()));
    }

    void whatNothingCanPlayIsShownAsItIs() {
        const Location broken = m_home.file("broken.webm", "no film");
        QmlWindow window(film, imports, {{QStringLiteral("file"), broken.toUrl()}});
        QTRY_VERIFY(shows(window));
    }

    void inTheRoomAPosterStandsUntilTheFilmHasAPicture() {
        Room room;
        room.clip("p/a.webm", "vp9.webm");
        room.picture("p/b.png");
        room.open("p/a.webm", {"p/a.webm", "p/b.png"});
        RoomWindow window(room);
        auto* const poster = window.window.find<QQuickItem>("webPoster");
        auto* const stage = window.window.find("webStage");
        QCOMPARE(poster->isVisible(), !stage->property("shown").toBool());
        QTRY_VERIFY(stage->property("shown").toBool());
        QVERIFY(!poster->isVisible());
    }

    void aFilmThatWasClickedLeavesTheRoomItsKeys() {
        Room room;
        room.clip("p/a.webm", "long.webm");
        room.picture("p/b.png");
        room.open("p/a.webm", {"p/a.webm", "p/b.png"});
        RoomWindow window(room);
        QTRY_VERIFY(window.window.find("webStage")->property("shown").toBool());
        window.window.click("webStage");
        QTest::qWait(100);
        QVERIFY(window.room.focused());
        window.window.press(Qt::Key_Down);
        QCOMPARE(window.room.name(), named("b.png"));
        QTRY_VERIFY(window.room.focused()); // also when what was clicked has gone
        window.window.press(Qt::Key_Up);
        QCOMPARE(window.room.name(), named("a.webm"));
        window.window.press(Qt::Key_Escape);
        QVERIFY(!room.library->playing());
    }

    void thePosterStandsWhereTheFilmWillStand_data() {
        QTest::addColumn<QSize>("window");
        QTest::newRow("in a larger stage") << QSize(600, 400);
        QTest::newRow("in one that is narrower") << QSize(110, 300);
        QTest::newRow("in one that is lower") << QSize(500, 60);
    }
    void thePosterStandsWhereTheFilmWillStand() {
        QFETCH(QSize, window);
        QmlWindow shown(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}},
                        window); // 160 by 90
        auto* const poster = shown.find<QQuickItem>("webPoster");
        auto* const stage = shown.find<QQuickItem>("webStage");
        const auto pictureIn = [&](QQuickItem* seen, QQuickItem* hidden) {
            hidden->setVisible(false);
            seen->setVisible(true);
            return boundsOnGreen(shown->grabWindow());
        };
        QTRY_VERIFY(shows(shown));
        QTRY_VERIFY(movesAt(shown));
        QTRY_VERIFY(!poster->property("image").value<QImage>().isNull());
        const QRect ofFilm = pictureIn(stage, poster), ofPoster = pictureIn(poster, stage);
        const auto differ = [](int a, int b) { return std::abs(a - b) > 1; };
        const QByteArray found = QDebug::toString(ofFilm).toUtf8() + QDebug::toString(ofPoster).toUtf8();
        QVERIFY2(!differ(ofFilm.left(), ofPoster.left()) && !differ(ofFilm.right(), ofPoster.right()), found);
        QVERIFY2(!differ(ofFilm.top(), ofPoster.top()) && !differ(ofFilm.bottom(), ofPoster.bottom()), found);
        QVERIFY2(ofFilm.width() > 50, found);
    }

    void theFirstViewIsMadeWhileNobodyWaitsIfSomethingNearNeedsIt() {
        Room room;
        room.picture("p/a.png");
        room.clip("p/b.webm", "vp9.webm");
        room.open("p/a.png", {"p/a.png", "p/b.webm"});
        QVERIFY(room.room->nearsWebView());
        RoomWindow window(room);
        QTRY_COMPARE(viewsOf(window), 1);
        window.window.press(Qt::Key_Down);
        QCOMPARE(room.room->index(), 1);
        QTRY_VERIFY(window.window.find("webStage")->property("shown").toBool());
        QCOMPARE(viewsOf(window), 1);
    }

    void noViewIsMadeWhereNothingNearNeedsIt() {
        Room room;
        room.picture("p/a.png");
        room.picture("p/b.png");
        room.clip("p/c.webm", "vp9.webm");
        room.open("p/a.png", {"p/a.png", "p/b.png", "p/c.webm"});
        QVERIFY(!room.room->nearsWebView());
        RoomWindow window(room);
        QTest::qWait(1500); // far longer than it would take
        QCOMPARE(viewsOf(window), 0);
        window.window.press(Qt::Key_Down);
        QVERIFY(room.room->nearsWebView());
    }

    void aCrashLeavesTheRoomAndItsKeys() {
        Room room;
        room.clip("p/a.webm", "vp9.webm");
        room.picture("p/b.png");
        room.open("p/a.webm", {"p/a.webm", "p/b.png"});
        RoomWindow window(room);
        auto* const stage = window.window.find("webStage");
        QTRY_VERIFY(stage->property("shown").toBool());
        const qint64 process = stage->property("view").value<QQuickItem*>()->property("renderProcessPid").toLongLong();
        QVERIFY(process > 0);
        QCOMPARE(::kill(pid_t(process), SIGKILL), 0);
        QTRY_VERIFY(window.window.find<QQuickItem>("webFailure")->isVisible());
        QVERIFY(!window.window.find<QQuickItem>("webPoster")->isVisible());
        window.window.press(Qt::Key_Down);
        QTRY_VERIFY(!room.room->stillImage().isNull());
        window.window.press(Qt::Key_Up);
        QTRY_VERIFY(window.window.find("webStage")->property("shown").toBool());
        window.window.press(Qt::Key_Escape);
        QVERIFY(!room.library->playing());
    }

    void whatStandsBehindShowsThrough() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY(shows(window));
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(5, 5), Qt::green));
    }

    void theKeysStayWithTheRoom() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY(shows(window));
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 200));
        QTest::qWait(100);
        for (const int key : {Qt::Key_Up, Qt::Key_Left, Qt::Key_Space, Qt::Key_Escape, Qt::Key_F})
            window.press(key);
        QTRY_COMPARE(window.root()->property("keys").toList().size(), 5);
    }

    void oneViewIsMadeAndUsedAgain() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY(shows(window));
        QObject* const view = viewOf(window);
        QVERIFY(view);
        window.root()->setProperty("isOpen", false);
        QTRY_COMPARE(view->property("url").toUrl(), QUrl(QStringLiteral("about:blank"))); // and it is silent
        window.root()->setProperty("isOpen", true);
        QTRY_VERIFY(shows(window));
        QCOMPARE(viewOf(window), view);
        window.root()->setProperty("file", Clips::clip("theora.ogv").toUrl());
        QTRY_VERIFY(written().contains("theora.ogv"));
        QTRY_VERIFY(movesAt(window));
        QCOMPARE(viewOf(window), view);
    }

    void aSecondViewLeavesTheFirstItsFilm() {
        constexpr char two[] = R"(
            property url file
            Row {
                WebVideoView { objectName: "film"; width: 300; height: 400; path: root.file }
                Loader {
                    id: loader
                    width: 300; height: 400
                    active: root.hasSecond
                    sourceComponent: WebVideoView { objectName: "second"; path: root.second }
                }
            }
            id: root
            property bool hasSecond: false
            property url second)";
        QmlWindow window(two, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY(shows(window));
        QObject* const view = viewOf(window);
        window.root()->setProperty("second", Clips::clip("vp8.webm").toUrl());
        window.root()->setProperty("hasSecond", true);
        QTRY_VERIFY(shows(window, "second"));
        QVERIFY(shows(window));
        QCOMPARE(viewOf(window), view);
        QVERIFY(viewOf(window, "second") != view);
    }

    void aCrashLeavesACalmStageAndTheNextFilmPlays() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY(shows(window));
        const qint64 process = viewOf(window)->property("renderProcessPid").toLongLong();
        QVERIFY(process > 0);
        QCOMPARE(::kill(pid_t(process), SIGKILL), 0);
        QTRY_VERIFY(window.value("film", "failed").toBool());
        QTRY_VERIFY(window.find<QQuickItem>("webFailure")->isVisible());
        window.press(Qt::Key_Down); // the room lives
        QCOMPARE(window.root()->property("keys").toList().size(), 1);
        window.root()->setProperty("file", Clips::clip("vp8.webm").toUrl());
        QTRY_VERIFY(shows(window));
        QTRY_VERIFY(movesAt(window));
        QVERIFY(!window.find<QQuickItem>("webFailure")->isVisible());
    }

    void theFilmsOwnControlsAnswerThePointer() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("long.webm").toUrl()}});
        QTRY_VERIFY(shows(window));
        QTRY_VERIFY(movesAt(window));
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 190));
        QTRY_VERIFY(!movesAt(window));                                                        // its controls fade first
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(250, 175)); // no double click
        QTRY_VERIFY(movesAt(window));
    }

private:
    Location copied(const char* clip, const char* name) const {
        const Location to = m_home.path().child(std::string_view(name));
        QFile::copy(Clips::clip(clip).toString(), to.toString());
        return to;
    }

    static bool shows(QmlWindow& window, const char* name = "film") { return window.value(name, "shown").toBool(); }

    // How many web views the window has made that are still there.
    static int viewsOf(RoomWindow& window) {
        QQmlComponent component(&window.window.engine());
        component.setData(
            "import QtQml\nimport Lumbra.Media\nQtObject { readonly property int count: WebViews.made.length }",
            QUrl());
        const std::unique_ptr<QObject> counter(component.create());
        return counter ? counter->property("count").toInt() : -1;
    }

    // The web view that the film stands in; null while it has none.
    static QObject* viewOf(QmlWindow& window, const char* name = "film") {
        auto* stage = window.find<QQuickItem>(name)->findChild<QQuickItem*>(QStringLiteral("webStage"));
        return stage->property("view").value<QQuickItem*>();
    }

    // Of what stands on the ground of green.
    static QRect boundsOnGreen(const QImage& image) {
        QRect bounds;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (!isNear(image.pixelColor(x, y), Qt::green))
                    bounds |= QRect(x, y, 1, 1);
        return bounds;
    }

    // The picture in the middle changes.
    static bool movesAt(QmlWindow& window) {
        const QSize size = window->size();
        const QRect middle(size.width() / 4, size.height() / 4, size.width() / 2, size.height() / 2);
        const QImage before = window->grabWindow().copy(middle);
        QTest::qWait(150);
        return window->grabWindow().copy(middle) != before;
    }

    TestHome m_home;
};

int main(int argc, char** argv) {
    return runWithWebEngine<tst_WebVideo>(argc, argv);
}
#include "tst_webvideo.moc"
