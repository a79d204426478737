// SPDX-License-Identifier: GPL-3.0-or-later
#include "Mpris.h"

#include "MprisInterfaces.h"
#include "platform/SessionBus.h"
#include "platform/TemporaryFolder.h"
#include "room/ScreeningRoom.h"

#include <QCoreApplication>
#include <QDBusMessage>

#include <cmath>

namespace lumbra {

namespace {

constexpr double artSize = 420; // points
constexpr double jump = 1;      // seconds: further than this the time never comes between two reports
constexpr double slowest = 0.25;
constexpr double fastest = 4;

qint64 microseconds(double seconds) {
    return std::llround(seconds * 1e6);
}

} // namespace

Mpris::Mpris(ScreeningRoom& room, QObject* parent) : QObject(parent), m_room(room), m_bus(sessionBus()) {
    if (!m_bus)
        return;
    // They belong to this object, and go with it.
    new MprisRoot(*this);
    m_player = new MprisPlayer(*this);
    fileChanged();
    m_told = player();
    follow();
    m_bus->registerObject(path, this);
    m_name = service;
    // Another Lumbra has the name.
    if (!m_bus->registerService(m_name)) {
        m_name += QStringLiteral(".instance%1").arg(QCoreApplication::applicationPid());
        m_bus->registerService(m_name);
    }
}

Mpris::~Mpris() {
    if (!m_bus)
        return;
    m_bus->unregisterService(m_name);
    m_bus->unregisterObject(path);
}

void Mpris::follow() {
    const PlayerEngine* const engine = m_room.engine();
    for (const auto changed :
         {&PlayerEngine::isPlayingChanged, &PlayerEngine::durationChanged, &PlayerEngine::loopChanged,
          &PlayerEngine::speedChanged, &PlayerEngine::shuttleChanged, &PlayerEngine::volumeChanged})
        connect(engine, changed, this, &Mpris::publishLater);
    connect(engine, &PlayerEngine::timeChanged, this, [this, engine] {
        const double before = std::exchange(m_time, engine->time());
        if (m_time < before || m_time > before + jump)
            announceSeek();
    });
    connect(&m_room, &ScreeningRoom::indexChanged, this, &Mpris::publishLater);
    connect(&m_room, &ScreeningRoom::assetChanged, this, [this] {
        fileChanged();
        publishLater();
    });
}

QDBusObjectPath Mpris::track() const {
    return QDBusObjectPath(QStringLiteral("/com/lumbra/Lumbra/file/%1").arg(m_count));
}

qint64 Mpris::position() const {
    return m_room.usesEngine() ? microseconds(m_room.engine()->time()) : 0;
}

QVariantMap Mpris::player() const {
    const PlayerEngine& engine = *m_room.engine();
    const bool plays = m_room.usesEngine();
    QVariantMap metadata{{QStringLiteral("mpris:trackid"), QVariant::fromValue(track())},
                         {QStringLiteral("xesam:title"), m_room.name()},
                         {QStringLiteral("xesam:url"), m_room.url().toString(QUrl::FullyEncoded)}};
    if (plays && engine.duration() > 0)
        metadata.insert(QStringLiteral("mpris:length"), microseconds(engine.duration()));
    if (!m_art.isEmpty())
        metadata.insert(QStringLiteral("mpris:artUrl"), m_art);
    const QString status = !plays               ? QStringLiteral("Stopped")
                           : engine.isPlaying() ? QStringLiteral("Playing")
                                                : QStringLiteral("Paused");
    const int index = m_room.index();
    return {{QStringLiteral("PlaybackStatus"), status},
            {QStringLiteral("LoopStatus"), engine.loop() ? QStringLiteral("Track") : QStringLiteral("None")},
            {QStringLiteral("Rate"), engine.shuttle() > 1 ? engine.shuttle() : engine.speed()},
            {QStringLiteral("Metadata"), metadata},
            {QStringLiteral("Volume"), engine.volume()},
            {QStringLiteral("MinimumRate"), slowest},
            {QStringLiteral("MaximumRate"), fastest},
            {QStringLiteral("CanGoNext"), index >= 0 && index + 1 < m_room.order().size()},
            {QStringLiteral("CanGoPrevious"), index > 0},
            {QStringLiteral("CanPlay"), plays},
            {QStringLiteral("CanPause"), plays},
            {QStringLiteral("CanSeek"), plays}};
}

void Mpris::announceSeek() {
    Q_EMIT m_player->Seeked(position());
}

// What changes in one turn is told once.
void Mpris::publishLater() {
    if (std::exchange(m_isToPublish, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isToPublish = false;
            publish();
        },
        Qt::QueuedConnection);
}

void Mpris::publish() {
    const QVariantMap now = player();
    QVariantMap changed;
    for (auto value = now.begin(); value != now.end(); ++value)
        if (m_told.value(value.key()) != value.value())
            changed.insert(value.key(), value.value());
    m_told = now;
    if (changed.isEmpty())
        return;
    QDBusMessage message = QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                      QStringLiteral("PropertiesChanged"));
    message << QString(playerInterface) << changed << QStringList();
    m_bus->send(message);
}

void Mpris::fileChanged() {
    if (m_room.path() == m_file)
        return;
    m_file = m_room.path();
    m_time = 0;
    ++m_count;
    m_art.clear();
    makeArt();
}

// Other programs want a file, and can read pictures of few kinds.
void Mpris::makeArt() {
    m_artRequest = Thumbnails::shared().imageFor(
        m_room.asset(), artSize, Reader::Urgency::later, this, [this](const QImage& image) {
            if (image.isNull())
                return;
            const Location file = temporaryFolder().child(QStringLiteral("art-%1.png").arg(m_count));
            Tasks::run(Tasks::Pool::utility, [image, file] {
                return image.save(file.toString(), "PNG");
            }).then(this, [this, file, count = m_count](bool saved) {
                if (!saved || count != m_count)
                    return;
                m_art = file.toUrl().toString(QUrl::FullyEncoded);
                publishLater();
            });
        });
}

} // namespace lumbra
