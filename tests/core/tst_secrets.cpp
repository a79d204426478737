// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Secrets.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <csignal>

using namespace lumbra;

namespace {

const QString secretsName = QStringLiteral("org.freedesktop.secrets");

// A real keyring, unlocked and with nothing in it.
class Keyring {
public:
    Keyring() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder.path());
        m_daemon.setProcessEnvironment(environment);
        m_daemon.start(QStringLiteral("gnome-keyring-daemon"),
                       {QStringLiteral("--unlock"), QStringLiteral("--foreground"), QStringLiteral("--components"),
                        QStringLiteral("secrets")});
        m_daemon.write("password");
        m_daemon.closeWriteChannel();
        if (!QTest::qWaitFor([] { return isThere(); }, patience))
            qFatal("cannot start a keyring");
    }
    ~Keyring() {
        m_daemon.kill();
        m_daemon.waitForFinished();
        (void)QTest::qWaitFor([] { return !isThere(); }, patience);
    }
    Q_DISABLE_COPY_MOVE(Keyring)

    // It keeps its name and its connections, and answers nobody any more.
    void freeze() { ::kill(pid_t(m_daemon.processId()), SIGSTOP); }

    static void lock() {
        QDBusMessage call =
            QDBusMessage::createMethodCall(secretsName, QStringLiteral("/org/freedesktop/secrets"),
                                           QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("Lock"));
        const QDBusObjectPath collection(QStringLiteral("/org/freedesktop/secrets/collection/login"));
        call << QVariant::fromValue(QList<QDBusObjectPath>{collection});
        const QDBusMessage answer = QDBusConnection::sessionBus().call(call);
        QCOMPARE(answer.type(), QDBusMessage::ReplyMessage);
    }

private:
    static bool isThere() {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(secretsName).value();
    }

    QTemporaryDir m_folder;
    QProcess m_daemon;
};

// Stands where the desktop asks the user to unlock a keyring, and leaves the question open.
class Prompter : public QDBusVirtualObject {
public:
    int calls = 0;

    explicit Prompter(const QString& address)
        : m_bus(QDBusConnection::connectToBus(address, QStringLiteral("prompter"))) {
        m_bus.registerVirtualObject(QStringLiteral("/org"), this, QDBusConnection::SubPath);
        m_bus.registerService(QStringLiteral("org.gnome.keyring.SystemPrompter"));
    }
    ~Prompter() override { QDBusConnection::disconnectFromBus(QStringLiteral("prompter")); }
    Q_DISABLE_COPY_MOVE(Prompter)

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        ++calls;
        message.setDelayedReply(true);
        return true;
    }

private:
    QDBusConnection m_bus;
};

// Another program's way to the keyring.
QByteArray secretTool(const QStringList& arguments, const QByteArray& input = {}) {
    QProcess tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.start(QStringLiteral("secret-tool"), arguments);
    tool.write(input);
    tool.closeWriteChannel();
    if (!tool.waitForFinished())
        qFatal("secret-tool does not answer");
    return tool.readAll();
}

const QStringList item{QStringLiteral("service"), QStringLiteral("com.lumbra.ildo"), QStringLiteral("account"),
                       QStringLiteral("corvane-api-key")};

} // namespace

class SecretsTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    PrivateBus m_bus;

