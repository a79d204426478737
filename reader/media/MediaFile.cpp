// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaFile.h"

#include "Ffmpeg.h"
#include "reader/Interruption.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace lumbra::reader {

namespace {

// Containers of files. Those that are lists of other files, or come over a network, are not among them.
constexpr char containers[] = "mov,matroska,webm,avi,ogg,flv,asf,mpegts,mpeg,mpegvideo,m4v,dv,mxf,"
                              "mp3,aac,wav,w64,aiff,caf,flac,amr,ac3,eac3,au";

// No file is longer, in seconds; a header that claims more is not believed.
constexpr double longestDuration = 1e9;

constexpr int bufferSize = 64 * 1024;

// How long the end of a file is looked for.
constexpr std::chrono::seconds searchLimit(2);

int refuse(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
}

int mustGiveUp(void* self) {
    return static_cast<const MediaFile*>(self)->isOver() ? 1 : 0;
}

// The container's own header tells everything. Otherwise FFmpeg decodes some pictures to find out.
bool isDescribed(const AVFormatContext& context) {
    if (context.nb_streams == 0 || context.duration <= 0)
        return false;
    const auto streams = context.streams;
    return std::all_of(streams, streams + context.nb_streams, [](const AVStream* stream) {
        const AVCodecParameters& codec = *stream->codecpar;
        return codec.codec_type != AVMEDIA_TYPE_VIDEO || (codec.codec_id != AV_CODEC_ID_NONE && codec.width > 0);
    });
}

// Seconds in the stream's own units. What a hostile file makes too large to be counted is as far as can be.
int64_t stampOf(double seconds, const AVStream& stream) {
    constexpr double farthest = 4e18;
    return int64_t(std::clamp(seconds / av_q2d(stream.time_base), -farthest, farthest));
}

} // namespace

std::unique_ptr<MediaFile> MediaFile::open(const OpenedFile& file, std::chrono::milliseconds limit) {
    std::unique_ptr<MediaFile> media(new MediaFile(file, limit));
    return media->begin() ? std::move(media) : nullptr;
}

MediaFile::MediaFile(const OpenedFile& file, std::chrono::milliseconds limit)
    : m_descriptor(file.descriptor()), m_deadline(std::chrono::steady_clock::now() + limit) {}

MediaFile::~MediaFile() {
    avformat_close_input(&m_context);
    if (m_bytes)
        av_freep(&m_bytes->buffer);
    avio_context_free(&m_bytes);
}

bool MediaFile::begin() {
    av_log_set_level(AV_LOG_QUIET);
    m_context = avformat_alloc_context();
    m_bytes = avio_alloc_context(static_cast<unsigned char*>(av_malloc(bufferSize)), bufferSize, 0, this,
                                 &MediaFile::readBytes, nullptr, &MediaFile::seekBytes);
    if (!m_context || !m_bytes)
        return false;
    m_context->pb = m_bytes;
    m_context->flags |= AVFMT_FLAG_CUSTOM_IO;
    m_context->io_open = refuse;
    m_context->interrupt_callback = {mustGiveUp, this};
    m_context->format_whitelist = av_strdup(containers);
    m_context->max_analyze_duration = AV_TIME_BASE;
    if (avformat_open_input(&m_context, nullptr, nullptr, nullptr) != 0) // frees the context when it fails
        return false;
    return isDescribed(*m_context) || avformat_find_stream_info(m_context, nullptr) >= 0;
}

