// Pictures that lie in another file, as bytes: previews of documents, covers of music.
//
// They are as foreign as the file around them and are bound by the same limits; what they hold themselves is not looked
// at again.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace lumbra::reader {

// More bytes are no preview.
inline constexpr qint64 previewLimit = 64 * 1024 * 1024;

// The picture in the bytes, whatever common format they are of, or the page if they are a PDF; null if there is none.
QImage embeddedPicture(const QByteArray& bytes, QSize box);

// The same by one way each.
QImage jpegPicture(const QByteArray& bytes, QSize box);
QImage rasterPicture(const QByteArray& bytes, QSize box);
QImage vipsPicture(const QByteArray& bytes, QSize box);
QImage pagePicture(const QByteArray& bytes, QSize box);

// A drawing's text.
QImage drawingPicture(const QByteArray& text, QSize box);

} // namespace lumbra::reader
