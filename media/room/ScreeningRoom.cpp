// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreeningRoom.h"

#include "RoomLayout.h"
#include "core/PreferenceKeys.h"
#include "library/Actions.h"
#include "media/Thumbnails.h"
#include "media/quicklook/WebLibrary.h"
#include "platform/Desktop.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace lumbra {

namespace {

using namespace std::chrono_literals;

constexpr auto idlenessTick = 500ms;
constexpr double patience = 2.5; // seconds without a movement, after which the controls hide

// The finest thumbnail at hand.
QImage posterOf(const Asset& asset) {
    for (const double size : {420.0, 240.0, 140.0})
        if (const QImage image = Thumbnails::shared().peek(asset, size); !image.isNull())
            return image;
    return {};
}

bool isSameContent(const Asset& a, const Asset& b) {
    return a.url == b.url && a.modified == b.modified && a.size == b.size;
}

} // namespace

ScreeningRoom::ScreeningRoom(Library* library, const RoomOptions& options, QObject* parent)
    : QObject(parent),
      m_library(library),
      m_preferences(*options.preferences),
      m_clock(options.clock),
      m_engine(std::make_unique<PlayerEngine>(*options.preferences,
                                              options.mpv ? options.mpv : std::make_shared<MpvHandle>(options.player))),
      m_stills(*options.reader) {
    m_idleness.setInterval(idlenessTick);
    readSettings();
    follow();
    playingChanged();
}

ScreeningRoom::~ScreeningRoom() = default;

void ScreeningRoom::follow() {
    connect(m_library, &Library::playingChanged, this, &ScreeningRoom::playingChanged);
    connect(m_library, &Library::indexChanged, this, &ScreeningRoom::refreshAsset);
    connect(m_library, &Library::projectsChanged, this, &ScreeningRoom::describe);
    connect(&m_preferences, &Preferences::changed, this, &ScreeningRoom::readSettings);
    connect(&m_stills, &Stills::made, this, &ScreeningRoom::takeStill);
    connect(&m_idleness, &QTimer::timeout, this, &ScreeningRoom::hideIfIdle);
    for (const auto changed : {&PlayerEngine::durationChanged, &PlayerEngine::videoSizeChanged})
        connect(m_engine.get(), changed, this, &ScreeningRoom::describe);
    for (const auto changed : {&PlayerEngine::timeChanged, &PlayerEngine::isPlayingChanged})
        connect(m_engine.get(), changed, this, &ScreeningRoom::followPlayer);
    connect(m_engine.get(), &PlayerEngine::glowFrameChanged, this, &ScreeningRoom::light);
    connect(this, &ScreeningRoom::chromeChanged, this, &ScreeningRoom::followPlayer);
}

void ScreeningRoom::readSettings() {
    m_showInfo = m_preferences.value(PreferenceKeys::playerInfo);
    m_showQueue = m_preferences.value(PreferenceKeys::playerQueue);
    m_autoplayNext = m_preferences.value(PreferenceKeys::autoplayNext);
    placeQueue();
}

// What is on show

void ScreeningRoom::playingChanged() {
    const auto request = m_library->playing();
    const bool wasOpen = std::exchange(m_open, request.has_value());
    if (request) {
        m_request = *request;
        m_order.setAssets(m_request.order);
        m_order.setIndex(m_library->index());
        put(freshAsset(), !wasOpen || m_asset.url.isEmpty());
        readAhead(); // another order has other neighbours
        placeQueue();
    } else {
        m_engine->stop();
        followPlayer();
    }
    if (wasOpen != m_open)
        Q_EMIT openChanged();
}

Asset ScreeningRoom::freshAsset() const {
    return m_library->index().find(m_request.asset.url).value_or(m_request.asset);
}

void ScreeningRoom::refreshAsset() {
    m_order.setIndex(m_library->index());
    if (m_open)
        put(freshAsset(), false);
}

void ScreeningRoom::put(const Asset& asset, bool opens) {
    const int index = m_order.rowOf(asset.url);
    if (m_index >= 0 && index >= 0 && index != m_index)
        m_direction = index > m_index ? 1 : -1;
    m_index = index;
    m_order.setCurrent(index);
    if (asset == m_asset && !opens) {
        describe();
        return;
    }
    const Asset before = std::exchange(m_asset, asset);
    // What could not be played before it was whole is given another chance.
    const bool isUnknown = m_engine->duration() <= 0 && !m_engine->isPlaying();
    if (before.url == asset.url && !isSameContent(before, asset) && isUnknown)
        m_engine->stop();
    Q_EMIT assetChanged();
    load();
}

