// When the pictures that a window waits for are shown. Each frame takes from the processors that draw it, where there
// is no graphics processor, some ten milliseconds that the next pictures are to be made with: a page of them that came
// one by one, with a frame for each, would take twice as long to stand. So while more are awaited, those that have come
// are shown together, in such a beat that frames take a tenth of the time; the last one, and one alone, at once.
//
// Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <utility>
#include <vector>

class QQuickWindow;

namespace lumbra {

class ArrivalPace : public QObject {
    Q_OBJECT

public:
    // That a picture is awaited, for as long as it lives.
    class Awaited {
    public:
        Awaited() = default;
        explicit Awaited(ArrivalPace& pace) : m_pace(&pace) { ++pace.m_awaited; }
        Awaited(Awaited&& other) noexcept : m_pace(std::exchange(other.m_pace, {})) {}
        Awaited& operator=(Awaited&& other) noexcept {
            std::swap(m_pace, other.m_pace);
            return *this;
        }
        ~Awaited();

    private:
        QPointer<ArrivalPace> m_pace;
    };

    // The window's own; it lives as long as the window.
    static ArrivalPace& of(QQuickWindow& window);

    // Calls `show` when it is time, unless the context has gone by then. Who has come is awaited no more. What is out
    // of sight is no reason for a frame, and waits for the next beat.
    void add(QObject* context, bool inSight, std::function<void()> show);

private:
    using Clock = std::chrono::steady_clock;

    struct Arrival {
        QPointer<QObject> context;
        bool inSight = false;
        std::function<void()> show;
    };

    explicit ArrivalPace(QQuickWindow& window);

    void plan();
    bool isAnyInSight() const;
    void showAll();
    void drawNow();
    void frameBegins();
    void frameEnds();
    Clock::time_point nextBeat() const;

    int m_awaited = 0;
    std::vector<Arrival> m_arrived;
    QTimer m_beat;

    // Written where frames are drawn.
    struct Moment {
        Clock::time_point wall;
        std::chrono::nanoseconds processor; // of the whole process
    };
    Moment m_frameBegan;
    std::atomic<Clock::time_point> m_frameEnded;
    std::atomic<std::chrono::nanoseconds> m_frameCost;
};

} // namespace lumbra
