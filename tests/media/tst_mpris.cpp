// The room on a message bus, as another program finds it there.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RoomFixture.h"
#include "media/Mpris.h"
#include "media/room/RoomDoor.h"
#include "support/PrivateBus.h"

#include <QDBusMessage>
#include <QProcess>
#include <QtTest>

using namespace lumbra;

namespace {

// What the room tells without being asked.
class Listener : public QObject {
    Q_OBJECT

public:
    explicit Listener(const QString& address)
        : m_bus(QDBusConnection::connectToBus(address, QStringLiteral("listener"))) {
        const QString path = Mpris::path;
        m_bus.connect(QString(), path, QStringLiteral("org.freedesktop.DBus.Properties"),
                      QStringLiteral("PropertiesChanged"), this, SLOT(changed(QString, QVariantMap, QStringList)));
        m_bus.connect(QString(), path, Mpris::playerInterface, QStringLiteral("Seeked"), this, SLOT(sought(qlonglong)));
    }
    ~Listener() override { QDBusConnection::disconnectFromBus(QStringLiteral("listener")); }

    QVariantMap last;
    QList<qlonglong> positions;

private Q_SLOTS:
    void changed(const QString& interface, const QVariantMap& values, const QStringList&) {
        if (interface == Mpris::playerInterface)
            last.insert(values);
    }
    void sought(qlonglong position) { positions.append(position); }

private:
    QDBusConnection m_bus;
};

// A call by a program of its own; what it prints.
QString gdbus(const QStringList& words) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("gdbus"),
                  QStringList{QStringLiteral("call"), QStringLiteral("--session"), QStringLiteral("--dest"),
                              Mpris::service, QStringLiteral("--object-path"), Mpris::path, QStringLiteral("--method")}
                      + words);
    // The room answers in this very loop.
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, patience))
        qFatal("gdbus does not end");
    return QString::fromUtf8(process.readAll()).trimmed();
}

QString call(const char* method, const QStringList& arguments = {}) {
    return gdbus(QStringList{Mpris::playerInterface + u'.' + QLatin1String(method)} + arguments);
}

QString value(const char* property) {
    return gdbus(
        {QStringLiteral("org.freedesktop.DBus.Properties.Get"), Mpris::playerInterface, QString::fromUtf8(property)});
}

QString set(const char* property, const char* to) {
    return gdbus({QStringLiteral("org.freedesktop.DBus.Properties.Set"), Mpris::playerInterface,
                  QString::fromUtf8(property), QString::fromUtf8(to)});
}

// A room with two films and an image, opened by its door.
struct Open {
    explicit Open(const char* first = "p/a.mp4") {
        room.clip("p/a.mp4");
        room.clip("p/b.mp4");
        room.picture("p/c.png");
        room.openLibrary();
        door = std::make_unique<RoomDoor>(room.library.get(), Room::optionsFor(room));
        room.play(first, {"p/a.mp4", "p/b.mp4", "p/c.png"});
        if (engine().url().isEmpty())
            return;
        if (!QTest::qWaitFor([this] { return engine().duration() > 0; }, patience))
            qFatal("the film does not load");
    }

    PlayerEngine& engine() const { return *door->room()->engine(); }

    Room room;
    std::unique_ptr<RoomDoor> door;
};

QString text(const char* words) {
    return QString::fromUtf8(words);
}

// Where the player was sent, but for the part of a picture by which it stands elsewhere.
bool isAt(const PlayerEngine& engine, double seconds) {
    return std::abs(engine.time() - seconds) < 0.1;
}

} // namespace

