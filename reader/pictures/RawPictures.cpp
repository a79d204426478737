// Raw photographs: the preview that the camera put beside the sensor's data; where there is none, the data itself at
// half its size.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "EmbeddedPictures.h"
#include "Makers.h"

#include <QTransform>

#include <libraw.h>

#include <memory>

namespace lumbra::reader {

namespace {

using Clock = std::chrono::steady_clock;

struct FreeProcessed {
    void operator()(libraw_processed_image_t* image) const { LibRaw::dcraw_clear_mem(image); }
};
using Processed = std::unique_ptr<libraw_processed_image_t, FreeProcessed>;

int isOver(void* deadline, LibRaw_progress, int, int) {
    return Clock::now() >= *static_cast<const Clock::time_point*>(deadline) ? 1 : 0;
}

QByteArray bytesOf(const libraw_processed_image_t& image) {
    return {reinterpret_cast<const char*>(image.data), qsizetype(image.data_size)};
}

QImage bitmap(const libraw_processed_image_t& image) {
    const qsizetype row = qsizetype(image.width) * image.colors;
    if (image.type != LIBRAW_IMAGE_BITMAP || image.bits != 8 || (image.colors != 3 && image.colors != 1)
        || row * image.height > qsizetype(image.data_size))
        return {};
    return QImage(image.data, image.width, image.height, row,
                  image.colors == 3 ? QImage::Format_RGB888 : QImage::Format_Grayscale8)
        .copy();
}

QImage scaledInto(const QImage& image, QSize box) {
    return image.isNull() ? image
                          : image.scaled(fittedWithoutEnlarging(image.size(), box), Qt::IgnoreAspectRatio,
                                         Qt::SmoothTransformation);
}

// Some cameras turn their previews, some name the turn in them, and some leave it to whoever looks at the sensor's.
QImage turned(const QImage& image, const libraw_image_sizes_t& sizes) {
    constexpr int left = 5, right = 6;
    const bool sensorIsWide = sizes.width >= sizes.height, isWide = image.width() >= image.height();
    if ((sizes.flip != left && sizes.flip != right) || isWide != sensorIsWide)
        return image;
    return image.transformed(QTransform().rotate(sizes.flip == right ? 90 : -90));
}

QImage preview(LibRaw& raw, QSize box) {
    if (raw.unpack_thumb() != LIBRAW_SUCCESS)
        return {};
    const Processed made(raw.dcraw_make_mem_thumb());
    if (!made)
        return {};
    const QSize square(std::max(box.width(), box.height()), std::max(box.width(), box.height()));
    const QImage image =
        made->type == LIBRAW_IMAGE_JPEG ? embeddedPicture(bytesOf(*made), square) : scaledInto(bitmap(*made), square);
    return image.isNull() ? image : scaledInto(turned(image, raw.imgdata.sizes), box);
}

QImage developed(LibRaw& raw, QSize box) {
    const auto& sizes = raw.imgdata.sizes;
    if (qint64(sizes.raw_width) * sizes.raw_height > pixelsInMemory)
        return {};
    raw.imgdata.params.half_size = 1;
    raw.imgdata.params.use_camera_wb = 1;
    if (raw.unpack() != LIBRAW_SUCCESS || raw.dcraw_process() != LIBRAW_SUCCESS)
        return {};
    const Processed made(raw.dcraw_make_mem_image());
    return made ? scaledInto(bitmap(*made), box) : QImage();
}

} // namespace

QImage rawPicture(OpenedFile& file, QSize box, Milliseconds limit) {
    Clock::time_point deadline = Clock::now() + limit;
    const auto raw = std::make_unique<LibRaw>(); // half a megabyte
    raw->set_progress_handler(isOver, &deadline);
    // The library opens by names only; this one is what is open already.
    const QByteArray name = "/proc/self/fd/" + QByteArray::number(file.descriptor());
    if (raw->open_file(name.constData()) != LIBRAW_SUCCESS)
        return {};
    const QImage image = preview(*raw, box);
    return image.isNull() ? developed(*raw, box) : image;
}

} // namespace lumbra::reader