void ScreeningRoom::load() {
    m_poster = posterOf(m_asset);
    if (usesEngine()) {
        m_engine->setOnEnd([this] {
            if (m_autoplayNext)
                advanceAfterEnd();
        });
        m_engine->awaitSurface(m_asset.kind == AssetKind::video);
        m_engine->load(m_asset.url, true);
    } else {
        m_engine->stop();
    }
    readAhead();
    takeStill();
    followPlayer();
    stirred();
}

void ScreeningRoom::readAhead() {
    Assets neighbours;
    bool nearsWebView = false;
    for (const int beside : {m_index + m_direction, m_index - m_direction})
        if (m_index >= 0 && beside >= 0 && beside < m_order.count()) {
            const Asset asset = m_order.assetAt(beside);
            nearsWebView = nearsWebView || usesWebView(asset);
            if (asset.kind == AssetKind::image)
                neighbours.append(asset);
        }
    m_nearsWebView = nearsWebView;
    if (nearsWebView || usesWebView(m_asset))
        WebLibrary::loadAhead();
    const bool isImage = m_asset.kind == AssetKind::image;
    m_stills.want(isImage ? std::optional(m_asset) : std::nullopt, neighbours);
}

void ScreeningRoom::takeStill() {
    const Still still = m_asset.kind == AssetKind::image ? m_stills.find(m_asset).value_or(Still()) : Still();
    m_stillImage = still.image;
    m_pixelSize = still.pixels;
    light();
    describe();
}

void ScreeningRoom::light() {
    const bool isImage = m_asset.kind == AssetKind::image;
    const bool isFilm = m_asset.kind == AssetKind::video && usesEngine();
    const bool isAwaited = isImage ? !m_stills.find(m_asset) : isFilm && m_engine->isPlaying();
    const QImage own = isImage ? m_stillImage : isFilm ? m_engine->glowFrame() : QImage();
    if (!own.isNull())
        m_ambient = own;
    else if ((isImage || isFilm) && !m_poster.value().isNull())
        m_ambient = m_poster.value();
    else if (!isAwaited)
        m_ambient = QImage();
}

void ScreeningRoom::describe() {
    // A path through a link lies below its project only once it is resolved.
    const auto project = m_library->projectContaining(m_asset.url);
    const bool isBelow = project && m_asset.url.isAtOrBelow(project->url);
    m_breadcrumb = RoomText::breadcrumb(project, isBelow ? m_asset.url : m_asset.url.canonical());
    RoomText::Facts facts;
    if (m_asset.kind == AssetKind::image)
        facts.size = m_pixelSize;
    if (usesEngine()) {
        facts.size = m_asset.kind == AssetKind::video ? m_engine->videoSize() : QSize();
        facts.duration = m_engine->duration();
    }
    facts.bytes = m_asset.size;
    facts.modified = m_asset.modified;
    facts.index = m_index;
    facts.count = m_order.count();
    m_meta = RoomText::meta(facts, m_clock());
}

void ScreeningRoom::setStagePixels(const QSize& size) {
    if (size == m_stills.box())
        return;
    m_stills.setBox(size);
    Q_EMIT stagePixelsChanged();
}

void ScreeningRoom::rehearse(const Asset& asset) {
    m_asset = asset;
    QImage light(16, 9, QImage::Format_RGB32);
    light.fill(Qt::gray);
    m_ambient = light;
    Q_EMIT assetChanged();
    describe();
}

// The walk

void ScreeningRoom::go(int delta) {
    if (m_index < 0)
        return;
    const int target = m_index + delta;
    if (target >= 0 && target < m_order.count())
        play(m_request.order.at(target));
}

void ScreeningRoom::pick(const Location& path) {
    if (const int row = m_order.rowOf(path); row >= 0)
        play(m_request.order.at(row));
}

void ScreeningRoom::advanceAfterEnd() {
    if (m_index < 0)
        return;
    const AssetIndex index = m_library->index();
    const auto isNext = [&](const Asset& entry) {
        if (entry.kind != m_asset.kind)
            return false;
        const auto fresh = index.find(entry.url);
        return fresh && fresh->kind == m_asset.kind;
    };
    const Assets& order = m_request.order;
    const auto next = std::find_if(order.cbegin() + qsizetype(m_index + 1), order.cend(), isNext);
    if (next != order.cend())
        play(*next);
}

