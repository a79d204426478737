// The language that the application and its reader processes speak: one datagram for each request and each answer on a
// SOCK_SEQPACKET pair, and a block of shared memory with arenas for whatever an answer carries beyond a few facts.
//
// The application makes the block and seals its size before a reader sees it, so that a reader gone wild can neither
// grow it nor shrink it under the application's feet. Requests are numbered one after the other, and a reader works on
// one at a time; its answer bears the request's number. One more request may wait for it, so that it need not wait for
// the next. The word to stop stands in the block; a reader that finds it there still answers. Both sides take every
// message as hostile: what does not decode is nonsense, and ends the talk.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QPointF>
#include <QRect>
#include <QSize>

#include <optional>

namespace lumbra::reader {

// What a reader finds open when it starts: its end of the pair, and the block.
inline constexpr int socketDescriptor = 3;
inline constexpr int blockDescriptor = 4;

// Bytes. A datagram holds a path and a few facts; everything larger goes through an arena.
inline constexpr qsizetype messageLimit = 16 * 1024;
inline constexpr qsizetype arenaSize = 64 * 1024 * 1024;

// The longest side of a picture that may be asked for, in pixels: a square of it fills the arena.
inline constexpr int longestSide = 4096;

// The most that one request may ask for.
inline constexpr qsizetype mostFrames = 256;
inline constexpr int mostBars = 4096;
inline constexpr int mostPages = 20'000;
inline constexpr int mostPlaces = 50'000;

// The pixels that a side of a whole page may have, of which a part is asked for.
inline constexpr int longestPage = 1 << 20;

// More pixels a side no picture is believed to have.
inline constexpr int longestPicture = 1 << 20;

// What can be asked. The values are part of the protocol.
enum class Kind : quint8 {
    thumbnail = 1,  // details: PictureBox; the answer's details: PictureFacts, its bulk the pixels
    mediaFacts = 2, // no details; the answer's details: MediaFacts
    frames = 3,     // details: FramesWish; the answer's details: FramesFacts, its bulk the frames' pixels in turn
    loudness = 4,   // details: LoudnessWish; the answer's bulk: so many floats in the machine's order
    pages = 5,      // no details; the answer's details: PagesFacts, its bulk each page's width and height as floats
    page = 6,       // details: PageWish; the answer's details: PictureFacts, its bulk the pixels
    pixels = 7,     // no details; the answer's details: PixelSize
    pageText = 8, // details: PageTextWish; the answer's details: PageTextFacts, its bulk each place's left, top, width
                  // and height as floats, then the words in UTF-8
};

struct Request {
    quint32 number = 0; // 1 for a reader's first, then one more each time; never 0
    Kind kind = Kind::thumbnail;
    quint32 limit = 0;    // milliseconds after which nobody waits any more
    QByteArray path = {}; // absolute, as the file system wants it
    QByteArray details = {};
};

struct Answer {
    quint32 number = 0; // 0 is the greeting of a reader that is ready for its first request
    bool found = false; // false: the file reads as nothing
    QByteArray details = {};
    quint32 bulk = 0; // bytes at the start of the number's arena that belong to the answer
};

// The pixels that a picture must fit into; its proportions are kept and nothing is enlarged but drawings.
struct PictureBox {
    QSize size;
};

// How many pixels a picture has in its file, upright.
struct PixelSize {
    QSize size;
};

// Rows of premultiplied 0xAARRGGBB words in the machine's order, one after the other without gaps.
struct PictureFacts {
    QSize size;
    bool opaque = false;
};

struct MediaFacts {
    double duration = 0; // seconds; 0 if the file does not tell
    bool hasPictures = false;
    bool hasSound = false;

    friend bool operator==(const MediaFacts&, const MediaFacts&) = default;
};

// Frames of a film, upright and in the order of the moments. One that can't be had is left out.
struct FramesWish {
    enum class Unit : quint8 { seconds, durations };

    QList<double> moments; // from the film's start, at most `mostFrames`; in order they are found fastest
    Unit unit = Unit::seconds;
    double tolerance = 0;   // seconds that a frame may be shown before or after its moment
    QSize box;              // pixels; nothing is enlarged
    bool keepsOpen = false; // the file stays open for the next wish, which is then answered sooner
};

// The frames that could be had, in the order of the moments.
struct FramesFacts {
    QList<PictureFacts> frames;
    bool isWhole = true; // false: the time was over before all moments were tried
};

// The root mean square of each of so many slices of a file's first sound, at 8,000 samples of 16 bits a second in one
// channel.
struct LoudnessWish {
    int count = 0; // 1 to `mostBars`
};

// A document of pages. One with more of them than `mostPages` ends there.
struct PagesFacts {
    int count = 0;
    bool isLocked = false; // its pages can't be had without a password; then there are none
};

// A part of a page, drawn on white.
struct PageWish {
    int page = 0; // from 0
    QSize whole;  // the pixels that all of it would have, at most `longestPage` a side
    QRect part;   // of these, in the order of reading; at most `longestSide` a side
};

// The words of a page between two points, in points of print from its upper left corner. A point above all words means
// the first, one below all the last.
struct PageTextWish {
    enum class Grain : quint8 { characters, words, page }; // the whole page, wherever the points are

    int page = 0; // from 0
    QPointF from = {};
    QPointF to = {};
    Grain grain = Grain::characters;

    friend bool operator==(const PageTextWish&, const PageTextWish&) = default;
};

// Where words stand on a page.
struct PageTextFacts {
    int places = 0; // at most `mostPlaces`
};

QByteArray encoded(const Request& request);
QByteArray encoded(const Answer& answer);
QByteArray encoded(const PictureBox& box);
QByteArray encoded(const PixelSize& pixels);
QByteArray encoded(const PictureFacts& facts);
QByteArray encoded(const FramesFacts& facts);
QByteArray encoded(const MediaFacts& facts);
QByteArray encoded(const FramesWish& wish);
QByteArray encoded(const LoudnessWish& wish);
QByteArray encoded(const PagesFacts& facts);
QByteArray encoded(const PageWish& wish);
QByteArray encoded(const PageTextWish& wish);
QByteArray encoded(const PageTextFacts& facts);

// Absent for what is cut short, too long, of another version or out of bounds.
std::optional<Request> decodedRequest(const QByteArray& message);
std::optional<Answer> decodedAnswer(const QByteArray& message);
std::optional<PictureBox> decodedPictureBox(const QByteArray& details);
std::optional<PixelSize> decodedPixelSize(const QByteArray& details);
std::optional<PictureFacts> decodedPictureFacts(const QByteArray& details, qsizetype bulk);
std::optional<FramesFacts> decodedFramesFacts(const QByteArray& details, qsizetype bulk);
std::optional<MediaFacts> decodedMediaFacts(const QByteArray& details);
std::optional<FramesWish> decodedFramesWish(const QByteArray& details);
std::optional<LoudnessWish> decodedLoudnessWish(const QByteArray& details);
std::optional<PagesFacts> decodedPagesFacts(const QByteArray& details, qsizetype bulk);
std::optional<PageWish> decodedPageWish(const QByteArray& details);
std::optional<PageTextWish> decodedPageTextWish(const QByteArray& details);
std::optional<PageTextFacts> decodedPageTextFacts(const QByteArray& details, qsizetype bulk);

} // namespace lumbra::reader
