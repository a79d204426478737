// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/UpdateCheck.h"
#include "support/TestHome.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace lumbra;

// A feed on this machine, and what a look at it comes to.
class tst_updatecheck : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyAnInstallationWithAFeedHasAnUpdater_data();
    void onlyAnInstallationWithAFeedHasAnUpdater();
    void withoutAFeedItNeverCanCheck();
    void theNewestVersionOfAFeed_data();
    void theNewestVersionOfAFeed();
    void aNewerVersionIsOfferedWithItsNotes();
    void theInstalledVersionIsTheNewest();
    void aFeedThatIsNoneIsSaidToBe();
    void aFeedThatIsNotThereIsSaidToBe();
    void aFeedWithoutAnEndIsLeft();
    void itCanNotCheckWhileACheckIsUnderWay();
    void whatWasSaidGoesOnceItIsRead();

private:
    static QByteArray item(const QByteArray& inside) { return "<item>" + inside + "</item>"; }
    static QByteArray feed(const QByteArray& items) {
        return "<?xml version='1.0'?><rss xmlns:sparkle='urn:sparkle'><channel>" + items + "</channel></rss>";
    }
    // Serves the body to whoever asks; one without an end goes on until the other has had enough.
    QUrl serve(const QByteArray& body, bool endless = false);
    static void checked(UpdateCheck& updater) {
        QSignalSpy told(&updater, &UpdateCheck::resultChanged);
        updater.check();
        QTRY_COMPARE(told.size(), 1);
    }

    std::unique_ptr<QTcpServer> m_server;
};

QUrl tst_updatecheck::serve(const QByteArray& body, bool endless) {
    m_server = std::make_unique<QTcpServer>();
    if (!m_server->listen(QHostAddress::LocalHost))
        qFatal("nothing can be served");
    connect(m_server.get(), &QTcpServer::newConnection, m_server.get(), [this, body, endless] {
        QTcpSocket* const socket = m_server->nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket, body, endless] {
            socket->readAll();
            socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + body);
            if (!endless)
                return socket->disconnectFromHost();
            connect(socket, &QTcpSocket::bytesWritten, socket, [socket, body] { socket->write(body); });
        });
    });
    return QUrl(QStringLiteral("http://127.0.0.1:%1/feed").arg(m_server->serverPort()));
}

