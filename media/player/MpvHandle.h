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
#include <QHash>

#include <atomic>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

struct mpv_event;
struct mpv_handle;

namespace lumbra {

class MpvAnswer;
struct MpvLibrary;

class MpvHandle : public std::enable_shared_from_this<MpvHandle> {
public:
    // Called for each event but answers, on the main thread. The event is gone when it returns.
    using Listener = std::function<void(const mpv_event&)>;
    using Options = QList<std::pair<QByteArray, QByteArray>>;

    // A player that has not been started. The options stand over those that every player has. Always made shared.
    explicit MpvHandle(Options options) : m_options(std::move(options)) {}
    ~MpvHandle();
    Q_DISABLE_COPY_MOVE(MpvHandle)

    // Starts it, once: with nothing loaded, and no surface. What is requested before is void, what is requested from
    // here on waits until it runs.
    void start();
    bool isStarted() const { return m_state != State::none; }

    // There is no mpv on this machine, or it refuses to start; known some time after `start`. All requests are void.
    bool isAbsent() const { return m_state == State::absent; }

    // Who hears it from now on, and is called once when the player runs, or with false when it turns out to be absent:
    // at once if that is known already.
    void listen(Listener listener, std::function<void(bool)> started);

    // Nothing is told any more from now on; to be called by a listener that goes before the handle does.
    void fallSilent() {
        m_listener = nullptr;
        m_started = nullptr;
        m_answered.clear();
    }

    // Requests, which the player carries out in the order given. Names of properties are literals.

    void set(const char* property, double value);
    void set(const char* property, bool value);
    void set(const char* property, const char* value);

    // Is given the answer, on the main thread.
    using Then = std::function<void(const MpvAnswer&)>;

    void command(const QByteArrayList& words, Then then = {});
    void load(const Location& file, Then then);

    // Asks for a value as mpv's format (MPV_FORMAT_...).
    void get(const char* property, int format, Then then);

    // Tells the listener of it now and whenever it changes.
    void observe(const char* property, int format);

    // For the renderer, which makes its drawing context of it, on any thread. Null until it runs.
    mpv_handle* raw() const { return m_mpv; }

private:
    using Request = std::function<void(const MpvLibrary&, mpv_handle*)>;
    enum class State { none, starting, running, absent };

    static void wake(void* given);
    void started();
    void ask(Request request);
    quint64 tagFor(Then then);
    void hear();
    void hearAnswer(const mpv_event& event);

    const Options m_options;
    Listener m_listener;
    std::function<void(bool)> m_started;
    State m_state = State::none;
    std::vector<Request> m_waiting; // while it starts
    quint64 m_lastTag = 0;
    QHash<quint64, Then> m_answered; // by the tag of the request
    std::atomic<mpv_handle*> m_mpv = nullptr;
    std::atomic<bool> m_isCalled = false; // the main thread is on its way to hear
};

} // namespace lumbra
