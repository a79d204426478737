// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/SingleInstance.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QSignalSpy>
#include <QTest>
#include <QtConcurrentRun>

using namespace lumbra;

class tst_singleinstance : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_bus = std::make_unique<PrivateBus>(); }
    void cleanup();
    void cleanupTestCase() { m_bus.reset(); }

    void theFirstIsTheOne();
    void aSecondHandsOverWhatItWasToOpen();
    void aSecondWithNothingToOpenBringsTheFirstToTheFront();
    void locationsArriveAsTheyWereGiven_data();
    void locationsArriveAsTheyWereGiven();
    void oneOfAnotherLibraryIsOneOfItsOwn();
    void theDesktopReachesTheFirst();
    void anotherTakesThePlaceOfOneThatHasEnded();
    void anotherTakesThePlaceOfOneThatEndsWhileItIsAsked();
    void ofTwoAtOnceOneIsTheOne();
    void anActivationTokenComesAlong();
    void whateverActionIsAskedForTheWindowComes();

private:
    // A connection of a process of its own, as far as the bus can tell.
    QDBusConnection connection() {
        const QString name = QStringLiteral("connection-%1").arg(++m_connections);
        m_open.append(name);
        return QDBusConnection::connectToBus(m_bus->address(), name);
    }
    // As from another process: the first must be able to answer meanwhile.
    bool claimElsewhere(SingleInstance& second, const QList<QUrl>& urls, const char* root = "/lib") {
        auto claimed = QtConcurrent::run([&, root = Location(QByteArray(root))] { return second.claim(root, urls); });
        if (!QTest::qWaitFor([&] { return claimed.isFinished(); }, patience))
            qFatal("the claim does not end");
        return claimed.result();
    }
    QDBusMessage called(const char* method, const QVariantList& arguments) {
        auto call =
            QDBusMessage::createMethodCall(SingleInstance::desktopName, SingleInstance::objectPath,
                                           QStringLiteral("org.freedesktop.Application"), QLatin1String(method));
        call.setArguments(arguments);
        auto answer = QtConcurrent::run([bus = connection(), call] { return bus.call(call); });
        if (!QTest::qWaitFor([&] { return answer.isFinished(); }, patience))
            qFatal("the call does not end");
        return answer.result();
    }
    static QList<QUrl> urls(const QSignalSpy& opened) { return opened.last().first().value<QList<QUrl>>(); }

    const Location m_root{QByteArray("/lib")};
    std::unique_ptr<PrivateBus> m_bus;
    QStringList m_open;
    int m_connections = 0;
};

void tst_singleinstance::cleanup() {
    for (const QString& name : std::exchange(m_open, {}))
        QDBusConnection::disconnectFromBus(name);
}

void tst_singleinstance::theFirstIsTheOne() {
    SingleInstance first(connection());
    QVERIFY(first.claim(m_root, {}));
}

void tst_singleinstance::aSecondHandsOverWhatItWasToOpen() {
    SingleInstance first(connection());
    QVERIFY(first.claim(m_root, {}));
    QSignalSpy opened(&first, &SingleInstance::opened);
    SingleInstance second(connection());
    QVERIFY(!claimElsewhere(second, {QUrl(QStringLiteral("lumbra://tidy")), QUrl(QStringLiteral("file:///lib/a"))}));
    QTRY_COMPARE(opened.size(), 1);
    QCOMPARE(urls(opened), (QList{QUrl(QStringLiteral("lumbra://tidy")), QUrl(QStringLiteral("file:///lib/a"))}));
}

void tst_singleinstance::aSecondWithNothingToOpenBringsTheFirstToTheFront() {
    SingleInstance first(connection());
    QVERIFY(first.claim(m_root, {}));
    QSignalSpy opened(&first, &SingleInstance::opened);
    SingleInstance second(connection());
    QVERIFY(!claimElsewhere(second, {}));
    QTRY_COMPARE(opened.size(), 1);
    QVERIFY(urls(opened).isEmpty());
}

void tst_singleinstance::locationsArriveAsTheyWereGiven_data() {
    QTest::addColumn<QUrl>("url");
    QTest::newRow("blanks and per cent") << QUrl::fromLocalFile(QStringLiteral("/lib/a b/100%.png"));
    QTest::newRow("another script") << QUrl::fromLocalFile(QStringLiteral("/lib/夜景 🚀.png"));
    QTest::newRow("a query") << QUrl(QStringLiteral("lumbra://play?path=~/Lumbra/site/a%20b%26c.mp4"));
    QTest::newRow("the older scheme") << QUrl(QStringLiteral("folia-app://reveal?path=/lib/a"));
    QTest::newRow("with two dots") << QUrl(QStringLiteral("lumbra://reveal?path=/lib/../../etc"));
    QTest::newRow("nothing") << QUrl();
}

