// SPDX-License-Identifier: GPL-3.0-or-later
#include "Formats.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lumbra::reader {

namespace {

using namespace std::string_view_literals;

struct Mark {
    size_t offset;
    std::string_view bytes;
    Format format;
};

constexpr std::array marks{
    Mark{0, "\xff\xd8\xff"sv, Format::jpeg},
    Mark{0, "\x89PNG\r\n\x1a\n"sv, Format::png},
    Mark{8, "WEBP"sv, Format::webp},
    Mark{0, "GIF8"sv, Format::simpleImage},
    Mark{0, "\xff\x0a"sv, Format::modernImage},
    Mark{0, "\0\0\0\x0cJXL \r\n\x87\n"sv, Format::modernImage},
    Mark{0, "\0\0\0\x0cjP  \r\n\x87\n"sv, Format::modernImage},
    Mark{0, "\xff\x4f\xff\x51"sv, Format::modernImage},
    Mark{0, "\x1a\x45\xdf\xa3"sv, Format::video}, // matroska, webm
    Mark{8, "AVI "sv, Format::video},
    Mark{0, "OggS"sv, Format::video},
    Mark{0, "FLV\x01"sv, Format::video},
    Mark{0, "\x30\x26\xb2\x75\x8e\x66\xcf\x11"sv, Format::video}, // asf, wmv
    Mark{0, "\0\0\x01\xba"sv, Format::video},                     // mpeg program stream
    Mark{0, "\0\0\x01\xb3"sv, Format::video},
    Mark{4, "moov"sv, Format::video},
    Mark{4, "mdat"sv, Format::video},
    Mark{4, "wide"sv, Format::video},
    Mark{4, "free"sv, Format::video},
};

// "ftyp" files whose first brand is one of these are still pictures or sequences of them.
constexpr std::array pictureBrands{"heic"sv, "heix"sv, "heim"sv, "heis"sv, "hevc"sv,
                                   "mif1"sv, "msf1"sv, "avif"sv, "avis"sv};

// Formats whose first bytes say too little.
constexpr std::array videoExtensions{"m2v"sv, "mpg"sv, "mpeg"sv, "dv"sv, "3gp"sv, "mxf"sv, "vob"sv};
constexpr std::array streamExtensions{"ts"sv, "mts"sv, "m2ts"sv};
constexpr std::array imageExtensions{"bmp"sv, "dib"sv, "tif"sv, "tiff"sv, "pbm"sv,
                                     "pgm"sv, "ppm"sv, "pnm"sv, "xbm"sv,  "xpm"sv};

template <typename List>
bool contains(const List& list, std::string_view text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

// True when the first element is an svg, whatever declarations and comments stand before it. A page of HTML that holds
// drawings is none.
bool isDrawing(std::string_view text) {
    if (text.starts_with("\xef\xbb\xbf"))
        text.remove_prefix(3);
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
        size_t end;
        if (text.starts_with("<!--"))
            end = text.find("-->");
        else if (text.starts_with("<?") || (text.starts_with("<!DOCTYPE svg") && text.find('[') > text.find('>')))
            end = text.find('>');
        else if (text.starts_with("<!DOCTYPE svg"))
            end = text.find("]>");
        else
            break;
        if (end == std::string_view::npos)
            return false;
        text.remove_prefix(text.find('>', end) + 1);
    }
    const std::string_view element = text.substr(0, text.find_first_of(" \t\r\n/>"));
    return element == "<svg" || (element.starts_with('<') && element.ends_with(":svg"));
}

} // namespace

Format formatOf(const QByteArray& head, const QByteArray& extension) {
    const std::string_view bytes(head.constData(), size_t(head.size()));
    const std::string_view name(extension.constData(), size_t(extension.size()));
    const auto at = [bytes](size_t offset, size_t length) {
        return offset <= bytes.size() ? bytes.substr(offset, length) : std::string_view();
    };

    for (const Mark& mark : marks) {
        if (at(mark.offset, mark.bytes.size()) == mark.bytes)
            return mark.format;
    }
    if (at(4, 4) == "ftyp")
        return contains(pictureBrands, at(8, 4)) ? Format::modernImage : Format::video;
    // Readers of pages accept some rubbish before the header.
    if (at(0, 1024).find("%PDF-") != std::string_view::npos)
        return Format::pdf;

    if (isDrawing(bytes) || (name == "svg" && bytes.starts_with('<')))
        return Format::svg;

    // Raw photographs begin like TIFF; only the name tells them apart.
    if (contains(imageExtensions, name))
        return Format::simpleImage;
    if (contains(videoExtensions, name))
        return Format::video;
    // A stream of packets, each begun by a "G"; the same name is that of a programming language.
    const size_t packet = name == "ts" ? 188 : 192, first = name == "ts" ? 0 : 4;
    if (contains(streamExtensions, name) && at(first, 1) == "G" && at(first + packet, 1) == "G")
        return Format::video;
    return Format::unknown;
}

} // namespace lumbra::reader
