// SPDX-License-Identifier: GPL-3.0-or-later
#include "Protocol.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>
#include <cmath>

namespace lumbra::reader {

namespace {

// The first byte of every message. Raise it with every change of what follows.
constexpr quint8 version = 5;

enum class Shape : quint8 { request = 1, answer = 2 };

// No film is longer, and no moment later: thirty years, in seconds.
constexpr double longestTime = 1e9;

template <typename... Fields>
QByteArray written(const Fields&... fields) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    (stream << ... << fields);
    return bytes;
}

// True when the bytes hold the fields and nothing else. A length inside a message that is larger than the message reads
// as an error, not as an allocation, since QDataStream takes byte arrays in pieces.
template <typename... Fields>
bool read(const QByteArray& bytes, Fields&... fields) {
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    (stream >> ... >> fields);
    return stream.status() == QDataStream::Ok && stream.atEnd();
}

bool isSide(quint32 side) {
    return side >= 1 && side <= quint32(longestSide);
}

bool isTime(double seconds) {
    return seconds >= 0 && seconds <= longestTime; // false for what is no number
}

bool isKind(quint8 kind) {
    return kind >= quint8(Kind::thumbnail) && kind <= quint8(Kind::pageText);
}

// The bytes that a picture's pixels take; absent for sides that no picture has.
std::optional<qsizetype> bytesOf(quint32 width, quint32 height) {
    if (!isSide(width) || !isSide(height))
        return std::nullopt;
    return qsizetype(width) * qsizetype(height) * 4;
}

} // namespace

QByteArray encoded(const Request& request) {
    return written(version, quint8(Shape::request), request.number, quint8(request.kind), request.limit, request.path,
                   request.details);
}

QByteArray encoded(const Answer& answer) {
    return written(version, quint8(Shape::answer), answer.number, quint8(answer.found), answer.details, answer.bulk);
}

QByteArray encoded(const PictureBox& box) {
    return written(quint32(box.size.width()), quint32(box.size.height()));
}

QByteArray encoded(const PixelSize& pixels) {
    return written(quint32(pixels.size.width()), quint32(pixels.size.height()));
}

QByteArray encoded(const PictureFacts& facts) {
    return written(quint32(facts.size.width()), quint32(facts.size.height()), quint8(facts.opaque));
}

QByteArray encoded(const FramesFacts& facts) {
    QByteArray bytes = written(quint8(facts.isWhole), quint16(facts.frames.size()));
    for (const PictureFacts& frame : facts.frames)
        bytes += encoded(frame);
    return bytes;
}

QByteArray encoded(const MediaFacts& facts) {
    return written(facts.duration, quint8(facts.hasPictures), quint8(facts.hasSound));
}

QByteArray encoded(const FramesWish& wish) {
    QByteArray bytes = written(quint8(wish.unit), wish.tolerance, quint32(wish.box.width()), quint32(wish.box.height()),
                               quint8(wish.keepsOpen), quint16(wish.moments.size()));
    for (const double moment : wish.moments)
        bytes += written(moment);
    return bytes;
}

QByteArray encoded(const LoudnessWish& wish) {
    return written(quint32(wish.count));
}

QByteArray encoded(const PagesFacts& facts) {
    return written(quint32(facts.count), quint8(facts.isLocked));
}

QByteArray encoded(const PageWish& wish) {
    return written(quint32(wish.page), wish.whole, wish.part);
}

QByteArray encoded(const PageTextWish& wish) {
    return written(quint32(wish.page), wish.from, wish.to, quint8(wish.grain));
}

QByteArray encoded(const PageTextFacts& facts) {
    return written(quint32(facts.places));
}

std::optional<Request> decodedRequest(const QByteArray& message) {
    Request request;
    quint8 saidVersion = 0, shape = 0, kind = 0;
    if (message.size() > messageLimit
        || !read(message, saidVersion, shape, request.number, kind, request.limit, request.path, request.details))
        return std::nullopt;
    if (saidVersion != version || shape != quint8(Shape::request) || request.number == 0 || !isKind(kind)
        || !request.path.startsWith('/') || request.path.contains('\0'))
        return std::nullopt;
    request.kind = Kind(kind);
    return request;
}

std::optional<Answer> decodedAnswer(const QByteArray& message) {
    Answer answer;
    quint8 saidVersion = 0, shape = 0, found = 0;
    if (message.size() > messageLimit
        || !read(message, saidVersion, shape, answer.number, found, answer.details, answer.bulk))
        return std::nullopt;
    if (saidVersion != version || shape != quint8(Shape::answer) || found > 1 || answer.bulk > arenaSize)
        return std::nullopt;
    answer.found = found == 1;
    return answer;
}

std::optional<PictureBox> decodedPictureBox(const QByteArray& details) {
    quint32 width = 0, height = 0;
    if (!read(details, width, height) || !isSide(width) || !isSide(height))
        return std::nullopt;
    return PictureBox{QSize(int(width), int(height))};
}

std::optional<PixelSize> decodedPixelSize(const QByteArray& details) {
    const auto isPossible = [](quint32 side) { return side >= 1 && side <= quint32(longestPicture); };
    quint32 width = 0, height = 0;
    if (!read(details, width, height) || !isPossible(width) || !isPossible(height))
        return std::nullopt;
    return PixelSize{QSize(int(width), int(height))};
}

