// The answers to requests about films and sounds.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmFrames.h"
#include "platform/reader/Protocol.h"

#include <memory>
#include <span>

namespace lumbra::reader {

class MediaAnswers {
public:
    // Each takes a request of its kind and the file that it is about; what does not fit into a few facts goes to the
    // arena. The answer's number is left to the caller.
    Answer facts(const Request& request, const OpenedFile& file) const;
    Answer frames(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena);
    Answer loudness(const Request& request, const OpenedFile& file, std::span<uchar> arena) const;

private:
    FilmFrames m_frames;
};

} // namespace lumbra::reader
