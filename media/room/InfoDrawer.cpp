// SPDX-License-Identifier: GPL-3.0-or-later
#include "InfoDrawer.h"

#include "library/Actions.h"
#include "platform/Desktop.h"

#include <QFutureWatcher>

#include <algorithm>

namespace lumbra {

namespace {

// The file that plays has another path now. Its place in the order goes with it, so that the arrows still lead on from
// there.
void stayOn(Library& library, const Location& from, const Location& to) {
    std::optional<PlayRequest> request = library.playing();
    if (!request || request->asset.url != from)
        return;
    request->asset.url = to;
    const auto inOrder = std::ranges::find(request->order, from, &Asset::url);
    if (inOrder != request->order.end())
        inOrder->url = to;
    library.setPlaying(request);
}

// Goes on without the drawer, which may be closed while a folder is chosen or bytes are carried.
void moveInto(Library& library, const Location& file, const Location& folder) {
    auto* const moving = new QFutureWatcher<QList<Location>>(&library);
    QObject::connect(moving, &QFutureWatcherBase::finished, &library, [&library, file, moving] {
        moving->deleteLater();
        const QFuture<QList<Location>> future = moving->future();
        if (const QList<Location> arrived = future.resultCount() > 0 ? future.result() : QList<Location>();
            !arrived.isEmpty())
            stayOn(library, file, arrived.first());
    });
    moving->setFuture(library.bring({file}, folder));
}

template <typename Value>
QVariantList variants(const QList<Value>& values) {
    QVariantList list;
    for (const Value& value : values)
        list.append(QVariant::fromValue(value));
    return list;
}

} // namespace

void InfoDrawer::setRoom(ScreeningRoom* room) {
    if (m_room == room)
        return;
    if (m_room) {
        m_room->disconnect(this);
        m_room->engine()->disconnect(this);
    }
    m_room = room;
    if (room) {
        connect(room, &ScreeningRoom::assetChanged, this, &InfoDrawer::refresh);
        connect(room, &ScreeningRoom::pixelSizeChanged, this, &InfoDrawer::refresh);
        connect(room->engine(), &PlayerEngine::durationChanged, this, &InfoDrawer::refresh);
        connect(room->engine(), &PlayerEngine::videoSizeChanged, this, &InfoDrawer::refresh);
        connect(room->engine(), &PlayerEngine::codecChanged, this, &InfoDrawer::refresh);
    }
    Q_EMIT roomChanged();
    refresh();
}

void InfoDrawer::refresh() {
    QList<InfoFact> facts;
    if (m_room) {
        const Asset asset = m_room->asset();
        const PlayerEngine& engine = *m_room->engine();
        std::optional<InfoFacts::Playback> playback;
        if (m_room->usesEngine() && engine.url() == asset.url)
            playback = {engine.videoSize(), engine.duration(), engine.codec()};
        facts = InfoFacts::of(asset, playback, m_room->pixelSize());
    }
    if (std::exchange(m_facts, facts) != facts)
        Q_EMIT factsChanged();
}

QList<InfoAction> InfoDrawer::actions() {
    using OnFile = std::function<void(const Location& file, Library* library)>;
    const auto onFile = [this](const OnFile& act) {
        return [room = &m_room, act] {
            if (*room)
                act((*room)->path(), (*room)->library());
        };
    };
    const auto open = [](const Location& file, Library*) { Actions::open({file}); };
    const auto reveal = [](const Location& file, Library*) { Desktop::reveal({file}); };
    const auto copy = [](const Location& file, Library* library) { Actions::copy({file}, library); };
    const auto copyPath = [](const Location& file, Library*) { Actions::copyPaths({file}); };
    const auto saveCopy = [](const Location& file, Library* library) { Actions::exportFiles({file}, library); };
    return {
        {QStringLiteral("Copy"), QStringLiteral("doc.on.doc"), onFile(copy)},
        {QStringLiteral("Save a Copy…"), QStringLiteral("square.and.arrow.down"), onFile(saveCopy)},
        {QStringLiteral("Show in Finder"), QStringLiteral("folder"), onFile(reveal)},
        {QStringLiteral("Copy Path"), QStringLiteral("link"), onFile(copyPath)},
        {QStringLiteral("Open in Default App"), QStringLiteral("arrow.up.forward.square"), onFile(open)},
        {QStringLiteral("Move To…"), QStringLiteral("arrow.turn.down.right"), [this] { move(); }},
        {QStringLiteral("Move to Trash"), QStringLiteral("trash"), [this] { trash(); }, true},
    };
}

void InfoDrawer::move() {
    if (!m_room)
        return;
    const Location file = m_room->path();
    Actions::chooseFolder(QStringLiteral("Move Here"), file.parent(),
                          [file, library = QPointer(m_room->library())](const std::optional<Location>& folder) {
                              if (folder && library)
                                  moveInto(*library, file, *folder);
                          });
}

void InfoDrawer::trash() {
    if (!m_room)
        return;
    const QPointer<ScreeningRoom> room = m_room; // the drawer goes with a room that closes
    const Location file = room->path();
    room->go(1);
    room->library()->trash({file});
    if (room->path() == file)
        room->close();
}

void InfoDrawer::toggleStar() {
    if (m_room)
        m_room->toggleStar();
}

void InfoDrawer::close() {
    if (m_room)
        m_room->setShowInfo(false);
}

QVariantList InfoDrawer::factList() const {
    return variants(m_facts);
}

QVariantList InfoDrawer::actionList() {
    return variants(actions());
}

} // namespace lumbra
