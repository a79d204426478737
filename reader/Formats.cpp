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

constexpr std::string_view richTextMark = "{\\rtf";

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
    Mark{0, "#?RADIANCE"sv, Format::modernImage},
    Mark{0, "#?RGBE"sv, Format::modernImage},
    Mark{0, "\x76\x2f\x31\x01"sv, Format::codecImage}, // exr
    Mark{0, "qoif"sv, Format::codecImage},
    Mark{0, "8BPS"sv, Format::photoshop},
    Mark{0, "\xc5\xd0\xd3\xc6"sv, Format::postscript}, // with a preview
    Mark{0, "%!PS"sv, Format::postscript},
    Mark{0, "FUJIFILMCCD-RAW"sv, Format::raw},
    Mark{0, "IIRO"sv, Format::raw}, // Olympus
    Mark{0, "IIRS"sv, Format::raw},
    Mark{0, "MMOR"sv, Format::raw},
    Mark{0, "IIU\0"sv, Format::raw}, // Panasonic
    Mark{4, "ftypcrx "sv, Format::raw},
    Mark{0, "BLENDER"sv, Format::blend},
    Mark{0, richTextMark, Format::richText},
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
    Mark{0, "ID3"sv, Format::audio},
    Mark{0, "fLaC"sv, Format::audio},
    Mark{8, "WAVE"sv, Format::audio},
    Mark{8, "AIFF"sv, Format::audio},
    Mark{8, "AIFC"sv, Format::audio},
};

// "ftyp" files whose first brand is one of these are still pictures or sequences of them.
constexpr std::array pictureBrands{"heic"sv, "heix"sv, "heim"sv, "heis"sv, "hevc"sv,
                                   "mif1"sv, "msf1"sv, "avif"sv, "avis"sv};

struct Name {
    std::string_view extension;
    Format format;
};

// Formats whose first bytes say too little.
constexpr std::array names{
    Name{"bmp", Format::simpleImage},  Name{"dib", Format::simpleImage}, Name{"tif", Format::simpleImage},
    Name{"tiff", Format::simpleImage}, Name{"pbm", Format::simpleImage}, Name{"pgm", Format::simpleImage},
    Name{"ppm", Format::simpleImage},  Name{"pnm", Format::simpleImage}, Name{"xbm", Format::simpleImage},
    Name{"xpm", Format::simpleImage},  Name{"tga", Format::codecImage},  Name{"pcx", Format::codecImage},
    Name{"m1v", Format::video},        Name{"m2v", Format::video},       Name{"mpg", Format::video},
    Name{"mpeg", Format::video},       Name{"mpe", Format::video},       Name{"dv", Format::video},
    Name{"3gp", Format::video},        Name{"3g2", Format::video},       Name{"mxf", Format::video},
    Name{"vob", Format::video},        Name{"mp3", Format::audio},       Name{"aac", Format::audio},
    Name{"m4a", Format::audio},        Name{"m4b", Format::audio},
};

// Raw photographs that begin like TIFF; only the name tells them apart.
constexpr std::array rawExtensions{"dng"sv, "cr2"sv, "nef"sv, "arw"sv, "raf"sv, "orf"sv,
                                   "rw2"sv, "pef"sv, "srw"sv, "raw"sv, "cr3"sv};

constexpr std::array textNames{
    Name{"txt", Format::plainText},    Name{"text", Format::plainText},    Name{"log", Format::plainText},
    Name{"md", Format::markdown},      Name{"markdown", Format::markdown}, Name{"html", Format::webPage},
    Name{"htm", Format::webPage},      Name{"csv", Format::table},         Name{"tsv", Format::table},
    Name{"srt", Format::subtitles},    Name{"vtt", Format::subtitles},     Name{"json", Format::sourceText},
    Name{"xml", Format::sourceText},   Name{"yaml", Format::sourceText},   Name{"yml", Format::sourceText},
    Name{"toml", Format::sourceText},  Name{"ini", Format::sourceText},    Name{"c", Format::sourceText},
    Name{"h", Format::sourceText},     Name{"cpp", Format::sourceText},    Name{"py", Format::sourceText},
    Name{"js", Format::sourceText},    Name{"ts", Format::sourceText},     Name{"tsx", Format::sourceText},
    Name{"jsx", Format::sourceText},   Name{"css", Format::sourceText},    Name{"sh", Format::sourceText},
    Name{"rs", Format::sourceText},    Name{"go", Format::sourceText},     Name{"java", Format::sourceText},
    Name{"swift", Format::sourceText}, Name{"kt", Format::sourceText},     Name{"rb", Format::sourceText},
    Name{"php", Format::sourceText},   Name{"sql", Format::sourceText},    Name{"qml", Format::sourceText},
};

constexpr std::array streamExtensions{"ts"sv, "mts"sv, "m2ts"sv};

template <typename List>
bool contains(const List& list, std::string_view text) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

template <typename List>
Format byName(const List& list, std::string_view extension) {
    const auto found = std::ranges::find(list, extension, &Name::extension);
    return found == list.end() ? Format::unknown : found->format;
}

// No text but one of two bytes a character holds a zero.
bool looksLikeText(std::string_view bytes) {
    return bytes.starts_with("\xff\xfe"sv) || bytes.starts_with("\xfe\xff"sv) || bytes.find('\0') == bytes.npos;
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

    // Readers of pages accept some rubbish before the header.
    if (at(0, 1024).find("%PDF-") != std::string_view::npos)
        return Format::pdf;
    // A stream of packets, each begun by a "G"; the same name is that of a programming language.
    const size_t packet = name == "ts" ? 188 : 192, first = name == "ts" ? 0 : 4;
    if (contains(streamExtensions, name) && at(first, 1) == "G" && at(first + packet, 1) == "G")
        return Format::video;
    if (isDrawing(bytes))
        return Format::svg;
    // Before the marks: a text may begin like anything, such as "the wide world" like a film.
    if (const Format format = byName(textNames, name);
        format != Format::unknown && looksLikeText(bytes) && at(0, richTextMark.size()) != richTextMark)
        return format;

    for (const Mark& mark : marks) {
        if (at(mark.offset, mark.bytes.size()) == mark.bytes)
            return mark.format;
    }
    if (at(4, 4) == "ftyp")
        return contains(pictureBrands, at(8, 4)) ? Format::modernImage : Format::video;
    if (at(0, 2) == "\x1f\x8b" || at(0, 4) == "\x28\xb5\x2f\xfd")
        return name == "svgz" ? Format::packedSvg : name == "blend" ? Format::blend : Format::unknown;
    // What lies in a plain archive is nobody's preview.
    if (at(0, 4) == "PK\3\4")
        return name == "zip" ? Format::unknown : Format::archive;
    if ((at(0, 4) == "II*\0"sv || at(0, 4) == "MM\0*"sv) && contains(rawExtensions, name))
        return Format::raw;
    if (name == "svg" && bytes.starts_with('<'))
        return Format::svg;
    return byName(names, name);
}

} // namespace lumbra::reader
