// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileTypes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace lumbra {

namespace {

// "ts" is missing from the movies on purpose: here it is TypeScript.
constexpr std::string_view images[] = {
    "png", "apng", "jpg", "jpeg", "jpe", "jfif", "gif", "webp", "heic", "heif", "heics", "avif",
    "tif", "tiff", "bmp", "dib",  "svg", "svgz", "psd", "psb",  "exr",  "hdr",  "tga",   "pbm",
    "pgm", "ppm",  "pnm", "jp2",  "j2k", "jpx",  "jxl", "dng",  "cr2",  "cr3",  "nef",   "arw",
    "raf", "orf",  "rw2", "pef",  "srw", "raw",  "qoi", "xbm",  "xpm",  "pcx",  "eps",
};
constexpr std::string_view movies[] = {
    "mp4",  "m4v", "mov", "qt",  "avi", "mpg", "mpeg", "mpe", "m1v", "m2v", "mts",
    "m2ts", "3gp", "3g2", "ogv", "wmv", "asf", "flv",  "f4v", "vob", "dv",  "mxf",
};
constexpr std::string_view audio[] = {
    "mp3", "m4a",  "m4b", "aac", "wav",  "aif", "aiff", "aifc", "caf",  "flac", "ogg",
    "oga", "opus", "amr", "mid", "midi", "wma", "ac3",  "mka",  "weba", "au",
};
constexpr std::string_view packages[] = {
    "app",      "appex",  "band",         "bundle",    "fcpbundle", "framework",     "imovielibrary", "kext",
    "key",      "logicx", "musiclibrary", "numbers",   "pages",     "photoslibrary", "playground",    "plugin",
    "prefpane", "rtfd",   "sketch",       "tvlibrary", "xcodeproj", "xcworkspace",   "xpc",
};
static_assert(std::ranges::is_sorted(packages));

// The bytes of a short text as one number, so that comparing is one instruction. The 1 above them tells "x" from the
// same after a zero byte; 0 is no text's number.
constexpr uint64_t packed(std::string_view text) {
    uint64_t number = 1;
    for (const char letter : text)
        number = number << 8 | uint8_t(letter);
    return number;
}

// An open table at two fifths of its room: a million names are asked for in a walk, most of them once.
class TypeTable {
public:
    static constexpr size_t longest = 5;

    constexpr TypeTable() {
        add(images, FileType::image);
        add(movies, FileType::movie);
        add(audio, FileType::audio);
    }

    constexpr std::optional<FileType> find(std::string_view extension) const {
        if (extension.empty() || extension.size() > longest)
            return std::nullopt;
        const uint64_t key = packed(extension);
        for (size_t at = slot(key); m_keys[at] != 0; at = (at + 1) % slots) {
            if (m_keys[at] == key)
                return m_types[at];
        }
        return std::nullopt;
    }

private:
    static constexpr size_t slots = 256;

    static constexpr size_t slot(uint64_t key) { return size_t((key * 0x9E3779B97F4A7C15u) >> 56); }

    constexpr void add(std::span<const std::string_view> extensions, FileType type) {
        for (const std::string_view extension : extensions) {
            size_t at = slot(packed(extension));
            while (m_keys[at] != 0)
                at = (at + 1) % slots;
            m_keys[at] = packed(extension);
            m_types[at] = type;
        }
    }

    std::array<uint64_t, slots> m_keys{};
    std::array<FileType, slots> m_types{};
};

constexpr TypeTable table;
static_assert(table.find("heics") == FileType::image && !table.find("ts"));

} // namespace

std::string_view extensionOf(std::string_view name) {
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

SmallExtension::SmallExtension(std::string_view name) {
    const std::string_view extension = extensionOf(name);
    if (extension.size() > m_letters.size())
        return;
    std::ranges::transform(extension, m_letters.begin(),
                           [](char letter) { return letter >= 'A' && letter <= 'Z' ? char(letter + 32) : letter; });
    m_length = extension.size();
}

std::optional<FileType> fileTypeOf(std::string_view extension) {
    return table.find(extension);
}

bool isPackage(std::string_view folderName) {
    return std::ranges::binary_search(packages, SmallExtension(folderName).view());
}

} // namespace lumbra
