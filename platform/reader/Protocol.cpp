// SPDX-License-Identifier: GPL-3.0-or-later
#include "Protocol.h"

#include <QDataStream>
#include <QIODevice>

namespace lumbra::reader {

namespace {

// The first byte of every message. Raise it with every change of what follows.
constexpr quint8 version = 1;

enum class Shape : quint8 { request = 1, answer = 2 };

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

QByteArray encoded(const PictureFacts& facts) {
    return written(quint32(facts.size.width()), quint32(facts.size.height()), quint8(facts.opaque));
}

std::optional<Request> decodedRequest(const QByteArray& message) {
    Request request;
    quint8 saidVersion = 0, shape = 0, kind = 0;
    if (message.size() > messageLimit
        || !read(message, saidVersion, shape, request.number, kind, request.limit, request.path, request.details))
        return std::nullopt;
    if (saidVersion != version || shape != quint8(Shape::request) || request.number == 0
        || kind != quint8(Kind::thumbnail) || !request.path.startsWith('/') || request.path.contains('\0'))
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

std::optional<PictureFacts> decodedPictureFacts(const QByteArray& details, qsizetype bulk) {
    quint32 width = 0, height = 0;
    quint8 opaque = 0;
    if (!read(details, width, height, opaque) || !isSide(width) || !isSide(height) || opaque > 1)
        return std::nullopt;
    if (qsizetype(width) * qsizetype(height) * 4 != bulk)
        return std::nullopt;
    return PictureFacts{QSize(int(width), int(height)), opaque == 1};
}

} // namespace lumbra::reader
