// Films and pages in the web view: what plays, what stays out of reach, and what becomes of a crash.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomWindow.h"
#include "media/quicklook/WebVideoPage.h"
#include "platform/TemporaryFolder.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QTcpServer>
#include <QTcpSocket>
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

constexpr char document[] = R"(
    property var file
    property int hidings: 0
    property var keys: []
    Keys.onPressed: event => { keys = keys.concat([event.key]); event.accepted = true }
    QuickLookView {
        objectName: "view"
        anchors.fill: parent
        path: parent.file
        onShownChanged: if (!shown) ++parent.hidings
    })";

constexpr char imports[] = "import Lumbra.Media\n";

} // namespace

// What would open an address in another program.
class UrlOpener : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE void open(const QUrl& url) { opened.append(url.toString()); }

    QStringList opened;
};

class tst_WebVideo : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (QGuiApplication::platformName() == u"offscreen")
            QSKIP("there is no OpenGL without a display");
    }

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
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        QTRY_VERIFY_WITH_TIMEOUT(movesAt(window), 20'000);
    }

    void aFilmIsShownOnceItHasAPicture() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        const QColor first = window->grabWindow().pixelColor(300, 200);
        QVERIFY2(!isNear(first, Qt::green), qPrintable(first.name()));
    }

    void whatNothingCanPlayIsShownAsItIs() {
        const Location broken = m_home.file("broken.webm", "no film");
        QmlWindow window(film, imports, {{QStringLiteral("file"), broken.toUrl()}});
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
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
        QTRY_VERIFY_WITH_TIMEOUT(stage->property("shown").toBool(), 20'000);
        QVERIFY(!poster->isVisible());
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
        QTRY_VERIFY_WITH_TIMEOUT(shows(shown), 20'000);
        QTRY_VERIFY_WITH_TIMEOUT(movesAt(shown), 20'000);
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
        QTRY_COMPARE_WITH_TIMEOUT(viewsOf(window), 1, 20'000);
        window.window.press(Qt::Key_Down);
        QTRY_VERIFY_WITH_TIMEOUT(window.window.find("webStage")->property("shown").toBool(), 20'000);
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
        QTRY_VERIFY_WITH_TIMEOUT(stage->property("shown").toBool(), 20'000);
        const qint64 process = stage->property("view").value<QQuickItem*>()->property("renderProcessPid").toLongLong();
        QVERIFY(process > 0);
        QCOMPARE(::kill(pid_t(process), SIGKILL), 0);
        QTRY_VERIFY(window.window.find<QQuickItem>("webFailure")->isVisible());
        QVERIFY(!window.window.find<QQuickItem>("webPoster")->isVisible());
        window.window.press(Qt::Key_Down);
        QTRY_VERIFY(!room.room->stillImage().isNull());
        window.window.press(Qt::Key_Up);
        QTRY_VERIFY_WITH_TIMEOUT(window.window.find("webStage")->property("shown").toBool(), 20'000);
        window.window.press(Qt::Key_Escape);
        QVERIFY(!room.library->playing());
    }

    void whatStandsBehindShowsThrough() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(5, 5), Qt::green));
    }

    void theKeysStayWithTheRoom() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 200));
        QTest::qWait(100);
        for (const int key : {Qt::Key_Up, Qt::Key_Left, Qt::Key_Space, Qt::Key_Escape, Qt::Key_F})
            window.press(key);
        QTRY_COMPARE(window.root()->property("keys").toList().size(), 5);
    }

    void oneViewIsMadeAndUsedAgain() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        QObject* const view = viewOf(window);
        QVERIFY(view);
        window.root()->setProperty("isOpen", false);
        QTRY_COMPARE(view->property("url").toUrl(), QUrl(QStringLiteral("about:blank"))); // and it is silent
        window.root()->setProperty("isOpen", true);
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        QCOMPARE(viewOf(window), view);
        window.root()->setProperty("file", Clips::clip("theora.ogv").toUrl());
        QTRY_VERIFY(written().contains("theora.ogv"));
        QTRY_VERIFY_WITH_TIMEOUT(movesAt(window), 20'000);
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
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        QObject* const view = viewOf(window);
        window.root()->setProperty("second", Clips::clip("vp8.webm").toUrl());
        window.root()->setProperty("hasSecond", true);
        QTRY_VERIFY_WITH_TIMEOUT(shows(window, "second"), 20'000);
        QVERIFY(shows(window));
        QCOMPARE(viewOf(window), view);
        QVERIFY(viewOf(window, "second") != view);
    }

    void aCrashLeavesACalmStageAndTheNextFilmPlays() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("vp9.webm").toUrl()}});
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        const qint64 process = viewOf(window)->property("renderProcessPid").toLongLong();
        QVERIFY(process > 0);
        QCOMPARE(::kill(pid_t(process), SIGKILL), 0);
        QTRY_VERIFY(window.value("film", "failed").toBool());
        QTRY_VERIFY(window.find<QQuickItem>("webFailure")->isVisible());
        window.press(Qt::Key_Down); // the room lives
        QCOMPARE(window.root()->property("keys").toList().size(), 1);
        window.root()->setProperty("file", Clips::clip("vp8.webm").toUrl());
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        QTRY_VERIFY_WITH_TIMEOUT(movesAt(window), 20'000);
        QVERIFY(!window.find<QQuickItem>("webFailure")->isVisible());
    }

    void aPageIsShownWithoutItsScriptsAndWithItsOwnFiles() {
        m_home.file("site/style.css", "body { background: #0000ff; margin: 0 }");
        const Location page =
            m_home.file("site/page.html", "<html><head><link rel=stylesheet href=style.css></head><body>words"
                                          "<script>document.body.style.background = '#ff0000'</script></body></html>");
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 300), Qt::blue));
        QTest::qWait(200);
        QVERIFY(isNear(window->grabWindow().pixelColor(300, 300), Qt::blue));
    }

    void aPageReachesNothingElse() {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        int calls = 0;
        connect(&server, &QTcpServer::newConnection, &server, [&] {
            ++calls;
            delete server.nextPendingConnection();
        });
        const QByteArray host = "http://127.0.0.1:" + QByteArray::number(server.serverPort()) + '/';
        m_home.file("secret.css", "body { background: #ff0000 }");
        m_home.file("site/other.html", "<body style='background:#ff0000'>");
        const Location page = m_home.file(
            "site/reaching.html",
            "<html><head><meta http-equiv=refresh content='0;url=other.html'><link rel=stylesheet href='" + host
                + "a.css'><link rel=stylesheet href='../secret.css'><link rel=stylesheet href='%2e%2e/secret.css'>"
                  "<link rel=dns-prefetch href='"
                + host + "'><link rel=preconnect href='" + host
                + "'></head><body style='background:#00f;overflow:hidden'><img src='" + host + "a.png'><iframe src='"
                + host + "a.html'></iframe><video autoplay src='" + host + "a.webm'></video><object data='" + host
                + "a.svg'></object></body></html>");
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QTest::qWait(1000); // as long as it would take
        QVERIFY(isNear(window->grabWindow().pixelColor(590, 390), Qt::blue));
        QCOMPARE(calls, 0);
    }

    void aLinkLeadsNowhere() {
        m_home.file("site/other.html", "<body style='background:#ff0000'>");
        const Location page =
            m_home.file("site/link.html", "<body style='margin:0;background:#0000ff'><a href='other.html' "
                                          "style='display:block;height:100vh'>away</a>");
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 200));
        QTest::qWait(500);
        QVERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
    }

    void aPageScrollsByKeysAndTheWheel() {
        const Location page =
            m_home.file("site/long.html", "<body style='margin:0'><div style='background:#00f;height:1500px'></div>"
                                          "<div style='background:#f00;height:1500px'></div>");
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
        window.press(Qt::Key_End);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::red));
        window.press(Qt::Key_Home);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
    }

    void wordsOfAPageAreSelectedAndCopied() {
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(wordyPage())}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QVERIFY(!hasSelection(window));
        window.press(Qt::Key_A, Qt::ControlModifier);
        QTRY_VERIFY(hasSelection(window));
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(210, 45), QColor(255, 200, 140), 60)); // as elsewhere
        window.press(Qt::Key_C, Qt::ControlModifier);
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("first words\nsecond words"));
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 300));
        QTRY_VERIFY(!hasSelection(window));
    }

    void thePointerSelectsWordsOfAPageAndItsMenuCopiesThem() {
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(wordyPage())}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QTest::mousePress(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(9, 30));
        QTest::mouseMove(window.window(), QPoint(60, 30));
        QTest::mouseMove(window.window(), QPoint(500, 35));
        QTest::mouseRelease(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(500, 35));
        QTRY_VERIFY(hasSelection(window));
        QTest::mouseClick(window.window(), Qt::RightButton, Qt::NoModifier, QPoint(60, 30));
        QTRY_VERIFY(window.find<QObject>("documentCopy")->property("enabled").toBool());
        QGuiApplication::clipboard()->clear();
        QMetaObject::invokeMethod(window.find<QObject>("documentCopy"), "triggered");
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("first words"));
    }

    void whatIsPressedOnAPageLeavesTheKeysWhereTheyWere() {
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(wordyPage())}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 30));
        for (const int key : {Qt::Key_Up, Qt::Key_Left, Qt::Key_Space, Qt::Key_Escape, Qt::Key_F})
            window.press(key);
        QTRY_COMPARE(window.root()->property("keys").toList().size(), 5);
    }

    void theFilmsOwnControlsAnswerThePointer() {
        QmlWindow window(film, imports, {{QStringLiteral("file"), Clips::clip("long.webm").toUrl()}});
        QTRY_VERIFY_WITH_TIMEOUT(shows(window), 20'000);
        QTRY_VERIFY_WITH_TIMEOUT(movesAt(window), 20'000);
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 190));
        QTRY_VERIFY_WITH_TIMEOUT(!movesAt(window), 20'000);                                   // its controls fade first
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(250, 175)); // no double click
        QTRY_VERIFY_WITH_TIMEOUT(movesAt(window), 20'000);
    }

    void aLinkToTheWebIsOpenedElsewhereAndAnyOtherNowhere() {
        UrlOpener opener;
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &opener, "open");
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &opener, "open");
        constexpr char links[] =
            "<body style='margin:0;background:#0000ff'>"
            "<a href='https://example.org/a' style='display:block;height:100px'>here</a>"
            "<a href='https://example.org/b' target=_blank style='display:block;height:100px'>new</a>"
            "<a href='other.html' style='display:block;height:100px'>beside</a>";
        m_home.file("site/other.html", "<body style='background:#ff0000'>");
        const Location page = m_home.file("site/links.html", links);
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        for (const int y : {250, 50, 150})
            QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(300, y));
        QTRY_COMPARE(opener.opened.size(), 2);
        QCOMPARE(opener.opened,
                 QStringList({QStringLiteral("https://example.org/a"), QStringLiteral("https://example.org/b")}));
        QVERIFY(isNear(window->grabWindow().pixelColor(500, 350), Qt::blue));
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    }

    void aMouseThatGoesBackLeavesThePageWhereItIs() {
        const Location page = m_home.file("site/kept.html", "<body style='background:#0000ff'>");
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QTest::mouseClick(window.window(), Qt::BackButton, Qt::NoModifier, QPoint(300, 200));
        QTest::qWait(300);
        QVERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
    }

    void aPageThatChangesIsLoadedAnew() {
        const Location page = m_home.file("site/changes.html", "<body style='background:#0000ff'>");
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY_WITH_TIMEOUT(window.value("view", "shown").toBool(), 20'000);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
        m_home.file("site/changes.html", "<body style='background:#ff0000'>  ");
        QTRY_VERIFY_WITH_TIMEOUT(isNear(window->grabWindow().pixelColor(300, 200), Qt::red), 20'000);
        QCOMPARE(window.root()->property("hidings").toInt(), 0);
    }

private:
    Location wordyPage() const {
        return m_home.file("site/wordy.html", "<body style='margin:0;font:40px sans-serif'><span>first words</span><br>"
                                              "<span>second words</span>");
    }

    Location copied(const char* clip, const char* name) const {
        const Location to = m_home.path().child(std::string_view(name));
        QFile::copy(Clips::clip(clip).toString(), to.toString());
        return to;
    }

    static bool hasSelection(QmlWindow& window) {
        return window.value("documentStage", "item").value<QQuickItem*>()->property("hasSelection").toBool();
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
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1"); // tests may run as root, where there is none
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QGuiApplication application(argc, argv);
    tst_WebVideo test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_webvideo.moc"