AVStream* MediaFile::pictures() const {
    const int best = av_find_best_stream(m_context, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (best < 0)
        return nullptr;
    AVStream* const stream = m_context->streams[best];
    return (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) ? nullptr : stream;
}

AVStream* MediaFile::sound() const {
    const auto streams = m_context->streams, end = streams + m_context->nb_streams;
    const auto first = std::find_if(
        streams, end, [](const AVStream* stream) { return stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO; });
    return first == end ? nullptr : *first;
}

void MediaFile::keepOnly(const AVStream* stream) {
    for (unsigned i = 0; i < m_context->nb_streams; ++i) {
        if (m_context->streams[i] != stream)
            m_context->streams[i]->discard = AVDISCARD_ALL;
    }
}

bool MediaFile::isOver() const {
    return std::chrono::steady_clock::now() >= m_deadline || Interruption::isRequested();
}

QByteArray MediaFile::cover() const {
    const auto streams = m_context->streams, end = streams + m_context->nb_streams;
    const auto found = std::find_if(streams, end, [](const AVStream* stream) {
        return (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) && stream->attached_pic.size > 0;
    });
    return found == end
               ? QByteArray()
               : QByteArray(reinterpret_cast<const char*>((*found)->attached_pic.data), (*found)->attached_pic.size);
}

double MediaFile::duration() const {
    const double seconds = double(m_context->duration) / AV_TIME_BASE; // far below 0 if unknown
    return seconds > 0 && seconds <= longestDuration ? seconds : 0;
}

double MediaFile::findDuration() {
    if (duration() > 0)
        return duration();
    const auto deadline = std::chrono::steady_clock::now() + searchLimit;
    double end = 0;
    const Owned<AVPacket> packet(av_packet_alloc());
    while (av_read_frame(m_context, packet.get()) >= 0) {
        if (isOver() || std::chrono::steady_clock::now() >= deadline)
            return 0;
        const AVStream& stream = *m_context->streams[packet->stream_index];
        const int64_t begin = packet->pts == AV_NOPTS_VALUE ? packet->dts : packet->pts;
        if (begin != AV_NOPTS_VALUE)
            end = std::max(end, (double(begin) + double(packet->duration)) * av_q2d(stream.time_base) - start());
        av_packet_unref(packet.get());
    }
    if (end > 0 && end <= longestDuration)
        m_context->duration = std::llround(end * AV_TIME_BASE);
    return duration();
}

double MediaFile::start() const {
    return m_context->start_time == AV_NOPTS_VALUE ? 0 : double(m_context->start_time) / AV_TIME_BASE;
}

bool MediaFile::read(const AVStream* stream, AVPacket* packet) {
    while (!isOver()) {
        av_packet_unref(packet);
        if (av_read_frame(m_context, packet) < 0)
            return false;
        if (packet->stream_index == stream->index)
            return true;
    }
    return false;
}

bool MediaFile::seek(const AVStream* stream, double seconds) {
    // Without an index, packets are sought by when they are decoded, and the first is decoded some time before it is
    // seen.
    const double lead = seconds <= 0 && !hasIndex() ? 10 : 0;
    const int64_t time = stampOf(seconds + start() - lead, *stream);
    return av_seek_frame(m_context, stream->index, time, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool MediaFile::hasIndex() const {
    // What others note as they go are places, not key frames.
    return !(m_context->iformat->flags & AVFMT_TS_DISCONT);
}

double MediaFile::keyFrame(AVStream* stream, double seconds, bool before) const {
    if (!hasIndex())
        return -1;
    const int64_t time = stampOf(seconds + start(), *stream);
    const AVIndexEntry* const entry =
        avformat_index_get_entry_from_timestamp(stream, time, before ? AVSEEK_FLAG_BACKWARD : 0);
    return entry ? double(entry->timestamp) * av_q2d(stream->time_base) - start() : -1;
}

int MediaFile::readBytes(void* self, uint8_t* buffer, int size) {
    auto& media = *static_cast<MediaFile*>(self);
    const ssize_t read = ::pread(media.m_descriptor, buffer, size_t(size), media.m_position);
    if (read <= 0)
        return read == 0 ? AVERROR_EOF : AVERROR(errno);
    media.m_position += read;
    return int(read);
}

int64_t MediaFile::seekBytes(void* self, int64_t offset, int whence) {
    auto& media = *static_cast<MediaFile*>(self);
    struct stat status;
    if (::fstat(media.m_descriptor, &status) != 0)
        return AVERROR(errno);
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return status.st_size;
    case SEEK_SET:
        break;
    case SEEK_CUR:
        offset += media.m_position;
        break;
    case SEEK_END:
        offset += status.st_size;
        break;
    default:
        return AVERROR(EINVAL);
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    return media.m_position = offset;
}

} // namespace lumbra::reader
