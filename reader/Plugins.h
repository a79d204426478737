// The decoders of FFmpeg and libvips. Each of the two brings some eighty libraries along, and to load those takes a
// processor 30 and 20 ms: as long as half a dozen photographs, which need neither. So they stand in plugins beside the
// program, which are loaded with the first file that asks for them. To load is to read and to map, which the sandbox
// allows.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OpenedFile.h"
#include "platform/reader/Protocol.h"

#include <QImage>
#include <QSize>

#include <chrono>
#include <memory>
#include <span>

namespace lumbra::reader {

// What FFmpeg reads: films, sounds, and pictures that are too rare for a decoder of their own.
class FilmDecoder {
public:
    // Null where the plugin is missing.
    static FilmDecoder* shared();

    virtual ~FilmDecoder() = default;

    // Small pictures, as Pictures.h describes them: of a film, and of a file that is one frame.
    virtual QImage filmPicture(OpenedFile& file, QSize box, std::chrono::milliseconds limit) = 0;
    virtual QImage framePicture(OpenedFile& file, QSize box) = 0;

    // The bytes of the picture that a container brings along; empty if there is none.
    virtual QByteArray cover(const OpenedFile& file, std::chrono::milliseconds limit) = 0;

    // Each takes a request of its kind and the file that it is about; what does not fit into a few facts goes to the
    // arena. The answer's number is left to the caller.
    virtual Answer facts(const Request& request, const OpenedFile& file) = 0;
    virtual Answer frames(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena) = 0;
    virtual Answer loudness(const Request& request, const OpenedFile& file, std::span<uchar> arena) = 0;
};

// What libvips reads: pictures that Qt doesn't know, those with any kind of colour profile, and the very large.
class VipsDecoder {
public:
    // Null where the plugin is missing.
    static VipsDecoder* shared();

    virtual ~VipsDecoder() = default;

    virtual QImage picture(OpenedFile& file, QSize box) = 0;
    virtual QImage picture(const QByteArray& bytes, QSize box) = 0;

    // As the header says, upright; empty if that does not tell.
    virtual QSize pixels(OpenedFile& file) = 0;
};

// What a plugin exports: its decoder, which lives as long as the process, for a program that tells by the function
// whether somebody still waits for the answer.
using IsInterrupted = bool (*)();
extern "C" {
FilmDecoder* lumbraFilmDecoder(IsInterrupted isInterrupted);
VipsDecoder* lumbraVipsDecoder(IsInterrupted isInterrupted);
}

} // namespace lumbra::reader
