// SPDX-License-Identifier: GPL-3.0-or-later
#include "VipsPicture.h"

#include "reader/pictures/Makers.h"

#include <unistd.h>
#include <vips/vips.h>

#include <functional>
#include <memory>
#include <string_view>

namespace lumbra::reader {

namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
using Image = std::unique_ptr<VipsImage, Unref>;
using Source = std::unique_ptr<VipsSource, Unref>;

// Started with the first picture that needs it: that takes 20 ms and as many megabytes.
bool start() {
    static const bool started = [] {
        if (vips_init("lumbra-reader") != 0)
            return false;
        vips_block_untrusted_set(TRUE); // loaders that lead to many more formats, and to other programs
        vips_operation_block_set("VipsForeignLoadJxl", FALSE);
        vips_operation_block_set("VipsForeignLoadJp2k", FALSE);
        vips_operation_block_set("VipsForeignLoadRad", FALSE);
        vips_cache_set_max(0); // no file is read twice
        return true;
    }();
    return started;
}

// Makes the bytes be read from their start; each reading takes a source of its own.
using MakeSource = std::function<VipsSource*()>;

// The picture with nothing but its header read.
Image openedPicture(const MakeSource& make) {
    const Source source(make());
    if (!source)
        return nullptr;
    return Image(vips_image_new_from_source(source.get(), "", "access", VIPS_ACCESS_SEQUENTIAL, nullptr));
}

bool isLoadedBy(const Image& image, std::string_view loader) {
    const char* name = nullptr;
    return vips_image_get_typeof(image.get(), VIPS_META_LOADER) != 0
           && vips_image_get_string(image.get(), VIPS_META_LOADER, &name) == 0
           && std::string_view(name).starts_with(loader);
}

// Shrinking while loading goes wrong for JPEG 2000, where a layer is taken that is too small, and finds nothing in
// AVIF, though it opens the file twice more to look.
bool isReducedAfterwards(const Image& image) {
    const char* compression = nullptr;
    return isLoadedBy(image, "jp2k")
           || (vips_image_get_typeof(image.get(), "heif-compression") != 0
               && vips_image_get_string(image.get(), "heif-compression", &compression) == 0
               && std::string_view(compression) == "av1");
}

Image thumbnailOf(const MakeSource& make, const Image& opened, QSize box) {
    // To name the target where there is nothing to convert from dulls the colours.
    const bool hasColours =
        vips_image_get_typeof(opened.get(), VIPS_META_ICC_NAME) != 0 || opened->Type == VIPS_INTERPRETATION_CMYK;
    const char* const target = hasColours ? "srgb" : nullptr;
    VipsImage* made = nullptr;
    if (isReducedAfterwards(opened)) {
        vips_thumbnail_image(opened.get(), &made, box.width(), "height", box.height(), "size", VIPS_SIZE_DOWN,
                             "export_profile", target, nullptr);
    } else if (const Source source{make()}) {
        vips_thumbnail_source(source.get(), &made, box.width(), "height", box.height(), "size", VIPS_SIZE_DOWN,
                              "export_profile", target, nullptr);
    }
    return Image(made);
}

// Eight bits a channel, three or four of them.
Image inScreenColours(const Image& image) {
    VipsImage* made = nullptr;
    if (vips_colourspace(image.get(), &made, VIPS_INTERPRETATION_sRGB, nullptr) != 0)
        return nullptr;
    const Image coloured(made);
    if (vips_cast_uchar(coloured.get(), &made, nullptr) != 0)
        return nullptr;
    return Image(made);
}

QImage unpacked(const Image& image) {
    const int bands = image->Bands;
    if (bands != 3 && bands != 4)
        return {};
    size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> pixels(vips_image_write_to_memory(image.get(), &size), &g_free);
    if (!pixels)
        return {};
    const QImage view(static_cast<const uchar*>(pixels.get()), image->Xsize, image->Ysize,
                      qsizetype(image->Xsize) * bands, bands == 4 ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    return view.convertToFormat(bands == 4 ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

MakeSource sourcesOf(OpenedFile& file) {
    return [&file] {
        ::lseek(file.descriptor(), 0, SEEK_SET);
        return vips_source_new_from_descriptor(file.descriptor());
    };
}

QImage shrunk(const MakeSource& make, QSize box) {
    const Image opened = openedPicture(make);
    Image thumbnail;
    if (opened && std::max(opened->Xsize, opened->Ysize) <= largestSide)
        thumbnail = thumbnailOf(make, opened, box);
    const Image coloured = thumbnail ? inScreenColours(thumbnail) : nullptr;
    vips_error_clear();
    return coloured ? unpacked(coloured) : QImage();
}

} // namespace

QImage VipsPicture::picture(OpenedFile& file, QSize box) {
    return start() ? shrunk(sourcesOf(file), box) : QImage();
}

QSize VipsPicture::pixels(OpenedFile& file) {
    if (!start())
        return {};
    const Image opened = openedPicture(sourcesOf(file));
    vips_error_clear();
    if (!opened)
        return {};
    constexpr int turned = 5; // and above, as cameras count
    const QSize size(opened->Xsize, opened->Ysize);
    return vips_image_get_orientation(opened.get()) >= turned ? size.transposed() : size;
}

QImage VipsPicture::picture(const QByteArray& bytes, QSize box) {
    if (!start())
        return {};
    return shrunk([&bytes] { return vips_source_new_from_memory(bytes.constData(), size_t(bytes.size())); }, box);
}

} // namespace lumbra::reader
