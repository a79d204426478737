// SPDX-License-Identifier: GPL-3.0-or-later
#include "MpvHandle.h"

#include "GraphicsHardware.h"
#include "MediaStream.h"
#include "MpvAnswers.h"
#include "MpvLibrary.h"
#include "platform/Tasks.h"

#include <QCoreApplication>

#include <chrono>
#include <clocale>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

namespace lumbra {

namespace {

// Containers that may be opened: those of the film and audio files of the library, and none that refers to others.
constexpr char containers[] = "mov,matroska,webm,avi,ogg,flv,asf,mpegts,mpeg,mpegvideo,m4v,dv,mxf,mp3,aac,flac,wav,w64,"
                              "aiff,caf,amr,ac3,eac3,au";

// What every player is set to.
constexpr std::pair<const char*, const char*> settings[] = {
    // Nothing of the user's mpv, no scripts, no keys, no texts over the picture, no helpers on the network.
    {"config", "no"},
    {"load-scripts", "no"},
    {"load-stats-overlay", "no"},
    {"load-osd-console", "no"},
    {"load-auto-profiles", "no"},
    {"ytdl", "no"},
    {"osc", "no"},
    {"osd-level", "0"},
    {"input-default-bindings", "no"},
    {"input-media-keys", "no"},
    {"terminal", "no"},
    {"resume-playback", "no"},
    {"load-unsafe-playlists", "no"},
    {"access-references", "no"},
    // The file alone: not what lies beside it, no subtitles, and a song's cover is no film.
    {"demuxer", "lavf"},
    {"autoload-files", "no"},
    {"sid", "no"},
    {"audio-display", "no"},
    // Its last picture stays, and the next file comes on demand.
    {"idle", "yes"},
    {"keep-open", "yes"},
    {"hr-seek-framedrop", "yes"},
    // Whichever is there, in this order, then whatever else this mpv knows; films go on in silence where none is.
    {"ao", "pipewire,pulse,alsa,"},
    {"audio-fallback-to-null", "yes"},
    {"audio-client-name", "Lumbra"},
    {"volume-max", "100"},
    // The room shows through beside the picture. Pictures are decoded and dropped while no surface shows them.
    {"background", "#00000000"},
    {"vo", "null"},
    // A picture is given out when it is due: the surface draws at once and does not wait for its time.
    {"video-timing-offset", "0"},
};

// What is done for players in the background and waits for them: loading their library, starting one, ending one.
class Errands {
public:
    static Errands& shared() {
        // Never destroyed: one that hangs for good may still look at it.
        static auto* const errands = new Errands;
        return *errands;
    }

    void run(std::function<void()> errand) {
        {
            const std::lock_guard lock(m_mutex);
            ++m_count;
        }
        std::thread([this, errand = std::move(errand)]() mutable {
            errand();
            errand = nullptr; // with what it holds
            const std::lock_guard lock(m_mutex);
            --m_count;
            m_changed.notify_all();
        }).detach();
    }

private:
    Errands() {
        qAddPostRoutine([] { shared().wait(); });
    }

