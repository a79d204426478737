// SPDX-License-Identifier: GPL-3.0-or-later
#include "ArrivalPace.h"

#include <QCoreApplication>
#include <QQuickWindow>

#include <algorithm>
#include <ctime>

namespace lumbra {

using namespace std::chrono_literals;

namespace {

constexpr int pause = 9;             // as many times as long as the frame before it took
constexpr auto longestPause = 100ms; // after a frame that had to prepare much, as the first one does

std::chrono::nanoseconds processorTime() {
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace

ArrivalPace::Awaited::~Awaited() {
    if (!m_pace)
        return;
    --m_pace->m_awaited;
    // Those that wait for it need not any more. Not within the call: it may be the destructor of one of them.
    if (!m_pace->m_arrived.empty())
        QMetaObject::invokeMethod(m_pace, &ArrivalPace::plan, Qt::QueuedConnection);
}

ArrivalPace& ArrivalPace::of(QQuickWindow& window) {
    auto* const known = window.findChild<ArrivalPace*>(QString(), Qt::FindDirectChildrenOnly);
    return known ? *known : *new ArrivalPace(window);
}

// It is made when the first picture is asked for, and so as a page is made: the first frame of it is still to come.
ArrivalPace::ArrivalPace(QQuickWindow& window)
    : QObject(&window), m_frameEnded(Clock::now()), m_frameCost(longestPause / pause) {
    m_beat.setSingleShot(true);
    m_beat.setTimerType(Qt::PreciseTimer);
    connect(&m_beat, &QTimer::timeout, this, &ArrivalPace::showAll);
    connect(&window, &QQuickWindow::beforeSynchronizing, this, &ArrivalPace::frameBegins, Qt::DirectConnection);
    connect(&window, &QQuickWindow::frameSwapped, this, &ArrivalPace::frameEnds, Qt::DirectConnection);
}

void ArrivalPace::add(QObject* context, bool inSight, std::function<void()> show) {
    m_arrived.push_back({context, inSight, std::move(show)});
    plan();
}

void ArrivalPace::plan() {
    if (m_arrived.empty())
        return;
    if (!isAnyInSight()) {
        if (!m_beat.isActive())
            m_beat.start(longestPause);
        return;
    }
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(nextBeat() - Clock::now());
    if (m_awaited == 0 || wait <= 0ms)
        showAll();
    else if (!m_beat.isActive() || m_beat.remainingTimeAsDuration() > wait)
        m_beat.start(wait);
}

bool ArrivalPace::isAnyInSight() const {
    return std::ranges::any_of(m_arrived, &Arrival::inSight);
}

void ArrivalPace::showAll() {
    m_beat.stop();
    const bool isSeen = isAnyInSight();
    for (const Arrival& arrival : std::exchange(m_arrived, {}))
        if (arrival.context)
            arrival.show();
    // After a quiet time it is one file that has landed, and this its picture. The window would leave a pause before
    // the frame for what else may come.
    if (isSeen && m_awaited == 0 && Clock::now() - m_frameEnded.load() > longestPause)
        QMetaObject::invokeMethod(this, &ArrivalPace::drawNow, Qt::QueuedConnection);
}

void ArrivalPace::drawNow() {
    QEvent frame(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(parent(), &frame);
}

// What a frame takes is what the processors do for it: where it waits for the screen's refresh it takes nothing from
// anybody.
void ArrivalPace::frameBegins() {
    m_frameBegan = {Clock::now(), processorTime()};
}

void ArrivalPace::frameEnds() {
    const auto now = Clock::now();
    const std::chrono::nanoseconds took =
        std::min<std::chrono::nanoseconds>(now - m_frameBegan.wall, processorTime() - m_frameBegan.processor);
    m_frameCost = took;
    m_frameEnded = now;
}

ArrivalPace::Clock::time_point ArrivalPace::nextBeat() const {
    return m_frameEnded.load() + std::min<std::chrono::nanoseconds>(pause * m_frameCost.load(), longestPause);
}

} // namespace lumbra
