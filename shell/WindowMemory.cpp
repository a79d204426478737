// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowMemory.h"

#include "core/PreferenceKeys.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStringList>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace lumbra {

namespace {

constexpr auto settlingTime = std::chrono::milliseconds(200);

// Where the first window stands is for the desktop to say.
void restoreFirst(QWindow& window, QSize screen) {
    constexpr QSize grip(80, 80); // beside a window that no longer fills the screen, to take hold of it
    const QSize usual = WindowMemory::usualSize;
    const QSize least = WindowMemory::leastSize;
    const bool fills = usual.boundedTo(screen) == screen && least.boundedTo(screen) == least;
    window.resize((fills ? screen - grip : usual.boundedTo(screen)).expandedTo(least));
    if (fills)
        window.setWindowStates(Qt::WindowMaximized);
}

qint64 area(const QRect& rect) {
    return rect.isEmpty() ? 0 : qint64(rect.width()) * rect.height();
}

// What the screens leave to windows, the first screen first.
QList<QRect> freeScreens() {
    QList<QRect> all;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        all.append(screen->availableGeometry());
    return all;
}

} // namespace

WindowMemory::WindowMemory(Preferences& preferences, QObject* parent) : QObject(parent), m_preferences(preferences) {
    m_settling.setSingleShot(true);
    m_settling.setInterval(settlingTime);
    connect(&m_settling, &QTimer::timeout, this, &WindowMemory::remember);
}

QRect WindowMemory::fitting(const QRect& kept, const QList<QRect>& screens) {
    if (screens.isEmpty())
        return QRect(kept.topLeft(), kept.size().expandedTo(leastSize));
    const auto onScreen = [&](const QRect& screen) { return area(screen & kept); };
    const QRect screen = *std::ranges::max_element(screens, {}, onScreen); // of several alike the first
    QRect placed(kept.topLeft(), kept.size().boundedTo(screen.size()).expandedTo(leastSize));
    if (onScreen(screen) == 0)
        placed.moveCenter(screen.center());
    // The upper left corner last: a window that is larger than its screen can still be taken hold of there.
    placed.moveRight(std::min(placed.right(), screen.right()));
    placed.moveBottom(std::min(placed.bottom(), screen.bottom()));
    placed.moveLeft(std::max(placed.left(), screen.left()));
    placed.moveTop(std::max(placed.top(), screen.top()));
    return placed;
}

void WindowMemory::attach(QWindow& window) {
    m_window = &window;
    window.setMinimumSize(leastSize);
    restore(window);
    window.installEventFilter(this);
    const auto settle = [this] { m_settling.start(); };
    connect(&window, &QWindow::xChanged, this, settle);
    connect(&window, &QWindow::yChanged, this, settle);
    connect(&window, &QWindow::widthChanged, this, settle);
    connect(&window, &QWindow::heightChanged, this, settle);
    connect(&window, &QWindow::windowStateChanged, this, settle);
}

bool WindowMemory::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_window && event->type() == QEvent::Close && m_settling.isActive())
        remember();
    if (watched == m_window && event->type() == QEvent::Expose && m_window->isExposed()
        && !std::exchange(m_isFrameKnown, true))
        makeRoomForFrame();
    return QObject::eventFilter(watched, event);
}

void WindowMemory::restore(QWindow& window) const {
    const QList<QRect> screens = freeScreens();
    if (const auto place = kept())
        window.setGeometry(fitting(*place, screens));
    else if (!screens.isEmpty())
        restoreFirst(window, screens.first().size());
    if (m_preferences.value(PreferenceKeys::windowMaximized))
        window.setWindowStates(Qt::WindowMaximized);
}

// Desktops show a window that is too large as it is, or push its frame off the screen.
void WindowMemory::makeRoomForFrame() {
    if (!m_window->screen() || m_window->windowStates() != Qt::WindowNoState)
        return;
    const QRect room = m_window->screen()->availableGeometry().marginsRemoved(m_window->frameMargins());
    if (const QRect place = fitting(m_window->geometry(), {room}); place != m_window->geometry())
        m_window->setGeometry(place);
}

void WindowMemory::remember() {
    if (!m_window)
        return;
    const Qt::WindowStates states = m_window->windowStates();
    // A window that is minimised, or fills the screen for a film, comes back as it was before.
    if (!m_window->isVisible() || states & (Qt::WindowMinimized | Qt::WindowFullScreen))
        return;
    m_preferences.setValue(PreferenceKeys::windowMaximized, bool(states & Qt::WindowMaximized));
    if (states & Qt::WindowMaximized)
        return;
    const QRect place = m_window->geometry();
    m_preferences.setValue(
        PreferenceKeys::windowPlace,
        QStringLiteral("%1 %2 %3 %4").arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height()));
}

std::optional<QRect> WindowMemory::kept() const {
    const QStringList words = m_preferences.value(PreferenceKeys::windowPlace).split(u' ');
    constexpr int farthest = 100'000; // what a file says must not overflow where it is reckoned with
    std::array<int, 4> numbers{};
    if (words.size() != qsizetype(numbers.size()))
        return std::nullopt;
    for (size_t place = 0; place < numbers.size(); ++place) {
        bool valid = false;
        numbers[place] = words[qsizetype(place)].toInt(&valid);
        if (!valid || std::abs(numbers[place]) > farthest)
            return std::nullopt;
    }
    return QRect(numbers[0], numbers[1], numbers[2], numbers[3]);
}

int WindowMemory::sidebarWidth() const {
    return std::clamp(m_preferences.value(PreferenceKeys::sidebarWidth), leastSidebarWidth(), mostSidebarWidth());
}

void WindowMemory::setSidebarWidth(int width) {
    if (width == sidebarWidth())
        return;
    m_preferences.setValue(PreferenceKeys::sidebarWidth, width);
    Q_EMIT sidebarWidthChanged();
}

} // namespace lumbra