std::optional<PictureFacts> decodedPictureFacts(const QByteArray& details, qsizetype bulk) {
    quint32 width = 0, height = 0;
    quint8 opaque = 0;
    if (!read(details, width, height, opaque) || opaque > 1 || bytesOf(width, height) != bulk)
        return std::nullopt;
    return PictureFacts{QSize(int(width), int(height)), opaque == 1};
}

std::optional<FramesFacts> decodedFramesFacts(const QByteArray& details, qsizetype bulk) {
    QDataStream stream(details);
    stream.setVersion(QDataStream::Qt_6_4);
    quint8 isWhole = 0;
    quint16 count = 0;
    stream >> isWhole >> count;
    FramesFacts facts{.frames = {}, .isWhole = isWhole == 1};
    for (quint16 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        quint32 width = 0, height = 0;
        quint8 opaque = 0;
        stream >> width >> height >> opaque;
        const std::optional<qsizetype> bytes = bytesOf(width, height);
        if (!bytes || opaque > 1)
            return std::nullopt;
        bulk -= *bytes;
        facts.frames.append(PictureFacts{QSize(int(width), int(height)), opaque == 1});
    }
    if (stream.status() != QDataStream::Ok || !stream.atEnd() || isWhole > 1 || count > mostFrames || bulk != 0)
        return std::nullopt;
    return facts;
}

std::optional<MediaFacts> decodedMediaFacts(const QByteArray& details) {
    double duration = 0;
    quint8 hasPictures = 0, hasSound = 0;
    if (!read(details, duration, hasPictures, hasSound) || !isTime(duration) || hasPictures > 1 || hasSound > 1)
        return std::nullopt;
    return MediaFacts{duration, hasPictures == 1, hasSound == 1};
}

std::optional<FramesWish> decodedFramesWish(const QByteArray& details) {
    QDataStream stream(details);
    stream.setVersion(QDataStream::Qt_6_4);
    FramesWish wish;
    quint8 unit = 0, keepsOpen = 0;
    quint32 width = 0, height = 0;
    quint16 count = 0;
    stream >> unit >> wish.tolerance >> width >> height >> keepsOpen >> count;
    if (unit > quint8(FramesWish::Unit::durations) || !isTime(wish.tolerance) || !isSide(width) || !isSide(height)
        || keepsOpen > 1 || count < 1 || count > mostFrames)
        return std::nullopt;
    for (quint16 i = 0; i < count; ++i) {
        double moment = -1;
        stream >> moment;
        if (!isTime(moment))
            return std::nullopt;
        wish.moments.append(moment);
    }
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return std::nullopt;
    wish.unit = FramesWish::Unit(unit);
    wish.box = QSize(int(width), int(height));
    wish.keepsOpen = keepsOpen == 1;
    return wish;
}

std::optional<LoudnessWish> decodedLoudnessWish(const QByteArray& details) {
    quint32 count = 0;
    if (!read(details, count) || count < 1 || count > quint32(mostBars))
        return std::nullopt;
    return LoudnessWish{int(count)};
}

std::optional<PagesFacts> decodedPagesFacts(const QByteArray& details, qsizetype bulk) {
    quint32 count = 0;
    quint8 isLocked = 0;
    if (!read(details, count, isLocked) || count > quint32(mostPages) || isLocked > 1 || (isLocked == 1) != (count == 0)
        || bulk != qsizetype(count) * 2 * qsizetype(sizeof(float)))
        return std::nullopt;
    return PagesFacts{int(count), isLocked == 1};
}

std::optional<PageWish> decodedPageWish(const QByteArray& details) {
    quint32 page = 0;
    PageWish wish;
    if (!read(details, page, wish.whole, wish.part) || page >= quint32(mostPages))
        return std::nullopt;
    const auto isPageSide = [](int side) { return side >= 1 && side <= longestPage; };
    if (!isPageSide(wish.whole.width()) || !isPageSide(wish.whole.height()) || wish.part.left() < 0
        || wish.part.top() < 0 || wish.part.right() >= wish.whole.width() || wish.part.bottom() >= wish.whole.height()
        || !bytesOf(quint32(wish.part.width()), quint32(wish.part.height())))
        return std::nullopt;
    wish.page = int(page);
    return wish;
}

std::optional<PageTextWish> decodedPageTextWish(const QByteArray& details) {
    constexpr double farthest = 1e6;
    const auto isPlace = [](QPointF point) { // false for what is no number
        return std::abs(point.x()) <= farthest && std::abs(point.y()) <= farthest;
    };
    quint32 page = 0;
    quint8 grain = 0;
    PageTextWish wish;
    if (!read(details, page, wish.from, wish.to, grain) || page >= quint32(mostPages)
        || grain > quint8(PageTextWish::Grain::page) || !isPlace(wish.from) || !isPlace(wish.to))
        return std::nullopt;
    wish.page = int(page);
    wish.grain = PageTextWish::Grain(grain);
    return wish;
}

std::optional<PageTextFacts> decodedPageTextFacts(const QByteArray& details, qsizetype bulk) {
    quint32 places = 0;
    if (!read(details, places) || places > quint32(mostPlaces)
        || bulk < qsizetype(places) * 4 * qsizetype(sizeof(float)))
        return std::nullopt;
    return PageTextFacts{int(places)};
}

} // namespace lumbra::reader