    // The process does not end under a player's threads, but neither does it wait for one that hangs.
    void wait() {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::seconds(2), [this] { return m_count == 0; });
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};

// A player with the options set; null if mpv refuses one of them, or to start at all.
mpv_handle* makePlayer(const MpvLibrary& library, const MpvHandle::Options& options) {
    mpv_handle* const mpv = library.create();
    if (!mpv)
        return nullptr;
    for (const auto& [name, value] : settings)
        library.set_option_string(mpv, name, value); // other versions of mpv may lack one
    const bool hasHardware = hasGraphicsHardware();
    library.set_option_string(mpv, "hwdec", hasHardware ? "auto-safe" : "no");
    library.set_option_string(mpv, "gpu-hwdec-interop", hasHardware ? "auto" : "no");
    const QByteArray whitelist(containers);
    library.set_option_string(mpv, "demuxer-lavf-o",
                              "format_whitelist=%" + QByteArray::number(whitelist.size()) + '%' + whitelist);
    bool isGood = true;
    for (const auto& [name, value] : options)
        isGood = isGood && library.set_option_string(mpv, name, value) >= 0;
    if (!isGood || library.initialize(mpv) < 0) {
        library.destroy(mpv);
        return nullptr;
    }
    MediaStream::serve(library, mpv);
    return mpv;
}

} // namespace

MpvHandle::~MpvHandle() {
    mpv_handle* const mpv = m_mpv;
    if (!mpv)
        return;
    const MpvLibrary* const library = MpvLibrary::shared();
    library->set_wakeup_callback(mpv, nullptr, nullptr); // waits for a call under way
    Errands::shared().run([library, mpv] { library->terminate_destroy(mpv); });
}

void MpvHandle::start() {
    if (m_state != State::none)
        return;
    m_state = State::starting;
    // mpv reads numbers with the locale's point, and refuses to start with any but that of C.
    if (std::strcmp(std::setlocale(LC_NUMERIC, nullptr), "C") != 0)
        std::setlocale(LC_NUMERIC, "C");
    Errands::shared().run([weak = weak_from_this(), options = m_options] {
        const MpvLibrary* const library = MpvLibrary::shared();
        mpv_handle* const mpv = library ? makePlayer(*library, options) : nullptr;
        const std::shared_ptr<MpvHandle> handle = weak.lock();
        if (handle)
            handle->m_mpv = mpv; // from here on its own to end
        else if (mpv)
            library->terminate_destroy(mpv);
        Tasks::postToMain([weak] {
            if (const std::shared_ptr<MpvHandle> started = weak.lock())
                started->started();
        });
    });
}

void MpvHandle::listen(Listener listener, std::function<void(bool)> started) {
    m_listener = std::move(listener);
    m_started = std::move(started);
    if (m_state == State::running || m_state == State::absent)
        m_started(m_state == State::running);
}

void MpvHandle::started() {
    m_state = m_mpv ? State::running : State::absent;
    if (m_state == State::absent)
        m_answered.clear();
    const std::vector<Request> requests = std::exchange(m_waiting, {});
    if (m_mpv) {
        MpvLibrary::shared()->set_wakeup_callback(m_mpv, &MpvHandle::wake, this);
        for (const Request& request : requests)
            request(*MpvLibrary::shared(), m_mpv);
    }
    if (m_started)
        m_started(m_state == State::running);
}

void MpvHandle::ask(Request request) {
    if (m_state == State::running)
        request(*MpvLibrary::shared(), m_mpv);
    else if (m_state == State::starting)
        m_waiting.push_back(std::move(request));
}

// 0 asks mpv for no answer.
quint64 MpvHandle::tagFor(Then then) {
    if (!then || m_state == State::none || m_state == State::absent)
        return 0;
    m_answered.emplace(++m_lastTag, std::move(then));
    return m_lastTag;
}

void MpvHandle::set(const char* property, double value) {
    ask([property, value](const MpvLibrary& library, mpv_handle* mpv) mutable {
        library.set_property_async(mpv, 0, property, MPV_FORMAT_DOUBLE, &value);
    });
}

void MpvHandle::set(const char* property, bool value) {
    ask([property, value = int(value)](const MpvLibrary& library, mpv_handle* mpv) mutable {
        library.set_property_async(mpv, 0, property, MPV_FORMAT_FLAG, &value);
    });
}

void MpvHandle::set(const char* property, const char* value) {
    ask([property, text = QByteArray(value)](const MpvLibrary& library, mpv_handle* mpv) {
        const char* given = text.constData();
        library.set_property_async(mpv, 0, property, MPV_FORMAT_STRING, &given);
    });
}

void MpvHandle::command(const QByteArrayList& words, Then then) {
    ask([words, tag = tagFor(std::move(then))](const MpvLibrary& library, mpv_handle* mpv) {
        std::vector<const char*> texts;
        for (const QByteArray& word : words)
            texts.push_back(word.constData());
        texts.push_back(nullptr);
        library.command_async(mpv, tag, texts.data());
    });
}

void MpvHandle::load(const Location& file, Then then) {
    command({"loadfile", MediaStream::addressOf(file), "replace"}, std::move(then));
}

void MpvHandle::get(const char* property, int format, Then then) {
    ask([property, format, tag = tagFor(std::move(then))](const MpvLibrary& library, mpv_handle* mpv) {
        library.get_property_async(mpv, tag, property, mpv_format(format));
    });
}

void MpvHandle::observe(const char* property, int format) {
    ask([property, format](const MpvLibrary& library, mpv_handle* mpv) {
        library.observe_property(mpv, 0, property, mpv_format(format));
    });
}

// On any of mpv's threads.
void MpvHandle::wake(void* given) {
    auto* const self = static_cast<MpvHandle*>(given);
    if (self->m_isCalled.exchange(true))
        return;
    Tasks::postToMain([weak = self->weak_from_this()] {
        if (const std::shared_ptr<MpvHandle> handle = weak.lock())
            handle->hear();
    });
}

void MpvHandle::hear() {
    m_isCalled = false; // first: what happens from here on calls anew
    for (;;) {
        const mpv_event* const event = MpvLibrary::shared()->wait_event(m_mpv, 0);
        switch (event->event_id) {
        case MPV_EVENT_NONE:
            return;
        case MPV_EVENT_COMMAND_REPLY:
        case MPV_EVENT_GET_PROPERTY_REPLY:
        case MPV_EVENT_SET_PROPERTY_REPLY:
            hearAnswer(*event);
            break;
        default:
            if (m_listener)
                m_listener(*event);
        }
    }
}

void MpvHandle::hearAnswer(const mpv_event& event) {
    if (const Then then = m_answered.take(event.reply_userdata))
        then(MpvAnswer(event));
}

} // namespace lumbra
