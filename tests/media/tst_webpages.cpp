// Pages in the web view: what they may reach, what leads away, and what is copied out of them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebTest.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)

using namespace lumbra;

namespace {

bool isNear(const QColor& a, const QColor& b, int tolerance = 40) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance;
}

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

class tst_WebPages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPageIsShownWithoutItsScriptsAndWithItsOwnFiles() {
        m_home.file("site/style.css", "body { background: #0000ff; margin: 0 }");
        const Location page =
            m_home.file("site/page.html", "<html><head><link rel=stylesheet href=style.css></head><body>words"
                                          "<script>document.body.style.background = '#ff0000'</script></body></html>");
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY(window.value("view", "shown").toBool());
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
        QTRY_VERIFY(window.value("view", "shown").toBool());
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
        QTRY_VERIFY(window.value("view", "shown").toBool());
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
        QTRY_VERIFY(window.value("view", "shown").toBool());
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
        window.press(Qt::Key_End);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::red));
        window.press(Qt::Key_Home);
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
    }

    void wordsOfAPageAreSelectedAndCopied() {
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(wordyPage())}});
        QTRY_VERIFY(window.value("view", "shown").toBool());
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
        QTRY_VERIFY(window.value("view", "shown").toBool());
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
        QTRY_VERIFY(window.value("view", "shown").toBool());
        QTest::mouseClick(window.window(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 30));
        for (const int key : {Qt::Key_Up, Qt::Key_Left, Qt::Key_Space, Qt::Key_Escape, Qt::Key_F})
            window.press(key);
        QTRY_COMPARE(window.root()->property("keys").toList().size(), 5);
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
        QTRY_VERIFY(window.value("view", "shown").toBool());
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
        QTRY_VERIFY(window.value("view", "shown").toBool());
        QTest::mouseClick(window.window(), Qt::BackButton, Qt::NoModifier, QPoint(300, 200));
        QTest::qWait(300);
        QVERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
    }

    void aPageThatChangesIsLoadedAnew() {
        const Location page = m_home.file("site/changes.html", "<body style='background:#0000ff'>");
        QmlWindow window(document, imports, {{QStringLiteral("file"), QVariant::fromValue(page)}});
        QTRY_VERIFY(window.value("view", "shown").toBool());
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::blue));
        m_home.file("site/changes.html", "<body style='background:#ff0000'>  ");
        QTRY_VERIFY(isNear(window->grabWindow().pixelColor(300, 200), Qt::red));
        QCOMPARE(window.root()->property("hidings").toInt(), 0);
    }

private:
    Location wordyPage() const {
        return m_home.file("site/wordy.html", "<body style='margin:0;font:40px sans-serif'><span>first words</span><br>"
                                              "<span>second words</span>");
    }

    static bool hasSelection(QmlWindow& window) {
        return window.value("documentStage", "item").value<QQuickItem*>()->property("hasSelection").toBool();
    }

    TestHome m_home;
};

int main(int argc, char** argv) {
    return runWithWebEngine<tst_WebPages>(argc, argv);
}
#include "tst_webpages.moc"