void ScreeningRoom::play(const Asset& asset) {
    if (m_open)
        m_library->setPlaying(PlayRequest{asset, m_request.order});
}

void ScreeningRoom::close() {
    m_engine->stop();
    m_library->setPlaying(std::nullopt);
}

// Keys and the pointer

bool ScreeningRoom::handle(int key, Qt::KeyboardModifiers modifiers, const QString& text, bool repeated) {
    stirred();
    const RoomCommand command = commandFor(key, modifiers, text, usesEngine());
    if (!repeated || repeats(command.action))
        perform(command);
    return command.action != RoomAction::ignored;
}

void ScreeningRoom::perform(const RoomCommand& command) {
    switch (command.action) {
    case RoomAction::ignored:
        return;
    case RoomAction::close:
        return close();
    case RoomAction::previous:
        return go(-1);
    case RoomAction::next:
        return go(1);
    case RoomAction::seek:
        return m_engine->seek(m_engine->time() + command.value, true);
    case RoomAction::playOrPause:
        return m_engine->toggle();
    case RoomAction::copy:
        return copy();
    case RoomAction::star:
        return toggleStar();
    case RoomAction::info:
        return toggleInfo();
    case RoomAction::fullScreen:
        return toggleFullScreen();
    case RoomAction::shuttle:
        return m_engine->shuttle(int(command.value));
    case RoomAction::step:
        return m_engine->step(int(command.value));
    case RoomAction::mute:
        return m_engine->setMuted(!m_engine->muted());
    case RoomAction::jump:
        return m_engine->seek(m_engine->duration() * command.value, true);
    }
}

void ScreeningRoom::pointerAt(const QPointF& position) {
    // A pointer that rests is reported anew whenever something moves under it.
    if (std::exchange(m_pointer, position) == position)
        return;
    m_pointerHidden = false;
    stirred();
}

void ScreeningRoom::stirred() {
    m_lastMove = m_clock();
    m_chrome = true;
}

void ScreeningRoom::hideIfIdle() {
    if (!m_engine->isPlaying() || !m_chrome || m_clock() - m_lastMove <= patience)
        return;
    m_pointerHidden = true;
    m_chrome = false;
}

// Whatever waits for the player, or on it.
void ScreeningRoom::followPlayer() {
    const bool runs = m_open && m_engine->isPlaying();
    m_opening = runs && m_engine->time() <= 0;
    m_stills.setHeldBack(m_opening);
    const bool mayHide = runs && m_chrome;
    if (mayHide != m_idleness.isActive())
        mayHide ? m_idleness.start() : m_idleness.stop();
}

void ScreeningRoom::toggleStar() {
    m_library->toggleStar({m_asset.url});
}

void ScreeningRoom::toggleFullScreen() {
    if (QWindow* const window = QGuiApplication::focusWindow())
        window->setWindowStates(window->windowStates() ^ Qt::WindowFullScreen);
}

void ScreeningRoom::reveal() const {
    Desktop::reveal({m_asset.url});
}

void ScreeningRoom::copy() const {
    Actions::copy({m_asset.url}, m_library);
}

void ScreeningRoom::openWith() const {
    Desktop::openWith(m_asset.url);
}

void ScreeningRoom::sendByMail() const {
    Desktop::sendByMail({m_asset.url});
}

// What shows beside the stage

void ScreeningRoom::setShowInfo(bool shown) {
    m_preferences.setValue(PreferenceKeys::playerInfo, shown);
}

void ScreeningRoom::setShowQueue(bool shown) {
    m_preferences.setValue(PreferenceKeys::playerQueue, shown);
}

void ScreeningRoom::setAutoplayNext(bool wanted) {
    m_preferences.setValue(PreferenceKeys::autoplayNext, wanted);
}

void ScreeningRoom::setRoomWidth(double width) {
    m_roomWidth = width;
    placeQueue();
}

double ScreeningRoom::capsuleWidth() const {
    return RoomLayout::capsuleWidth(m_stageWidth);
}

void ScreeningRoom::placeQueue() {
    const bool shown = RoomLayout::showsQueue(m_showQueue, m_order.count(), m_showInfo, m_roomWidth);
    if (std::exchange(m_queueShown, shown) != shown)
        Q_EMIT queueShownChanged();
}

} // namespace lumbra
