// What the plugin of FFmpeg has for the reader.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FilmFrames.h"
#include "reader/Plugins.h"

namespace lumbra::reader {

class MediaAnswers : public FilmDecoder {
public:
    QImage filmPicture(OpenedFile& file, QSize box, std::chrono::milliseconds limit) override;
    QImage framePicture(OpenedFile& file, QSize box) override;
    QByteArray cover(const OpenedFile& file, std::chrono::milliseconds limit) override;
    Answer facts(const Request& request, const OpenedFile& file) override;
    Answer frames(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena) override;
    Answer loudness(const Request& request, const OpenedFile& file, std::span<uchar> arena) override;

private:
    FilmFrames m_frames;
};

} // namespace lumbra::reader