void tst_singleinstance::locationsArriveAsTheyWereGiven() {
    QFETCH(QUrl, url);
    SingleInstance first(connection());
    QVERIFY(first.claim(m_root, {}));
    QSignalSpy opened(&first, &SingleInstance::opened);
    SingleInstance second(connection());
    QVERIFY(!claimElsewhere(second, {url}));
    QTRY_COMPARE(opened.size(), 1);
    QCOMPARE(urls(opened), QList{url});
}

void tst_singleinstance::oneOfAnotherLibraryIsOneOfItsOwn() {
    SingleInstance first(connection());
    QVERIFY(first.claim(m_root, {}));
    QSignalSpy opened(&first, &SingleInstance::opened);
    SingleInstance other(connection());
    QVERIFY(claimElsewhere(other, {QUrl(QStringLiteral("lumbra://tidy"))}, "/other"));
    QCOMPARE(opened.size(), 0);
}

void tst_singleinstance::theDesktopReachesTheFirst() {
    SingleInstance first(connection());
    QVERIFY(first.claim(m_root, {}));
    SingleInstance other(connection());
    QVERIFY(claimElsewhere(other, {}, "/other"));
    QSignalSpy opened(&first, &SingleInstance::opened);
    QCOMPARE(called("Open", {QStringList{QStringLiteral("file:///lib/a")}, QVariantMap()}).type(),
             QDBusMessage::ReplyMessage);
    QCOMPARE(urls(opened), QList{QUrl(QStringLiteral("file:///lib/a"))});
    QCOMPARE(called("Activate", {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    QCOMPARE(opened.size(), 2);
    QVERIFY(urls(opened).isEmpty());
}

void tst_singleinstance::anotherTakesThePlaceOfOneThatHasEnded() {
    auto first = std::make_unique<SingleInstance>(connection());
    QVERIFY(first->claim(m_root, {}));
    first.reset();
    SingleInstance second(connection());
    QVERIFY(claimElsewhere(second, {}));
    QSignalSpy opened(&second, &SingleInstance::opened);
    called("Activate", {QVariantMap()});
    QCOMPARE(opened.size(), 1);
}

void tst_singleinstance::anotherTakesThePlaceOfOneThatEndsWhileItIsAsked() {
    std::optional<QDBusConnection> busy = connection();
    auto first = std::make_unique<SingleInstance>(*busy);
    QVERIFY(first->claim(m_root, {}));
    SingleInstance second(connection());
    auto claimed = QtConcurrent::run([&] { return second.claim(m_root, {}); });
    // The first runs no events: it is asked, says nothing, and goes as a process does, with its connection.
    QThread::msleep(200);
    QVERIFY(!claimed.isFinished());
    const QString name = busy->name();
    busy.reset();
    QDBusConnection::disconnectFromBus(name);
    first.reset();
    QTRY_VERIFY(claimed.isFinished());
    QVERIFY(claimed.result());
}

void tst_singleinstance::ofTwoAtOnceOneIsTheOne() {
    for (int round = 0; round < 10; ++round) {
        SingleInstance one(connection());
        SingleInstance two(connection());
        QSignalSpy openedOne(&one, &SingleInstance::opened);
        QSignalSpy openedTwo(&two, &SingleInstance::opened);
        const QList<QUrl> given{QUrl(QStringLiteral("lumbra://tidy"))};
        auto first = QtConcurrent::run([&] { return one.claim(m_root, given); });
        auto second = QtConcurrent::run([&] { return two.claim(m_root, given); });
        QTRY_VERIFY(first.isFinished() && second.isFinished());
        QVERIFY(first.result() != second.result());
        QTRY_COMPARE((first.result() ? openedOne : openedTwo).size(), 1);
        QCOMPARE((first.result() ? openedTwo : openedOne).size(), 0);
    }
}

void tst_singleinstance::anActivationTokenComesAlong() {
    SingleInstance first(connection());
    QVERIFY(first.claim(m_root, {}));
    qunsetenv("XDG_ACTIVATION_TOKEN");
    called("Activate", {QVariantMap{{QStringLiteral("activation-token"), QStringLiteral("token-7")}}});
    QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), QByteArray("token-7"));
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void tst_singleinstance::whateverActionIsAskedForTheWindowComes() {
    SingleInstance first(connection());
    QVERIFY(first.claim(m_root, {}));
    QSignalSpy opened(&first, &SingleInstance::opened);
    QCOMPARE(called("ActivateAction", {QStringLiteral("unknown"), QVariantList(), QVariantMap()}).type(),
             QDBusMessage::ReplyMessage);
    QCOMPARE(opened.size(), 1);
}

QTEST_GUILESS_MAIN(tst_singleinstance)
#include "tst_singleinstance.moc"