class tst_Mpris : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itIsThereAsLongAsTheRoomIsOpen() {
        Open open;
        QVERIFY(value("PlaybackStatus").contains(text("Playing")));
        open.door->room()->close();
        QVERIFY(value("PlaybackStatus").contains(text("Error")));
        open.room.play("p/b.mp4", {"p/b.mp4"});
        QVERIFY(value("Metadata").contains(text("b.mp4")));
    }

    void playAndPause() {
        Open open;
        call("PlayPause");
        QVERIFY(!open.engine().isPlaying());
        QVERIFY(value("PlaybackStatus").contains(text("Paused")));
        call("Play");
        QVERIFY(open.engine().isPlaying());
        call("Play");
        QVERIFY(open.engine().isPlaying());
        call("Pause");
        QVERIFY(!open.engine().isPlaying());
        call("PlayPause");
        QVERIFY(open.engine().isPlaying());
        call("Stop");
        QVERIFY(!open.engine().isPlaying());
        QCOMPARE(open.engine().time(), 0.0);
    }

    void nextAndPrevious() {
        Open open;
        QVERIFY(value("CanGoNext").contains(text("true")));
        QVERIFY(value("CanGoPrevious").contains(text("false")));
        call("Previous");
        QCOMPARE(open.door->room()->name(), text("a.mp4"));
        call("Next");
        QCOMPARE(open.door->room()->name(), text("b.mp4"));
        QVERIFY(value("CanGoPrevious").contains(text("true")));
        call("Next");
        QCOMPARE(open.door->room()->name(), text("c.png"));
        QVERIFY(value("CanGoNext").contains(text("false")));
        QVERIFY(value("CanPlay").contains(text("false")));
        QVERIFY(value("PlaybackStatus").contains(text("Stopped")));
        call("PlayPause");
        QVERIFY(!open.engine().isPlaying());
        call("Previous");
        QCOMPARE(open.door->room()->name(), text("b.mp4"));
    }

    void itTellsWhatPlays() {
        Open open;
        const QString metadata = value("Metadata");
        QVERIFY2(metadata.contains(text("'xesam:title': <'a.mp4'>")), qPrintable(metadata));
        QVERIFY(metadata.contains(open.room.path("p/a.mp4").toUrl().toString(QUrl::FullyEncoded)));
        QVERIFY(metadata.contains(text("'mpris:length': <int64 10000000>")));
        QVERIFY(metadata.contains(text("'mpris:trackid': <objectpath '/com/lumbra/Lumbra/")));
        QTRY_VERIFY(value("Metadata").contains(text("mpris:artUrl")));
        const QString art = value("Metadata").section(text("'mpris:artUrl': <'"), 1).section(u'\'', 0, 0);
        QVERIFY(!QImage(QUrl(art).toLocalFile()).isNull());
        QVERIFY(gdbus({text("org.freedesktop.DBus.Properties.Get"), text("org.mpris.MediaPlayer2"), text("Identity")})
                    .contains(text("Lumbra")));
        QVERIFY(
            gdbus({text("org.freedesktop.DBus.Properties.Get"), text("org.mpris.MediaPlayer2"), text("DesktopEntry")})
                .contains(text("com.lumbra.Lumbra")));
    }

    void seeking() {
        Open open;
        call("Pause");
        open.engine().seek(4, true);
        QTRY_VERIFY(open.engine().isStanding());
        const QString position = value("Position").section(text("int64 "), 1).section(u'>', 0, 0);
        QVERIFY(std::abs(position.toDouble() / 1e6 - open.engine().time()) < 0.01 && isAt(open.engine(), 4));
        call("Seek", {text("2500000")});
        QVERIFY(isAt(open.engine(), 6.5));
        call("Seek", {text("--"), text("-60000000")});
        QVERIFY(isAt(open.engine(), 0.0));
        const QString track = value("Metadata").section(text("objectpath '"), 1).section(u'\'', 0, 0);
        call("SetPosition", {track, text("3000000")});
        QVERIFY(isAt(open.engine(), 3.0));
        call("SetPosition", {track, text("11000000")}); // beyond the end
        QVERIFY(isAt(open.engine(), 3.0));
        call("SetPosition", {text("/com/lumbra/Lumbra/file/none"), text("5000000")});
        QVERIFY(isAt(open.engine(), 3.0));
        call("Seek", {text("60000000")}); // beyond the end is the next one
        QCOMPARE(open.door->room()->name(), text("b.mp4"));
        call("SetPosition", {track, text("5000000")}); // of the file before
        QVERIFY(open.engine().time() < 5);
    }

    void volumeRateAndLoop() {
        Open open;
        set("Volume", "<0.25>");
        QCOMPARE(open.engine().volume(), 0.25);
        set("Rate", "<1.5>");
        QCOMPARE(open.engine().speed(), 1.5);
        set("Rate", "<99.0>");
        QCOMPARE(open.engine().speed(), 4.0);
        set("LoopStatus", "<'Track'>");
        QVERIFY(open.engine().loop());
        set("LoopStatus", "<'None'>");
        QVERIFY(!open.engine().loop());
    }

    void changesAreTold() {
        const Listener listener(m_bus.address());
        Open open;
        open.engine().pause();
        QTRY_COMPARE(listener.last.value(text("PlaybackStatus")).toString(), text("Paused"));
        open.engine().seek(7, true);
        QTRY_VERIFY(listener.positions.contains(7'000'000));
        open.engine().setVolume(0.5);
        QTRY_COMPARE(listener.last.value(text("Volume")).toDouble(), 0.5);
        open.door->room()->go(1);
        QTRY_COMPARE(listener.last.value(text("PlaybackStatus")).toString(), text("Playing"));
        QTRY_COMPARE(listener.last.value(text("CanGoPrevious")).toBool(), true);
    }

private:
    PrivateBus m_bus;
};

QTEST_MAIN(tst_Mpris)
#include "tst_mpris.moc"
