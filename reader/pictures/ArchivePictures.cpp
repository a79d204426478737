// Documents that are archives: the picture of itself that the program that wrote one left in it, or else its first
// lines as a page.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Archive.h"
#include "EmbeddedPictures.h"
#include "Makers.h"
#include "OfficeText.h"

#include <array>

namespace lumbra::reader {

namespace {

// Where programs put them; the larger ones first.
constexpr std::array previews{
    "preview.jpg",              // pages, numbers, key
    "QuickLook/Thumbnail.jpg",  // the same, some years ago
    "QuickLook/Preview.pdf",    //
    "preview-web.jpg",          //
    "preview-micro.jpg",        //
    "docProps/thumbnail.jpeg",  // docx, pptx, xlsx
    "docProps/thumbnail.jpg",   //
    "docProps/thumbnail.png",   //
    "Thumbnails/thumbnail.png", // odt, ods, odp
    "previews/preview.png",     // sketch
    "thumbnail.png",            // fig
};

} // namespace

QImage archivePicture(OpenedFile& file, QSize box, Milliseconds) {
    const std::unique_ptr<Archive> archive = Archive::open(file);
    if (!archive)
        return {};
    for (const char* name : previews) {
        const QImage image = embeddedPicture(archive->entry(name, previewLimit), box);
        if (!image.isNull())
            return image;
    }
    return {};
}

QImage officePicture(OpenedFile& file, QSize box, Milliseconds) {
    const std::unique_ptr<Archive> archive = Archive::open(file);
    if (!archive)
        return {};
    const QList<QStringList> rows = officeTable(*archive);
    return rows.isEmpty() ? textPage(officeText(*archive), box) : tablePage(rows, box);
}

} // namespace lumbra::reader