void tst_updatecheck::onlyAnInstallationWithAFeedHasAnUpdater_data() {
    QTest::addColumn<QByteArray>("information");
    QTest::addColumn<bool>("has");
    QTest::newRow("a build folder: no information") << QByteArray() << false;
    QTest::newRow("no feed") << QByteArray("{}") << false;
    QTest::newRow("a feed") << QByteArray(R"({"SUFeedURL": "https://example.org/feed.xml"})") << true;
    QTest::newRow("a feed on this machine") << QByteArray(R"({"SUFeedURL": "http://127.0.0.1:9/feed"})") << true;
    QTest::newRow("a feed that anyone could change") << QByteArray(R"({"SUFeedURL": "http://example.org/f"})") << false;
    QTest::newRow("a feed that is a file") << QByteArray(R"({"SUFeedURL": "file:///etc/passwd"})") << false;
    QTest::newRow("a feed of another type") << QByteArray(R"({"SUFeedURL": 7})") << false;
    QTest::newRow("no JSON") << QByteArray("SUFeedURL") << false;
}

void tst_updatecheck::onlyAnInstallationWithAFeedHasAnUpdater() {
    QFETCH(QByteArray, information);
    const TestHome home;
    if (!information.isEmpty())
        home.file("usr/share/lumbra/bundle.json", information);
    QTEST(UpdateCheck::feedFor(home.path().child("usr/bin/lumbra-desktop")).has_value(), "has");
}

void tst_updatecheck::withoutAFeedItNeverCanCheck() {
    UpdateCheck updater({}, QVersionNumber(1, 0));
    QVERIFY(!updater.canCheck());
    QSignalSpy changed(&updater, &UpdateCheck::canCheckChanged);
    updater.check();
    QVERIFY(changed.isEmpty());
}

void tst_updatecheck::theNewestVersionOfAFeed_data() {
    QTest::addColumn<QByteArray>("feed");
    QTest::addColumn<QString>("version");
    const QByteArray page = "<link>https://example.org/</link>";
    const auto version = [&](const QByteArray& number) {
        return item(page + "<sparkle:version>" + number + "</sparkle:version>");
    };
    QTest::newRow("one") << feed(version("1.2")) << QStringLiteral("1.2");
    QTest::newRow("the highest number, not the first")
        << feed(version("1.9") + version("1.10") + version("1.2")) << QStringLiteral("1.10");
    QTest::newRow("the number that people read")
        << feed(item(page
                     + "<sparkle:version>871</sparkle:version>"
                       "<sparkle:shortVersionString>2.1</sparkle:shortVersionString>"))
        << QStringLiteral("2.1");
    QTest::newRow("of the enclosure") << feed(
        item("<enclosure url='https://example.org/a.deb' sparkle:version='3.0'/>"))
                                      << QStringLiteral("3.0");
    QTest::newRow("without a page") << feed(item("<sparkle:version>9</sparkle:version>")) << QString();
    QTest::newRow("with a page that anyone could change")
        << feed(item("<link>http://example.org/</link><sparkle:version>9</sparkle:version>")) << QString();
    QTest::newRow("with a page that is a program")
        << feed(item("<link>file:///bin/sh</link><sparkle:version>9</sparkle:version>")) << QString();
    QTest::newRow("without a number") << feed(item(page)) << QString();
    QTest::newRow("no items") << feed({}) << QString();
    QTest::newRow("cut off") << feed(version("1.2")).chopped(20) << QString();
    QTest::newRow("no XML") << QByteArray("versions: none") << QString();
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("entities of its own") << QByteArray("<!DOCTYPE rss [<!ENTITY a 'aaaa'>]>"
                                                       + feed(version("1.2")).sliced(21))
                                         << QString();
}

void tst_updatecheck::theNewestVersionOfAFeed() {
    QFETCH(QByteArray, feed);
    const auto newest = Appcast::newest(feed);
    QTEST(newest ? newest->number.toString() : QString(), "version");
}

void tst_updatecheck::aNewerVersionIsOfferedWithItsNotes() {
    UpdateCheck updater(serve(feed(item("<link>https://example.org/</link><sparkle:version>1.3</sparkle:version>"
                                        "<description>&lt;h1&gt;New&lt;/h1&gt; It  flies.</description>"))),
                        QVersionNumber(1, 2));
    checked(updater);
    QCOMPARE(updater.title(), QStringLiteral("Lumbra 1.3 is there"));
    QCOMPARE(updater.message(), QStringLiteral("You have version 1.2.\n\nNew It flies."));
    QVERIFY(updater.offers());
}

void tst_updatecheck::theInstalledVersionIsTheNewest() {
    UpdateCheck updater(serve(feed(item("<link>https://example.org/</link><sparkle:version>1.2</sparkle:version>"))),
                        QVersionNumber(1, 2));
    checked(updater);
    QCOMPARE(updater.title(), QStringLiteral("Lumbra is up to date"));
    QVERIFY(!updater.offers());
}

void tst_updatecheck::aFeedThatIsNoneIsSaidToBe() {
    UpdateCheck updater(serve("<html><body>Not found</body></html>"), QVersionNumber(1, 2));
    checked(updater);
    QCOMPARE(updater.title(), QStringLiteral("Updates can't be checked"));
}

void tst_updatecheck::aFeedThatIsNotThereIsSaidToBe() {
    const QUrl url = serve({});
    m_server.reset();
    UpdateCheck updater(url, QVersionNumber(1, 2));
    checked(updater);
    QCOMPARE(updater.title(), QStringLiteral("Updates can't be checked"));
    QVERIFY(!updater.message().isEmpty());
}

void tst_updatecheck::aFeedWithoutAnEndIsLeft() {
    UpdateCheck updater(serve(QByteArray(64 << 10, 'x'), true), QVersionNumber(1, 2));
    checked(updater);
    QCOMPARE(updater.title(), QStringLiteral("Updates can't be checked"));
}

void tst_updatecheck::itCanNotCheckWhileACheckIsUnderWay() {
    UpdateCheck updater(serve("nothing"), QVersionNumber(1, 2));
    QVERIFY(updater.canCheck());
    updater.check();
    QVERIFY(!updater.canCheck());
    QTRY_VERIFY(updater.canCheck());
}

void tst_updatecheck::whatWasSaidGoesOnceItIsRead() {
    UpdateCheck updater(serve("nothing"), QVersionNumber(1, 2));
    checked(updater);
    updater.dismiss();
    QCOMPARE(updater.title(), QString());
}

QTEST_GUILESS_MAIN(tst_updatecheck)
#include "tst_updatecheck.moc"
