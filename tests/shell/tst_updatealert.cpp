// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/UpdateCheck.h"
#include "support/QmlWindow.h"
#include "support/TestHome.h"

#include <QDesktopServices>
#include <QTcpServer>
#include <QTcpSocket>

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_ShellPlugin)

using namespace lumbra;

// What the user is told after a look for a newer version.
class tst_updatealert : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl& url) { m_opened.append(url); }

private Q_SLOTS:
    void initTestCase() {
        Look::prepareApplication();
        QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open");
    }
    void cleanup();
    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    void aNewVersionsPageIsOpened();
    void aNewVersionCanWait();
    void withoutANewVersionThereIsOneButton();

private:
    void check(const char* version);
    bool isShown() { return m_window->find("updateAlert")->property("visible").toBool(); }

    const TestHome m_home;
    QTcpServer m_server;
    std::unique_ptr<UpdateCheck> m_updater;
    std::unique_ptr<QmlWindow> m_window;
    QList<QUrl> m_opened;
};

void tst_updatealert::cleanup() {
    m_window.reset();
    m_updater.reset();
    m_server.close();
    m_server.disconnect();
    m_opened.clear();
}

void tst_updatealert::check(const char* version) {
    const QByteArray feed = QByteArray("<rss><channel><item><link>https://example.org/new</link><version>") + version
                            + "</version></item></channel></rss>";
    QVERIFY(m_server.listen(QHostAddress::LocalHost));
    connect(&m_server, &QTcpServer::newConnection, this, [this, feed] {
        QTcpSocket* const socket = m_server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket, feed] {
            socket->readAll();
            socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + feed);
            socket->disconnectFromHost();
        });
    });
    m_updater = std::make_unique<UpdateCheck>(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(m_server.serverPort())),
                                              QVersionNumber(1, 0));
    m_window = std::make_unique<QmlWindow>(
        "id: root\nrequired property UpdateCheck updater\nUpdateAlert { updater: root.updater }",
        "import Lumbra.Shell\n", QVariantMap{{QStringLiteral("updater"), QVariant::fromValue(m_updater.get())}});
    m_updater->check();
    QTRY_VERIFY(!m_updater->title().isEmpty());
    QTRY_VERIFY(isShown());
}

void tst_updatealert::aNewVersionsPageIsOpened() {
    check("2.0");
    m_window->press(Qt::Key_Return);
    QCOMPARE(m_opened, QList{QUrl(QStringLiteral("https://example.org/new"))});
    QTRY_VERIFY(!isShown());
}

void tst_updatealert::aNewVersionCanWait() {
    check("2.0");
    m_window->press(Qt::Key_Escape);
    QTRY_VERIFY(!isShown());
    QVERIFY(m_opened.isEmpty());
    QVERIFY(m_updater->title().isEmpty());
}

void tst_updatealert::withoutANewVersionThereIsOneButton() {
    check("1.0");
    m_window->press(Qt::Key_Return);
    QTRY_VERIFY(!isShown());
    QVERIFY(m_opened.isEmpty());
}

QTEST_MAIN(tst_updatealert)
#include "tst_updatealert.moc"
