// The language that the application and its reader processes speak: one datagram for each request and each answer on a
// SOCK_SEQPACKET pair, and one block of shared memory, the arena, for whatever an answer carries beyond a few facts.
//
// The application makes the arena and seals its size before a reader sees it, so that a reader gone wild can neither
// grow it nor shrink it under the application's feet. A reader works on one request at a time; its answer bears the
// request's number. Both sides take every message as hostile: what does not decode is nonsense, and ends the talk.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QSize>

#include <optional>

namespace lumbra::reader {

// What a reader finds open when it starts: its end of the pair, and the arena.
inline constexpr int socketDescriptor = 3;
inline constexpr int arenaDescriptor = 4;

// Bytes. A datagram holds a path and a few facts; everything larger goes through the arena, whose pages cost nothing
// until they are touched.
inline constexpr qsizetype messageLimit = 16 * 1024;
inline constexpr qsizetype arenaSize = 64 * 1024 * 1024;

// The longest side of a picture that may be asked for, in pixels: a square of it fills the arena.
inline constexpr int longestSide = 4096;

// What can be asked. The values are part of the protocol.
enum class Kind : quint8 {
    thumbnail = 1, // details: PictureBox; the answer's details: PictureFacts, its bulk the pixels
};

struct Request {
    quint32 number = 0; // never 0
    Kind kind = Kind::thumbnail;
    quint32 limit = 0;    // milliseconds after which nobody waits any more
    QByteArray path = {}; // absolute, as the file system wants it
    QByteArray details = {};
};

struct Answer {
    quint32 number = 0; // 0 is the greeting of a reader that is ready for its first request
    bool found = false; // false: the file reads as nothing
    QByteArray details = {};
    quint32 bulk = 0; // bytes at the arena's start that belong to the answer
};

// The pixels that a picture must fit into; its proportions are kept and nothing is enlarged but drawings.
struct PictureBox {
    QSize size;
};

// Rows of premultiplied 0xAARRGGBB words in the machine's order, one after the other without gaps.
struct PictureFacts {
    QSize size;
    bool opaque = false;
};

QByteArray encoded(const Request& request);
QByteArray encoded(const Answer& answer);
QByteArray encoded(const PictureBox& box);
QByteArray encoded(const PictureFacts& facts);

// Absent for what is cut short, too long, of another version or out of bounds.
std::optional<Request> decodedRequest(const QByteArray& message);
std::optional<Answer> decodedAnswer(const QByteArray& message);
std::optional<PictureBox> decodedPictureBox(const QByteArray& details);
std::optional<PictureFacts> decodedPictureFacts(const QByteArray& details, qsizetype bulk);

} // namespace lumbra::reader
