// What a file is by its first bytes. The name only decides where the bytes leave it open: a picture that was saved
// under another format's extension is still that picture.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace lumbra::reader {

enum class Format {
    unknown,
    jpeg,
    png,
    webp,
    simpleImage, // gif, bmp, tiff, portable any-maps: what needs no care beyond its size
    modernImage, // heif, avif, jpeg xl, jpeg 2000, radiance: what libvips reads
    codecImage,  // exr, targa, qoi, pcx: what FFmpeg has a decoder for
    raw,         // photographs as the sensor saw them
    photoshop,
    postscript,
    svg,
    packedSvg,
    pdf,
    video, // a container of moving pictures, or of sound alone
    audio,
    archive, // a document in a zip file
    blend,
    plainText,
    sourceText,
    markdown,
    webPage,
    table,
    subtitles,
    richText,
};

// `head` is the first 4,096 bytes at most, `extension` lower case without its dot.
Format formatOf(const QByteArray& head, const QByteArray& extension);

} // namespace lumbra::reader
