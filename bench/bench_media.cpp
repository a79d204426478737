// Facts, frames and loudness of media through the reader processes, beside FFmpeg's libraries called directly with as
// many threads: the length of a film, a strip of 12 frames of ten minutes of 1080p, one frame where a pointer rests,
// the bars of an hour of sound. Milliseconds each.
//
// bench_media FOLDER [NAME]: makes its media there once; measures all, or the one work.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Measure.h"
#include "platform/Reader.h"
#include "reader/media/Ffmpeg.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <cmath>
#include <filesystem>

using namespace lumbra;

namespace {

using reader::Owned;

constexpr int rounds = 5;
constexpr int slices = 12;
constexpr int bars = 140;

// Where the pointer rests along ten minutes, in seconds.
const QList<double> rests{31.7, 35.2, 222.9, 224.1, 401.3, 399.8, 555.5, 12.4};

void ffmpeg(const QString& folder, const char* arguments) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral("ffmpeg"),
                  QStringLiteral("-v error -y -nostdin %1").arg(QLatin1String(arguments)).split(QLatin1Char(' ')));
    if (!process.waitForFinished(600'000) || process.exitCode() != 0)
        qFatal("ffmpeg: %s", process.readAllStandardError().constData());
}

void make(const QString& folder) {
    std::filesystem::create_directories(folder.toStdString());
    if (QFile::exists(folder + QStringLiteral("/made")))
        return;
    ffmpeg(folder, "-f lavfi -i testsrc2=s=1920x1080:d=20:r=30 -f lavfi -i sine=d=20 -vf noise=alls=8 -pix_fmt yuv420p"
                   " -preset veryfast twenty.mp4");
    ffmpeg(folder, "-stream_loop 29 -i twenty.mp4 -c copy film.mp4");
    ffmpeg(folder, "-f lavfi -i anoisesrc=d=60:c=pink -af tremolo=f=0.1:d=0.9 -ac 2 -ar 44100 -b:a 128k minute.m4a");
    ffmpeg(folder, "-stream_loop 59 -i minute.m4a -c copy hour.m4a");
    QFile(folder + QStringLiteral("/made")).open(QIODevice::WriteOnly);
}

template <typename Value>
Value resultOf(QFuture<Value> future) {
    future.waitForFinished();
    return future.result();
}

// A file as FFmpeg's own examples open, seek and decode it, with one stream and one thread.
class Direct {
public:
    Direct(const QByteArray& path, AVMediaType type) {
        if (avformat_open_input(&m_file, path.constData(), nullptr, nullptr) != 0
            || avformat_find_stream_info(m_file, nullptr) < 0)
            qFatal("cannot open %s", path.constData());
        const AVCodec* decoder = nullptr;
        const int best = av_find_best_stream(m_file, type, -1, -1, &decoder, 0);
        m_stream = m_file->streams[best];
        for (unsigned i = 0; i < m_file->nb_streams; ++i)
            m_file->streams[i]->discard = int(i) == best ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
        m_codec.reset(avcodec_alloc_context3(decoder));
        avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar);
        m_codec->thread_count = 1;
        avcodec_open2(m_codec.get(), decoder, nullptr);
    }
    ~Direct() { avformat_close_input(&m_file); }
    Direct(const Direct&) = delete;
    Direct& operator=(const Direct&) = delete;

    double duration() const { return double(m_file->duration) / AV_TIME_BASE; }

    bool decode() {
        while (avcodec_receive_frame(m_codec.get(), m_frame.get()) != 0) {
            do {
                av_packet_unref(m_packet.get());
                if (av_read_frame(m_file, m_packet.get()) < 0)
                    return false;
            } while (m_packet->stream_index != m_stream->index);
            avcodec_send_packet(m_codec.get(), m_packet.get());
        }
        return true;
    }

    const AVFrame& frame() const { return *m_frame; }

    // The frame at the time, in seconds, no wider than `width`.
    QImage frameAt(double seconds, int width) {
        const auto time = int64_t(seconds / av_q2d(m_stream->time_base));
        av_seek_frame(m_file, m_stream->index, time, AVSEEK_FLAG_BACKWARD);
        avcodec_flush_buffers(m_codec.get());
        while (decode() && m_frame->best_effort_timestamp < time)
            ;
        QImage image(width, m_frame->height * width / m_frame->width, QImage::Format_RGB32);
        m_scaler.reset(sws_getCachedContext(m_scaler.release(), m_frame->width, m_frame->height,
                                            AVPixelFormat(m_frame->format), image.width(), image.height(),
                                            AV_PIX_FMT_0RGB32, SWS_AREA, nullptr, nullptr, nullptr));
        uint8_t* const rows[] = {image.bits()};
        const int strides[] = {int(image.bytesPerLine())};
        sws_scale(m_scaler.get(), m_frame->data, m_frame->linesize, 0, m_frame->height, rows, strides);
        return image;
    }

private:
    AVFormatContext* m_file = nullptr;
    AVStream* m_stream = nullptr;
    Owned<AVCodecContext> m_codec;
    Owned<AVPacket> m_packet{av_packet_alloc()};
    Owned<AVFrame> m_frame{av_frame_alloc()};
    Owned<SwsContext> m_scaler;
};

