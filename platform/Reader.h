// The client of the reader processes: foreign bytes are decoded by `lumbra-reader`, never in this process.
//
// Every call returns at once and may be made on any thread. Answers are tasks: `.then(context, ...)` goes on on the
// main thread. To request a stop takes the request back: a queued one is dropped, a running one's answer is thrown
// away, and the task is never done. (A task is not cancelled itself: in Qt 6.4 that reads freed memory when the answer
// arrives at the same time.)
//
// Whatever goes wrong with a file, a reader's crash included, reads as nothing.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"
#include "Tasks.h"
#include "reader/Protocol.h"

#include <QImage>
#include <QList>
#include <QRectF>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace lumbra {

namespace reader {
class Pool;
struct Found;
} // namespace reader

class Reader {
public:
    using MediaFacts = reader::MediaFacts;
    using FramesWish = reader::FramesWish;
    using PageWish = reader::PageWish;
    using PageTextWish = reader::PageTextWish;

    // Upright and premultiplied, in sRGB.
    struct Frames {
        QList<QImage> images = {}; // in the order of the moments; one that can't be had is left out
        bool isWhole = true;       // false: the time was over before all were tried
    };

    // Who is served first; among equals the last that asked.
    enum class Urgency { visible, soon, later };

    struct Options {
        int children = 2;          // processes at work at a time
        bool idlePriority = false; // for work that nobody looks at
        double limit = 8;          // seconds that one file may take
        double idleLimit = 0;      // seconds that a process is kept without work; 0 for always
        QByteArray program = {};   // where the reader is; empty for `installedProgram`
    };

    Reader();
    explicit Reader(const Options& options);

    // Ends the processes. Tasks that are not done yet are cancelled.
    ~Reader();

    // The one for what people look at. It lives until the process ends.
    static Reader& shared();

    // The one for what may take many seconds, such as frames from all over a film, and must keep no thumbnail waiting
    // meanwhile. Its processes end when nobody needs them.
    static Reader& lasting();

    // A small picture of the file: upright, in sRGB, premultiplied, inside `box` (pixels, 1 to 4,096 a side) with the
    // file's own proportions; not enlarged, unless it is a drawing or a page. A null image when there is none, and for
    // a path that is relative.
    Tasks::Task<QImage> thumbnail(const Location& file, QSize box, Urgency urgency = Urgency::visible,
                                  std::stop_token stop = {});

    // How many pixels an image has in its file, upright, as its header says; empty if that is not known.
    Tasks::Task<QSize> pixels(const Location& file, Urgency urgency = Urgency::visible, std::stop_token stop = {});

    // Absent for what holds neither moving pictures nor sound.
    Tasks::Task<std::optional<MediaFacts>> mediaFacts(const Location& file, Urgency urgency = Urgency::visible,
                                                      std::stop_token stop = {});

    // Absent for what has no moving pictures, and, for moments in parts of the duration, for what does not tell how
    // long it is.
    Tasks::Task<std::optional<Frames>> frames(const Location& file, FramesWish wish, Urgency urgency = Urgency::visible,
                                              std::stop_token stop = {});

    // The root mean square of each of `count` slices (1 to 4,096) of the file's first sound, 0 to 32,768; empty for
    // what has no sound.
    Tasks::Task<QList<float>> loudness(const Location& file, int count, Urgency urgency = Urgency::visible,
                                       std::stop_token stop = {});

    struct Pages {
        QList<QSizeF> sizes = {}; // of every page, in points, at least 1 a side
        bool isLocked = false;    // they can't be had without a password; then there are none
    };

    // Absent for what is no document of pages.
    Tasks::Task<std::optional<Pages>> pages(const Location& file, Urgency urgency = Urgency::visible,
                                            std::stop_token stop = {});

    // The wished part of a page, opaque, at the size asked for; a null image when there is none.
    Tasks::Task<QImage> page(const Location& file, const PageWish& wish, Urgency urgency = Urgency::visible,
                             std::stop_token stop = {});

    struct PageText {
        QString words = {};
        QList<QRectF> places = {}; // of its lines, in points of print from the page's upper left corner
    };

    // The wished words of a page; none where there are none.
    Tasks::Task<PageText> pageText(const Location& file, const PageTextWish& wish, Urgency urgency = Urgency::visible,
                                   std::stop_token stop = {});

    // Starts the processes before they are needed: the first answer comes some 20 ms sooner.
    void warmUp();

    // How many processes were started so far, replacements included.
    size_t startedCount() const;

    // $LUMBRA_READER, else beside this executable, else in the libexec folder of the installation; absolute, empty
    // where there is none.
    static QByteArray installedProgram();

private:
    // What becomes of the answer to a request; of an absent one too.
    template <typename Value>
    using Reading = std::function<Value(const std::optional<reader::Found>&)>;

    template <typename Value>
    Tasks::Task<Value> ask(reader::Kind kind, const Location& file, QByteArray details, Urgency urgency,
                           std::stop_token stop, std::function<bool(const reader::Found&)> makesSense,
                           Reading<Value> read);

    quint32 m_limit; // milliseconds
    std::unique_ptr<reader::Pool> m_pool;
};

} // namespace lumbra
