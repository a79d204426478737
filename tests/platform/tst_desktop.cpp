// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Desktop.h"
#include "support/PrivateBus.h"
#include "support/TestHome.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QTest>

using namespace lumbra;

namespace {

// Stands where the desktop's file manager would.
class FileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit FileManager(const QString& address)
        : m_bus(QDBusConnection::connectToBus(address, QStringLiteral("file manager"))) {
        m_bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), this,
                             QDBusConnection::ExportScriptableSlots);
        m_bus.registerService(QStringLiteral("org.freedesktop.FileManager1"));
    }
    ~FileManager() override {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.FileManager1"));
        QDBusConnection::disconnectFromBus(QStringLiteral("file manager"));
    }

    QStringList shown;

public Q_SLOTS:
    Q_SCRIPTABLE void ShowItems(const QStringList& urls, const QString&) { shown += urls; }

private:
    QDBusConnection m_bus;
};

// Stands where the desktop's portal would, for one of its interfaces.
class OpenPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.OpenURI")

public:
    using QObject::QObject;

    QByteArray opened;
    bool asks = false;

public Q_SLOTS:
    Q_SCRIPTABLE QDBusObjectPath OpenFile(const QString&, const QDBusUnixFileDescriptor& file,
                                          const QVariantMap& options) {
        QFile device;
        if (device.open(file.fileDescriptor(), QIODevice::ReadOnly))
            opened = device.readAll();
        asks = options.value(QStringLiteral("ask")).toBool();
        return QDBusObjectPath(QStringLiteral("/request"));
    }
};

class MailPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Email")

public:
    using QObject::QObject;

    QByteArrayList attached;

public Q_SLOTS:
    Q_SCRIPTABLE QDBusObjectPath ComposeEmail(const QString&, const QVariantMap& options) {
        const auto files = qdbus_cast<QList<QDBusUnixFileDescriptor>>(
            options.value(QStringLiteral("attachment_fds")).value<QDBusArgument>());
        for (const QDBusUnixFileDescriptor& file : files) {
            QFile device;
            if (device.open(file.fileDescriptor(), QIODevice::ReadOnly))
                attached.append(device.readAll());
        }
        return QDBusObjectPath(QStringLiteral("/request"));
    }
};

// A portal on the bus under its name, with what is given.
class PortalOnBus {
public:
    PortalOnBus(const QString& address, QObject& portal)
        : m_bus(QDBusConnection::connectToBus(address, QStringLiteral("portal"))) {
        m_bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                             QDBusConnection::ExportScriptableSlots);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    ~PortalOnBus() {
        m_bus.unregisterService(QStringLiteral("org.freedesktop.portal.Desktop"));
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
    }
    Q_DISABLE_COPY_MOVE(PortalOnBus)

private:
    QDBusConnection m_bus;
};

// Stands where the programs would that the desktop opens files with.
class Opener : public QObject {
    Q_OBJECT

public:
    Opener() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take"); }
    ~Opener() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QStringList opened;

    Q_INVOKABLE void take(const QUrl& url) { opened.append(url.toLocalFile()); }
};

