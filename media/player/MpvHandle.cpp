// SPDX-License-Identifier: GPL-3.0-or-later
#include "MpvHandle.h"

#include "MediaStream.h"
#include "platform/Tasks.h"

#include <QCoreApplication>

#include <mpv/client.h>

extern "C" {
#include <libavutil/log.h>
}

#include <chrono>
#include <clocale>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

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
    {"hwdec", "auto-safe"},
    {"hr-seek-framedrop", "yes"},
    // PipeWire, PulseAudio or ALSA, whichever is there; films go on in silence where none is.
    {"audio-fallback-to-null", "yes"},
    {"audio-client-name", "Lumbra"},
    {"volume-max", "100"},
    // The room shows through beside the picture. Pictures are decoded and dropped while no surface shows them.
    {"background", "#00000000"},
    {"vo", "null"},
    // A picture is given out when it is due: the surface draws at once and does not wait for its time.
    {"video-timing-offset", "0"},
};

// Players on their way out. Ending one waits for its threads and its audio device.
class Departures {
public:
    static Departures& shared() {
        // Never destroyed: one that hangs for good may still look at it.
        static auto* const departures = new Departures;
        return *departures;
    }

    void add(mpv_handle* mpv) {
        {
            const std::lock_guard lock(m_mutex);
            ++m_count;
        }
        std::thread([this, mpv] {
            mpv_terminate_destroy(mpv);
            const std::lock_guard lock(m_mutex);
            --m_count;
            m_changed.notify_all();
        }).detach();
    }

private:
    Departures() {
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

} // namespace

std::shared_ptr<MpvHandle> MpvHandle::make(const Options& options, Listener listener) {
    auto made = std::make_shared<MpvHandle>(std::move(listener));
    // mpv reads numbers with the locale's point, and refuses to start with any but that of C.
    if (std::strcmp(std::setlocale(LC_NUMERIC, nullptr), "C") != 0)
        std::setlocale(LC_NUMERIC, "C");
    // What the decoders think of a file is said nowhere; they would write it over the terminal.
    av_log_set_level(AV_LOG_QUIET);
    mpv_handle* const mpv = mpv_create();
    if (!mpv)
        return made;
    for (const auto& [name, value] : settings)
        mpv_set_option_string(mpv, name, value);
    const QByteArray whitelist(containers);
    mpv_set_option_string(mpv, "demuxer-lavf-o",
                          "format_whitelist=%" + QByteArray::number(whitelist.size()) + '%' + whitelist);
    for (const auto& [name, value] : options)
        mpv_set_option_string(mpv, name, value);
    if (mpv_initialize(mpv) < 0) {
        mpv_destroy(mpv);
        return made;
    }
    MediaStream::serve(mpv);
    made->m_mpv = mpv;
    mpv_set_wakeup_callback(
        mpv,
        [](void* given) {
            auto* const self = static_cast<MpvHandle*>(given);
            if (self->m_isCalled.exchange(true))
                return;
            Tasks::postToMain([weak = self->weak_from_this()] {
                if (const std::shared_ptr<MpvHandle> handle = weak.lock())
                    handle->hear();
            });
        },
        made.get());
    return made;
}

MpvHandle::~MpvHandle() {
    if (!m_mpv)
        return;
    mpv_set_wakeup_callback(m_mpv, nullptr, nullptr); // waits for a call under way
    Departures::shared().add(m_mpv);
}

void MpvHandle::command(const QByteArrayList& words, quint64 tag) {
    if (!m_mpv)
        return;
    std::vector<const char*> texts;
    for (const QByteArray& word : words)
        texts.push_back(word.constData());
    texts.push_back(nullptr);
    mpv_command_async(m_mpv, tag, texts.data());
}

void MpvHandle::load(const Location& file, quint64 tag) {
    command({"loadfile", MediaStream::addressOf(file), "replace"}, tag);
}

void MpvHandle::set(const char* property, double value, quint64 tag) {
    if (m_mpv)
        mpv_set_property_async(m_mpv, tag, property, MPV_FORMAT_DOUBLE, &value);
}

void MpvHandle::set(const char* property, bool value, quint64 tag) {
    int flag = value;
    if (m_mpv)
        mpv_set_property_async(m_mpv, tag, property, MPV_FORMAT_FLAG, &flag);
}

void MpvHandle::set(const char* property, const char* value, quint64 tag) {
    if (m_mpv)
        mpv_set_property_async(m_mpv, tag, property, MPV_FORMAT_STRING, &value);
}

void MpvHandle::get(const char* property, int format, quint64 tag) {
    if (m_mpv)
        mpv_get_property_async(m_mpv, tag, property, mpv_format(format));
}

void MpvHandle::observe(const char* property, int format, quint64 tag) {
    if (m_mpv)
        mpv_observe_property(m_mpv, tag, property, mpv_format(format));
}

void MpvHandle::hear() {
    m_isCalled = false; // first: what happens from here on calls anew
    for (;;) {
        const mpv_event* const event = mpv_wait_event(m_mpv, 0);
        if (event->event_id == MPV_EVENT_NONE)
            return;
        if (m_listener)
            m_listener(*event);
    }
}

} // namespace lumbra
