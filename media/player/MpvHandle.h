// One mpv player, and the only place that speaks to it.
//
// Nothing here waits for the player: it starts in the background, requests are queued to it, and what it has to tell
// arrives on the main thread through the listener. A player that hangs in a decoder therefore hangs alone. The handle
// is shared with the renderer of the surface that shows its pictures, which may outlive everything else; whoever lets
// go last, on whatever thread, ends the player, and that too goes on in the background. All else is for the main
// thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QByteArrayList>

#include <atomic>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

struct mpv_event;
struct mpv_handle;

namespace lumbra {

struct MpvLibrary;

class MpvHandle : public std::enable_shared_from_this<MpvHandle> {
public:
    // Called for each event, on the main thread. The event is gone when it returns.
    using Listener = std::function<void(const mpv_event&)>;
    using Options = QList<std::pair<QByteArray, QByteArray>>;

    // A player that has not been started. The options stand over those that every player has. Always made shared.
    MpvHandle(Options options, Listener listener) : m_options(std::move(options)), m_listener(std::move(listener)) {}
    ~MpvHandle();
    Q_DISABLE_COPY_MOVE(MpvHandle)

    // Starts it, once: with nothing loaded, and no surface. What is requested before is void, what is requested from
    // here on waits until it runs.
    void start();
    bool isStarted() const { return m_state != State::none; }

    // There is no mpv on this machine, or it refuses to start; known some time after `start`. All requests are void.
    bool isAbsent() const { return m_state == State::absent; }

    // Called once when the player runs, or with false when it turns out to be absent.
    void setStarted(std::function<void(bool)> started) { m_started = std::move(started); }

    // Nothing is told any more from now on; to be called by a listener that goes before the handle does.
    void fallSilent() {
        m_listener = nullptr;
        m_started = nullptr;
    }

    // Requests, which the player carries out in the order given. Each is answered by an event with the tag, unless that
    // is 0. Names of properties are literals.
    void command(const QByteArrayList& words, quint64 tag = 0);
    void load(const Location& file, quint64 tag = 0);
    void set(const char* property, double value, quint64 tag = 0);
    void set(const char* property, bool value, quint64 tag = 0);
    void set(const char* property, const char* value, quint64 tag = 0);

    // Asks for a value as mpv's format (MPV_FORMAT_...), once or whenever it changes.
    void get(const char* property, int format, quint64 tag);
    void observe(const char* property, int format, quint64 tag);

    // For the renderer, which makes its drawing context of it, on any thread. Null until it runs.
    mpv_handle* raw() const { return m_mpv; }

private:
    using Request = std::function<void(const MpvLibrary&, mpv_handle*)>;
    enum class State { none, starting, running, absent };

    static void wake(void* given);
    void started();
    void ask(Request request);
    void hear();

    const Options m_options;
    Listener m_listener;
    std::function<void(bool)> m_started;
    State m_state = State::none;
    std::vector<Request> m_waiting; // while it starts
    std::atomic<mpv_handle*> m_mpv = nullptr;
    std::atomic<bool> m_isCalled = false; // the main thread is on its way to hear
};

} // namespace lumbra