QByteArray bytesOf(const Location& location) {
    QFile file(location.toString());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes a program that says where and how it was started.
Location program(const TestHome& home, std::string_view relative, const Location& output) {
    const Location made =
        home.file(relative, "#!/bin/sh\n(pwd -P; printf '%s\\n' \"$0\" \"$@\") > '" + output.path() + ".part'\nmv '"
                                + output.path() + ".part' '" + output.path() + "'\n");
    QFile::setPermissions(made.toString(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return made;
}

} // namespace

class DesktopTest : public QObject {
    Q_OBJECT

    PrivateBus m_bus;

private Q_SLOTS:
    void filesAreOpenedOneByOne() {
        TestHome home;
        Opener opener;
        const Location first = home.file("a b.png");
        const Location second = home.file("100%#ä.txt");
        Desktop::open({first, second});
        QCOMPARE(opener.opened, (QStringList{first.toString(), second.toString()}));
    }

    void theFileManagerShowsTheFiles() {
        TestHome home;
        FileManager fileManager(m_bus.address());
        Opener opener;
        const Location file = home.file("a b ä.png");
        Desktop::reveal({file, home.path()});
        QTRY_COMPARE(fileManager.shown.size(), 2);
        QCOMPARE(QUrl(fileManager.shown[0]).toLocalFile(), file.toString());
        QVERIFY(fileManager.shown[0].endsWith(u"/a%20b%20%C3%A4.png"));
        QVERIFY(opener.opened.isEmpty());
    }

    void withoutAFileManagerEachFolderIsOpenedOnce() {
        TestHome home;
        Opener opener;
        Desktop::reveal({home.file("x/a.png"), home.file("y/b.png"), home.file("x/c.png")});
        QTRY_COMPARE(opener.opened,
                     (QStringList{home.path().child("x").toString(), home.path().child("y").toString()}));
    }

    void nothingToRevealIsNothing() {
        Opener opener;
        FileManager fileManager(m_bus.address());
        Desktop::reveal({});
        QTest::qWait(0);
        QVERIFY(opener.opened.isEmpty() && fileManager.shown.isEmpty());
    }

    void thePortalAsksWhichProgramOpensAFile() {
        TestHome home;
        OpenPortal portal;
        const PortalOnBus onBus(m_bus.address(), portal);
        Opener opener;
        Desktop::openWith(home.file("a b.png", "pixels"));
        QTRY_COMPARE(portal.opened, QByteArray("pixels"));
        QVERIFY(portal.asks);
        QVERIFY(opener.opened.isEmpty());
    }

    void withoutAPortalTheUsualProgramOpensIt() {
        TestHome home;
        Opener opener;
        const Location file = home.file("a.png");
        Desktop::openWith(file);
        QTRY_COMPARE(opener.opened, QStringList{file.toString()});
        Desktop::openWith(home.path().child("gone.png"));
        QTest::qWait(0);
        QCOMPARE(opener.opened.size(), 1);
    }

    void aLetterGetsTheFilesThatAreThere() {
        TestHome home;
        MailPortal portal;
        const PortalOnBus onBus(m_bus.address(), portal);
        Desktop::sendByMail({home.file("a.png", "first"), home.path().child("gone.png"), home.file("b.png", "second")});
        QTRY_COMPARE(portal.attached, (QByteArrayList{"first", "second"}));
    }

    void withoutAPortalALetterBeginsInTheMailProgram() {
        TestHome home;
        const QByteArray path = qgetenv("PATH");
        const Location output = home.path().child("output");
        const Location mailer = program(home, "bin/xdg-email", output);
        const Location file = home.file("a b.png");
        qputenv("PATH", home.path().child("bin").path() + ":/bin:/usr/bin");
        Desktop::sendByMail({file});
        QTRY_VERIFY(bytesOf(output).endsWith("--attach\n" + file.path() + "\n"));
        qputenv("PATH", path);
    }

    void theUsersTerminalStartsInTheFolder() {
        TestHome home;
        const Location output = home.path().child("output");
        const Location terminal = program(home, "my terminal", output);
        qputenv("TERMINAL", "\"" + terminal.path() + "\" --flag \"two words\"");
        const Location folder = home.folder("code/site");
        QVERIFY(Desktop::openTerminal(folder));
        QTRY_COMPARE(bytesOf(output), folder.path() + "\n" + terminal.path() + "\n--flag\ntwo words\n");
        qunsetenv("TERMINAL");
    }

    void otherTerminalsFollowInTheirOrder() {
        TestHome home;
        const QByteArray path = qgetenv("PATH");
        const Location output = home.path().child("output");
        qputenv("TERMINAL", "/no/such/terminal");
        qputenv("PATH", home.folder("bin").path() + ":/bin:/usr/bin");
        program(home, "bin/xdg-terminal-exec", output);
        const Location terminal = program(home, "bin/x-terminal-emulator", output);
        const bool started = Desktop::openTerminal(home.path());
        qputenv("PATH", path);
        qunsetenv("TERMINAL");
        QVERIFY(started);
        QTRY_COMPARE(bytesOf(output), home.path().path() + "\n" + terminal.path() + "\n");
    }

    void withoutAnyTerminalThatIsTold() {
        TestHome home;
        const QByteArray path = qgetenv("PATH");
        qputenv("TERMINAL", "");
        qputenv("PATH", home.folder("empty").path());
        const bool started = Desktop::openTerminal(home.path());
        qputenv("PATH", path);
        QVERIFY(!started);
    }
};

QTEST_MAIN(DesktopTest)
#include "tst_desktop.moc"
