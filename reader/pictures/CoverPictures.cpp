// Music: its cover, which containers hold as a picture of its own.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"
#include "reader/media/MediaFile.h"

namespace lumbra::reader {

QImage coverPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    const std::unique_ptr<MediaFile> media = MediaFile::open(file, limit / 2);
    return media ? embeddedPicture(media->cover(), box) : QImage();
}

} // namespace lumbra::reader