private Q_SLOTS:
    void cleanup() { qunsetenv("CORVANE_API_KEY"); }

    void aKeyThatWasSetIsRead() {
        const Keyring keyring;
        QVERIFY(!Secrets::ildoKey());
        QCOMPARE(Secrets::setIldoKey(QStringLiteral("cor-äöü-🔑")), 0);
        QCOMPARE(Secrets::ildoKey(), QStringLiteral("cor-äöü-🔑"));
        Secrets::removeIldoKey();
        QVERIFY(!Secrets::ildoKey());
    }

    void theItemIsWhatOtherProgramsExpect() {
        const Keyring keyring;
        QCOMPARE(Secrets::setIldoKey(QStringLiteral("first")), 0);
        const QByteArray told = secretTool(QStringList{QStringLiteral("search"), QStringLiteral("--all")} + item);
        QVERIFY2(told.contains("label = Lumbra: Corvane Ildo key\n"), told);
        QVERIFY2(told.contains("secret = first\n"), told);
    }

    void aKeySetByAnotherProgramCounts() {
        const Keyring keyring;
        secretTool(QStringList{QStringLiteral("store"), QStringLiteral("--label=mine")} + item, "theirs");
        QCOMPARE(Secrets::ildoKey(), QStringLiteral("theirs"));
        Secrets::removeIldoKey();
        QVERIFY(!Secrets::ildoKey());
    }

    void settingAKeyTwiceLeavesOneItemWithTheSecond() {
        const Keyring keyring;
        QCOMPARE(Secrets::setIldoKey(QStringLiteral("first")), 0);
        QCOMPARE(Secrets::setIldoKey(QStringLiteral("second")), 0);
        QCOMPARE(Secrets::ildoKey(), QStringLiteral("second"));
        const QByteArray told = secretTool(QStringList{QStringLiteral("search"), QStringLiteral("--all")} + item);
        QCOMPARE(told.count("secret = "), 1);
    }

    void theEnvironmentWins() {
        const Keyring keyring;
        QCOMPARE(Secrets::setIldoKey(QStringLiteral("kept")), 0);
        qputenv("CORVANE_API_KEY", "told");
        QCOMPARE(Secrets::ildoKey(), QStringLiteral("told"));
        Secrets::removeIldoKey();
        QCOMPARE(Secrets::ildoKey(), QStringLiteral("told"));
    }

    void anEmptyEnvironmentFallsBackToTheKeyring() {
        const Keyring keyring;
        QCOMPARE(Secrets::setIldoKey(QStringLiteral("kept")), 0);
        qputenv("CORVANE_API_KEY", "");
        QCOMPARE(Secrets::ildoKey(), QStringLiteral("kept"));
    }

    void bytesThatAreNoTextAreNoKey() {
        const Keyring keyring;
        secretTool(QStringList{QStringLiteral("store"), QStringLiteral("--label=mine")} + item, "\xff\xfe");
        QVERIFY(!Secrets::ildoKey());
    }

    void aLockedKeyringIsNotAskedToUnlock() {
        const Keyring keyring;
        QCOMPARE(Secrets::setIldoKey(QStringLiteral("kept")), 0);
        Prompter prompter(m_bus.address());
        Keyring::lock();
        QVERIFY(!Secrets::ildoKey());
        QTest::qWait(0);
        QCOMPARE(prompter.calls, 0);

        // A program that does ask would have been noticed.
        QProcess asking;
        asking.start(QStringLiteral("secret-tool"), QStringList{QStringLiteral("lookup")} + item);
        QTRY_VERIFY(prompter.calls > 0);
        asking.kill();
        asking.waitForFinished();
    }

    void withoutAKeyringThereIsNoKey() {
        QVERIFY(!Secrets::ildoKey());
        QVERIFY(Secrets::setIldoKey(QStringLiteral("lost")) != 0);
        Secrets::removeIldoKey();
    }

    void aKeyringThatDoesNotAnswerIsGivenUp() {
        Keyring keyring;
        QCOMPARE(Secrets::setIldoKey(QStringLiteral("kept")), 0);
        keyring.freeze();
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!Secrets::ildoKey());
        QVERIFY2(clock.elapsed() >= 1900 && clock.elapsed() < 10'000, qPrintable(QString::number(clock.elapsed())));
    }

    void withoutABusThereIsNoKey() {
        const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        QVERIFY(!Secrets::ildoKey());
        QVERIFY(Secrets::setIldoKey(QStringLiteral("lost")) != 0);
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    }

    void theProgramOutlivesItsBus() {
        {
            const Keyring keyring;
            QVERIFY(!Secrets::ildoKey()); // is on the bus now, whichever test runs
        }
        m_bus.stop();
        QVERIFY(!Secrets::ildoKey());
    }
};

QTEST_GUILESS_MAIN(SecretsTest)
#include "tst_secrets.moc"