void stripDirectly(const QByteArray& path) {
    Direct film(path, AVMEDIA_TYPE_VIDEO);
    for (int i = 0; i < slices; ++i)
        film.frameAt((i + 0.5) * film.duration() / slices, 320);
}

void stripByReader(Reader& reader, const Location& file) {
    Reader::FramesWish wish{
        .moments = {}, .unit = Reader::FramesWish::Unit::durations, .tolerance = 0.5, .box = {320, 320}};
    for (int i = 0; i < slices; ++i)
        wish.moments.append((i + 0.5) / slices);
    if (resultOf<std::optional<Reader::Frames>>(reader.frames(file, wish)).value_or(Reader::Frames()).images.size()
        != slices)
        qFatal("no strip");
}

void previewByReader(Reader& reader, const Location& file, double seconds) {
    const Reader::FramesWish wish{.moments = {seconds}, .tolerance = 0.15, .box = {400, 400}, .keepsOpen = true};
    if (resultOf<std::optional<Reader::Frames>>(reader.frames(file, wish)).value_or(Reader::Frames()).images.size()
        != 1)
        qFatal("no frame");
}

// The samples in memory, then their slices.
QList<float> barsDirectly(const QByteArray& path) {
    Direct sound(path, AVMEDIA_TYPE_AUDIO);
    std::vector<int16_t> samples;
    Owned<SwrContext> converter;
    while (sound.decode()) {
        const AVFrame& frame = sound.frame();
        if (!converter) {
            AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
            SwrContext* made = nullptr;
            swr_alloc_set_opts2(&made, &mono, AV_SAMPLE_FMT_S16, 8000, const_cast<AVChannelLayout*>(&frame.ch_layout),
                                AVSampleFormat(frame.format), frame.sample_rate, 0, nullptr);
            converter.reset(made);
            swr_init(made);
        }
        const size_t before = samples.size();
        const int most = swr_get_out_samples(converter.get(), frame.nb_samples);
        samples.resize(before + size_t(most));
        auto* out = reinterpret_cast<uint8_t*>(samples.data() + before);
        const int made = swr_convert(converter.get(), &out, most, const_cast<const uint8_t**>(frame.extended_data),
                                     frame.nb_samples);
        samples.resize(before + size_t(std::max(0, made)));
    }
    QList<float> values;
    const size_t step = std::max<size_t>(1, samples.size() / bars);
    for (size_t i = 0; i < bars; ++i) {
        float sum = 0;
        for (size_t at = i * step; at < (i + 1) * step; ++at)
            sum += float(samples[at]) * float(samples[at]);
        values.append(std::sqrt(sum / float(step)));
    }
    return values;
}

double lengthDirectly(const QByteArray& path) {
    AVFormatContext* file = nullptr;
    avformat_open_input(&file, path.constData(), nullptr, nullptr);
    avformat_find_stream_info(file, nullptr);
    const double duration = double(file->duration) / AV_TIME_BASE;
    avformat_close_input(&file);
    return duration;
}

const char* only = nullptr;

void measure(const char* name, std::vector<bench::Run> runs, int times = 1) {
    if (only && qstrcmp(only, name) != 0)
        return;
    bench::interleave(runs, rounds);
    for (const bench::Run& run : runs)
        bench::report((std::string(name) + '_' + run.name).c_str(), bench::median(run.milliseconds) / times);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc < 2)
        return 2;
    only = argc > 2 ? argv[2] : nullptr;
    av_log_set_level(AV_LOG_QUIET);
    const QString folder = QString::fromUtf8(argv[1]);
    make(folder);
    const Location film(QStringView(folder + QStringLiteral("/film.mp4")));
    const Location sound(QStringView(folder + QStringLiteral("/hour.m4a")));
    Reader reader({.children = 1, .limit = 120});

    measure("length", {{"reader", [&] { resultOf<std::optional<Reader::MediaFacts>>(reader.mediaFacts(film)); }},
                       {"direct", [&] { lengthDirectly(film.path()); }}});
    measure("strip",
            {{"reader", [&] { stripByReader(reader, film); }}, {"direct", [&] { stripDirectly(film.path()); }}});
    Direct kept(film.path(), AVMEDIA_TYPE_VIDEO);
    const auto preview = [](auto&& frame) {
        return [frame] {
            for (const double rest : rests)
                frame(rest);
        };
    };
    measure("preview",
            {{"reader", preview([&](double time) { previewByReader(reader, film, time); })},
             {"direct", preview([&](double time) { kept.frameAt(time, 400); })}},
            int(rests.size()));
    measure("waveform", {{"reader", [&] { resultOf<QList<float>>(reader.loudness(sound, bars)); }},
                         {"direct", [&] { barsDirectly(sound.path()); }}});
}
